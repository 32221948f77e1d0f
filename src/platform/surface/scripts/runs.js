// runs.js: the stretches of inline content that a range holds, and steps on them that leave the tree tidy.
//
// A run is an array of siblings that can be wrapped by one inline element: no block in it, never the white space between
// rows or list items. Everything here walks from the first leaf to the last once and asks for no layout.
Surface.module("runs", ({ dom }) => {
  // What stands directly in these, beside their parts, is white space that belongs to nothing.
  const NoText = new Set(["TABLE", "THEAD", "TBODY", "TFOOT", "TR", "COLGROUP", "UL", "OL", "DIR", "MENU", "DL", "SELECT",
    "OPTGROUP", "FRAMESET", "HTML", "HEAD"]);
  const Blank = /^[ \t\n\r\f]*$/;

  const isClosed = (node) => dom.isElement(node) && (dom.isAtom(node) || dom.Unseen.has(node.nodeName));
  const isBlank = (text) => Blank.test(text.data);
  const hasText = (node) => dom.isText(node) ? !isBlank(node)
    : dom.isElement(node) && !isClosed(node) && [...node.childNodes].some(hasText);
  const keepsSpace = (node) => !!dom.closest(node, (e) => e.nodeName === "PRE" || e.nodeName === "LISTING" || e.nodeName === "XMP");

  const deepest = (node, child) => {
    while (node[child] && !isClosed(node))
      node = node[child];
    return node;
  };
  const beside = (node, sibling, child) => {
    for (let n = node; n && n !== document.body; n = n.parentNode)
      if (n[sibling])
        return deepest(n[sibling], child);
    return null;
  };
  const leafAfter = (node) => beside(node, "nextSibling", "firstChild");
  const leafBefore = (node) => beside(node, "previousSibling", "lastChild");

  // First and last leaf of a range, text split where the range ends inside it; null when it holds nothing.
  const leaves = (range) => {
    let last = range.endContainer;
    if (dom.isText(last)) {
      if (range.endOffset === 0)
        last = leafBefore(last);
      else if (range.endOffset < last.length)
        last.splitText(range.endOffset);
    } else {
      const child = last.childNodes[range.endOffset - 1];
      last = child ? deepest(child, "lastChild") : leafBefore(last);
    }
    let first = range.startContainer;
    if (dom.isText(first)) {
      if (range.startOffset === first.length) {
        first = leafAfter(first);
      } else if (range.startOffset > 0) {
        const tail = first.splitText(range.startOffset);
        if (last === first)
          last = tail;
        first = tail;
      }
    } else {
      const child = first.childNodes[range.startOffset];
      first = child ? deepest(child, "firstChild") : leafAfter(first);
    }
    if (!first || !last || (first !== last && !(first.compareDocumentPosition(last) & Node.DOCUMENT_POSITION_FOLLOWING)))
      return null;
    return { first, last };
  };

  // The ancestors of a leaf up to `top`, each with its child on the way; `open` are those that hold more on this side.
  const pathOf = (leaf, top, sibling) => {
    const children = new Map();
    const open = new Set();
    let more = false;
    for (let n = leaf; n !== top; n = n.parentNode) {
      more = more || !!n[sibling];
      children.set(n.parentNode, n);
      if (more)
        open.add(n.parentNode);
    }
    return { children, open };
  };

  // A run from which the ends that show no text are taken, and white space at the edge of a block.
  const trimmed = (run, counts) => {
    while (run.length && !counts(run[0]))
      run.shift();
    while (run.length && !counts(run[run.length - 1]))
      run.pop();
    if (!run.length || keepsSpace(run[0]))
      return run;
    const isEdge = (node, sibling) =>
      node[sibling] ? dom.isBlock(node[sibling]) || node[sibling].nodeName === "BR" : dom.isBlock(node.parentNode);
    const head = run[0];
    if (dom.isText(head) && isEdge(head, "previousSibling")) {
      const at = head.data.search(/[^ \t\n\r\f]/);
      if (at > 0)
        run[0] = head.splitText(at);
    }
    const tail = run[run.length - 1];
    if (dom.isText(tail) && isEdge(tail, "nextSibling")) {
      const rest = /[ \t\n\r\f]+$/.exec(tail.data);
      if (rest && rest.index > 0)
        tail.splitText(rest.index);
    }
    return run;
  };

  // All runs between two leaves, and the elements around them that lie wholly between as well. `parts` tells of an
  // inline element that no wrapper is to stand around, `counts` of what a run has to begin and end with.
  const collect = (first, last, { parts = () => false, counts = first === last ? () => true : hasText } = {}) => {
    let top = first.parentNode;
    while (!top.contains(last))
      top = top.parentNode;
    // A style around all of it is within reach.
    for (let e = top; !dom.isBlock(e) && !parts(e) && deepest(e, "firstChild") === first && deepest(e, "lastChild") === last;
      e = e.parentNode)
      if (e.hasAttribute("style"))
        top = e.parentNode;
    const from = pathOf(first, top, "previousSibling");
    const to = pathOf(last, top, "nextSibling");
    const runs = [];
    const entered = [];
    let run = [];
    const flush = () => {
      const whole = run.length ? trimmed(run, counts) : run;
      if (whole.length)
        runs.push(whole);
      run = [];
    };
    const isWhole = (node) => !from.open.has(node) && !to.open.has(node);
    const isInline = (node) => !dom.isElement(node) || isClosed(node) && !dom.isBlock(node) ||
      !dom.isBlock(node) && !parts(node) && ![...node.getElementsByTagName("*")].some((e) => dom.isBlock(e) || parts(e));
    const visit = (parent) => {
      const end = to.children.get(parent) || parent.lastChild;
      for (let node = from.children.get(parent) || parent.firstChild; node; node = node === end ? null : node.nextSibling) {
        const whole = isWhole(node);
        if (whole && isInline(node)) {
          if (!NoText.has(parent.nodeName))
            run.push(node);
          continue;
        }
        flush();
        if (isClosed(node))
          continue;
        if (whole)
          entered.push(node);
        visit(node);
        flush();
      }
      flush();
    };
    visit(top);
    return { runs, entered };
  };

  // Text nodes that became neighbours are joined at the end of a change, when nobody holds on to them any more.
  let seams = [];
  const unwrap = (element) => {
    seams.push(element.firstChild, element.lastChild);
    dom.unwrap(element);
  };
  const wrap = (run, element) => {
    run[0].before(element);
    element.append(...run);
    return element;
  };

  const sameAttributes = (a, b) => a.attributes.length === b.attributes.length && !a.id &&
    [...a.attributes].every(({ name, value }) => b.getAttribute(name) === value);
  const isTwin = (a, b) => dom.isElement(a) && dom.isElement(b) && a.nodeName === b.nodeName && sameAttributes(a, b);

  // An element becomes one with equal neighbours.
  const mergeTwins = (element) => {
    const before = element.previousSibling;
    if (isTwin(before, element)) {
      seams.push(element.firstChild);
      before.append(...element.childNodes);
      element.remove();
      element = before;
    }
    const after = element.nextSibling;
    if (isTwin(element, after)) {
      seams.push(after.firstChild);
      element.append(...after.childNodes);
      after.remove();
    }
    return element;
  };

  // Takes an element away around what lies between two leaves; the rest of its content gets copies of it. What lies
  // between gets copies of `kept`, if that is given.
  const pushDown = (element, first, last, kept) => {
    const start = deepest(element, "firstChild");
    const end = deepest(element, "lastChild");
    const from = element.contains(first) ? first : start;
    const to = element.contains(last) ? last : end;
    let named = false;
    const wrapAll = (runs, wrapper) => {
      for (const run of runs) {
        const copy = wrap(run, wrapper.cloneNode(false));
        if (named)
          copy.removeAttribute("id");
        named = true;
      }
    };
    if (from !== start)
      wrapAll(collect(start, leafBefore(from)).runs, element);
    if (kept)
      wrapAll(collect(from, to).runs, kept);
    if (to !== end)
      wrapAll(collect(leafAfter(to), end).runs, element);
    unwrap(element);
  };

  const join = (text, points) => {
    if (!dom.isText(text) || !text.isConnected)
      return;
    while (dom.isText(text.previousSibling))
      text = text.previousSibling;
    for (let next; dom.isText(next = text.nextSibling);) {
      for (const point of points)
        if (point.node === next) {
          point.node = text;
          point.offset += text.length;
        }
      text.appendData(next.data);
      next.remove();
    }
  };

  const joinSeams = (points) => {
    for (const seam of seams)
      join(seam, points);
    seams = [];
  };
  const placeOf = ({ node, offset }) =>
    dom.isText(node) || !node.parentNode ? [node, offset] : [node.parentNode, dom.indexOf(node) + offset];

  // Runs `change(first, last)` on the two leaves of a range; gives the range that covers the same content afterwards.
  const edit = (range, change) => {
    const ends = leaves(range);
    if (!ends)
      return range;
    seams = [ends.first, ends.last, ends.last.nextSibling];
    change(ends.first, ends.last);
    const start = { node: ends.first, offset: 0 };
    const end = { node: ends.last, offset: dom.isText(ends.last) ? ends.last.length : 1 };
    joinSeams([start, end]);
    const covered = document.createRange();
    covered.setStart(...placeOf(start));
    covered.setEnd(...placeOf(end));
    return covered;
  };

  // Runs `change`, which only unwraps and renames, with the selection at the same leaves afterwards.
  const keepSelection = (change) => {
    const s = document.getSelection();
    const pointOf = (node, offset) => {
      if (dom.isText(node) || !node.firstChild)
        return { node, offset };
      const before = node.childNodes[offset - 1];
      const leaf = before ? deepest(before, "lastChild") : deepest(node, "firstChild");
      return { node: leaf, offset: !before ? 0 : dom.isText(leaf) ? leaf.length : 1 };
    };
    const points = [pointOf(s.anchorNode, s.anchorOffset), pointOf(s.focusNode, s.focusOffset)];
    seams = [];
    change();
    joinSeams(points);
    s.setBaseAndExtent(...placeOf(points[0]), ...placeOf(points[1]));
  };

  // The first node between the ends of a range that the test likes, or null.
  const find = (range, test) => {
    const { startContainer: from, startOffset, endContainer: to, endOffset } = range;
    const after = (node) => {
      while (node && !node.nextSibling)
        node = node.parentNode;
      return node && node.nextSibling;
    };
    const stop = dom.isText(to) ? after(to) : to.childNodes[endOffset] || after(to);
    let node = dom.isText(from) ? from : from.childNodes[startOffset] || after(from);
    while (node && node !== stop) {
      if (test(node))
        return node;
      node = node.firstChild && !isClosed(node) ? node.firstChild : after(node);
    }
    return null;
  };

  // The text nodes of a range that show something, `limit` at most.
  const texts = (range, limit = Infinity) => {
    const found = [];
    const { startContainer: from, startOffset, endContainer: to, endOffset } = range;
    find(range, (node) => {
      if (dom.isText(node) &&
          !Blank.test(node.data.slice(node === from ? startOffset : 0, node === to ? endOffset : undefined)))
        found.push(node);
      return found.length >= limit;
    });
    return found;
  };

  return { edit, keepSelection, collect, pushDown, wrap, unwrap, mergeTwins, hasText, find, texts };
});
