#pragma once

#include "platform/surface/Islands.h"

#include <QList>
#include <QString>

/// 0-based place behind the server-side block (`<? ... ?>` or `<% ... %>`) that starts at `at`, or `at` when none
/// starts there. A block that never closes reaches to the end of the text, as it does on the server.
qsizetype ServerBlockEnd(QStringView text, qsizetype at);

/// A text in which each server-side block and directive stands as a run of one private-use character, as long as the
/// block. Routines that look for blanks, quotes, "=", "<" or ">" then see nothing in it. Without server code it is the
/// text itself.
class ServerCodeMask
{
public:
    explicit ServerCodeMask(const QString &text);

    /// False when the text has server code but uses every private-use character itself: leave such a text alone.
    bool Usable() const { return m_blocks.isEmpty() || !m_filler.isNull(); }
    /// Null when there is no server code.
    QChar Filler() const { return m_filler; }
    const QString &Text() const { return m_text; }

    /// Puts the blocks back into a text made from Text() that kept every Filler() in order.
    QString Restore(QString changed) const;

private:
    QString m_source;
    QString m_text;
    QList<IslandSpan> m_blocks;
    QChar m_filler;
};
