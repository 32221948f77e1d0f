// lists.js: numbered and bulleted lists.
Surface.module("lists", ({ history, selection, commands, dom, lines, structure }) => {
  const { isList, isItem, itemOf, blankSide } = structure;
  const isBlankText = (node) => dom.isText(node) && lines.Blank.test(node.data);
  const isPassed = (node) => isBlankText(node) || structure.carries(node);

  // Neighbours of the same kind are one list, unless they differ in what their tags say.
  const passBlank = (node, back) => {
    let n = back ? node.previousSibling : node.nextSibling;
    while (n && isPassed(n))
      n = back ? n.previousSibling : n.nextSibling;
    return n;
  };
  const canMerge = (list, other) => !!other && other.nodeName === list.nodeName &&
    (!list.attributes.length || [...list.attributes].every((a) => other.getAttribute(a.name) === a.value));
  const takeBetween = (first, second) => {
    const between = [];
    for (let n = first.nextSibling; n !== second; n = n.nextSibling)
      between.push(n);
    return between;
  };
  const mergeAround = (list) => {
    const previous = passBlank(list, true);
    if (canMerge(list, previous)) {
      previous.append(...takeBetween(previous, list), ...list.childNodes);
      list.remove();
      list = structure.succeed(list, previous);
    }
    const next = passBlank(list, false);
    if (canMerge(list, next)) {
      next.prepend(...list.childNodes, ...takeBetween(list, next));
      list.remove();
      list = structure.succeed(list, next);
    }
    return list;
  };

  // Cuts the list so that `items`, neighbours in it, are alone in theirs.
  const isolate = (items) => {
    const list = items[0].parentNode;
    const cut = (nodes, place) => {
      if (!nodes.some((node) => !isPassed(node)))
        return;
      const part = list.cloneNode(false);
      part.removeAttribute("id");
      part.removeAttribute("start");
      list[place](part);
      part.append(...nodes);
    };
    const kids = [...list.childNodes];
    const last = items[items.length - 1];
    cut(kids.slice(kids.indexOf(last) + 1), "after");
    // The first part keeps the element, and with it the id; ours moves behind it.
    const before = kids.slice(0, kids.indexOf(items[0]));
    if (!before.some((node) => !isPassed(node)))
      return list;
    const own = list.cloneNode(false);
    own.removeAttribute("id");
    own.removeAttribute("start");
    list.after(own);
    own.append(...kids.slice(kids.indexOf(items[0]), kids.indexOf(last) + 1));
    return own;
  };

  // Runs of neighbours under one parent, with only blank between.
  const group = (nodes) => {
    const groups = [];
    for (const node of nodes) {
      const last = groups[groups.length - 1];
      let previous = last ? passBlank(node, true) : null;
      if (last && previous === last[last.length - 1])
        last.push(node);
      else
        groups.push([node]);
    }
    return groups;
  };

  // What a line becomes an item of: its paragraph, which goes when it says nothing, or a wrapped run of text.
  const itemFrom = (line) => {
    const { container } = line;
    const isDefinition = container.nodeName === "DT" || container.nodeName === "DD";
    const whole = lines.coversAll(line) && !lines.isWall(container) && !isDefinition &&
      (dom.Paragraphs.has(container.nodeName) || container.nodeName === "DIV");
    if (!whole)
      return structure.wrap(line, "li");
    const item = document.createElement("li");
    container.before(item);
    structure.dropBreaks(item);
    if (container.attributes.length || !["P", "DIV"].includes(container.nodeName)) {
      item.append(container);
      return item;
    }
    item.append(...container.childNodes);
    container.remove();
    structure.succeed(container, item);
    structure.fill(item);
    return item;
  };

  const makeList = (chosen, kind) => {
    const items = chosen.map((line) => itemFrom(line));
    for (const run of group(items)) {
      const list = document.createElement(kind);
      run[0].before(list);
      run.forEach((item, i) => {
        if (i)
          list.append(...takeBetween(run[i - 1].parentNode, item));
        list.append(item);
      });
      mergeAround(list);
    }
  };

  const changeKind = (items, kind) => {
    for (const run of group(items))
      if (run[0].parentNode.nodeName !== kind)
        mergeAround(structure.rename(isolate(run), kind));
  };

  // One level up: behind the item that holds the list, or out of the list as a paragraph.
  const outdentItem = (item) => {
    const list = item.parentNode;
    const holder = isItem(list.parentNode) ? list.parentNode : isList(list.parentNode) ? list : null;
    if (!holder) {
      release(item);
      return;
    }
    const followers = takeBetween(item, null);
    if (followers.some((node) => !isPassed(node))) {
      let rest = [...item.children].pop();
      if (!rest || rest.nodeName !== list.nodeName || blankSide(rest, false)) {
        rest = list.cloneNode(false);
        rest.removeAttribute("id");
        item.append(rest);
      }
      rest.append(...followers);
    }
    if (holder !== list) { // what the item that holds the list says behind it comes after this one now
      const tail = takeBetween(list, null).filter((node) => !isBlankText(node));
      item.append(...tail);
    }
    holder.after(item);
    if (![...list.childNodes].some((node) => !isPassed(node)))
      structure.dissolve(list);
    if (holder !== list)
      structure.fill(holder);
  };

  const release = (item) => {
    const list = isolate([item]);
    const nodes = [...item.childNodes];
    const at = lines.lineAt(item, 0);
    if (at.container === item && (at.first || !nodes.length) && (!nodes.length || lines.nodesOf(at).some(lines.shows))) {
      const line = structure.wrap(at, "p");
      if (item.getAttribute("align"))
        line.setAttribute("align", item.getAttribute("align"));
    }
    structure.succeed(item, item.firstChild);
    for (const node of [...list.childNodes])
      list.before(...(node === item ? item.childNodes : [node]));
    list.remove();
  };

  const leave = (items) => {
    for (const item of items)
      while (isItem(item) && item.isConnected)
        outdentItem(item);
  };

  const chosenItems = (range) => [...new Set(lines.linesIn(range).map((line) => itemOf(line.container)).filter(Boolean))];

  const toggle = (kind) => () => history.transact(null, () => structure.keepSelection(() => {
    const range = selection.range();
    const chosen = lines.piecesIn(range);
    const items = chosenItems(range);
    const outside = chosen.filter((line) => !itemOf(line.container));
    if (!outside.length && items.every((item) => item.parentNode.nodeName === kind)) {
      leave(items);
      return;
    }
    if (!outside.length && range.collapsed) {
      mergeAround(structure.rename(items[0].parentNode, kind));
      return;
    }
    changeKind(items.filter((item) => !items.some((other) => other !== item && other.contains(item))), kind);
    makeList(outside, kind);
  }));

  const status = (kind) => () => {
    const s = document.getSelection();
    const kinds = [s.anchorNode, s.focusNode].map((node) => {
      const item = node && itemOf(node);
      return item ? item.parentNode.nodeName : "";
    });
    const held = kinds.filter((name) => name === kind).length;
    return [commands.Enabled, commands.Mixed, commands.Latched][held];
  };

  commands.add("orderedList", { run: toggle("OL"), status: status("OL") });
  commands.add("unorderedList", { run: toggle("UL"), status: status("UL") });
  return { passBlank, takeBetween, group, outdentItem, chosenItems };
});
