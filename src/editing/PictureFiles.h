#pragma once

#include "platform/TextFile.h"

#include <QImage>
#include <QList>
#include <QString>

/// Picture files as the graphic dialog offers them.

/// A row of the list of file types.
struct PictureType
{
    QString Text;    ///< as it stands in the list
    QString Pattern; ///< patterns by ";"
};

/// In the order of the list. Those of the first five are as they have always been, "*jpg" and "*.wmg" included.
const QList<PictureType> &PictureTypes();
inline constexpr int UsualPictureType = 1; ///< what the list starts with

/// The types in the form of a file dialog.
QString PictureFilter();

/// Names of the files of a folder that are of this type, by name without regard to case; none for a folder that cannot
/// be read.
QStringList PicturesIn(const QString &folder, const QString &pattern);

/// The type under which the list shows this name: the usual one if that does, else the first beside "All Files".
int PictureTypeOf(const QString &name);

struct Picture
{
    QSize Size;   ///< in pixels, turned as cameras say; not valid where it cannot be told
    QImage Image; ///< no larger than was asked for; null for a file that is no picture, or of a kind not known here
};
/// Takes little time for a big picture, since only as much is read as is to be shown.
Picture ReadPicture(const QString &path, QSize largest);

/// The folder of `path` does not lie at or below that of `page`. False for a page without a folder.
bool IsOutsideSite(const QString &path, const QString &page);

/// Copies a picture beside the page, over a file of the same name there. `copy` is where it then is. A failed copy
/// leaves what was there.
FileError CopyBesidePage(const QString &path, const QString &page, QString &copy);
