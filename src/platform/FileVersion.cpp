#include "platform/FileVersion.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 ChunkSize = 1 << 20;

// VS_FIXEDFILEINFO, little endian: dwSignature, dwStrucVersion, dwFileVersionMS, dwFileVersionLS, dwProductVersionMS,
// dwProductVersionLS, ...
constexpr QByteArrayView Start("\xBD\x04\xEF\xFE\0\0\1\0", 8); // signature and structure version 1.0
constexpr qsizetype ProductVersionOffset = 16;
constexpr qsizetype NeededSize = ProductVersionOffset + 8;

QString VersionText(const char *product)
{
    const auto part = [&](int offset) { return QString::number(qFromLittleEndian<qint16>(product + offset)); };
    return part(2) + u'.' + part(0) + u'.' + part(6) + u'.' + part(4);
}

} // namespace

QString ReadVersion(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QByteArray window;
    for (;;) {
        const QByteArray chunk = file.read(ChunkSize);
        window += chunk;
        const qsizetype found = window.indexOf(Start);
        if (found >= 0 && window.size() - found >= NeededSize)
            return VersionText(window.constData() + found + ProductVersionOffset);
        if (chunk.isEmpty())
            return {};
        window = window.last(std::min(window.size(), found >= 0 ? window.size() - found : Start.size() - 1));
    }
}
