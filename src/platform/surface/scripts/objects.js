// objects.js: what of a page is selected as a whole: what counts as such, what is under the mouse, and taking it out.
Surface.module("objects", ({ history, selection, dom, commands, overlay }) => {
  const Media = "img,object,embed,applet,iframe,video,audio,canvas,svg";
  const Fields = "input,select,textarea,button,meter,progress";
  const Kinds = Media + "," + Fields + ",hr";
  const LetThrough = "iframe,object,embed,applet,video,audio"; // take no mouse (view.js), so they are found by place
  const TableEdge = 4, PositionedEdge = 6; // pixels

  const isKind = (element, kinds) => dom.isElement(element) && element.matches(kinds);
  const isPositioned = (element) => element.hasAttribute("style") && !!element.style &&
    /^(absolute|fixed)$/.test(element.style.position);
  // The page's style sheets may say it too; only for one element at a time, on a click or a command.
  const isPositionedNow = (element) => isPositioned(element) ||
    /^(absolute|fixed)$/.test(getComputedStyle(element).position);
  const isLocked = (element) => /^true$/i.test(element.getAttribute("design_time_lock") || "");

  const holds = (rect, x, y, margin = 0) => x >= rect.left - margin && x < rect.right + margin &&
    y >= rect.top - margin && y < rect.bottom + margin;
  const isOver = (element, x, y) => [...element.getClientRects()].some((rect) => holds(rect, x, y));
  const isAtEdge = (element, x, y, margin) => {
    const rect = element.getBoundingClientRect();
    return holds(rect, x, y, 1) && !holds(rect, x, y, -margin);
  };

  const imageOfArea = (area, x, y) => {
    const map = area.closest("map");
    const name = map && "#" + map.name;
    return !name ? null : [...document.querySelectorAll("img[usemap],input[usemap],object[usemap]")]
      .find((image) => image.getAttribute("usemap") === name && isOver(image, x, y)) || null;
  };

  // Parts of a field or drawing stand for the whole of it.
  const wholeOf = (element, x, y) => {
    if (element.nodeName === "AREA")
      return imageOfArea(element, x, y);
    let found = element.closest("button,select,object") || element.closest(Kinds);
    while (found && found.nodeName.toLowerCase() === "svg" && found.parentElement.closest("svg"))
      found = found.parentElement.closest("svg");
    return found;
  };

  const isOnText = (x, y) => {
    const place = document.caretRangeFromPoint(x, y);
    if (!place || !dom.isText(place.startContainer))
      return false;
    const near = document.createRange();
    near.setStart(place.startContainer, Math.max(0, place.startOffset - 1));
    near.setEnd(place.startContainer, Math.min(place.startContainer.length, place.startOffset + 1));
    return [...near.getClientRects()].some((rect) => holds(rect, x, y));
  };

  // Text that reaches the edge of a table is text; a layer has nothing but its edge to be taken by.
  const edgeOf = (target, x, y) => dom.closest(target, (e) =>
    e.nodeName === "TABLE"
      ? e === target || (target.matches("tr,tbody,thead,tfoot") && target.closest("table") === e) ||
        (isAtEdge(e, x, y, TableEdge) && !isOnText(x, y))
      : isAtEdge(e, x, y, PositionedEdge) && isPositionedNow(e));

  // What was sent below the text is reached where no text covers it; the engine finds the body first.
  const belowText = (x, y) => document.elementsFromPoint(x, y)
    .find((e) => e.style && parseInt(e.style.zIndex, 10) < 0 && isPositioned(e) && !isOnText(x, y)) || null;

  // The object at a place of the window, or null where a click means the text.
  const at = (x, y) => {
    const target = overlay.elementAt(x, y);
    if (!target || !document.body || !document.body.contains(target))
      return null;
    const found = wholeOf(target, x, y) ||
      [...document.body.querySelectorAll(LetThrough)].reverse().find((e) => isOver(e, x, y)) ||
      edgeOf(target, x, y) || belowText(x, y);
    return found && found !== document.body ? found : null;
  };

  const caretTo = (node, offset) => {
    history.close();
    document.getSelection().collapse(node, offset);
  };
  const caretBefore = (element) => caretTo(element.parentNode, dom.indexOf(element));
  const caretBehind = (element) => caretTo(element.parentNode, dom.indexOf(element) + 1);

  // The object with the inline elements around it that hold nothing else: the link of a picture, its font. A bookmark
  // means something without content, and a comment may be server-side code.
  const withWrappers = (element) => {
    let whole = element.parentNode.nodeName === "PICTURE" ? element.parentNode : element;
    for (let parent = whole.parentNode; dom.isElement(parent) && !dom.isBlock(parent) && !dom.isAtom(parent) &&
         !parent.id && !parent.hasAttribute("name") &&
         [...parent.childNodes].every((n) => n === whole || (dom.isText(n) && !n.length)); parent = parent.parentNode)
      whole = parent;
    return whole;
  };

  // An empty line needs something to stand on.
  const fill = (block) => {
    if (block !== document.body && dom.isBlock(block) && dom.isEmpty(block) && !block.matches("table,tbody,thead,tfoot,tr"))
      block.append(document.createElement("br"));
  };

  // Takes `element` out; gives where it stood as [node, offset].
  const extract = (element) => {
    const whole = withWrappers(element);
    const parent = whole.parentNode;
    const place = dom.indexOf(whole);
    whole.remove();
    if (![...parent.childNodes].some((n) => dom.isElement(n)))
      fill(parent);
    return [parent, place];
  };

  const remove = (element) => history.transact(null, () => {
    document.getSelection().collapse(...extract(element));
    selection.scrollToCaret();
  });

  const deleteText = commands.row("delete");
  commands.add("delete", {
    run: (argument) => selection.control() ? remove(selection.control()) : deleteText.run(argument),
    status: deleteText.status,
  });

  return { Media, Fields, isKind, isPositioned, isPositionedNow, isLocked, at, caretBefore, caretBehind,
           withWrappers, extract, remove };
});
