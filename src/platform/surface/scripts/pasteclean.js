// pasteclean.js: markup of other programs on its way into the page: what it says is kept, their litter is not.
Surface.module("pasteclean", ({ dom, splitting, officepaste }) => {
  const Dropped = "meta,link,style,script,title,base,template,xml,noscript,head";
  const Litter = /^(on.*|data-.*|aria-.*|role|tabindex|contenteditable|spellcheck|draggable|class|jsaction|nonce|xmlns.*|.*:.*)$/;
  const Token = /[\ue000-\uf8ff\ufdd0-\ufdef]/; // of server-side code
  // Only a browser that writes down all it has computed names these.
  const Computed = /-webkit-text-stroke|text-decoration-thickness|\borphans:|\bwidows:|-webkit-text-size|--[a-z-]+:/;
  const Defaults = {
    "font-weight": /^(normal|400|initial|inherit)$/, "font-style": /^(normal|initial|inherit)$/,
    "text-decoration": /^(none|initial|inherit)\b/, "text-decoration-line": /^(none|initial)$/,
    "text-align": /^(left|start|initial|inherit)$/, "color": /^(black|windowtext|rgb\(0, 0, 0\)|inherit|initial)$/,
    "background-color": /^(transparent|initial|inherit|rgba\(0, 0, 0, 0\))$/, "white-space": /^(normal|initial|pre-wrap)$/,
    "vertical-align": /^(baseline|initial)$/, "display": /^inline$/, "float": /^none$/,
  };

  // Comments at the start of a mere piece would be put outside of the body.
  const parse = (html) => new DOMParser().parseFromString(/<(html|head|body|!doctype)\b/i.test(html) ? html : "<body>" + html,
                                                          "text/html");

  // What was meant: between the marks where there are any, without the page around it.
  const contentOf = (parsed) => {
    const range = parsed.createRange();
    range.selectNodeContents(parsed.body);
    const walker = parsed.createTreeWalker(parsed, NodeFilter.SHOW_COMMENT);
    let start = null, end = null;
    while (walker.nextNode()) {
      const data = walker.currentNode.data.trim();
      if (data === "StartFragment" && !start)
        start = walker.currentNode;
      else if (data === "EndFragment")
        end = walker.currentNode;
    }
    if (start && end && parsed.body.contains(start) && parsed.body.contains(end)) {
      range.setStartAfter(start);
      range.setEndBefore(end);
      const table = dom.elementOf(range.commonAncestorContainer).closest("table");
      if (table)
        range.selectNode(table);
    }
    return range.extractContents();
  };

  const dropLitter = (fragment) => {
    for (const element of [...fragment.querySelectorAll(Dropped)])
      element.remove();
    const walker = document.createTreeWalker(fragment, NodeFilter.SHOW_COMMENT);
    const comments = [];
    while (walker.nextNode())
      if (!Token.test(walker.currentNode.data))
        comments.push(walker.currentNode);
    for (const comment of comments)
      comment.remove();
    for (const element of [...fragment.querySelectorAll("*")])
      if (element.nodeName.includes(":"))
        dom.unwrap(element);
      else if (element.matches("br.Apple-interchange-newline"))
        element.remove();
  };

  // Names that a link in the fragment leads to stay.
  const dropAttributes = (fragment) => {
    const wanted = new Set([...fragment.querySelectorAll("a[href^='#']")].map((a) => a.getAttribute("href").slice(1)));
    for (const element of fragment.querySelectorAll("*"))
      for (const { name, value } of [...element.attributes])
        if (Litter.test(name) || (name === "id" && !wanted.has(value)) || /^\s*javascript:/i.test(value))
          element.removeAttribute(name);
  };

  // ---- styles ---------------------------------------------------------------------------------------------------------

  const Formats = [ // the outermost last
    ["sub", (style) => style.verticalAlign === "sub", "sub"],
    ["sup", (style) => style.verticalAlign === "super", "sup"],
    ["s", (style) => /line-through/.test(style.textDecorationLine), "s,strike,del"],
    ["u", (style) => /underline/.test(style.textDecorationLine), "u,a"],
    ["i", (style) => /^(italic|oblique)/.test(style.fontStyle), "i,em,cite,address"],
    ["b", (style) => /^(bold|bolder|[6-9]00)$/.test(style.fontWeight), "b,strong,h1,h2,h3,h4,h5,h6,th"],
  ];
  const Converted = ["font-weight", "font-style", "text-decoration", "text-decoration-line"];

  const wrapInside = (element, name) => {
    const format = element.ownerDocument.createElement(name);
    format.append(...element.childNodes);
    element.append(format);
  };

  // Emphasis becomes the element that says it; alignment the attribute.
  const useMarkup = (element) => {
    const style = element.style;
    if (![...element.children].some(dom.isBlock) && element.firstChild)
      for (const [name, holds, already] of Formats)
        if (holds(style) && !element.closest(already))
          wrapInside(element, name);
    if (dom.isBlock(element) && /^(center|right|justify)$/.test(style.textAlign)) {
      element.setAttribute("align", style.textAlign);
      style.removeProperty("text-align");
    }
    if (/^sub$|^super$/.test(style.verticalAlign))
      style.removeProperty("vertical-align");
    for (const name of Converted)
      style.removeProperty(name);
  };

  const cleanStyles = (fragment, keepNone) => {
    for (const element of [...fragment.querySelectorAll("[style]")]) {
      const text = element.getAttribute("style");
      if (/^(B|STRONG)$/.test(element.nodeName) && /^(normal|400)$/.test(element.style.fontWeight)) {
        dom.unwrap(element); // around all that some writers copy
        continue;
      }
      useMarkup(element);
      for (const [name, pattern] of Object.entries(Defaults))
        if (pattern.test(element.style.getPropertyValue(name)))
          element.style.removeProperty(name);
      if (keepNone || Computed.test(text) || !element.style.length)
        element.removeAttribute("style");
    }
  };

  const unwrapEmpty = (fragment) => {
    for (const element of [...fragment.querySelectorAll("span,font,b,i,u,strong,em,s,sub,sup")].reverse())
      if (splitting.isHollow(element) || (/^(SPAN|FONT)$/.test(element.nodeName) && !element.attributes.length))
        dom.unwrap(element);
  };

  // Line ends at both ends come from the wrapping.
  const trim = (fragment) => {
    const isSpace = (node) => dom.isText(node) && /^[ \t\r\n\f]*$/.test(node.data) && /[\r\n]/.test(node.data);
    while (isSpace(fragment.firstChild))
      fragment.firstChild.remove();
    while (isSpace(fragment.lastChild))
      fragment.lastChild.remove();
    for (const [node, pattern] of [[fragment.firstChild, /^\s*[\r\n]\s*/], [fragment.lastChild, /\s*[\r\n]\s*$/]])
      if (dom.isText(node))
        node.data = node.data.replace(pattern, "");
  };

  // A fragment of this document.
  const clean = (html) => {
    const office = officepaste.isOffice(html);
    const fragment = contentOf(parse(html));
    if (office)
      officepaste.before(fragment);
    dropLitter(fragment);
    cleanStyles(fragment, office);
    dropAttributes(fragment);
    if (office)
      officepaste.after(fragment);
    unwrapEmpty(fragment);
    fragment.normalize();
    trim(fragment);
    return document.adoptNode(fragment);
  };

  return { clean };
});
