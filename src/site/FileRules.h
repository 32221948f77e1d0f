#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// What the file pane shows of a folder: which names, with which icon, in which order. No widgets and no files here.

/// Every file; while the Publish tab is up.
inline const QString AllFilesPattern = QStringLiteral("*.*");
/// Normal work. Start-up and settings append extensions to it, Refresh_file_list takes them off again.
inline const QString PagesPattern = QStringLiteral("*.htm*;*.shtml;*.asp*;*.php*");

/// Numbers of the icons, shared with the list of remote files.
enum class FileIcon { Page = 3, Text = 5, Other = 6, Document = 7, Pdf = 8 };

struct FileRow
{
    QString Name;
    FileIcon Icon = FileIcon::Page;
    bool operator==(const FileRow &) const = default;
};

struct FileRules
{
    QString Pattern = PagesPattern;
    QString TextFileExtensions; ///< comma-separated
    bool SortedAsRead = false;  ///< a header was clicked: names in the order of the user's language
};

/// `name` fits one of the patterns, which are separated by ";". "*" is any text, "?" one character, case does not
/// count. "*.*" alone fits every name, one without a dot too.
bool MatchesPattern(const QString &name, const QString &pattern);

/// The icon of a name. While the pattern is not "*.*", a page. Else the first of the extensions that the name holds,
/// anywhere in it, decides: one of the first four is a page, another a text. The last extension has no comma behind it
/// and is never looked at. Then ".doc" and, stronger, ".pdf" anywhere in the name. Quirks on purpose.
FileIcon IconOf(const QString &name, const FileRules &rules);

/// The preview's copy of a page, in any folder and case, and any name that holds its name.
bool IsPreviewCopy(const QString &name);

/// The rows for these names: those that fit the pattern, without previews. In the order in which folders are listed,
/// by name without regard to case; or as the user's language sorts them.
QList<FileRow> RowsOf(const QStringList &names, const FileRules &rules);

/// By name without regard to case; the same everywhere.
void SortNames(QStringList &names);

/// `name` in `folder`, also in the root of a disk.
QString PathIn(const QString &folder, const QString &name);

/// What opening a row asks for: its path, cut at the first "#".
QString PathToOpen(const QString &path);

/// A name on one line.
QString ShownName(const QString &name);
