// details.js: marks for what does not show: anchors, comments, scripts, line breaks.
Surface.module("details", () => {
  return {};
});
