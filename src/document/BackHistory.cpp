#include "document/BackHistory.h"

void PushBackHistory(QStringList &history, const QString &path)
{
    while (history.size() >= BackHistoryLimit)
        history.removeFirst();
    history.append(path);
}
