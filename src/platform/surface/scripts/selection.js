// selection.js: what is selected, and putting the selection somewhere.
Surface.module("selection", ({ schedule, history, dom }) => {
  const selection = () => document.getSelection();

  // An object is selected as a whole while the engine's selection holds exactly its node and nobody else's.
  let object = null;
  const control = () => {
    const s = selection();
    if (!object || !object.isConnected || !s || s.rangeCount === 0 || s.anchorNode !== object.parentNode ||
        s.focusNode !== object.parentNode)
      return null;
    const at = dom.indexOf(object);
    return Math.min(s.anchorOffset, s.focusOffset) === at && Math.max(s.anchorOffset, s.focusOffset) === at + 1
      ? object : null;
  };
  const selectControl = (element) => {
    want(null);
    history.close();
    object = element;
    const at = dom.indexOf(element);
    selection().setBaseAndExtent(element.parentNode, at, element.parentNode, at + 1);
  };
  history.keepWithSelection({ save: control, restore: (element) => { object = element; } });

  const type = () => {
    const s = selection();
    return !s || s.rangeCount === 0 ? "None" : control() ? "Control" : s.isCollapsed ? "None" : "Text";
  };

  // What is selected, as a range of its own; the start of the body when nothing is.
  const range = () => {
    applyWanted();
    const s = selection();
    if (s && s.rangeCount)
      return s.getRangeAt(0).cloneRange();
    const start = document.createRange();
    start.setStart(document.body, 0);
    return start;
  };

  const scrollToCaret = () => {
    const s = selection();
    if (!s || !s.rangeCount)
      return;
    const range = s.getRangeAt(0);
    const rect = range.getBoundingClientRect();
    if (rect.height || rect.top) {
      if (rect.top < 0 || rect.bottom > window.innerHeight)
        window.scrollBy(0, rect.top - window.innerHeight / 3);
      return;
    }
    const node = range.startContainer;
    const element = node.nodeType === Node.ELEMENT_NODE ? node : node.parentElement;
    if (element)
      element.scrollIntoView({ block: "nearest" });
  };

  const caretTo = (node, offset) => {
    want(null);
    history.close();
    selection().collapse(node, offset);
    scrollToCaret();
  };

  const Skipped = new Set(["SCRIPT", "STYLE", "NOSCRIPT", "TEMPLATE", "TITLE", "IFRAME", "OBJECT", "TEXTAREA", "SELECT"]);
  const textNodes = (root) => document.createTreeWalker(root, NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_TEXT, (node) =>
    node.nodeType === Node.ELEMENT_NODE
      ? (Skipped.has(node.nodeName) ? NodeFilter.FILTER_REJECT : NodeFilter.FILTER_SKIP)
      : NodeFilter.FILTER_ACCEPT);

  // The first character that shows, or the first place in the body.
  const pageStart = () => {
    const body = document.body;
    if (!body)
      return null;
    const walker = textNodes(body);
    while (walker.nextNode()) {
      const first = walker.currentNode.data.search(/[^ \t\n\r\f]/);
      if (first >= 0)
        return [walker.currentNode, first];
    }
    return [body.querySelector("p,h1,h2,h3,h4,h5,h6,td,th,li,div") || body, 0];
  };

  // Where the selection is to go in a page that was just put in; null when nobody said.
  let wanted = null;
  const want = (apply) => { wanted = apply; };
  const applyWanted = () => {
    const apply = wanted;
    wanted = null;
    if (apply)
      apply();
  };

  // The texts of a field are no place for a caret.
  const leaveFields = () => {
    const s = selection();
    const outside = (node, offset) => {
      const field = dom.closest(node, (e) => e.nodeName === "SELECT" || e.nodeName === "TEXTAREA");
      return field ? [field.parentNode, dom.indexOf(field) + 1] : [node, offset];
    };
    const [start, end] = [outside(s.anchorNode, s.anchorOffset), outside(s.focusNode, s.focusOffset)];
    if (start[0] !== s.anchorNode || end[0] !== s.focusNode)
      s.setBaseAndExtent(...start, ...end);
  };

  // Without a caret keys would go nowhere. But setting one lays the page out, so a page that was just put in gets it
  // only when it has been shown, or when the first key or command comes.
  const ensureCaret = () => {
    applyWanted();
    const anchor = selection().anchorNode; // left on the document itself when the page under it was replaced
    const place = anchor && document.body && document.body.contains(anchor) ? null : pageStart();
    if (place)
      selection().collapse(...place);
    else
      leaveFields();
  };
  const startSoon = () => schedule.afterFrame(ensureCaret);

  Surface.offer("selectionType", () => { applyWanted(); return type(); });
  Surface.offer("caretToPageStart", () => {
    const place = pageStart();
    if (place)
      caretTo(...place);
  });
  Surface.offer("selectionRect", () => {
    const { left, top, width, height } = range() ? range().getBoundingClientRect() : new DOMRect();
    return [left, top, width, height];
  });
  Surface.offer("collapseSelection", () => {
    const s = selection();
    if (s && s.rangeCount)
      s.collapseToStart();
  });
  return { type, control, selectControl, range, scrollToCaret, ensureCaret, startSoon, want, applyWanted };
});
