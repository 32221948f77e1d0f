#pragma once

#include <QString>

class DesignSurface;
class SourceEditor;

/// Find and replace in the page that a view holds, from the selection on and never around the end. Nothing here asks or
/// tells the user.

/// One search.
struct FindStep
{
    static constexpr int WholePage = 9999999; ///< characters, as many as no page has

    QString Text;
    int Span = WholePage; ///< negative: towards the start
    quint16 Flags = 0;    ///< as FindFlagsOf gives them
    bool Pattern = false; ///< Text is a regular expression; counts in the source only

    bool Back() const { return Span < 0; }
};

/// 2 for whole words, 4 for the case. With both it is 4, and words are not looked at: kept, people know the boxes so.
quint16 FindFlagsOf(bool wholeWords, bool matchCase);

/// Selects the next place behind the selection (in front of it, when looking back) and scrolls there. False when there
/// is none: the selection stays.
bool FindIn(DesignSurface &surface, const FindStep &step);
bool FindIn(SourceEditor &source, const FindStep &step);

/// Puts markup in place of the selection.
void ReplaceIn(DesignSurface &surface, const QString &html);
/// Puts text in place of the selection. Behind a pattern, "\1" to "\9" in it stand for what its brackets matched, "\0"
/// for the whole, "\\" for a backslash.
void ReplaceIn(SourceEditor &source, const FindStep &step, const QString &text);

/// As find and replace in turns until nothing more is found, each search going on behind what was put in; one step for
/// undo. Answers how many were replaced.
int ReplaceAllIn(DesignSurface &surface, const FindStep &step, const QString &html);
int ReplaceAllIn(SourceEditor &source, const FindStep &step, const QString &text);

/// Why a pattern cannot be used, in words; "" when it can.
QString PatternFault(const FindStep &step);
