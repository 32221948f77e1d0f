// tableclip.js: selected cells deleted, copied and pasted into.
Surface.module("tableclip", ({ dom, commands, tablegrid, tables, tablecells }) => {
  const deleteText = commands.row("delete");
  commands.add("delete", {
    run: (argument) => tablecells.clear() || deleteText.run(argument),
    status: deleteText.status,
  });

  // A table of the selected cells alone; null when none are selected.
  const copy = () => {
    const at = tables.context();
    if (!at || at.from === at.to)
      return null;
    const { grid, area } = tables.around(at);
    const table = at.table.cloneNode(false);
    table.removeAttribute("id");
    const body = table.appendChild(document.createElement("tbody"));
    const rows = grid.rows.slice(area.top, area.bottom).map(({ element }) => {
      const row = element.cloneNode(false);
      row.removeAttribute("id");
      return body.appendChild(row);
    });
    for (const cell of area.cells)
      rows[cell.row - area.top].append(cell.element.cloneNode(true));
    return table;
  };

  // Cells and line ends by tabs and line feeds, as sheets of other programs take them.
  const textOf = (table) => [...table.rows].map((row) =>
    [...row.cells].map((cell) => cell.textContent.replace(/\s+/g, " ").trim()).join("\t")).join("\n");

  // Puts what the cells of `source` hold into the selected cells and those below and to the right of them, cell by cell.
  // Only where the places match one to one; false otherwise. Within a step of the history.
  const fill = (source) => {
    const at = tables.context();
    if (!at || at.from === at.to)
      return false;
    const { grid, area } = tables.around(at);
    const from = tablegrid.read(source);
    const pairs = from.cells.map((cell) => {
      const place = tablegrid.cellAt(grid, area.top + cell.row, area.left + cell.column);
      const matches = place && place.row === area.top + cell.row && place.column === area.left + cell.column &&
        place.rowspan === cell.rowspan && place.colspan === cell.colspan;
      return matches ? [cell.element, place.element] : null;
    });
    if (!pairs.length || pairs.includes(null))
      return false;
    for (const [cell, place] of pairs)
      place.replaceChildren(...cell.childNodes);
    tables.caretInto(pairs[0][1]);
    return true;
  };

  // The table that markup consists of, alone.
  const tableOf = (fragment) => {
    const seen = [...fragment.childNodes].filter((node) => !tablegrid.isSpace(node) && node.nodeType !== Node.COMMENT_NODE);
    return seen.length === 1 && seen[0].nodeName === "TABLE" ? seen[0] : null;
  };

  return { copy, textOf, fill, tableOf };
});
