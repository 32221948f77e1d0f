#pragma once

#include <QString>
#include <QStringList>

/// The settings file and its side files, key by key. Nothing is held in memory: every read looks at the file, every
/// write re-reads it, changes one key, writes a temporary file and renames it over, under a lock, so that two
/// windows never lose each other's keys. Comments, unknown keys and their order survive.
///
/// The user's files lie in `folder` (0700, files 0600: a password may stand in one). A key that the user's settings
/// file does not have is looked up in the read-only file of the same name in `systemFolder`, which the installation
/// writes. Side files are the user's only.
///
/// A file that is unreadable or damaged (NUL bytes) is kept as "inkloom.ini.damaged" before a new one is written; the
/// lines that are still good are carried over. A lock that is held for more than two seconds is passed over.
class Settings
{
public:
    /// `folder` is created at the first write.
    Settings(QString folder, QString systemFolder);

    /// Value of a key, at most 298 UTF-16 units, cut at the first NUL; `fallback` when the key or the file is absent.
    QString GetIni(const QString &section, const QString &key, const QString &fallback) const;
    /// Writes one key; failures are ignored. Line breaks in the value become blanks, an empty key writes nothing.
    void SetIni(const QString &section, const QString &key, const QString &value);

    /// The same on any side file, named without a folder (".prj", "index.prj"); a folder before the name is ignored.
    QString GetSide(const QString &file, const QString &section, const QString &key, const QString &fallback) const;
    void SetSide(const QString &file, const QString &section, const QString &key, const QString &value);

    QString Folder() const { return m_folder; }

    /// Name of the settings file in both folders.
    static QString FileName() { return QStringLiteral("inkloom.ini"); }

private:
    QString m_folder;
    QString m_systemFolder;
};
