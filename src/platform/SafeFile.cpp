#include "platform/SafeFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

// Plain system calls instead of QSaveFile: that one ignores a failed flush (where a quota or a network disk reports
// that it is full), tells a full disk from a refusal only sometimes, and does not keep the owner.

namespace {

Q_LOGGING_CATEGORY(lcFiles, "inkloom.platform", QtInfoMsg)

constexpr int LongestLinkChain = 40;
constexpr mode_t AnyWriteBit = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t PermissionBits = 07777;

class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    ~Descriptor() { Close(); }
    Q_DISABLE_COPY(Descriptor)

    explicit operator bool() const { return m_number >= 0; }
    int Number() const { return m_number; }
    /// False with errno set when the system reports only now that the data did not get through.
    bool Close()
    {
        const int number = m_number;
        m_number = -1;
        return number < 0 || ::close(number) == 0;
    }

private:
    int m_number;
};

FileError ErrorOf(int number, const QString &path)
{
    switch (number) {
    case ENOENT:
        return QFileInfo(QFileInfo(path).path()).isDir() ? FileError::NotFound : FileError::PathNotFound;
    case ENOTDIR:
        return FileError::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
        return FileError::AccessDenied;
    case ENOSPC:
    case EDQUOT:
        return FileError::DiskFull;
    case EFBIG:
        return FileError::TooLarge;
    default:
        return FileError::Unexpected;
    }
}

