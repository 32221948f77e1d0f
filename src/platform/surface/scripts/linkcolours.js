// linkcolours.js: links have the colours that the page's body gives them.
//
// The engine takes them from the body's attributes when one of these changes, not when a body that has them comes into
// the document.
Surface.module("linkcolours", ({ history }) => {
  const Names = ["link", "vlink", "alink"];
  let body = null; // the one that was taken notice of

  history.onChange(() => {
    if (body === document.body)
      return;
    body = document.body;
    if (!body || body.nodeName !== "BODY")
      return;
    history.unrecorded(() => {
      for (const name of Names) {
        const colour = body.getAttribute(name);
        body.setAttribute(name, "");
        if (colour === null)
          body.removeAttribute(name);
        else
          body.setAttribute(name, colour);
      }
    });
  });
  return {};
});
