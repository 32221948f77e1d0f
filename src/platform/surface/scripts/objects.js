// objects.js: objects selected as a whole: handles, resizing, moving.
Surface.module("objects", () => {
  return {};
});
