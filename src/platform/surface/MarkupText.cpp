#include "platform/surface/MarkupText.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QSet<QString> NameSet(const QString &names)
{
    const QStringList list = names.split(u' ', Qt::SkipEmptyParts);
    return {list.begin(), list.end()};
}

/// HTML start tags that end every foreign element they stand in.
bool LeavesForeign(QStringView name)
{
    static const QSet<QString> names = NameSet(
        u"b big blockquote body br center code dd div dl dt em embed h1 h2 h3 h4 h5 h6 head hr i img li listing "
        "menu meta nobr ol p pre ruby s small span strong strike sub sup table tt u ul var"_s);
    return names.contains(name.toString().toLower());
}

/// Foreign elements whose content is HTML again.
bool HoldsHtml(QStringView root, QStringView name)
{
    static const QSet<QString> inSvg = NameSet(u"foreignobject desc title"_s);
    static const QSet<QString> inMath = NameSet(u"mi mo mn ms mtext annotation-xml"_s);
    return (EqualsName(root, u"svg") ? inSvg : inMath).contains(name.toString().toLower());
}

bool IsForeignRoot(QStringView name)
{
    return EqualsName(name, u"svg") || EqualsName(name, u"math");
}

char16_t AsciiLower(char16_t c)
{
    return c >= u'A' && c <= u'Z' ? char16_t(c | 0x20) : c;
}

/// The next "<!--#". Looks for the character that is the rarest in pages: a search for the whole is several times
/// slower on long texts.
qsizetype NextDirective(QStringView text, qsizetype from)
{
    for (qsizetype mark = from + 4; (mark = text.indexOf(u'#', mark)) >= 0; ++mark)
        if (text.sliced(mark - 4, 4) == u"<!--")
            return mark - 4;
    return -1;
}

qsizetype BehindSpan(const IslandSpan &span)
{
    return span.Start + span.Length;
}

} // namespace

bool EqualsName(QStringView text, QStringView lowerName)
{
    return text.size() == lowerName.size() && std::equal(text.utf16(), text.utf16() + text.size(), lowerName.utf16(),
                                                         [](char16_t a, char16_t b) { return AsciiLower(a) == b; });
}

bool IsRawTextElement(QStringView name)
{
    switch (name.size()) {
    case 3:
        return EqualsName(name, u"xmp");
    case 5:
        return EqualsName(name, u"style");
    case 6:
        return EqualsName(name, u"script") || EqualsName(name, u"iframe");
    case 7:
        return EqualsName(name, u"noembed");
    case 8:
        return EqualsName(name, u"noframes");
    default:
        return false;
    }
}

bool IsEscapableTextElement(QStringView name)
{
    return EqualsName(name, u"title") || EqualsName(name, u"textarea");
}

bool IsKnownElement(QStringView name)
{
    static const QSet<QString> names = NameSet(
        u"a abbr acronym address applet area article aside audio b base basefont bdi bdo bgsound big blink blockquote "
        "body br button canvas caption center cite code col colgroup command data datalist dd del details dfn dialog "
        "dir div dl dt em embed fieldset figcaption figure font footer form frame frameset h1 h2 h3 h4 h5 h6 head "
        "header hgroup hr html i iframe image img input ins isindex kbd keygen label layer legend li link listing main "
        "map mark marquee menu menuitem meta meter nav nobr noembed noframes noscript object ol optgroup option output "
        "p param picture plaintext pre progress q rb rp rt rtc ruby s samp script search section select slot small "
        "source spacer span strike strong style sub summary sup table tbody td template textarea tfoot th thead time "
        "title tr track tt u ul var video wbr xmp "
        "svg circle clippath defs desc ellipse filter foreignobject g line lineargradient marker mask path pattern "
        "polygon polyline radialgradient rect stop switch symbol text textpath tspan use view animate set "
        "math mi mn mo ms mtext mrow mfrac msqrt msup msub mtable mtr mtd mstyle semantics annotation"_s);
    return names.contains(name.toString().toLower());
}

QList<IslandSpan> FindServerCode(const QString &text)
{
    const MarkupSource source(text, FindServerBlocks(text));
    QList<IslandSpan> result;
    qsizetype end = 0;
    const auto takeBlocks = [&](qsizetype limit) {
        for (const TextRange &block : source.BlocksIn({end, limit}))
            result.append({block.Start, block.End - block.Start});
    };
    for (qsizetype start = 0; (start = NextDirective(text, start)) >= 0;) {
        const qsizetype next = source.FirstBlock(start);
        if (next > 0 && BehindSpan(source.Blocks()[next - 1]) > start) { // a string of the server's language
            start = BehindSpan(source.Blocks()[next - 1]);
            continue;
        }
        const qsizetype close = source.CommentEnd(start);
        if (close < 0)
            break;
        takeBlocks(start);
        result.append({start, close - start});
        start = end = close;
    }
    takeBlocks(text.size());
    return result;
}

qsizetype MarkupSource::FirstBlock(qsizetype position) const
{
    return std::lower_bound(m_blocks.begin(), m_blocks.end(), position,
                            [](const IslandSpan &block, qsizetype at) { return block.Start < at; }) -
           m_blocks.begin();
}

