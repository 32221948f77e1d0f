// tablegrid.js: which cell of a table lies where, and putting cells where they are to lie.
//
// A grid is the HTML standard's table model of one table: its own rows only, a cell in the first free place of its row,
// spans that may overlap, rows that may be short. Spans down end with their section. Commands change the places in the
// grid (plain numbers) and have realise() carry that out; cells that need no change are not touched. All is linear in
// the number of cells and lays nothing out.
Surface.module("tablegrid", ({ dom }) => {
  const Sections = new Set(["THEAD", "TBODY", "TFOOT"]);

  const isCell = (node) => dom.isElement(node) && dom.Cells.has(node.nodeName);
  const isRow = (node) => dom.isElement(node) && node.nodeName === "TR";
  const isSpace = (node) => dom.isText(node) && !/[^ \t\n\r\f]/.test(node.data);
  const tableOf = (node) => dom.closest(node, (e) => e.nodeName === "TABLE");
  const nextCell = (node) => {
    while (node && !isCell(node))
      node = node.nextSibling;
    return node;
  };

  // Rows by section, footers last, as they show. Rows right in the table are sections as well, one for each run.
  const rowsOf = (table) => {
    const rows = [], footers = [];
    let section = 0;
    const add = (list, element) => list.push({ element, section });
    for (let e = table.firstElementChild, loose = false; e; e = e.nextElementSibling) {
      if (isRow(e)) {
        section += loose ? 0 : 1;
        loose = true;
        add(rows, e);
      } else if (Sections.has(e.nodeName)) {
        ++section;
        loose = false;
        for (let row = e.firstElementChild; row; row = row.nextElementSibling)
          if (isRow(row))
            add(e.nodeName === "TFOOT" ? footers : rows, row);
      }
    }
    return [...rows, ...footers];
  };

  // One past the last row of each row's section.
  const sectionEnds = (rows) => {
    const ends = new Array(rows.length);
    for (let y = rows.length - 1; y >= 0; --y)
      ends[y] = y + 1 < rows.length && rows[y + 1].section === rows[y].section ? ends[y + 1] : y + 1;
    return ends;
  };

  // What the attribute comes to in a section of which `left` rows are left; 0 asks for all of them.
  const rowspanOf = (element, left) => {
    const span = element.hasAttribute("rowspan") ? element.rowSpan : 1;
    return span === 0 || span > left ? left : span;
  };
  const colspanOf = (element) => element.hasAttribute("colspan") ? element.colSpan : 1;

  // Column elements as [{ element, start, span }]; a group without columns of its own is one.
  const columnsOf = (table) => {
    const columns = [];
    let start = 0;
    const add = (element) => {
      columns.push({ element, start, span: element.span });
      start += element.span;
    };
    for (let e = table.firstElementChild; e; e = e.nextElementSibling) {
      if (e.nodeName !== "COLGROUP" && e.nodeName !== "COL")
        continue;
      const own = e.nodeName === "COL" ? [e] : [...e.children].filter((c) => c.nodeName === "COL");
      (own.length ? own : [e]).forEach(add);
    }
    return columns;
  };

  // { table, rows: [{ element, section }], cells: [{ element, row, column, rowspan, colspan, open, loose }], width, find },
  // cells in their order in the table. `open`: the span is to reach the section's end whatever comes; `loose`: it asks
  // for other than it gets.
  const read = (table) => {
    const rows = rowsOf(table);
    const ends = sectionEnds(rows);
    const cells = [], find = new Map();
    let busy = []; // by column: the first row in which it is free again
    let width = 0;
    for (let y = 0; y < rows.length; ++y) {
      if (y && rows[y].section !== rows[y - 1].section)
        busy = [];
      let x = 0;
      for (let e = nextCell(rows[y].element.firstChild); e; e = nextCell(e.nextSibling)) {
        while (busy[x] > y)
          ++x;
        const asked = e.hasAttribute("rowspan") ? e.rowSpan : 1;
        const rowspan = asked === 0 || asked > ends[y] - y ? ends[y] - y : asked;
        const cell = { element: e, row: y, column: x, rowspan, colspan: colspanOf(e), open: asked === 0,
                       loose: asked !== rowspan };
        for (const end = x + cell.colspan; x < end; ++x)
          busy[x] = Math.max(busy[x] || 0, y + cell.rowspan);
        cells.push(cell);
        find.set(e, cell);
        width = Math.max(width, x);
      }
    }
    return { table, rows, cells, width, find };
  };

  const covers = (cell, y, x) => cell.row <= y && y < cell.row + cell.rowspan && cell.column <= x &&
    x < cell.column + cell.colspan;
  const cellAt = (grid, y, x) => grid.cells.find((cell) => covers(cell, y, x)) || null;

  // By column, the cell in row y. Of two that overlap there, the one that `first` is true for.
  const slotsOfRow = (grid, y, first = () => false) => {
    const slots = [];
    for (const cell of grid.cells)
      if (cell.row <= y && y < cell.row + cell.rowspan)
        for (let x = cell.column; x < cell.column + cell.colspan; ++x)
          if (!slots[x] || first(cell))
            slots[x] = cell;
    return slots;
  };
  const slotsOfColumn = (grid, x, first = () => false) => {
    const slots = [];
    for (const cell of grid.cells)
      if (cell.column <= x && x < cell.column + cell.colspan)
        for (let y = cell.row; y < cell.row + cell.rowspan; ++y)
          if (!slots[y] || first(cell))
            slots[y] = cell;
    return slots;
  };

  // The rectangle around two cells, grown until it cuts no span: { top, left, bottom, right, cells }, ends exclusive.
  const rectangle = (grid, one, other) => {
    const r = { top: Infinity, left: Infinity, bottom: 0, right: 0, cells: [] };
    const grow = (cell) => {
      const area = r.top + r.left - r.bottom - r.right;
      r.top = Math.min(r.top, cell.row);
      r.left = Math.min(r.left, cell.column);
      r.bottom = Math.max(r.bottom, cell.row + cell.rowspan);
      r.right = Math.max(r.right, cell.column + cell.colspan);
      return area !== r.top + r.left - r.bottom - r.right;
    };
    const touches = (cell) => cell.row < r.bottom && r.top < cell.row + cell.rowspan && cell.column < r.right &&
      r.left < cell.column + cell.colspan;
    grow(one);
    grow(other);
    for (let grown = true; grown;) {
      grown = false;
      for (const cell of grid.cells)
        if (touches(cell) && grow(cell))
          grown = true;
    }
    r.cells = grid.cells.filter(touches);
    return r;
  };

  // Puts a node behind another one, set off by the same white space as that.
  const putAfter = (node, other) => {
    const space = node.previousSibling;
    if (space && isSpace(space))
      node.after(space.cloneNode(), other);
    else
      node.after(other);
  };

  // Takes a row or cell out, with the white space in front of it where that would be left over.
  const takeOut = (element) => {
    const space = element.previousSibling, next = element.nextSibling;
    if (space && isSpace(space) && (!next || isSpace(next)))
      space.remove();
    element.remove();
  };

  // Comments between cells may be server-side code: they stay where the row was.
  const takeOutRow = (row) => {
    for (const node of [...row.childNodes])
      if (node.nodeType === Node.COMMENT_NODE)
        row.before(node);
    takeOut(row);
  };

  // An attribute that comes back by undo goes to the end of its tag. So what stands behind it is taken off as well, from
  // the end, and put on again: then undo finds the old order.
  const dropAttribute = (element, name) => {
    const names = element.getAttributeNames();
    const behind = names.slice(names.indexOf(name) + 1).map((other) => [other, element.getAttribute(other)]);
    for (const [other] of [...behind].reverse())
      element.removeAttribute(other);
    element.removeAttribute(name);
    for (const [other, value] of behind)
      element.setAttribute(other, value);
  };

  const setSpan = (element, name, now, wanted) => {
    if (now === wanted)
      return;
    if (wanted > 1)
      element.setAttribute(name, wanted);
    else if (element.hasAttribute(name))
      dropAttribute(element, name);
  };

  // A span that asked for more rows than there were is left as it is while it comes to what is wanted.
  const setRowspan = (cell, left) => {
    const now = cell.loose ? rowspanOf(cell.element, left)
      : cell.element.hasAttribute("rowspan") ? cell.element.rowSpan : 1;
    setSpan(cell.element, "rowspan", now, cell.rowspan);
  };

  const arrange = (row, elements) => {
    let at = nextCell(row.firstChild);
    let before = null;
    for (const element of elements) {
      if (element === at)
        at = nextCell(at.nextSibling);
      else if (before)
        putAfter(before, element);
      else
        row.insertBefore(element, at);
      before = element;
    }
  };

  // Makes the table what the grid says. Rows are in the table already and cells taken out of the grid are out of their
  // rows. Where a cell would slip to the left, because a short row got something at its end, `filler(colspan)` gives a
  // cell for the gap.
  const realise = (grid, filler) => {
    const ends = sectionEnds(grid.rows);
    const byRow = grid.rows.map(() => []);
    for (const cell of grid.cells)
      byRow[cell.row].push(cell);
    let busy = [];
    grid.rows.forEach((row, y) => {
      if (y && row.section !== grid.rows[y - 1].section)
        busy = [];
      const elements = [];
      let x = 0;
      const put = (element, rowspan, colspan) => {
        for (const end = x + colspan; x < end; ++x)
          busy[x] = Math.max(busy[x] || 0, y + rowspan);
        elements.push(element);
      };
      const skip = () => { while (busy[x] > y) ++x; };
      for (const cell of byRow[y].sort((a, b) => a.column - b.column)) {
        for (skip(); x < cell.column; skip()) {
          let gap = 1;
          while (x + gap < cell.column && !(busy[x + gap] > y))
            ++gap;
          put(filler(gap), 1, gap);
        }
        put(cell.element, cell.rowspan, cell.colspan);
        setRowspan(cell, ends[y] - y);
        setSpan(cell.element, "colspan", colspanOf(cell.element), cell.colspan);
      }
      arrange(row.element, elements);
    });
  };

  // Where a place is when the places from `from` up to `to` are no more.
  const without = (place, from, to) => place <= from ? place : place < to ? from : place - (to - from);

  // In the grid alone: rows or columns `from` up to `to` go. Gives the cells that are gone with them.
  const cut = (grid, start, span, from, to) => {
    const gone = [];
    grid.cells = grid.cells.filter((cell) => {
      const first = without(cell[start], from, to);
      const length = without(cell[start] + cell[span], from, to) - first;
      cell[start] = first;
      cell[span] = length;
      if (!length)
        gone.push(cell);
      return length;
    });
    return gone;
  };
  const cutRows = (grid, from, to) => {
    const gone = cut(grid, "row", "rowspan", from, to);
    grid.rows.splice(from, to - from);
    return gone;
  };
  const cutColumns = (grid, from, to) => {
    grid.width -= Math.min(to, grid.width) - from;
    return cut(grid, "column", "colspan", from, to);
  };

  // In the grid alone: `count` free rows or columns before the one at `at`; cells that cross the line grow.
  const widen = (grid, start, span, at, count, crosses) => {
    for (const cell of grid.cells)
      if (cell[start] >= at)
        cell[start] += count;
      else if (crosses(cell))
        cell[span] += count;
  };

  return { read, rowsOf, columnsOf, sectionEnds, tableOf, isCell, isRow, isSpace, cellAt, slotsOfRow, slotsOfColumn, rectangle,
           realise, cutRows, cutColumns, widen, putAfter, takeOut, takeOutRow, setSpan };
});
