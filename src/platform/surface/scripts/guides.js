// guides.js: a style sheet of the host in the page's head, switched on and off without a step of the history.
Surface.module("guides", ({ history }) => {
  let rules = null; // text of the style element; null while the host never asked
  let on = false;
  let root = null;  // the root element that was brought in line last

  const apply = () => {
    root = document.documentElement;
    const head = document.head;
    const present = [...document.querySelectorAll("head > style")].filter((style) => style.textContent === rules);
    if (!head || (on && present.length) || (!on && !present.length))
      return;
    history.unrecorded(() => {
      if (on) {
        const style = document.createElement("style");
        style.textContent = rules;
        head.append(style);
      } else {
        present.forEach((style) => style.remove());
      }
    });
  };

  // An undo may bring back a page from before the switch.
  history.onChange(() => {
    if (rules !== null && root !== document.documentElement)
      apply();
  });

  Surface.offer("guides", (wanted) => {
    ({ rules, on } = wanted);
    apply();
    history.countChange();
  });
  return {};
});
