// position.js: absolutely positioned elements: where they are, the grid, taking them out of the text and back.
Surface.module("position", ({ history, selection, dom, commands, overlay, objects, handles, drags, styletext }) => {
  const Grid = 10; // pixels
  const Lock = "design_time_lock"; // the attribute by which pages of this kind mark a locked element
  const Containers = "div,table,fieldset,marquee"; // what a caret in it is enough for
  const Positionable = Containers + ",hr,span,p,center,ul,ol,dl,form,blockquote,h1,h2,h3,h4,h5,h6," + objects.Media + "," +
    objects.Fields;

  // ---- the grid

  let snap = false;
  const snaps = () => snap;
  const toGrid = (x) => snap ? Math.round(x / Grid) * Grid : Math.round(x);

  // Left and top as the engine uses them, in pixels from the corner that they count from.
  const read = (element) => {
    const style = getComputedStyle(element);
    const number = (value, otherwise) => isNaN(parseFloat(value)) ? otherwise : parseFloat(value);
    return { left: number(style.left, element.offsetLeft), top: number(style.top, element.offsetTop) };
  };

  const dots = document.createElement("div");
  const gridLayer = overlay.layer(() => placeGrid(),
    ".grid { pointer-events: none; background-image: radial-gradient(circle, #888 0.8px, transparent 1px) }");
  dots.className = "grid";
  gridLayer.box.append(dots);
  const placeGrid = () => {
    const object = selection.control();
    if (!object)
      return;
    const rect = object.getBoundingClientRect();
    const { left, top } = read(object);
    const margin = getComputedStyle(object);
    const away = (x) => ((Math.round(x) % Grid) + Grid) % Grid;
    // A dot stands in the middle of its tile.
    const x = away(rect.left - parseFloat(margin.marginLeft) - left - Grid / 2);
    const y = away(rect.top - parseFloat(margin.marginTop) - top - Grid / 2);
    dots.style.cssText = `left:0;top:0;width:${innerWidth}px;height:${innerHeight}px;` +
      `background-size:${Grid}px ${Grid}px;background-position:${x}px ${y}px`;
  };
  const showGrid = (object) => {
    if (snap && object && objects.isPositionedNow(object))
      gridLayer.show();
    else
      gridLayer.hide();
  };
  handles.onObject(showGrid);
  Surface.offer("snapToGrid", (on) => {
    snap = on;
    showGrid(selection.control());
  });

  // ---- moving

  // What held it at the other side would now stretch it.
  const write = (element, { left, top }) => {
    const values = { left: Math.round(left) + "px", top: Math.round(top) + "px" };
    if (styletext.get(element, "right") && !styletext.get(element, "left"))
      values.right = null;
    if (styletext.get(element, "bottom") && !styletext.get(element, "top"))
      values.bottom = null;
    styletext.set(element, values);
  };

  const startMove = (event, element) => {
    const from = read(element);
    const rect = element.getBoundingClientRect();
    const target = (dx, dy) => ({ left: toGrid(from.left + dx), top: toGrid(from.top + dy) });
    drags.start(event, {
      threshold: 2,
      move: (dx, dy) => {
        const { left, top } = target(dx, dy);
        handles.drawGhost({ left: rect.left + left - from.left, top: rect.top + top - from.top, width: rect.width,
                            height: rect.height }, `${left}, ${top}`);
      },
      cancel: handles.drawNothing,
      done: (dx, dy) => {
        handles.drawNothing();
        const to = target(dx, dy);
        if (element.isConnected && (to.left !== from.left || to.top !== from.top))
          history.transact(null, () => write(element, to));
      },
    });
  };

  // By keys: one pixel, or to the next line of the grid; quick repetitions are one step.
  const nudge = (element, dx, dy) => {
    const from = read(element);
    const next = (x, step) => snap && step ? toGrid(x + step * Grid) : x + step;
    history.transact("nudge", () => write(element, { left: next(from.left, dx), top: next(from.top, dy) }));
  };

  // ---- out of the text and back

  const fromCaret = (test) => {
    const s = document.getSelection();
    return s && s.anchorNode ? dom.closest(s.anchorNode, (e) => dom.isElement(e) && test(e)) : null;
  };
  const isControlPositioned = (element) => objects.isPositioned(element);

  // The positioned element that commands mean: the selected object, or the one that the caret is in.
  const positioned = () => {
    const object = selection.control();
    return object ? (isControlPositioned(object) ? object : null) : fromCaret(objects.isPositioned);
  };
  const positionable = () => {
    const object = selection.control();
    return object ? (object.matches(Positionable) ? object : null)
      : positioned() || fromCaret((e) => e.matches(Containers));
  };

  // What makeAbsolute wrote beside the place, to be taken back by its opposite; a size that was there stays.
  const sized = new WeakMap(); // element -> names

  const pagePlace = (element) => {
    const rect = element.getBoundingClientRect();
    return { left: rect.left + scrollX, top: rect.top + scrollY, width: rect.width, height: rect.height };
  };

  // Whatever left and top count from, and whatever moves up when the element leaves the text: it is put at 0,0 and
  // the way back from there is what it needs.
  const takeOut = (element) => {
    const before = pagePlace(element);
    styletext.set(element, { position: "absolute", left: "0px", top: "0px" });
    const names = [];
    let now = pagePlace(element);
    for (const side of ["width", "height"])
      if (Math.abs(now[side] - before[side]) > 0.5) {
        const style = getComputedStyle(element);
        const edges = style.boxSizing === "border-box" ? [] : side === "width" ? ["Left", "Right"] : ["Top", "Bottom"];
        const extra = edges.reduce((sum, edge) => sum + parseFloat(style["padding" + edge]) +
                                   parseFloat(style["border" + edge + "Width"]), 0);
        if (!styletext.get(element, side))
          names.push(side);
        styletext.set(element, { [side]: Math.round(before[side] - extra) + "px" });
        now = pagePlace(element);
      }
    write(element, { left: before.left - now.left, top: before.top - now.top });
    sized.set(element, names);
  };

  const putBack = (element) => {
    const values = { position: null, left: null, top: null, "z-index": null };
    const own = !objects.isKind(element, objects.Media + "," + objects.Fields);
    for (const name of sized.get(element) || (own ? ["width", "height"] : []))
      values[name] = null;
    styletext.set(element, values);
    element.removeAttribute(Lock);
  };

  commands.add("makeAbsolute", {
    run: () => {
      const element = positionable();
      history.transact(null, () => objects.isPositioned(element) ? putBack(element) : takeOut(element));
      handles.update();
      showGrid(selection.control());
    },
    status: () => {
      const element = positionable();
      return !element ? commands.Disabled : objects.isPositioned(element) ? commands.Latched : commands.Enabled;
    },
  });

  commands.add("lockElement", {
    run: () => {
      const element = positioned();
      history.transact(null, () => objects.isLocked(element) ? element.removeAttribute(Lock)
                                                             : element.setAttribute(Lock, "true"));
      handles.update();
    },
    status: () => {
      const element = positioned();
      return !element ? commands.Disabled : objects.isLocked(element) ? commands.Latched : commands.Enabled;
    },
  });

  return { snaps, toGrid, read, write, startMove, nudge, positioned };
});
