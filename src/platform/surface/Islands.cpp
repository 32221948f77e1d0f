#include "platform/surface/Islands.h"

#include "platform/surface/MarkupText.h"

#include <optional>

namespace {

/// Old page furniture of the form `<?name ...>` that ends like a tag.
bool IsTagLikeInstruction(const MarkupSource &source, qsizetype start)
{
    if (source.StartsWith(start, u"<?xml:") || source.StartsWith(start, u"<?>"))
        return true;
    return source.StartsWith(start, u"<?import") && start + 8 < source.Size() &&
           IsMarkupSpace(source.Text()[start + 8]);
}

/// Whether a "<?" without "?>" is still server code, which then runs to the end of the file.
bool IsServerOpening(const MarkupSource &source, qsizetype start)
{
    const QStringView text = source.Text();
    const auto spaceOrEnd = [text](qsizetype at) { return at >= text.size() || IsMarkupSpace(text[at]); };
    return (source.StartsWith(start, u"<?php") && spaceOrEnd(start + 5)) || source.StartsWith(start, u"<?=") ||
           (start + 2 < text.size() && IsMarkupSpace(text[start + 2]));
}

/// The place behind the first `mark`, -1 when there is none; then `none` keeps it from being looked for again.
qsizetype Behind(QStringView text, QStringView mark, qsizetype from, bool &none)
{
    const qsizetype hit = none ? -1 : text.indexOf(mark, from);
    none = hit < 0;
    return hit < 0 ? -1 : hit + mark.size();
}

/// What follows an island that ran to the end of the page: nothing but what the engine adds to finish the page?
bool IsOnlyFinish(QStringView rest)
{
    const MarkupSource source(rest, {});
    qsizetype position = rest.startsWith(u"-->") ? 3 : 0;
    while (position < rest.size()) {
        if (IsMarkupSpace(rest[position])) {
            ++position;
            continue;
        }
        const bool finish = source.StartsWith(position, u"</") || source.StartsWith(position, u"<html>") ||
                            source.StartsWith(position, u"<head>") || source.StartsWith(position, u"<body>");
        if (!finish)
            return false;
        const qsizetype close = rest.indexOf(u'>', position);
        if (close < 0)
            return false;
        position = close + 1;
    }
    return true;
}

class Restorer
{
public:
    Restorer(const QString &text, const ProtectedText &from) : m_text(text), m_from(from) {}

    QString Run()
    {
        const QStringView text = m_text;
        qsizetype open = text.indexOf(m_from.Open);
        while (open >= 0) {
            const std::optional<Token> token = Read(open);
            if (token && Put(*token))
                return m_out;
            open = text.indexOf(m_from.Open, token ? m_copied : open + 1);
        }
        m_out += text.sliced(m_copied);
        return m_out;
    }

private:
    struct Token
    {
        qsizetype Start;
        qsizetype End;
        qsizetype Number;
    };

    std::optional<Token> Read(qsizetype open) const
    {
        const QStringView text = m_text;
        qsizetype end = open + 1;
        qsizetype number = 0;
        for (; end < text.size(); ++end) {
            const qsizetype digit = m_from.Digits.indexOf(text[end]);
            if (digit < 0)
                break;
            number = number * 10 + digit;
            if (number >= m_from.Islands.size())
                return {};
        }
        if (end == open + 1 || end == text.size() || (text[end] != m_from.Close && text[end] != m_from.CommentClose))
            return {};
        const bool comment = text[end] == m_from.CommentClose;
        ++end;
        if (comment && open >= m_copied + 4 && text.sliced(open - 4, 4) == u"<!--" &&
            text.sliced(end).startsWith(u"-->"))
            return Token{open - 4, end + 3, number};
        return Token{open, end, number};
    }

    /// Writes what stands in front of the token, and the island. True when nothing is to follow.
    bool Put(Token token)
    {
        const QStringView text = m_text;
        const IslandPlace place = m_from.Places.value(token.Number, IslandPlace::Inside);
        m_out += text.sliced(m_copied, token.Start - m_copied);
        if (place == IslandPlace::TagName)
            DropBlankAfterTagName();
        const QString &island = m_from.Islands[token.Number];
        m_out += island;
        if ((place == IslandPlace::TagName || place == IslandPlace::Attribute) &&
            text.sliced(token.End).startsWith(u"=\"\""))
            token.End += 3;
        m_copied = token.End;
        if (!m_from.OpenEnded || token.Number != m_from.Islands.size() - m_from.Added - 1)
            return false;
        const QStringView rest = text.sliced(token.End);
        if (IsOnlyFinish(rest))
            return true;
        if (island.startsWith(u'<') && (island.startsWith(u"<?") || island.startsWith(u"<%")))
            m_out += island[1] == u'?' ? QStringLiteral("\n?>") : QStringLiteral("\n%>");
        return false;
    }

    void DropBlankAfterTagName()
    {
        if (!m_out.endsWith(u' '))
            return;
        qsizetype position = m_out.size() - 1;
        while (position > 0 && IsTagNameCharacter(m_out[position - 1]))
            --position;
        if (position > 0 && m_out[position - 1] == u'<')
            m_out.chop(1);
    }

    const QString &m_text;
    const ProtectedText &m_from;
    QString m_out;
    qsizetype m_copied = 0;
};

} // namespace

QList<IslandSpan> FindServerBlocks(const QString &text)
{
    QList<IslandSpan> blocks;
    const MarkupSource source(text, {});
    bool noQuestion = false;
    bool noPercent = false;
    bool noRemark = false;
    qsizetype position = 0;
    while ((position = source.Text().indexOf(u'<', position)) >= 0 && position + 1 < text.size()) {
        qsizetype end = -1;
        if (text[position + 1] == u'?' && !IsTagLikeInstruction(source, position)) {
            end = Behind(text, u"?>", position + 2, noQuestion);
            if (end < 0 && IsServerOpening(source, position))
                end = text.size();
        } else if (text[position + 1] == u'%') {
            if (source.StartsWith(position, u"<%--"))
                end = Behind(text, u"--%>", position + 2, noRemark);
            if (end < 0)
                end = Behind(text, u"%>", position + 2, noPercent);
            if (end < 0)
                end = text.size();
        }
        if (end >= 0)
            blocks.append({position, end - position});
        position = end >= 0 ? end : position + 1;
    }
    return blocks;
}

QString RestoreIslands(const QString &text, const ProtectedText &from)
{
    if (from.Islands.isEmpty() || !text.contains(from.Open))
        return text;
    return Restorer(text, from).Run();
}
