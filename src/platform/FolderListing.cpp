#include "platform/FolderListing.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {

enum class Kind { File, Folder, Other };

Kind KindOf(mode_t mode)
{
    return S_ISDIR(mode) ? Kind::Folder : S_ISREG(mode) ? Kind::File : Kind::Other;
}

/// What a link leads to counts; one that leads nowhere is a file that can at least be deleted.
Kind AskKind(int folder, const char *name)
{
    struct stat status = {};
    if (::fstatat(folder, name, &status, 0) == 0)
        return KindOf(status.st_mode);
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode))
        return Kind::File;
    return Kind::Other;
}

Kind KindOf(DIR *folder, const dirent &entry)
{
    switch (entry.d_type) {
    case DT_REG:
        return Kind::File;
    case DT_DIR:
        return Kind::Folder;
    case DT_LNK:
    case DT_UNKNOWN: // some file systems never tell
        return AskKind(::dirfd(folder), entry.d_name);
    default:
        return Kind::Other;
    }
}

/// Most names are plain letters, which need no decoder.
QString Decoded(const char *name)
{
    const QLatin1StringView letters(name);
    const bool plain =
        std::all_of(letters.begin(), letters.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return plain ? QString(letters) : QFile::decodeName(name);
}

FileError ErrorOf(int number)
{
    switch (number) {
    case ENOENT:
    case ENOTDIR:
        return FileError::PathNotFound;
    case EACCES:
    case EPERM:
        return FileError::AccessDenied;
    default:
        return FileError::Unexpected;
    }
}

} // namespace

FolderListing ListFolder(const QString &folder)
{
    FolderListing listing;
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(QFile::encodeName(folder).constData()), ::closedir);
    if (!open) {
        listing.Error = ErrorOf(errno);
        return listing;
    }
    errno = 0;
    while (const dirent *entry = ::readdir(open.get())) {
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        const Kind kind = KindOf(open.get(), *entry);
        if (kind != Kind::Other)
            (kind == Kind::Folder ? listing.Folders : listing.Files).append(Decoded(entry->d_name));
        errno = 0;
    }
    if (errno != 0)
        return {ErrorOf(errno), {}, {}};
    return listing;
}
