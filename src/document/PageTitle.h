#pragma once

#include <QString>

/// The title in a page's text, as markup: what stands between "<TITLE>" and "</TITLE>", leading blanks removed. The
/// start tag is looked for line by line, up to a line with "<BODY"; the end tag must come on the same line or one of
/// the next three, which are joined without anything between them. "" when there is none.
QString TitleOfPage(const QString &text);

/// The same of a file; "" also for one that cannot be read as text, or is very big.
QString TitleOfFile(const QString &path);

/// The address of a file as the page `currentFile` writes it: relative, and percent-encoded where a name holds what an
/// address cannot. The file's own address when that is no page on disk.
QString AddressForPage(const QString &path, const QString &currentFile);

/// What a row puts into the page it is dropped on: a link to the row's file `path`, seen from the page `currentFile`.
/// `title` is markup; without one the file's name stands there. The address stands without quotes.
QString LinkMarkup(const QString &path, const QString &currentFile, const QString &title);
