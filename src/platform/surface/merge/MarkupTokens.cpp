#include "platform/surface/merge/MarkupTokens.h"

#include "platform/surface/merge/CharacterReferences.h"

#include <algorithm>

namespace {

constexpr quint64 Seed = 0x9E3779B97F4A7C15ull;

quint64 Mixed(quint64 value)
{
    value ^= value >> 32;
    value *= 0xD6E8FEB86659FD93ull;
    value ^= value >> 32;
    value *= 0xD6E8FEB86659FD93ull;
    value ^= value >> 32;
    return value;
}

/// Line ends count as LF.
quint64 HashOf(QStringView text, quint64 seed)
{
    quint64 hash = seed;
    for (qsizetype at = 0; at < text.size(); ++at) {
        char16_t c = text[at].unicode();
        if (c == u'\r') {
            if (at + 1 < text.size() && text[at + 1] == u'\n')
                continue;
            c = u'\n';
        }
        hash = (hash ^ c) * 0x100000001B3ull;
    }
    return Mixed(hash);
}

quint64 HashOfLowered(QStringView text, quint64 seed)
{
    quint64 hash = seed;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        hash = (hash ^ (unit >= u'A' && unit <= u'Z' ? unit | 0x20 : unit)) * 0x100000001B3ull;
    }
    return Mixed(hash);
}

quint64 HashOfRead(QStringView text, ReferencePlace place, quint64 seed)
{
    return text.contains(u'&') ? HashOf(DecodeReferences(text, place), seed) : HashOf(text, seed);
}

class Tokenizer
{
public:
    Tokenizer(const QString &text, TokenDetail detail)
        : m_text(text), m_source(text, FindServerBlocks(text)), m_tagsOnly(detail == TokenDetail::TagsOnly)
    {
        m_result.Tokens.reserve(size_t(text.size()) / (m_tagsOnly ? 32 : 4) + 16);
    }

    TokenizedMarkup Run()
    {
        while (m_at < m_text.size()) {
            if (m_tagsOnly && m_at < m_rawEnd)
                Put(MarkupToken::Word, m_rawEnd, 0);
            else if (m_at < m_rawEnd || m_at < m_textEnd)
                TextUpTo(std::max(m_rawEnd, m_textEnd));
            else if (m_text[m_at] == u'<' && IsMarkup(m_at))
                Markup();
            else
                TextUpTo(m_text.size());
        }
        m_result.Plain &= !m_foreign.InForeign() && m_textEnd < m_text.size() && m_rawEnd < m_text.size();
        return std::move(m_result);
    }

private:
    QChar At(qsizetype position) const { return position < m_text.size() ? m_text[position] : QChar(); }

    bool IsMarkup(qsizetype at) const
    {
        const QChar next = At(at + 1);
        if (next == u'!' || next == u'?')
            return true;
        if (next == u'/')
            return IsAsciiLetter(At(at + 2));
        return IsAsciiLetter(next) || (next == u'%' && m_source.BlockEnd(at) >= 0);
    }

    void Put(MarkupToken::Kind kind, qsizetype end, quint64 key, quint32 name = 0, bool foreign = false)
    {
        const bool raw = kind <= MarkupToken::Word && m_at < m_rawEnd;
        const quint64 own = key + kind * Seed + (raw ? 1 : 0);
        m_result.Tokens.push_back({m_at, end - m_at, own, name, kind, raw, foreign || m_foreign.InForeign()});
        m_at = end;
    }

    /// Words, white space and blocks up to `end`; in ordinary text up to the next markup.
    void TextUpTo(qsizetype end)
    {
        const bool raw = m_at < m_rawEnd;
        const bool ordinary = !raw && m_at >= m_textEnd;
        while (m_at < end) {
            if (const qsizetype block = m_source.BlockEnd(m_at); block >= 0) {
                Other(block);
                continue;
            }
            if (ordinary && m_text[m_at] == u'<' && IsMarkup(m_at))
                return;
            if (m_tagsOnly) {
                const qsizetype next = m_text.indexOf(u'<', m_at + 1);
                Put(MarkupToken::Word, next < 0 ? end : std::min(next, end), 0);
                continue;
            }
            const bool space = IsMarkupSpace(m_text[m_at]);
            qsizetype to = m_at + 1;
            while (to < end && IsMarkupSpace(m_text[to]) == space &&
                   (m_text[to] != u'<' || (m_source.BlockEnd(to) < 0 && (!ordinary || !IsMarkup(to)))))
                ++to;
            const QStringView piece = m_text.sliced(m_at, to - m_at);
            if (space || raw)
                Put(space ? MarkupToken::Space : MarkupToken::Word, to, HashOf(piece, Seed));
            else
                Put(MarkupToken::Word, to, HashOfRead(piece, ReferencePlace::Text, Seed));
        }
    }

    void Other(qsizetype end)
    {
        Put(MarkupToken::Other, end, m_tagsOnly ? 0 : HashOf(m_text.sliced(m_at, end - m_at), Seed));
    }

