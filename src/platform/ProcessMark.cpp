#include "platform/ProcessMark.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

QByteArray SmallFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// When the process started, in ticks since the machine did; the machine's own start makes that unique. "" where the
/// system does not tell.
QString StartOf(qint64 pid)
{
    const QByteArray stat = SmallFile(u"/proc/%1/stat"_s.arg(pid));
    // The second field is the name in brackets, which may hold blanks and brackets itself.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 1).simplified().split(' ');
    if (fields.size() < 20 || fields[0] == "Z")
        return {}; // a process that only waits to be buried runs no more
    const QByteArray boot = SmallFile(u"/proc/sys/kernel/random/boot_id"_s).trimmed();
    return QString::fromLatin1(fields[19] + '@' + boot);
}

} // namespace

QString OwnProcessMark()
{
    const qint64 pid = QCoreApplication::applicationPid();
    return u"%1 %2"_s.arg(QString::number(pid), StartOf(pid));
}

bool ProcessRuns(const QString &mark)
{
    const qint64 pid = mark.section(u' ', 0, 0).toLongLong();
    if (pid <= 0 || (kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH))
        return false;
    return StartOf(pid) == mark.section(u' ', 1);
}
