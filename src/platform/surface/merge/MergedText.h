#pragma once

#include <QList>
#include <QString>

/// A page's text, and which parts of it are not as its author wrote them.
struct MergedText
{
    enum class Part {
        Inserted, ///< the engine's words and whole tags
        Patched   ///< a tag or words of the author with something changed in them; clean as they are
    };
    struct Range
    {
        qsizetype Start;
        qsizetype Length;
        Part Kind;
    };
    QString Text;
    QList<Range> New; ///< in order, not overlapping
};
