#pragma once

#include "platform/TextFile.h"

#include <QString>

/// Gives `text`, which is about to be written, the line ends of `old`, the text that the page was loaded from: all of
/// one kind where `old` has one kind, line by line where it is mixed. Server-side blocks keep every byte.
QString WithPageLineEnds(const QString &text, const QString &old);

/// The encoding to write `text` in: that of its file, `old`, unless the user made the page declare another one. A byte
/// order mark wins over what a page declares.
TextEncoding PageEncodingFor(const QString &text, const QString &old, const TextEncoding &ofOld);

/// True when a file of this name is kept under its own name: it ends in one of the comma-separated `textExtensions`
/// ("a.php", also "a.shtml" for ".shtm"), or holds ".htm" anywhere.
bool HasPageExtension(const QString &path, const QString &textExtensions);

/// `path` cut before ".tmp.htm", the mark of an unsaved working copy.
QString WithoutWorkingSuffix(const QString &path);
inline constexpr QLatin1StringView WorkingSuffix(".tmp.htm");

/// Stands for the name of a page that has none, once somebody asked whether to save it.
inline constexpr QLatin1StringView NewPageName("NEW PAGE");
/// False for "" and for the name above.
bool IsPageName(const QString &path);

/// Name of the side file of a page: its base name with ".prj", without a folder. The base name ends at the last "."
/// of the whole path, so a name without "." in a folder with one is cut there: older side files were named so.
QString SideFileName(const QString &pagePath);
