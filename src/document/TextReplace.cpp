#include "document/TextReplace.h"

QString ReplaceAll(const QString &text, QStringView what, QStringView with)
{
    const QStringView all(text);
    qsizetype at = what.isEmpty() ? -1 : all.indexOf(what);
    if (at < 0)
        return text;
    QString result;
    result.reserve(text.size() + with.size());
    qsizetype read = 0;
    for (; at >= 0; at = all.indexOf(what, read)) {
        result.append(all.sliced(read, at - read)).append(with);
        read = at + what.size();
    }
    return result.append(all.sliced(read));
}
