// handles.js: the frame and the eight handles of the selected object, and what is drawn while one is dragged.
Surface.module("handles", ({ history, selection, overlay, objects }) => {
  const Size = 7;      // of a handle, in pixels
  const Reach = 5;     // from the middle of a handle
  const FrameReach = 4;
  const Roomy = 16;    // a shorter side has no handle in its middle
  const Directions = ["nw", "ne", "sw", "se", "n", "s", "w", "e"];

  const make = (name, parent) => {
    const box = document.createElement("div");
    box.className = name;
    parent.append(box);
    return box;
  };
  const put = (box, left, top, width, height) => {
    box.style.cssText = `left:${left}px;top:${top}px;width:${width}px;height:${height}px`;
  };

  const layer = overlay.layer(() => place(),
    ".frame { border: 1px solid #2a6fd6 }" +
    ".side { pointer-events: auto; cursor: move }" +
    ".handle { pointer-events: auto; background: #fff; border: 1px solid #2a6fd6 }" +
    ".handle.nw, .handle.se { cursor: nwse-resize } .handle.ne, .handle.sw { cursor: nesw-resize }" +
    ".handle.n, .handle.s { cursor: ns-resize } .handle.w, .handle.e { cursor: ew-resize }" +
    ".locked .handle { background: #9a9a9a; border-color: #555; cursor: default }" +
    ".locked .frame { border-color: #555 } .locked .side { cursor: default }");
  const frame = make("frame", layer.box);
  const sides = ["n", "s", "w", "e"].map(() => make("side", layer.box)); // to get hold of a positioned element by
  const handles = Directions.map((direction) => make("handle " + direction, layer.box));

  let shown = null; // the object whose handles stand

  const directionsOf = (element, rect) => Directions.filter((direction) =>
    element.nodeName === "HR" ? direction.length === 1 && (direction !== "n")
      : direction.length === 2 || (/[ns]/.test(direction) ? rect.width : rect.height) >= Roomy);
  const middle = (rect, direction) => [
    /w/.test(direction) ? rect.left : /e/.test(direction) ? rect.right : (rect.left + rect.right) / 2,
    /n/.test(direction) ? rect.top : /s/.test(direction) ? rect.bottom : (rect.top + rect.bottom) / 2];

  const place = () => {
    if (!shown || selection.control() !== shown) {
      update();
      return;
    }
    const rect = shown.getBoundingClientRect();
    const free = new Set(directionsOf(shown, rect));
    layer.box.classList.toggle("locked", objects.isLocked(shown));
    put(frame, rect.left - 1, rect.top - 1, rect.width + 2, rect.height + 2);
    handles.forEach((handle, i) => {
      const [x, y] = middle(rect, Directions[i]);
      put(handle, Math.round(x - Size / 2), Math.round(y - Size / 2), Size, Size);
      handle.hidden = !free.has(Directions[i]);
      if (handle.hidden)
        handle.style.display = "none";
    });
    const positioned = objects.isPositioned(shown);
    const wide = rect.width + 2 * FrameReach, high = rect.height + 2 * FrameReach;
    const left = rect.left - FrameReach, top = rect.top - FrameReach;
    const boxes = [[left, top, wide, FrameReach], [left, rect.bottom, wide, FrameReach],
                   [left, top, FrameReach, high], [rect.right, top, FrameReach, high]];
    sides.forEach((side, i) => {
      if (positioned)
        put(side, ...boxes[i]);
      else
        side.style.cssText = "display:none";
    });
  };

  // The frame says what is selected; the engine's own tint would hide what a picture looks like. A rule for one tag
  // makes the engine look at elements of that tag alone.
  const noTint = new CSSStyleSheet();
  const dropTint = (object) => {
    const others = [...document.adoptedStyleSheets].filter((sheet) => sheet !== noTint);
    if (object)
      noTint.replaceSync((object.childElementCount ? "*" : CSS.escape(object.localName)) +
                         "::selection { background-color: transparent !important }");
    if (object || others.length < document.adoptedStyleSheets.length)
      document.adoptedStyleSheets = object ? [...others, noTint] : others;
  };

  const sizes = new ResizeObserver(overlay.placeSoon);
  const listeners = [];

  // After the selection, or what counts as one object, may have changed.
  const update = () => {
    const object = selection.control();
    if (object !== shown) {
      sizes.disconnect();
      shown = object;
      dropTint(object);
      if (object) {
        sizes.observe(object);
        sizes.observe(document.body); // it grows when something above the object does
      }
      for (const listener of listeners)
        listener(object);
    }
    if (!object)
      layer.hide();
    else if (layer.shown)
      overlay.placeSoon();
    else
      layer.show();
  };
  document.addEventListener("selectionchange", update);
  history.keepWithSelection({ save: () => null, restore: update });

  const select = (element) => {
    selection.selectControl(element);
    update();
  };

  // What is at a place of the window: a direction, "frame", or "" for none of ours.
  const at = (x, y) => {
    const object = selection.control();
    if (!object)
      return "";
    const rect = object.getBoundingClientRect();
    let nearest = "", least = Reach + 0.5;
    for (const direction of directionsOf(object, rect)) {
      const [mx, my] = middle(rect, direction);
      const distance = Math.max(Math.abs(x - mx), Math.abs(y - my));
      if (distance < least) {
        nearest = direction;
        least = distance;
      }
    }
    if (nearest)
      return nearest;
    const inside = (margin) => x >= rect.left - margin && x < rect.right + margin && y >= rect.top - margin &&
      y < rect.bottom + margin;
    return inside(FrameReach) && !inside(0) ? "frame" : "";
  };

  // ---- what shows during a drag

  const drawing = overlay.layer(() => {},
    ".ghost { border: 1px dashed #000; outline: 1px dashed #fff }" +
    ".label { background: #ffffe1; color: #000; border: 1px solid #767676; font: 11px sans-serif; padding: 1px 4px;" +
    " white-space: nowrap }" +
    ".mark { background: #2a6fd6 }");
  const ghost = make("ghost", drawing.box);
  const label = make("label", drawing.box);
  const mark = make("mark", drawing.box);
  const Margin = 6; // between ghost and label

  // `box`: left, top, width, height in the window; null: none.
  const drawGhost = (box, text) => {
    mark.style.display = "none";
    put(ghost, box.left, box.top, box.width, box.height);
    label.textContent = text;
    label.style.cssText = `left:${Math.max(0, Math.min(box.left + box.width + Margin, innerWidth - 80))}px;` +
      `top:${Math.max(0, Math.min(box.top + box.height + Margin, innerHeight - 22))}px`;
    drawing.show();
  };
  // Where in the text something would go.
  const drawMark = (rect) => {
    ghost.style.display = label.style.display = "none";
    if (rect)
      put(mark, rect.left - 1, rect.top, 2, rect.height);
    else
      mark.style.display = "none";
    drawing.show();
  };
  const drawNothing = () => drawing.hide();

  Surface.offer("dragLabel", () => drawing.shown ? label.textContent : "");
  return { update, select, at, drawGhost, drawMark, drawNothing, onObject: (listener) => listeners.push(listener) };
});
