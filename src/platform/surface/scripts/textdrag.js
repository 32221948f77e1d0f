// textdrag.js: an object in the line, dragged to another place in the text.
Surface.module("textdrag", ({ history, dom, objects, handles, drags, overlay }) => {
  const isInLine = (element) => dom.isAtom(element) && element.nodeName !== "HR";
  const NoText = "table,tbody,thead,tfoot,tr,colgroup,ul,ol,dl,select,textarea,button,object,iframe,svg,video,audio," +
    "script,style,title";

  // The place in the text nearest to one of the window, or null where the object must not go.
  const placeAt = (whole, x, y) => {
    const place = document.caretRangeFromPoint(x, y);
    const container = place && dom.elementOf(place.startContainer);
    if (!container || !document.body.contains(container) || container.matches(NoText) ||
        container.closest("button,select,textarea,object,svg"))
      return null;
    // Beside itself it is where it was.
    if (whole && whole.contains(container))
      return null;
    if (whole && place.startContainer === whole.parentNode &&
        (place.startOffset === dom.indexOf(whole) || place.startOffset === dom.indexOf(whole) + 1))
      return null;
    return place;
  };

  const lineAt = (place) => {
    const rects = place.getClientRects();
    if (rects.length)
      return rects[0];
    const node = place.startContainer.childNodes[place.startOffset] || dom.elementOf(place.startContainer);
    return dom.isElement(node) ? node.getBoundingClientRect() : null;
  };

  const start = (event, element) => {
    const whole = objects.withWrappers(element);
    let place = null;
    const end = () => {
      handles.drawNothing();
      overlay.cursor(null);
    };
    drags.start(event, {
      threshold: 4,
      move: (dx, dy, e) => {
        place = placeAt(whole, e.clientX, e.clientY);
        handles.drawMark(place ? lineAt(place) : null);
      },
      cancel: end,
      done: () => {
        end();
        if (place && element.isConnected)
          move(element, whole, place);
      },
    });
  };

  // A link can't stand in another one: there the object goes without its own.
  const move = (element, whole, place) => history.transact(null, () => {
    const nested = (whole.matches("a") || whole.querySelector("a")) && dom.elementOf(place.startContainer).closest("a");
    const moved = nested ? element : whole;
    const mark = document.createComment("");
    place.insertNode(mark);
    objects.extract(element);
    mark.replaceWith(moved);
    for (const rest of [moved.previousSibling, moved.nextSibling]) // of a text that was split at its very end
      if (dom.isText(rest) && !rest.length)
        rest.remove();
    handles.select(element);
  });

  return { start, isInLine, placeAt, lineAt };
});
