#include "platform/Processes.h"

#include <QProcess>

bool StartDetached(const QString &program, const QStringList &arguments)
{
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}
