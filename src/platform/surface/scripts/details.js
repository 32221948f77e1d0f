// details.js: marks for what does not show: anchors, comments, scripts, styles, line breaks, forms, hidden fields, code
// of the server; and the dotted lines of tables without a border.
//
// None of it is in the page: lines come from style sheets that the document adopts, marks are drawn over the page. What
// to mark is looked up once after a change, where it is once a frame, and only what is in view is drawn.
Surface.module("details", ({ history, overlay, dom }) => {
  // ---- looks ----------------------------------------------------------------------------------------------------

  const adopt = (sheet, on) => {
    const others = [...document.adoptedStyleSheets].filter((other) => other !== sheet);
    document.adoptedStyleSheets = on ? [...others, sheet] : others;
  };
  const lines = (text) => {
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(text);
    return sheet;
  };
  const bare = "table:not([border]), table[border='0']";
  const cells = bare.split(", ").flatMap((table) => ["td", "th"].map((cell) => table + " > * > tr > " + cell)).join(", ");
  const borders = lines(bare + ", " + cells + " { outline: 1px dotted #b0b0b0; outline-offset: -1px }");
  const forms = lines("form { outline: 1px dashed #c08040 }");

  // ---- marks ----------------------------------------------------------------------------------------------------

  const Marked = "a[name], a[id]:not([href]), script, style, br, form, input[type='hidden' i]";
  const Kinds = {
    A: ["anchor", (e) => "\u2693\uFE0E" + (e.getAttribute("name") || e.id)],
    SCRIPT: ["code", () => "JS"],
    STYLE: ["code", () => "CSS"],
    BR: ["break", () => "\u21B5"],
    FORM: ["form", (e) => "FORM " + (e.getAttribute("name") || e.id || "")],
    INPUT: ["form", (e) => "hidden " + (e.getAttribute("name") || "")],
  };
  const Longest = 24; // characters of a mark
  const isIsland = (comment) => /^[\uE000-\uF8FF]/.test(comment.data);
  const kindOf = (node) => node.nodeType !== Node.COMMENT_NODE ? Kinds[node.nodeName]
    : isIsland(node) ? ["server", () => "<?"] : ["comment", (c) => "!" + c.data.replace(/[\p{Co}\uFDD0-\uFDEF]+/gu, "<?").trim()];

  let nodes = [];
  let known = -1; // the count of changes at which `nodes` was found
  const look = () => {
    const changes = history.changes();
    if (known === changes)
      return;
    known = changes;
    nodes = [];
    const body = document.body;
    if (!body)
      return;
    nodes.push(...body.querySelectorAll(Marked));
    const comments = document.createTreeWalker(body, NodeFilter.SHOW_COMMENT);
    while (comments.nextNode())
      nodes.push(comments.currentNode);
  };

  const range = document.createRange();
  const boxOf = (node) => {
    if (dom.isElement(node))
      return node.getBoundingClientRect();
    if (!dom.isText(node) || !/[^ \t\n\r\f]/.test(node.data))
      return null;
    range.selectNodeContents(node);
    return range.getClientRects()[0] || null;
  };
  // What has no box of its own stands before what follows it, or behind what it follows.
  const Near = 8; // neighbours looked at
  const placeOf = (node) => {
    const own = dom.isElement(node) ? node.getBoundingClientRect() : null;
    if (own && own.height)
      return [own.left, own.top];
    let steps = 0;
    for (let n = node.nextSibling; n && ++steps <= Near; n = n.nextSibling) {
      const box = boxOf(n);
      if (box && box.height)
        return [box.left, box.top];
    }
    for (let n = node.previousSibling; n && ++steps <= 2 * Near; n = n.previousSibling) {
      const box = boxOf(n);
      if (box && box.height)
        return [box.right, box.bottom - Math.min(box.height, 16)];
    }
    const around = node.parentElement && node.parentElement.getBoundingClientRect();
    return around && around.height ? [around.left, around.top] : null;
  };

  const inView = () => {
    const found = [];
    for (const node of nodes) {
      const at = node.isConnected && placeOf(node);
      if (at && at[1] > -20 && at[1] < window.innerHeight && at[0] < window.innerWidth)
        found.push([node, at]);
    }
    return found;
  };

  const markOf = (node) => {
    const [kind, words] = kindOf(node);
    const mark = document.createElement("div");
    mark.className = "mark " + kind;
    mark.textContent = words(node).replace(/\s+/g, " ").slice(0, Longest);
    return mark;
  };

  // All places are read before anything is drawn: each turn from one to the other would be a layout. Marks for the same
  // place stand side by side. They sit on the upper edge of what they mark, so that the words there can be read.
  const Raise = 8; // pixels
  const Room = 24; // for the shortest mark, at the window's edge
  const place = () => {
    look();
    const rows = new Map(); // place -> its marks
    for (const [node, [left, top]] of inView()) {
      const raised = node.nodeName === "BR" ? top : Math.max(Math.min(top, 0), top - Raise);
      const key = Math.round(left) + "," + Math.round(raised);
      let row = rows.get(key);
      if (!row) {
        rows.set(key, row = document.createElement("div"));
        row.className = "marks";
        row.style.cssText = `left:${Math.min(left, window.innerWidth - Room)}px;top:${raised}px`;
      }
      row.append(markOf(node));
    }
    layer.box.replaceChildren(...rows.values());
  };

  const layer = overlay.layer(place,
    ".marks { display: flex; gap: 2px }" +
    ".mark { position: static; font: 9px/11px sans-serif; padding: 0 2px; border-radius: 2px; white-space: nowrap;" +
    " opacity: 0.85; color: #202020; background: #e0e0e0 }" +
    ".anchor { background: #ffe080 } .comment { background: #d8f0c8 } .code { background: #c8dcf8 }" +
    ".server { background: #e8c8f0 } .form { background: #f8d8b8 }" +
    ".break { background: none; color: #4070c0; font-size: 12px }");

  Surface.offer("showBorders", (show) => adopt(borders, show));
  Surface.offer("showDetails", (show) => {
    adopt(forms, show);
    known = -1;
    if (show)
      layer.show();
    else
      layer.hide();
  });
  // What is marked now, in words.
  Surface.offer("shownDetails", () => layer.shown ? [...layer.box.querySelectorAll(".mark")].map((mark) => mark.textContent) : []);
  return { adopt, lines };
});
