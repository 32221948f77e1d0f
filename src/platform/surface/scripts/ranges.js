// ranges.js: text ranges and control ranges: places in the page that the host holds on to.
Surface.module("ranges", () => {
  return {};
});
