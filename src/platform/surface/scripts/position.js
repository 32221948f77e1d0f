// position.js: absolutely positioned elements: where they are and which is on top.
Surface.module("position", () => {
  return {};
});
