// splitting.js: elements parted at a place, without losing what stands in them.
//
// A place is { parent, next }: in `parent`, in front of its child `next`, or at its end when that is null.
Surface.module("splitting", ({ dom }) => {
  // Elements that are nothing without content.
  const Shells = new Set(("P H1 H2 H3 H4 H5 H6 PRE LISTING ADDRESS LI DT DD A ABBR ACRONYM B BDI BDO BIG CITE CODE DEL DFN EM " +
    "FONT I INS KBD LABEL MARK NOBR Q S SAMP SMALL SPAN STRIKE STRONG SUB SUP TT U VAR").split(" "));
  const Structure = new Set(["TABLE", "TBODY", "THEAD", "TFOOT", "TR", "COLGROUP"]);

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

  return { Structure, isHollow, joinTexts, placeAt, rise, placeholderOf };
});
