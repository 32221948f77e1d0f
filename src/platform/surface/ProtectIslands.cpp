#include "platform/surface/Islands.h"
#include "platform/surface/IslandWriter.h"
#include "platform/surface/MarkupText.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

/// The first place from `position` on with something else than blanks, comments and server code, or a doctype.
qsizetype SkipRemarks(const MarkupSource &source, qsizetype position)
{
    while (position < source.Size()) {
        qsizetype end = source.BlockEnd(position);
        if (IsMarkupSpace(source.Text()[position]))
            end = position + 1;
        else if (source.StartsWith(position, u"<!--"))
            end = source.CommentEnd(position);
        else if (source.StartsWith(position, u"<!doctype"))
            break;
        else if (end < 0 && (source.StartsWith(position, u"<!") || source.StartsWith(position, u"<?")))
            end = source.Find(u'>', position) + 1;
        else if (end < 0)
            break;
        if (end <= 0) // never closed
            break;
        position = end;
    }
    return position;
}

/// Where a parser sees the doctype.
TextRange DoctypeRange(const MarkupSource &source)
{
    const qsizetype start = SkipRemarks(source, 0);
    const qsizetype close = source.StartsWith(start, u"<!doctype") ? source.Find(u'>', start) : -1;
    return close < 0 ? TextRange{} : TextRange{start, close + 1};
}

/// One walk over the page with the states of HTML's tokenizer. Text between islands is copied when the next one is
/// met, so that a page without any is only read.
class Protector
{
public:
    explicit Protector(const QString &text)
        : m_source(text, FindServerCode(text)), m_text(m_source.Text()), m_writer(text, m_source)
    {}

    ProtectedText Run()
    {
        m_doctype = DoctypeRange(m_source);
        CollectComputedNames();
        qsizetype position = 0;
        while (position < m_text.size() && (position = m_text.indexOf(u'<', position)) >= 0)
            position = Markup(position);
        return m_writer.Finish();
    }

private:
    struct Attribute
    {
        qsizetype Start;
        qsizetype NameEnd;
        qsizetype ValueStart; ///< -1 without "="
        qsizetype ValueEnd;
        qsizetype End;
    };

    QChar At(qsizetype position) const { return position < m_text.size() ? m_text[position] : QChar(); }

    // --- Reading; each returns the place to go on ---

    qsizetype Markup(qsizetype less)
    {
        if (const qsizetype end = m_source.BlockEnd(less); end >= 0) {
            m_writer.Comment({less, end});
            return end;
        }
        const QChar next = At(less + 1);
        if (IsAsciiLetter(next))
            return StartTag(less);
        if (next == u'!')
            return Declaration(less);
        if (next == u'?')
            return BogusComment(less);
        if (next == u'/' && IsAsciiLetter(At(less + 2)))
            return EndTag(less);
        if (m_source.BlockEnd(less + 1) >= 0)
            return ComputedTag(less, less + 1);
        if (next == u'/' && m_source.BlockEnd(less + 2) >= 0)
            return ComputedTag(less, less + 2);
        if (next == u'/' && less + 2 < m_text.size())
            return BogusComment(less);
        return less + 1;
    }

    qsizetype BogusComment(qsizetype less)
    {
        const qsizetype close = m_source.Find(u'>', less);
        const qsizetype end = close < 0 ? m_text.size() : close + 1;
        m_writer.Comment({less, end}, close < 0);
        return end;
    }

    qsizetype Declaration(qsizetype less)
    {
        if (m_source.StartsWith(less, u"<!--"))
            return Comment(less);
        if (less == m_doctype.Start && m_doctype.End > 0) {
            m_writer.TokensIn(m_doctype);
            return m_doctype.End;
        }
        if (m_foreign.InForeign() && m_source.StartsWith(less, u"<![cdata["))
            return CharacterData(less);
        return BogusComment(less);
    }

