// officepaste.js: markup of office programs, turned into what a hand-kept page has.
//
// They put their whole document model on the clipboard: private styles and elements, list items as paragraphs with the
// bullet as text, a span around every run. All functions work on a parsed fragment and know nothing of the page.
Surface.module("officepaste", ({ dom }) => {
  const isOffice = (html) => /\bmso-[a-z]|\bclass=["']?(Mso|xl\d)|<o:p\b|\bxmlns:[ovwx]=["']?urn:/i.test(html) ||
    /<meta[^>]{0,80}\bgenerator\b[^>]{0,80}\b[a-z]*office\b/i.test(html.slice(0, 5000));

  const Kept = new Set(("href name src alt width height colspan rowspan align valign border cellspacing cellpadding bgcolor " +
    "start type").split(" "));
  const Sized = new Set(["IMG", "HR"]);
  const Runs = new Set(["B", "I", "U", "STRONG", "EM", "S", "STRIKE", "SUB", "SUP"]);

  const styleOf = (element) => element.getAttribute("style") || "";
  const significant = (element) => [...element.childNodes].filter((node) =>
    dom.isElement(node) || (dom.isText(node) && /[^ \t\n\r\f]/.test(node.data)));

  // ---- lists ----------------------------------------------------------------------------------------------------------

  const levelOf = (element) => {
    const found = /mso-list:[^;]*?\blevel(\d+)/i.exec(styleOf(element));
    return found ? Number(found[1]) : 0;
  };

  // Takes the bullet or number out of the paragraph; gives it as text.
  const takeMarker = (paragraph) => {
    const marked = [...paragraph.querySelectorAll("[style]")].find((e) => /mso-list:\s*ignore/i.test(styleOf(e)));
    if (marked) {
      const text = marked.textContent;
      marked.remove();
      return text.trim();
    }
    // Older ones put it between two conditional marks.
    const walker = paragraph.ownerDocument.createTreeWalker(paragraph, NodeFilter.SHOW_COMMENT);
    while (walker.nextNode()) {
      if (!/supportLists/.test(walker.currentNode.data))
        continue;
      let text = "";
      for (let node = walker.currentNode.nextSibling; node && node.nodeType !== Node.COMMENT_NODE;) {
        const next = node.nextSibling;
        text += node.textContent;
        node.remove();
        node = next;
      }
      return text.trim();
    }
    return "";
  };

  // What the first marker says of its list.
  const kindOf = (marker) => {
    const found = /^\(?(?:\d+\.)*(\d+|[a-z]{1,7})[.)]/i.exec(marker.replace(/\u00a0/g, " "));
    if (!found)
      return { name: "ul" };
    const [, value] = found;
    if (/\d/.test(value))
      return { name: "ol", start: Number(value) };
    const roman = /^[ivxlcdm]+$/i.test(value) && (value.length > 1 || /^[iv]$/i.test(value));
    const type = roman ? "i" : "a";
    return { name: "ol", type: value === value.toUpperCase() ? type.toUpperCase() : type };
  };

  const newList = (document, { name, start, type }) => {
    const list = document.createElement(name);
    if (type)
      list.setAttribute("type", type);
    if (start > 1)
      list.setAttribute("start", String(start));
    return list;
  };

  const elementBefore = (node) => {
    let before = node.previousSibling;
    while (before && !dom.isElement(before) && !(dom.isText(before) && /[^ \t\n\r\f]/.test(before.data)))
      before = before.previousSibling;
    return before;
  };

  // Paragraphs that only look like items become items, nested by their levels.
  const makeLists = (fragment) => {
    let stack = []; // the lists that are open: { list, level }
    for (const paragraph of fragment.querySelectorAll("p,h1,h2,h3,h4,h5,h6,div")) {
      const level = levelOf(paragraph);
      if (!level)
        continue;
      const kind = kindOf(takeMarker(paragraph));
      if (!stack.length || elementBefore(paragraph) !== stack[0].list)
        stack = [];
      while (stack.length && stack[stack.length - 1].level > level)
        stack.pop();
      let top = stack[stack.length - 1];
      if (top && top.level === level && top.list.localName !== kind.name) {
        stack.pop();
        top = stack[stack.length - 1];
      }
      if (!top || top.level < level) {
        const list = newList(paragraph.ownerDocument, kind);
        if (top)
          top.list.lastElementChild.append(list);
        else
          paragraph.before(list);
        stack.push(top = { list, level });
      }
      const item = paragraph.ownerDocument.createElement("li");
      item.append(...paragraph.childNodes);
      top.list.append(item);
      paragraph.remove();
    }
  };

  // ---- the rest -------------------------------------------------------------------------------------------------------

  const makeHeadings = (fragment) => {
    for (const title of [...fragment.querySelectorAll("p.MsoTitle")])
      dom.rename(title, "h1");
  };

  const dropAttributes = (fragment) => {
    for (const element of fragment.querySelectorAll("*"))
      for (const { name, value } of [...element.attributes]) {
        const size = name === "width" || name === "height";
        if (!Kept.has(name) || (size && !Sized.has(element.nodeName)) || (name === "name" && /^_/.test(value)))
          element.removeAttribute(name);
      }
  };

  // A paragraph that is all there is in a cell or an item.
  const unwrapSingle = (fragment) => {
    for (const holder of fragment.querySelectorAll("td,th,li")) {
      const inside = significant(holder);
      const first = inside[0];
      const lists = inside.slice(1).every((node) => /^(UL|OL)$/.test(node.nodeName));
      if (!first || first.nodeName !== "P" || (inside.length > 1 && !(holder.nodeName === "LI" && lists)))
        continue;
      if (first.hasAttribute("align") && holder.nodeName !== "LI")
        holder.setAttribute("align", first.getAttribute("align"));
      dom.unwrap(first);
    }
  };

  // Lines are wrapped anywhere in the source; a line end is worth something only between two blocks.
  const tidySpace = (fragment) => {
    fragment.normalize();
    const walker = document.createTreeWalker(fragment, NodeFilter.SHOW_TEXT);
    const texts = [];
    while (walker.nextNode())
      if (!walker.currentNode.parentNode.closest?.("pre"))
        texts.push(walker.currentNode);
    for (const text of texts) {
      const { previousSibling: left, nextSibling: right, parentNode: parent } = text;
      const edge = parent === fragment || dom.isBlock(parent);
      let data = text.data.replace(/[ \t]*[\r\n]+[ \t]*/g, " ");
      if (left ? dom.isBlock(left) : edge)
        data = data.replace(/^[ \t]+/, "");
      if (right ? dom.isBlock(right) : edge)
        data = data.replace(/[ \t]+$/, "");
      if (!data && parent === fragment && left && right)
        data = "\n";
      if (data)
        text.data = data;
      else
        text.remove();
    }
  };

  // A word was cut into runs wherever the program had looked at it.
  const joinRuns = (fragment) => {
    for (const run of [...fragment.querySelectorAll("b,i,u,strong,em,s,strike,sub,sup")])
      while (run.parentNode && Runs.has(run.nodeName) && run.nextSibling && run.nextSibling.nodeName === run.nodeName) {
        const next = run.nextSibling;
        run.append(...next.childNodes);
        next.remove();
      }
  };

  // Before the styles are read away, and after it.
  const before = (fragment) => {
    makeLists(fragment);
    makeHeadings(fragment);
  };
  const after = (fragment) => {
    dropAttributes(fragment);
    for (const element of [...fragment.querySelectorAll("col,colgroup")])
      element.remove();
    for (const element of [...fragment.querySelectorAll("font,span,div,a,ins")])
      if (element.nodeName !== "A" || !element.attributes.length)
        dom.unwrap(element);
    unwrapSingle(fragment);
    joinRuns(fragment);
    tidySpace(fragment);
  };

  return { isOffice, before, after };
});
