// addresses.js: relative addresses of markup that moves to a page in another folder.
Surface.module("addresses", () => {
  const Attributes = ["href", "src", "background", "action", "data", "longdesc", "cite", "lowsrc", "poster"];
  const selector = Attributes.map((name) => "[" + name + "]").join(",");

  // With a scheme, a place in the page itself, the root of a server, or text with server-side code in it.
  const isRelative = (value) => value !== "" && !/^\s*([a-z][a-z0-9+.-]*:|[#/\\])|[\ue000-\uf8ff\ufdd0-\ufdef<]/i.test(value);

  const decoded = (text) => {
    try {
      return decodeURIComponent(text);
    } catch {
      return text;
    }
  };
  const foldersOf = (url) => url.pathname.split("/").slice(1, -1);

  // The same file as seen from another folder, every part written as it was.
  const moved = (value, from, to) => {
    const [, path, rest] = /^([^?#]*)(.*)$/s.exec(value);
    const parts = foldersOf(from);
    for (const part of path.split("/"))
      if (part === "..")
        parts.pop();
      else if (part !== ".")
        parts.push(part);
    const base = foldersOf(to);
    let common = 0;
    while (common < base.length && common < parts.length - 1 && decoded(base[common]) === decoded(parts[common]))
      ++common;
    return "../".repeat(base.length - common) + parts.slice(common).join("/") + rest;
  };

  const urlOf = (text) => {
    try {
      const url = new URL(text);
      return url.protocol === "about:" || url.protocol === "data:" ? null : url;
    } catch {
      return null;
    }
  };

  const each = (root, change) => {
    for (const element of root.querySelectorAll(selector))
      for (const name of Attributes) {
        const value = element.getAttribute(name);
        if (value !== null && isRelative(value))
          element.setAttribute(name, change(value.trim()));
      }
  };

  // Makes the relative addresses in `root`, which were meant for the address `from`, right for `to`.
  const rebase = (root, from, to) => {
    const source = urlOf(from);
    const target = urlOf(to);
    if (!source || (target && source.href.replace(/[^/]*$/, "") === target.href.replace(/[^/]*$/, "")))
      return;
    const near = target && source.origin === target.origin && source.protocol === target.protocol;
    each(root, (value) => near ? moved(value, source, target) : new URL(value, source).href);
  };

  // For programs that do not know where the markup comes from. True when there were any.
  const makeAbsolute = (root, base) => {
    const source = urlOf(base);
    let any = false;
    if (source)
      each(root, (value) => { any = true; return new URL(value, source).href; });
    return any;
  };

  return { rebase, makeAbsolute };
});
