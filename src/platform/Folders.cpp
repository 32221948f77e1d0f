#include "platform/Folders.h"

#include "platform/Settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// $variable/inkloom; a relative value counts as unset, as the rules want it.
QString BaseFolder(const char *variable, const QString &belowHome)
{
    QString base = qEnvironmentVariable(variable);
    if (!base.startsWith(u'/'))
        base = QDir::homePath() + belowHome;
    return QDir::cleanPath(base + u"/inkloom"_s);
}

} // namespace

QString Folders::Config()
{
    return BaseFolder("XDG_CONFIG_HOME", u"/.config"_s);
}

QString Folders::State()
{
    return BaseFolder("XDG_STATE_HOME", u"/.local/state"_s);
}

QString Folders::Data()
{
    return BaseFolder("XDG_DATA_HOME", u"/.local/share"_s);
}

QString Folders::SystemConfig()
{
    const QString told = qEnvironmentVariable("INKLOOM_SYSTEM_CONFIG");
    if (!told.isEmpty())
        return QDir::cleanPath(told);
    const QString program = QCoreApplication::applicationDirPath();
    if (!program.isEmpty() && QFileInfo(program + u'/' + Settings::FileName()).isFile())
        return program;
    return u"/etc/inkloom"_s;
}
