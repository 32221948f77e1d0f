// blocks.js: block formats: what the style box shows and sets.
//
// Cells, list items and other containers are never turned into something else: a line in them becomes a block of its
// own. A division that holds one line is taken for a paragraph.
Surface.module("blocks", ({ history, selection, commands, dom, lines, structure }) => {
  const Formats = new Map([
    ["Normal", "P"], ["Heading 1", "H1"], ["Heading 2", "H2"], ["Heading 3", "H3"], ["Heading 4", "H4"], ["Heading 5", "H5"],
    ["Heading 6", "H6"], ["Formatted", "PRE"], ["Address", "ADDRESS"], ["Numbered List", "OL"], ["Bulleted List", "UL"],
  ]);
  const NameOf = new Map([...Formats].map(([name, element]) => [element, name]));
  const AskedLines = 300; // of a long selection only so many are looked at for what the box shows

  const formatOfLine = (line) => {
    const found = dom.closest(line.container, (e) => (NameOf.has(e.nodeName) && e.nodeName !== "P") || lines.isWall(e));
    return (found && NameOf.get(found.nodeName)) || "Normal";
  };
  const format = () => {
    const range = selection.range();
    let common = null;
    for (const line of range.collapsed ? [lines.lineAt(range.startContainer, range.startOffset)]
      : lines.linesIn(range).slice(0, AskedLines)) {
      const name = formatOfLine(line);
      if (common !== null && name !== common)
        return "";
      common = name;
    }
    return common || "Normal";
  };

  const isParagraph = ({ container }) => dom.Paragraphs.has(container.nodeName) && container.nodeName !== "DT";
  const isPlainDivision = (line) => line.container.nodeName === "DIV" && lines.coversAll(line) && !lines.isWall(line.container);

  const setLine = (line, name) => {
    const wasPre = lines.inPre(line.container);
    let block = line.container;
    if (name === "P" && block.parentNode.nodeName === "LI" && isParagraph(line) && !block.attributes.length && !wasPre &&
        block.nodeName !== "P") {
      structure.unwrap(block); // an item's text stands in it as it is
      return;
    }
    if (isParagraph(line) || isPlainDivision(line))
      block = structure.rename(block, name);
    else if (name !== "P" || block.nodeName !== "LI")
      block = structure.wrap(line, name);
    structure.adapt([...block.childNodes], wasPre, name === "PRE");
  };

  const setFormat = (name) => {
    const element = Formats.get(name);
    if (!element)
      return;
    if (element === "OL" || element === "UL") {
      const command = element === "OL" ? "orderedList" : "unorderedList";
      if (commands.statusOf(command) !== commands.Latched)
        commands.run(command);
      return;
    }
    const range = selection.range();
    const chosen = lines.piecesIn(range);
    const listItems = chosen.filter((line) => structure.isItem(line.container));
    if (element === "P" && listItems.length === chosen.length && listItems.length) {
      commands.run(listItems[0].container.parentNode.nodeName === "OL" ? "orderedList" : "unorderedList");
      return;
    }
    history.transact(null, () => structure.keepSelection(() => chosen.forEach((line) => setLine(line, element))));
  };

  commands.add("getBlockFormat", { run: format });
  commands.add("setBlockFormat", { run: setFormat });
  return { isParagraph };
});
