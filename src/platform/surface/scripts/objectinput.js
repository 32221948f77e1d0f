// objectinput.js: clicks on objects, and keys while one is selected.
//
// A selected object takes no text: letters are ignored, so that nothing is lost to a slip of the hand; only Delete and
// Backspace remove it. Enter goes on behind it, arrows leave it or, where it is positioned, move it.
Surface.module("objectinput", ({ selection, events, objects, handles, drags, resize, position, textdrag }) => {
  const Arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };

  // On a part of the object that is selected already. True when it was.
  const pressOnHandle = (event) => {
    const part = event.button === 0 ? handles.at(event.clientX, event.clientY) : "";
    if (!part)
      return false;
    const object = selection.control();
    const movable = objects.isPositionedNow(object);
    if (part === "frame" && !movable)
      return false;
    if (objects.isLocked(object))
      return true;
    if (part === "frame")
      position.startMove(event, object);
    else
      resize.start(event, object, part);
    return true;
  };

  let pressed = null; // by the right button
  const pressOnObject = (event) => {
    const object = objects.at(event.clientX, event.clientY);
    pressed = event.button === 2 ? object : null;
    if (!object)
      return false;
    if (event.shiftKey && /^(IMG|HR)$/.test(object.nodeName))
      return false; // the text selection grows over it
    if (selection.control() !== object)
      handles.select(object);
    if (event.button !== 0 || objects.isLocked(object))
      return true;
    if (objects.isPositionedNow(object))
      position.startMove(event, object);
    else if (textdrag.isInLine(object))
      textdrag.start(event, object);
    return true;
  };

  events.on("mousedown", (event) => drags.active() || pressOnHandle(event) || pressOnObject(event));

  // After the press of a right click the engine selects what it thinks fit.
  events.on("contextmenu", () => {
    if (pressed && pressed.isConnected && selection.control() !== pressed)
      handles.select(pressed);
    return false;
  });

  // Fields, their labels and folded parts of a page do nothing here.
  window.addEventListener("click", (event) => event.preventDefault(), true);

  const onArrow = (event, object) => {
    const [dx, dy] = Arrows[event.key];
    const positioned = objects.isPositionedNow(object);
    const resizes = positioned ? event.shiftKey : event.ctrlKey;
    if (event.shiftKey && !positioned)
      return false; // the text selection grows
    if (!resizes && !positioned) {
      if (dx + dy < 0)
        objects.caretBefore(object);
      else
        objects.caretBehind(object);
    } else if (!objects.isLocked(object)) {
      if (resizes)
        resize.by(object, dx, dy);
      else
        position.nudge(object, dx, dy);
    }
    return true;
  };

  const onKeyDown = (event) => {
    if (event.key === "F24" || drags.active())
      return false;
    const object = selection.control();
    if (!object || event.altKey)
      return false;
    if (event.key in Arrows)
      return onArrow(event, object);
    if (event.ctrlKey)
      return false;
    if (event.key === "Delete" || event.key === "Backspace") {
      if (event.key === "Delete" && event.shiftKey)
        return false; // cuts
      objects.remove(object);
      return true;
    }
    if (event.key === "Escape" || event.key === "Enter") {
      objects.caretBehind(object);
      return event.key === "Escape";
    }
    return event.key.length === 1 || event.key === "Tab";
  };
  events.on("keydown", onKeyDown, true);

  // An input method writes behind the object.
  window.addEventListener("compositionstart", () => {
    const object = selection.control();
    if (object)
      objects.caretBehind(object);
  }, true);
  for (const type of ["insertText", "insertReplacementText"])
    events.onInputType(type, () => !!selection.control(), true);
  return {};
});
