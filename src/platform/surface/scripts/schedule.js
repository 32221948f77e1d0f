// schedule.js: doing something a little later.
//
// Scripts of the page are switched off, and with them, in our world too, setTimeout and setInterval: their callbacks
// never come (engine 6.4). Messages and frames do.
Surface.module("schedule", () => {
  const waiting = [];
  const channel = new MessageChannel();
  channel.port1.onmessage = () => waiting.shift()();

  // When the task under way and what the engine has queued before are done.
  const soon = (routine) => {
    waiting.push(routine);
    channel.port2.postMessage(0);
  };
  // When the page has been laid out and drawn: asking for places and styles then costs next to nothing. On a page that
  // does not show, when it shows again.
  const afterFrame = (routine) => requestAnimationFrame(() => soon(routine));

  return { soon, afterFrame };
});
