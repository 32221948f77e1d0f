#pragma once

#include "platform/MountedVolumes.h"

/// Where a user starts to look for files: what stands in the list of drives.
struct Place
{
    QString Name;
    QString Path;
    QString Icon; ///< freedesktop name
    bool operator==(const Place &) const = default;
};

/// The root, the home folder and the volumes, in this order. Volumes of one name are told apart by their paths.
QList<Place> PlacesOf(const QString &home, const QList<MountedVolume> &volumes);

/// Index of the place that a folder lies in, the innermost; -1 when there is none.
int PlaceOf(const QString &folder, const QList<Place> &places);

/// The folders from `root`, which `folder` lies in, down to `folder` itself.
QStringList FoldersDownTo(const QString &folder, const QString &root);
