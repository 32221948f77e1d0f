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
      for (let node = markup.firstChild; node; node = node.nextSibling)
        add(node.cloneNode(true));
      const last = nodes[nodes.length - 1];
      ends.push(dom.isText(last) ? [last, last.length] : [last]);
      done = end[1];
    }
    add(document.createTextNode(data.slice(done)));
    return { nodes, ends };
  };

  const replaceByText = (text, group, word, first) => {
    const { data } = text;
    let result = "";
    let done = 0;
    let firstEnd = 0;
    for (const [start, end] of group) {
      result += data.slice(done, start[1]) + word;
      done = end[1];
      firstEnd = firstEnd || result.length;
    }
    const lastEnd = result.length;
    text.data = result + data.slice(done);
    return () => placeBehind(text, first ? firstEnd : lastEnd);
  };

  // All of `group` lie in one text; tells the place behind the first or the last of them. (A range costs every later
  // change of the page something: only those that are needed are made.)
  const replaceWithin = (group, markup, first) => {
    const text = group[0][0][0];
    if (dom.isText(markup.firstChild) && !markup.firstChild.nextSibling)
      return replaceByText(text, group, markup.firstChild.data, first);
    const { nodes, ends } = assemble(text.data, group, markup);
    const [node, offset] = ends[first ? 0 : ends.length - 1];
    const keeps = dom.isText(nodes[0]);
    text.after(...nodes.slice(keeps ? 1 : 0));
    if (keeps)
      text.data = nodes[0].data;
    else
      text.remove();
    return () => placeBehind(keeps && node === nodes[0] ? text : node, offset);
  };

  const isThere = ([start, end]) => [start, end].every(([node, offset]) =>
    node.isConnected && offset <= dom.lengthOf(node));

  const replaceOne = (place, points, markup) => {
    const [start, end] = isThere(points) ? points
      : [linear.pointAt(place[0], "start"), linear.pointAt(place[1], "end")];
    const range = document.createRange();
    range.setStart(...start);
    range.setEnd(...end);
    const { behind } = insertion.insertFragment(range, markup.cloneNode(true));
    return () => behind;
  };

  // `places` are [start, end] of the linear text, in order and apart. The caret goes behind the one that a search comes
  // to last.
  const replace = (places, html, back) => history.transact(null, () => {
    if (!places.length)
      return;
    const markup = insertion.parse(html);
    const isWord = insertion.isWord(markup);
    const points = linear.pointsOf(places);
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
        caret = behind();
      last = first;
    }
    // Setting it lays the page out, of which many parts are new: when that has been drawn, or is asked for.
    selection.want(() => {
      document.getSelection().collapse(caret.startContainer, caret.startOffset);
      selection.scrollToCaret();
    });
    selection.startSoon();
  });

  return { replace };
});
