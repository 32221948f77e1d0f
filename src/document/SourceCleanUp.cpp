#include "document/SourceCleanUp.h"

#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "platform/surface/merge/MarkupTokens.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether the clean-up could take the tag for something else.
bool IsOdd(QStringView tag)
{
    return std::any_of(tag.begin(), tag.end() - 1,
                       [](QChar c) { return c == u'\'' || c == u'>' || (c != u' ' && IsMarkupSpace(c)); });
}

bool IsGarbled(const QString &tag)
{
    const TokenizedMarkup before = TokenizeMarkup(tag);
    const TokenizedMarkup after = TokenizeMarkup(FixupHTML(tag));
    return before.Tokens.empty() || after.Tokens.empty() || after.Tokens.front().Length < after.Tokens.back().End() ||
           before.Tokens.front().Key != after.Tokens.front().Key;
}

/// The tags that the clean-up would garble; a script's with its body, which the clean-up knows by its tag.
QList<TextRange> GarbledTags(const QString &text)
{
    QList<TextRange> ranges;
    const TokenizedMarkup read = TokenizeMarkup(text, TokenDetail::TagsOnly);
    bool inBody = false;
    for (const MarkupToken &token : read.Tokens) {
        inBody &= token.Raw;
        if (inBody)
            ranges.last().End = token.End();
        if (token.Is != MarkupToken::StartTag || !IsOdd(QStringView(text).sliced(token.Start, token.Length)) ||
            !IsGarbled(text.sliced(token.Start, token.Length)))
            continue;
        ranges.append({token.Start, token.End()});
        inBody = token.Name == TagNameKey(u"script");
    }
    return ranges;
}

/// All but the kept ranges is cleaned up, each stretch for itself.
QString CleanUpAround(const QString &text, const QList<TextRange> &kept, FixupContext &context)
{
    if (kept.isEmpty())
        return FixupHTML(text, context);
    const qsizetype caret = context.SelectionOffset;
    QString result;
    const auto clean = [&](qsizetype from, qsizetype to) {
        FixupContext own = context;
        own.SelectionOffset = caret <= from ? 0 : std::min(caret - from, to - from + 1);
        if (to > from)
            result += FixupHTML(text.sliced(from, to - from), own);
        context.SelectionShift = own.SelectionShift;
    };
    qsizetype done = 0;
    for (const TextRange &range : kept) {
        clean(done, range.Start);
        result += QStringView(text).sliced(range.Start, range.End - range.Start);
        done = range.End;
    }
    clean(done, text.size());
    return result;
}

QList<TextRange> AllButInserted(const MergedText &page)
{
    QList<TextRange> kept;
    qsizetype done = 0;
    const auto keep = [&](qsizetype end) {
        if (end > done)
            kept.append({done, end});
    };
    for (const MergedText::Range &range : page.New) {
        if (range.Kind != MergedText::Part::Inserted)
            continue;
        keep(range.Start);
        done = range.Start + range.Length;
    }
    keep(page.Text.size());
    return kept;
}

} // namespace

QString CleanUpSource(const MergedText &page, CleanUp reach, FixupContext &context)
{
    if (reach == CleanUp::NewOnly)
        return GuideStyle::Remove(CleanUpAround(page.Text, AllButInserted(page), context));
    return CleanUpAround(page.Text, GarbledTags(page.Text), context);
}

QString OutputOf(const MergedText &page, const OutputRules &rules, const QString &old, FixupContext &context)
{
    const CleanUp reach = rules.Preserved && rules.Exact ? CleanUp::NewOnly : CleanUp::Whole;
    const MergedText linked = rules.Path.isEmpty() ? page : WithRelativeFileLinks(page, reach, rules.Path);
    if (rules.Preserved)
        return CleanUpSource(linked, reach, context);
    return WithPageLineEnds(FixupHTML(linked.Text, context), old);
}

MergedText WithRelativeFileLinks(const MergedText &page, CleanUp reach, const QString &pagePath)
{
    if (!page.Text.contains("file://"_L1, Qt::CaseInsensitive))
        return page;
    if (reach == CleanUp::Whole)
        return {WithRelativeFileLinks(page.Text, pagePath), {}};
    MergedText result;
    qsizetype done = 0;
    for (const MergedText::Range &range : page.New) {
        result.Text += QStringView(page.Text).sliced(done, range.Start - done);
        const QString part = WithRelativeFileLinks(page.Text.sliced(range.Start, range.Length), pagePath);
        result.New.append({result.Text.size(), part.size(), range.Kind});
        result.Text += part;
        done = range.Start + range.Length;
    }
    result.Text += QStringView(page.Text).sliced(done);
    return result;
}
