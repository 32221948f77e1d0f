// linear.js: the page's text as one line of units, and the way between its places and those of the document.
//
// One unit is a character as the page shows it (a run of white space is one blank), a thing in the line (picture, field,
// line break) or the border between two blocks. Place i stands in front of unit i. The model is built when first asked
// for and kept until the page changes: nothing here runs while the user types.
Surface.module("linear", ({ history, dom }) => {
  const Object = "\uFFFC"; // the unit of a picture or field
  const spaces = /[ \t\n\r\f]{2,}/g; // more than shows; looking at each blank would take most of the time
  const otherSpace = /[\t\n\r\f]/g;
  const set = (names) => new Set(names.split(" "));
  const KeepsSpace = set("PRE LISTING XMP PLAINTEXT");
  const Bare = set("TABLE THEAD TBODY TFOOT TR COLGROUP COL UL OL DL MENU DIR OPTGROUP HR BODY"); // hold no text of their own
  const isUnit = (element) => dom.isAtom(element) && element.nodeName !== "WBR" &&
    !(element.nodeName === "INPUT" && element.type === "hidden");

  // The units come from runs: stretches of one text node, one unit a character; a single thing; or, without a unit, an
  // empty block, which a caret can stand in. They are in order.
  const build = () => {
    const pieces = [];
    let length = 0;
    const runs = { node: [], unit: [], offset: [], length: [] };
    const enter = new Map(); // node -> count of runs in front of it
    const leave = new Map(); // node -> count of runs up to its end
    let last = ""; // the unit in front, "" at the start of a line, where white space does not show
    let border = false; // stands between what was written and what comes next
    let started = false;
    let afterRule = false; // a rule is a border itself

    const addRun = (node, offset, count) => {
      runs.node.push(node);
      runs.unit.push(length);
      runs.offset.push(offset);
      runs.length.push(count);
    };
    const write = (text, node, offset) => {
      addRun(node, offset, text.length);
      pieces.push(text);
      length += text.length;
      last = text[text.length - 1];
      started = true;
      afterRule = false;
    };
    // White space at the end of a line does not show.
    let softEnd = false;
    const dropSoftEnd = () => {
      if (!softEnd || last !== " ")
        return;
      pieces[pieces.length - 1] = pieces[pieces.length - 1].slice(0, -1);
      --length;
      --runs.length[runs.length.length - 1];
      softEnd = false;
    };
    const writeBorder = () => {
      if (!border)
        return;
      border = false;
      last = "";
      if (!started)
        return;
      pieces.push("\n");
      ++length;
    };
    const markBorder = () => {
      if (!border)
        dropSoftEnd();
      border = !afterRule;
    };

    const addPlain = (node) => {
      if (!node.length)
        return;
      writeBorder();
      write(node.data, node, 0);
      softEnd = false;
    };
    const addText = (node) => {
      const data = node.data;
      let from = 0; // of the piece that maps one to one
      const flush = (to) => {
        if (to > from) {
          writeBorder();
          write(data.slice(from, to).replace(otherSpace, " "), node, from);
          softEnd = last === " ";
        }
      };
      if (border || last === "" || last === " ")
        while (from < data.length && " \t\n\r\f".includes(data[from]))
          ++from;
      spaces.lastIndex = from;
      for (let hit; (hit = spaces.exec(data));) {
        flush(hit.index + 1);
        from = spaces.lastIndex;
      }
      flush(data.length);
    };
    const addThing = (element) => {
      if (element.nodeName === "BR") {
        if (!border)
          dropSoftEnd();
        writeBorder();
        write("\n", element, 0);
        last = "";
      } else {
        writeBorder();
        write(Object, element, 0);
        if (element.nodeName === "HR") {
          afterRule = true;
          last = "";
        }
      }
      softEnd = false;
    };

    const walk = (node, keepsSpace) => {
      enter.set(node, runs.node.length);
      if (node.nodeType === Node.TEXT_NODE) {
        if (keepsSpace)
          addPlain(node);
        else
          addText(node);
      } else if (node.nodeType === Node.ELEMENT_NODE && !dom.Unseen.has(node.nodeName)) {
        const block = dom.Blocks.has(node.nodeName);
        if (block)
          markBorder();
        const before = runs.node.length;
        if (isUnit(node))
          addThing(node);
        else
          for (let child = node.firstChild; child; child = child.nextSibling)
            walk(child, keepsSpace || KeepsSpace.has(node.nodeName));
        if (block && runs.node.length === before && !Bare.has(node.nodeName)) {
          writeBorder();
          addRun(node, 0, 0);
          started = true;
          afterRule = false;
        }
        if (block)
          markBorder();
      }
      leave.set(node, runs.node.length);
    };
    if (document.body && document.body.nodeName === "BODY")
      walk(document.body, false);
    return { text: pieces.join(""), runs, enter, leave, words: null };
  };

  let model = null;
  let changes = -1;
  const current = () => {
    const now = history.changes();
    if (!model || now !== changes)
      model = build();
    changes = now;
    return model;
  };

  const endOf = ({ runs }, run) => runs.unit[run] + runs.length[run];
  const isWritten = ({ runs }, run) => runs.node[run].nodeType === Node.TEXT_NODE;

  const indexInText = (m, node, offset) => {
    let run = m.leave.get(node) - 1;
    const first = m.enter.get(node);
    while (run > first && m.runs.offset[run] > offset)
      --run;
    return m.runs.unit[run] + Math.max(0, Math.min(offset - m.runs.offset[run], m.runs.length[run]));
  };

  // The place that a point of the document stands at; points that show no difference share one.
  const indexOf = (node, offset) => {
    const m = current();
    for (let at = node; at; offset = dom.indexOf(at), at = at.parentNode) {
      if (!m.enter.has(at) || m.enter.get(at) === m.leave.get(at)) {
        if (!at.parentNode)
          return 0;
        continue;
      }
      if (at.nodeType === Node.TEXT_NODE)
        return indexInText(m, at, offset);
      if (isUnit(at))
        return m.runs.unit[m.enter.get(at)];
      const before = at.childNodes[offset - 1];
      if (before && m.enter.has(before) && m.enter.get(before) !== m.leave.get(before) && isUnit(before))
        return endOf(m, m.enter.get(before));
      let child = at.childNodes[offset];
      while (child && !m.enter.has(child))
        child = child.nextSibling;
      const run = child ? m.enter.get(child) : m.leave.get(at);
      return run < m.leave.get(at) ? m.runs.unit[run] : endOf(m, run - 1);
    }
    return 0;
  };

  // The last run that starts at or in front of a place.
  const runBefore = (m, index) => {
    let low = 0, high = m.runs.unit.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (m.runs.unit[middle] <= index)
        low = middle + 1;
      else
        high = middle;
    }
    return low - 1;
  };

  const pointIn = (m, run, index) => {
    const node = m.runs.node[run];
    const into = index - m.runs.unit[run];
    if (node.nodeType === Node.TEXT_NODE)
      return [node, m.runs.offset[run] + into];
    return isUnit(node) ? [node.parentNode, dom.indexOf(node) + (into ? 1 : 0)] : [node, 0];
  };

  // A point of the document for a place. `side`: "start" prefers what follows, "end" what stands in front; without it,
  // where a caret goes.
  const pointAt = (index, side) => pointOf(current(), index, side);

  const pointOf = (m, index, side) => {
    let left = -1, right = -1, empty = -1;
    for (let run = runBefore(m, index); run >= 0 && endOf(m, run) >= index; --run) {
      if (m.runs.length[run] === 0) {
        if (!isWritten(m, run))
          empty = run;
      } else {
        if (endOf(m, run) > index)
          right = run;
        if (m.runs.unit[run] < index)
          left = run;
      }
    }
    const both = left >= 0 && right >= 0;
    let run = empty >= 0 ? empty : left >= 0 ? left : right;
    if (empty < 0 && both)
      run = side === "start" ? right : side === "end" ? left
        : isWritten(m, left) || !isWritten(m, right) ? left : right;
    return run < 0 ? [document.body || document.documentElement, 0] : pointIn(m, run, index);
  };

  // Start and end of each of many stretches, [start, end], without a look for changes between them.
  const pointsOf = (stretches) => {
    const m = current();
    return stretches.map(([start, end]) => [pointOf(m, start, "start"), pointOf(m, end, "end")]);
  };

  // Where words start; the blanks behind a word belong to it.
  const words = () => {
    const m = current();
    if (!m.words) {
      m.words = [];
      for (const { index } of m.text.matchAll(/(?:[\p{L}\p{M}\p{N}_]|['\u2019](?=\p{L}))+[ \u00A0]*|\n|[^\p{L}\p{M}\p{N}_\s]+[ \u00A0]*|[^\S\n]+/gu))
        m.words.push(index);
      m.words.push(m.text.length);
    }
    return m.words;
  };

  return { text: () => current().text, indexOf, pointAt, pointsOf, words, Object };
});
