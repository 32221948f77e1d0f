// tablecells.js: cells selected as such, by mouse and keys, and what keys do to them.
//
// Selected are the cells of a rectangle that cuts no span. The engine's selection reaches from the first of them to the
// last, which can be more; which cells are meant stands in tables.js. Their look is drawn over the page.
Surface.module("tablecells", ({ history, dom, events, overlay, tablegrid, tables, tablemerge }) => {
  const Arrows = { ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0] };

  // ---- looks ----

  const marks = overlay.layer(() => place(), ".cells { background: rgba(0, 90, 200, 0.22); border: 1px solid rgb(0, 90, 200) }");
  const mark = document.createElement("div");
  mark.className = "cells";
  marks.box.append(mark);
  const noTint = new CSSStyleSheet();
  noTint.replaceSync("table ::selection { background-color: transparent !important }");

  // Cells at the edges of the rectangle make out its size.
  const place = () => {
    const at = tables.context();
    if (!at || at.from === at.to)
      return;
    const { area } = tables.around(at);
    const edges = area.cells.filter((c) => c.row === area.top || c.column === area.left ||
      c.row + c.rowspan === area.bottom || c.column + c.colspan === area.right);
    let left = Infinity, top = Infinity, right = -Infinity, bottom = -Infinity;
    for (const { element } of edges) {
      const rect = element.getBoundingClientRect();
      left = Math.min(left, rect.left);
      top = Math.min(top, rect.top);
      right = Math.max(right, rect.right);
      bottom = Math.max(bottom, rect.bottom);
    }
    mark.style.cssText = `left:${left}px;top:${top}px;width:${right - left}px;height:${bottom - top}px`;
  };

  const update = () => {
    const at = tables.context();
    const show = !!at && at.from !== at.to;
    if (show !== marks.shown) {
      const others = [...document.adoptedStyleSheets].filter((sheet) => sheet !== noTint);
      document.adoptedStyleSheets = show ? [...others, noTint] : others;
    }
    if (show)
      marks.show();
    else if (marks.shown)
      marks.hide();
  };

  // ---- selecting ----

  // The rectangle from one cell to another of the same table.
  const select = (anchor, focus) => {
    history.close();
    const s = document.getSelection();
    const { area } = tables.around({ table: tablegrid.tableOf(anchor), from: anchor, to: focus });
    const first = area.cells[0].element, last = area.cells[area.cells.length - 1].element;
    s.setBaseAndExtent(first, 0, last, last.childNodes.length);
    tables.remember(area.cells.length > 1 ? { anchor, focus } : null);
    update();
  };

  // The cell of `table` that a node is in.
  const cellIn = (table, node) => dom.closest(node, (e) => tablegrid.isCell(e) && tablegrid.tableOf(e) === table);

  let press = null;  // { cell, table, focus } while the mouse is down in a cell
  events.on("mousedown", (event) => {
    press = null;
    const cell = event.button === 0 ? dom.cellOf(event.target) : null;
    if (!cell)
      return false;
    const at = event.shiftKey ? tables.context() : null;
    const to = at && cellIn(at.table, cell), from = at && (at.backwards ? at.to : at.from);
    if (to && (to !== from || tables.remembered())) {
      select(from, to);
      press = { cell: from, focus: to };
      return true;
    }
    press = { cell, focus: null };
    return false;
  });
  events.on("mousemove", (event) => {
    if (!press || !(event.buttons & 1) || !press.cell.isConnected)
      return false;
    const cell = cellIn(tablegrid.tableOf(press.cell), event.target);
    if (cell && cell !== (press.focus || press.cell)) {
      press.focus = cell;
      select(press.cell, cell);
    }
    return !!press.focus;
  });
  events.on("mouseup", () => {
    press = null;
    return false;
  });

  let extending = false; // the engine moves the selection's end by a key, and may leave the cell with it
  document.addEventListener("selectionchange", () => {
    const at = extending && !tables.remembered() ? tables.context() : null;
    extending = false;
    if (at && at.from !== at.to)
      select(at.backwards ? at.to : at.from, at.backwards ? at.from : at.to);
    else
      update();
  });

  const extend = (key) => {
    const kept = tables.remembered();
    if (!kept) {
      extending = true;
      return false;
    }
    const grid = tablegrid.read(tablegrid.tableOf(kept.focus));
    const { row, column, rowspan, colspan } = grid.find.get(kept.focus);
    const [dy, dx] = Arrows[key];
    const next = tablegrid.cellAt(grid, dy > 0 ? row + rowspan : row + dy, dx > 0 ? column + colspan : column + dx);
    if (next)
      select(kept.anchor, next.element);
    return true;
  };

  // ---- keys ----

  // To the next or previous cell; behind the last one the table gets another row.
  const tab = (back) => {
    const at = tables.context();
    if (!at)
      return false;
    const grid = tablegrid.read(at.table);
    const order = grid.cells;
    const index = order.indexOf(grid.find.get(at.to)) + (back ? -1 : 1);
    history.close();
    if (index === order.length)
      history.transact(null, () => {
        const y = grid.rows.length;
        tables.addRows(grid, y - 1, 1);
        tables.realise(grid);
        tables.caretInto(grid.cells.find((cell) => cell.row === y).element);
      });
    else if (index >= 0)
      tables.caretInto(order[index].element);
    return true;
  };

  events.on("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey || event.key === "F24")
      return false;
    if (event.shiftKey && event.key in Arrows)
      return extend(event.key);
    if (event.key !== "Tab")
      return false;
    const s = document.getSelection();
    const around = dom.closest(s.anchorNode, (e) => e.nodeName === "LI" || tablegrid.isCell(e));
    return !!around && tablegrid.isCell(around) && tab(event.shiftKey);
  });

  const empty = (cell) => {
    if (!tablemerge.isBlank(cell)) {
      cell.replaceChildren();
      tables.fill(cell);
    }
  };

  // Empties the selected cells; the table stays as it is. False when none are selected.
  const clear = () => {
    const cells = tables.selectedCells();
    if (!cells.length)
      return false;
    history.transact(null, () => {
      cells.forEach(empty);
      tables.caretInto(cells[0]);
    });
    return true;
  };

  for (const type of ["deleteContentBackward", "deleteContentForward", "deleteWordBackward", "deleteWordForward",
    "deleteSoftLineBackward", "deleteSoftLineForward", "deleteByCut"])
    events.onInputType(type, clear);

  // Text takes the place of what is in the first cell.
  events.onInputType("insertText", (event) => {
    const cells = tables.selectedCells();
    if (!cells.length || !event.data)
      return false;
    history.transact("type", () => {
      const text = document.createTextNode(event.data === " " ? "\u00a0" : event.data);
      cells[0].replaceChildren(text);
      document.getSelection().collapse(text, text.length);
    });
    return true;
  });
  for (const type of ["insertParagraph", "insertLineBreak"])
    events.onInputType(type, () => tables.selectedCells().length > 0);
  window.addEventListener("compositionstart", () => {
    const [cell] = tables.selectedCells();
    if (cell)
      tables.caretInto(cell);
  }, true);

  Surface.offer("selectedCells", () => tables.selectedCells().map((cell) => cell.textContent));
  return { select, clear };
});
