#pragma once

#include <QDirIterator>
#include <QList>
#include <QString>
#include <QStringList>

/// Pages to try things on: our samples, templates and manual, and those of documentation packages that people kept by
/// hand for decades (INKLOOM_DOC_PAGES names other folders, separated by ":").
struct PageFile
{
    QString Name; ///< below its folder, with its name and (others) that of the one around
    QString Path;
    bool Sample; ///< one of our own
};

inline QList<PageFile> PageFiles()
{
    const QString root = QStringLiteral(INKLOOM_SOURCE_DIR);
    const QStringList own = {root + QStringLiteral("/samples"), root + QStringLiteral("/resources/Templates"),
                             root + QStringLiteral("/help")};
    const QString others =
        qEnvironmentVariable("INKLOOM_DOC_PAGES", QStringLiteral("/usr/share/doc/gri/html:/usr/share/doc/xfig/html"));
    QList<PageFile> pages;
    for (const QString &folder : own + others.split(u':', Qt::SkipEmptyParts)) {
        QDirIterator files(folder,
                           {QStringLiteral("*.htm"), QStringLiteral("*.html"), QStringLiteral("*.php"),
                            QStringLiteral("*.asp"), QStringLiteral("*.shtml")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            const qsizetype name = folder.lastIndexOf(u'/') + 1;
            const bool sample = own.contains(folder);
            const qsizetype around = sample ? name : folder.lastIndexOf(u'/', name - 2) + 1;
            pages.append({path.sliced(around), path, sample});
        }
    }
    return pages;
}
