#pragma once

#include <QString>

/// Which line ends a text has. Positions and texts are UTF-16.
enum class LineEnds { Lf, CrLf, Cr, Mixed };

/// The kind of all line ends of `text`; `Lf` when it has none.
LineEnds DetectLineEnds(QStringView text);

/// The kind that most lines of `text` have; never Mixed. `Lf` when it has none.
LineEnds MajorityLineEnds(QStringView text);

/// `text` with every CR LF, LF and CR as `ends` (Mixed: unchanged).
QString WithLineEnds(const QString &text, LineEnds ends);

/// `text` with the line ends of `old`: all of one kind where `old` has one kind only. Where `old` is mixed, a line
/// that stands in both texts keeps the end it has in `old`, other lines take the majority's. Ends inside server-side
/// blocks are the caller's to protect.
QString WithLineEndsOf(const QString &text, const QString &old);
