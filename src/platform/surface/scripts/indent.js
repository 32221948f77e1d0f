// indent.js: deeper and back: items of lists by a list in the item before, other text by block quotes.
Surface.module("indent", ({ history, selection, commands, dom, lines, structure, lists }) => {
  const { itemOf, isItem, isList } = structure;

  const quoteOrItemOf = (node) => {
    const found = dom.closest(node, (e) => isItem(e) || e.nodeName === "BLOCKQUOTE" || lines.isWall(e));
    return found && (isItem(found) || found.nodeName === "BLOCKQUOTE") ? found : null;
  };

  const indentItem = (item) => {
    const before = lists.passBlank(item, true);
    if (!isItem(before))
      return;
    const list = item.parentNode;
    const between = lists.takeBetween(before, item).filter(structure.carries);
    let nested = before.lastElementChild;
    if (!nested || !isList(nested) || lists.passBlank(nested, false)) {
      nested = document.createElement(list.nodeName);
      before.append(nested);
    }
    nested.append(...between, item);
  };

  // A table or list that lies within the selection moves as a whole, a paragraph by itself, bare text as a paragraph.
  const unitOf = (line, common) => {
    let unit = null;
    for (let e = line.container; e && e !== document.body && !e.contains(common); e = e.parentNode)
      if (e.nodeName === "TABLE" || isList(e))
        unit = e;
    if (unit)
      return unit;
    const { container } = line;
    const isWhole = lines.coversAll(line) && container !== document.body && !lines.isWall(container) &&
      (dom.Paragraphs.has(container.nodeName) || container.nodeName === "DIV") && container.nodeName !== "DT";
    return isWhole ? container : structure.wrap(line, "p");
  };

  const isPlainQuote = (node) => !!node && node.nodeName === "BLOCKQUOTE" && !node.attributes.length;
  const quote = (units) => {
    for (const run of lists.group(units)) {
      const before = lists.passBlank(run[0], true);
      let box = isPlainQuote(before) ? before : null;
      if (!box) {
        box = document.createElement("blockquote");
        run[0].before(box);
      }
      box.append(...lists.takeBetween(box, run[0]));
      for (const unit of run)
        box.append(...lists.takeBetween(box, unit), unit);
      const next = lists.passBlank(box, false);
      if (isPlainQuote(next)) {
        box.append(...lists.takeBetween(box, next), ...next.childNodes);
        next.remove();
      }
    }
  };

  // The children of a quote from the first to the last that is meant come out; what stays is cut in two.
  const unquote = (box, units) => {
    const kids = [...box.childNodes];
    const from = Math.min(...units.map((unit) => kids.indexOf(unit)));
    const to = Math.max(...units.map((unit) => kids.indexOf(unit)));
    const isNothing = (node) => dom.isText(node) && lines.Blank.test(node.data);
    const rest = kids.slice(to + 1);
    if (!rest.every(isNothing)) {
      const second = box.cloneNode(false);
      second.removeAttribute("id");
      box.after(second);
      second.append(...rest);
    }
    box.after(...kids.slice(from, to + 1));
    if ([...box.childNodes].every(isNothing))
      box.remove();
  };

  const chosen = () => {
    const range = selection.range();
    const all = lines.piecesIn(range);
    const items = lists.chosenItems(range);
    return { range, all, items: items.filter((item) => !items.some((other) => other !== item && other.contains(item))) };
  };

  const indent = () => history.transact(null, () => structure.keepSelection(() => {
    const { range, all, items } = chosen();
    const common = range.commonAncestorContainer;
    const outside = all.filter((line) => !itemOf(line.container));
    if (!outside.length) {
      items.forEach(indentItem);
      return;
    }
    quote([...new Set(all.map((line) => unitOf(line, common)))]);
  }));

  const outdent = () => history.transact(null, () => structure.keepSelection(() => {
    const { all, items } = chosen();
    items.filter((item) => quoteOrItemOf(item) === item).forEach(lists.outdentItem);
    const units = new Map(); // quote -> its children that are meant
    for (const line of all) {
      const box = line.container.isConnected && quoteOrItemOf(line.container);
      if (!box || isItem(box) || items.length && items.some((item) => item.contains(line.container)))
        continue;
      let unit = line.container === box ? structure.wrap(line, "p") : line.container;
      while (unit.parentNode !== box)
        unit = unit.parentNode;
      units.set(box, [...(units.get(box) || []), unit]);
    }
    for (const [box, inside] of units)
      unquote(box, inside);
  }));

  const anchors = () => {
    const s = document.getSelection();
    return [s.anchorNode, s.focusNode].filter(Boolean);
  };
  const canIndent = () => {
    const items = anchors().map(itemOf);
    return items.length && items.every((item) => item && !isItem(lists.passBlank(item, true)))
      ? commands.Disabled : commands.Enabled;
  };
  const canOutdent = () => anchors().some(quoteOrItemOf) ? commands.Enabled : commands.Disabled;

  commands.add("indent", { run: indent, status: canIndent });
  commands.add("outdent", { run: outdent, status: canOutdent });

  // The key in a list; elsewhere it changes nothing.
  const tab = (back) => {
    if (anchors().length && anchors().every(itemOf))
      commands.run(back ? "outdent" : "indent");
  };
  return { tab };
});
