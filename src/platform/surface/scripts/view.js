// view.js: what the host is told as the page changes, and looks that belong to the editor alone.
Surface.module("view", ({ history, schedule, selection, commands, input }) => {
  // Style sheets adopted by the document are not in the page: nothing of them is ever saved.
  const borders = new CSSStyleSheet();
  borders.replaceSync(
    "table:not([border]), table[border='0'], table:not([border]) > * > tr > td, table:not([border]) > * > tr > th," +
    "table[border='0'] > * > tr > td, table[border='0'] > * > tr > th" +
    "{ outline: 1px dotted #b0b0b0; outline-offset: -1px }");
  const always = new CSSStyleSheet();
  always.replaceSync("iframe, object, embed, video, audio { pointer-events: none }" +
    "img, hr, input, textarea, select, button { cursor: default }");

  Surface.offer("showBorders", (show) => { document.adoptedStyleSheets = show ? [always, borders] : [always]; });
  document.adoptedStyleSheets = [always];

  // Reading the selection lays the page out, so it is read when the engine says that it moved, which it does after a
  // layout of its own; until then typing and loading leave a caret.
  let selected = false;

  // One message for all that happens in one go. It holds what can be told without laying out the page.
  let told = false;
  const changed = () => {
    if (told)
      return;
    told = true;
    queueMicrotask(() => {
      told = false;
      Surface.post("changed", { ...history.state(), selected, input: input.seen() });
    });
  };

  // What toolbars show follows when the engine has drawn the page: asking before that would make every key pay for a
  // layout.
  let awaited = false;
  const display = () => {
    if (awaited)
      return;
    awaited = true;
    schedule.afterFrame(() => {
      awaited = false;
      Surface.post("display", { ...history.state(), statuses: commands.statuses() });
    });
  };

  // Keys that change nothing are told as well: the host counts which of them have arrived.
  for (const type of ["keyup", "mousedown", "mouseup"])
    window.addEventListener(type, changed, true);
  document.addEventListener("selectionchange", () => {
    history.settle();
    selected = selection.type() !== "None";
    changed();
    display();
  });
  history.onChange(() => {
    selected = false;
    changed();
    display();
  });

  Surface.offer("state", () => {
    selected = selection.type() !== "None";
    return { ...history.state(), selected };
  });
});
