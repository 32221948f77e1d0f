#pragma once

#include <QString>

/// The nearest place in page text where a comment can be put without changing what a parser makes of the rest:
/// `position` itself, or in front of the tag, comment, entity, server-side block, script, style sheet, title or text
/// field that it stands in, or behind the line end that a parser drops at the start of pre. 0-based, in UTF-16 units.
qsizetype PlaceForComment(const QString &page, qsizetype position);
