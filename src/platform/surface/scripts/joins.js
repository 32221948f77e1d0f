// joins.js: two lines become one, and parts of the page go.
//
// Only what stands on one side of a cell's border (or that of anything else that stands alone) is ever joined; cells
// that are selected are emptied and stay. Comments at a seam, which may be the page's own code, are carried along;
// those inside of what a person selected go with it.
Surface.module("joins", ({ dom, lines, structure }) => {
  const TableParts = new Set(["TBODY", "THEAD", "TFOOT", "TR", "TD", "TH", "CAPTION", "COL", "COLGROUP"]);

  // The part of a list item that hangs below a line which leaves it.
  const moveRest = (container, target) => {
    const rest = [...container.childNodes].filter((node) => !(dom.isText(node) && lines.Blank.test(node.data)));
    if (!rest.length || !structure.isItem(container))
      return;
    if (structure.isItem(target))
      target.append(...rest);
    else if (rest.every((node) => structure.isList(node)))
      container.replaceWith(...rest.flatMap((list) => [...list.childNodes]));
  };

  // Blocks that lost all they had, from `container` up to what holds `other` too.
  const dropEmptied = (container, other) => {
    for (let e = container; e.isConnected && e !== document.body && !e.contains(other) && !lines.isWall(e);) {
      const parent = e.parentNode;
      if ([...e.childNodes].some(lines.shows) || [...e.children].some(lines.isBlockish))
        break;
      structure.dissolve(e);
      e = parent;
    }
  };

  const isParagraph = (line) => lines.coversAll(line) && !lines.isWall(line.container) &&
    (dom.Paragraphs.has(line.container.nodeName) || line.container.nodeName === "DIV");

  // The second line goes on where the first ends, in the first one's format; an empty paragraph in front of the second
  // just goes when `keepSecond`. White space at the border, which did not show, goes too unless a side is not to be
  // trimmed. Gives the place of the seam.
  const join = (first, second, { keepSecond = false, trimFirst = true, trimSecond = true }) => {
    if (keepSecond && first.container !== second.container && lines.isEmpty(first) && isParagraph(first) &&
        !structure.isItem(first.container)) {
      structure.unfill(first);
      dropEmptied(first.container, second.container);
      return lines.caretAtStart(lines.lineAt(...lines.startOf(second)));
    }
    if (trimFirst)
      structure.trimEnd(first);
    if (trimSecond)
      structure.trimStart(second);
    const last = lines.lastLeaf(first);
    if (lines.isBreak(last) && (lines.isEmpty(first) || !lines.isEmpty(second)))
      structure.removeBreak(last, first);
    if (lines.isEmpty(second))
      structure.unfill(second);
    first = first.first && first.first.isConnected && first.last.isConnected ? first
      : lines.lineAt(first.container, firstPlace(first));
    const target = first.container;
    const source = second.container;
    const nodes = lines.nodesOf(second).filter((node) => node.parentNode === source);
    structure.adapt(nodes, lines.inPre(source), lines.inPre(target));
    const moved = nodes.length ? lines.nodesOf(lines.lineAt(nodes[nodes.length - 1])) : [];
    const seam = seamOf(first);
    const anchor = first.last && first.last.parentNode === target ? first.last : null;
    if (anchor)
      anchor.after(...moved);
    else
      target.insertBefore(joined(moved), target.childNodes[firstPlace(first)] || null);
    if (source !== target) {
      moveRest(source, target);
      dropEmptied(source, target);
    }
    if (seam)
      return seam;
    const begun = moved.find((node) => node.isConnected);
    const place = begun ? lines.caretAtStart(lines.lineAt(begun, 0)) : [target, 0];
    return place;
  };
  const firstPlace = (line) => line.before && line.before.parentNode === line.container ? dom.indexOf(line.before)
    : line.container.childNodes.length && !line.before && !line.first ? line.container.childNodes.length : 0;
  const joined = (nodes) => {
    const fragment = document.createDocumentFragment();
    fragment.append(...nodes);
    return fragment;
  };
  const seamOf = (line) => {
    const leaf = lines.lastLeaf(line);
    return !leaf ? null : dom.isText(leaf) ? [leaf, leaf.length] : [leaf.parentNode, dom.indexOf(leaf) + 1];
  };

  // What the range holds, with nothing joined yet; the range ends up as a caret or across a border.
  const clear = (range) => {
    const { startContainer, startOffset, endContainer, endOffset } = range;
    const chain = (node) => { const all = new Set(); for (; node; node = node.parentNode) all.add(node); return all; };
    const [starts, ends] = [chain(startContainer), chain(endContainer)];
    const remove = (node) => {
      if (!TableParts.has(node.nodeName)) {
        if (dom.isElement(node) || !TableParts.has(node.parentNode.nodeName) || dom.Cells.has(node.parentNode.nodeName))
          node.remove();
      } else if (dom.Cells.has(node.nodeName) || node.nodeName === "CAPTION") {
        node.replaceChildren();
        structure.fill(node);
      } else {
        [...node.childNodes].forEach(remove);
      }
    };
    const visit = (node) => {
      const [hasStart, hasEnd] = [starts.has(node), ends.has(node)];
      if (!hasStart && !hasEnd) {
        remove(node);
        return;
      }
      const from = node === startContainer ? startOffset : 0;
      const to = node === endContainer ? endOffset : dom.lengthOf(node);
      if (!dom.isElement(node)) {
        if (dom.isText(node))
          node.deleteData(from, to - from);
        return;
      }
      const kids = [...node.childNodes];
      const first = hasStart && node !== startContainer ? kids.findIndex((kid) => starts.has(kid)) : from;
      const last = hasEnd && node !== endContainer ? kids.findIndex((kid) => ends.has(kid)) : to - 1;
      kids.slice(first, last + 1).forEach(visit);
    };
    visit(range.commonAncestorContainer);
  };

  // Behind a deletion: no empty inline elements, blanks that show, a line that can be typed into.
  const settle = (node, offset, spaces = true) => {
    const line = lines.lineAt(node, offset);
    let place = node;
    if (dom.isText(node) ? !node.length : !node.firstChild && !lines.isBlockish(node)) {
      const { container } = line;
      const leaf = line.first ? lines.beside(line, node, offset, true).leaf : null;
      const next = line.first ? lines.beside(line, node, offset, false).leaf : null;
      structure.prune(node);
      if (dom.isText(leaf))
        [place, offset] = [leaf, leaf.length];
      else if (leaf)
        [place, offset] = [leaf.parentNode, dom.indexOf(leaf) + 1];
      else if (next)
        [place, offset] = dom.isText(next) ? [next, 0] : [next.parentNode, dom.indexOf(next)];
      else
        [place, offset] = [container, line.first && line.first.isConnected ? dom.indexOf(line.first) : 0];
      if (!leaf && !next)
        offset = Math.min(offset, container.childNodes.length);
    }
    return settleLine(place, offset, spaces);
  };
  const settleLine = (node, offset, spaces) => {
    const line = lines.lineAt(node, offset);
    const holds = (line.first ? lines.nodesOf(line) : []).some(lines.shows);
    if (holds) {
      if (spaces)
        structure.showSpaces(node, offset);
      // A break that ends the line now showed an empty one before.
      return [node, offset];
    }
    const { container } = line;
    if (container !== document.body && (lines.Holders.has(container.nodeName) || container.nodeName === "BLOCKQUOTE")) {
      if (![...container.children].some(lines.isBlockish) || structure.isItem(container))
        structure.fill(container);
    } else if (!document.body.firstElementChild || ![...document.body.childNodes].some(lines.shows)) {
      const p = document.createElement("p");
      document.body.insertBefore(p, line.before || null);
      structure.fill(p);
      return [p, 0];
    }
    const filler = [...container.childNodes].find(lines.isBreak);
    return filler ? [container, dom.indexOf(filler)] : [node, Math.min(offset, dom.lengthOf(node))];
  };

  // Deletes what the range holds and joins what is left into the first line. `replaced`: something takes its place;
  // `inFormat`: text in the format of what was first, whose elements stay therefore, even empty. Gives the caret's place.
  const erase = (range, { replaced = false, inFormat = false } = {}) => {
    const first = lines.lineAt(range.startContainer, range.startOffset);
    let last = lines.lineAt(range.endContainer, range.endOffset);
    const whole = !lines.same(first, last) && lines.atStart(first, range.startContainer, range.startOffset) &&
      lines.atStart(last, range.endContainer, range.endOffset);
    if (whole && (replaced || lines.wallOf(first.container) !== lines.wallOf(last.container))) {
      // Whole lines are to be typed over, not the border to the next one.
      const previous = lines.neighbour(last, true);
      if (previous && previous.container)
        range.setEnd(...lines.endOf(previous));
    }
    const how = {
      keepSecond: whole && !replaced,
      trimFirst: lines.atEnd(first, range.startContainer, range.startOffset),
      trimSecond: lines.atStart(lines.lineAt(range.endContainer, range.endOffset), range.endContainer, range.endOffset),
    };
    const text = inFormat && dom.isText(range.startContainer) ? range.startContainer : null;
    clear(range);
    if (range.endContainer !== range.startContainer)
      structure.prune(range.endContainer);
    if (!text)
      structure.prune(range.startContainer);
    let place = [range.startContainer, range.startOffset];
    const from = lines.lineAt(...place);
    const to = lines.lineAt(range.endContainer, range.endOffset);
    if (!lines.same(from, to)) {
      if (lines.wallOf(from.container) === lines.wallOf(to.container))
        place = join(from, to, how);
      else
        settle(range.endContainer, range.endOffset);
    }
    return text && text.isConnected ? [text, Math.min(range.startOffset, text.length)] : settle(...place, !replaced);
  };

  return { join, erase, settle };
});
