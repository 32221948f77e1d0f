// formats.js: character formats: bold and its like, font, size, colour.
Surface.module("formats", ({ history, commands }) => {
  // The status reads only the elements around the caret: asking the engine would lay out the whole page.
  const around = (names) => () => {
    const s = document.getSelection();
    for (let e = s && s.anchorNode; e && e !== document.body; e = e.parentNode)
      if (names.includes(e.nodeName))
        return commands.Latched;
    return commands.Enabled;
  };
  const inline = (name, names) => commands.add(name, {
    run: () => history.transact(null, () => document.execCommand(name)),
    status: around(names),
  });
  inline("bold", ["B", "STRONG"]);
  inline("italic", ["I", "EM"]);
  inline("underline", ["U"]);
  return {};
});
