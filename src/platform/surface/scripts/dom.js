// dom.js: what the elements of a page are, and small steps on the tree that every command needs.
Surface.module("dom", () => {
  const set = (names) => new Set(names.split(" "));

  // Elements that start a line of their own, as the HTML standard's rendering section has them.
  const Blocks = set("ADDRESS ARTICLE ASIDE BLOCKQUOTE CENTER DD DETAILS DIALOG DIR DIV DL DT FIELDSET FIGCAPTION FIGURE " +
    "FOOTER FORM H1 H2 H3 H4 H5 H6 HEADER HGROUP HR LEGEND LI LISTING MAIN MENU NAV OL OPTGROUP P PLAINTEXT PRE SEARCH " +
    "SECTION SUMMARY UL XMP TABLE CAPTION COLGROUP COL THEAD TBODY TFOOT TR TD TH BODY");
  // Blocks that hold a line of text and no other block.
  const Paragraphs = set("P H1 H2 H3 H4 H5 H6 PRE ADDRESS LISTING XMP DT");
  // A parser that meets one of these closes an open P first, so it can't stand in one.
  const ClosesParagraph = set("ADDRESS ARTICLE ASIDE BLOCKQUOTE CENTER DETAILS DIALOG DIR DIV DL FIELDSET FIGCAPTION FIGURE " +
    "FOOTER FORM H1 H2 H3 H4 H5 H6 HEADER HGROUP HR LISTING MAIN MENU NAV OL P PLAINTEXT PRE SEARCH SECTION SUMMARY " +
    "TABLE UL XMP DD DT LI");
  const Cells = set("TD TH");
  // One thing in the line that no caret goes into.
  const Atoms = set("IMG BR INPUT SELECT TEXTAREA BUTTON OBJECT EMBED APPLET IFRAME VIDEO AUDIO CANVAS HR METER PROGRESS " +
    "SVG MATH WBR");
  const Unseen = set("SCRIPT STYLE NOSCRIPT TEMPLATE TITLE META LINK BASE HEAD PARAM AREA MAP DATALIST");

  const isElement = (node) => !!node && node.nodeType === Node.ELEMENT_NODE;
  const isText = (node) => !!node && node.nodeType === Node.TEXT_NODE;
  const isBlock = (node) => isElement(node) && Blocks.has(node.nodeName);
  const isAtom = (node) => isElement(node) && Atoms.has(node.nodeName.toUpperCase());

  const elementOf = (node) => isElement(node) ? node : node ? node.parentElement : null;
  const indexOf = (node) => Array.prototype.indexOf.call(node.parentNode.childNodes, node);
  const lengthOf = (node) => node.nodeType === Node.ELEMENT_NODE || node.nodeType === Node.DOCUMENT_FRAGMENT_NODE ||
    node.nodeType === Node.DOCUMENT_NODE ? node.childNodes.length : (node.data || "").length;

  // The nearest one, from the node itself up to and without the body.
  const closest = (node, test) => {
    for (let e = node; e && e !== document.body && e !== document.documentElement; e = e.parentNode)
      if (test(e))
        return e;
    return null;
  };
  const blockOf = (node) => closest(node, isBlock) || document.body;
  const cellOf = (node) => closest(node, (e) => Cells.has(e.nodeName));

  // Its children take its place.
  const unwrap = (element) => element.replaceWith(...element.childNodes);

  // The same children and attributes under another name; gives the new element.
  const rename = (element, name) => {
    const other = document.createElement(name);
    for (const { name: key, value } of element.attributes)
      other.setAttribute(key, value);
    // In this order: what moves into an element outside the document is not seen by the history.
    element.before(other);
    other.append(...element.childNodes);
    element.remove();
    return other;
  };

  // White space that does not show counts as nothing; anything that does show, a line break too, as something.
  const isEmpty = (element) => !/[^ \t\n\r\f]/.test(element.textContent) &&
    ![...element.getElementsByTagName("*")].some((e) => isAtom(e) || e.nodeName === "TABLE" || e.nodeName === "A");

  return { Blocks, Paragraphs, ClosesParagraph, Cells, Unseen, isElement, isText, isBlock, isAtom, elementOf,
           indexOf, lengthOf, closest, blockOf, cellOf, unwrap, rename, isEmpty };
});
