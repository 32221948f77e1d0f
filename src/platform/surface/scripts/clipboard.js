// clipboard.js: copy, cut, paste.
Surface.module("clipboard", ({ history, selection, dom, insertion, commands, events }) => {
  const hasSelection = () => selection.type() === "None" ? commands.Disabled : commands.Enabled;

  const pasteText = (text) => {
    const escape = (line) => line.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
    const lines = text.replace(/\r\n?/g, "\n").replace(/\n$/, "").split("\n").map(escape);
    insertion.pasteHTML(lines.join("<br>"));
  };

  const selectedMarkup = () => {
    const s = document.getSelection();
    if (!s || s.isCollapsed)
      return null;
    const box = document.createElement("div");
    box.append(s.getRangeAt(0).cloneContents());
    return { html: box.innerHTML, text: s.toString() };
  };

  const onCopy = (event) => {
    const markup = selectedMarkup();
    if (!markup)
      return false;
    event.clipboardData.setData("text/html", markup.html);
    event.clipboardData.setData("text/plain", markup.text);
    if (event.type === "cut")
      commands.run("delete");
    return true;
  };

  // Other programs wrap what they put on the clipboard into a whole page; only the marked fragment is meant.
  const fragmentOf = (html) => {
    const from = html.indexOf("<!--StartFragment-->");
    const to = html.lastIndexOf("<!--EndFragment-->");
    if (from >= 0 && to > from)
      return html.slice(from + "<!--StartFragment-->".length, to);
    const parsed = new DOMParser().parseFromString(html, "text/html");
    return parsed.body ? parsed.body.innerHTML : html;
  };

  const onPaste = (event) => {
    const html = event.clipboardData.getData("text/html");
    const text = event.clipboardData.getData("text/plain");
    if (html)
      insertion.pasteHTML(fragmentOf(html));
    else if (text)
      pasteText(text);
    return true;
  };

  events.on("copy", onCopy);
  events.on("cut", onCopy);
  events.on("paste", onPaste);
  commands.add("cut", { run: () => document.execCommand("cut"), status: hasSelection });
  commands.add("copy", { run: () => document.execCommand("copy"), status: hasSelection });
  commands.add("paste", { run: () => document.execCommand("paste") });
  commands.add("selectAll", { run: () => { history.close(); return document.execCommand("selectAll"); } });
  return {};
});
