#pragma once

#include <QDirIterator>
#include <QList>
#include <QString>
#include <QStringList>

/// Pages to try things on: our samples, and those of documentation packages that people kept by hand for decades
/// (INKLOOM_DOC_PAGES names other folders, separated by ":").
struct PageFile
{
    QString Name; ///< below its folder, with its name and (others) that of the one around
    QString Path;
    bool Sample;
};

inline QList<PageFile> PageFiles()
{
    const QString samples = QStringLiteral(INKLOOM_SOURCE_DIR "/samples");
    const QString others =
        qEnvironmentVariable("INKLOOM_DOC_PAGES", QStringLiteral("/usr/share/doc/gri/html:/usr/share/doc/xfig/html"));
    QList<PageFile> pages;
    for (const QString &folder : QStringList{samples} + others.split(u':', Qt::SkipEmptyParts)) {
        QDirIterator files(folder,
                           {QStringLiteral("*.htm"), QStringLiteral("*.html"), QStringLiteral("*.php"),
                            QStringLiteral("*.asp"), QStringLiteral("*.shtml")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            const qsizetype name = folder.lastIndexOf(u'/') + 1;
            const qsizetype around = folder == samples ? name : folder.lastIndexOf(u'/', name - 2) + 1;
            pages.append({path.sliced(around), path, folder == samples});
        }
    }
    return pages;
}
