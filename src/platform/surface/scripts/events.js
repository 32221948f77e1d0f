// events.js: who gets an event of the user first.
//
// Modules ask for an event type; their handlers are called in the order of the modules until one answers true: then it
// took the event, and neither the engine nor the modules behind it see it.
Surface.module("events", () => {
  // How many keys and buttons went down or up here; the host compares it with what it sent. Counted before anybody can
  // take the event; F24 is the host's own key.
  let seen = 0;
  const count = (event) => {
    if (event.key !== "F24")
      ++seen;
  };
  for (const type of ["keydown", "mousedown", "mouseup"])
    window.addEventListener(type, count, true);

  const handlers = new Map(); // event type -> handlers
  const inputTypes = new Map(); // type of a "beforeinput" -> handlers

  // `first`: before the handlers of all other modules.
  const on = (type, handler, first = false) => {
    if (!handlers.has(type)) {
      handlers.set(type, []);
      window.addEventListener(type, (event) => {
        for (const each of handlers.get(type))
          if (each(event) === true) {
            event.preventDefault();
            event.stopImmediatePropagation();
            return;
          }
      }, true);
    }
    handlers.get(type)[first ? "unshift" : "push"](handler);
  };

  // For one kind of input ("insertParagraph", "deleteContentBackward", ...; the Input Events standard names them).
  const onInputType = (type, handler, first = false) => {
    if (!inputTypes.has(type))
      inputTypes.set(type, []);
    inputTypes.get(type)[first ? "unshift" : "push"](handler);
  };
  const takeInput = (event) => (inputTypes.get(event.inputType) || []).some((handler) => handler(event) === true);

  return { on, onInputType, takeInput, seen: () => seen };
});
