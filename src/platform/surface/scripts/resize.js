// resize.js: a new size for the selected object, written the way the page has its size.
Surface.module("resize", ({ history, objects, handles, drags, position, styletext }) => {
  const Least = 4;        // pixels
  const Axes = ["width", "height"];
  const ServerCode = /\p{Co}/u; // stands for code that must not be written over

  const isMedia = (element) => objects.isKind(element, objects.Media + ",input[type=image]");

  // The attribute that gives the size along an axis, or null where only a style can.
  const attributeOf = (element, axis) => {
    const name = element.nodeName;
    if (name === "HR")
      return axis === "width" ? "width" : "size";
    if (isMedia(element) || name === "TABLE")
      return name === "AUDIO" ? null : axis;
    const counted = name === "TEXTAREA" ? (axis === "width" ? "cols" : "rows")
      : name === "SELECT" ? (axis === "height" ? "size" : null)
        : name === "INPUT" && axis === "width" ? "size" : null;
    return counted && element.hasAttribute(counted) ? counted : null;
  };
  const isCounted = (element) => /^(TEXTAREA|SELECT|INPUT)$/.test(element.nodeName) && !isMedia(element);

  // What the engine adds around what the page calls width and height.
  const extraOf = (element, axis) => {
    const style = getComputedStyle(element);
    if (style.boxSizing === "border-box")
      return 0;
    const sides = axis === "width" ? ["Left", "Right"] : ["Top", "Bottom"];
    return sides.reduce((sum, side) => sum + parseFloat(style["padding" + side]) +
                        parseFloat(style["border" + side + "Width"]), 0) || 0;
  };

  // The old value in its own unit, `now` instead of `was` pixels long.
  const scaled = (old, now, was, isStyle) => {
    const found = /^\s*([\d.]+)\s*([a-z]*|%)\s*$/i.exec(old || "");
    const unit = found ? found[2].toLowerCase() : "";
    if (!found || unit === "" || unit === "px" || !(was > 0))
      return Math.round(now) + (isStyle ? "px" : unit === "px" ? "px" : "");
    const value = parseFloat(found[1]) * now / was;
    return (unit === "%" ? Math.max(1, Math.round(value)) : Math.round(value * 100) / 100) + found[2];
  };

  // How the sides are written: a list of routines that do it, made from the page as it is before the first of them.
  const writers = (element, size) => {
    const rect = element.getBoundingClientRect();
    const styles = {};
    const writes = [];
    for (const axis of Axes) {
      if (size[axis] === undefined)
        continue;
      const styled = styletext.get(element, axis);
      const name = attributeOf(element, axis);
      const extra = name === "size" && !styled && element.nodeName === "HR" ? 0 : extraOf(element, axis);
      const now = Math.max(1, size[axis] - extra), was = rect[axis] - extra;
      const old = name && element.getAttribute(name);
      if (styled && !ServerCode.test(styled))
        styles[axis] = scaled(styled, now, was, true);
      else if (!name || styled || ServerCode.test(old || ""))
        styles[axis] = Math.round(now) + "px";
      else if (isCounted(element))
        writes.push(() => element.setAttribute(name, Math.max(1, Math.round(parseInt(old, 10) * now / was) || 1)));
      else
        writes.push(() => element.setAttribute(name, scaled(old, now, was, false)));
    }
    if (Object.keys(styles).length)
      writes.push(() => styletext.set(element, styles));
    return writes;
  };

  // A style sheet of the page that sets the size beats attributes. A table that stays larger needs its room.
  const overrule = (element, size) => {
    if (attributeOf(element, "width") !== "width")
      return;
    const rect = element.getBoundingClientRect();
    const styles = {};
    for (const axis of Axes) {
      const missing = size[axis] - rect[axis]; // not a number for a side that stays
      const wrong = element.nodeName === "TABLE" ? missing > 2 : Math.abs(missing) > 2;
      if (wrong && !styletext.get(element, axis) && !/%/.test(element.getAttribute(axis) || ""))
        styles[axis] = Math.round(size[axis] - extraOf(element, axis)) + "px";
    }
    styletext.set(element, styles);
  };

  // One side alone is enough for a picture that has only one and keeps its proportions by itself.
  const needed = (element, size, proportional) => {
    if (!objects.isKind(element, "img,video,canvas,svg,input[type=image]"))
      return size;
    const given = Axes.filter((axis) => element.hasAttribute(axis) || styletext.get(element, axis));
    if (proportional && given.length === 1)
      return { [given[0]]: size[given[0]] };
    const rect = element.getBoundingClientRect();
    return given.length === 2 ? size : { width: rect.width, height: rect.height, ...size };
  };

  // `size`: border box in pixels, sides that stay undefined; `place`: left and top of a positioned element.
  const write = (kind, element, size, proportional = false, place = null) => history.transact(kind, () => {
    const wanted = needed(element, size, proportional);
    for (const writer of writers(element, wanted))
      writer();
    if (place)
      position.write(element, place);
    overrule(element, wanted);
  });

  // The box that a drag of the handle `direction` makes of `box`.
  const dragged = (element, box, direction, dx, dy, keep) => {
    const least = element.nodeName === "HR" ? 1 : Least;
    const west = /w/.test(direction), north = /n/.test(direction);
    const sideways = /[we]/.test(direction), upright = /[ns]/.test(direction);
    let width = Math.max(least, box.width + (sideways ? (west ? -dx : dx) : 0));
    let height = Math.max(least, box.height + (upright ? (north ? -dy : dy) : 0));
    if (keep && box.width > 0 && box.height > 0) {
      const byWidth = sideways && (!upright || Math.abs(width / box.width - 1) >= Math.abs(height / box.height - 1));
      const scale = byWidth ? width / box.width : height / box.height;
      width = Math.max(least, box.width * scale);
      height = Math.max(least, box.height * scale);
    }
    width = Math.round(width);
    height = Math.round(height);
    return { width, height, left: west ? box.left + box.width - width : box.left,
             top: north ? box.top + box.height - height : box.top };
  };

  // The edges that move go to the grid.
  const snapped = (origin, direction, dx, dy, box) => {
    const edge = (from, by) => position.toGrid(from + by) - from;
    return [edge(origin.left + (/w/.test(direction) ? 0 : box.width), dx),
            edge(origin.top + (/n/.test(direction) ? 0 : box.height), dy)];
  };

  const start = (event, element, direction) => {
    const rect = element.getBoundingClientRect();
    const box = { left: rect.left, top: rect.top, width: rect.width, height: rect.height };
    const origin = objects.isPositionedNow(element) ? position.read(element) : null;
    const boxFor = (dx, dy, shift) => {
      if (origin && position.snaps())
        [dx, dy] = snapped(origin, direction, dx, dy, box);
      return dragged(element, box, direction, dx, dy, shift);
    };
    drags.start(event, {
      move: (dx, dy, e) => {
        const now = boxFor(dx, dy, e.shiftKey);
        handles.drawGhost(now, `${now.width} x ${now.height}`);
      },
      cancel: handles.drawNothing,
      done: (dx, dy, e) => {
        handles.drawNothing();
        if (!element.isConnected)
          return;
        const now = boxFor(dx, dy, e.shiftKey);
        const size = {};
        for (const axis of Axes)
          if (now[axis] !== Math.round(box[axis]))
            size[axis] = now[axis];
        const moves = origin && (now.left !== box.left || now.top !== box.top);
        if (Object.keys(size).length)
          write(null, element, size, e.shiftKey,
                moves ? { left: origin.left + now.left - box.left, top: origin.top + now.top - box.top } : null);
      },
    });
  };

  // By keys: quick repetitions are one step.
  const by = (element, dx, dy) => {
    const rect = element.getBoundingClientRect();
    const least = element.nodeName === "HR" ? 1 : Least;
    const size = {};
    if (dx)
      size.width = Math.max(least, Math.round(rect.width) + dx);
    if (dy)
      size.height = Math.max(least, Math.round(rect.height) + dy);
    write("resize", element, size);
  };

  return { start, by };
});