    qsizetype CharacterData(qsizetype less)
    {
        qsizetype close = m_source.Find(u'>', less);
        while (close >= 0 && !(m_text[close - 1] == u']' && m_text[close - 2] == u']'))
            close = m_source.Find(u'>', close + 1);
        const qsizetype end = close < 0 ? m_text.size() : close + 1;
        m_writer.Comment({less, end}, close < 0);
        return end;
    }

    qsizetype Comment(qsizetype less)
    {
        const qsizetype found = m_source.CommentEnd(less);
        const qsizetype end = found < 0 ? m_text.size() : found;
        // A browser of old or the server reads these: line ends, too, have to stay as they are.
        const bool read = m_source.StartsWith(less, u"<!--[if") || m_source.StartsWith(less, u"<!--#");
        const bool rewritten = found >= 0 && (end - less < 7 || m_text[end - 2] == u'!');
        if (read || rewritten)
            m_writer.Comment({less, end}, found < 0);
        else
            m_writer.TokensIn({less, end});
        return end;
    }

    qsizetype TagNameEnd(qsizetype position) const
    {
        while (position < m_text.size() && !IsMarkupSpace(m_text[position]) && m_text[position] != u'>' &&
               m_text[position] != u'/' && m_source.BlockEnd(position) < 0)
            ++position;
        return position;
    }

    /// The end of a name; blocks are part of it.
    qsizetype NameEnd(qsizetype position) const
    {
        const qsizetype start = position;
        while (position < m_text.size()) {
            const QChar c = m_text[position];
            if (IsMarkupSpace(c) || c == u'>' || c == u'/' || (c == u'=' && position > start))
                break;
            const qsizetype block = m_source.BlockEnd(position);
            position = block < 0 ? position + 1 : block;
        }
        return position;
    }

    qsizetype UnquotedEnd(qsizetype position) const
    {
        while (position < m_text.size() && !IsMarkupSpace(m_text[position]) && m_text[position] != u'>') {
            const qsizetype block = m_source.BlockEnd(position);
            position = block < 0 ? position + 1 : block;
        }
        return position;
    }

    qsizetype SkipSpace(qsizetype position) const
    {
        while (position < m_text.size() && IsMarkupSpace(m_text[position]))
            ++position;
        return position;
    }

    /// Fills m_attributes; answers the place behind the tag's ">", -1 when the tag never closes.
    qsizetype ReadAttributes(qsizetype position)
    {
        m_attributes.clear();
        while (position < m_text.size()) {
            const QChar c = m_text[position];
            if (c == u'>')
                return position + 1;
            if (IsMarkupSpace(c) || c == u'/') {
                ++position;
                continue;
            }
            Attribute attribute{position, NameEnd(position), -1, -1, 0};
            position = attribute.NameEnd;
            if (const qsizetype equals = SkipSpace(position); At(equals) == u'=') {
                position = ReadValue(attribute, SkipSpace(equals + 1));
                if (position < 0)
                    return -1;
            }
            attribute.End = position;
            m_attributes.append(attribute);
        }
        return -1;
    }

    qsizetype ReadValue(Attribute &attribute, qsizetype position) const
    {
        const QChar quote = At(position);
        if (quote != u'"' && quote != u'\'') {
            attribute.ValueStart = position;
            attribute.ValueEnd = UnquotedEnd(position);
            return attribute.ValueEnd;
        }
        attribute.ValueStart = position + 1;
        attribute.ValueEnd = m_source.Find(quote, position + 1);
        return attribute.ValueEnd < 0 ? -1 : attribute.ValueEnd + 1;
    }

    qsizetype StartTag(qsizetype less)
    {
        const qsizetype nameEnd = TagNameEnd(less + 1);
        const QStringView name = m_text.sliced(less + 1, nameEnd - less - 1);
        if (IsComputed(name, nameEnd))
            return ComputedTag(less, less + 1);
        const qsizetype end = ReadAttributes(nameEnd);
        if (end < 0) {
            m_writer.Comment({less, m_text.size()}, true);
            return m_text.size();
        }
        if (m_source.HasBlock(nameEnd, end))
            AttributeIslands(nameEnd);
        const bool slash = m_text[end - 2] == u'/' && (m_attributes.isEmpty() || m_attributes.last().End < end - 1);
        if (m_foreign.Open(name, slash))
            return end;
        return TextContent(name, end);
    }

