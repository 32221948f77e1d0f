#pragma once

#include <QString>
#include <QStringList>

/// How many pages back are kept.
inline constexpr int BackHistoryLimit = 4;

/// Puts the page being left at the end; the oldest falls off. The same page twice in a row is two entries.
void PushBackHistory(QStringList &history, const QString &path);
