// links.js: hyperlinks and pictures by their address.
Surface.module("links", ({ history, commands, selection, dom, insertion, runs }) => {
  const isAnchor = (node) => dom.isElement(node) && node.nodeName === "A";
  const isLink = (node) => isAnchor(node) && node.hasAttribute("href");
  const isNamed = (anchor) => anchor.hasAttribute("name") || !!anchor.id;
  const anchorOf = (node) => dom.closest(node, isAnchor);
  // A place to jump to stays where it is when the link goes.
  const withoutLink = (anchor) => {
    if (!isNamed(anchor))
      return null;
    const rest = anchor.cloneNode(false);
    rest.removeAttribute("href");
    return rest;
  };
  const removeLink = (anchor) => {
    if (isNamed(anchor))
      anchor.removeAttribute("href");
    else
      runs.unwrap(anchor);
  };

  const escape = (text) => text.replace(/&/g, "&amp;").replace(/"/g, "&quot;").replace(/</g, "&lt;").replace(/>/g, "&gt;");

  // Words and pictures can be clicked.
  const counts = (node) => runs.hasText(node) || node.nodeName === "IMG" ||
    dom.isElement(node) && !!node.querySelector("img");

  // Links never stand in each other, and each block has its own. Where there is an anchor already, that becomes the link.
  const linkBetween = (first, last, address) => {
    for (const leaf of [first, last]) {
      const around = dom.closest(leaf.parentNode, isLink);
      if (around)
        runs.pushDown(around, first, last, withoutLink(around));
    }
    for (const run of runs.collect(first, last, { counts }).runs)
      run.flatMap((node) => dom.isElement(node) ? [node, ...node.querySelectorAll("a")] : []).filter(isLink).forEach(removeLink);
    for (const run of runs.collect(first, last, { counts, parts: isAnchor }).runs) {
      const anchor = anchorOf(run[0]) || runs.wrap(run, document.createElement("a"));
      anchor.setAttribute("href", address);
    }
  };

  const link = (address) => {
    if (!address)
      return;
    const s = document.getSelection();
    const range = selection.range();
    const around = anchorOf(range.commonAncestorContainer);
    history.transact(null, () => {
      if (around) {
        around.setAttribute("href", address);
      } else if (range.collapsed) {
        insertion.pasteHTML('<a href="' + escape(address) + '">' + escape(address) + "</a>");
      } else {
        const object = selection.control();
        const done = runs.edit(range, (first, last) => linkBetween(first, last, address));
        if (object)
          selection.selectControl(object);
        else
          s.setBaseAndExtent(done.startContainer, done.startOffset, done.endContainer, done.endOffset);
      }
    });
  };

  const unlink = () => {
    const range = selection.range();
    const found = new Set();
    for (const end of [range.startContainer, range.endContainer])
      found.add(dom.closest(end, isLink));
    runs.find(range, (node) => { if (isLink(node)) found.add(node); });
    found.delete(null);
    if (!found.size)
      return;
    const object = selection.control();
    history.transact(null, () => {
      runs.keepSelection(() => found.forEach(removeLink));
      if (object)
        selection.selectControl(object);
    });
  };

  const canLink = () => {
    const object = selection.control();
    return !object || object.nodeName === "IMG" ? commands.Enabled : commands.Disabled;
  };
  commands.add("hyperlink", { run: link, status: canLink });
  // A long selection is not looked through: it may well hold a link.
  const Looked = 400; // nodes
  const canUnlink = () => {
    const range = selection.range();
    let seen = 0;
    const found = dom.closest(range.startContainer, isLink) || dom.closest(range.endContainer, isLink) ||
      !range.collapsed && runs.find(range, (node) => isLink(node) || ++seen > Looked);
    return found ? commands.Enabled : commands.Disabled;
  };
  commands.add("unlink", { run: unlink, status: canUnlink });
  commands.add("image", { run: (address) => {
    if (address)
      insertion.pasteHTML('<img src="' + escape(address) + '">');
  }, status: canLink });
  return {};
});
