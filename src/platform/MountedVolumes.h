#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A disk, a stick or a network folder that the user has at hand.
struct MountedVolume
{
    QString Name; ///< what the desktop calls it
    QString Path;
    bool operator==(const MountedVolume &) const = default;
};

/// The volumes in a table of mounts as the kernel writes it (/proc/self/mountinfo): what is mounted where desktops and
/// people mount things, and network folders anywhere. What belongs to the system itself is left out. In the table's
/// order; a place that was mounted over counts once.
QList<MountedVolume> VolumesIn(const QByteArray &mountInfo);

/// The volumes now. Asks no volume anything, so a dead one holds nothing up.
QList<MountedVolume> MountedVolumes();