    void Markup()
    {
        if (const qsizetype block = m_source.BlockEnd(m_at); block >= 0) {
            Other(block);
            return;
        }
        if (At(m_at + 1) == u'!' || At(m_at + 1) == u'?') {
            const bool comment = m_source.StartsWith(m_at, u"<!--");
            const qsizetype found = comment ? m_source.CommentEnd(m_at) : m_source.Find(u'>', m_at) + 1;
            m_result.Plain &= found > 0;
            Other(found > 0 ? found : m_text.size());
            return;
        }
        ReadTag(m_source, m_at, m_tag);
        m_result.Plain &= m_tag.Closed;
        const QStringView name = m_text.sliced(m_tag.Name.Start, m_tag.Name.End - m_tag.Name.Start);
        if (At(m_at + 1) == u'/') {
            const bool foreign = m_foreign.Close(name);
            Put(MarkupToken::EndTag, m_tag.End, HashOfLowered(name, Seed), TagNameKey(name), foreign);
            return;
        }
        const bool foreign = m_foreign.Open(name, m_tag.SelfClosing);
        Put(MarkupToken::StartTag, m_tag.End, m_tagsOnly ? 0 : KeyOfTag(name), TagNameKey(name), foreign);
        if (foreign)
            return;
        if (EqualsName(name, u"plaintext"))
            m_rawEnd = m_text.size();
        else if (IsRawTextElement(name))
            m_rawEnd = m_source.TextContentEnd(m_at, name);
        else if (IsEscapableTextElement(name))
            m_textEnd = m_source.TextContentEnd(m_at, name);
    }

    /// Attributes in any order; of those with one name the first counts.
    quint64 KeyOfTag(QStringView name)
    {
        quint64 key = HashOfLowered(name, Seed);
        m_names.clear();
        for (const WrittenAttribute &one : m_tag.Attributes) {
            const quint64 own = HashOfLowered(m_text.sliced(one.Name.Start, one.Name.End - one.Name.Start), Seed);
            const bool block = one.Name.End == one.Name.Start;
            if (!block && std::find(m_names.begin(), m_names.end(), own) != m_names.end())
                continue;
            m_names.push_back(own);
            key += Mixed(own ^ HashOfRead(m_text.sliced(one.Value.Start, one.Value.End - one.Value.Start),
                                          ReferencePlace::Attribute, own));
        }
        return key;
    }

    QStringView m_text;
    MarkupSource m_source;
    ForeignScopes m_foreign;
    WrittenTag m_tag;
    std::vector<quint64> m_names;
    bool m_tagsOnly;
    qsizetype m_at = 0;
    qsizetype m_rawEnd = 0;  ///< text up to here is that of a script or the like
    qsizetype m_textEnd = 0; ///< text up to here is that of a title or text field
    TokenizedMarkup m_result;
};

qsizetype BehindUnquoted(const MarkupSource &source, qsizetype at, bool inName)
{
    const QStringView text = source.Text();
    const qsizetype start = at;
    while (at < text.size()) {
        if (const qsizetype block = source.BlockEnd(at); block >= 0) {
            if (inName && at == start)
                return at;
            at = block;
            continue;
        }
        const QChar c = text[at];
        if (IsMarkupSpace(c) || c == u'>' || (inName && (c == u'/' || (c == u'=' && at > start))))
            break;
        ++at;
    }
    return at;
}

qsizetype BehindSpace(QStringView text, qsizetype at)
{
    while (at < text.size() && IsMarkupSpace(text[at]))
        ++at;
    return at;
}

WrittenAttribute ReadAttribute(const MarkupSource &source, qsizetype at)
{
    const QStringView text = source.Text();
    WrittenAttribute one;
    if (const qsizetype block = source.BlockEnd(at); block >= 0) {
        one.Name = {at, at};
        one.Value = {at, block};
        one.End = block;
        return one;
    }
    const qsizetype nameEnd = std::max(BehindUnquoted(source, at, true), at + 1);
    one.Name = {at, nameEnd};
    one.Value = {nameEnd, nameEnd};
    one.End = nameEnd;
    const qsizetype equals = BehindSpace(text, nameEnd);
    if (equals >= text.size() || text[equals] != u'=')
        return one;
    const qsizetype value = BehindSpace(text, equals + 1);
    if (value < text.size() && (text[value] == u'"' || text[value] == u'\'')) {
        const qsizetype close = source.Find(text[value], value + 1);
        one.Quote = text[value];
        one.Value = {value + 1, close < 0 ? text.size() : close};
        one.End = close < 0 ? text.size() : close + 1;
        return one;
    }
    one.Value = {value, BehindUnquoted(source, value, false)};
    one.End = one.Value.End;
    return one;
}

} // namespace

quint32 TagNameKey(QStringView name)
{
    return quint32(HashOfLowered(name, Seed));
}

void ReadTag(const MarkupSource &source, qsizetype start, WrittenTag &tag)
{
    const QStringView text = source.Text();
    qsizetype at = start + (start + 1 < text.size() && text[start + 1] == u'/' ? 2 : 1);
    tag.Attributes.clear();
    tag.SelfClosing = tag.Closed = false;
    tag.Name.Start = at;
    while (at < text.size() && !IsMarkupSpace(text[at]) && text[at] != u'>' && text[at] != u'/' &&
           source.BlockEnd(at) < 0)
        ++at;
    tag.Name.End = at;
    while (at < text.size()) {
        const QChar c = text[at];
        if (c == u'>') {
            tag.SelfClosing = text[at - 1] == u'/';
            tag.Closed = true;
            ++at;
            break;
        }
        if (IsMarkupSpace(c) || c == u'/') {
            ++at;
            continue;
        }
        tag.Attributes.push_back(ReadAttribute(source, at));
        at = tag.Attributes.back().End;
    }
    tag.End = at;
}

TokenizedMarkup TokenizeMarkup(const QString &text, TokenDetail detail)
{
    return Tokenizer(text, detail).Run();
}
