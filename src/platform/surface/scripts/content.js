// content.js: the document in and out.
//
// A page is parsed beside the document and put in with one replacement of its root; page scripts never run that way,
// and nothing here forces a layout. `generation` is the host's number for the text that a root was made of: after an
// undo the host must know which of its texts the root belongs to.
Surface.module("content", ({ history, selection }) => {
  const generations = new WeakMap(); // root element -> generation
  let started = "";                  // the host's name for this bootstrap document, read before its root goes
  const replaceRoot = (html, generation) => {
    const parsed = new DOMParser().parseFromString(html, "text/html");
    const root = document.adoptNode(parsed.documentElement);
    generations.set(root, generation);
    document.replaceChild(root, document.documentElement);
  };

  const makeEditable = () => {
    document.designMode = "on";
    document.execCommand("styleWithCSS", false, false);
    document.execCommand("defaultParagraphSeparator", false, "p");
    // A field that asks for the focus would take the keys meant for the page.
    const active = document.activeElement;
    if (active && active !== document.body)
      active.blur();
    selection.startAtTop();
  };

  // { boot, html, generation, undoable, clean }: answers false when this is not the document that the host started.
  Surface.offer("load", ({ boot, html, generation, undoable, clean }) => {
    started = started || document.documentElement.id;
    if (started !== boot)
      return false;
    if (undoable) {
      history.transact(null, () => replaceRoot(html, generation));
      if (clean)
        history.markClean();
    } else {
      replaceRoot(html, generation);
      history.reset();
    }
    makeEditable();
    return true;
  });

  // The document as the engine writes it: [generation, changes, dirty, edited, outerHTML]; nothing when it did not
  // change since the count of changes that the host already has.
  Surface.offer("text", (known) => {
    const changes = history.changes();
    if (changes === known)
      return [];
    const root = document.documentElement;
    const { dirty, undo } = history.state();
    return [generations.get(root), changes, dirty, undo, root.outerHTML];
  });

  Surface.offer("title", () => document.title);
});
