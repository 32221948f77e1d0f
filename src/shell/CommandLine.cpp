#include "shell/CommandLine.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString CommandText(const QStringList &arguments)
{
    return arguments.mid(1).join(u' ');
}

CommandLine ParseCommandLine(const QString &commandText)
{
    const QString marker = u"nosplash-"_s;
    CommandLine commandLine;
    commandLine.Splash = !commandText.contains(marker);
    commandLine.File = commandLine.Splash ? commandText : commandText.mid(marker.size());
    commandLine.File.remove(u'"');
    return commandLine;
}

QString PageFromCommandLine(const QString &file, const QString &workingFolder)
{
    if (file.isEmpty())
        return file;
    const QString path = QDir::cleanPath(QDir(workingFolder).absoluteFilePath(file));
    if (!QFileInfo(path).isDir())
        return path;
    for (const QString &index : {u"index.htm"_s, u"index.html"_s}) {
        const QString page = QDir(path).filePath(index);
        if (QFileInfo(page).isFile())
            return page;
    }
    return path;
}
