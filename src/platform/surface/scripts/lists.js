// lists.js: ordered and unordered lists, indentation.
Surface.module("lists", () => {
  return {};
});
