#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>

/// Files of a test, as bytes. A failure shows as content that cannot be right.

inline bool PutBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<cannot open>");
}

/// Names of all entries of a folder, hidden ones too.
inline QStringList EntriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}
