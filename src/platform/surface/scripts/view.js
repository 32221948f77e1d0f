// view.js: what the host is told as the page changes, and looks that belong to the editor alone.
Surface.module("view", ({ history, schedule, selection, commands, details, input }) => {
  details.adopt(details.lines("iframe, object, embed, video, audio { pointer-events: none }" +
    "img, hr, input, textarea, select, button { cursor: default }"), true);

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

  const Shown = ["getFontName", "getFontSize", "getBlockFormat"];
  const values = () => Object.fromEntries(Shown.map((name) =>
    [name, commands.statusOf(name) >= commands.Enabled ? commands.row(name).run() : undefined]));

  // What toolbars show follows when the engine has drawn the page: asking before that would make every key pay for a
  // layout.
  let awaited = false;
  const display = () => {
    if (awaited)
      return;
    awaited = true;
    schedule.afterFrame(() => {
      awaited = false;
      Surface.post("display", { ...history.state(), statuses: commands.statuses(), values: values() });
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

  // A style sheet comes in when the page stands already, and may have another font. The window hears nothing of it.
  document.addEventListener("load", (event) => {
    if (event.target.nodeName === "LINK")
      display();
  }, true);

  Surface.offer("state", () => {
    selected = selection.type() !== "None";
    return { ...history.state(), selected };
  });
});
