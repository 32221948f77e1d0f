#include "document/RecoveryFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

constexpr int Version = 1;

// Milliseconds do not fit every JSON number reader, and -1 stands for no time: text.
QString TextOf(const QDateTime &time)
{
    return time.isValid() ? QString::number(time.toMSecsSinceEpoch()) : QString();
}

QDateTime TimeOf(const QJsonValue &value)
{
    const QString text = value.toString();
    return text.isEmpty() ? QDateTime() : QDateTime::fromMSecsSinceEpoch(text.toLongLong());
}

QJsonObject StampToJson(const FileStamp &stamp)
{
    return {{u"exists"_s, stamp.Exists},
            {u"size"_s, QString::number(stamp.Size)},
            {u"modified"_s, TextOf(stamp.Modified)},
            {u"digest"_s, QString::fromLatin1(stamp.Digest.toHex())}};
}

FileStamp StampFromJson(const QJsonObject &json)
{
    return {json[u"exists"_s].toBool(), json[u"size"_s].toString().toLongLong(), TimeOf(json[u"modified"_s]),
            QByteArray::fromHex(json[u"digest"_s].toString().toLatin1())};
}

} // namespace

QByteArray EncodeRecoveryFile(const RecoveryFile &copy)
{
    const QJsonObject header{{u"version"_s, Version},
                             {u"process"_s, copy.Process},
                             {u"page"_s, copy.PagePath},
                             {u"time"_s, TextOf(copy.Time)},
                             {u"encoding"_s, QString::fromLatin1(copy.Encoding.Name)},
                             {u"bom"_s, copy.Encoding.ByteOrderMark},
                             {u"file"_s, StampToJson(copy.Stamp)}};
    return QJsonDocument(header).toJson(QJsonDocument::Compact) + '\n' + copy.Text.toUtf8();
}

std::optional<RecoveryFile> DecodeRecoveryFile(const QByteArray &bytes)
{
    const qsizetype lineEnd = bytes.indexOf('\n');
    const QJsonObject header = QJsonDocument::fromJson(bytes.left(qMax(lineEnd, qsizetype(0)))).object();
    if (header[u"version"_s].toInt() != Version)
        return std::nullopt;
    RecoveryFile copy;
    copy.Process = header[u"process"_s].toString();
    copy.PagePath = header[u"page"_s].toString();
    copy.Time = TimeOf(header[u"time"_s]);
    copy.Encoding = {header[u"encoding"_s].toString().toLatin1(), header[u"bom"_s].toBool()};
    copy.Stamp = StampFromJson(header[u"file"_s].toObject());
    copy.Text = QString::fromUtf8(bytes.mid(lineEnd + 1));
    return copy;
}

bool WriteRecoveryFile(const QString &path, const RecoveryFile &copy)
{
    const QString folder = QFileInfo(path).path();
    if (!QFileInfo::exists(folder)) {
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(EncodeRecoveryFile(copy));
    return file.commit();
}
