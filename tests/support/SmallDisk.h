#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

/// A real file system of a few kilobytes, for tests that fill a disk. Gone with the object.
///
/// Mounting needs rights that a plain user does not have. Prepare(), as the first thing in main(), gives them to this
/// process alone, and keeps what it mounts out of sight of all others.
class SmallDisk
{
public:
    /// Must run before any thread starts. False when the system allows nothing of the kind; IsMounted then tells.
    static bool Prepare()
    {
        const uid_t user = ::geteuid();
        const gid_t group = ::getegid();
        if (::unshare(CLONE_NEWNS) != 0) {
            if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                return false;
            Put("/proc/self/setgroups", "deny");
            Put("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1");
            Put("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1");
        }
        return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    explicit SmallDisk(int kilobytes)
    {
        const QByteArray size = "size=" + QByteArray::number(kilobytes) + "k,mode=0700";
        m_mounted = ::mount("tmpfs", Name().constData(), "tmpfs", 0, size.constData()) == 0;
    }
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(Name().constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY(SmallDisk)

    bool IsMounted() const { return m_mounted; }
    QString Path() const { return m_folder.path(); }
    QString FilePath(const QString &name) const { return m_folder.filePath(name); }

private:
    static void Put(const char *name, const QByteArray &text)
    {
        QFile file(QString::fromLatin1(name));
        if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            file.write(text);
    }
    QByteArray Name() const { return QFile::encodeName(m_folder.path()); }

    QTemporaryDir m_folder;
    bool m_mounted = false;
};
