#pragma once

#include <QString>

/// Rewrites what the web engine's own serialisation (`outerHTML`: lower-case names, every value in double quotes) gives
/// into the form that dialogs and text routines of this program read:
/// - tag names in upper case, except inside <svg> and <math>, and attribute names in lower case as they come
///   (case-adjusted foreign names such as viewBox stay);
/// - a value without quotes where it is not empty, holds only ASCII letters, digits and . _ # / : % + -, does not end
///   in "/" and is no file address; else in double quotes. HTML's boolean attributes (checked, nowrap, ...) with an
///   empty value stand bare, so do attributes that are or hold the token of a protected island; any other empty value
///   is written as "";
/// - "<" and ">" inside attribute values as &lt; and &gt;, so that routines which stop at the first ">" never cut a
///   value;
/// - comments, doctype and the raw text of script, style, xmp, iframe, noembed, noframes and plaintext untouched;
///   a line feed that the engine's serialisation loses at the start of pre, textarea and listing put back (the content
///   that starts with a line feed is written with one more).
/// Linear in the text, one pass. Text that is no engine serialisation comes back in some form, never with a crash.
QString EngineForm(const QString &outerHtml);
