// plainpaste.js: plain text put into the page: a blank line parts paragraphs, a single line end is a line break.
Surface.module("plainpaste", ({ dom, insertion, splitting }) => {
  const OneLine = new Set(["DT", "CAPTION", "LEGEND", "SUMMARY", "ADDRESS"]);

  const lines = (text) => {
    const fragment = document.createDocumentFragment();
    text.split("\n").forEach((line, i) => {
      if (i)
        fragment.append(document.createElement("br"));
      if (line)
        fragment.append(line.replace(/ (?= )/g, "\u00a0"));
    });
    return fragment;
  };

  const paragraph = (pattern, text) => {
    const element = pattern && pattern.nodeName === "P" ? pattern.cloneNode(false) : document.createElement("p");
    element.removeAttribute("id");
    element.append(lines(text));
    return element;
  };

  // As if each had been typed, with Enter between them: the first goes on where the caret is, and what stood behind the
  // caret goes on behind the last.
  const putParagraphs = (range, texts) => {
    const start = dom.elementOf(range.startContainer);
    const block = dom.closest(start, (e) => /^(P|H[1-6])$/.test(e.nodeName));
    const whole = document.createDocumentFragment();
    if (!block) {
      whole.append(...texts.map((text) => paragraph(null, text)));
      return insertion.insertFragment(range, whole);
    }
    const { behind } = insertion.insertFragment(range, lines(texts[0]));
    const next = block.nextSibling;
    whole.append(...texts.slice(1).map((text) => paragraph(block, text)));
    const done = insertion.insertFragment(behind, whole);
    const rest = done.last.nextSibling;
    const end = done.last.lastChild;
    const offset = end.length;
    if (rest && rest !== next) {
      done.last.append(...rest.childNodes);
      rest.remove();
      splitting.joinTexts(end, end.nextSibling);
    }
    done.behind.setStart(end, offset);
    done.behind.collapse(true);
    return { behind: done.behind, last: null };
  };

  // Gives what insertion.insertFragment gives.
  const insertText = (range, given) => {
    const text = given.replace(/\0/g, "").replace(/\r\n?/g, "\n");
    const start = dom.elementOf(range.startContainer);
    const raw = document.createDocumentFragment();
    if (start.closest("pre,listing,xmp")) {
      raw.append(text);
      return insertion.insertFragment(range, raw);
    }
    const clean = text.replace(/\f|\v/g, "\n").replace(/\t/g, " ");
    const texts = clean.replace(/^([ ]*\n)+|\s*\n\s*$/g, "").split(/\n(?:[ ]*\n)+/);
    if (texts.length === 1 || OneLine.has(dom.blockOf(start).nodeName))
      return insertion.insertFragment(range, lines(texts.join("\n")));
    return putParagraphs(range, texts.map((each) => each.trim()));
  };

  return { insertText };
});
