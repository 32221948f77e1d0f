// dragdrop.js: selected text dragged to another place, and places for what is dragged in from outside.
//
// The engine's own drag is never started: what it would drop is spans full of styles.
Surface.module("dragdrop", ({ history, selection, dom, events, joins, splitting, clipboard, drags, handles,
                              textdrag }) => {
  const holds = (range, node, offset) => range.isPointInRange(node, offset) &&
    !(node === range.startContainer && offset === range.startOffset) &&
    !(node === range.endContainer && offset === range.endOffset);

  // A place that a range can be made of after what stands around it was changed.
  const mark = (place) => {
    const comment = document.createComment("");
    place.cloneRange().insertNode(comment);
    return comment;
  };
  const unmark = (comment) => {
    const { previousSibling: left, nextSibling: right } = comment;
    const range = document.createRange();
    range.setStartBefore(comment);
    comment.remove();
    if (dom.isText(left) && dom.isText(right)) {
      range.setStart(left, left.length);
      splitting.joinTexts(left, right);
    }
    range.collapse(true);
    return range;
  };

  const drop = (source, place, copy) => {
    if (source.isPointInRange(place.startContainer, place.startOffset) && !copy)
      return; // where it was
    const box = clipboard.selected();
    const fragment = document.createDocumentFragment();
    fragment.append(...box.childNodes);
    history.transact(null, () => {
      const there = mark(place);
      if (!copy)
        joins.erase(source);
      clipboard.insertMarkup(unmark(there), fragment);
    });
  };

  // Raised by the engine for a press on the selection, a link or a picture.
  const onDragStart = (event) => {
    const pressed = document.caretRangeFromPoint(event.clientX, event.clientY);
    if (drags.active() || selection.type() !== "Text" || !pressed)
      return true;
    const source = selection.range();
    if (!holds(source, pressed.startContainer, pressed.startOffset))
      return true;
    let place = null;
    const end = () => handles.drawNothing();
    drags.start(event, {
      move: (dx, dy, e) => {
        place = textdrag.placeAt(null, e.clientX, e.clientY);
        handles.drawMark(place && textdrag.lineAt(place));
      },
      cancel: end,
      done: (dx, dy, e) => {
        end();
        if (place)
          drop(source, place, e.ctrlKey);
      },
    });
    return true;
  };
  events.on("dragstart", onDragStart);

  // ---- from outside ---------------------------------------------------------------------------------------------------

  Surface.offer("showDropPlace", (point) => {
    const place = point && textdrag.placeAt(null, point.x, point.y);
    if (place)
      handles.drawMark(textdrag.lineAt(place));
    else
      handles.drawNothing();
  });
  Surface.offer("caretAtPoint", ({ x, y }) => {
    handles.drawNothing();
    const place = textdrag.placeAt(null, x, y);
    if (!place)
      return false;
    history.close();
    document.getSelection().collapse(place.startContainer, place.startOffset);
    return true;
  });
  return {};
});
