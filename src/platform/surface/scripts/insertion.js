// insertion.js: markup put into the page exactly as it was given.
Surface.module("insertion", ({ history, selection, dom }) => {
  const blocks = [...dom.ClosesParagraph].join(",");

  // A paragraph can't hold blocks: it is split at the caret and the blocks go between the halves.
  const insertBetweenHalves = (range, paragraph, fragment) => {
    const tail = document.createRange();
    tail.setStart(range.startContainer, range.startOffset);
    tail.setEndAfter(paragraph);
    const second = tail.extractContents();
    const rest = second.firstElementChild;
    paragraph.after(fragment, second);
    if (dom.isEmpty(paragraph))
      paragraph.remove();
    if (rest && dom.isEmpty(rest))
      rest.remove();
  };

  // Replaces what `range` holds by `html`; the caret goes behind it. Within a step of the history.
  const insert = (range, html) => {
    const fragment = range.createContextualFragment(html);
    range.deleteContents();
    const last = fragment.lastChild;
    if (!last)
      return;
    const element = dom.elementOf(range.startContainer);
    const paragraph = element && element.closest("p");
    if (paragraph && fragment.querySelector(blocks))
      insertBetweenHalves(range, paragraph, fragment);
    else
      range.insertNode(fragment);
    if (dom.isText(last))
      document.getSelection().collapse(last, last.length);
    else
      document.getSelection().collapse(last.parentNode, dom.indexOf(last) + 1);
  };

  // Exactly this markup in place of the selection; one step.
  const pasteHTML = (html) => history.transact(null, () => {
    insert(selection.range(), html);
    selection.scrollToCaret();
  });

  return { insert, pasteHTML };
});