    /// The content of elements that hold no tags, up to and with the end tag.
    qsizetype TextContent(QStringView name, qsizetype start)
    {
        if (EqualsName(name, u"plaintext")) {
            m_writer.TokensIn({start, m_text.size()});
            return m_text.size();
        }
        if (!IsRawTextElement(name) && !IsEscapableTextElement(name))
            return start;
        const qsizetype less = m_source.TextContentEnd(start, name);
        m_writer.TokensIn({start, less});
        if (less == m_text.size())
            return less;
        const qsizetype nameEnd = less + 2 + name.size();
        const qsizetype end = ReadAttributes(nameEnd);
        if (end < 0) { // the parser is still in the text, where a comment would be text, too
            if (m_source.HasBlock(less, m_text.size()))
                m_writer.Token({less, m_text.size()}, IslandPlace::Inside, true);
            return m_text.size();
        }
        if (m_source.HasBlock(less, end)) {
            m_writer.CopyTo(less);
            m_writer.CopyToWithoutBlocks(end);
            m_writer.CommentsHere({less, end});
            m_writer.GoTo(end);
        }
        return end;
    }

    qsizetype EndTag(qsizetype less)
    {
        const qsizetype nameEnd = TagNameEnd(less + 2);
        const QStringView name = m_text.sliced(less + 2, nameEnd - less - 2);
        if (IsComputed(name, nameEnd))
            return ComputedTag(less, less + 2);
        const qsizetype end = ReadAttributes(nameEnd);
        if (end < 0) {
            m_writer.Comment({less, m_text.size()}, true);
            return m_text.size();
        }
        m_foreign.Close(name);
        if (m_source.HasBlock(nameEnd, end)) {
            m_writer.CopyTo(less);
            m_writer.CommentsHere({nameEnd, end});
            m_writer.GoTo(less);
            m_writer.CopyToWithoutBlocks(end);
        }
        return EqualsName(name, u"body") || EqualsName(name, u"html") ? Tail(end) : end;
    }

    /// Code and comments behind the page: the parser moves them into the body again, all but the first, once a line
    /// feed stands between them. As one island they stay together, and where they are.
    qsizetype Tail(qsizetype start)
    {
        const qsizetype end = SkipRemarks(m_source, start);
        const bool last = end == m_text.size() || m_source.StartsWith(end, u"</html");
        if (!last || !m_text.sliced(start, end - start).contains(u'<'))
            return start;
        m_writer.Comment({start, end});
        return end;
    }

    // --- Tags whose name is made by the server ---

    /// `<option<?=$selected?>>` has a name and an attribute, `<h<?=$level?>>` only half a name.
    bool IsComputed(QStringView name, qsizetype nameEnd) const
    {
        if (m_source.BlockEnd(nameEnd) < 0 || IsKnownElement(name))
            return false;
        const bool ownElement = name.contains(u'-') || name.contains(u':');
        return !ownElement || !std::all_of(name.begin(), name.end(), IsTagNameCharacter);
    }

    void CollectComputedNames()
    {
        QSet<QString> starts;
        QSet<QString> ends;
        qsizetype read = 0; // a name may hold many blocks
        for (const IslandSpan &block : m_source.Blocks()) {
            qsizetype start = block.Start;
            while (start > 0 && (m_text[start - 1].isLetterOrNumber()))
                --start;
            if (start <= read || start == block.Start || !IsAsciiLetter(m_text[start]))
                continue;
            const bool end = m_text[start - 1] == u'/' && start > 1 && m_text[start - 2] == u'<';
            if (!end && m_text[start - 1] != u'<')
                continue;
            read = NameEnd(start);
            (end ? ends : starts).insert(m_text.sliced(start, read - start).toString());
        }
        m_computedPairs = starts.intersect(ends);
    }