bool ReadAll(int file, QByteArray &bytes)
{
    qsizetype done = 0;
    for (;;) {
        if (done == bytes.size())
            bytes.resize(bytes.size() + 65536); // it grew since we asked for its size
        const ssize_t count = ::read(file, bytes.data() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        if (count == 0)
            break;
        done += count;
    }
    bytes.truncate(done);
    return true;
}

bool WriteAll(int file, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(file, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        done += count;
    }
    return true;
}

FileStamp StampOf(const struct stat &status, const QByteArray &bytes)
{
    const qint64 milliseconds = qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1'000'000;
    return {true, bytes.size(), QDateTime::fromMSecsSinceEpoch(milliseconds),
            QCryptographicHash::hash(bytes, QCryptographicHash::Sha1)};
}

/// Owner, group and mode of the old file for the new one. What the system refuses stays ours.
bool TakeOver(int file, const struct stat *old, std::optional<unsigned> mode)
{
    const bool refused = old && ::fchown(file, old->st_uid, old->st_gid) != 0 &&
                         ::fchown(file, static_cast<uid_t>(-1), old->st_gid) != 0;
    if (refused)
        qCDebug(lcFiles, "owner of the old file not kept: %s", std::strerror(errno));
    mode_t bits = 0;
    if (mode) {
        bits = *mode;
    } else if (old) {
        bits = old->st_mode & PermissionBits;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        bits = 0666 & ~mask;
    }
    return ::fchmod(file, bits) == 0;
}

/// Removes the neighbour again unless it took the file's place.
class Neighbour
{
public:
    explicit Neighbour(const QByteArray &target)
        : m_name(target.left(target.lastIndexOf('/') + 1) + ".inkloom-XXXXXX"),
          m_file(::mkostemp(m_name.data(), O_CLOEXEC)),
          m_exists(m_file)
    {}
    ~Neighbour()
    {
        if (m_exists)
            ::unlink(m_name.constData());
    }
    Q_DISABLE_COPY(Neighbour)

    explicit operator bool() const { return m_exists; }
    int Number() const { return m_file.Number(); }
    bool Close() { return m_file.Close(); }
    bool Replace(const QByteArray &target)
    {
        if (::rename(m_name.constData(), target.constData()) != 0)
            return false;
        m_exists = false;
        return true;
    }

private:
    QByteArray m_name;
    Descriptor m_file;
    bool m_exists;
};

/// A rename is on the disk only when its folder is. Best effort: not every file system knows how.
void FlushFolder(const QByteArray &target)
{
    const QByteArray folder = target.left(target.lastIndexOf('/') + 1);
    const Descriptor opened(::open(folder.isEmpty() ? "." : folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        ::fsync(opened.Number());
}

/// The usual way. Gives 0 or the errno of the step that failed.
int WriteBeside(const QByteArray &target, const QByteArray &bytes, const struct stat *old, std::optional<unsigned> mode,
                FileStamp &stamp)
{
    Neighbour neighbour(target);
    struct stat status = {};
    if (!neighbour || !WriteAll(neighbour.Number(), bytes) || !TakeOver(neighbour.Number(), old, mode) ||
        ::fsync(neighbour.Number()) != 0 || ::fstat(neighbour.Number(), &status) != 0 || !neighbour.Close() ||
        !neighbour.Replace(target))
        return errno;
    FlushFolder(target);
    stamp = StampOf(status, bytes);
    return 0;
}

/// For folders that take no neighbour. Gives 0 or the errno of the step that failed; then the old bytes stand again.
int WriteInPlace(const QByteArray &target, const QByteArray &bytes, FileStamp &stamp)
{
    Descriptor file(::open(target.constData(), O_RDWR | O_CLOEXEC));
    struct stat status = {};
    if (!file || ::fstat(file.Number(), &status) != 0)
        return errno;
    QByteArray old(status.st_size, Qt::Uninitialized);
    if (!ReadAll(file.Number(), old))
        return errno;

    // With the space reserved, neither the writing nor the putting back can run into a full disk.
    int error = bytes.isEmpty() ? 0 : ::posix_fallocate(file.Number(), 0, bytes.size());
    if (error == EOPNOTSUPP || error == EINVAL)
        error = 0;
    if (error == 0 && (::lseek(file.Number(), 0, SEEK_SET) != 0 || !WriteAll(file.Number(), bytes) ||
                       ::ftruncate(file.Number(), bytes.size()) != 0 || ::fsync(file.Number()) != 0))
        error = errno;
    if (error != 0) {
        if (::lseek(file.Number(), 0, SEEK_SET) == 0 && WriteAll(file.Number(), old) &&
            ::ftruncate(file.Number(), old.size()) == 0)
            ::fsync(file.Number());
        return error;
    }
    if (::fstat(file.Number(), &status) != 0)
        return errno;
    stamp = StampOf(status, bytes);
    return 0;
}

} // namespace

QString LinkTarget(const QString &path)
{
    // The target is not tidied up: "../" behind a linked folder is for the system to resolve.
    std::filesystem::path target(QFile::encodeName(path).toStdString());
    for (int links = 0; links < LongestLinkChain; ++links) {
        std::error_code error;
        const std::filesystem::path next = std::filesystem::read_symlink(target, error);
        if (error)
            return QFile::decodeName(QByteArray::fromStdString(target.string()));
        target = target.parent_path() / next;
    }
    return {};
}

FileBytes ReadBytes(const QString &path, qint64 limit)
{
    FileBytes result;
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file || ::fstat(file.Number(), &status) != 0) {
        result.Error = ErrorOf(errno, path);
    } else if (!S_ISREG(status.st_mode)) {
        result.Error = FileError::AccessDenied;
    } else if (status.st_size > limit) {
        result.Error = FileError::TooLarge;
    } else {
        // One byte more than needed: the end is seen without growing.
        QByteArray bytes(status.st_size + 1, Qt::Uninitialized);
        if (ReadAll(file.Number(), bytes)) {
            result.Stamp = StampOf(status, bytes);
            result.Bytes = bytes;
        } else {
            result.Error = ErrorOf(errno, path);
        }
    }
    return result;
}

TextFileWritten ReplaceBytes(const QString &path, const QByteArray &bytes, std::optional<unsigned> mode)
{
    const QString targetPath = LinkTarget(path);
    const QByteArray target = QFile::encodeName(targetPath);
    if (target.isEmpty())
        return {path.isEmpty() ? FileError::PathNotFound : FileError::Unexpected, {}};

    struct stat old = {};
    const bool exists = ::stat(target.constData(), &old) == 0;
    if (!exists && errno != ENOENT)
        return {ErrorOf(errno, targetPath), {}};
    if (exists && (!S_ISREG(old.st_mode) || (old.st_mode & AnyWriteBit) == 0 ||
                   ::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0))
        return {FileError::AccessDenied, {}};

    TextFileWritten result;
    int error = WriteBeside(target, bytes, exists ? &old : nullptr, mode, result.Stamp);
    if (exists && (error == EACCES || error == EPERM || error == EROFS))
        error = WriteInPlace(target, bytes, result.Stamp);
    if (error == ENOENT)
        result.Error = FileError::PathNotFound; // the file itself need not exist, so it was its folder
    else if (error != 0)
        result.Error = ErrorOf(error, targetPath);
    return result;
}
