// editing.js: commands on the selection, and markup put in at the caret.
Surface.module("editing", ({ history, selection }) => {
  const BlockNames = "ADDRESS,BLOCKQUOTE,CENTER,DIR,DIV,DL,FIELDSET,FORM,H1,H2,H3,H4,H5,H6,HR,MENU,OL,P,PRE,TABLE,UL"
    .split(",");
  const blocks = BlockNames.join(",");

  const Inline = { bold: "bold", italic: "italic", underline: "underline" };

  const currentRange = () => {
    const s = document.getSelection();
    if (s && s.rangeCount)
      return s.getRangeAt(0);
    const range = document.createRange();
    range.setStart(document.body, 0);
    return range;
  };

  const isEmpty = (element) => !element.textContent && !element.querySelector("img,input,hr,table,br,select,textarea");

  // A paragraph can't hold blocks: it is split at the caret and the blocks go between the halves.
  const insertBetweenHalves = (range, paragraph, fragment) => {
    const tail = document.createRange();
    tail.setStart(range.startContainer, range.startOffset);
    tail.setEndAfter(paragraph);
    const second = tail.extractContents();
    const rest = second.firstElementChild;
    paragraph.after(fragment, second);
    if (isEmpty(paragraph))
      paragraph.remove();
    if (rest && isEmpty(rest))
      rest.remove();
  };

  const insertFragment = (fragment) => {
    const range = currentRange();
    range.deleteContents();
    const last = fragment.lastChild;
    if (!last)
      return;
    const start = range.startContainer;
    const element = start.nodeType === Node.ELEMENT_NODE ? start : start.parentElement;
    const paragraph = element && element.closest("p");
    if (paragraph && fragment.querySelector(blocks))
      insertBetweenHalves(range, paragraph, fragment);
    else
      range.insertNode(fragment);
    if (last.nodeType === Node.TEXT_NODE)
      document.getSelection().collapse(last, last.length);
    else
      document.getSelection().collapse(last.parentNode, [...last.parentNode.childNodes].indexOf(last) + 1);
  };

  // Exactly this markup, caret behind it; one step.
  const pasteHTML = (html) => history.transact(null, () => {
    insertFragment(currentRange().createContextualFragment(html));
    selection.scrollToCaret();
  });

  const pasteText = (text) => history.transact(null, () => {
    const escape = (line) => line.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
    const lines = text.replace(/\r\n?/g, "\n").replace(/\n$/, "").split("\n").map(escape);
    insertFragment(currentRange().createContextualFragment(lines.join("<br>")));
    selection.scrollToCaret();
  });

  const selectedMarkup = () => {
    const s = document.getSelection();
    if (!s || s.isCollapsed)
      return null;
    const box = document.createElement("div");
    box.append(s.getRangeAt(0).cloneContents());
    return { html: box.innerHTML, text: s.toString() };
  };

  const inline = (name) => history.transact(null, () => document.execCommand(Inline[name]));
  const remove = () => history.transact(null, () => document.execCommand("delete"));

  const run = (name) => {
    selection.ensureCaret();
    switch (name) {
    case "undo": return history.undo();
    case "redo": return history.redo();
    case "bold": case "italic": case "underline": return inline(name);
    case "delete": return remove();
    case "selectAll": history.close(); return document.execCommand("selectAll");
    case "cut": case "copy": case "paste": return document.execCommand(name);
    default: return undefined;
    }
  };

  // Of the formats at the selection: 1 disabled, 3 enabled, 7 latched. Needs the page's layout.
  Surface.offer("formats", () => {
    const editable = !!document.body && document.body.nodeName === "BODY";
    const state = (name) => !editable ? 1 : document.queryCommandState(name) ? 7 : 3;
    return { bold: state("bold"), italic: state("italic"), underline: state("underline") };
  });
  Surface.offer("run", run);
  return { run, pasteHTML, pasteText, selectedMarkup };
});
