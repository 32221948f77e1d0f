// colours.js: what the engine makes of a page's colours by itself is not always what they are.
//
// It takes the colours of links from the body's attributes when one of these changes, not when a body that has them
// comes into the document. And a colour that only the server knows stands in the page as characters that the engine
// reads as black: words on it could not be read. Here it counts as not given.
Surface.module("colours", ({ history }) => {
  const LinkColours = ["link", "vlink", "alink"];
  const NotGiven = { bgcolor: "background-color: transparent", text: "color: initial", color: "color: inherit" };
  const Holders = { bgcolor: "[bgcolor]", text: "body[text]", color: "font[color]" };
  const ServerCode = /[\p{Co}\uFDD0-\uFDEF]/u;
  let body = null; // the one that was taken notice of

  const refreshLinks = () => history.unrecorded(() => {
    for (const name of LinkColours) {
      const colour = body.getAttribute(name);
      body.setAttribute(name, "");
      if (colour === null)
        body.removeAttribute(name);
      else
        body.setAttribute(name, colour);
    }
  });

  // All server code of a page starts with the same character. The rules are weaker than any of the page's own.
  const sheet = new CSSStyleSheet();
  const readServerColours = () => {
    const rules = new Set();
    for (const [name, holders] of Object.entries(Holders))
      for (const element of document.querySelectorAll(holders)) {
        const code = ServerCode.exec(element.getAttribute(name));
        if (code)
          rules.add(`:where(${holders.replace("]", `*="${code[0]}"]`)}) { ${NotGiven[name]} }`);
      }
    sheet.replaceSync([...rules].join("\n"));
    const others = [...document.adoptedStyleSheets].filter((other) => other !== sheet);
    if (rules.size || others.length < document.adoptedStyleSheets.length)
      document.adoptedStyleSheets = rules.size ? [sheet, ...others] : others;
  };

  history.onChange(() => {
    if (body === document.body)
      return;
    body = document.body;
    if (!body || body.nodeName !== "BODY")
      return;
    refreshLinks();
    readServerColours();
  });
  return {};
});
