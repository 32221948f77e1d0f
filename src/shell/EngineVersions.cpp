#include "shell/EngineVersions.h"

#include "platform/FileVersion.h"
#include "state/AppState.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString VersionOr(const QString &path, const QString &surfaceVersion)
{
    return QFileInfo::exists(path) ? ReadVersion(path) : surfaceVersion;
}

} // namespace

EngineVersions AskEngineVersions()
{
    return {
        .Browser = VersionOr(u"c:\\windows\\system32\\ieframe.dll"_s, u"9.0.0.0"_s),
        .Editing = VersionOr(u"c:\\program files\\common files\\microsoft shared\\triedit\\triedit.dll"_s, QString()),
    };
}

void TakeEngineVersions(AppState &app, const EngineVersions &versions)
{
    app.EngineVersionNew = versions.Browser >= u"8"_s;
    app.CharsetFix = versions.Editing == u"6.1.0.9246"_s;
}