    qsizetype ComputedTag(qsizetype less, qsizetype nameStart)
    {
        const qsizetype nameEnd = NameEnd(nameStart);
        const qsizetype end = ReadAttributes(nameEnd);
        const QString name = m_text.sliced(nameStart, nameEnd - nameStart).toString();
        if (end < 0 || !m_computedPairs.contains(name)) {
            m_writer.Comment({less, end < 0 ? m_text.size() : end}, end < 0);
            return end < 0 ? m_text.size() : end;
        }
        const bool endTag = nameStart == less + 2;
        if (endTag && m_source.HasBlock(nameEnd, end)) {
            m_writer.CopyTo(less);
            m_writer.CommentsHere({nameEnd, end});
            m_writer.GoTo(less);
        }
        for (const TextRange &block : m_source.BlocksIn({nameStart, nameEnd}))
            NameIsland(block);
        if (endTag)
            m_writer.CopyToWithoutBlocks(end);
        else
            AttributeIslands(nameEnd);
        return end;
    }

    /// Equal code has equal tokens here, so that the end tag matches.
    void NameIsland(TextRange block)
    {
        const QString code = m_text.sliced(block.Start, block.End - block.Start).toString();
        const auto known = m_nameNumbers.constFind(code);
        if (known != m_nameNumbers.constEnd()) {
            m_writer.Again(block, *known);
            return;
        }
        m_writer.Token(block, IslandPlace::Inside);
        m_nameNumbers.insert(code, m_writer.LastNumber());
    }

    // --- Attributes of a tag with server-side blocks ---

    bool IsOnlyBlocks(TextRange range) const
    {
        while (range.Start < range.End) {
            range.Start = m_source.BlockEnd(range.Start);
            if (range.Start < 0)
                return false;
        }
        return true;
    }

    void AttributeIslands(qsizetype tagNameEnd)
    {
        QSet<QString> seen;
        for (const Attribute &attribute : m_attributes) {
            const TextRange name{attribute.Start, attribute.NameEnd};
            const QString key = m_text.sliced(name.Start, name.End - name.Start).toString().toLower();
            if (!m_source.HasBlock(name.Start, name.End) && seen.contains(key)) {
                // A parser keeps the first of a name only, but here the server chooses which one there is.
                m_writer.Token({attribute.Start, attribute.End}, IslandPlace::Attribute);
                continue;
            }
            seen.insert(key);
            const bool whole = IsOnlyBlocks(name);
            const bool emptyValue = attribute.ValueStart >= 0 && attribute.ValueStart == attribute.ValueEnd;
            for (TextRange block : m_source.BlocksIn(name)) {
                const IslandPlace place = block.Start == tagNameEnd ? IslandPlace::TagName
                                          : whole                   ? IslandPlace::Attribute
                                                                    : IslandPlace::Inside;
                if (whole && emptyValue && block.End == name.End)
                    block.End = attribute.End; // an empty value behind the token would be taken for the engine's
                m_writer.Token(block, place);
            }
            if (attribute.ValueStart >= 0)
                m_writer.TokensIn({attribute.ValueStart, attribute.ValueEnd});
        }
    }

    const MarkupSource m_source;
    const QStringView m_text;
    IslandWriter m_writer;
    TextRange m_doctype;
    ForeignScopes m_foreign;
    QList<Attribute> m_attributes; ///< of the tag read last
    QSet<QString> m_computedPairs;
    QHash<QString, qsizetype> m_nameNumbers;
};

} // namespace

ProtectedText ProtectIslands(const QString &pageText)
{
    return Protector(pageText).Run();
}

QString SourceDoctype(const QString &pageText)
{
    const MarkupSource source(pageText, FindServerCode(pageText));
    const TextRange range = DoctypeRange(source);
    return pageText.mid(range.Start, range.End - range.Start);
}
