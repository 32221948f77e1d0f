#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
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

/// All files below a folder, which may be written there.
inline bool CopyFolder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    bool copied = files.hasNext();
    while (files.hasNext()) {
        const QString path = files.next();
        const QString target = to + path.sliced(from.size());
        QDir().mkpath(QFileInfo(target).path());
        copied = QFile::copy(path, target) && copied;
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    }
    return copied;
}
