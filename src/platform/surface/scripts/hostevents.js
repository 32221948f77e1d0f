// hostevents.js: keys and clicks of the user that the host wants to hear of. In front of all modules that may take an
// event, so that none is missed. The host handles them a little later, when the page is done with them.
Surface.module("hostevents", (page) => {
  const { history, selection, dom } = page;
  const listen = (type, handler) => window.addEventListener(type, handler, true);

  // F24 is the host's own.
  listen("keydown", (event) => {
    if (event.key !== "F24")
      Surface.post("onkeydown", event.keyCode);
  });
  listen("keyup", (event) => {
    if (event.key !== "F24")
      Surface.post("onkeyup", event.keyCode);
  });
  // A key that is down when the focus goes rises elsewhere.
  listen("blur", (event) => {
    if (event.target === window || event.target === document)
      Surface.post("onkeyup", 0);
  });
  listen("click", (event) => {
    if (event.button === 0)
      Surface.post("onclick");
  });
  listen("dblclick", (event) => {
    if (event.button === 0)
      Surface.post("ondblclick");
  });

  // ---- context menu ----

  // What an object is, a module behind this one knows.
  const objectAt = ({ target, clientX, clientY }) => page.objects && page.objects.at ? page.objects.at(clientX, clientY)
    : dom.closest(target, (e) => dom.isAtom(e) && e.nodeName !== "BR" && e.nodeName !== "WBR");

  const holds = (range, place) => {
    try {
      return !range.collapsed && range.isPointInRange(place.startContainer, place.startOffset);
    } catch {
      return false;
    }
  };

  // What is under the pointer becomes the selection, unless it is part of it already.
  const selectAt = (event) => {
    const object = objectAt(event);
    if (object) {
      if (selection.control() !== object)
        selection.selectControl(object);
      return;
    }
    const place = document.caretRangeFromPoint(event.clientX, event.clientY);
    if (!place || !document.body || !document.body.contains(place.startContainer) || holds(selection.range(), place))
      return;
    history.close();
    document.getSelection().collapse(place.startContainer, place.startOffset);
  };

  const besideCaret = () => {
    const range = selection.range();
    const rect = range.getBoundingClientRect();
    const element = dom.elementOf(range.startContainer);
    const box = rect.height || !element ? rect : element.getBoundingClientRect();
    return [Math.max(0, Math.min(box.left, window.innerWidth)), Math.max(0, Math.min(box.bottom, window.innerHeight))];
  };

  // The engine's own menu never shows, and what it does to the selection is ours to do.
  listen("mousedown", (event) => {
    if (event.button === 2)
      event.preventDefault();
  });
  listen("contextmenu", (event) => {
    event.preventDefault();
    selection.ensureCaret();
    const byMouse = event.button === 2;
    if (byMouse)
      selectAt(event);
    const [x, y] = byMouse ? [event.clientX, event.clientY] : besideCaret();
    Surface.post("oncontextmenu", { x, y });
  });
  return {};
});
