#include "platform/Processes.h"

#include <QDesktopServices>
#include <QProcess>
#include <QUrl>

bool StartDetached(const QString &program, const QStringList &arguments)
{
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

bool OpenInBrowser(const QUrl &address)
{
    return QDesktopServices::openUrl(address);
}
