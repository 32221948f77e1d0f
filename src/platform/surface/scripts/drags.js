// drags.js: the mouse held down on something of ours, until it is let go or Esc is pressed.
Surface.module("drags", ({ events }) => {
  let drag = null; // { x, y, moved, threshold, move, done, cancel }

  // `move(dx, dy, event)` is called from the first step beyond `threshold` pixels; then either `done(dx, dy, event)`,
  // `cancel()`; `click(event)` when the mouse was let go before that.
  const start = (event, { threshold = 0, move, done, cancel, click }) => {
    drag = { x: event.clientX, y: event.clientY, moved: false, threshold, move, done, cancel, click };
  };

  const stop = () => {
    const stopped = drag;
    drag = null;
    if (stopped && stopped.moved)
      stopped.cancel();
  };

  events.on("mousemove", (event) => {
    if (!drag)
      return false;
    if (!(event.buttons & 1)) { // let go where nobody told us
      stop();
      return false;
    }
    const dx = event.clientX - drag.x, dy = event.clientY - drag.y;
    drag.moved = drag.moved || Math.max(Math.abs(dx), Math.abs(dy)) > drag.threshold;
    if (drag.moved)
      drag.move(dx, dy, event);
    return true;
  }, true);

  events.on("mouseup", (event) => {
    if (!drag || event.button !== 0)
      return false;
    const ended = drag;
    drag = null;
    if (ended.moved)
      ended.done(event.clientX - ended.x, event.clientY - ended.y, event);
    else if (ended.click)
      ended.click(event);
    return false;
  }, true);

  // The host's own key (input.js) goes through.
  events.on("keydown", (event) => {
    if (!drag || event.key === "F24")
      return false;
    if (event.key === "Escape")
      stop();
    return true;
  }, true);
  window.addEventListener("blur", (event) => {
    if (event.target === window)
      stop();
  }, true);

  return { start, active: () => !!drag };
});
