// tableborders.js: borders between columns and below rows, dragged to another place.
//
// The border's cells get their size the way the page has it: where a width stands already, in its unit and as attribute
// or style; else one attribute on one cell. A border between two columns leaves the others where they are, if the table
// or the column to the right has a width of its own; otherwise what is to the right moves along.
Surface.module("tableborders", ({ history, dom, selection, events, overlay, drags, handles, styletext, tablegrid }) => {
  const Reach = 3;  // pixels to either side
  const Least = 8;  // pixels that a column keeps
  const ServerCode = /\p{Co}/u;
  // What differs between columns and rows.
  const Across = { size: "width", end: "right", at: "column", span: "colspan", cursor: "col-resize",
                   extra: ["paddingLeft", "paddingRight", "borderLeftWidth", "borderRightWidth"] };
  const Down = { size: "height", end: "bottom", at: "row", span: "rowspan", cursor: "row-resize",
                 extra: ["paddingTop", "paddingBottom", "borderTopWidth", "borderBottomWidth"] };

  const guide = overlay.layer(() => {}, ".guide { background: rgb(0, 90, 200) }" +
    ".size { font: 11px sans-serif; color: #000; background: #ffffe1; border: 1px solid #808080; padding: 1px 4px;" +
    " white-space: nowrap }");
  const line = document.createElement("div");
  line.className = "guide";
  const label = document.createElement("div");
  label.className = "size";
  guide.box.append(line, label);

  const isOnText = (x, y) => {
    const place = document.caretRangeFromPoint(x, y);
    if (!place || !dom.isText(place.startContainer))
      return false;
    const { startContainer: text, startOffset } = place;
    place.setStart(text, Math.max(0, startOffset - 1));
    place.setEnd(text, Math.min(text.length, startOffset + 1));
    return [...place.getClientRects()].some((r) => x >= r.left && x <= r.right && y >= r.top && y <= r.bottom);
  };

  // The border at a place of the window: { table, cell, axis, last }, where `cell` ends at it and nothing comes behind it
  // if it is the `last`; or null.
  const borderAt = (x, y) => {
    const inside = overlay.elementAt(x, y);
    if (!inside || !document.body || !document.body.contains(inside))
      return null;
    const near = (axis, dx, dy) => {
      const cell = dom.cellOf(overlay.elementAt(x - dx, y - dy));
      const table = cell && tablegrid.tableOf(cell);
      if (!table || Math.abs((dx ? x : y) - cell.getBoundingClientRect()[axis.end]) > Reach + 1)
        return null;
      const other = overlay.elementAt(x + dx, y + dy);
      return cell.contains(other) ? null : { table, cell, axis, last: !table.contains(other) };
    };
    const found = near(Across, Reach, 0);
    if (found)
      return found.last && selection.control() === found.table ? null : found;
    const below = near(Down, 0, Reach);
    return below && !below.last && !isOnText(x, y) ? below : null;
  };

  // ---- writing a size ----

  const sizeOf = (element, { size }) => styletext.get(element, size) || element.getAttribute(size) || "";

  const extraOf = (element, axis) => {
    const style = getComputedStyle(element);
    return tablegrid.isCell(element) && style.boxSizing !== "border-box"
      ? axis.extra.reduce((sum, name) => sum + (parseFloat(style[name]) || 0), 0) : 0;
  };

  // Writes a new size, in the unit of the old one or, where there is none, of `unit` with `whole` pixels as 100 %.
  const writer = (element, axis, now, was, unit, whole) => {
    const styled = styletext.get(element, axis.size);
    const old = sizeOf(element, axis);
    const extra = extraOf(element, axis);
    const kind = old ? (/%\s*$/.test(old) ? "%" : "px") : unit;
    const value = kind === "%" ? Math.round(old ? parseFloat(old) * now / was : 100 * now / whole) + "%"
      : String(Math.max(1, Math.round(now - extra)));
    return () => {
      if (styled)
        styletext.set(element, { [axis.size]: kind === "%" ? value : value + "px" });
      else
        element.setAttribute(axis.size, value);
    };
  };

  // What holds the size of a column or row: all that have one, else the first cell of that column or row alone.
  const holders = (grid, axis, index) => {
    const cells = grid.cells.filter((cell) => cell[axis.at] === index && cell[axis.span] === 1).map((cell) => cell.element);
    const column = axis === Across ? tablegrid.columnsOf(grid.table).find((c) => c.start === index && c.span === 1) : null;
    const all = [column && column.element, axis === Down && grid.rows[index].element, ...cells].filter(Boolean);
    const sized = all.filter((element) => sizeOf(element, axis) && !ServerCode.test(sizeOf(element, axis)));
    return { cells, sized, written: sized.length ? sized : cells.slice(0, 1) };
  };

  const inPixels = (element, axis) => element.getBoundingClientRect()[axis.size];

  // Moves the border by `delta` pixels; as routines that write, made before any of them changes the layout.
  const writers = (border, delta) => {
    const { table, axis } = border;
    const grid = tablegrid.read(table);
    const cell = grid.find.get(border.cell);
    const index = cell[axis.at] + cell[axis.span] - 1;
    const whole = inPixels(table, axis);
    const unit = grid.cells.some(({ element }) => /%\s*$/.test(sizeOf(element, axis))) && axis === Across ? "%" : "px";
    const made = [];
    const write = (at, change, needed) => {
      const { cells, sized, written } = holders(grid, axis, at);
      if (!needed && !sized.length)
        return;
      for (const element of written.length ? written : at === index ? [border.cell] : []) {
        const was = inPixels(tablegrid.isCell(element) || !cells.length ? element : cells[0], axis);
        made.push(writer(element, axis, Math.max(Least, was + change), was, unit, whole));
      }
    };
    write(index, delta, true);
    if (axis === Across && !border.last)
      write(index + 1, -delta, !!sizeOf(table, axis));
    if (border.last && sizeOf(table, axis) && !ServerCode.test(sizeOf(table, axis)))
      made.push(writer(table, axis, whole + delta, whole, "px", whole));
    return made;
  };

  // ---- the mouse ----

  // How far the border may go: both neighbours stay visible.
  const limited = (border, delta) => {
    const { cell, axis } = border;
    const least = Least - inPixels(cell, axis);
    const next = axis === Across && !border.last ? cell.nextElementSibling : null;
    return Math.max(least, next ? Math.min(delta, inPixels(next, axis) - Least) : delta);
  };

  const show = (border, delta, event) => {
    const { table, cell, axis } = border;
    const frame = table.getBoundingClientRect(), edge = cell.getBoundingClientRect()[axis.end] + delta;
    line.style.cssText = axis === Across ? `left:${edge - 1}px;top:${frame.top}px;width:2px;height:${frame.height}px`
      : `left:${frame.left}px;top:${edge - 1}px;width:${frame.width}px;height:2px`;
    label.style.cssText = `left:${event.clientX + 12}px;top:${event.clientY + 16}px`;
    label.textContent = Math.round(inPixels(cell, axis) + delta) + " px";
    guide.show();
  };

  const stop = () => {
    guide.hide();
    overlay.cursor(null);
  };

  const finish = (border, delta) => {
    stop();
    if (delta && border.cell.isConnected)
      history.transact(null, () => writers(border, delta).forEach((write) => write()));
  };

  let clicked = null; // the table whose right edge the mouse went down on
  events.on("mousedown", (event) => {
    clicked = null;
    const border = event.button === 0 && !event.shiftKey && !drags.active() ? borderAt(event.clientX, event.clientY) : null;
    if (!border)
      return false;
    history.close();
    clicked = border.last ? border.table : null;
    const distance = (dx, dy) => limited(border, border.axis === Across ? dx : dy);
    drags.start(event, {
      threshold: 1,
      move: (dx, dy, moved) => {
        clicked = null;
        show(border, distance(dx, dy), moved);
      },
      done: (dx, dy) => finish(border, distance(dx, dy)),
      cancel: stop,
    });
    return true;
  });
  // A click on the edge that moved nothing selects the table, as on its other edges.
  events.on("mouseup", () => {
    if (clicked && clicked.isConnected)
      handles.select(clicked);
    clicked = null;
    return false;
  });
  events.on("mousemove", (event) => {
    if (!event.buttons && !drags.active()) {
      const border = borderAt(event.clientX, event.clientY);
      overlay.cursor(border ? border.axis.cursor : null);
    }
    return false;
  });
  return {};
});
