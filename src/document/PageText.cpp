#include "document/PageText.h"

#include "document/ServerCode.h"
#include "document/TextReplace.h"

#include <QStringBuilder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype ShortPage = 300;
constexpr qsizetype EmptyBody = 10;

bool Holds(QStringView text, QStringView what)
{
    return text.contains(what, Qt::CaseInsensitive);
}

bool HasEmptyBody(QStringView text)
{
    const qsizetype body = text.indexOf(u"<body", 0, Qt::CaseInsensitive);
    if (body < 0)
        return false;
    const qsizetype tagEnd = text.indexOf(u'>', body);
    if (tagEnd < 0)
        return false;
    const qsizetype bodyEnd = text.indexOf(u"</body>", tagEnd, Qt::CaseInsensitive);
    return bodyEnd >= 0 && bodyEnd - tagEnd < EmptyBody;
}

/// An address of a page's own disk as a link from that page.
QString RelativeLink(const QString &url, const QString &pagePath, const PathStyle &style)
{
    QString path = url;
    if (path.startsWith(u"file://localhost/"))
        path.remove(7, 9);
    path = ReplaceAll(path, u"file://", {});
    if (style.DriveLetters)
        path.replace(u'|', u':');
    else if (!path.startsWith(u'/'))
        return url; // on another machine
    // The link stays percent-encoded as it stands, and so may be the folders that it shares with the page.
    const QString plain = MakeRelPathRel(path, pagePath, style);
    const QString encodedPage = QString::fromLatin1(pagePath.toUtf8().toPercentEncoding("/\\:"));
    const QString encoded = MakeRelPathRel(path, encodedPage, style);
    QString link = encoded.size() < plain.size() ? encoded : plain;
    return link.replace(style.Separator, u'/');
}

/// Goes over the text once and writes it out with the links changed. Server-side code stands as a run of `filler`.
class FileLinks
{
public:
    FileLinks(const QString &text, QChar filler, const QString &pagePath, const PathStyle &style)
        : m_text(text), m_filler(filler), m_pagePath(pagePath), m_style(style)
    {}

    QString Run()
    {
        const QString mark = u"=\"file://"_s;
        for (qsizetype at = m_text.indexOf(mark); at >= 0; at = m_text.indexOf(mark, at)) {
            const qsizetype url = at + 2;
            if (m_tagEnd < url)
                m_tagEnd = m_text.indexOf(u'>', url);
            if (m_tagEnd < 0)
                break;
            ChangeLink(url);
            at = url + 1;
        }
        return m_read == 0 ? m_text : m_out % QStringView(m_text).sliced(m_read);
    }

private:
    void ChangeLink(qsizetype url)
    {
        const qsizetype quote = QStringView(m_text).sliced(url, m_tagEnd - url).indexOf(u'"');
        const qsizetype urlEnd = quote < 0 ? m_tagEnd : url + quote;
        const QString address = m_text.sliced(url, urlEnd - url);
        if (!m_filler.isNull() && address.contains(m_filler))
            return;
        m_out.append(QStringView(m_text).sliced(m_read, url - m_read))
            .append(RelativeLink(address, m_pagePath, m_style));
        m_read = urlEnd;
        // The rest of the tag gets the slashes of a link too, whatever stands there.
        const auto rest = m_text.begin() + std::max(urlEnd, m_turned);
        std::replace(rest, m_text.begin() + m_tagEnd, m_style.Separator, QChar(u'/'));
        m_turned = m_tagEnd;
    }

    QString m_text;
    QChar m_filler;
    const QString &m_pagePath;
    const PathStyle &m_style;
    QString m_out;
    qsizetype m_read = 0;   ///< the text before it is in m_out
    qsizetype m_tagEnd = 0; ///< the first ">" behind the link in hand; -1: none
    qsizetype m_turned = 0; ///< the text before it has its slashes turned
};

} // namespace

bool RefuseSave(const QString &text, bool hasBodyTag)
{
    if (text.size() < ShortPage && Holds(text, u"meta content=\"mshtml"))
        return true;
    return hasBodyTag && !Holds(text, u"<body");
}

bool IsBlankPage(const QString &text, bool hasBodyTag)
{
    if (HasEmptyBody(text))
        return true;
    if (text.size() < ShortPage && Holds(text, u"content=\"mshtml"))
        return true;
    if (Holds(text, u"content=\"microsoft dhtml editing control"))
        return true;
    return hasBodyTag && !Holds(text, u"<body");
}

bool HasBodyTagIn(const QString &text)
{
    return text.contains(u"<body"_s) || text.contains(u"<BODY"_s);
}

QString DeclaredCharset(const QString &text)
{
    const QString fallback = u"ISO-8859-1"_s;
    const qsizetype at = text.indexOf(u"charset="_s);
    if (at < 0)
        return fallback;
    const qsizetype start = at + 8;
    const qsizetype end = text.indexOf(u'"', start);
    if (end < 0 || end - start < 3 || end - start > 20)
        return fallback;
    const QString charset = text.sliced(start, end - start);
    return charset.contains(u"unicode"_s) ? u"UTF-8"_s : charset;
}

QString WithTitle(const QString &html, const QString &title)
{
    const QStringView all(html);
    const qsizetype tag = all.indexOf(u"<TITLE>", 0, Qt::CaseInsensitive);
    const qsizetype end = tag < 0 ? -1 : all.indexOf(u'<', tag + 7);
    if (end < 0)
        return html;
    return all.first(tag + 7) % title % all.sliced(end);
}

QString WithRelativeFileLinks(const QString &html, const QString &pagePath, const PathStyle &style)
{
    const ServerCodeMask mask(html);
    if (pagePath.isEmpty() || !mask.Usable())
        return html;
    return mask.Restore(FileLinks(mask.Text(), mask.Filler(), pagePath, style).Run());
}
