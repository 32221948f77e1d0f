#include "platform/Settings.h"

#include "platform/IniText.h"
#include "platform/SafeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QLoggingCategory>
#include <QThread>

#include <chrono>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcSettings, "inkloom.platform", QtInfoMsg)

constexpr qsizetype LongestValue = 298;
constexpr qint64 LargestFile = 16 * 1024 * 1024;
constexpr unsigned OwnerOnlyFile = 0600; // a password may stand in it
constexpr unsigned OwnerOnlyFolder = 0700;
constexpr auto LockPatience = 2s;
constexpr auto LockGoesStale = 3s;    // a window killed before its name was in the lock
constexpr unsigned long LockPoll = 5; // ms
constexpr int MostAsides = 9;

QString Cut(QString value)
{
    const qsizetype nul = value.indexOf(QChar::Null);
    qsizetype length = std::min(nul < 0 ? value.size() : nul, LongestValue);
    if (length < value.size() && length > 0 && value[length - 1].isHighSurrogate())
        --length; // half a character is worse than one less
    value.truncate(length);
    return value;
}

std::optional<QString> Lookup(const QString &folder, const QString &file, const QString &section, const QString &key)
{
    if (folder.isEmpty())
        return {};
    return IniValue(ReadBytes(folder + u'/' + file, LargestFile).Bytes, section, key);
}

/// The last part of a side file's name; "" for one that would lead elsewhere.
QString PlainName(const QString &file)
{
    const QString name = file.sliced(std::max(file.lastIndexOf(u'/'), file.lastIndexOf(u'\\')) + 1);
    return name == u"."_s || name == u".."_s ? QString() : name;
}

/// False when somebody holds the lock for too long; the write then goes on without.
bool TakeLock(QLockFile &lock)
{
    // The lock's own waiting doubles its pauses and so loses against a busy neighbour.
    lock.setStaleLockTime(LockGoesStale);
    const auto end = std::chrono::steady_clock::now() + LockPatience;
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError || std::chrono::steady_clock::now() > end)
            return false;
        QThread::msleep(LockPoll);
    }
    return true;
}

/// A free name beside `path` for a file that we cannot make sense of; "" when there are too many already.
QString AsideName(const QString &path)
{
    for (int i = 1; i <= MostAsides; ++i) {
        const QString name = path + (i == 1 ? u".damaged"_s : u".damaged-%1"_s.arg(i));
        if (!QFileInfo::exists(name))
            return name;
    }
    return {};
}

/// What a power cut spoils is whole blocks of zeros: lines without NUL are still good.
QByteArray GoodLines(const QByteArray &ini)
{
    QByteArray good;
    const QByteArrayList lines = ini.split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty() && !line.contains('\0'))
            good += line + '\n';
    }
    return good;
}

/// Text of the file to start from. A file that cannot be read or is damaged is kept aside first: nothing if it cannot.
std::optional<QByteArray> TextToChange(const QString &path)
{
    const FileBytes file = ReadBytes(path, LargestFile);
    if (file.Error == FileError::NotFound || file.Error == FileError::PathNotFound)
        return QByteArray();
    if (file.Error == FileError::None && !file.Bytes.contains('\0'))
        return file.Bytes;
    const QString aside = AsideName(path);
    if (aside.isEmpty())
        return {};
    if (file.Error == FileError::None) {
        if (ReplaceBytes(aside, file.Bytes, OwnerOnlyFile).Error != FileError::None)
            return {};
        return GoodLines(file.Bytes);
    }
    if (!QFile::rename(path, aside))
        return {};
    return QByteArray();
}

void Store(const QString &folder, const QString &file, const QString &section, const QString &key, const QString &value)
{
    if (folder.isEmpty() || file.isEmpty() || key.trimmed().isEmpty())
        return;
    if (!QFileInfo(folder).isDir()) {
        QDir().mkpath(QFileInfo(folder).path());
        ::mkdir(QFile::encodeName(folder).constData(), OwnerOnlyFolder);
    }
    const QString path = folder + u'/' + file;
    QLockFile lock(path + u".lock"_s);
    if (!TakeLock(lock))
        qCDebug(lcSettings) << "no lock on" << path << ", writing without";

    const std::optional<QByteArray> old = TextToChange(path);
    const std::optional<QByteArray> changed = old ? WithIniValue(*old, section, key, value) : std::nullopt;
    if (!changed)
        qCDebug(lcSettings) << "not written:" << section << key;
    else if (ReadBytes(path, LargestFile).Bytes != *changed)
        ReplaceBytes(path, *changed, OwnerOnlyFile);
}

} // namespace

Settings::Settings(QString folder, QString systemFolder)
    : m_folder(std::move(folder)), m_systemFolder(std::move(systemFolder))
{}

QString Settings::GetIni(const QString &section, const QString &key, const QString &fallback) const
{
    if (const auto value = Lookup(m_folder, FileName(), section, key))
        return Cut(*value);
    return Cut(Lookup(m_systemFolder, FileName(), section, key).value_or(fallback));
}

void Settings::SetIni(const QString &section, const QString &key, const QString &value)
{
    Store(m_folder, FileName(), section, key, value);
}

QString Settings::GetSide(const QString &file, const QString &section, const QString &key,
                          const QString &fallback) const
{
    const QString name = PlainName(file);
    return Cut(name.isEmpty() ? fallback : Lookup(m_folder, name, section, key).value_or(fallback));
}

void Settings::SetSide(const QString &file, const QString &section, const QString &key, const QString &value)
{
    Store(m_folder, PlainName(file), section, key, value);
}
