// lines.js: the lines of text that a page is made of, and small steps on them.
//
// A line is what stands between two block borders: all that a P or a heading holds, or a run of inline nodes in a cell,
// a list item, the body. It is written { container, first, last }: the children of the container from first to last.
// A place without a node has both null and `before`, the child that it stands in front of (null: at the end).
Surface.module("lines", ({ dom }) => {
  const blockNames = [...dom.Blocks].join(",");
  // Blocks that are a line, an empty one, even when nothing is in them.
  const Holders = new Set([...dom.Paragraphs, ...dom.Cells, "LI", "DD", "DIV", "CAPTION", "LEGEND", "FIGCAPTION", "SUMMARY"]);
  const Preformatted = new Set(["PRE", "LISTING", "XMP", "PLAINTEXT"]);
  const Blank = /^[ \t\n\r\f]*$/;

  const side = (node, back) => back ? node.previousSibling : node.nextSibling;
  const isRule = (node) => node.nodeName === "HR";
  const isHidden = (element) => element.nodeName === "INPUT" && element.type === "hidden";
  const isBreak = (node) => !!node && node.nodeName === "BR";

  // A block, or one of those inline elements that old pages put around blocks.
  const isBlockish = (node) => dom.isElement(node) && !dom.Unseen.has(node.nodeName) && (dom.isBlock(node) ||
    (!!node.firstElementChild && !dom.isAtom(node) && !!node.querySelector(blockNames)));
  const inPre = (node) => !!dom.closest(node, (e) => Preformatted.has(e.nodeName));
  const isContainer = (node) => node === document.body || isBlockish(node);

  // Nothing joins across these: cells above all. What is positioned by its style stands alone as well.
  const isWall = (e) => dom.Cells.has(e.nodeName) || e.nodeName === "CAPTION" || e.nodeName === "TABLE" ||
    e.nodeName === "LEGEND" || /position\s*:\s*(absolute|fixed)/i.test(dom.isElement(e) && e.getAttribute("style") || "");
  const wallOf = (node) => dom.closest(node, isWall) || document.body;

  const showsText = (text, from = 0, to = text.length) =>
    from < to && (!Blank.test(text.data.slice(from, to)) || inPre(text));
  const shows = (node) => dom.isText(node) ? showsText(node)
    : dom.isElement(node) && !dom.Unseen.has(node.nodeName) &&
      (dom.isAtom(node) ? !isHidden(node) : [...node.childNodes].some(shows));

  const nodesOf = (line) => {
    const nodes = [];
    for (let n = line.first; n; n = n === line.last ? null : n.nextSibling)
      nodes.push(n);
    return nodes;
  };

  const runAround = (node) => {
    let first = node;
    let last = node;
    while (first.previousSibling && !isBlockish(first.previousSibling))
      first = first.previousSibling;
    while (last.nextSibling && !isBlockish(last.nextSibling))
      last = last.nextSibling;
    return { container: node.parentNode, first, last };
  };
  const coversAll = ({ container, first, last }) => first === container.firstChild && last === container.lastChild;
  const isLine = (line) => (Holders.has(line.container.nodeName) && coversAll(line)) || nodesOf(line).some(shows);

  // From a place between blocks into the block that it touches; tables and rules have no line of ours to go to.
  const enter = (node, offset) => {
    const opens = (n) => isBlockish(n) && !isRule(n) && n.nodeName !== "TABLE";
    while (isContainer(node)) {
      const child = node.childNodes[offset];
      const before = node.childNodes[offset - 1];
      if (child && opens(child) && !(before && !isBlockish(before) && shows(before)))
        [node, offset] = [child, 0];
      else if (!child && before && opens(before))
        [node, offset] = [before, before.childNodes.length];
      else
        break;
    }
    return [node, offset];
  };

  const lineAt = (givenNode, givenOffset = 0) => {
    const [node, offset] = enter(givenNode, givenOffset);
    let child = node;
    if (isContainer(node)) {
      const [next, previous] = [node.childNodes[offset], node.childNodes[offset - 1]];
      child = next && !isBlockish(next) ? next : previous && !isBlockish(previous) ? previous : null;
      if (!child)
        return { container: node, first: null, last: null, before: next || null };
    }
    while (!isContainer(child.parentNode))
      child = child.parentNode;
    return runAround(child);
  };
  const same = (a, b) => a.container === b.container && a.first === b.first && (!!a.first || a.before === b.before);

  // The next line in the page, or { object } where a rule comes first; null at the end of the body.
  const neighbour = (line, back) => {
    let parent = line.container;
    let node = line.first ? side(back ? line.first : line.last, back)
      : !back ? line.before : line.before ? line.before.previousSibling : parent.lastChild;
    for (;;) {
      if (!node) {
        if (parent === document.body || !parent.parentNode)
          return null;
        [node, parent] = [side(parent, back), parent.parentNode];
      } else if (isRule(node)) {
        return { object: node };
      } else if (!isBlockish(node)) {
        const run = runAround(node);
        if (isLine(run))
          return run;
        node = side(back ? run.first : run.last, back);
      } else if (!node.firstChild) {
        if (Holders.has(node.nodeName))
          return { container: node, first: null, last: null, before: null };
        node = side(node, back);
      } else {
        [parent, node] = [node, back ? node.lastChild : node.firstChild];
      }
    }
  };

  const deepest = (node, back) => {
    while (dom.isElement(node) && node.firstChild && !dom.isAtom(node) && !dom.Unseen.has(node.nodeName))
      node = back ? node.lastChild : node.firstChild;
    return node;
  };
  const nextLeaf = (line, node, back) => {
    while (node.parentNode !== line.container && !side(node, back))
      node = node.parentNode;
    const next = side(node, back);
    return !next || (node.parentNode === line.container && isBlockish(next)) ? null : deepest(next, back);
  };

  // What shows next to a place of its line: { leaf, spaces }; leaf is a text or an atom, null at the border, and spaces
  // are the stretches [text, from, to] of white space passed on the way.
  const beside = (line, node, offset, back) => {
    const spaces = [];
    const isShown = (leaf, from, to) => {
      if (!dom.isText(leaf))
        return dom.isAtom(leaf) && !isHidden(leaf);
      if (showsText(leaf, from, to))
        return true;
      if (from < to)
        spaces.push([leaf, from, to]);
      return false;
    };
    if (!line.container.contains(node))
      [node, offset] = enter(node, offset); // as lineAt does
    let leaf = null;
    if (dom.isText(node)) {
      if (back ? isShown(node, 0, offset) : isShown(node, offset, node.length))
        return { leaf: node, spaces };
      leaf = nextLeaf(line, node, back);
    } else if (node.childNodes[back ? offset - 1 : offset]) {
      const child = node.childNodes[back ? offset - 1 : offset];
      leaf = node === line.container && isBlockish(child) ? null : deepest(child, back);
    } else if (node !== line.container) {
      leaf = nextLeaf(line, node, back);
    }
    while (leaf && !isShown(leaf, 0, dom.lengthOf(leaf)))
      leaf = nextLeaf(line, leaf, back);
    return { leaf, spaces };
  };
  const atStart = (line, node, offset) => !line.first || !beside(line, node, offset, true).leaf;
  // A break that ends a line shows nothing of its own.
  const atEnd = (line, node, offset) => {
    const leaf = line.first && beside(line, node, offset, false).leaf;
    return !leaf || (isBreak(leaf) && !nextShown(line, leaf));
  };
  const nextShown = (line, leaf) => beside(line, leaf.parentNode, dom.indexOf(leaf) + 1, false).leaf;

  const startOf = (line) => line.first ? [line.container, dom.indexOf(line.first)]
    : [line.container, line.before ? dom.indexOf(line.before) : line.container.childNodes.length];
  const endOf = (line) => line.last ? [line.container, dom.indexOf(line.last) + 1] : startOf(line);
  const firstLeaf = (line) => line.first ? beside(line, ...startOf(line), false).leaf : null;
  const lastLeaf = (line) => line.first ? beside(line, ...endOf(line), true).leaf : null;
  const isEmpty = (line) => !line.first || atEnd(line, ...startOf(line));

  // Where typing would go on: inside a text rather than beside it.
  const caretAtStart = (line) => {
    const leaf = firstLeaf(line);
    if (!leaf)
      return startOf(line);
    return dom.isText(leaf) ? [leaf, inPre(leaf) ? 0 : leaf.data.search(/[^ \t\n\r\f]/)] : [leaf.parentNode, dom.indexOf(leaf)];
  };

  const isBehind = (node, other) => !!(other.compareDocumentPosition(node) & Node.DOCUMENT_POSITION_FOLLOWING);

  // All lines that the range touches. One that it merely ends in front of is not meant: a triple click ends so.
  const linesIn = (range) => {
    const last = lineAt(range.endContainer, range.endOffset);
    const lines = [];
    let line = lineAt(range.startContainer, range.startOffset);
    while (line) {
      if (line.container) {
        if (!same(line, last) && isBehind(line.first || line.container, last.first || last.container) &&
            !line.container.contains(last.container))
          break;
        lines.push(line);
        if (same(line, last))
          break;
      }
      line = line.object ? neighbour({ container: line.object.parentNode, first: line.object, last: line.object }, false)
        : neighbour(line, false);
    }
    if (lines.length > 1 && !range.collapsed && atStart(last, range.endContainer, range.endOffset))
      lines.pop();
    return lines;
  };

  // Text that stands bare between blocks has its lines ended by breaks; a paragraph is one line whatever it holds.
  const piecesOf = (line) => {
    if (!line.first || dom.Paragraphs.has(line.container.nodeName))
      return [line];
    const pieces = [];
    let first = null;
    for (const node of nodesOf(line)) {
      if (isBreak(node)) {
        if (first)
          pieces.push({ container: line.container, first, last: node.previousSibling, end: node });
        first = null;
      } else {
        first = first || node;
      }
    }
    if (first)
      pieces.push({ container: line.container, first, last: line.last, end: null });
    const shown = pieces.filter((piece) => nodesOf(piece).some(shows));
    return shown.length ? shown : [line];
  };
  // The same as linesIn, bare text by its visible lines.
  const piecesIn = (range) => linesIn(range).flatMap((line) => {
    const pieces = piecesOf(line);
    const touched = pieces.filter(({ first, last }) => !first || (
      range.comparePoint(first.parentNode, dom.indexOf(first)) <= 0 &&
      range.comparePoint(last.parentNode, dom.indexOf(last) + 1) >= 0));
    return pieces.length === 1 ? pieces : touched;
  });

  return { Holders, Blank, isBlockish, isBreak, isWall, wallOf, inPre, shows, nodesOf, enter, lineAt, same, neighbour, beside,
           atStart, atEnd, startOf, endOf, firstLeaf, lastLeaf, isEmpty, caretAtStart, linesIn, piecesIn,
           coversAll };
});
