// insertion.js: markup put into the page exactly as it was given.
//
// Where the markup can't stand in what is around the place (a block in a paragraph, an item in an item, a link in a
// link), that is split, so that the page reads back as the tree that is on screen.
Surface.module("insertion", ({ history, selection, structure, dom, events, splitting, joins }) => {
  const closing = [...dom.ClosesParagraph].join(",");
  const Lines = new Set(["P", "H1", "H2", "H3", "H4", "H5", "H6", "PRE", "LISTING"]);
  const Cells = new Set(["TD", "TH"]);
  const Sections = new Set(["TBODY", "THEAD", "TFOOT"]);
  const TableParts = new Set([...Cells, ...Sections, "TR", "CAPTION", "COL", "COLGROUP"]);

  const significant = (fragment) => [...fragment.childNodes].filter((node) =>
    dom.isElement(node) || (dom.isText(node) && /[^ \t\n\r\f]/.test(node.data)));

  // A template's parser takes rows and cells without a table around them, and runs nothing.
  const parse = (html) => {
    const template = document.createElement("template");
    template.innerHTML = html;
    const nodes = significant(template.content);
    const parts = nodes.filter((node) => TableParts.has(node.nodeName)).length;
    if (parts && parts < nodes.length) {
      const box = document.implementation.createHTMLDocument("").createElement("div");
      box.innerHTML = html;
      template.content.replaceChildren(...box.childNodes);
    }
    return document.adoptNode(template.content);
  };

  // ---- parts of tables ------------------------------------------------------------------------------------------------

  const tablePart = (fragment) => {
    const [first] = significant(fragment);
    return first && TableParts.has(first.nodeName) ? first.nodeName : null;
  };

  const around = (node, names) => dom.closest(dom.elementOf(node), (e) => names.has(e.nodeName));

  // Where rows or cells may stand: behind those that the place is in.
  const placeForPart = (range, name) => {
    const node = range.startContainer;
    const table = around(node, new Set(["TABLE"]));
    if (!table)
      return null;
    const behind = (element) => element && { parent: element.parentNode, next: element.nextSibling };
    const within = (names) => names.has(node.nodeName) && { parent: node, next: node.childNodes[range.startOffset] || null };
    if (Cells.has(name))
      return within(new Set(["TR"])) || behind(around(node, Cells)) || null;
    if (name === "TR")
      return within(Sections) || behind(around(node, new Set(["TR"]))) || null;
    if (Sections.has(name))
      return behind(around(node, Sections)) || { parent: table, next: null };
    return { parent: table, next: table.firstChild };
  };

  const wrapped = (fragment, name) => {
    let inner = fragment;
    const wrap = (tag) => {
      const element = document.createElement(tag);
      element.append(inner);
      inner = element;
    };
    if (Cells.has(name))
      wrap("tr");
    if (Cells.has(name) || name === "TR")
      wrap("tbody");
    wrap("table");
    const outer = document.createDocumentFragment();
    outer.append(inner);
    return outer;
  };

  // Nothing but rows and cells stands between rows and cells: the nearest cell takes the rest.
  const leaveStructure = (range) => {
    const field = dom.elementOf(range.startContainer).closest("select,textarea");
    if (field) {
      range.setStartAfter(field);
      range.collapse(true);
    }
    if (dom.isText(range.startContainer) && splitting.Structure.has(range.startContainer.parentNode.nodeName)) {
      range.setStartBefore(range.startContainer); // the white space between them
      range.collapse(true);
    }
    const node = range.startContainer;
    if (!splitting.Structure.has(node.nodeName))
      return;
    const cellIn = (e, last) => {
      const cells = !e || !dom.isElement(e) ? [] : Cells.has(e.nodeName) ? [e] : [...e.querySelectorAll("td,th")];
      return cells[last ? cells.length - 1 : 0];
    };
    const next = cellIn(node.childNodes[range.startOffset], false);
    const previous = cellIn(node.childNodes[range.startOffset - 1], true);
    if (next)
      range.setStart(next, 0);
    else if (previous)
      range.setStart(previous, previous.childNodes.length);
    else
      range.setStartBefore(node.closest("table"));
    range.collapse(true);
  };

  // ---- where to split -------------------------------------------------------------------------------------------------

  const needs = (fragment) => {
    const outside = (names, lists) => [...fragment.querySelectorAll(names)].some((e) => !e.closest(lists));
    return {
      block: !!fragment.querySelector(closing),
      item: outside("li", "ul,ol,menu,dir"),
      definition: outside("dd,dt", "dl"),
      link: !!fragment.querySelector("a"),
    };
  };

  // It can stand wherever a word can: nothing has to be split for it, moved or taken off.
  const isWord = (fragment) => !!fragment.firstChild && !tablePart(fragment) &&
    !Object.values(needs(fragment)).includes(true) && !fragment.querySelector("form");

  // The outermost element around `start` that can't hold the fragment.
  const topToSplit = (start, need) => {
    let top = null;
    let inLine = need.block;
    let inItem = need.item || need.definition;
    for (let e = start; e && e !== document.body && !Cells.has(e.nodeName) && e.nodeName !== "CAPTION"; e = e.parentElement) {
      const name = e.nodeName;
      if (need.link && name === "A")
        top = e;
      if (inItem && ((need.item && name === "LI") || (need.definition && (name === "DD" || name === "DT")))) {
        top = e;
        inItem = false;
      }
      if (dom.isBlock(e)) {
        const isSplit = inLine && Lines.has(name);
        if (isSplit)
          top = e;
        inLine = false;
        inItem = inItem && (isSplit || name === "P" || name === "DIV" || name === "ADDRESS");
      } else if (inLine) {
        inLine = ![...e.children].some(dom.isBlock); // else it is around paragraphs, not in one
        if (inLine)
          top = e;
      }
    }
    return top;
  };

  // No parser takes a form into a form.
  const unwrapForms = (start, fragment) => {
    if (start.closest("form"))
      for (const form of [...fragment.querySelectorAll("form")])
        dom.unwrap(form);
  };

  // ---- putting in -----------------------------------------------------------------------------------------------------

  // A block that is held open by a line break alone does not need that any more.
  const dropPlaceholder = (range, fragment) => {
    const block = dom.blockOf(dom.elementOf(range.startContainer));
    if ([...fragment.childNodes].every((node) => splitting.isHollow(node) || node.nodeType === Node.COMMENT_NODE))
      return;
    const placeholder = splitting.placeholderOf(block);
    if (!placeholder)
      return;
    const parent = placeholder.parentNode;
    placeholder.remove();
    if (range.startContainer === parent)
      range.setStart(parent, Math.min(range.startOffset, parent.childNodes.length));
    range.collapse(true);
  };

  const behindNode = (node) => {
    const range = document.createRange();
    if (dom.isText(node))
      range.setStart(node, node.length);
    else
      range.setStartAfter(node);
    range.collapse(true);
    return range;
  };

  const insertText = (range, text) => {
    const { startContainer: node, startOffset: offset } = range;
    node.insertData(offset, text);
    const behind = document.createRange();
    behind.setStart(node, offset + text.length);
    return behind;
  };

  const putIn = ({ parent, next }, fragment) => {
    const first = fragment.firstChild;
    const last = fragment.lastChild;
    parent.insertBefore(fragment, next);
    const end = dom.isText(last) ? last.length : 0;
    const before = first.previousSibling;
    const lead = dom.isText(before) && dom.isText(first) ? before.length : 0;
    const single = first === last;
    splitting.joinTexts(last, last.nextSibling);
    if (!lead)
      return dom.isText(last) ? [last, end] : [last];
    splitting.joinTexts(before, first);
    return single ? [before, lead + end] : dom.isText(last) ? [last, end] : [last];
  };

  const erase = (range) => {
    const { startContainer: node, startOffset, endContainer, endOffset } = range;
    if (node === endContainer && dom.isElement(node) && endOffset === startOffset + 1 &&
        !splitting.Structure.has(node.nodeName)) {
      range.deleteContents(); // an object, or a block as a whole
      return;
    }
    range.setStart(...joins.erase(range, { replaced: true }));
    range.collapse(true);
  };

  // Puts a fragment in place of what `range` holds. Gives the place behind it and the last node that was put in.
  const insertFragment = (range, fragment) => {
    if (!document.body.contains(range.startContainer))
      range.setStart(document.body, 0);
    if (!range.collapsed)
      erase(range);
    if (!fragment.firstChild) {
      structure.showSpaces(range.startContainer, range.startOffset);
      return { behind: range, last: null };
    }
    const name = tablePart(fragment);
    const partPlace = name && placeForPart(range, name);
    if (name && !partPlace)
      return insertFragment(range, wrapped(fragment, name));
    if (partPlace) {
      const [last] = putIn(partPlace, fragment);
      return { behind: behindNode(last), last };
    }
    leaveStructure(range);
    dropPlaceholder(range, fragment);
    const only = fragment.firstChild;
    if (dom.isText(only) && !only.nextSibling && dom.isText(range.startContainer))
      return { behind: insertText(range, only.data), last: null };
    const start = dom.elementOf(range.startContainer);
    unwrapForms(start, fragment);
    const top = topToSplit(start, needs(fragment));
    let place = splitting.placeAt(range.startContainer, range.startOffset);
    const tail = place.next;
    if (top)
      place = splitting.rise(place, top);
    const [last, offset] = putIn(place, fragment);
    if (tail)
      splitting.joinTexts(tail.previousSibling, tail); // a place that rose without splitting its text
    const behind = behindNode(last);
    if (offset !== undefined)
      behind.setStart(last, offset);
    behind.collapse(true);
    return { behind, last };
  };

  // ---- the caret behind -----------------------------------------------------------------------------------------------

  // Behind a block, typing goes on at the end of its text.
  const endOfText = (block) => {
    if (!dom.isBlock(block) || block.nodeName === "TABLE" || dom.isAtom(block))
      return null;
    let node = block;
    while (node.lastChild && !dom.isAtom(node)) {
      node = node.lastChild;
      while (node.previousSibling && (node.nodeType === Node.COMMENT_NODE ||
             (dom.isText(node) && !/[^ \t\n\r\f]/.test(node.data))))
        node = node.previousSibling;
      if (node.nodeName === "TABLE")
        return null;
    }
    return dom.isText(node) ? [node, node.length] : dom.isElement(node) && !dom.isAtom(node) ? [node, 0] : null;
  };

  // The engine would go on in the inline element that it finds in front of the caret; markup that was put in whole is
  // not what the next letters belong to.
  let typing = null; // where the caret was left, behind an inline element
  const atPlace = (place) => {
    const s = document.getSelection();
    return !!place && s.isCollapsed && s.anchorNode === place.parent && s.anchorOffset === place.offset &&
      place.parent.childNodes[place.offset - 1] === place.last;
  };
  events.onInputType("insertText", (event) => {
    const place = typing;
    typing = null;
    if (!event.data || !atPlace(place))
      return false;
    history.transact("type", () => {
      const text = document.createTextNode(event.data === " " ? "\u00a0" : event.data);
      place.last.after(text);
      document.getSelection().collapse(text, text.length);
    });
    return true;
  });

  const setCaret = ({ behind, last }) => {
    const inside = last && endOfText(last);
    const [node, offset] = inside || [behind.startContainer, behind.startOffset];
    document.getSelection().collapse(node, offset);
    typing = !inside && dom.isElement(last) && !dom.isBlock(last) && !dom.isAtom(last)
      ? { parent: node, offset, last } : null;
  };

  // Replaces what `range` holds by `html`, with the caret behind it; gives the place behind the markup. Within a step
  // of the history.
  const insert = (range, html) => {
    const done = insertFragment(range, parse(html));
    setCaret(done);
    return done.behind;
  };

  // Exactly this markup in place of the selection; one step.
  const pasteHTML = (html) => history.transact(null, () => {
    insert(selection.range(), html);
    selection.scrollToCaret();
  });

  return { parse, significant, isWord, insert, insertFragment, setCaret, pasteHTML };
});
