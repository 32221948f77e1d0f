#pragma once

#include "document/PathText.h"

#include <QString>

/// Questions about the text of a whole page. All linear in the text; none fails on odd text.

/// True when the text must not be written over a page: it has lost its content. A short text (under 300 characters)
/// with the engine's own generator tag, or a text without "<body" although the page had one.
bool RefuseSave(const QString &text, bool hasBodyTag);

/// True when the text is an empty page: nothing in its body, or one that the surface made itself, or no body tag
/// although the page had one.
bool IsBlankPage(const QString &text, bool hasBodyTag);

/// "<body" or "<BODY" stands in the text; mixed case does not count.
bool HasBodyTagIn(const QString &text);

/// The charset declared in the text by a plain search for "charset="; "ISO-8859-1" when there is none of 3 to 20
/// characters, "UTF-8" for any that holds "unicode".
QString DeclaredCharset(const QString &text);

/// `html` with the text of its title element replaced; unchanged when there is no title element.
QString WithTitle(const QString &html, const QString &title);

/// Makes the absolute file links of a page (values in double quotes that start with "file://") relative to the page's
/// own path. They keep their percent-encoding; a link to another machine and one that holds server-side code stay. With
/// drive letters each "\" behind such a link in its tag becomes "/" as well, required so.
QString WithRelativeFileLinks(const QString &html, const QString &pagePath,
                              const PathStyle &style = PathStyle::Native());
