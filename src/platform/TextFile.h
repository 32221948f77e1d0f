#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// How the characters of a text file lie on disk. Kept with the page from reading to writing.
struct TextEncoding
{
    QByteArray Name = "UTF-8"; ///< name of the encoding as Qt's converters know it ("UTF-8", "windows-1252", ...)
    bool ByteOrderMark = false;
    bool operator==(const TextEncoding &) const = default;
};

/// What a file looked like when we last read or wrote it, to notice that somebody else changed it.
struct FileStamp
{
    bool Exists = false;
    qint64 Size = -1;
    QDateTime Modified;
    QByteArray Digest; ///< of the bytes; decides when time or size differ
};

enum class FileError {
    None,
    NotFound,     ///< no such file
    PathNotFound, ///< its folder does not exist
    AccessDenied,
    DiskFull,
    NotText, ///< holds NUL bytes and is no UTF-16 (or UTF-32) with a byte order mark: not a text file
    TooLarge,
    Unexpected
};

struct TextFileContent
{
    FileError Error = FileError::None;
    QString Text; ///< exact text: line ends as they stand in the file, no byte order mark
    TextEncoding Encoding;
    FileStamp Stamp;
};

/// Reads a whole file. The encoding is, in this order: byte order mark, <meta charset> or http-equiv in the first
/// 4 KB, XML declaration, valid UTF-8, a guess for files that declare nothing, else windows-1252. A declared encoding
/// that cannot hold the bytes (so that writing them back would differ) is passed over for the next one; so reading and
/// writing without a change never changes a byte.
TextFileContent ReadTextFile(const QString &path);

struct TextFileWritten
{
    FileError Error = FileError::None;
    FileStamp Stamp;
};

/// Writes a whole file (details: ReplaceBytes in platform/SafeFile.h): beside the old one and renamed over it when
/// complete, so a failed write leaves the old file whole. Keeps permissions and follows symbolic links. A character
/// that the encoding cannot hold is written as a numeric character reference ("&#8364;"), never as "?". Line ends are
/// written as they stand in `text`. An encoding that is not known answers Unexpected; nothing is written.
TextFileWritten WriteTextFile(const QString &path, const QString &text, const TextEncoding &encoding);

/// True when the file is not as `stamp` has it: changed, created or deleted by somebody else since.
bool ChangedOnDisk(const QString &path, const FileStamp &stamp);
