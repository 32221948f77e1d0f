// dragdrop.js: selected text dragged to another place, and places for what is dragged in from outside.
//
// The engine's own drag is never started: what it would drop is spans full of styles.
Surface.module("dragdrop", ({ history, selection, dom, events, joins, splitting, clipboard, drags, handles, tablecells,
                              textdrag }) => {
  // Is the point on the text of the range? A place at its border is, if the point lies on the inner side of it.
  const holds = (range, x, y) => {
    const place = document.caretRangeFromPoint(x, y);
    if (!place || !range.isPointInRange(place.startContainer, place.startOffset))
      return false;
    const { left } = place.getBoundingClientRect();
    const at = (container, offset) => container === place.startContainer && offset === place.startOffset;
    return at(range.startContainer, range.startOffset) ? x >= left
      : !at(range.endContainer, range.endOffset) || x < left;
  };

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

  const placeCaret = (point) => {
    const place = textdrag.placeAt(null, point.x, point.y);
    if (place) {
      history.close();
      document.getSelection().collapse(place.startContainer, place.startOffset);
    }
    return !!place;
  };

  // The engine starts a drag of text only after the button was down for a while; here the first step does.
  events.on("mousedown", (event) => {
    if (event.button !== 0 || event.detail !== 1 || event.shiftKey || event.altKey || selection.type() !== "Text" ||
        tablecells.ranges()) // between two cells of it lie others
      return false;
    const source = selection.range();
    if (!holds(source, event.clientX, event.clientY))
      return false;
    let place = null;
    const end = () => handles.drawNothing();
    drags.start(event, {
      threshold: 3,
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
      click: (e) => placeCaret(e),
    });
    return true;
  });

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
    return placeCaret({ x, y });
  });
  return {};
});
