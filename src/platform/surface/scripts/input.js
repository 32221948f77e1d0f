// input.js: keys, typing, clipboard and drags, as they come from the user.
Surface.module("input", ({ history, selection, editing }) => {
  const stop = (event) => { event.preventDefault(); event.stopImmediatePropagation(); };

  // How many keys and buttons went down or up here; the host compares it with what it sent.
  let seen = 0;
  const count = (event) => {
    if (event.key !== "F24")
      ++seen;
  };

  const KeyCommands = { z: "undo", y: "redo", b: "bold", i: "italic", u: "underline", a: "selectAll" };
  const MoveKeys = new Set(["ArrowLeft", "ArrowRight", "ArrowUp", "ArrowDown", "Home", "End", "PageUp", "PageDown"]);

  // F24 is on no keyboard: the host sends it behind the user's keys and, when it arrives here, knows that all of them
  // have been worked on.
  const onKeyDown = (event) => {
    if (event.key === "F24") {
      stop(event);
      history.flush();
      Surface.post("barrier", seen);
      return;
    }
    selection.ensureCaret();
    if (event.key === "Tab" && !event.ctrlKey && !event.altKey) {
      stop(event); // the engine would put in a styled span
      return;
    }
    if (event.ctrlKey && !event.altKey) {
      const key = event.key.toLowerCase();
      const command = key === "z" && event.shiftKey ? "redo" : KeyCommands[key];
      if (command && (key === "z" || !event.shiftKey)) {
        stop(event);
        editing.run(command);
        return;
      }
    }
    if (MoveKeys.has(event.key))
      history.close();
  };

  // One step for a typed word: a new word, a pause, another kind of change or a moved caret starts the next.
  let lastTyped = "";
  const kindOf = (event) => {
    const kind = event.inputType.startsWith("delete") ? "delete"
      : event.inputType === "insertText" || event.inputType === "insertCompositionText" ? "type" : null;
    if (kind !== "type") {
      lastTyped = "";
      return kind;
    }
    const data = event.data || "";
    const startsWord = /\S/.test(data) && /\s$/.test(lastTyped);
    lastTyped = data;
    if (startsWord)
      history.close();
    return kind;
  };

  const OwnHandling = new Set(["historyUndo", "historyRedo"]);
  const Refused = new Set(["insertFromDrop", "deleteByDrag", "insertFromPaste", "insertFromYank"]);

  const onBeforeInput = (event) => {
    if (OwnHandling.has(event.inputType)) {
      stop(event);
      editing.run(event.inputType === "historyUndo" ? "undo" : "redo");
      return;
    }
    if (Refused.has(event.inputType) || !event.isTrusted) {
      stop(event);
      return;
    }
    userInput = true;
    history.begin(kindOf(event));
    rememberSpans(event);
  };

  // The engine raises "input" for our own commands too; those end their steps themselves.
  let userInput = false;
  const onInput = () => {
    if (!userInput)
      return;
    userInput = false;
    dropNewSpans();
    history.end();
  };

  // Joining blocks, the engine wraps what it moved into spans that freeze its looks. Nobody asked for them.
  let spansBefore = null;
  const rememberSpans = (event) => {
    spansBefore = event.inputType.startsWith("delete") ? new Set(document.getElementsByTagName("span")) : null;
  };
  const dropNewSpans = () => {
    if (!spansBefore)
      return;
    for (const span of [...document.getElementsByTagName("span")])
      if (!spansBefore.has(span) && span.attributes.length === 1 && span.hasAttribute("style"))
        span.replaceWith(...span.childNodes);
    spansBefore = null;
  };

  const onCopy = (event) => {
    const markup = editing.selectedMarkup();
    if (!markup)
      return;
    stop(event);
    event.clipboardData.setData("text/html", markup.html);
    event.clipboardData.setData("text/plain", markup.text);
    if (event.type === "cut")
      editing.run("delete");
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
    stop(event);
    const html = event.clipboardData.getData("text/html");
    const text = event.clipboardData.getData("text/plain");
    if (html)
      editing.pasteHTML(fragmentOf(html));
    else if (text)
      editing.pasteText(text);
  };

  let pressed = false; // the mouse is what moves the focus
  const onMouseDown = () => {
    pressed = true;
    history.close();
  };

  // A field that asks for the focus itself would take the keys meant for the page.
  const onFocus = (event) => {
    const field = event.target;
    if (!pressed && field instanceof Element && field !== document.body && field !== document.documentElement)
      field.blur();
  };

  const listen = (type, handler) => window.addEventListener(type, handler, true);
  for (const type of ["keydown", "mousedown", "mouseup"])
    listen(type, count);
  listen("keydown", onKeyDown);
  listen("beforeinput", onBeforeInput);
  listen("input", onInput);
  listen("copy", onCopy);
  listen("cut", onCopy);
  listen("paste", onPaste);
  listen("mousedown", onMouseDown);
  listen("mouseup", () => { pressed = false; });
  listen("focus", onFocus);
  for (const type of ["dragstart", "dragover", "drop", "submit", "reset"])
    listen(type, stop);
  return { seen: () => seen };
});
