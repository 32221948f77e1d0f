#pragma once

#include "platform/TextFile.h"

#include <QString>

/// Names and text of a new page, as the dialog for new pages makes them from what is typed.

/// The name that a title suggests: letters A to Z of either case, digits and "_" stay, every other character becomes
/// "_". "My Page!" with ".htm" gives "My_Page_.htm".
QString FileNameFromTitle(const QString &title, const QString &extension);

/// What stands in the box for the file when `name` goes to `folder`: its path as seen from `siteRoot`, or the whole
/// path when the folder lies outside. Without a site there is nothing to see it from: the name alone.
QString SuggestedFile(const QString &name, const QString &folder, const QString &siteRoot);

/// The file that is meant by what stands in that box, doubled separators reduced; "" when there is no name in it.
/// A name without "." gets ".htm", whatever extension the settings name: required so. An absolute path is used as it
/// is; a path from the site root, as SuggestedFile writes it, is taken from there; anything else lies below `folder`.
QString NewPagePath(const QString &typed, const QString &folder, const QString &siteRoot);

/// The page when its template cannot be read.
inline constexpr QLatin1StringView BuiltInTemplate("<HTML><TITLE>[TITLE]</TITLE><BODY>[TITLE]<P></BODY></HTML>");

/// A template's text with the title put in, as text (so "&", "<" and ">" are escaped): for each "[title]", which counts
/// in lower case only, and between the title tags. A template without a title tag gets none.
QString NewPageText(const QString &templateText, const QString &title);

/// The encoding to write the page in: its template's. But where that declares none and is plain ASCII, browsers would
/// take the title's letters for other ones, so that they have to be written as numbers.
TextEncoding NewPageEncoding(const QString &templateText, const TextEncoding &ofTemplate);
