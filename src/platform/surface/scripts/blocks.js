// blocks.js: block formats, alignment, and how paragraphs split and join.
Surface.module("blocks", () => {
  return {};
});
