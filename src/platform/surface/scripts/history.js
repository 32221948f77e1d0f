// history.js: undo and redo over any change of the document.
//
// A MutationObserver records what happens to the DOM; a step is the list of its operations, each with the value before
// and after, and the selection on both sides. Node identity is kept, so undo gives back the very nodes. The engine's
// own undo is never used: it loses track as soon as a script touches the page.
Surface.module("history", () => {
  const observer = new MutationObserver((records) => absorb(records));
  const watched = {
    subtree: true, childList: true, attributes: true, attributeOldValue: true,
    characterData: true, characterDataOldValue: true,
  };
  const JoinMilliseconds = 1500;
  const MemoryLimit = 96 * 1024 * 1024; // of text held by all steps, in UTF-16 units
  let steps = [];      // done steps come first, undone ones behind `done`
  let done = 0;
  let open = null;     // the step that records are going into
  let nextId = 1;
  let baseId = nextId++;  // names the state before steps[0]
  let cleanId = baseId;
  let changes = 0;     // counts every absorbed batch: two equal counts mean the same document
  let watching = false;
  const listeners = [];

  // What other modules hold of the selection beyond the engine's own: { save() -> value, restore(value) }.
  const companions = [];

  const saveSelection = () => {
    const s = document.getSelection();
    if (!s || !s.anchorNode)
      return null;
    return [s.anchorNode, s.anchorOffset, s.focusNode, s.focusOffset, companions.map((each) => each.save())];
  };

  // Where the selection is after a step is known when the engine has laid the page out and says that it moved; asking
  // at once would make every key pay for a layout.
  let unsettled = null;
  const settle = () => {
    if (unsettled)
      unsettled.after = saveSelection();
    unsettled = null;
  };

  // The step done last, as long as the user has not gone elsewhere since.
  let landing = null;

  const lengthOf = (node) => node.nodeType === Node.TEXT_NODE ? node.length : node.childNodes.length;

  const restoreSelection = (saved) => {
    if (!saved || !saved[0].isConnected || !saved[2].isConnected)
      return;
    document.getSelection().setBaseAndExtent(saved[0], Math.min(saved[1], lengthOf(saved[0])),
                                             saved[2], Math.min(saved[3], lengthOf(saved[2])));
    companions.forEach((each, i) => each.restore(saved[4][i]));
  };

  // Records do not tell where among the others a removed attribute stood: noted as our scripts remove it.
  let removals = []; // { element, name, behind: names of the attributes behind it }, since records were last taken
  const plainRemove = Element.prototype.removeAttribute;
  Element.prototype.removeAttribute = function (name) {
    const attribute = watching && this.getAttributeNode(name);
    if (attribute) {
      const all = [...this.attributes];
      removals.push({ element: this, name: attribute.localName,
                      behind: all.slice(all.indexOf(attribute) + 1).map((each) => each.name) });
    }
    plainRemove.call(this, name);
  };
  // Asked for the latest removal first, so that what follows the one found was of nothing watched.
  const takeBehind = (element, name) => {
    let at = removals.length - 1;
    while (at >= 0 && (removals[at].element !== element || removals[at].name !== name))
      --at;
    return at < 0 ? [] : removals.splice(at)[0].behind;
  };
  const dropRecords = () => {
    observer.takeRecords();
    removals = [];
  };

  // Records carry no new values: going backwards through a batch, the value after a change is the one before the next
  // change of the same thing, or what stands in the document now.
  const toOperations = (records) => {
    const later = new Map(); // node -> Map(attribute key -> value before the later change)
    const laterText = new Map(); // node -> text before the later change
    const operations = [];
    for (let i = records.length - 1; i >= 0; --i) {
      const r = records[i];
      if (r.type === "characterData") {
        const after = laterText.has(r.target) ? laterText.get(r.target) : r.target.data;
        laterText.set(r.target, r.oldValue);
        if (after !== r.oldValue)
          operations.push({ kind: "text", node: r.target, before: r.oldValue, after });
      } else if (r.type === "attributes") {
        const key = (r.attributeNamespace || "") + " " + r.attributeName;
        let values = later.get(r.target);
        if (!values)
          later.set(r.target, values = new Map());
        const after = values.has(key) ? values.get(key) : r.target.getAttributeNS(r.attributeNamespace, r.attributeName);
        values.set(key, r.oldValue);
        if (after !== r.oldValue)
          operations.push({ kind: "attribute", node: r.target, space: r.attributeNamespace, name: r.attributeName,
                            before: r.oldValue, after,
                            behind: after === null ? takeBehind(r.target, r.attributeName) : [] });
      } else {
        operations.push({ kind: "children", node: r.target, added: [...r.addedNodes], removed: [...r.removedNodes],
                          next: r.nextSibling, previous: r.previousSibling });
      }
    }
    removals = [];
    return operations.reverse();
  };

  // Typing changes the same text again and again: one operation is enough.
  const append = (step, operations) => {
    for (const operation of operations) {
      const last = step.operations[step.operations.length - 1];
      if (operation.kind === "text" && last && last.kind === "text" && last.node === operation.node)
        last.after = operation.after;
      else
        step.operations.push(operation);
    }
  };

  const costOf = (step) => step.operations.reduce((sum, o) => sum + 100 +
    (o.kind === "children" ? o.removed.reduce((n, node) => n + (node.textContent || "").length, 0)
                           : (o.before || "").length + (o.after || "").length), 0);

  let held = 0; // the costs of all steps
  const forgetOldest = () => {
    while (held > MemoryLimit && done > 1) {
      const oldest = steps.shift();
      held -= oldest.cost;
      baseId = oldest.id;
      --done;
    }
  };

  const stateId = () => done ? steps[done - 1].id : baseId;
  const tell = () => { for (const listener of listeners) listener(); };

  const push = (step) => {
    for (const undone of steps.splice(done))
      held -= undone.cost;
    held += step.cost = costOf(step);
    steps.push(step);
    done = steps.length;
    forgetOldest();
  };

  // Elements of the editor's own: that they come and go is no change of the page.
  const skipped = new Set();
  const isSkipped = (r) => r.type === "childList" &&
    [...r.addedNodes, ...r.removedNodes].every((node) => skipped.has(node));

  // Changes that nobody announced (a spelling replacement, an input method) become a step of their own.
  const absorb = (all) => {
    const records = skipped.size ? all.filter((r) => !isSkipped(r)) : all;
    if (!records.length)
      return;
    ++changes;
    const operations = toOperations(records);
    if (!operations.length)
      return;
    if (open) {
      append(open, operations);
      return;
    }
    const last = steps[done - 1];
    if (last && last.joinable && done === steps.length && last.id !== cleanId) {
      append(last, operations);
      unsettled = last;
    } else {
      const step = { id: nextId++, kind: "other", operations: [], before: null, after: null, joinable: false,
                     time: Date.now() };
      append(step, operations);
      push(step);
    }
    tell();
  };

  const flush = () => absorb(observer.takeRecords());

  const canJoin = (last, kind) => last && kind && last.kind === kind && last.joinable && done === steps.length &&
    last.id !== cleanId && Date.now() - last.time < JoinMilliseconds;

  // For what is taken back before anybody sees it, or is no part of the page: no step, and nothing unsaved.
  const unrecorded = (run) => {
    flush();
    try {
      return run();
    } finally {
      dropRecords();
    }
  };

  // Starts a step. Steps of the same `kind` in quick succession become one unless something closes the older.
  const begin = (kind) => {
    flush();
    if (open)
      return;
    settle();
    landing = null;
    open = { id: 0, kind, operations: [], before: saveSelection(), after: null, joinable: false, time: 0 };
  };

  const end = () => {
    flush();
    if (gathering)
      return;
    const step = open;
    open = null;
    if (!step || !step.operations.length)
      return;
    const last = steps[done - 1];
    if (canJoin(last, step.kind)) {
      append(last, step.operations);
      held -= last.cost;
      held += last.cost = costOf(last);
      last.id = nextId++;
      last.time = Date.now();
    } else {
      step.id = nextId++;
      step.joinable = step.kind !== null;
      step.time = Date.now();
      push(step);
    }
    landing = unsettled = steps[done - 1];
    tell();
  };

  // All that is done from here to the end of gathering is one step, whatever it is made of.
  let gathering = 0;
  const startGathering = () => {
    if (!gathering++)
      begin(null);
  };
  const endGathering = () => {
    if (!gathering || --gathering)
      return;
    ++changes; // what was told meanwhile did not count what was open
    end();
  };

  // What the open step did up to now.
  const pending = () => {
    flush();
    return open ? open.operations : [];
  };

  // The next step starts afresh, whatever its kind; where the selection goes from here is no part of the last.
  const close = () => {
    settle();
    const last = steps[done - 1];
    if (last)
      last.joinable = false;
  };

  // The user goes elsewhere.
  const leave = () => {
    close();
    landing = null;
  };

  // Selects what the step just done leads to: redo brings the selection back there.
  const land = (select) => {
    close();
    select();
    if (landing)
      landing.after = saveSelection();
  };

  const undoOperation = (o) => {
    if (o.kind === "text")
      o.node.data = o.before;
    else if (o.kind === "attribute")
      restoreAttribute(o);
    else
      exchange(o, o.added, o.removed);
  };

  const redoOperation = (o) => {
    if (o.kind === "text")
      o.node.data = o.after;
    else if (o.kind === "attribute")
      setAttribute(o, o.after);
    else
      exchange(o, o.removed, o.added);
  };

  const setAttribute = (o, value) => {
    if (value === null)
      o.node.removeAttributeNS(o.space, o.name);
    else
      o.node.setAttributeNS(o.space, o.name, value);
  };

  // In its place among the others: they are written in the order in which they stand.
  const restoreAttribute = (o) => {
    setAttribute(o, o.before);
    for (const name of o.behind) {
      const attribute = o.node.getAttributeNode(name);
      if (attribute)
        o.node.setAttributeNode(o.node.removeAttributeNode(attribute));
    }
  };

  const exchange = (o, out, back) => {
    for (const node of out)
      if (node.parentNode === o.node)
        o.node.removeChild(node);
    let next = o.next;
    if (!next || next.parentNode !== o.node)
      next = o.previous && o.previous.parentNode === o.node ? o.previous.nextSibling : null;
    for (const node of back)
      o.node.insertBefore(node, next);
  };

  const replay = (run) => {
    run();
    dropRecords(); // the echo of what we did ourselves
    ++changes;
    tell();
  };

  const undo = () => {
    flush();
    if (open || !done)
      return false;
    settle();
    landing = null;
    const step = steps[--done];
    replay(() => { for (let i = step.operations.length - 1; i >= 0; --i) undoOperation(step.operations[i]); });
    close();
    restoreSelection(step.before);
    return true;
  };

  const redo = () => {
    flush();
    if (open || done === steps.length)
      return false;
    landing = null;
    const step = steps[done++];
    replay(() => step.operations.forEach(redoOperation));
    close();
    restoreSelection(step.after);
    return true;
  };

  // Runs `change` as one step; all of it or, when it throws, what it did up to there.
  // Within another one it is a part of that.
  let transacting = false;
  const transact = (kind, change) => {
    if (transacting)
      return change();
    transacting = true;
    begin(kind);
    try {
      return change();
    } finally {
      transacting = false;
      end();
    }
  };

  // A new document: nothing to undo, nothing unsaved.
  const reset = () => {
    dropRecords();
    steps = [];
    done = held = 0;
    open = unsettled = landing = null;
    gathering = 0;
    baseId = cleanId = nextId++;
    ++changes;
    if (!watching) {
      observer.observe(document, watched);
      watching = true;
    }
    tell();
  };

  const markClean = () => {
    flush();
    close();
    cleanId = stateId();
    tell();
    return true;
  };

  const state = () => ({ dirty: stateId() !== cleanId, undo: done > 0, redo: done < steps.length, changes });

  // The document is not as the host last read it, although no step was made.
  const countChange = () => {
    flush();
    ++changes;
    tell();
  };

  Surface.offer("dirty", () => { flush(); return stateId() !== cleanId; });
  Surface.offer("markClean", markClean);
  Surface.offer("startGathering", startGathering);
  Surface.offer("endGathering", endGathering);
  Surface.offer("undo", undo);
  Surface.offer("redo", redo);
  return { begin, end, pending, close, leave, land, flush, settle, unrecorded, countChange, transact, undo, redo, reset, markClean, state,
           changes: () => { flush(); return changes; },
           keepWithSelection: (companion) => companions.push(companion),
           onChange: (listener) => listeners.push(listener),
           announce: tell, // something that shows changed beside the document
           skip: (node) => skipped.add(node) };
});
