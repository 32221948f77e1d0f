// input.js: keys and typing, as they come from the user.
Surface.module("input", ({ history, selection, commands, events, indent, structure }) => {
  const stop = (event) => { event.preventDefault(); event.stopImmediatePropagation(); };

  const KeyCommands = { z: "undo", y: "redo", b: "bold", i: "italic", u: "underline", a: "selectAll" };
  const MoveKeys = new Set(["ArrowLeft", "ArrowRight", "ArrowUp", "ArrowDown", "Home", "End", "PageUp", "PageDown"]);

  // F24 is on no keyboard: the host sends it behind the user's keys and, when it arrives here, knows that all of them
  // have been worked on.
  const onKeyDown = (event) => {
    if (event.key === "F24") {
      stop(event);
      history.flush();
      Surface.post("barrier", events.seen());
      return;
    }
    selection.ensureCaret();
    if (event.key === "Tab" && !event.ctrlKey && !event.altKey) {
      stop(event); // the engine would put in a styled span
      indent.tab(event.shiftKey);
      return;
    }
    if (event.ctrlKey && !event.altKey) {
      const key = event.key.toLowerCase();
      const command = key === "z" && event.shiftKey ? "redo" : KeyCommands[key];
      if (command && (key === "z" || !event.shiftKey)) {
        stop(event);
        commands.run(command);
        return;
      }
    }
    if (MoveKeys.has(event.key))
      history.leave();
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
      commands.run(event.inputType === "historyUndo" ? "undo" : "redo");
      return;
    }
    const kind = kindOf(event);
    if (Refused.has(event.inputType) || !event.isTrusted || events.takeInput(event)) {
      stop(event);
      return;
    }
    userInput = true;
    history.begin(kind);
    inputType = event.inputType;
  };

  // The engine raises "input" for our own commands too; those end their steps themselves.
  let userInput = false;
  const onInput = () => {
    if (!userInput)
      return;
    userInput = false;
    dropLitter();
    history.end();
  };

  // What the engine adds of its own to freeze looks that a change would have altered: nobody asked for it. Only what
  // this very change put in is looked at. A font element is the markup of a format that waits at the caret, unless
  // something was deleted.
  let inputType = "";
  const styleOnly = (e) => e.attributes.length === 1 && e.hasAttribute("style");
  const isLitter = (node) => node.nodeName === "SPAN" ? styleOnly(node)
    : node.nodeName === "FONT" && inputType.startsWith("delete") && !node.id;
  const dropLitter = () => {
    const operations = history.pending();
    if (operations.every((o) => o.kind === "text" && o.after))
      return;
    const old = new Set();
    for (const o of operations)
      if (o.kind === "children")
        o.removed.forEach((node) => old.add(node));
      else if (o.kind === "attribute" && o.name === "style" && o.before === null)
        o.node.removeAttribute("style");
    for (const o of operations)
      if (o.kind === "children")
        for (const node of o.added)
          if (node.isConnected && !old.has(node) && isLitter(node))
            node.replaceWith(...node.childNodes);
    // White space that the engine moved may have been all that an element held.
    const caret = document.getSelection().anchorNode;
    for (const o of operations)
      if (o.kind !== "attribute" && o.node.isConnected && !o.node.contains(caret))
        structure.prune(o.node);
  };

  let pressed = false; // the mouse is what moves the focus
  const onMouseDown = () => {
    pressed = true;
    history.leave();
  };

  // A field that asks for the focus itself would take the keys meant for the page. And a caret that was set while the
  // window did not have the focus leaves no element with it: the engine then inserts no text.
  const onFocus = (event) => {
    const field = event.target;
    if (field === window && document.activeElement === document.body)
      document.body.focus({ preventScroll: true });
    if (!pressed && field instanceof Element && field !== document.body && field !== document.documentElement)
      field.blur();
  };

  const listen = (type, handler) => window.addEventListener(type, handler, true);
  listen("keydown", onKeyDown);
  listen("beforeinput", onBeforeInput);
  listen("input", onInput);
  listen("mousedown", onMouseDown);
  listen("mouseup", () => { pressed = false; });
  listen("focus", onFocus);
  for (const type of ["dragstart", "dragover", "drop", "submit", "reset"])
    listen(type, stop);
  return { seen: events.seen };
});
