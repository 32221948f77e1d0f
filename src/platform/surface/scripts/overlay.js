// overlay.js: what the editor draws over the page: handles, guide lines, marks of selected cells.
//
// One element of our own behind the body, last in the root, with a closed shadow root: none of it is in the page's text,
// in the history or in reach of the page's styles (rules of a shadow root that are important beat those of the page).
// It lets the mouse through: who draws something to grab compares places itself. Coordinates are those of mouse events.
Surface.module("overlay", ({ history }) => {
  const Name = "inkloom-overlay";
  const Markup = "<" + Name + "></" + Name + ">"; // how the engine writes it
  const host = document.createElement(Name);
  const shadow = host.attachShadow({ mode: "closed" });
  const looks = new CSSStyleSheet();
  looks.replaceSync(
    ":host { all: initial !important; display: block !important; position: fixed !important; left: 0 !important;" +
    " top: 0 !important; width: 100% !important; height: 100% !important; overflow: hidden !important;" +
    " z-index: 2147483647 !important; pointer-events: none !important; contain: strict !important }" +
    "@media print { :host { display: none !important } }" +
    "div { position: absolute; box-sizing: border-box }" +
    ".layer { left: 0; top: 0; width: 0; height: 0; overflow: visible }" +
    ".shield { left: 0; top: 0; width: 100%; height: 100%; pointer-events: auto }");
  shadow.adoptedStyleSheets = [looks];
  history.skip(host);

  const attach = () => {
    const root = document.documentElement;
    if (root && root.lastChild !== host)
      root.append(host);
  };

  // Everything shown is put in place again, once a frame, when the page scrolls, changes or gets another size.
  const layers = [];
  let asked = false;
  const placeAll = () => {
    asked = false;
    if (!layers.some((layer) => layer.shown))
      return;
    attach();
    for (const layer of layers)
      if (layer.shown)
        layer.place();
  };
  const placeSoon = () => {
    if (asked || !layers.some((layer) => layer.shown))
      return;
    asked = true;
    requestAnimationFrame(placeAll);
  };

  // A concern's own part: { box, show(), hide(), shown }. `box` is an element to fill with children, which stand at
  // viewport coordinates; `place` puts them where they belong now. show() places at the next frame; what must be right
  // at once the concern may place itself.
  const layer = (place, css = "") => {
    const box = document.createElement("div");
    box.className = "layer";
    if (css) {
      const sheet = new CSSStyleSheet();
      sheet.replaceSync(css);
      shadow.adoptedStyleSheets = [...shadow.adoptedStyleSheets, sheet];
    }
    const own = {
      box, place, shown: false,
      show() {
        own.shown = true;
        attach();
        if (!box.parentNode)
          shadow.append(box);
        placeSoon();
      },
      hide() {
        own.shown = false;
        box.remove();
      },
    };
    layers.push(own);
    return own;
  };

  // The shape of the mouse pointer, whatever is under it; null gives it back to the page. While it is set, mouse events
  // have our element as target: see elementAt.
  const shield = document.createElement("div");
  shield.className = "shield";
  const cursor = (shape) => {
    if (!shape) {
      shield.remove();
      return;
    }
    attach();
    shield.style.cursor = shape;
    if (!shield.parentNode)
      shadow.append(shield);
  };

  // The element of the page at a place, ours looked through.
  const elementAt = (x, y) => document.elementsFromPoint(x, y).find((element) => element !== host) || null;

  // The markup of the root without ours.
  const outerHTML = (root) => {
    const html = root.outerHTML;
    if (host.parentNode !== root)
      return html;
    const at = html.lastIndexOf(Markup);
    return at < 0 ? html : html.slice(0, at) + html.slice(at + Markup.length);
  };

  window.addEventListener("scroll", placeSoon, true);
  window.addEventListener("resize", placeSoon, true);
  document.addEventListener("load", placeSoon, true); // not told to the window: pictures that arrive move what is below them
  history.onChange(placeSoon);
  return { layer, cursor, elementAt, outerHTML, placeSoon };
});
