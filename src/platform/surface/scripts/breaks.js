// breaks.js: Enter and Shift+Enter.
//
// Enter makes paragraphs everywhere: text that stands bare in the body, a cell, a quote or a division becomes two of
// them. Items of lists and of definition lists go on as such, an empty one leaves its list; preformatted text and
// captions get a line break.
Surface.module("breaks", ({ history, selection, events, dom, lines, structure, lists, deletion }) => {
  const Headings = new Set(["H1", "H2", "H3", "H4", "H5", "H6"]);
  // A person who types in bold goes on in bold.
  const GoOn = new Set(["B", "I", "U", "S", "STRIKE", "STRONG", "EM", "FONT", "TT", "BIG", "SMALL", "CODE"]);
  const collapse = ([node, offset]) => document.getSelection().collapse(node, offset);

  const withoutName = (element) => {
    for (const name of ["id", "name"])
      element.removeAttribute(name);
    return element;
  };
  const emptyLike = (block, name = block.nodeName) => {
    const other = withoutName(structure.isItem(block) || name !== block.nodeName ? document.createElement(name)
      : block.cloneNode(false));
    if (structure.isItem(block))
      for (const { name: key, value } of block.attributes)
        if (!["id", "value"].includes(key))
          other.setAttribute(key, value);
    return other;
  };

  // The formats around a place inside the block, as new empty elements with a break in the innermost.
  const pendingFormats = (node, block) => {
    let inner = document.createElement("br");
    for (let e = dom.elementOf(node); e && e !== block; e = e.parentNode)
      if (GoOn.has(e.nodeName)) {
        const outer = withoutName(e.cloneNode(false));
        outer.append(inner);
        inner = outer;
      }
    return inner;
  };

  // Empty halves of elements that the cut went through.
  const pruneEdge = (block, back) => {
    for (;;) {
      let node = block;
      while (dom.isElement(node) && node.firstChild && !dom.isAtom(node))
        node = back ? node.lastChild : node.firstChild;
      if (node === block)
        return;
      structure.prune(node);
      if (node.isConnected)
        return;
    }
  };

  // Cuts the elements up to `block` at the place; gives where in the block the second half begins.
  const cutElements = (block, node, offset) => {
    if (!dom.isElement(node)) {
      const isMiddle = dom.isText(node) && offset > 0 && offset < node.length;
      const rest = isMiddle ? node.splitText(offset) : null;
      [node, offset] = [node.parentNode, dom.indexOf(rest || node) + (!rest && offset > 0 ? 1 : 0)];
    }
    while (node !== block) {
      const second = withoutName(node.cloneNode(false));
      node.after(second);
      second.append(...[...node.childNodes].slice(offset));
      [node, offset] = [node.parentNode, dom.indexOf(second)];
    }
    return offset;
  };

  // `block` keeps what is before the place; what is behind it goes into `second`, put behind the block.
  const cut = (block, second, node, offset) => {
    const formats = pendingFormats(node, block);
    const at = cutElements(block, node, offset);
    block.after(second);
    second.append(...[...block.childNodes].slice(at));
    pruneEdge(block, true);
    pruneEdge(second, false);
    trimAt(block, second);
    return formats;
  };
  const trimAt = (block, second) => {
    const before = lines.lineAt(block, block.childNodes.length);
    const after = lines.lineAt(second, 0);
    structure.trimEnd(before);
    structure.trimStart(after);
    const last = lines.lastLeaf(before);
    if (lines.isBreak(last) && !lines.isEmpty(before))
      last.remove(); // the paragraph's end breaks the line now
  };
  const start = (block, formats) => {
    if (!lines.isEmpty(lines.lineAt(block, 0)))
      return lines.caretAtStart(lines.lineAt(block, 0));
    structure.unfill(lines.lineAt(block, 0));
    block.insertBefore(formats, [...block.children].find(lines.isBlockish) || null);
    let inner = formats;
    while (inner.firstChild)
      inner = inner.firstChild;
    return [inner.parentNode, dom.indexOf(inner)];
  };

  const splitBlock = (line, block, node, offset, name) => {
    if (lines.atStart(line, node, offset) && !lines.isEmpty(line)) {
      const empty = Headings.has(block.nodeName) ? document.createElement("p") : emptyLike(block);
      block.before(empty);
      structure.fill(empty);
      return [node, offset];
    }
    const isHeadingEnd = Headings.has(block.nodeName) && lines.atEnd(line, node, offset);
    const second = emptyLike(block, isHeadingEnd ? "P" : name);
    const formats = cut(block, second, node, offset);
    structure.fill(block);
    return start(second, isHeadingEnd ? document.createElement("br") : formats);
  };

  const leaveItem = (item) => {
    lists.outdentItem(item);
    return null;
  };
  const isEmptyBlock = (block) => {
    const elements = [...block.querySelectorAll("*")];
    return lines.Blank.test(block.textContent) && elements.filter(lines.isBreak).length < 2 &&
      !elements.some((e) => dom.isAtom(e) && !lines.isBreak(e));
  };

  // The last, empty paragraph of a quote leaves it; an empty term or definition leaves its list.
  const leaveBox = (block, box) => {
    const name = ["DT", "DD"].includes(block.nodeName) ? "P" : block.nodeName;
    const rest = lists.takeBetween(block, null);
    box.after(block);
    if (rest.some(dom.isElement)) {
      const second = withoutName(box.cloneNode(false));
      block.after(second);
      second.append(...rest);
    }
    if (![...box.childNodes].some(dom.isElement) && isEmptyBlock(box))
      structure.dissolve(box);
    const now = structure.rename(block, name);
    structure.fill(now);
    return [now, 0];
  };

  const paragraphs = (line, node, offset) => {
    const before = lines.atStart(line, node, offset) && !lines.isEmpty(line);
    const marker = document.getSelection();
    let block = null;
    if (line.first) {
      structure.keepSelection(() => { block = structure.wrap(line, "p"); });
      [node, offset] = [marker.anchorNode, marker.anchorOffset];
      if (!block.contains(node))
        [node, offset] = before ? [block, 0] : [block, block.childNodes.length];
    } else {
      block = structure.wrap(line, "p");
      if (!lines.Holders.has(line.container.nodeName))
        return [block, 0]; // a place beside a table or a rule
      [node, offset] = [block, 0];
    }
    return splitBlock(lines.lineAt(node, offset), block, node, offset);
  };

  const split = (...place) => {
    const [node, offset] = lines.enter(...place);
    const line = lines.lineAt(node, offset);
    const { container } = line;
    if (lines.inPre(container))
      return preBreak(line, node, offset);
    if (["CAPTION", "LEGEND", "SUMMARY", "FIGCAPTION"].includes(container.nodeName))
      return breakAt(line, node, offset);
    const item = structure.itemOf(container);
    const inItem = item && (item === container || item === container.parentNode);
    if (inItem && isEmptyBlock(item)) {
      structure.keepSelection(() => leaveItem(item));
      return null;
    }
    if (inItem)
      return splitItem(line, item, node, offset);
    const box = container.parentNode;
    const leaves = container.nodeName === "DT" || container.nodeName === "DD" ||
      (box.nodeName === "BLOCKQUOTE" && !lists.passBlank(container, false));
    if (leaves && lines.isEmpty(line) && box.nodeName !== "BODY" && lines.coversAll(line) &&
        (dom.Paragraphs.has(container.nodeName) || container.nodeName === "DD"))
      return leaveBox(container, box);
    if (container.nodeName === "DT" || container.nodeName === "DD") {
      const name = container.nodeName === "DT" && lines.atEnd(line, node, offset) ? "DD" : container.nodeName;
      return splitBlock(line, container, node, offset, name);
    }
    if (dom.Paragraphs.has(container.nodeName))
      return splitBlock(line, container, node, offset, container.nodeName);
    return paragraphs(line, node, offset);
  };

  // The lists and whatever else is behind the place go along into the new item.
  const splitItem = (line, item, node, offset) => {
    const isFirst = lines.same(line, lines.lineAt(item, 0));
    if (isFirst && lines.atStart(line, node, offset) && !lines.isEmpty(line)) {
      const empty = emptyLike(item);
      item.before(empty);
      structure.fill(empty);
      return [node, offset];
    }
    const second = emptyLike(item);
    const formats = cut(item, second, node, offset);
    if (Headings.has(line.container.nodeName) && isEmptyBlock(second))
      second.replaceChildren();
    else if (line.container !== item && second.firstElementChild && lines.isBlockish(second.firstElementChild) &&
             isEmptyBlock(second.firstElementChild)) {
      structure.fill(second.firstElementChild);
      structure.fill(item);
      return [second.firstElementChild, 0];
    }
    structure.fill(item);
    structure.fill(second);
    const half = [...second.childNodes].find((n) => lines.shows(n));
    return half && lines.isBlockish(half) && !structure.isList(half) ? lines.caretAtStart(lines.lineAt(half, 0))
      : start(second, formats);
  };

  const preBreak = (line, node, offset) => {
    if (!dom.isText(node) || lines.atStart(line, node, offset))
      return breakAt(line, node, offset); // a parser drops a line end at the very start
    const isEnd = lines.atEnd(line, node, offset) && !node.data.endsWith("\n");
    node.insertData(offset, isEnd ? "\n\n" : "\n");
    return [node, offset + 1];
  };

  const breakAt = (line, node, offset) => {
    const ends = !lines.beside(line, node, offset, false).leaf;
    const range = document.createRange();
    range.setStart(node, offset);
    const added = document.createElement("br");
    range.insertNode(added);
    if (ends)
      added.after(document.createElement("br"));
    for (const text of [added.previousSibling, added.nextSibling])
      if (dom.isText(text) && !text.length)
        text.remove();
    const rest = added.nextSibling;
    if (dom.isText(rest) && !lines.inPre(rest))
      rest.data = rest.data.replace(/^[ \t\n\r\f]+/, "");
    return dom.isText(rest) ? [rest, 0] : [added.parentNode, dom.indexOf(added) + 1];
  };

  const enter = () => {
    history.transact(null, () => {
      const object = selection.control();
      const place = object && lines.isBlockish(object)
        ? paragraphs({ container: object.parentNode, first: null, last: null, before: object.nextSibling }, null, 0)
        : split(...deletion.makePlace());
      if (place)
        collapse(place);
      selection.scrollToCaret();
    });
    return true;
  };
  const lineBreak = () => {
    history.transact(null, () => {
      const [node, offset] = lines.enter(...deletion.makePlace());
      const line = lines.lineAt(node, offset);
      collapse(lines.inPre(line.container) ? preBreak(line, node, offset) : breakAt(line, node, offset));
      selection.scrollToCaret();
    });
    return true;
  };

  events.onInputType("insertParagraph", enter);
  events.onInputType("insertLineBreak", lineBreak);
  return {};
});
