// align.js: left, centre, right, by the align attribute.
//
// The attribute goes to the paragraph, heading or division of a line; to the cell where the line is all that it holds;
// bare text becomes a paragraph, and in a list item, which has no such attribute, a division. What agrees with its
// surroundings needs no attribute and loses it.
Surface.module("align", ({ history, selection, commands, dom, lines, structure, blocks }) => {
  const Aligned = new Set(["P", "H1", "H2", "H3", "H4", "H5", "H6", "DIV", "TD", "TH", "CAPTION"]);
  const styleAlign = /(^|;)\s*text-align\s*:\s*([^;]*?)\s*(?:;|$)/i;

  const own = (e) => {
    const style = styleAlign.exec(e.getAttribute("style") || "");
    if (style)
      return style[2].toLowerCase();
    if (e.nodeName === "CENTER")
      return "center";
    const value = (e.getAttribute("align") || "").toLowerCase();
    if (e.nodeName === "TABLE" || e.nodeName === "CAPTION" || dom.isAtom(e))
      return ""; // there it says where the object stands
    return value || (e.nodeName === "TH" ? "center" : "");
  };
  // Whether a table's text follows what is around the table depends on the page's mode: then it is "unknown".
  const around = (node) => {
    const found = dom.closest(node, (e) => e.nodeName === "TABLE" || (dom.isElement(e) && own(e) !== ""));
    if (!found || found.nodeName !== "TABLE")
      return found ? own(found) : "";
    return around(found.parentNode) && "unknown";
  };

  const dropStyle = (element) => {
    const style = element.getAttribute("style");
    if (!style || !styleAlign.test(style))
      return;
    const rest = style.replace(styleAlign, (all, before, value) => before && all.endsWith(";") ? ";" : "").trim();
    if (rest)
      element.setAttribute("style", rest);
    else
      element.removeAttribute("style");
  };

  const carrierOf = (line) => {
    const { container } = line;
    if (Aligned.has(container.nodeName) && lines.coversAll(line))
      return container;
    if (dom.Cells.has(container.nodeName) && !line.first)
      return container;
    if (blocks.isParagraph(line)) { // preformatted text, an address
      const parent = container.parentNode;
      return parent.nodeName === "DIV" && parent.childElementCount === 1 ? parent
        : structure.wrap({ container: parent, first: container, last: container }, "div");
    }
    const inItem = ["LI", "DD", "DT"].includes(container.nodeName);
    return structure.wrap(line, inItem || dom.Cells.has(container.nodeName) ? "div" : "p");
  };

  const hasAlign = (line, value) => (around(line.container) || "left") === value;
  const alignLine = (line, value) => {
    if (hasAlign(line, value) && !Aligned.has(line.container.nodeName))
      return;
    setAlign(carrierOf(line), value);
  };
  const setAlign = (carrier, value) => {
    dropStyle(carrier);
    const given = around(carrier.parentNode) || "left";
    if (value === (carrier.nodeName === "TH" ? "center" : given))
      carrier.removeAttribute("align");
    else if (carrier.getAttribute("align") !== value)
      carrier.setAttribute("align", value);
    if (carrier.nodeName === "DIV" && !carrier.attributes.length && structure.isItem(carrier.parentNode) &&
        !structure.blankSide(carrier, true) && !structure.blankSide(carrier, false))
      structure.unwrap(carrier);
  };

  const alignObject = (object, value) => {
    const usual = object.nodeName === "HR" ? "center" : "left";
    if (value === usual)
      object.removeAttribute("align");
    else
      object.setAttribute("align", value);
  };

  const justify = (value) => () => history.transact(null, () => {
    const object = selection.control();
    structure.keepSelection(() => {
      if (object && (object.nodeName === "TABLE" || object.nodeName === "HR"))
        alignObject(object, value);
      else
        lines.linesIn(selection.range()).forEach((line) => alignLine(line, value));
    });
    if (object && object.isConnected)
      selection.selectControl(object);
  });

  // A long selection is known by its two ends.
  const status = (value) => () => {
    const s = document.getSelection();
    if (!s.anchorNode)
      return commands.Enabled;
    const object = selection.control();
    if (object && (object.nodeName === "TABLE" || object.nodeName === "HR"))
      return (object.getAttribute("align") || "").toLowerCase() === value ? commands.Latched : commands.Enabled;
    const held = [s.anchorNode, s.focusNode].filter((node) => around(node) === value).length;
    return [commands.Enabled, commands.Mixed, commands.Latched][held];
  };

  for (const [name, value] of [["justifyLeft", "left"], ["justifyCenter", "center"], ["justifyRight", "right"]])
    commands.add(name, { run: justify(value), status: status(value) });
  return {};
});
