// places.js: where the selection stands in the text of the page, and back from there.
//
// Out: words are put into the document where the selection starts and ends, the document is written, and they are taken
// out again, all within one call; neither history nor selection notice. In: comments in the text to be parsed; they are
// taken out of the parsed document before it goes into the page.
Surface.module("places", ({ history, selection, dom }) => {
  const shows = (text) => /[^ \t\n\r\f]/.test(text);

  // ---- out ---------------------------------------------------------------------------------------------------------

  // A selection that ends in front of the first character of a block ends, to the eye, with the block before.
  const trimmedEnd = (range, block) => {
    if (range.endOffset !== 0 || !block.contains(range.startContainer))
      return null;
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    walker.currentNode = range.endContainer;
    for (let node = walker.previousNode(); node && node !== range.startContainer.previousSibling; node = walker.previousNode())
      if (shows(node.data) || node === range.startContainer)
        return dom.blockOf(node) === block ? [node, node.length] : null;
    return null;
  };

  const isPlace = (node) => dom.isText(node) || dom.isElement(node);

  // [start], or [start, end] when both may stand in one text: within one block, or anywhere if `whole`.
  const placesOfSelection = (whole) => {
    const object = selection.control();
    if (object) {
      const at = dom.indexOf(object);
      return [[object.parentNode, at], [object.parentNode, at + 1]];
    }
    const s = document.getSelection();
    if (!s || !s.rangeCount || !document.body)
      return [];
    const range = s.getRangeAt(0);
    if (!document.body.contains(range.startContainer) || !isPlace(range.startContainer))
      return [];
    const start = [range.startContainer, range.startOffset];
    if (range.collapsed || !isPlace(range.endContainer))
      return [start];
    const end = [range.endContainer, range.endOffset];
    const block = dom.blockOf(range.startContainer);
    if (whole || (block === dom.blockOf(range.endContainer) && block !== document.body) ||
        range.startContainer === range.endContainer && dom.isText(range.startContainer))
      return [start, end];
    const trimmed = trimmedEnd(range, block);
    return trimmed ? [start, trimmed] : [start];
  };

  // Written into a text node, so that no node is split; gives what takes the word out again.
  const put = ([node, offset], word) => {
    if (dom.isText(node)) {
      node.insertData(offset, word);
      return () => node.deleteData(offset, word.length);
    }
    const text = document.createTextNode(word);
    node.insertBefore(text, node.childNodes[offset] || null);
    return () => text.remove();
  };

  // A line feed at the very start of such an element is written twice; a word in front of it would hide that.
  const KeepsFirstLine = new Set(["PRE", "LISTING", "TEXTAREA"]);
  const behindFirstLine = ([node, offset]) => {
    const text = dom.isText(node) ? node : node.childNodes[offset];
    return offset === 0 && dom.isText(text) && text.data.startsWith("\n") && !text.previousSibling &&
      text.parentNode && KeepsFirstLine.has(text.parentNode.nodeName) ? [text, 1] : [node, offset];
  };

  const saved = () => {
    const s = document.getSelection();
    return s && s.anchorNode ? [s.anchorNode, s.anchorOffset, s.focusNode, s.focusOffset] : null;
  };

  const withMarks = (startWord, endWord, whole, read) => {
    const [start, end] = placesOfSelection(whole).map(behindFirstLine);
    if (!start || !document.body.firstChild) // a word would make an empty page one that is not
      return history.unrecorded(read);
    const before = saved();
    const html = history.unrecorded(() => {
      const takeEnd = end ? put(end, endWord) : () => {};
      const takeStart = put(start, startWord);
      try {
        return read();
      } finally {
        takeStart();
        takeEnd();
      }
    });
    const after = saved();
    if (before && after && before.some((value, i) => value !== after[i]))
      document.getSelection().setBaseAndExtent(...before);
    return html;
  };

  // ---- in ----------------------------------------------------------------------------------------------------------

  const findMarks = (parsed, marks) => {
    const walker = parsed.createTreeWalker(parsed, NodeFilter.SHOW_COMMENT);
    const found = new Map();
    while (found.size < marks.length && walker.nextNode())
      if (marks.includes(walker.currentNode.data))
        found.set(walker.currentNode.data, walker.currentNode);
    return marks.map((mark) => found.get(mark));
  };

  // Takes a comment out and joins the text that it had parted.
  const placeOf = (comment) => {
    const { previousSibling: previous, nextSibling: next, parentNode: parent } = comment;
    if (dom.isText(previous)) {
      const place = [previous, previous.length];
      if (dom.isText(next)) {
        previous.appendData(next.data);
        next.remove();
      }
      comment.remove();
      return place;
    }
    const at = dom.indexOf(comment);
    comment.remove();
    return dom.isText(next) ? [next, 0] : [parent, at];
  };

  // The object that the marks stand around, and nothing else.
  const objectBetween = (start, end) => {
    const object = end && start.nextElementSibling;
    return object && start.nextSibling === object && object.nextSibling === end &&
      (dom.isAtom(object) && object.nodeName !== "BR") ? object : null;
  };

  // { start, end, object } without what is not there; nothing when a mark was lost.
  const takeOut = (parsed, marks) => {
    const [start, end] = findMarks(parsed, marks);
    if (marks.length && (!start || (marks.length > 1 && !end)))
      return null;
    if (!start)
      return {};
    const object = objectBetween(start, end);
    return { object, start: placeOf(start), end: end ? placeOf(end) : null };
  };

  const isInline = (node) => dom.isText(node) ? shows(node.data) : dom.isElement(node) && !dom.isBlock(node);

  // Between two blocks there is nothing to stand at: the next text is meant, or else the last one.
  const whereTextIs = ([node, offset]) => {
    const body = document.body;
    if (!body || !body.contains(node))
      return null;
    const around = dom.isText(node) ? [node.previousSibling, node, node.nextSibling]
                                    : [node.childNodes[offset - 1], node.childNodes[offset]];
    if (around.some((each) => each && isInline(each)) || (dom.isElement(node) && node !== body && !node.firstChild))
      return [node, Math.min(offset, dom.lengthOf(node))];
    const walker = document.createTreeWalker(body, NodeFilter.SHOW_TEXT);
    walker.currentNode = dom.isText(node) ? node : node.childNodes[offset] || node;
    let text = dom.isText(walker.currentNode) ? walker.currentNode : walker.nextNode();
    while (text && (!shows(text.data) || dom.closest(text.parentNode, (e) => dom.Unseen.has(e.nodeName) || dom.isAtom(e))))
      text = walker.nextNode();
    if (text)
      return [text, text.data.search(/[^ \t\n\r\f]/)];
    walker.currentNode = node;
    for (text = walker.previousNode(); text && !shows(text.data);)
      text = walker.previousNode();
    if (text)
      return [text, text.data.replace(/[ \t\n\r\f]+$/, "").length];
    return body.firstElementChild ? null : [body, 0];
  };

  const select = ({ start, end, object }, scroll) => {
    if (scroll)
      window.scrollTo(...scroll);
    if (object && object.isConnected) {
      history.land(() => selection.selectControl(object));
    } else {
      const from = whereTextIs(start);
      if (!from)
        return false;
      const to = end && whereTextIs(end) || from;
      history.land(() => document.getSelection().setBaseAndExtent(...from, ...to));
    }
    selection.scrollToCaret();
    return true;
  };

  // ---- the same page, another place --------------------------------------------------------------------------------

  const inkOf = (text) => text.replace(/[ \t\n\r\f]+/g, "").length;

  // How many characters other than white space come before a mark of the body, and whether it clings to the next one.
  const countTo = (parsed, mark) => {
    const walker = parsed.createTreeWalker(parsed.body, NodeFilter.SHOW_TEXT | NodeFilter.SHOW_COMMENT);
    let ink = 0;
    for (let node = walker.nextNode(); node; node = walker.nextNode()) {
      if (dom.isText(node)) {
        ink += inkOf(node.data);
      } else if (node.data === mark) {
        const next = node.nextSibling, previous = node.previousSibling;
        const space = dom.isText(previous) ? previous.data.length - previous.data.trimEnd().length : 0;
        return { ink, space, toNext: dom.isText(next) && /^[^ \t\n\r\f]/.test(next.data) && !(dom.isText(previous) && !space) };
      }
    }
    return null;
  };

  const placeAt = ({ ink, space, toNext }) => {
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    let left = ink, last = null;
    for (let node = walker.nextNode(); node; node = walker.nextNode()) {
      const here = inkOf(node.data);
      if (left > here || (left === here && toNext) || !here) {
        left -= here;
        last = here ? node : last;
        continue;
      }
      let at = 0;
      if (left === 0 && !toNext && !last)
        return [node, node.data.search(/[^ \t\n\r\f]/)];
      for (let passed = 0; passed < left; ++at)
        passed += shows(node.data[at]) ? 1 : 0;
      if (toNext)
        while (!shows(node.data[at])) ++at;
      else
        for (let more = space; more > 0 && at < node.length && !shows(node.data[at]); --more) ++at;
      return [node, at];
    }
    return last ? [last, last.length] : null;
  };

  const sameInPage = (parsed, element) => {
    const kind = (root) => [...root.getElementsByTagName(element.nodeName)];
    return element === parsed.body ? document.body : kind(document.body)[kind(parsed.body).indexOf(element)];
  };

  // In an element without text there are no characters to count, but perhaps other elements.
  const placeInEmpty = (parsed, mark) => {
    const host = mark.parentNode;
    const same = parsed.body.contains(host) && !shows(host.textContent) && sameInPage(parsed, host);
    if (!same || shows(same.textContent))
      return null;
    const passed = [...host.children].filter((e) => e.compareDocumentPosition(mark) & Node.DOCUMENT_POSITION_FOLLOWING);
    const next = same.children[passed.length];
    return [same, next ? dom.indexOf(next) : same.childNodes.length];
  };
  const placeInPage = (parsed, mark) => {
    const count = mark && countTo(parsed, mark.data);
    return count && (placeInEmpty(parsed, mark) || placeAt(count));
  };

  // The text of the page as it is, with marks: the selection goes where they stand; the page stays.
  Surface.offer("selectMarked", ({ html, marks }) => {
    const parsed = new DOMParser().parseFromString(html, "text/html");
    if (!parsed.body || !document.body)
      return false;
    const [start, end] = findMarks(parsed, marks);
    const between = start && objectBetween(start, end);
    const object = between && sameInPage(parsed, between);
    if (object)
      return select({ object });
    const from = placeInPage(parsed, start);
    return !!from && select({ start: from, end: placeInPage(parsed, end) });
  });

  return { withMarks, takeOut, select };
});
