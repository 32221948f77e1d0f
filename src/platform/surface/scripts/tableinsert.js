// tableinsert.js: new tables.
Surface.module("tableinsert", ({ history, dom, selection, commands, tablegrid, tables }) => {
  // Lines of text that a table splits, and places where no table may stand. A table in a parsed page ends some of them.
  const Split = new Set(["P", "H1", "H2", "H3", "H4", "H5", "H6", "PRE", "LISTING"]);
  const Refusing = new Set(["BUTTON", "SELECT", "OPTION", "TEXTAREA", "SVG", "MATH", "XMP", "CAPTION", "LEGEND", "SUMMARY"]);

  const NoText = new Set(["TABLE", "THEAD", "TBODY", "TFOOT", "TR", "COLGROUP", "UL", "OL", "DL"]);

  const status = () => {
    const s = document.getSelection();
    const refused = !s || !s.anchorNode || !document.body.contains(s.anchorNode) ||
      NoText.has(s.anchorNode.nodeName) || dom.closest(s.anchorNode, (e) => Refusing.has(e.nodeName.toUpperCase()));
    return refused ? commands.Disabled : commands.Enabled;
  };

  // Attributes come as the text of a start tag; the parser reads them as it would in a page.
  const build = ({ rows, cols, tableAttrs, cellAttrs, caption }) => {
    const box = document.createElement("template");
    box.innerHTML = `<table ${tableAttrs || ""}><tbody><tr><td ${cellAttrs || ""}></td></tr></tbody></table>`;
    const table = document.importNode(box.content.querySelector("table"), true);
    const body = table.lastElementChild, row = body.firstElementChild, cell = row.firstElementChild;
    tables.fill(cell);
    for (let i = 1; i < Math.max(1, cols); ++i)
      row.append(cell.cloneNode(true));
    for (let i = 1; i < Math.max(1, rows); ++i)
      body.append(row.cloneNode(true));
    if (caption) {
      const element = document.createElement("caption");
      element.textContent = caption;
      table.prepend(element);
    }
    return table;
  };

  // The selection becomes a place: after what a table may follow, or between the halves of a line of text.
  const splitLine = (range, line, table) => {
    const tail = document.createRange();
    tail.setStart(range.startContainer, range.startOffset);
    tail.setEndAfter(line);
    const rest = tail.extractContents();
    const second = rest.firstElementChild;
    line.after(table, rest);
    // A half without text goes; comments in it may be server-side code.
    for (const half of [line, second])
      if (half && isBare(half))
        half.replaceWith(...[...half.childNodes].filter((node) => node.nodeType === Node.COMMENT_NODE));
  };
  const isBare = (line) => {
    const elements = line.getElementsByTagName("*");
    return dom.isEmpty(line) || (elements.length === 1 && elements[0].nodeName === "BR" && !/[^ \t\n\r\f]/.test(line.textContent));
  };

  const insertAt = (range, table) => {
    const between = dom.elementOf(range.startContainer);
    const line = dom.closest(between, (e) => Split.has(e.nodeName) || tablegrid.isCell(e));
    if (line && Split.has(line.nodeName)) {
      splitLine(range, line, table);
      return;
    }
    range.insertNode(table);
    // A break that only kept the place open would stay as an empty line.
    const next = table.nextSibling;
    if (next && next.nodeName === "BR" && !next.nextSibling && !table.previousSibling)
      next.remove();
  };

  const insert = (parameters) => history.transact(null, () => {
    const table = build(parameters || {});
    const cells = tables.selectedCells();
    const range = selection.range();
    if (cells.length)
      range.setStart(cells[0], 0);
    if (cells.length)
      range.collapse(true);
    else
      range.deleteContents();
    insertAt(range, table);
    for (const text of [table.previousSibling, table.nextSibling])
      if (text && dom.isText(text) && !text.length)
        text.remove();
    tables.caretInto(table.querySelector("td,th"));
  });

  commands.add("insertTable", { run: insert, status });
  return {};
});
