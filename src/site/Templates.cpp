#include "site/Templates.h"

#include "platform/Folders.h"
#include "state/AppState.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString UsersFolder()
{
    return Folders::Data() + u"/Templates"_s;
}

/// Tried out: permission bits do not tell of read-only disks, access lists and network folders.
bool CanWriteIn(const QString &folder)
{
    return QTemporaryFile(folder + u"/.XXXXXX"_s).open();
}

} // namespace

void MakeTemplatesFolder(const AppState &app)
{
    if (QDir::isAbsolutePath(app.TemplatesDir)) // without an installation it would be made anywhere
        QDir().mkpath(app.TemplatesDir);
}

QStringList TemplateNames(const AppState &app)
{
    QStringList names = QDir(UsersFolder()).entryList(QDir::Files);
    if (QDir::isAbsolutePath(app.TemplatesDir))
        names += QDir(app.TemplatesDir).entryList(QDir::Files);
    names.removeDuplicates();
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

QString TemplatePath(const AppState &app, const QString &name)
{
    const QString own = UsersFolder() + u'/' + name;
    return QFileInfo(own).isFile() ? own : app.TemplatesDir + u'/' + name;
}

QString FolderForNewTemplate(const AppState &app)
{
    if (QDir::isAbsolutePath(app.TemplatesDir) && CanWriteIn(app.TemplatesDir))
        return app.TemplatesDir;
    QDir().mkpath(UsersFolder());
    return UsersFolder();
}
