// links.js: hyperlinks.
Surface.module("links", () => {
  return {};
});
