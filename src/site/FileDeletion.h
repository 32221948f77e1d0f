#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QList>
#include <QString>

/// A page that was taken off the disk, with all that brings it back.
struct FileDeletion
{
    struct Piece
    {
        QString Path;
        QString InTrash;  ///< where it lies now; "" when there was no trash
        QByteArray Bytes; ///< the content then, of a file that is not too big
        QFileDevice::Permissions Permissions;
        bool CanComeBack = false;
    };

    QString Path;
    bool Done = false;    ///< false: the file is where it was
    bool InTrash = false; ///< false: there is no trash for this folder, the file is gone from the disk
    QList<Piece> Pieces;

    bool CanUndo() const { return Done && !Pieces.isEmpty() && Pieces.first().CanComeBack; }
};

/// Moves a file, and the working copy beside it (".tmp.htm"), into the desktop's trash; deletes them where there is
/// none. A link goes, not what it leads to.
FileDeletion DeletePage(const QString &path);

enum class Undeleted { Done, PlaceTaken, Failed };
/// Puts back what was deleted. PlaceTaken: a file of that name has come up meanwhile; it is left alone.
Undeleted UndoDeletion(const FileDeletion &deletion);
