#pragma once

#include "document/FixupHtml.h"
#include "platform/surface/merge/MergedText.h"

#include <QString>

/// How far the clean-up of a page reaches whose source is preserved.
enum class CleanUp {
    Whole,  ///< all of the text
    NewOnly ///< what the user put in; the rest keeps every byte
};

/// The clean-up (FixupHTML) of text as people write it. A tag that it would garble (values in single quotes, line ends
/// between the attributes, ">" within a value) stays as it is written: there it must do nothing rather than harm.
QString CleanUpSource(const MergedText &page, CleanUp reach, FixupContext &context);

/// Absolute file links become relative to `pagePath` (WithRelativeFileLinks in PageText.h); `NewOnly` where the user
/// put them in. The ranges go along.
MergedText WithRelativeFileLinks(const MergedText &page, CleanUp reach, const QString &pagePath);
