// tablemerge.js: cells made one, and one made several.
Surface.module("tablemerge", ({ dom, commands, tablegrid, tables }) => {
  const isSeen = (node) => node.nodeType !== Node.COMMENT_NODE && !tablegrid.isSpace(node);

  // Nothing in it but what keeps a cell open: a line break, a no-break space.
  const isBlank = (cell) => !/[^ \t\n\r\f\u00a0]/.test(cell.textContent) &&
    [...cell.getElementsByTagName("*")].every((e) => e.nodeName === "BR" || (e.nodeName === "P" && !e.attributes.length)) &&
    cell.getElementsByTagName("br").length < 2;

  const append = (cell, nodes) => {
    const [first] = nodes, last = cell.lastChild;
    if (last && first && dom.isText(last) && dom.isText(first)) {
      last.appendData(first.data);
      first.remove();
      nodes = nodes.slice(1);
    }
    cell.append(...nodes);
  };

  // What `from` holds goes to the end of `to`, on a line of its own. A blank cell gives nothing but its comments, which
  // may be server-side code.
  const moveContent = (from, to) => {
    if (isBlank(from)) {
      append(to, [...from.childNodes].filter((node) => node.nodeType === Node.COMMENT_NODE));
      return;
    }
    if (isBlank(to)) {
      for (const node of [...to.childNodes])
        if (node.nodeType !== Node.COMMENT_NODE)
          node.remove();
    } else {
      const last = [...to.childNodes].filter(isSeen).pop();
      const first = [...from.childNodes].find(isSeen);
      if (last && first && last.nodeName !== "BR" && !dom.isBlock(last) && !dom.isBlock(first))
        to.append(document.createElement("br"));
    }
    append(to, [...from.childNodes]);
  };

  const canMerge = () => {
    const at = tables.context();
    return at && at.from !== at.to && at.from.parentNode.parentNode === at.to.parentNode.parentNode
      ? commands.Enabled : commands.Disabled;
  };

  // Lines in which cells began, by row or by column.
  const starts = (grid, key) => new Set(grid.cells.map((cell) => cell[key]));

  // Rows and columns in which no cell begins any more are of no use to anybody.
  const collapse = (grid, area, rowsBefore, columnsBefore) => {
    const rows = starts(grid, "row"), columns = starts(grid, "column");
    const idle = [];
    for (let y = area.bottom - 1; y > area.top; --y)
      if (rowsBefore.has(y) && !rows.has(y)) {
        idle.push(grid.rows[y].element);
        tablegrid.cutRows(grid, y, y + 1);
      }
    for (let x = area.right - 1; x > area.left; --x)
      if (columnsBefore.has(x) && !columns.has(x)) {
        tablegrid.cutColumns(grid, x, x + 1);
        tables.cutColumnElements(grid.table, x, x + 1);
      }
    return idle;
  };

  tables.add("mergeCells", ({ grid, area }) => {
    const rowsBefore = starts(grid, "row"), columnsBefore = starts(grid, "column");
    const [first, ...others] = area.cells;
    const gone = new Set(others);
    for (const { element } of others) {
      moveContent(element, first.element);
      tablegrid.takeOut(element);
    }
    grid.cells = grid.cells.filter((cell) => !gone.has(cell));
    first.rowspan = area.bottom - area.top;
    first.colspan = area.right - area.left;
    const idle = collapse(grid, area, rowsBefore, columnsBefore);
    tables.realise(grid);
    idle.forEach(tablegrid.takeOutRow);
    tables.caretInto(first.element);
  }, canMerge);

  const divide = (grid, cell) => {
    const { row, column, rowspan, colspan } = cell;
    for (let y = row; y < row + rowspan; ++y)
      for (let x = column; x < column + colspan; ++x)
        if (y !== row || x !== column)
          tables.addCell(grid, cell.element, { row: y, column: x });
    cell.rowspan = cell.colspan = 1;
    cell.open = cell.loose = false;
  };

  // Each of these cells of column `x` is parted in two; the column's other cells get as much wider.
  const partColumn = (grid, x, cells) => {
    const parted = new Set(cells);
    for (const cell of grid.cells)
      if (cell.column > x)
        ++cell.column;
      else if (cell.column + cell.colspan > x && !parted.has(cell))
        ++cell.colspan;
    for (const cell of cells)
      tables.addCell(grid, cell.element, { row: cell.row, column: x + 1 });
    ++grid.width;
    tables.addColumnElements(grid.table, x, 1);
  };

  tables.add("splitCell", ({ grid, area }) => {
    const spanned = area.cells.filter((cell) => cell.rowspan > 1 || cell.colspan > 1);
    for (const cell of spanned)
      divide(grid, cell);
    if (!spanned.length)
      for (let x = area.right - 1; x >= area.left; --x)
        partColumn(grid, x, area.cells.filter((cell) => cell.column === x));
    tables.realise(grid);
    tables.caretInto(area.cells[0].element);
  });

  return { isBlank };
});
