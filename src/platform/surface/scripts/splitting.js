// splitting.js: elements parted at a place and joined over a deleted stretch, without losing what stands in them.
//
// A place is { parent, next }: in `parent`, in front of its child `next`, or at its end when that is null.
Surface.module("splitting", ({ dom }) => {
  // Elements that are nothing without content.
  const Shells = new Set(("P H1 H2 H3 H4 H5 H6 PRE LISTING ADDRESS LI DT DD A ABBR ACRONYM B BDI BDO BIG CITE CODE DEL DFN EM " +
    "FONT I INS KBD LABEL MARK NOBR Q S SAMP SMALL SPAN STRIKE STRONG SUB SUP TT U VAR").split(" "));
  const Structure = new Set(["TABLE", "TBODY", "THEAD", "TFOOT", "TR", "COLGROUP"]);
  const Lists = "ul,ol,menu,dir,dl";

  // Whether no reader and no server would miss it: a comment may stand for code, a name may be a target.
  const isHollow = (node) => {
    if (dom.isText(node))
      return !/[^ \t\n\r\f]/.test(node.data);
    if (!dom.isElement(node) || !Shells.has(node.nodeName) || node.id || (node.nodeName === "A" && node.name))
      return false;
    for (let child = node.firstChild; child; child = child.nextSibling)
      if (!isHollow(child))
        return false;
    return true;
  };
  const hollowFrom = (node) => {
    for (; node; node = node.nextSibling)
      if (!isHollow(node))
        return false;
    return true;
  };
  const hollowUpTo = (parent, end) => {
    for (let node = parent.firstChild; node !== end; node = node.nextSibling)
      if (!isHollow(node))
        return false;
    return true;
  };

  // Text nodes that meet become one, as they are when the page is read again.
  const joinTexts = (left, right) => {
    if (!dom.isText(left) || !dom.isText(right) || left.nextSibling !== right)
      return;
    left.appendData(right.data);
    right.remove();
  };

  const placeAt = (node, offset) => {
    if (!dom.isText(node))
      return { parent: node, next: node.childNodes[offset] || null };
    if (!node.length) {
      const place = { parent: node.parentNode, next: node.nextSibling };
      node.remove();
      return place;
    }
    return { parent: node.parentNode,
             next: offset === 0 ? node : offset === node.length ? node.nextSibling : node.splitText(offset) };
  };

  // The second half of a split element: names and ids stand only once in a page.
  const secondHalf = (element) => {
    const half = element.cloneNode(false);
    half.removeAttribute("id");
    if (element.nodeName === "A")
      half.removeAttribute("name");
    return half;
  };

  // The place outside of `top` that corresponds to a place in it. What has content on both sides is split; an element
  // that is left with nothing goes.
  const rise = ({ parent, next }, top) => {
    for (;;) {
      const element = parent;
      const before = hollowUpTo(element, next);
      const after = hollowFrom(next);
      parent = element.parentNode;
      if (before && after && isHollow(element)) {
        next = element.nextSibling;
        element.remove();
      } else if (before) {
        next = element;
      } else if (after) {
        next = element.nextSibling;
      } else {
        const half = secondHalf(element);
        const anchor = half.nodeName === "A" && !half.attributes.length;
        const rest = [];
        for (let node = next; node; node = node.nextSibling)
          rest.push(node);
        next = anchor ? rest[0] : half;
        element.after(...(anchor ? rest : [half]));
        if (!anchor)
          half.append(...rest);
      }
      if (element === top)
        return { parent, next };
    }
  };

  // The line break that keeps an empty block open, if that is all there is in it.
  const placeholderOf = (block) => {
    const breaks = block.getElementsByTagName("br");
    if (breaks.length !== 1 || breaks[0].attributes.length)
      return null;
    const only = (node) => node === breaks[0] || isHollow(node) ||
      (node.contains(breaks[0]) && Shells.has(node.nodeName) && [...node.childNodes].every(only));
    return [...block.childNodes].every(only) ? breaks[0] : null;
  };

  // ---- deleting -------------------------------------------------------------------------------------------------------

  const part = (fromNode, fromOffset, toNode, toOffset) => {
    const range = document.createRange();
    range.setStart(fromNode, fromOffset);
    range.setEnd(toNode, toOffset);
    return range;
  };

  // The outermost cell around `node` that does not hold `other`.
  const cellApart = (node, other) => {
    let found = null;
    for (let e = dom.elementOf(node); e && !e.contains(other); e = e.parentElement)
      if (dom.Cells.has(e.nodeName))
        found = e;
    return found;
  };
  const cellsOf = (table) => [...table.rows].flatMap((row) => [...row.cells]);

  const clearCells = (range, first, last) => {
    const table = (first || last).closest("table");
    const cells = cellsOf(table);
    const from = first ? cells.indexOf(first) : 0;
    const to = last ? cells.indexOf(last) : cells.length - 1;
    for (const cell of cells.slice(from, to + 1)) {
      const inside = part(cell, 0, cell, cell.childNodes.length);
      if (cell === first)
        inside.setStart(range.startContainer, range.startOffset);
      if (cell === last)
        inside.setEnd(range.endContainer, range.endOffset);
      inside.deleteContents();
    }
    return table;
  };

  // A table that the range does not hold as a whole keeps its cells and loses what is in them.
  const deleteAcrossCells = (range, first, last) => {
    const whole = range.cloneRange();
    if (first && last && first.closest("table") === last.closest("table")) {
      clearCells(whole, first, last);
      return;
    }
    const between = range.cloneRange();
    if (first)
      between.setStartAfter(clearCells(whole, first, null));
    if (last)
      between.setEndBefore(clearCells(whole, null, last));
    if (!between.collapsed)
      between.deleteContents();
  };

  const dropEmptied = (element, top) => {
    while (element && element !== top && element !== document.body && top.contains(element) &&
           (isHollow(element) || (element.matches(Lists) && hollowFrom(element.firstChild)))) {
      const parent = element.parentElement;
      element.remove();
      element = parent;
    }
  };

  // What is left of the last block goes to the end of the first.
  const joinBlocks = (first, last, top) => {
    if (first === last || !first.isConnected || !last.isConnected || last.contains(first) || Structure.has(last.nodeName) ||
        dom.Cells.has(last.nodeName) || last === document.body)
      return;
    let block = last.firstChild;
    while (block && !dom.isBlock(block))
      block = block.nextSibling;
    const line = [];
    for (let node = last.firstChild; node !== block; node = node.nextSibling)
      line.push(node);
    if (first.contains(last))
      last.before(...line);
    else
      first.append(...line);
    dropEmptied(last, top);
  };

  // Deletes what the range holds and joins the blocks at its ends; the range is then a place in the first.
  const deleteRange = (range) => {
    const { startContainer, startOffset, endContainer } = range;
    const first = cellApart(startContainer, endContainer);
    const last = cellApart(endContainer, startContainer);
    if (first || last) {
      deleteAcrossCells(range, first, last);
    } else {
      const top = dom.elementOf(range.commonAncestorContainer);
      const from = dom.blockOf(startContainer);
      const to = dom.blockOf(endContainer);
      range.deleteContents();
      joinBlocks(from, to, top);
    }
    range.setStart(startContainer, startOffset);
    range.collapse(true);
  };

  return { Structure, isHollow, joinTexts, placeAt, rise, placeholderOf, deleteRange };
});
