// tables.js: rows, columns and cells of tables, as commands.
Surface.module("tables", () => {
  return {};
});
