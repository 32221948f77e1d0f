// tableinsert.js: new tables.
Surface.module("tableinsert", ({ history, dom, selection, commands, tables, joins, insertion }) => {
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

  const isBare = (line) => {
    const elements = line.getElementsByTagName("*");
    return dom.isEmpty(line) || (elements.length === 1 && elements[0].nodeName === "BR" && !/[^ \t\n\r\f]/.test(line.textContent));
  };

  // In place of what the range holds. A half without text that is left of a line goes; comments in it may be
  // server-side code.
  const insertAt = (range, table) => {
    if (!range.collapsed) {
      range.setStart(...joins.erase(range, { replaced: true }));
      range.collapse(true);
    }
    const line = dom.closest(range.startContainer, (e) => Split.has(e.nodeName) || dom.Cells.has(e.nodeName));
    const following = line && line.nextSibling;
    const fragment = document.createDocumentFragment();
    fragment.append(table);
    insertion.insertFragment(range, fragment);
    for (const half of [line, table.nextSibling !== following && table.nextSibling])
      if (half && half.isConnected && Split.has(half.nodeName) && isBare(half))
        half.replaceWith(...[...half.childNodes].filter((node) => node.nodeType === Node.COMMENT_NODE));
  };

  const insert = (parameters) => history.transact(null, () => {
    const table = build(parameters || {});
    const cells = tables.selectedCells();
    const range = selection.range();
    if (cells.length) {
      range.setStart(cells[0], 0);
      range.collapse(true);
    }
    insertAt(range, table);
    tables.caretInto(table.querySelector("td,th"));
  });

  commands.add("insertTable", { run: insert, status });
  return {};
});
