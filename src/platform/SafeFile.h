#pragma once

#include "platform/TextFile.h"

#include <optional>

/// Bytes in and out of whole files, with the care that text files and settings both need.

struct FileBytes
{
    FileError Error = FileError::None;
    QByteArray Bytes;
    FileStamp Stamp;
};

/// Reads a regular file of at most `limit` bytes (above: TooLarge). Folders and devices answer AccessDenied; a device
/// is never waited for. The stamp's time is taken before the bytes, so a change during the read shows as one later.
FileBytes ReadBytes(const QString &path, qint64 limit);

/// Makes `bytes` the whole content of `path`: written to a hidden neighbour, flushed to the disk and renamed over, so
/// that there is the old file or the new one at any moment, whatever fails or dies.
///
/// Symbolic links are followed, a dangling one creates its target. Permission bits stay as they are, owner and group
/// as far as the system lets us; a new file gets 0666 less the umask. `mode`, when given, takes the place of both.
/// A file without any write bit answers AccessDenied, even where the user could replace it (an own folder, root).
///
/// Where the folder lets nobody create files but the file itself may be written, it is overwritten in place: space is
/// reserved first and the old bytes are put back when a write fails. Only a kill or a power cut in that moment can
/// leave a torn file.
TextFileWritten ReplaceBytes(const QString &path, const QByteArray &bytes, std::optional<unsigned> mode = {});

/// The file that `path` stands for after all symbolic links at its end, which need not exist; "" for a link that leads
/// back to itself.
QString LinkTarget(const QString &path);
