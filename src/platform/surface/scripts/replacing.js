// replacing.js: many places of the text replaced by the same markup, in one step.
//
// Words within one text, which is what most places are, are put in together: the history keeps a text whole with every
// change, so one change a place would cost the square of their number. The others go in one by one, the last one first,
// so that the places in front stay where they are.
Surface.module("replacing", ({ history, selection, linear, insertion, dom }) => {
  const isWithin = ([start, end]) => dom.isText(start[0]) && start[0] === end[0];

  const placeBehind = (node, offset) => {
    const range = document.createRange();
    if (dom.isText(node))
      range.setStart(node, offset === undefined ? node.length : offset);
    else
      range.setStartAfter(node);
    range.collapse(true);
    return range;
  };

  // Text and copies of `markup` in turns; neighbouring texts are one. `ends`: where each copy ends, [node, offset].
  const assemble = (data, group, markup) => {
    const nodes = [];
    const ends = [];
    const add = (node) => {
      const last = nodes[nodes.length - 1];
      if (dom.isText(node) && dom.isText(last))
        last.data += node.data; // in no document yet: nobody records that
      else if (!dom.isText(node) || node.length)
        nodes.push(node);
    };
    let done = 0;
    for (const [start, end] of group) {
      add(document.createTextNode(data.slice(done, start[1])));
      for (const node of [...markup.cloneNode(true).childNodes])
        add(node);
      const last = nodes[nodes.length - 1];
      ends.push(dom.isText(last) ? [last, last.length] : [last]);
      done = end[1];
    }
    add(document.createTextNode(data.slice(done)));
    return { nodes, ends };
  };

  // All of `group` lie in one text; the place behind the first or the last of them.
  const replaceWithin = (group, markup, first) => {
    const text = group[0][0][0];
    const { nodes, ends } = assemble(text.data, group, markup);
    const [node, offset] = ends[first ? 0 : ends.length - 1];
    const keeps = dom.isText(nodes[0]);
    const rest = document.createDocumentFragment();
    rest.append(...nodes.slice(keeps ? 1 : 0));
    text.parentNode.insertBefore(rest, text.nextSibling);
    if (keeps)
      text.data = nodes[0].data;
    else
      text.remove();
    return placeBehind(keeps && node === nodes[0] ? text : node, offset);
  };

  const isThere = ([start, end]) => [start, end].every(([node, offset]) =>
    node.isConnected && offset <= dom.lengthOf(node));

  const replaceOne = (place, points, markup) => {
    const [start, end] = isThere(points) ? points
      : [linear.pointAt(place[0], "start"), linear.pointAt(place[1], "end")];
    const range = document.createRange();
    range.setStart(...start);
    range.setEnd(...end);
    return insertion.insertFragment(range, markup.cloneNode(true)).behind;
  };

  // `places` are [start, end] of the linear text, in order and apart. The caret goes behind the one that a search comes
  // to last.
  const replace = (places, html, back) => history.transact(null, () => {
    if (!places.length)
      return;
    const markup = insertion.parse(html);
    const isWord = insertion.isWord(markup);
    const points = places.map(([start, end]) => [linear.pointAt(start, "start"), linear.pointAt(end, "end")]);
    let caret = null;
    for (let last = places.length; last > 0;) {
      let first = last - 1;
      let behind;
      if (isWord && isWithin(points[first])) {
        const text = points[first][0][0];
        while (first > 0 && isWithin(points[first - 1]) && points[first - 1][0][0] === text)
          --first;
        behind = replaceWithin(points.slice(first, last), markup, back);
      } else {
        behind = replaceOne(places[first], points[first], markup);
      }
      if (!caret || back)
        caret = behind;
      last = first;
    }
    document.getSelection().collapse(caret.startContainer, caret.startOffset);
    selection.scrollToCaret();
  });

  return { replace };
});
