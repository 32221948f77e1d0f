// commands.js: every command that the host runs by name, and what the page says of it.
//
// A module adds its commands; `status` answers 0 (unknown), 1 (not now), 3 (can be run), 7 (can be run and holds at the
// selection) or 11 (holds for part of it). Statuses are asked after every change: no layout, no walk over the page.
Surface.module("commands", ({ history, selection }) => {
  const Disabled = 1, Enabled = 3, Latched = 7, Mixed = 11;
  const rows = new Map(); // name -> { run, status }

  const add = (name, { run, status = () => Enabled }) => rows.set(name, { run, status });

  // For a module that does a command its own way for some selections: what it was before.
  const row = (name) => rows.get(name);

  const isEditable = () => !!document.body && document.body.nodeName === "BODY";

  // Runs a command; what is not available does nothing. Its own value is the answer of one that reads something.
  const run = (name, argument) => {
    const command = rows.get(name);
    if (!command)
      return undefined;
    selection.ensureCaret();
    if (statusOf(name) < Enabled)
      return undefined;
    return command.run(argument);
  };

  const statusOf = (name) => {
    const command = rows.get(name);
    return !command ? 0 : !isEditable() ? Disabled : command.status();
  };

  const statuses = () => {
    const all = {};
    for (const name of rows.keys())
      all[name] = statusOf(name);
    return all;
  };

  add("undo", { run: () => history.undo(), status: () => history.state().undo ? Enabled : Disabled });
  add("redo", { run: () => history.redo(), status: () => history.state().redo ? Enabled : Disabled });

  Surface.offer("run", ({ name, argument }) => run(name, argument));
  Surface.offer("statuses", () => { history.flush(); return statuses(); });
  return { Disabled, Enabled, Latched, Mixed, add, row, run, statusOf, statuses };
});
