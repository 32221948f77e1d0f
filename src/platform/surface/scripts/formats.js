// formats.js: character formats: bold and its like, font, size, colour.
//
// Markup is what hand-kept pages have: <b>, <i>, <u>, <font>; never a span or a style. What counts as bold is an element
// (<b>, <strong>) or an inline style of its own, so a heading counts as not bold: there is nothing there to take off.
// At a caret a format waits for the text that is typed next; the engine's own way there leaves styled spans wherever
// a style sheet or a heading has a say.
Surface.module("formats", ({ history, commands, selection, dom, runs, tablecells }) => {
  const Inline = {
    bold: { names: ["B", "STRONG"], styles: ["fontWeight"], says: (v) => /bold|[6-9]00/.test(v) },
    italic: { names: ["I", "EM"], styles: ["fontStyle"], says: (v) => /italic|oblique/.test(v) },
    underline: { names: ["U"], styles: ["textDecoration"], says: (v) => /underline/.test(v) },
  };
  const Font = {
    name: { attribute: "face", styles: ["fontFamily"] },
    size: { attribute: "size", styles: ["fontSize"] },
    color: { attribute: "color", styles: ["color"] },
  };
  const AnyFont = { names: ["FONT"], attributes: ["face", "size", "color"], styles: ["fontFamily", "fontSize", "color"] };
  const SizePixels = [10, 13, 16, 18, 24, 32, 48]; // of <font size=1> to 7
  const Looked = 200; // texts that the status of a big selection looks at, beside the last one

  // ---- what holds -----------------------------------------------------------------------------------------------

  // true or false where the element says so itself, undefined where it does not.
  const says = (element, { names, styles, says }) => {
    const own = element.hasAttribute("style") ? element.style[styles[0]] : "";
    return own ? says(own) : names.includes(element.nodeName) ? true : undefined;
  };
  const holds = (node, kind) => {
    for (let e = dom.elementOf(node); e && e !== document.documentElement; e = e.parentElement) {
      const said = says(e, kind);
      if (said || said === false && kind !== Inline.underline) // a line under an outer element runs through all of it
        return said;
    }
    return false;
  };

  const allHold = (node, kind) => !runs.hasText(node) ||
    (dom.isText(node) ? holds(node, kind) : [...node.childNodes].every((child) => allHold(child, kind)));

  const hex = (color) => {
    const parts = /^rgba?\((\d+), (\d+), (\d+)/.exec(color);
    return parts ? "#" + parts.slice(1).map((n) => (+n).toString(16).padStart(2, "0")).join("").toUpperCase() : "";
  };
  const sizeOf = (element) => {
    const font = dom.closest(element, (e) => e.nodeName === "FONT" && /^\s*[-+]?\d/.test(e.getAttribute("size") || ""));
    if (font && !dom.closest(element, (e) => e !== font && font.contains(e) && e.style && e.style.fontSize)) {
      const written = font.getAttribute("size").trim();
      const size = parseInt(written, 10) + (/^[-+]/.test(written) ? 3 : 0);
      return Math.max(1, Math.min(7, size));
    }
    const pixels = parseFloat(getComputedStyle(element).fontSize);
    return SizePixels.reduce((best, p, i) => Math.abs(p - pixels) < Math.abs(SizePixels[best - 1] - pixels) ? i + 1 : best, 1);
  };
  const nameOf = (element) => {
    const font = dom.closest(element, (e) => e.nodeName === "FONT" && e.hasAttribute("face"));
    const families = font ? font.getAttribute("face") : getComputedStyle(element).fontFamily;
    return families.split(",")[0].trim().replace(/^["']|["']$/g, "");
  };
  const Values = { name: nameOf, size: sizeOf, color: (element) => hex(getComputedStyle(element).color) };

  // Formats that wait at a caret: { bold: true, color: "#FF0000", ... }, for as long as it stays where it was.
  let pending = null;
  let pendingAt = null;
  const waiting = () => {
    const s = document.getSelection();
    return pending && s.isCollapsed && s.anchorNode === pendingAt[0] && s.anchorOffset === pendingAt[1] ? pending : {};
  };

  // The elements that tell for the selection: those around its texts, or the one around the caret.
  const looked = (limit) => {
    const range = selection.range();
    const found = range.collapsed ? [] : runs.texts(range, limit);
    if (found.length >= limit && dom.isText(range.endContainer) && range.endOffset > 0)
      found.push(range.endContainer);
    return found.length ? new Set(found.map((text) => text.parentElement)) : new Set([dom.elementOf(range.startContainer)]);
  };
  // One look for all commands that ask after the same change.
  let last = {};
  const elements = () => {
    const s = document.getSelection();
    const now = [history.changes(), s.anchorNode, s.anchorOffset, s.focusNode, s.focusOffset];
    if (!last.now || last.now.some((value, i) => value !== now[i]))
      last = { now, elements: looked(Looked) };
    return last.elements;
  };

  const isPossible = () => {
    const object = selection.control();
    return !object || !dom.isAtom(object);
  };
  const available = () => isPossible() ? commands.Enabled : commands.Disabled;
  const inlineStatus = (name) => {
    if (!isPossible())
      return commands.Disabled;
    if (name in waiting())
      return pending[name] ? commands.Latched : commands.Enabled;
    let some = false;
    let all = true;
    for (const element of elements()) {
      const here = holds(element, Inline[name]);
      some = some || here;
      all = all && here;
    }
    return all ? commands.Latched : some ? commands.Mixed : commands.Enabled;
  };
  // The value that all of the selection has; undefined where it differs.
  const value = (name) => {
    if (name in waiting())
      return pending[name];
    let common;
    for (const element of elements()) {
      const here = Values[name](element);
      if (common !== undefined && here !== common)
        return undefined;
      common = here;
    }
    return common;
  };

  // ---- changing a run -------------------------------------------------------------------------------------------

  // The elements of a run, inner ones last.
  const elementsOf = (run) => run.flatMap((node) => dom.isElement(node) ? [node, ...node.getElementsByTagName("*")] : []);
  // Its children take the element's place, in the run too.
  const dissolve = (run, element) => {
    const at = run.indexOf(element);
    if (at >= 0)
      run.splice(at, 1, ...element.childNodes);
    runs.unwrap(element);
  };
  const clearStyle = (element, styles) => {
    styles.forEach((style) => { element.style[style] = ""; });
    if (!element.style.length)
      element.removeAttribute("style");
  };
  const clearStyles = (run, styles) => {
    for (const element of elementsOf(run)) {
      if (!element.hasAttribute("style") || !styles.some((style) => element.style[style]))
        continue;
      clearStyle(element, styles);
      if (element.nodeName === "SPAN" && !element.attributes.length)
        dissolve(run, element);
    }
  };

  const addInline = (run, kind) => {
    const is = (e) => kind.names.includes(e.nodeName);
    if (run.every((node) => allHold(node, kind)))
      return;
    clearStyles(run, kind.styles);
    let name = kind.names[0];
    for (const element of elementsOf(run))
      if (is(element) && !element.attributes.length) {
        name = element.nodeName;
        dissolve(run, element);
      }
    const bare = (node) => dom.isElement(node) && is(node) && !node.attributes.length;
    const neighbour = [run[0].previousSibling, run[run.length - 1].nextSibling].find(bare);
    const wrapper = document.createElement(neighbour ? neighbour.nodeName : name);
    runs.mergeTwins(runs.wrap(run, wrapper));
  };

  // What stays of an element without its format: attributes of the page's own (a class, code) outlive it. null: nothing.
  const without = (element, { names, attributes = [], styles }) => {
    const isNamed = names.includes(element.nodeName);
    const rest = isNamed ? document.createElement("span") : element.cloneNode(false);
    if (isNamed)
      for (const { name, value } of element.attributes)
        if (!attributes.includes(name))
          rest.setAttribute(name, value);
    clearStyle(rest, styles);
    return rest.attributes.length || !isNamed && rest.nodeName !== "SPAN" ? rest : null;
  };

  const removeInline = (first, last, kind) => {
    const is = (e) => dom.isElement(e) && !dom.isBlock(e) && (kind.names.includes(e.nodeName) || !!kind.says && says(e, kind));
    for (const leaf of [first, last])
      for (let around; (around = dom.closest(leaf.parentNode, is));)
        runs.pushDown(around, first, last, without(around, kind));
    const { runs: found, entered } = runs.collect(first, last);
    for (const element of [...entered, ...found.flatMap(elementsOf)].filter(is)) {
      const kept = without(element, kind);
      if (kept) {
        element.before(kept); // what moves into an element outside the document is not seen by the history
        kept.append(...element.childNodes);
        element.remove();
      } else {
        runs.unwrap(element);
      }
    }
  };

  // The font element that holds this run and nothing else.
  const fontOf = (run) => {
    for (let node = run.length === 1 && run[0]; dom.isElement(node); node = node.childNodes.length === 1 && node.firstChild)
      if (node.nodeName === "FONT")
        return node;
    let [from, to] = [run[0], run[run.length - 1]];
    while (!from.previousSibling && !to.nextSibling && !dom.isBlock(from.parentNode) && from.parentNode.nodeName !== "A") {
      from = to = from.parentNode;
      if (from.nodeName === "FONT")
        return from;
    }
    return null;
  };

  const setFont = (run, { attribute, styles }, wanted) => {
    const font = fontOf(run);
    clearStyles(run, styles);
    for (const element of elementsOf(run)) {
      if (element === font || element.nodeName !== "FONT" || !element.hasAttribute(attribute))
        continue;
      element.removeAttribute(attribute);
      if (!element.attributes.length)
        dissolve(run, element);
    }
    if (font) {
      font.setAttribute(attribute, wanted);
      runs.mergeTwins(font);
      return;
    }
    const outer = dom.closest(run[0].parentNode, (e) => dom.isBlock(e) || e.nodeName === "FONT" && e.hasAttribute(attribute));
    if (outer && !dom.isBlock(outer) && outer.getAttribute(attribute).toLowerCase() === wanted.toLowerCase())
      return;
    const wrapper = document.createElement("font");
    wrapper.setAttribute(attribute, wanted);
    runs.mergeTwins(runs.wrap(run, wrapper));
  };

  // A link has a colour of its own, so the font goes inside of it.
  const isLink = (element) => element.nodeName === "A" && element.hasAttribute("href");

  const changeTo = (name, wanted) => (first, last) => {
    if (name in Inline) {
      if (wanted)
        runs.collect(first, last).runs.forEach((run) => addInline(run, Inline[name]));
      else
        removeInline(first, last, Inline[name]);
      return;
    }
    const options = name === "color" ? { parts: isLink } : {};
    runs.collect(first, last, options).runs.forEach((run) => setFont(run, Font[name], wanted));
  };

  // ---- commands -------------------------------------------------------------------------------------------------

  const applyTo = (range, wanted) => {
    for (const name of Object.keys(wanted))
      range = runs.edit(range, changeTo(name, wanted[name]));
    return range;
  };

  // Changes what is selected as one step; the same text stays selected, in the same direction.
  const changeSelected = (edit) => history.transact(null, () => {
    const s = document.getSelection();
    const range = selection.range();
    const cells = tablecells.ranges();
    if (cells)
      cells.forEach(edit);
    if (cells || range.collapsed)
      return;
    const backward = s.anchorNode === range.endContainer && s.anchorOffset === range.endOffset;
    const { startContainer, startOffset, endContainer, endOffset } = edit(range);
    if (backward)
      s.setBaseAndExtent(endContainer, endOffset, startContainer, startOffset);
    else
      s.setBaseAndExtent(startContainer, startOffset, endContainer, endOffset);
  });

  // { bold, italic, underline: boolean; name, size, color: text }: those that are given.
  const apply = (wanted) => {
    const s = document.getSelection();
    if (!s.isCollapsed) {
      changeSelected((range) => applyTo(range, wanted));
      return;
    }
    pending = { ...waiting(), ...wanted };
    pendingAt = [s.anchorNode, s.anchorOffset];
    history.announce();
  };

  const toggle = (name) => {
    if (name in waiting())
      return apply({ [name]: !pending[name] });
    const range = selection.range();
    const all = range.collapsed ? [range.startContainer]
      : (tablecells.ranges() || [range]).flatMap((each) => runs.texts(each));
    return apply({ [name]: !all.every((node) => holds(node, Inline[name])) });
  };

  // What was typed at the waiting caret gets its formats inside the same step of the history. An input method must be
  // left alone until it is done.
  const formatTyped = (formats, length) => {
    const { anchorNode: text, anchorOffset: end } = document.getSelection();
    if (!Object.keys(formats).length || !length || !dom.isText(text) || end < length)
      return;
    const range = document.createRange();
    range.setStart(text, end - length);
    range.setEnd(text, end);
    const done = applyTo(range, formats);
    document.getSelection().collapse(done.endContainer, done.endOffset);
    pending = null;
  };
  let due = {};
  window.addEventListener("beforeinput", (event) => { due = event.inputType === "insertText" ? waiting() : {}; }, true);
  window.addEventListener("input", (event) => {
    if (event.isTrusted && event.inputType === "insertText")
      formatTyped(due, (event.data || "").length);
  }, true);
  let composed = {};
  window.addEventListener("compositionstart", () => { composed = waiting(); }, true);
  window.addEventListener("compositionend", (event) =>
    history.transact("type", () => formatTyped(composed, (event.data || "").length)), true);

  for (const name of Object.keys(Inline))
    commands.add(name, { run: () => toggle(name), status: () => inlineStatus(name) });
  const addFont = (name, getter, setter, read, write = String) => {
    commands.add(getter, { run: () => read(value(name)), status: available });
    commands.add(setter, { run: (wanted) => { if (wanted) apply({ [name]: write(wanted) }); }, status: available });
  };
  const clampSize = (size) => String(Math.max(1, Math.min(7, parseInt(size, 10) || 3)));
  addFont("name", "getFontName", "setFontName", (v) => v || "");
  addFont("color", "getForeColor", "setForeColor", (v) => v || "");
  addFont("size", "getFontSize", "setFontSize", (v) => v === undefined ? undefined : Number(v), clampSize);

  // For a dialog over all of it: what holds, and a change of several in one step.
  commands.add("font", { run: (wanted) => { if (wanted && Object.keys(wanted).length) apply(wanted); }, status: available });
  Surface.offer("fontState", () => ({
    bold: inlineStatus("bold"), italic: inlineStatus("italic"), underline: inlineStatus("underline"),
    name: value("name") || "", size: Number(value("size")) || 0, color: value("color") || "",
  }));

  const removeAll = (first, last) => {
    for (const kind of [...Object.values(Inline), AnyFont])
      removeInline(first, last, kind);
  };
  commands.add("removeFormat", { run: () => changeSelected((range) => runs.edit(range, removeAll)), status: available });
  return { waits: () => Object.keys(waiting()).length > 0 };
});
