// deletion.js: Backspace, Delete and their like, typing over a selection, and the delete command.
//
// Deleting inside one text is left to the engine, which is quick and good at it. Everything that touches a node's end,
// an object or a border of blocks is done here.
Surface.module("deletion", ({ history, selection, commands, events, dom, lines, structure, joins, formats }) => {
  const caret = () => document.getSelection();
  const collapse = ([node, offset]) => caret().collapse(node, offset);
  const Space = /[ \t\n\r\f]/;

  const deleteObject = (object) => {
    const parent = object.parentNode;
    const at = dom.indexOf(object);
    object.remove();
    collapse(joins.settle(parent, at));
  };

  const deleteSelection = (kind = null) => history.transact(kind, () => {
    const object = selection.control();
    if (object)
      deleteObject(object);
    else
      collapse(joins.erase(selection.range()));
    selection.scrollToCaret();
  });

  // Letters and their accents, flags and other signs made of several characters go as one.
  const characters = new Intl.Segmenter(undefined, { granularity: "grapheme" });
  const edgeLength = (text, back) => {
    const found = [...characters.segment(back ? text.slice(-40) : text.slice(0, 40))];
    return found[back ? found.length - 1 : 0].segment.length;
  };

  // The table, rule or positioned block that bars the way to `other`; null when it is the own one that ends.
  const barrier = (line, other) => {
    let found = null;
    for (let e = other.container; e && !e.contains(line.container); e = e.parentNode)
      if (lines.isWall(e))
        found = e;
    return found;
  };

  // At the border of a line: joins with its neighbour. An object is selected first, so that the key pressed again
  // deletes it; an empty paragraph before it goes.
  const cross = (line, back) => {
    const other = lines.neighbour(line, back);
    if (!other)
      return leaveList(line, back);
    if (other.container && !lines.wallOf(line.container).contains(other.container))
      return false; // out of a cell
    if (other.object && !lines.wallOf(line.container).contains(other.object))
      return false;
    const object = other.object || barrier(line, other);
    if (object) {
      if (lines.isEmpty(line) && line.first && dom.Paragraphs.has(line.container.nodeName) && lines.coversAll(line))
        structure.dissolve(line.container);
      selection.selectControl(object);
      return true;
    }
    const [first, second] = back ? [other, line] : [line, other];
    collapse(joins.settle(...joins.join(first, second, { keepSecond: true })));
    return true;
  };
  const leaveList = (line, back) => {
    if (back && structure.itemOf(line.container))
      commands.run("outdent");
    return true;
  };

  // One character or object beside a place where the engine is not to be trusted.
  const deleteBeside = (line, node, offset, back) => {
    const { leaf, spaces } = lines.beside(line, node, offset, back);
    if (spaces.length && leaf && !lines.isBreak(leaf)) {
      for (const [text, from, to] of spaces)
        text.deleteData(from, to - from);
      const emptied = spaces.map(([text]) => text).filter((text) => !text.length && text !== node);
      emptied.forEach(structure.prune);
    } else if (dom.isText(leaf)) {
      const shown = leaf === node ? (back ? leaf.data.slice(0, offset) : leaf.data.slice(offset)) : leaf.data;
      const length = edgeLength(shown, back);
      const at = back ? (leaf === node ? offset : leaf.length) - length : leaf === node ? offset : 0;
      leaf.deleteData(at, length);
      [node, offset] = [leaf, at];
    } else {
      const parent = leaf.parentNode;
      [node, offset] = [parent, dom.indexOf(leaf)];
      leaf.remove();
    }
    collapse(joins.settle(node, Math.min(offset, dom.lengthOf(node))));
  };

  // Whether the engine may do it: one character of a text of which something that shows remains, with no white space at
  // stake that stands at a border.
  const isPlain = (node, offset, back) => {
    if (!dom.isText(node) || node.length < 2)
      return false;
    const at = back ? offset - 1 : offset;
    const [c, next] = [node.data[at], node.data[back ? at - 1 : at + 1]];
    if (!c || (Space.test(c) && (!next || Space.test(next))))
      return false;
    const wide = c.charCodeAt(0) > 0x2ff; // may be a part of something longer
    return !wide && /\S/.test(node.data.slice(0, at)) || !wide && /\S/.test(node.data.slice(at + 1));
  };

  const deleteKey = (back) => () => {
    const s = caret();
    if (!s.isCollapsed) {
      deleteSelection();
      return true;
    }
    const [node, offset] = [s.anchorNode, s.anchorOffset];
    if (isPlain(node, offset, back))
      return false;
    history.transact("delete", () => {
      const line = lines.lineAt(node, offset);
      if (back ? lines.atStart(line, node, offset) : lines.atEnd(line, node, offset))
        cross(line, back);
      else
        deleteBeside(line, node, offset, back);
    });
    return true;
  };

  // A word, a line: the engine says how far it reaches.
  const deleteStretch = (back) => (event) => {
    const target = caret().isCollapsed && event.getTargetRanges()[0];
    if (!target || target.collapsed)
      return deleteKey(back)();
    const range = document.createRange();
    range.setStart(target.startContainer, target.startOffset);
    range.setEnd(target.endContainer, target.endOffset);
    const line = lines.lineAt(caret().anchorNode, caret().anchorOffset);
    const far = back ? lines.lineAt(range.startContainer, range.startOffset) : lines.lineAt(range.endContainer, range.endOffset);
    if (!lines.same(line, far))
      return deleteKey(back)();
    history.transact("delete", () => collapse(joins.erase(range)));
    return true;
  };

  const typeText = (text) => {
    let [node, offset] = [caret().anchorNode, caret().anchorOffset];
    if (!dom.isText(node)) {
      const filler = node.childNodes[offset];
      const created = document.createTextNode("");
      node.insertBefore(created, filler || null);
      if (lines.isBreak(filler) && !lines.shows(created) && lines.isEmpty(lines.lineAt(node, offset)))
        filler.remove();
      [node, offset] = [created, 0];
    }
    node.insertData(offset, text);
    structure.showSpaces(node, offset + text.length);
    collapse([node, offset + text.length]);
  };

  // The letters of a text from `start` to `end` become others. The engine would take its elements along when none stay,
  // and line ends beside them that do not show.
  const typeInText = (text, start, end, letters) => history.transact("type", () => {
    if (hardBlank && hardBlank[0] === text && hardBlank[1] === start && start === end && /\S/.test(letters))
      text.replaceData(start - 1, 1, " ");
    text.replaceData(start, end - start, letters);
    const behind = start + letters.length;
    if (/\s/.test(letters))
      structure.showSpaces(text, behind);
    collapse([text, behind]);
    hardBlank = text.data[behind - 1] === "\u00a0" ? [text, behind] : null;
    inLink = behind === text.length && text.parentElement.closest("a") ? text : null;
  });
  let hardBlank = null; // behind one that only shows a blank typed last
  let inLink = null;    // a link's text whose last letters were typed over

  // Where the engine would put letters behind the link that they belong to, or make a blank of a line end beside them.
  const typesBetter = (text, offset, link) => {
    if (!dom.isText(text) || formats.waits())
      return false;
    if (text === link && offset === text.length)
      return true;
    return /[^ \t\n\r\f]/.test(text.data) && !lines.inPre(text.parentElement) &&
      (/^[ \t\r\f]*\n/.test(text.data.slice(offset)) || /\n[ \t\r\f]*$/.test(text.data.slice(0, offset)));
  };

  const typeOver = (event) => {
    const s = caret();
    const link = inLink;
    inLink = null;
    if (event.data && s.isCollapsed && typesBetter(s.anchorNode, s.anchorOffset, link)) {
      typeInText(s.anchorNode, s.anchorOffset, s.anchorOffset, event.data);
      return true;
    }
    if (s.isCollapsed) {
      const filler = dom.isElement(s.anchorNode) && s.anchorNode.childNodes[s.anchorOffset];
      if (!lines.isBreak(filler) || !structure.isList(filler.nextElementSibling))
        return false;
      history.transact("type", () => typeText(event.data || "")); // the engine would let the break stand
      return true;
    }
    const range = selection.range();
    const text = range.startContainer;
    if (!selection.control() && dom.isText(text) && text === range.endContainer) {
      typeInText(text, range.startOffset, range.endOffset, event.data || "");
      return true;
    }
    history.close();
    history.transact("type", () => {
      if (selection.control())
        deleteObject(selection.control());
      else
        collapse(joins.erase(range, { replaced: true, inFormat: true }));
      typeText(event.data || "");
    });
    return true;
  };

  for (const [type, back] of [["Backward", true], ["Forward", false]]) {
    events.onInputType("deleteContent" + type, deleteKey(back));
    for (const stretch of ["deleteWord", "deleteSoftLine", "deleteHardLine"])
      events.onInputType(stretch + type, deleteStretch(back));
  }
  for (const type of ["deleteByCut", "deleteContent", "deleteEntireSoftLine"])
    events.onInputType(type, () => { deleteSelection(); return true; });
  events.onInputType("insertText", typeOver);
  commands.add("delete", {
    run: () => {
      if (!caret().isCollapsed)
        deleteSelection();
      else if (!deleteKey(false)())
        history.transact("delete", () => deleteBeside(lines.lineAt(caret().anchorNode, caret().anchorOffset),
                                                      caret().anchorNode, caret().anchorOffset, false));
    },
  });

  // What a selection holds goes, and the place of the caret is given: for what takes its place.
  const makePlace = () => {
    const object = selection.control();
    if (object) {
      const place = [object.parentNode, dom.indexOf(object) + 1];
      collapse(place);
    } else if (!caret().isCollapsed) {
      collapse(joins.erase(selection.range(), { replaced: true }));
    }
    return [caret().anchorNode, caret().anchorOffset];
  };
  return { makePlace };
});
