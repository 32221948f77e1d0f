#include "platform/MountedVolumes.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int MountPointField = 4; ///< of a line, before its " - "

/// Blanks and their like stand as "\040": a backslash and three octal digits.
QByteArray Unescaped(const QByteArray &field)
{
    QByteArray text;
    for (qsizetype at = 0; at < field.size(); ++at) {
        bool isNumber = false;
        const int code = field[at] == '\\' ? field.mid(at + 1, 3).toInt(&isNumber, 8) : 0;
        text.append(isNumber ? char(code) : field[at]);
        at += isNumber ? 3 : 0;
    }
    return text;
}

bool IsNetwork(const QByteArray &type)
{
    static const QByteArrayList types = {"nfs", "nfs4", "cifs", "smb3", "9p", "fuse.sshfs", "fuse.davfs", "davfs"};
    return types.contains(type);
}

bool IsWhereVolumesAre(const QByteArray &path)
{
    static const QByteArrayList folders = {"/media/", "/run/media/", "/mnt/", "/Volumes/"};
    return path == "/mnt" || std::any_of(folders.begin(), folders.end(),
                                         [&](const QByteArray &folder) { return path.startsWith(folder); });
}

} // namespace

QList<MountedVolume> VolumesIn(const QByteArray &mountInfo)
{
    QList<MountedVolume> volumes;
    for (const QByteArray &line : mountInfo.split('\n')) {
        const qsizetype dash = line.indexOf(" - ");
        if (dash < 0)
            continue;
        const QByteArray point = Unescaped(line.first(dash).split(' ').value(MountPointField));
        const QByteArray type = line.sliced(dash + 3).split(' ').value(0);
        if (point.size() < 2 || (!IsNetwork(type) && !IsWhereVolumesAre(point)))
            continue;
        const QString path = QFile::decodeName(point);
        const MountedVolume volume{QFileInfo(path).fileName(), path};
        if (!volumes.contains(volume))
            volumes.append(volume);
    }
    return volumes;
}

QList<MountedVolume> MountedVolumes()
{
    QFile table(u"/proc/self/mountinfo"_s);
    return table.open(QIODevice::ReadOnly) ? VolumesIn(table.readAll()) : QList<MountedVolume>();
}
