#include "platform/ErrorLog.h"

#include "platform/Folders.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

void LogError(const QString &source, int number, const QString &description)
{
    QString line = u"%1: %2 %3"_s.arg(source, QString::number(number), description);
    line.replace(u'\r', u' ').replace(u'\n', u' ');

    QDir().mkpath(Folders::State());
    QFile log(Folders::State() + u"/TomeloftJavaHelp.log"_s);
    // One unbuffered write at the end: lines of two windows never mix.
    if (log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        log.write((line + u'\n').toUtf8());
}
