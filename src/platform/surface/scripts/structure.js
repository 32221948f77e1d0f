// structure.js: steps that change blocks: wrap a line, empty a block, clean up behind an edit. Each within a step of
// the history; none of them sets the selection.
Surface.module("structure", ({ dom, lines }) => {
  // What a block became, for a selection that was held in it.
  let successors = new Map();
  let rewritten = new Map(); // text -> where an offset of it is now
  const succeed = (old, now) => { successors.set(old, now); return now; };

  // Runs `change`, and the selection is where it was in the text, however the blocks around it changed.
  const keepSelection = (change) => {
    const s = document.getSelection();
    const hold = (node, offset) => !dom.isElement(node) ? { node, offset }
      : node.childNodes[offset] ? { before: node.childNodes[offset], node }
      : node.lastChild ? { after: node.lastChild, node } : { node };
    const held = s.rangeCount ? [hold(s.anchorNode, s.anchorOffset), hold(s.focusNode, s.focusOffset)] : [];
    successors = new Map();
    rewritten = new Map();
    change();
    const present = (node) => {
      while (node && !node.isConnected && successors.has(node))
        node = successors.get(node);
      return node && node.isConnected ? node : null;
    };
    const places = held.map(({ node, offset, before, after }) => {
      const beside = present(before || after);
      if (beside && beside !== document.body)
        return [beside.parentNode, dom.indexOf(beside) + (after ? 1 : 0)];
      if (rewritten.has(node))
        return rewritten.get(node)(offset);
      const now = present(node) || document.body;
      return !dom.isElement(node) ? [now, Math.min(offset, dom.lengthOf(now))] : lines.caretAtStart(lines.lineAt(now, 0));
    });
    if (places.length)
      s.setBaseAndExtent(...places[0], ...places[1]);
  };

  const rename = (element, name) => element.nodeName === name ? element : succeed(element, dom.rename(element, name));
  const unwrap = (element) => {
    succeed(element, element.firstChild || element.parentNode);
    dom.unwrap(element);
  };
  const carries = (node) => node.nodeType === Node.COMMENT_NODE || (dom.isElement(node) && dom.Unseen.has(node.nodeName));

  // An emptied block goes; comments and scripts that are left in it take its place.
  const dissolve = (element) => {
    const parent = element.parentNode;
    const rest = [...element.childNodes].filter((node) => carries(node) || (dom.isElement(node) && !isBare(node)));
    element.replaceWith(...rest);
    succeed(element, rest[0] || parent);
  };

  // Nothing in it that a person or the page's code could miss.
  const isBare = (element) => [...element.childNodes].every((node) => dom.isText(node) ? lines.Blank.test(node.data)
    : dom.isElement(node) && !dom.Unseen.has(node.nodeName) && !dom.isAtom(node) && !node.id && !node.hasAttribute("name") &&
      isBare(node));

  // The line into a new block that stands where the line was; white space around it stays outside.
  const wrap = (line, name) => {
    const block = document.createElement(name);
    const nodes = lines.nodesOf(line);
    if (nodes.some(lines.shows)) {
      while (!lines.shows(nodes[0]))
        nodes.shift();
      while (!lines.shows(nodes[nodes.length - 1]))
        nodes.pop();
    }
    if (nodes.length)
      nodes[0].before(block);
    else
      line.container.insertBefore(block, line.before || null);
    block.append(...nodes);
    leaveParagraph(block);
    dropBreaks(block);
    fill(block);
    return block;
  };

  // Pages without a doctype may have tables in paragraphs, so that text beside one is wrapped inside a paragraph. There
  // no other block may stand: it goes between two halves.
  const leaveParagraph = (block) => {
    const paragraph = block.parentNode;
    if (paragraph.nodeName !== "P")
      return;
    const second = paragraph.cloneNode(false);
    second.removeAttribute("id");
    const rest = [...paragraph.childNodes];
    paragraph.after(block, second);
    second.append(...rest.slice(rest.indexOf(block) + 1));
    [paragraph, second].filter(isBare).forEach(dissolve);
  };

  const blankSide = (node, back) => {
    let n = back ? node.previousSibling : node.nextSibling;
    while (n && dom.isText(n) && lines.Blank.test(n.data))
      n = back ? n.previousSibling : n.nextSibling;
    return n;
  };
  // A block ends lines by itself: the break behind it, and the one that ended the line before, would show as empty lines.
  const dropBreaks = (block) => {
    const next = blankSide(block, false);
    if (lines.isBreak(next))
      next.remove();
    const previous = blankSide(block, true);
    const before = previous && blankSide(previous, true);
    if (lines.isBreak(previous) && before && !lines.isBreak(before) && !lines.isBlockish(before))
      previous.remove();
  };

  // An empty block would have no height and take no caret: a break stands in it until something is typed.
  const fill = (block) => {
    const shown = [...block.childNodes].find(lines.shows);
    if (shown && !(block.nodeName === "LI" && isList(shown)))
      return;
    const nested = [...block.children].find(lines.isBlockish);
    if (!shown && nested && lines.Holders.has(nested.nodeName))
      fill(nested);
    else
      block.insertBefore(document.createElement("br"), nested || null);
  };

  // Inline elements without content, from `node` up; anchors and what a style sheet or script may know stay.
  const prune = (node) => {
    while (node && node !== document.body && !node.firstChild && (dom.isText(node) ? !node.length
      : dom.isElement(node) && !lines.isBlockish(node) && !dom.isAtom(node) && !dom.Unseen.has(node.nodeName) && !node.id &&
        !node.hasAttribute("name"))) {
      const parent = node.parentNode;
      node.remove();
      node = parent;
    }
  };

  // A break goes, and formats of the line that held nothing else.
  const removeBreak = (node, line) => {
    const parent = node.parentNode;
    node.remove();
    if (parent !== line.container)
      prune(parent);
  };
  // What held an empty line open.
  const unfill = (line) => {
    const breaks = lines.nodesOf(line).flatMap((node) =>
      lines.isBreak(node) ? [node] : dom.isElement(node) ? [...node.querySelectorAll("br")] : []);
    for (const each of breaks)
      removeBreak(each, line);
  };

  // A blank typed at the end of a line is a no-break space only so that it shows; white space at the border of a block
  // does not show at all.
  const trimEnd = (line) => {
    const leaf = lines.lastLeaf(line);
    if (!dom.isText(leaf) || lines.inPre(leaf))
      return;
    const trimmed = leaf.data.replace(/[ \t\n\r\f]+$/, "").replace(/([^\s\u00a0])\u00a0$/, "$1");
    if (trimmed.length < leaf.length)
      leaf.deleteData(trimmed.length, leaf.length - trimmed.length);
  };
  const trimStart = (line) => {
    const leaf = lines.firstLeaf(line);
    const blank = dom.isText(leaf) && !lines.inPre(leaf) ? leaf.data.search(/[^ \t\n\r\f]/) : 0;
    if (blank > 0)
      leaf.deleteData(0, blank);
  };

  // A blank beside the caret at a line's end, or beside another one, would not show: it becomes a no-break space.
  const showSpaces = (node, offset) => {
    const line = lines.lineAt(node, offset);
    if (!line.first || lines.inPre(line.container))
      return;
    const left = lines.beside(line, node, offset, true);
    const right = lines.beside(line, node, offset, false);
    const spaceAt = (text, at) => dom.isText(text) && /[ \t\n\r\f]/.test(text.data[at] || "") ? [text, at] : null;
    const spaceBefore = left.spaces.length ? [left.spaces[0][0], left.spaces[0][2] - 1]
      : spaceAt(left.leaf, left.leaf === node ? offset - 1 : dom.lengthOf(left.leaf || node) - 1);
    const spaceBehind = right.spaces.length ? [right.spaces[0][0], right.spaces[0][1]]
      : spaceAt(right.leaf, right.leaf === node ? offset : 0);
    const follows = right.leaf && !lines.isBreak(right.leaf);
    const leads = left.leaf && !lines.isBreak(left.leaf);
    if (spaceBefore && leads && (!follows || spaceBehind))
      spaceBefore[0].replaceData(spaceBefore[1], 1, "\u00a0");
    else if (spaceBehind && follows && !leads)
      spaceBehind[0].replaceData(spaceBehind[1], 1, "\u00a0");
  };

  // Text that moves between preformatted and other blocks looks the same there.
  const adapt = (nodes, wasPre, isPre) => {
    if (wasPre === isPre)
      return;
    const texts = nodes.flatMap((node) => {
      const walker = document.createTreeWalker(node, NodeFilter.SHOW_TEXT);
      const found = [];
      for (let n = dom.isText(node) ? node : walker.nextNode(); n; n = walker.nextNode())
        found.push(n);
      return found;
    });
    const collapsed = (data) => data.replace(/[ \t\n\r\f]+/g, " ");
    for (const text of texts) {
      const data = text.data;
      if (isPre) {
        text.data = collapsed(data);
        rewritten.set(text, (offset) => [text, Math.min(text.length, collapsed(data.slice(0, offset)).length)]);
        continue;
      }
      // A text a line, the last in the node that was there.
      const parts = data.split("\n");
      const nodes = parts.map((part, i) => i < parts.length - 1 ? document.createTextNode(part) : text);
      nodes.slice(0, -1).forEach((node) => text.before(...(node.length ? [node] : []), document.createElement("br")));
      text.data = parts[parts.length - 1];
      nodes.forEach((node) => { node.data = node.data.replace(/^ | (?= )/g, "\u00a0"); });
      rewritten.set(text, (offset) => {
        const at = data.slice(0, offset).split("\n");
        const node = nodes[at.length - 1];
        return node.isConnected ? [node, at[at.length - 1].length] : [text, 0];
      });
    }
  };

  const listNames = new Set(["UL", "OL", "DIR", "MENU"]);
  const isList = (node) => !!node && listNames.has(node.nodeName);
  const isItem = (node) => !!node && node.nodeName === "LI" && isList(node.parentNode);
  // The item that a place is in; a cell's text is in no item around the table.
  const itemOf = (node) => {
    const found = dom.closest(node, (e) => isItem(e) || lines.isWall(e));
    return isItem(found) ? found : null;
  };

  return { succeed, keepSelection, rename, unwrap, carries, dissolve, isBare, wrap, leaveParagraph, dropBreaks, blankSide, fill, prune, trimEnd,
           trimStart, showSpaces, adapt, removeBreak, unfill, isList, isItem, itemOf };
});
