// tables.js: what is selected in a table, and its rows, columns and cells as commands.
//
// New rows go below the selected ones and new columns to the right of them, as many as are selected: so a table grows at
// its ends, where it mostly does. A new cell is of its neighbour's kind with its looks, but not its size; it holds a line
// break as cells do that the engine emptied, which gives it a height and takes the caret.
Surface.module("tables", ({ history, dom, selection, commands, styletext, tablegrid }) => {
  const grids = tablegrid;

  const cellsAbove = (node) => {
    const cells = [];
    for (let e = node; e && e !== document.body; e = e.parentNode)
      if (grids.isCell(e) && grids.isRow(e.parentNode))
        cells.push(e);
    return cells;
  };

  // A place between rows or cells stands for the cell behind it or, at the end of a selection, for the one before it.
  const innerPlace = (node, offset, isEnd) => {
    while (dom.isElement(node) && /^(TABLE|THEAD|TBODY|TFOOT|TR)$/.test(node.nodeName)) {
      const elements = [...node.childNodes].slice(isEnd ? 0 : offset, isEnd ? offset : undefined)
        .filter(dom.isElement);
      const next = isEnd ? elements[elements.length - 1] : elements[0];
      if (!next)
        break;
      node = next;
      offset = isEnd ? node.childNodes.length : 0;
    }
    return node;
  };

  // Which cells a selection of cells is about is kept beside the engine's selection, which covers everything in the text
  // from the first to the last, and holds while that is what it was.
  let kept = null; // { anchor, focus, places }
  const placesOf = (s) => [s.anchorNode, s.anchorOffset, s.focusNode, s.focusOffset];
  const remember = (ends) => { kept = ends && { ...ends, places: placesOf(document.getSelection()) }; };
  const remembered = () => {
    const s = kept && document.getSelection();
    return s && kept.anchor.isConnected && kept.focus.isConnected && placesOf(s).every((place, i) => place === kept.places[i])
      ? kept : null;
  };
  history.keepWithSelection({ save: remembered, restore: (ends) => remember(ends) });

  // The two cells in which the selection begins and ends, of the innermost table that holds it all: { table, from, to,
  // backwards }, or null. Reads no layout and looks only at what is around the two ends.
  const context = () => {
    const s = document.getSelection();
    if (!s || !s.anchorNode || !document.body.contains(s.anchorNode) || !document.body.contains(s.focusNode))
      return null;
    const ends = remembered();
    if (ends)
      return { table: grids.tableOf(ends.anchor), from: ends.anchor, to: ends.focus, backwards: false };
    const order = s.anchorNode === s.focusNode ? s.anchorOffset - s.focusOffset
      : s.anchorNode.compareDocumentPosition(s.focusNode) & Node.DOCUMENT_POSITION_FOLLOWING ? -1 : 1;
    const anchors = cellsAbove(order ? innerPlace(s.anchorNode, s.anchorOffset, order > 0) : s.anchorNode);
    const focuses = cellsAbove(order ? innerPlace(s.focusNode, s.focusOffset, order < 0) : s.focusNode);
    for (const from of anchors) {
      const table = grids.tableOf(from);
      const to = focuses.find((cell) => grids.tableOf(cell) === table);
      if (to && table)
        return { table, from: order > 0 ? to : from, to: order > 0 ? from : to, backwards: order > 0 };
    }
    return null;
  };

  // The elements of the cells that are selected as such, in their order in the table: none unless the selection reaches
  // from one cell into another. The engine's own selection covers what lies between them in the text, which can be more.
  const selectedCells = () => {
    const at = context();
    return at && at.from !== at.to ? around(at).area.cells.map((cell) => cell.element) : [];
  };

  // With the grid and the selected area of it.
  const around = (at) => {
    const grid = grids.read(at.table);
    return { ...at, grid, area: grids.rectangle(grid, grid.find.get(at.from), grid.find.get(at.to)) };
  };

  // Puts the caret to the start of a cell's text.
  const caretInto = (cell) => {
    let node = cell;
    for (let child = node.firstChild; child; child = node.firstChild) {
      while (child && ((grids.isSpace(child) && child.nextSibling) || child.nodeType === Node.COMMENT_NODE))
        child = child.nextSibling;
      if (!child || dom.isAtom(child) || dom.isText(child) || dom.Unseen.has(child.nodeName)) {
        node = child || node;
        break;
      }
      node = child;
    }
    const s = document.getSelection();
    if (dom.isText(node))
      s.collapse(node, Math.max(node.data.search(/[^ \t\n\r\f]/), 0));
    else if (dom.isAtom(node))
      s.collapse(node.parentNode, dom.indexOf(node));
    else
      s.collapse(node, 0);
    selection.scrollToCaret();
  };

  // Looks that a neighbour shares; not size, name or what it does. Server-side code (characters for private use) is
  // written once and is not copied.
  const Shared = new Set(["align", "valign", "bgcolor", "bordercolor", "background", "class", "nowrap", "dir", "lang",
    "scope", "style"]);
  const ServerCode = /\p{Co}/u;
  const OwnStyles = ["width", "height", "min-width", "min-height", "max-width", "max-height", "position", "left", "top"];
  const copyLooks = (from, to) => {
    for (const { name, value } of from.attributes) {
      if (Shared.has(name) && !ServerCode.test(value))
        to.setAttribute(name, value);
    }
    if (OwnStyles.some((name) => styletext.get(to, name)))
      styletext.set(to, Object.fromEntries(OwnStyles.map((name) => [name, null])));
    return to;
  };

  const fill = (cell) => cell.append(document.createElement("br"));
  const newCell = (like, colspan = 1, rowspan = 1) => {
    const element = document.createElement(like ? like.nodeName : "td");
    if (like)
      copyLooks(like, element);
    fill(element);
    grids.setSpan(element, "rowspan", 1, rowspan);
    grids.setSpan(element, "colspan", 1, colspan);
    return element;
  };
  const addCell = (grid, like, place) => {
    const cell = { open: false, loose: false, rowspan: 1, colspan: 1, ...place };
    cell.element = newCell(like, cell.colspan, cell.rowspan);
    grid.cells.push(cell);
    return cell;
  };
  const realise = (grid) => grids.realise(grid, (colspan) => newCell(null, colspan));

  // Stretches of equal owners in the slots of a line, where nothing crosses to its other side; gaps are stretches of one.
  const stretches = (slots, crosses) => {
    const found = [];
    for (let i = 0; i < slots.length;) {
      const owner = slots[i];
      let length = 1;
      while (owner && slots[i + length] === owner)
        ++length;
      if (!owner || !crosses(owner))
        found.push({ owner, start: i, length });
      i += length;
    }
    return found;
  };

  // `count` rows below row `y` and like it. Cells that reach further down grow.
  const addRows = (grid, y, count) => {
    const model = grid.rows[y];
    const crosses = (cell) => cell.row + cell.rowspan > y + 1 ||
      (cell.open && cell.row + cell.rowspan === y + 1 && cell.row <= y);
    const places = stretches(grids.slotsOfRow(grid, y, crosses), crosses);
    grids.widen(grid, "row", "rowspan", y + 1, count, crosses);
    const added = [];
    for (let i = 1; i <= count; ++i) {
      const element = copyLooks(model.element, document.createElement("tr"));
      grids.putAfter(i === 1 ? model.element : added[i - 2].element, element);
      added.push({ element, section: model.section });
      for (const { owner, start, length } of places)
        addCell(grid, owner && owner.element, { row: y + i, column: start, colspan: length });
    }
    grid.rows.splice(y + 1, 0, ...added);
  };

  // `count` columns to the right of column `x`. Rows that end before it stay as they are.
  const addColumns = (grid, x, count) => {
    const crosses = (cell) => cell.column + cell.colspan > x + 1;
    const slots = grids.slotsOfColumn(grid, x, crosses);
    const places = stretches(slots, crosses).filter(({ owner }) => owner);
    grids.widen(grid, "column", "colspan", x + 1, count, crosses);
    for (const { owner, start, length } of places)
      for (let i = 1; i <= count; ++i)
        addCell(grid, owner.element, { row: start, column: x + i, rowspan: length });
    grid.width += count;
    addColumnElements(grid.table, x, count);
  };

  const addColumnElements = (table, x, count) => {
    const column = grids.columnsOf(table).find(({ start, span }) => start <= x && x < start + span);
    if (!column)
      return;
    const { element, start, span } = column;
    if (element.nodeName === "COLGROUP" || start + span > x + 1) {
      grids.setSpan(element, "span", span, span + count);
      return;
    }
    const other = copyLooks(element, document.createElement("col"));
    grids.setSpan(other, "span", 1, count);
    grids.putAfter(element, other);
  };

  const cutColumnElements = (table, from, to) => {
    for (const { element, start, span } of grids.columnsOf(table)) {
      const left = span - Math.max(0, Math.min(to, start + span) - Math.max(from, start));
      const group = element.parentNode;
      if (left)
        grids.setSpan(element, "span", span, left);
      else
        grids.takeOut(element);
      if (!left && group.nodeName === "COLGROUP" && !group.firstElementChild)
        grids.takeOut(group);
    }
  };

  // The whole table goes. Comments between its rows may be server-side code and stay; the caret goes to what follows.
  const removeTable = (table) => {
    const keepComments = (element) => {
      for (const node of [...element.childNodes])
        if (node.nodeType === Node.COMMENT_NODE)
          table.before(node);
        else if (/^(THEAD|TBODY|TFOOT|TR)$/.test(node.nodeName))
          keepComments(node);
    };
    keepComments(table);
    const parent = table.parentNode, next = table.nextElementSibling;
    const at = dom.indexOf(table);
    table.remove();
    if (dom.isEmpty(parent) && (parent === document.body || grids.isCell(parent))) {
      const line = document.createElement(parent === document.body ? "p" : "br");
      if (parent === document.body)
        line.append(document.createElement("br"));
      parent.append(line);
      caretInto(parent);
    } else if (next && dom.Paragraphs.has(next.nodeName)) {
      caretInto(next);
    } else {
      document.getSelection().collapse(parent, at);
    }
  };

  // Rows that have a cell in them, their own or one from above.
  const heldRows = (grid) => {
    const held = new Set();
    for (const cell of grid.cells)
      for (let y = cell.row; y < cell.row + cell.rowspan; ++y)
        held.add(grid.rows[y].element);
    return held;
  };

  // Rows that were held by a cell and are so no more.
  const dropBareRows = (grid, before) => {
    const held = heldRows(grid);
    for (let y = grid.rows.length - 1; y >= 0; --y) {
      const { element } = grid.rows[y];
      if (held.has(element) || !before.has(element))
        continue;
      grids.cutRows(grid, y, y + 1);
      grids.takeOutRow(element);
    }
  };

  const dropBareSections = (table) => {
    for (const section of [...table.tBodies, table.tHead, table.tFoot])
      if (section && !section.childElementCount && ![...section.childNodes].some((n) => !grids.isSpace(n)))
        grids.takeOut(section);
  };

  // The caret goes to the cell that is now at a place, or near it. Does away with a table that has no cell left.
  const finish = (grid, y, x) => {
    if (!grid.cells.length) {
      removeTable(grid.table);
      return;
    }
    const row = Math.max(0, Math.min(y, grid.rows.length - 1));
    const cell = grids.cellAt(grid, row, x) || grids.slotsOfRow(grid, row).filter(Boolean).pop() || grid.cells[0];
    caretInto(cell.element);
  };

  // Each command gets the grid and the selected area of it; one step of the history.
  const run = (change) => () => {
    const at = context();
    if (at)
      history.transact(null, () => change(around(at)));
  };
  const inTable = () => context() ? commands.Enabled : commands.Disabled;
  const add = (name, change, status = inTable) => commands.add(name, { run: run(change), status });

  add("insertRow", ({ grid, area, from, to }) => {
    addRows(grid, area.bottom - 1, from === to ? 1 : area.bottom - area.top);
    realise(grid);
    finish(grid, area.bottom, area.left);
  });

  add("insertColumn", ({ grid, area, from, to }) => {
    addColumns(grid, area.right - 1, from === to ? 1 : area.right - area.left);
    realise(grid);
    finish(grid, area.top, area.right);
  });

  // Cells of a row follow one another; one that would run into a span from above goes behind it.
  const closeUp = (grid) => {
    let busy = [], y = -1, x = 0;
    for (const cell of grid.cells) {
      if (cell.row !== y) {
        if (y >= 0 && grid.rows[cell.row].section !== grid.rows[y].section)
          busy = [];
        y = cell.row;
        x = 0;
      }
      for (let i = 0; i < cell.colspan; ++i)
        if (busy[x + i] > y) {
          x += i + 1;
          i = -1;
        }
      cell.column = x;
      for (const end = x + cell.colspan; x < end; ++x)
        busy[x] = y + cell.rowspan;
    }
  };

  // As many behind the last selected cell of each row as are selected there; what follows in the row moves on.
  add("insertCell", ({ grid, area }) => {
    const counts = new Map(); // row -> [its last selected cell, how many are selected]
    for (const cell of area.cells)
      counts.set(cell.row, [cell, (counts.get(cell.row) || [cell, 0])[1] + 1]);
    const lasts = new Map([...counts.values()]);
    const cells = [];
    let caret = null;
    for (const cell of grid.cells) {
      cells.push(cell);
      for (let i = 0; i < (lasts.get(cell) || 0); ++i) {
        const added = addCell({ cells }, cell.element, { row: cell.row, column: 0 });
        caret = caret || added.element;
      }
    }
    closeUp({ ...grid, cells });
    realise({ ...grid, cells });
    caretInto(caret);
  });

  add("deleteRows", ({ grid, area }) => {
    const rows = grid.rows.slice(area.top, area.bottom);
    grids.cutRows(grid, area.top, area.bottom);
    if (grid.cells.length) {
      realise(grid);
      for (const row of rows)
        grids.takeOutRow(row.element);
      dropBareSections(grid.table);
    }
    finish(grid, area.top, area.left);
  });

  add("deleteColumns", ({ grid, area }) => {
    const held = heldRows(grid);
    const gone = grids.cutColumns(grid, area.left, area.right);
    if (grid.cells.length) {
      for (const { element } of gone)
        grids.takeOut(element);
      dropBareRows(grid, held);
      realise(grid);
      cutColumnElements(grid.table, area.left, area.right);
      dropBareSections(grid.table);
    }
    finish(grid, area.top, Math.min(area.left, Math.max(grid.width - 1, 0)));
  });

  // Cells behind them in the row move to the left.
  add("deleteCells", ({ grid, area }) => {
    const held = heldRows(grid);
    const gone = new Set(area.cells);
    const left = { ...grid, cells: grid.cells.filter((cell) => !gone.has(cell)) };
    if (left.cells.length) {
      for (const { element } of gone)
        grids.takeOut(element);
      dropBareRows(left, held);
      closeUp(left);
      realise(left);
      dropBareSections(grid.table);
    }
    finish(left, area.top, area.left);
  });

  return { context, around, remember, remembered, selectedCells, caretInto, copyLooks, newCell, addCell, fill, realise, addRows, addColumns,
           addColumnElements, cutColumnElements, dropBareSections, finish, run, add, inTable };
});
