// clipboard.js: what a copy holds, and the paste of what the host read from the clipboard.
//
// The host does both sides of the clipboard, as it does the keys for it: it alone can put server-side code back into
// what is copied and protect it in what is pasted, write pictures to files, and keep the keys behind a paste waiting.
Surface.module("clipboard", ({ history, selection, dom, insertion, splitting, commands, events, content, tableclip,
                               addresses, plainpaste, pasteclean }) => {
  const Wrappers = new Set(["UL", "OL", "MENU", "DIR", "DL"]);

  const shellOf = (element) => {
    const shell = element.cloneNode(false);
    if (!splitting.Structure.has(element.nodeName) && !Wrappers.has(element.nodeName))
      shell.removeAttribute("id");
    return shell;
  };

  // Formats around the selection belong to it, as does the table of selected cells and the list of items.
  const withContext = (fragment, start) => {
    const box = document.createElement("div");
    box.append(fragment);
    const wrap = (element) => {
      const shell = shellOf(element);
      shell.append(...box.childNodes);
      box.append(shell);
    };
    let e = start;
    for (; e && e !== document.body && !dom.isBlock(e); e = e.parentElement)
      if (e.nodeName !== "A" || e.href)
        wrap(e);
    if (e && e.nodeName === "PRE" && box.textContent.includes("\n"))
      wrap(e);
    else if (e && Wrappers.has(e.nodeName))
      wrap(e);
    else
      for (; e && (splitting.Structure.has(e.nodeName) || e.nodeName === "TABLE"); e = e.parentElement) {
        wrap(e);
        if (e.nodeName === "TABLE")
          break;
      }
    return box;
  };

  // A selection that ends at the very start of a paragraph holds nothing of it.
  const dropTouched = (fragment) => {
    for (const end of [fragment.firstElementChild, fragment.lastElementChild])
      if (end && dom.isBlock(end) && splitting.isHollow(end) && fragment.childNodes.length > 1)
        end.remove();
  };

  // A box with the exact markup of the selection; null when nothing is selected.
  const selected = () => {
    const object = selection.control();
    const s = document.getSelection();
    if (!object && (!s || s.rangeCount === 0 || s.isCollapsed))
      return null;
    if (object) {
      const box = document.createElement("div");
      box.append(object.cloneNode(true));
      return box;
    }
    const range = s.getRangeAt(0);
    const fragment = range.cloneContents();
    dropTouched(fragment);
    return withContext(fragment, dom.elementOf(range.commonAncestorContainer));
  };

  // As it shows. The engine's own way is quick for the page; an object is none of its texts.
  const textOf = () => {
    const cells = tableclip.copy();
    if (cells)
      return tableclip.textOf(cells);
    const object = selection.control();
    return !object ? document.getSelection().toString().replace(/\n+$/, "") : object.alt || object.innerText || "";
  };

  Surface.offer("copy", () => {
    const table = tableclip.copy();
    const box = table ? document.createElement("div") : selected();
    if (table)
      box.append(table);
    if (!box)
      return {};
    const html = box.innerHTML;
    const absolute = addresses.makeAbsolute(box, document.baseURI) ? box.innerHTML : html;
    const text = table ? tableclip.textOf(table) : textOf();
    return { html, absolute, text, base: document.baseURI, generation: content.generation() };
  });

  // ---- pasting --------------------------------------------------------------------------------------------------------

  // A format or link that is around the place already.
  const repeats = (node, start) => {
    if (!dom.isElement(node) || !/^(A|B|I|U|S|STRONG|EM|FONT|CODE|TT|SUB|SUP|BIG|SMALL)$/.test(node.nodeName))
      return false;
    const same = start.closest(node.nodeName);
    return !!same && same.cloneNode(false).isEqualNode(node.cloneNode(false));
  };

  // Items pasted into a list are items of that list; lines pasted into preformatted text are lines of it.
  const fit = (range, fragment) => {
    const start = dom.elementOf(range.startContainer);
    const nodes = insertion.significant(fragment);
    for (const node of nodes)
      if (repeats(node, start))
        dom.unwrap(node);
    const [only] = nodes;
    if (nodes.length !== 1)
      return;
    const list = start.closest("ul,ol,menu,dir,dl,td,th");
    if ((/^(UL|OL)$/.test(only.nodeName) && list && /^(UL|OL)$/.test(list.nodeName)) ||
        (only.nodeName === "PRE" && start.closest("pre")))
      fragment.replaceChildren(...only.childNodes);
  };

  const insertMarkup = (range, fragment) => {
    const table = tableclip.tableOf(fragment);
    if (table && tableclip.fill(table))
      return;
    fit(range, fragment);
    insertion.setCaret(insertion.insertFragment(range, fragment));
  };

  const Ways = {
    // Out of another page of ours: exactly as it was there.
    own: (range, { html, base }) => {
      const fragment = insertion.parse(html);
      addresses.rebase(fragment, base, document.baseURI);
      insertMarkup(range, fragment);
    },
    exact: (range, { html }) => insertMarkup(range, insertion.parse(html)),
    foreign: (range, { html }) => insertMarkup(range, pasteclean.clean(html)),
    text: (range, { text }) => insertion.setCaret(plainpaste.insertText(range, text)),
  };

  // { way, html, text, base }
  Surface.offer("paste", (given) => {
    selection.ensureCaret();
    if (commands.statusOf("paste") < commands.Enabled)
      return;
    history.transact(null, () => Ways[given.way](selection.range(), given));
    selection.scrollToCaret();
  });

  for (const type of ["copy", "cut", "paste"])
    events.on(type, () => true);

  const ofSelection = { run: () => undefined,
                        status: () => selection.type() === "None" ? commands.Disabled : commands.Enabled };
  commands.add("cut", ofSelection);
  commands.add("copy", ofSelection);
  commands.add("paste", { run: () => undefined });
  commands.add("selectAll", { run: () => { history.close(); return document.execCommand("selectAll"); } });
  return { selected, insertMarkup };
});
