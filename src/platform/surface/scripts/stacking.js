// stacking.js: which positioned element is on top of which, and above or below the text.
//
// Elements with a z-index below 0 are under the text, all others above it. A command puts the element at its place in
// the order of those that it competes with, and then changes as few numbers as that takes.
Surface.module("stacking", ({ history, commands, objects, position, styletext }) => {
  const zOf = (element) => parseInt(styletext.get(element, "z-index"), 10) || 0;

  // Numbers count only among elements under the same numbered ancestor.
  const groundOf = (element) => {
    let ground = element.parentElement;
    while (ground && ground !== document.body &&
           !(ground.style && ground.style.position && styletext.get(ground, "z-index")))
      ground = ground.parentElement;
    return ground;
  };

  const comesFirst = (one, other) =>
    !!(one.compareDocumentPosition(other) & Node.DOCUMENT_POSITION_FOLLOWING);

  // The others of a band, from the lowest up.
  const rivals = (element, below) => {
    const ground = groundOf(element);
    return [...ground.querySelectorAll("[style*='position' i]")]
      .filter((e) => e !== element && objects.isPositioned(e) && !e.contains(element) && !element.contains(e) &&
              (zOf(e) < 0) === below && groundOf(e) === ground)
      .sort((a, b) => zOf(a) - zOf(b) || (comesFirst(a, b) ? -1 : 1));
  };

  const setZ = (element, z) => {
    if (zOf(element) !== z)
      styletext.set(element, { "z-index": String(z) });
  };

  // `order` from the lowest up; the number of `moved` is free.
  const numberUp = (order, moved) => {
    let under = null;
    for (const element of order) {
      const least = !under ? 0 : comesFirst(under, element) ? zOf(under) : zOf(under) + 1;
      setZ(element, element === moved ? least : Math.max(zOf(element), least));
      under = element;
    }
  };
  const numberDown = (order, moved) => {
    let over = null;
    for (const element of [...order].reverse()) {
      const most = !over ? -1 : comesFirst(element, over) ? zOf(over) : zOf(over) - 1;
      setZ(element, element === moved ? most : Math.min(zOf(element), most));
      over = element;
    }
  };

  // `place`: from the element's index among the others and their number to its new index.
  const arrange = (below, place) => {
    const element = position.positioned();
    const others = rivals(element, below);
    const isBelow = zOf(element) < 0;
    const at = isBelow !== below ? others.length : others.filter((e) => zOf(e) < zOf(element) ||
      (zOf(e) === zOf(element) && comesFirst(e, element))).length;
    const order = [...others];
    order.splice(Math.max(0, Math.min(others.length, place(at, others.length))), 0, element);
    history.transact(null, () => (below ? numberDown : numberUp)(order, element));
  };

  const sameBand = (place) => () => arrange(zOf(position.positioned()) < 0, place);
  const rows = {
    bringToFront: sameBand((at, count) => count),
    sendToBack: sameBand(() => 0),
    bringForward: sameBand((at) => at + 1),
    sendBackward: sameBand((at) => at - 1),
    // Next to the text, on the other side of it.
    bringAboveText: () => { if (zOf(position.positioned()) < 0) arrange(false, () => 0); },
    sendBelowText: () => { if (zOf(position.positioned()) >= 0) arrange(true, (at, count) => count); },
  };
  for (const [name, run] of Object.entries(rows))
    commands.add(name, { run, status: () => position.positioned() ? commands.Enabled : commands.Disabled });
  return {};
});
