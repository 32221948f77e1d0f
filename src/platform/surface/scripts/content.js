// content.js: the document in and out.
//
// A page is parsed beside the document and put in with one replacement of its root; page scripts never run that way,
// and nothing here forces a layout. `generation` is the host's number for the text that a root was made of: after an
// undo the host must know which of its texts the root belongs to.
Surface.module("content", ({ history, selection, overlay, places }) => {
  const generations = new WeakMap(); // root element -> generation
  let started = "";                  // the host's name for this bootstrap document, read before its root goes
  const EndMark = "end of the page's own text";

  const deepest = (node) => {
    while (node && node.lastChild)
      node = node.lastChild;
    return node;
  };

  // Comments behind the body or the root are not in it, and what follows them may be in it again.
  const endMark = (parsed) =>
    [deepest(parsed.body), parsed.documentElement.lastChild, parsed.lastChild].find((node) =>
      node && node.nodeType === Node.COMMENT_NODE && node.data === EndMark);

  // White space behind "</body>" belongs, to a parser, to whatever was left open at the end of the page. The host keeps
  // it out of the document only where nothing was. Gives the document and which of three cases it is: "closed",
  // "open" (the white space is in the document now), or "swallowed" (an unclosed script eats the closing tags as well,
  // so the host must give them as part of the page).
  const parse = ({ html, tail, tailSpace }) => {
    const parser = new DOMParser();
    if (!tail)
      return { parsed: parser.parseFromString(html, "text/html"), end: "closed" };
    const parsed = parser.parseFromString(html + tailSpace + "<!--" + EndMark + "-->", "text/html");
    const last = endMark(parsed);
    if (!last)
      return { parsed, end: "swallowed" };
    const parent = last.parentNode;
    // Behind "</body>", white space goes to the end of the body and comments to the end of the root.
    const space = parent === parsed.documentElement && parsed.body && parsed.body.nodeName === "BODY"
      ? parsed.body.lastChild : last.previousSibling;
    last.remove();
    if (parent !== parsed.body && parent !== parsed.documentElement)
      return { parsed, end: "open" };
    if (tailSpace && space && space.nodeType === Node.TEXT_NODE && space.data.endsWith(tailSpace)) {
      space.deleteData(space.length - tailSpace.length, tailSpace.length);
      if (!space.length)
        space.remove();
    }
    return { parsed, end: "closed" };
  };

  // Code between two page ends stands behind the root, where nothing of ours is written.
  const rootOf = (parsed) => {
    while (parsed.documentElement.nextSibling)
      parsed.documentElement.append(parsed.documentElement.nextSibling);
    return parsed.documentElement;
  };

  const replaceRoot = (parsed, generation) => {
    const root = document.adoptNode(rootOf(parsed));
    generations.set(root, generation);
    document.replaceChild(root, document.documentElement);
  };

  // All of this belongs to the document, not to its content: done while that is still empty, since each of these
  // commands lays the page out first.
  const makeEditable = () => {
    document.designMode = "on";
    document.execCommand("styleWithCSS", false, false);
    document.execCommand("defaultParagraphSeparator", false, "p");
  };

  const isEmpty = (body) => !body || (!body.firstElementChild && body.childNodes.length < 2 &&
    (body.firstChild ? body.firstChild.data.length < 20 : true));

  // { boot, html, tail, tailSpace, generation, undoable, clean, marks }: answers how the page ended (see parse; a swallowed
  // end leaves the document as it was), or "" when this is not the document that the host started. An undoable page stays
  // in this document as long as the engine lays it out by the same rules; "mode" when it would not. `marks` are the
  // comments that tell where the selection is to go; "unmarked" when not all of them have come through the parser.
  Surface.offer("load", (page) => {
    if (!started) {
      started = document.documentElement.id;
      makeEditable();
    }
    if (started !== page.boot)
      return {};
    const { parsed, end } = parse(page);
    if (end === "swallowed")
      return { end };
    if (page.undoable && parsed.compatMode !== document.compatMode)
      return { end: "mode" };
    const target = places.takeOut(parsed, page.marks || []);
    if (!target)
      return { end: "unmarked" };
    const scroll = page.undoable ? [window.scrollX, window.scrollY] : [0, 0];
    if (page.undoable) {
      history.transact(null, () => replaceRoot(parsed, page.generation));
      if (page.clean)
        history.markClean();
    } else {
      replaceRoot(parsed, page.generation);
      history.reset();
    }
    selection.want(target.start ? () => places.select(target, scroll) : null);
    selection.startSoon();
    return { end, title: document.title, empty: isEmpty(document.body), changes: history.changes() };
  });

  // The document as the engine writes it: [generation, changes, dirty, edited, outerHTML]; nothing when it did not
  // change since the count of changes that the host already has.
  Surface.offer("text", (known) => {
    const changes = history.changes();
    if (changes === known)
      return [];
    const root = document.documentElement;
    const { dirty, undo } = history.state();
    return [generations.get(root), changes, dirty, undo, overlay.outerHTML(root)];
  });

  // The same, whatever the host has, with the words in it where the selection starts and ends (see places.js), and what
  // is selected: [generation, changes, dirty, edited, outerHTML, type].
  Surface.offer("markedText", ({ start, end, whole }) => {
    selection.applyWanted();
    const changes = history.changes();
    const { dirty, undo } = history.state();
    const root = document.documentElement;
    const html = places.withMarks(start, end, whole, () => overlay.outerHTML(root));
    return [generations.get(root), changes, dirty, undo, html, selection.type()];
  });

  // { html, tail, tailSpace }: how the engine would write a page right after loading it, as { end, html }.
  Surface.offer("reparse", (page) => {
    const { parsed, end } = parse(page);
    return { end, html: end === "swallowed" ? "" : rootOf(parsed).outerHTML };
  });

  Surface.offer("title", () => [generations.get(document.documentElement), document.title, history.changes()]);

  return { generation: () => generations.get(document.documentElement) };
});
