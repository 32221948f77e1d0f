#include "platform/surface/MarkPlace.h"

#include "platform/surface/MarkupText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class PlaceFinder
{
public:
    PlaceFinder(const QString &page, qsizetype position)
        : m_source(page, FindServerCode(page)), m_text(page), m_position(position)
    {}

    qsizetype Find()
    {
        for (qsizetype less = m_source.Find(u'<', 0); less >= 0 && less < m_position;) {
            const qsizetype end = MarkupEnd(less);
            if (m_position < end)
                return less;
            less = m_source.Find(u'<', end);
        }
        return InText();
    }

private:
    QChar At(qsizetype position) const { return position < m_text.size() ? m_text[position] : QChar(); }

    /// Behind the markup that starts at `less`, with the content of elements that hold no comments.
    qsizetype MarkupEnd(qsizetype less)
    {
        const QChar next = At(less + 1);
        if (m_source.StartsWith(less, u"<!--")) {
            const qsizetype end = m_source.CommentEnd(less);
            return end < 0 ? m_text.size() : end;
        }
        if (next == u'!' || next == u'?' || (next == u'/' && IsAsciiLetter(At(less + 2)))) {
            const qsizetype end = m_source.Find(u'>', less);
            return end < 0 ? m_text.size() : end + 1;
        }
        if (!IsAsciiLetter(next))
            return less + 1;
        qsizetype nameEnd = less + 1;
        while (nameEnd < m_text.size() && IsTagNameCharacter(m_text[nameEnd]))
            ++nameEnd;
        const QStringView name = m_text.sliced(less + 1, nameEnd - less - 1);
        const qsizetype end = StartTagEnd(nameEnd);
        m_dropsLineEnd = EqualsName(name, u"pre") || EqualsName(name, u"listing") ? end : -1;
        if (EqualsName(name, u"plaintext"))
            return m_text.size();
        return IsRawTextElement(name) || IsEscapableTextElement(name) ? m_source.TextContentEnd(end, name) : end;
    }

    /// Quotes count only around values.
    qsizetype StartTagEnd(qsizetype at) const
    {
        QChar quote;
        QChar before;
        while (at < m_text.size()) {
            if (const qsizetype blockEnd = m_source.BlockEnd(at); blockEnd > at) {
                at = blockEnd;
                continue;
            }
            const QChar c = m_text[at++];
            if (!quote.isNull())
                quote = c == quote ? QChar() : quote;
            else if (c == u'>')
                return at;
            else if ((c == u'"' || c == u'\'') && before == u'=')
                quote = c;
            before = IsMarkupSpace(c) ? before : c;
        }
        return m_text.size();
    }

    qsizetype InText() const
    {
        for (const IslandSpan &block : m_source.Blocks())
            if (block.Start < m_position && m_position < block.Start + block.Length)
                return block.Start;
        if (m_dropsLineEnd == m_position && (At(m_position) == u'\r' || At(m_position) == u'\n'))
            return m_position + (m_text.sliced(m_position).startsWith(u"\r\n") ? 2 : 1);
        if (m_position > 0 && m_text[m_position - 1] == u'\r' && At(m_position) == u'\n')
            return m_position - 1;
        return OutsideEntity();
    }

    qsizetype OutsideEntity() const
    {
        constexpr qsizetype LongestEntity = 33;
        const auto isPart = [](QChar c) { return c.isLetterOrNumber() || c == u'#'; };
        qsizetype start = m_position;
        while (start > 0 && m_position - start < LongestEntity && isPart(m_text[start - 1]))
            --start;
        if (start == 0 || m_text[start - 1] != u'&')
            return m_position;
        qsizetype end = m_position;
        while (isPart(At(end)))
            ++end;
        return At(end) == u';' ? start - 1 : m_position;
    }

    MarkupSource m_source;
    QStringView m_text;
    qsizetype m_position;
    qsizetype m_dropsLineEnd = -1; ///< behind the last start tag, if a parser drops a line end there
};

} // namespace

qsizetype PlaceForComment(const QString &page, qsizetype position)
{
    return PlaceFinder(page, std::clamp<qsizetype>(position, 0, page.size())).Find();
}
