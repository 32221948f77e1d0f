#include "site/Places.h"

#include "site/FileRules.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString Text(const char *text)
{
    return QCoreApplication::translate("Places", text);
}

bool LiesIn(const QString &folder, const QString &place)
{
    return folder == place || folder.startsWith(PathIn(place, {}));
}

} // namespace

QList<Place> PlacesOf(const QString &home, const QList<MountedVolume> &volumes)
{
    QList<Place> places = {{Text(QT_TRANSLATE_NOOP("Places", "File System")), QDir::rootPath(), u"drive-harddisk"_s}};
    if (home != QDir::rootPath())
        places.append({Text(QT_TRANSLATE_NOOP("Places", "Home")), home, u"user-home"_s});
    for (const MountedVolume &volume : volumes) {
        const auto count = std::count_if(volumes.begin(), volumes.end(),
                                         [&](const MountedVolume &other) { return other.Name == volume.Name; });
        const QString name = count > 1 ? volume.Name + " ("_L1 + volume.Path + ')'_L1 : volume.Name;
        places.append({name, volume.Path, u"drive-removable-media"_s});
    }
    return places;
}

int PlaceOf(const QString &folder, const QList<Place> &places)
{
    int best = -1;
    for (int index = 0; index < places.size(); ++index) {
        const QString &path = places.at(index).Path;
        if (LiesIn(folder, path) && (best < 0 || path.size() > places.at(best).Path.size()))
            best = index;
    }
    return best;
}

QStringList FoldersDownTo(const QString &folder, const QString &root)
{
    QStringList folders;
    for (QString at = folder; LiesIn(at, root); at = QFileInfo(at).path()) {
        folders.prepend(at);
        if (at == root)
            break;
    }
    return folders;
}
