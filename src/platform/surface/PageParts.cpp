#include "platform/surface/PageParts.h"

#include "platform/surface/Islands.h"

using namespace Qt::StringLiterals;

namespace {

bool IsBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

/// End of the construct that starts at `at`, if it is one that the page proper does not begin with: white space, a
/// server block, a comment or a declaration. `at` itself when it is something else.
qsizetype SkipOne(QStringView text, qsizetype at)
{
    const QStringView rest = text.sliced(at);
    const auto behind = [&](QStringView end, qsizetype from) {
        const qsizetype found = text.indexOf(end, at + from);
        return found < 0 ? text.size() : found + end.size();
    };
    if (IsBlank(rest.front()))
        return at + 1;
    if (rest.startsWith("<?"_L1))
        return behind(u"?>", 2);
    if (rest.startsWith("<%"_L1))
        return behind(u"%>", 2);
    if (rest.startsWith("<!--"_L1))
        return rest.startsWith("<!-->"_L1) ? at + 5 : behind(u"-->", 4);
    if (rest.startsWith("<!"_L1))
        return behind(u">", 2);
    return at;
}

bool IsOnlySkipped(QStringView text)
{
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype next = SkipOne(text, at);
        if (next == at)
            return false;
        at = next;
    }
    return true;
}

/// Start of the tail in text[from..], or the text's end.
qsizetype FindTail(QStringView text, qsizetype from)
{
    const qsizetype html = text.lastIndexOf("</html"_L1, -1, Qt::CaseInsensitive);
    if (html < from)
        return text.size();
    const qsizetype close = text.indexOf(u'>', html);
    if (close < 0 || !IsOnlySkipped(text.sliced(close + 1)))
        return text.size();
    const qsizetype body = text.first(html).lastIndexOf("</body"_L1, -1, Qt::CaseInsensitive);
    if (body >= from) {
        const qsizetype bodyClose = text.indexOf(u'>', body);
        if (bodyClose < html && text.sliced(bodyClose + 1, html - bodyClose - 1).trimmed().isEmpty())
            return body;
    }
    return html;
}

enum class TailPart { Space, Other };

QString OnlyOf(const QString &tail, TailPart wanted)
{
    QString kept;
    const QStringView view(tail);
    qsizetype at = 0;
    while (at < view.size()) {
        qsizetype next = SkipOne(view, at);
        if (next == at) { // a closing tag
            const qsizetype close = view.indexOf(u'>', at);
            next = close < 0 ? view.size() : close + 1;
        }
        if (IsBlank(view[at]) == (wanted == TailPart::Space))
            kept += view.sliced(at, next - at);
        at = next;
    }
    return kept;
}

/// What closes a server-side block that `head` leaves open: without it, what follows would be code.
QString CloseOpenBlock(const QString &head)
{
    const QList<IslandSpan> blocks = FindServerBlocks(head);
    if (blocks.isEmpty() || blocks.last().Start + blocks.last().Length < head.size())
        return {};
    const QChar kind = head[blocks.last().Start + 1];
    return head.endsWith(QString(kind) + u'>') ? QString() : u'\n' + QString(kind) + u'>';
}

QString WithoutEnd(const QString &html, QLatin1StringView end)
{
    return html.endsWith(end) ? html.chopped(end.size()) : html;
}

} // namespace

PageParts SplitPage(const QString &text)
{
    PageParts parts;
    const QStringView view(text);
    qsizetype at = 0;
    while (at < view.size()) {
        const qsizetype next = SkipOne(view, at);
        if (next == at)
            break;
        if (parts.Doctype.isEmpty() && view.sliced(at).startsWith("<!doctype"_L1, Qt::CaseInsensitive))
            parts.Doctype = view.sliced(at, next - at).toString();
        at = next;
    }
    const qsizetype tail = FindTail(view, at);
    parts.Head = text.first(at);
    parts.Page = text.sliced(at, tail - at);
    parts.Tail = text.sliced(tail);
    return parts;
}

QString JoinPage(const PageParts &parts, const QString &html)
{
    if (parts.Page.isEmpty() && !parts.Head.isEmpty() && html == "<HTML><HEAD></HEAD><BODY></BODY></HTML>"_L1)
        return parts.Head + parts.Tail;
    const QString head = parts.Head + CloseOpenBlock(parts.Head);
    if (parts.Tail.isEmpty())
        return head + html;
    QString root = WithoutEnd(html, "</HTML>"_L1);
    if (parts.Tail.startsWith("</body"_L1, Qt::CaseInsensitive))
        root = WithoutEnd(root, "</BODY>"_L1);
    return head + root + parts.Tail;
}

QString SpaceOfTail(const QString &tail)
{
    return OnlyOf(tail, TailPart::Space).replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
}

QString TailWithoutSpace(const QString &tail)
{
    return OnlyOf(tail, TailPart::Other);
}
