#include "site/FileDeletion.h"

#include "document/PageOutput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 BiggestKept = 16 << 20; ///< bytes held in memory for a file that no trash took

bool IsThere(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

QByteArray BytesToKeep(const QFileInfo &info)
{
    QFile file(info.filePath());
    if (!info.isFile() || info.isSymLink() || info.size() > BiggestKept || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

/// The note beside a trashed file that tells where it came from.
QString TrashNote(const QString &inTrash)
{
    const QFileInfo info(inTrash);
    return QFileInfo(info.path()).path() + "/info/"_L1 + info.fileName() + ".trashinfo"_L1;
}

/// Where no trash can be made, Qt 6.4 takes the working folder for one; that is nowhere a user would look.
bool MoveToTrash(const QString &path, QString &inTrash)
{
    if (!QFile::moveToTrash(path, &inTrash))
        return false;
    if (inTrash.contains("/Trash/files/"_L1) || inTrash.contains("/.Trash"_L1))
        return true;
    const bool back = QFile::rename(inTrash, path); // else it lies there all the same, and can be brought back
    if (back) {
        const QString note = TrashNote(inTrash);
        QFile::remove(note);
        QDir().rmdir(QFileInfo(note).path());
        QDir().rmdir(QFileInfo(inTrash).path());
    }
    return !back;
}

/// False when the file is still there.
bool TakeAway(const QString &path, FileDeletion &deletion)
{
    const QFileInfo info(path);
    FileDeletion::Piece piece{.Path = path, .InTrash = {}, .Bytes = {}, .Permissions = info.permissions()};
    if (MoveToTrash(path, piece.InTrash)) {
        piece.CanComeBack = !piece.InTrash.isEmpty();
        deletion.InTrash = true;
    } else {
        piece.InTrash.clear();
        piece.Bytes = BytesToKeep(info);
        piece.CanComeBack = piece.Bytes.size() == info.size() && !info.isSymLink();
        if (!QFile::remove(path))
            return false;
    }
    deletion.Pieces.append(piece);
    return true;
}

bool BringBack(const FileDeletion::Piece &piece)
{
    if (!piece.InTrash.isEmpty()) {
        if (!QFile::rename(piece.InTrash, piece.Path))
            return false;
        QFile::remove(TrashNote(piece.InTrash));
        return true;
    }
    QFile file(piece.Path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    const bool written = file.write(piece.Bytes) == piece.Bytes.size() && file.flush();
    file.setPermissions(piece.Permissions);
    return written;
}

} // namespace

FileDeletion DeletePage(const QString &path)
{
    FileDeletion deletion;
    deletion.Path = path;
    // The home folder's trash is made at need, but not the folder it lies in.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    deletion.Done = TakeAway(path, deletion);
    const QString copy = path + WorkingSuffix;
    if (deletion.Done && IsThere(copy))
        TakeAway(copy, deletion);
    return deletion;
}

Undeleted UndoDeletion(const FileDeletion &deletion)
{
    if (IsThere(deletion.Path))
        return Undeleted::PlaceTaken;
    Undeleted outcome = Undeleted::Failed;
    for (const FileDeletion::Piece &piece : deletion.Pieces) {
        if (BringBack(piece) && piece.Path == deletion.Path)
            outcome = Undeleted::Done;
    }
    return outcome;
}
