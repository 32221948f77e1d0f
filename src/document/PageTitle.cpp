#include "document/PageTitle.h"

#include "document/PageOutput.h"
#include "document/PathText.h"
#include "platform/TextFile.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr int LinesBehindTitle = 3;
constexpr qint64 BiggestRead = 4 << 20; ///< bytes; a page's title stands early, but its encoding is that of the whole
constexpr QLatin1StringView StartTag("<TITLE>");
constexpr QLatin1StringView EndTag("</TITLE>");

QString TitleInLine(const QString &line)
{
    const qsizetype start = line.indexOf(StartTag, 0, Qt::CaseInsensitive);
    const qsizetype end = line.indexOf(EndTag, start, Qt::CaseInsensitive);
    if (end < 0)
        return {};
    QString title = line.sliced(start + StartTag.size(), end - start - StartTag.size());
    while (title.startsWith(u' '))
        title.remove(0, 1);
    return title;
}

} // namespace

QString AddressForPage(const QString &path, const QString &currentFile)
{
    if (!IsPageName(currentFile))
        return QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    QString relative = MakeRelPathRel(path, currentFile);
    relative.replace(u'\\', u'/');
    // A colon in the first step of a path would make a scheme of what stands before it.
    return QString::fromLatin1(QUrl::toPercentEncoding(relative, "/!$()*+,;@"));
}

QString TitleOfPage(const QString &text)
{
    static const QRegularExpression lineEnd(u"\r\n|\n|\r"_s);
    qsizetype from = 0;
    const auto nextLine = [&] {
        const QRegularExpressionMatch end = lineEnd.match(text, from);
        const qsizetype stop = end.hasMatch() ? end.capturedStart() : text.size();
        const QString line = text.sliced(from, stop - from);
        from = end.hasMatch() ? end.capturedEnd() : text.size();
        return line;
    };
    while (from < text.size()) {
        QString line = nextLine();
        if (line.contains(StartTag, Qt::CaseInsensitive)) {
            for (int more = 0; more < LinesBehindTitle && from < text.size(); ++more)
                line += nextLine();
            return TitleInLine(line);
        }
        if (line.contains("<BODY"_L1, Qt::CaseInsensitive))
            return {};
    }
    return {};
}

QString TitleOfFile(const QString &path)
{
    if (QFileInfo(path).size() > BiggestRead)
        return {};
    return TitleOfPage(ReadTextFile(path).Text);
}

QString LinkMarkup(const QString &path, const QString &currentFile, const QString &title)
{
    const QString text = title.isEmpty() ? QFileInfo(path).fileName().toHtmlEscaped() : title;
    return " <a href="_L1 + AddressForPage(path, currentFile) + " >"_L1 + text + "</a> "_L1;
}
