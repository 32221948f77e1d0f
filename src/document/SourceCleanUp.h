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

/// How a page's text is put in order before it is saved or shown as source.
struct OutputRules
{
    bool Preserved = false; ///< the text is the author's own; else the engine's form, in its line ends
    bool Exact = false;     ///< and keeps all that is not new
    QString Path = {};      ///< of the file, which absolute file links are made relative to; "": they stay
};

/// The surface's text cleaned up, in the line ends of `old`, the text that the page was loaded from.
QString OutputOf(const MergedText &page, const OutputRules &rules, const QString &old, FixupContext &context);

/// Absolute file links become relative to `pagePath` (WithRelativeFileLinks in PageText.h); `NewOnly` where the user
/// put them in. The ranges go along.
MergedText WithRelativeFileLinks(const MergedText &page, CleanUp reach, const QString &pagePath);