qsizetype MarkupSource::BlockEnd(qsizetype position) const
{
    if (position + 1 >= Size() || m_text[position] != u'<')
        return -1;
    if (const QChar next = m_text[position + 1]; next != u'?' && next != u'%' && next != u'!')
        return -1;
    const qsizetype index = FirstBlock(position);
    if (index == m_blocks.size() || m_blocks[index].Start != position)
        return -1;
    return position + m_blocks[index].Length;
}

QList<TextRange> MarkupSource::BlocksIn(TextRange range) const
{
    QList<TextRange> result;
    for (qsizetype index = FirstBlock(range.Start); index < m_blocks.size() && m_blocks[index].Start < range.End;
         ++index)
        result.append({m_blocks[index].Start, m_blocks[index].Start + m_blocks[index].Length});
    return result;
}

bool MarkupSource::HasBlock(qsizetype start, qsizetype end) const
{
    const qsizetype index = FirstBlock(start);
    return index < m_blocks.size() && m_blocks[index].Start < end;
}

qsizetype MarkupSource::Find(QChar c, qsizetype from) const
{
    while (true) {
        const qsizetype hit = m_text.indexOf(c, from);
        if (hit < 0)
            return -1;
        const qsizetype behind = FirstBlock(hit + 1);
        if (behind == 0)
            return hit;
        const IslandSpan &block = m_blocks[behind - 1];
        if (block.Start < from || block.Start + block.Length <= hit)
            return hit;
        from = block.Start + block.Length;
    }
}

bool MarkupSource::StartsWith(qsizetype position, QStringView lowerText) const
{
    return position + lowerText.size() <= Size() && EqualsName(m_text.sliced(position, lowerText.size()), lowerText);
}

qsizetype MarkupSource::CommentEnd(qsizetype start) const
{
    for (qsizetype hit = Find(u'>', start + 4); hit >= 0; hit = Find(u'>', hit + 1)) {
        // The dashes that open a comment close it as well when ">" follows: "<!-->" is whole.
        if (m_text[hit - 1] == u'-' && m_text[hit - 2] == u'-')
            return hit + 1;
        if (hit >= start + 7 && m_text[hit - 1] == u'!' && m_text[hit - 2] == u'-' && m_text[hit - 3] == u'-')
            return hit + 1;
    }
    return -1;
}

bool MarkupSource::TagNameAt(qsizetype position, QStringView lowerName) const
{
    const qsizetype end = position + lowerName.size();
    if (end >= Size() || !StartsWith(position, lowerName))
        return false;
    const QChar next = m_text[end];
    return IsMarkupSpace(next) || next == u'/' || next == u'>' || BlockEnd(end) >= 0;
}

qsizetype MarkupSource::TextContentEnd(qsizetype from, QStringView name) const
{
    enum class State { Plain, Escaped, DoubleEscaped };
    State state = State::Plain;
    const QString lowerName = name.toString().toLower();
    const bool script = lowerName == u"script";
    for (qsizetype position = from; position < Size(); ++position) {
        if (state == State::Plain) {
            position = m_text.indexOf(u'<', position);
            if (position < 0)
                break;
        }
        if (m_text[position] == u'-') {
            if (state != State::Plain && StartsWith(position, u"-->"))
                state = State::Plain;
            continue;
        }
        if (m_text[position] != u'<')
            continue;
        if (const qsizetype blockEnd = BlockEnd(position); blockEnd >= 0) {
            position = blockEnd - 1;
            continue;
        }
        const bool endTag = position + 1 < Size() && m_text[position + 1] == u'/' && TagNameAt(position + 2, lowerName);
        if (endTag && state != State::DoubleEscaped)
            return position;
        if (endTag)
            state = State::Escaped;
        else if (script && state == State::Plain && StartsWith(position, u"<!--")) {
            state = State::Escaped;
            ++position; // the dashes may be part of "-->" already
        } else if (state == State::Escaped && TagNameAt(position + 1, lowerName))
            state = State::DoubleEscaped;
    }
    return Size();
}

bool ForeignScopes::Open(QStringView name, bool selfClosing)
{
    if (m_scopes.isEmpty() && (name.size() < 3 || name.size() > 4))
        return false;
    if (InForeign() && LeavesForeign(name)) {
        while (InForeign())
            m_scopes.removeLast();
        return false;
    }
    if (InForeign()) {
        Scope &scope = m_scopes.last();
        if (selfClosing)
            return true;
        if (EqualsName(name, scope.Name))
            ++scope.Depth;
        else if (HoldsHtml(scope.Name, name))
            m_scopes.append({name.toString().toLower(), false, 1});
        return true;
    }
    if (IsForeignRoot(name)) {
        if (!selfClosing)
            m_scopes.append({name.toString().toLower(), true, 1});
        return true;
    }
    if (!m_scopes.isEmpty() && EqualsName(name, m_scopes.last().Name))
        ++m_scopes.last().Depth;
    return false;
}

bool ForeignScopes::Close(QStringView name)
{
    if (m_scopes.isEmpty())
        return false;
    const bool inForeign = InForeign();
    for (qsizetype index = m_scopes.size() - 1; index >= 0; --index) {
        if (!EqualsName(name, m_scopes[index].Name))
            continue;
        m_scopes.resize(index + 1);
        if (--m_scopes[index].Depth > 0)
            return m_scopes[index].Foreign;
        m_scopes.removeLast();
        return true;
    }
    return inForeign;
}
