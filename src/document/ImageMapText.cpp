#include "document/ImageMapText.h"

#include "document/TagText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Place
{
    qsizetype Start = -1;
    qsizetype End = -1; ///< behind the closing tag
};

bool StartsAt(const QString &html, qsizetype at, QLatin1String word)
{
    return QStringView(html).sliced(at).startsWith(word, Qt::CaseInsensitive);
}

bool IsMapTag(const QString &html, qsizetype less)
{
    if (!StartsAt(html, less, "<map"_L1) || less + 4 >= html.size())
        return false;
    const QChar next = html[less + 4];
    return next.isSpace() || next == u'>' || next == u'/';
}

/// The place behind `end`, or the end of the text.
qsizetype Behind(const QString &html, qsizetype from, QLatin1String end)
{
    const qsizetype found = html.indexOf(end, from, Qt::CaseInsensitive);
    return found < 0 ? html.size() : found + end.size();
}

Place FindMap(const QString &html, const QString &name, Qt::CaseSensitivity sensitivity)
{
    for (qsizetype less = html.indexOf(u'<'); less >= 0; less = html.indexOf(u'<', less)) {
        if (StartsAt(html, less, "<!--"_L1)) {
            less = Behind(html, less + 4, "-->"_L1);
        } else if (StartsAt(html, less, "<script"_L1)) {
            less = Behind(html, less + 7, "</script"_L1);
        } else {
            if (IsMapTag(html, less) && ReadAttribute(html, less + 1, u"NAME"_s).compare(name, sensitivity) == 0) {
                const qsizetype close = html.indexOf("</map"_L1, less, Qt::CaseInsensitive);
                return close < 0 ? Place() : Place{less, Behind(html, close, ">"_L1)};
            }
            ++less;
        }
    }
    return {};
}

Place FindMap(const QString &html, const QString &name)
{
    if (name.isEmpty())
        return {};
    const Place same = FindMap(html, name, Qt::CaseSensitive);
    return same.Start >= 0 ? same : FindMap(html, name, Qt::CaseInsensitive);
}

/// Braces within the tag are stepped over in pairs: they may hold a ">". -1 when there is no body tag.
qsizetype BehindBodyTag(const QString &html)
{
    const qsizetype body = html.indexOf("<body"_L1, 0, Qt::CaseInsensitive);
    int depth = 0;
    for (qsizetype at = body; at >= 0 && at < html.size(); ++at) {
        if (html[at] == u'{')
            ++depth;
        else if (html[at] == u'}')
            --depth;
        else if (html[at] == u'>' && depth <= 0)
            return at + 1;
    }
    return -1;
}

} // namespace

QString UsedMapName(const QString &markup)
{
    const qsizetype attribute = markup.indexOf("useMap"_L1, 0, Qt::CaseInsensitive);
    const qsizetype hash = attribute < 0 ? -1 : markup.indexOf(u'#', attribute);
    if (hash < 0)
        return {};
    const QChar before = markup[hash - 1];
    const bool quoted = before == u'"' || before == u'\'';
    const auto isEnd = [&](QChar c) { return quoted ? c == before : c == u' ' || c == u'>'; };
    const auto end = std::find_if(markup.begin() + hash + 1, markup.end(), isEnd);
    return end == markup.end() ? QString() : markup.mid(hash + 1, end - markup.begin() - hash - 1);
}

QString WithoutImageMap(const QString &html, const QString &name)
{
    const Place map = FindMap(html, name);
    return map.Start < 0 ? html : QString(html).remove(map.Start, map.End - map.Start);
}

QString ImageMapNamed(const QString &html, const QString &name)
{
    const Place map = FindMap(html, name);
    return map.Start < 0 ? QString() : html.sliced(map.Start, map.End - map.Start);
}

QString WithImageMap(const QString &html, const QString &name, const QString &map, const QString &oldMap)
{
    if (map.isEmpty())
        return html;
    if (const Place old = FindMap(html, name); old.Start >= 0)
        return QString(html).replace(old.Start, old.End - old.Start, map);
    if (const qsizetype end = html.lastIndexOf("</body>"_L1, -1, Qt::CaseInsensitive); end >= 0)
        return QString(html).insert(end, map);
    const qsizetype behind = oldMap.isEmpty() ? -1 : BehindBodyTag(html);
    return behind < 0 ? html : QString(html).insert(behind, map);
}
