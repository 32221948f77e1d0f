#include "platform/surface/PictureFiles.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

QString WriteNewPicture(const QString &folder, const QByteArray &data, const QString &suffix)
{
    constexpr int tries = 10000;
    for (int number = 1; number <= tries; ++number) {
        const QString name = u"picture%1.%2"_s.arg(QString::number(number), suffix);
        QFile file(QDir(folder).filePath(name));
        if (file.exists())
            continue;
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (file.exists())
                continue; // somebody else was quicker
            return {};
        }
        if (file.write(data) == data.size() && file.flush())
            return name;
        file.close();
        file.remove();
        return {};
    }
    return {};
}

QString WithPictureFiles(const QString &html, const QString &folder)
{
    static const QRegularExpression address(
        u"(\\bsrc\\s*=\\s*[\"']?)data:image/(png|jpe?g|gif|webp|bmp)\\s*;\\s*base64\\s*,([A-Za-z0-9+/=\\s%]+)"_s,
        QRegularExpression::CaseInsensitiveOption);
    if (folder.isEmpty() || !html.contains("data:image/"_L1, Qt::CaseInsensitive))
        return html;
    QString result;
    qsizetype done = 0;
    for (auto found = address.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const auto bytes = QByteArray::fromBase64Encoding(
            QByteArray::fromPercentEncoding(match.captured(3).toLatin1()).simplified().replace(' ', ""));
        const QString suffix = match.captured(2).toLower().replace("jpeg"_L1, "jpg"_L1);
        const QString name = bytes ? WriteNewPicture(folder, *bytes, suffix) : QString();
        if (name.isEmpty())
            continue;
        result += QStringView(html).sliced(done, match.capturedStart() - done);
        result += match.captured(1) + name;
        done = match.capturedEnd();
    }
    result += QStringView(html).sliced(done);
    return result;
}
