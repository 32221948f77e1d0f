// ranges.js: elements, text ranges and the selected object, as the host's object model holds on to them.
//
// The host chooses the number of a handle, unique as long as the surface lives, and says when it needs it no more. An
// operation on a thing that is gone answers nothing. Markup goes out as [generation, html]; what comes in is ready for
// the parser.
Surface.module("ranges", ({ history, selection, dom, linear, insertion, replacing, content }) => {
  const things = new Map(); // number -> Element or Range

  const isThere = (thing) => thing instanceof Range
    ? !!document.body && document.body.contains(thing.startContainer) && document.body.contains(thing.endContainer)
    : thing.isConnected;
  const hold = (number, thing) => {
    if (!thing)
      return false;
    things.set(number, thing);
    return true;
  };
  const markup = (html) => [content.generation(), html];

  // ---- text ranges ----

  const startOf = (range) => linear.indexOf(range.startContainer, range.startOffset);
  const endOf = (range) => range.collapsed ? startOf(range)
    : Math.max(startOf(range), linear.indexOf(range.endContainer, range.endOffset));

  const put = (range, start, end) => {
    if (start === end) {
      range.setStart(...linear.pointAt(start));
      range.collapse(true);
    } else {
      const last = linear.pointAt(end, "end");
      range.setStart(...linear.pointAt(start, "start"));
      range.setEnd(...last);
    }
  };

  const isInPair = (text, index) => index > 0 && index < text.length &&
    /[\uD800-\uDBFF]/.test(text[index - 1]) && /[\uDC00-\uDFFF]/.test(text[index]);

  // Where `count` units from a place lead, and how many of them there were.
  const byCharacters = (from, count) => {
    const text = linear.text();
    let to = Math.max(0, Math.min(text.length, from + count));
    if (isInPair(text, to))
      to += count < 0 ? -1 : 1;
    return [to, to - from];
  };
  const byWords = (from, count) => {
    const starts = linear.words();
    let low = 0, high = starts.length; // of the starts, so many lie in front of the place
    while (low < high) {
      const middle = (low + high) >> 1;
      if (starts[middle] < from)
        low = middle + 1;
      else
        high = middle;
    }
    const on = starts[low] === from ? 1 : 0;
    const moved = count < 0 ? -Math.min(-count, low) : Math.min(count, starts.length - low - on);
    if (moved === 0)
      return [from, 0];
    return [starts[moved < 0 ? low + moved : low + on + moved - 1], moved];
  };
  const step = (from, unit, count) => unit.toLowerCase() === "word" ? byWords(from, count) : byCharacters(from, count);

  const isLetter = (text, index) => index >= 0 && index < text.length && /[\p{L}\p{M}\p{N}_]/u.test(text[index]);
  const WholeWord = 2, MatchCase = 4;

  // Gives `take` each place of `wanted` between two places, [start, end], overlapping ones too, until it answers true.
  const eachPlace = (wanted, from, to, flags, take) => {
    const text = linear.text().replace(/\u00A0/g, " ");
    const plain = wanted.replace(/[ \t\n\r\f\u00A0]+/g, " ");
    if (!plain)
      return;
    const pattern = new RegExp(plain.replace(/[\\^$.*+?()[\]{}|/]/g, "\\$&"), flags & MatchCase ? "gu" : "giu");
    pattern.lastIndex = from;
    for (let hit; (hit = pattern.exec(text)); pattern.lastIndex = hit.index + 1) {
      const end = hit.index + hit[0].length;
      if (end > to)
        break;
      if (flags & WholeWord && (isLetter(text, hit.index - 1) || isLetter(text, end)))
        continue;
      if (take([hit.index, end]))
        break;
    }
  };

  // The first place of `wanted` between two places, the last one when looking back; [start, end] or nothing.
  const find = (wanted, from, to, flags, back) => {
    let found = null;
    eachPlace(wanted, from, to, flags, (place) => {
      found = place;
      return !back;
    });
    return found;
  };

  // Those that one search after the other comes to, each going on where the last one ended; in the order of the page.
  const findEach = (wanted, from, to, flags, back) => {
    const places = [];
    eachPlace(wanted, from, to, flags, (place) => { places.push(place); });
    if (back)
      places.reverse();
    let border = back ? to : from;
    const apart = places.filter(([start, end]) => {
      if (back ? end > border : start < border)
        return false;
      border = back ? start : end;
      return true;
    });
    return back ? apart.reverse() : apart;
  };

  const findText = (range, { text, count, flags }) => {
    const start = startOf(range);
    const end = endOf(range);
    const size = linear.text().length;
    const reach = count === 0 ? size : Math.abs(count);
    const found = start !== end ? find(text, start, end, flags, count < 0)
      : count < 0 ? find(text, Math.max(0, start - reach), start, flags, true)
      : find(text, start, Math.min(size, start + reach), flags, false);
    if (found)
      put(range, ...found);
    return !!found;
  };

  const shown = (text) => text.replace(/\n/g, "\r\n").split(linear.Object).join(" ");

  const select = (range) => {
    history.close();
    document.getSelection().setBaseAndExtent(range.startContainer, range.startOffset, range.endContainer, range.endOffset);
  };

  // As the selection, so that both end up behind what was put in, whatever the page did with it.
  const insertInto = (range, html) => {
    history.transact(null, () => {
      document.getSelection().setBaseAndExtent(range.startContainer, range.startOffset,
                                               range.endContainer, range.endOffset);
      insertion.insert(selection.range(), html);
    });
    const caret = selection.range();
    range.setStart(caret.startContainer, caret.startOffset);
    range.setEnd(caret.endContainer, caret.endOffset);
  };
  const plainMarkup = (text) => text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;")
    .replace(/\r\n?|\n/g, "<br>");

  const rectOf = (range) => {
    const rect = range.getBoundingClientRect();
    const element = dom.elementOf(range.startContainer);
    return rect.top || rect.height || !element ? rect : element.getBoundingClientRect();
  };

  const htmlOf = (range) => {
    const box = document.createElement("div");
    box.append(range.cloneContents());
    return box.innerHTML;
  };

  const rangeOperations = {
    htmlText: (range) => markup(htmlOf(range)),
    text: (range) => markup(shown(linear.text().slice(startOf(range), endOf(range)))),
    setText: (range, { text }) => insertInto(range, plainMarkup(text)),
    pasteHTML: (range, { html }) => insertInto(range, html),
    parentElement: (range, { as }) => hold(as, dom.elementOf(range.commonAncestorContainer)),
    duplicate: (range, { as }) => hold(as, range.cloneRange()),
    collapse: (range, { toStart }) => range.collapse(toStart),
    select,
    move: (range, { unit, count }) => {
      const [to, moved] = step(startOf(range), unit, count);
      if (moved)
        put(range, to, to);
      else
        range.collapse(true);
      return moved;
    },
    moveStart: (range, { unit, count }) => {
      const [to, moved] = step(startOf(range), unit, count);
      if (moved)
        put(range, to, Math.max(to, endOf(range)));
      return moved;
    },
    moveEnd: (range, { unit, count }) => {
      const [to, moved] = step(endOf(range), unit, count);
      if (moved)
        put(range, Math.min(to, startOf(range)), to);
      return moved;
    },
    findText,
    scrollIntoView: (range) => {
      const rect = rectOf(range);
      if (rect.top < 0 || rect.bottom > window.innerHeight)
        window.scrollBy(0, rect.top - window.innerHeight / 3);
    },
    offsetTop: (range) => rectOf(range).top,
  };

  // ---- elements ----

  // The parser makes html, head and body only for a whole page.
  const exchangeRootPart = (element, html) => {
    const parsed = new DOMParser().parseFromString(html, "text/html");
    const other = element === document.head ? parsed.head : element === document.body ? parsed.body
      : parsed.documentElement;
    for (const { name } of [...element.attributes])
      element.removeAttribute(name);
    for (const { name, value } of other.attributes)
      element.setAttribute(name, value);
    element.replaceChildren(...other.childNodes);
    return element;
  };
  const exchange = (element, html) => {
    if (element === document.documentElement || element.parentNode === document.documentElement)
      return exchangeRootPart(element, html);
    const place = document.createRange();
    place.selectNode(element);
    const fragment = place.createContextualFragment(html);
    const first = fragment.firstElementChild;
    element.replaceWith(fragment);
    return first;
  };

  const elementOperations = {
    tagName: (element) => element.nodeName.toUpperCase(),
    outerHTML: (element) => markup(element.outerHTML),
    setOuterHTML: (element, { html, on }) => {
      const wasObject = selection.control() === element;
      history.transact(null, () => {
        const first = exchange(element, html);
        if (first)
          things.set(on, first);
        if (wasObject && first)
          selection.selectControl(first);
      });
    },
    takeAttributes: (element, { html }) => {
      const other = new DOMParser().parseFromString(html, "text/html").body.firstElementChild;
      if (!other)
        return;
      const isCode = (name) => /[\uE000-\uF8FF]/.test(name); // of the server; the DOM does not take it for a name
      history.transact(null, () => {
        for (const { name } of [...element.attributes])
          if (!other.hasAttribute(name) && !isCode(name))
            element.removeAttribute(name);
        for (const { name, value } of other.attributes)
          if (element.getAttribute(name) !== value && !isCode(name))
            element.setAttribute(name, value);
      });
    },
    innerHTML: (element) => markup(element.innerHTML),
    setInnerHTML: (element, { html }) => history.transact(null, () => { element.innerHTML = html; }),
    innerText: (element) => markup(element.innerText),
    parentElement: (element, { as }) => hold(as, element.parentElement),
    insertAdjacentHTML: (element, { where, html }) =>
      history.transact(null, () => element.insertAdjacentHTML(where, html)),
  };

  // ---- the document ----

  const documentOperations = {
    selectionRange: ({ as }) => {
      selection.ensureCaret();
      return selection.type() !== "Control" && !!document.body && hold(as, selection.range());
    },
    selectedElement: ({ as }) => hold(as, selection.control()),
    bodyRange: ({ as }) => {
      const range = document.createRange();
      if (document.body)
        put(range, 0, linear.text().length);
      return !!document.body && hold(as, range);
    },
    body: ({ as }) => hold(as, document.body),
    pasteHTML: ({ html }) => insertion.pasteHTML(html),
    replaceEach: ({ text, html, count, flags }) => {
      selection.ensureCaret();
      const range = selection.range();
      const back = count < 0;
      range.collapse(back);
      const place = startOf(range);
      const size = linear.text().length;
      const reach = count === 0 ? size : Math.abs(count);
      const places = back ? findEach(text, Math.max(0, place - reach), place, flags, true)
        : findEach(text, place, Math.min(size, place + reach), flags, false);
      replacing.replace(places, html, back);
      return places.length;
    },
  };

  Surface.offer("dom", ({ operation, on, ...values }) => {
    history.flush();
    if (!on)
      return documentOperations[operation](values);
    const thing = things.get(on);
    if (!thing || !isThere(thing))
      return undefined;
    const operations = thing instanceof Range ? rangeOperations : elementOperations;
    return operations[operation](thing, { on, ...values });
  });
  Surface.offer("domGeneration", () => content.generation());
  Surface.offer("domCount", () => things.size);
  Surface.offer("domRelease", (numbers) => numbers.forEach((number) => things.delete(number)));

  Surface.offer("selectText", (wanted) => {
    const found = find(wanted, 0, linear.text().length, MatchCase, false);
    if (!found)
      return false;
    const range = document.createRange();
    put(range, ...found);
    select(range);
    selection.scrollToCaret();
    return true;
  });

  return {};
});
