// styletext.js: single declarations of a style attribute, changed in its text.
//
// The engine's own style objects write the whole attribute anew: they drop what they don't know (properties of other
// programs, server-side code) and respell the rest. Here only the declaration that is meant changes.
Surface.module("styletext", () => {
  // The declarations as they stand, white space included; a ";" in quotes or parentheses ends none.
  const split = (text) => {
    const parts = [];
    let start = 0, depth = 0, quote = "";
    for (let i = 0; i < text.length; ++i) {
      const c = text[i];
      if (quote) {
        if (c === "\\")
          ++i;
        else if (c === quote)
          quote = "";
      } else if (c === '"' || c === "'") {
        quote = c;
      } else if (c === "(") {
        ++depth;
      } else if (c === ")") {
        --depth;
      } else if (c === ";" && depth <= 0) {
        parts.push(text.slice(start, i));
        start = i + 1;
      }
    }
    if (text.slice(start).trim())
      parts.push(text.slice(start));
    return parts;
  };
  const nameOf = (part) => part.split(":")[0].trim().toLowerCase();
  const Important = /\s*!\s*important\s*$/i;

  // The value that counts, without "!important"; "" when there is none.
  const get = (element, name) => {
    const parts = split(element.getAttribute("style") || "").filter((part) => nameOf(part) === name);
    const last = parts[parts.length - 1] || "";
    return last.slice(last.indexOf(":") + 1).replace(Important, "").trim();
  };

  const withValue = (part, value) => {
    const important = part.match(Important);
    return part.slice(0, part.indexOf(":") + 1) + " " + value + (important ? important[0] : "");
  };

  // `values`: name -> value, null to take the declaration out. An attribute left empty goes as well.
  const set = (element, values) => {
    const before = element.getAttribute("style") || "";
    const missing = new Map(Object.entries(values).filter(([, value]) => value !== null));
    const parts = [];
    for (const part of split(before)) {
      const name = nameOf(part);
      if (!(name in values)) {
        parts.push(part);
      } else if (values[name] !== null) {
        parts.push(withValue(part, values[name]));
        missing.delete(name);
      }
    }
    for (const [name, value] of missing)
      parts.push((parts.length ? " " : "") + name + ": " + value);
    const text = parts.join(";").trim();
    if (!text)
      element.removeAttribute("style");
    else
      element.setAttribute("style", text + (/;\s*$/.test(before) ? ";" : ""));
  };

  return { get, set };
});
