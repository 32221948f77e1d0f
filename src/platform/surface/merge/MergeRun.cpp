#include "platform/surface/merge/MergeRun.h"

#include "platform/surface/merge/Alignment.h"
#include "platform/surface/merge/TagPatch.h"

#include <algorithm>

namespace {

bool IsVoid(quint32 name)
{
    static const std::vector<quint32> names = [] {
        std::vector<quint32> keys;
        for (const QStringView one :
             {u"area", u"base", u"basefont", u"bgsound", u"br", u"col", u"embed", u"frame", u"hr", u"img", u"input",
              u"keygen", u"link", u"meta", u"param", u"source", u"track", u"wbr"})
            keys.push_back(TagNameKey(one));
        return keys;
    }();
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whole elements and text.
bool IsBalanced(const MarkupTokens &tokens, qsizetype from, qsizetype to)
{
    std::vector<quint32> open;
    for (qsizetype i = from; i < to; ++i) {
        const MarkupToken &token = tokens[size_t(i)];
        if (token.Is == MarkupToken::StartTag && !IsVoid(token.Name)) {
            open.push_back(token.Name);
        } else if (token.Is == MarkupToken::EndTag) {
            if (open.empty() || open.back() != token.Name)
                return false;
            open.pop_back();
        }
    }
    return open.empty();
}

qsizetype CommonHead(QStringView a, QStringView b)
{
    return std::mismatch(a.begin(), a.begin() + std::min(a.size(), b.size()), b.begin()).first - a.begin();
}

qsizetype CommonTail(QStringView a, QStringView b, qsizetype most)
{
    qsizetype size = 0;
    while (size < most && a[a.size() - 1 - size] == b[b.size() - 1 - size])
        ++size;
    return size;
}

} // namespace

MergeRun::MergeRun(const SourceMerger &merger, const QString &now, SourceMerger::Reach reach)
    : m_merger(merger), m_now(now), m_reach(reach)
{}

SourceMerger::Result MergeRun::Run()
{
    if (m_reach == SourceMerger::Reach::Smallest)
        ReadMiddle();
    else
        ReadAll();
    for (const Hunk &hunk : Widened(FindHunks()))
        Apply(hunk);
    return Finish();
}

// ---- what changed --------------------------------------------------------------------------------------------------

/// A place where reading can start and end: a tag that stands in all three texts, in plain HTML.
bool MergeRun::IsLandmark(qsizetype baseToken) const
{
    return Base(baseToken).IsTag() && !Base(baseToken).Foreign && Place(baseToken) >= 0;
}

/// Most changes are in one place: the rest of the page need not be cut into tokens again.
void MergeRun::ReadMiddle()
{
    const QString &base = m_merger.m_base;
    const MarkupTokens &tokens = m_merger.m_baseTokens.Tokens;
    const qsizetype head = CommonHead(base, m_now);
    const qsizetype tail = CommonTail(base, m_now, std::min(base.size(), m_now.size()) - head);
    const auto startsBehind = [](qsizetype at, const MarkupToken &token) { return at < token.Start; };
    const auto from = [&](qsizetype at) {
        return qsizetype(std::upper_bound(tokens.begin(), tokens.end(), at, startsBehind) - tokens.begin());
    };
    constexpr qsizetype Room = 400; // to look for a better place of a change
    qsizetype first = std::min(from(head) - 1, std::max<qsizetype>(0, from(head) - Room));
    while (first >= 0 && (!IsLandmark(first) || Base(first).End() > head))
        --first;
    qsizetype behind = from(base.size() - tail - 1);
    while (behind < BaseCount() && !IsLandmark(behind))
        ++behind;
    // Near its ends the page is read from there, or to there.
    first = std::max<qsizetype>(first, 0);
    const bool toEnd = behind >= BaseCount();
    if (BaseCount() == 0 || behind <= first) {
        ReadAll();
        return;
    }
    const qsizetype start = Base(first).Start;
    const qsizetype end = toEnd ? m_now.size() : m_now.size() - (base.size() - Base(behind).Start);
    TokenizedMarkup middle = TokenizeMarkup(m_now.sliced(start, end - start));
    if (!middle.Plain && !toEnd) {
        ReadAll();
        return;
    }
    m_nowTokens = std::move(middle.Tokens);
    for (MarkupToken &token : m_nowTokens)
        token.Start += start;
    m_firstBase = first;
    m_behindBase = behind;
}

void MergeRun::ReadAll()
{
    m_nowTokens = TokenizeMarkup(m_now).Tokens;
    m_firstBase = 0;
    m_behindBase = BaseCount();
}

std::vector<MergeRun::Hunk> MergeRun::FindHunks() const
{
    std::vector<quint64> base;
    for (qsizetype i = m_firstBase; i < m_behindBase; ++i)
        base.push_back(Base(i).Key);
    std::vector<quint64> now;
    for (const MarkupToken &token : m_nowTokens)
        now.push_back(token.Key);
    const std::vector<qint32> matches = AlignKeys(base, now);

    std::vector<Hunk> hunks;
    Hunk hunk{m_firstBase, m_firstBase, 0, 0};
    const auto close = [&](qsizetype baseEnd, qsizetype nowEnd) {
        hunk.BaseEnd = baseEnd;
        hunk.NowEnd = nowEnd;
        if (hunk.BaseEnd > hunk.BaseStart || hunk.NowEnd > hunk.NowStart)
            hunks.push_back(hunk);
    };
    for (size_t i = 0; i < matches.size(); ++i) {
        if (matches[i] < 0)
            continue;
        const qsizetype token = m_firstBase + qsizetype(i);
        close(token, matches[i]);
        hunk = {token + 1, token + 1, matches[i] + 1, matches[i] + 1};
    }
    close(m_behindBase, qsizetype(m_nowTokens.size()));
    return hunks;
}

/// Of equal rows one after the other any may be the new one: it is best a whole one.
void MergeRun::Slide(Hunk &hunk) const
{
    const bool insertion = hunk.BaseStart == hunk.BaseEnd;
    if (!insertion && hunk.NowStart != hunk.NowEnd)
        return;
    const MarkupTokens &tokens = insertion ? m_nowTokens : m_merger.m_baseTokens.Tokens;
    const qsizetype from = insertion ? hunk.NowStart : hunk.BaseStart;
    const qsizetype to = insertion ? hunk.NowEnd : hunk.BaseEnd;
    const auto sameKey = [&](qsizetype a, qsizetype b) { return tokens[size_t(a)].Key == tokens[size_t(b)].Key; };
    const auto move = [&](qsizetype by) {
        hunk = {hunk.BaseStart + by, hunk.BaseEnd + by, hunk.NowStart + by, hunk.NowEnd + by};
    };
    constexpr qsizetype Farthest = 300;
    const qsizetype left = std::min({hunk.BaseStart - m_firstBase, hunk.NowStart, Farthest});
    for (qsizetype by = 0; by <= left && (by == 0 || sameKey(from - by, to - by)); ++by)
        if (IsBalanced(tokens, from - by, to - by))
            return move(-by);
    const qsizetype right =
        std::min({m_behindBase - hunk.BaseEnd, qsizetype(m_nowTokens.size()) - hunk.NowEnd, Farthest});
    for (qsizetype by = 1; by <= right && sameKey(from + by - 1, to + by - 1); ++by)
        if (IsBalanced(tokens, from + by, to + by))
            return move(by);
}

std::vector<MergeRun::Hunk> MergeRun::Widened(const std::vector<Hunk> &hunks) const
{
    std::vector<Hunk> result;
    for (Hunk hunk : hunks) {
        const Hunk found = hunk;
        Slide(hunk);
        if (!result.empty() && hunk.BaseStart < result.back().BaseEnd)
            hunk = found;
        Widen(hunk);
        // Between two changes base and now run alike, so that what lies between can be taken along. Each side knows
        // where it is in both only up to the other change.
        while (!result.empty() && hunk.BaseStart <= result.back().BaseEnd) {
            const Hunk &last = result.back();
            hunk.NowEnd += std::max(hunk.BaseEnd, last.BaseEnd) - hunk.BaseEnd;
            hunk.BaseEnd = std::max(hunk.BaseEnd, last.BaseEnd);
            hunk.NowStart = last.NowStart - (last.BaseStart - std::min(hunk.BaseStart, last.BaseStart));
            hunk.BaseStart = std::min(hunk.BaseStart, last.BaseStart);
            result.pop_back();
        }
        result.push_back(hunk);
    }
    return result;
}

/// Takes along what the author omitted in front of changed tags, so that these stand where they are meant to, and what
/// the author wrote otherwise than the engine reads it.
void MergeRun::Widen(Hunk &hunk) const
{
    if (m_reach != SourceMerger::Reach::Smallest && !(IsTextOnly(hunk) && KeepsRun(hunk)) && WidenToElement(hunk))
        return;
    const bool textOnly = IsTextOnly(hunk);
    const auto left = [&] {
        while (hunk.BaseStart > m_firstBase && hunk.NowStart > 0 && Place(hunk.BaseStart - 1) < 0) {
            --hunk.BaseStart;
            --hunk.NowStart;
        }
    };
    const auto right = [&] {
        while (hunk.BaseEnd < m_behindBase && hunk.NowEnd < qsizetype(m_nowTokens.size()) && Place(hunk.BaseEnd) < 0) {
            ++hunk.BaseEnd;
            ++hunk.NowEnd;
        }
    };
    const bool insertion = hunk.BaseStart == hunk.BaseEnd;
    const bool beforeKnown = hunk.BaseStart < BaseCount() && Place(hunk.BaseStart) >= 0;
    if (textOnly ? !beforeKnown : true)
        left();
    const Range gap = GapAround(hunk);
    const bool startKnown = hunk.BaseStart < hunk.BaseEnd && Place(hunk.BaseStart) >= 0;
    const bool endKnown = hunk.BaseStart < hunk.BaseEnd && Place(hunk.BaseEnd - 1) >= 0;
    if ((insertion && beforeKnown) || (startKnown && endKnown))
        return;
    qsizetype known = hunk.BaseStart;
    while (known < hunk.BaseEnd && Place(known) < 0)
        ++known;
    if (!startKnown && !IsIgnorable({gap.Start, known < hunk.BaseEnd ? Place(known) : gap.End}))
        left();
    known = hunk.BaseEnd;
    while (known > hunk.BaseStart && Place(known - 1) < 0)
        --known;
    if (!endKnown && !IsIgnorable({known > hunk.BaseStart ? Place(known - 1) + 1 : gap.Start, gap.End}))
        right();
}

/// To the element around it whose tags both stand in the written text; one more where that is wanted.
bool MergeRun::WidenToElement(Hunk &hunk) const
{
    const int wanted = m_reach == SourceMerger::Reach::Element ? 1 : 3;
    qsizetype open = hunk.BaseStart;
    qsizetype close = hunk.BaseEnd;
    for (int found = 0; found < wanted;) {
        open = OpeningBefore(open);
        close = ClosingBehind(close);
        if (open < 0 || close < 0)
            return false;
        if (Place(open) >= 0 && Place(close) >= 0)
            ++found;
        ++close;
    }
    hunk.NowStart -= hunk.BaseStart - open;
    hunk.NowEnd += close - hunk.BaseEnd;
    hunk.BaseStart = open;
    hunk.BaseEnd = close;
    return true;
}

/// The start tag of the element that `token` stands in; the engine's text has every tag. -1: none.
qsizetype MergeRun::OpeningBefore(qsizetype token) const
{
    int depth = 0;
    while (--token >= 0) {
        const MarkupToken &one = Base(token);
        if (one.Is == MarkupToken::EndTag)
            ++depth;
        else if (one.Is == MarkupToken::StartTag && !IsVoid(one.Name) && depth-- == 0)
            return token;
    }
    return -1;
}

qsizetype MergeRun::ClosingBehind(qsizetype token) const
{
    int depth = 0;
    for (; token < BaseCount(); ++token) {
        const MarkupToken &one = Base(token);
        if (one.Is == MarkupToken::StartTag && !IsVoid(one.Name))
            ++depth;
        else if (one.Is == MarkupToken::EndTag && depth-- == 0)
            return token;
    }
    return -1;
}

bool MergeRun::IsTextOnly(const Hunk &hunk) const
{
    const auto allText = [](const MarkupTokens &tokens, qsizetype from, qsizetype to) {
        return std::all_of(tokens.begin() + from, tokens.begin() + to,
                           [](const MarkupToken &one) { return one.IsText(); });
    };
    return allText(m_merger.m_baseTokens.Tokens, hunk.BaseStart, hunk.BaseEnd) &&
           allText(m_nowTokens, hunk.NowStart, hunk.NowEnd);
}

/// Whether the text between two tags that the change lies in shows characters before and after, and begins and ends
/// with white space or not as it did: then it stays the text that it is, wherever it stands.
bool MergeRun::KeepsRun(const Hunk &hunk) const
{
    const auto judge = [](const MarkupTokens &tokens, qsizetype from, qsizetype to) {
        while (from > 0 && tokens[size_t(from - 1)].IsText())
            --from;
        while (to < qsizetype(tokens.size()) && tokens[size_t(to)].IsText())
            ++to;
        const bool word = std::any_of(tokens.begin() + from, tokens.begin() + to,
                                      [](const MarkupToken &one) { return one.Is == MarkupToken::Word; });
        const bool startsWithSpace = from < to && tokens[size_t(from)].Is == MarkupToken::Space;
        return std::pair(word, startsWithSpace);
    };
    const auto mayEnd = [](const MarkupToken &one) { return one.Raw && one.Length > 1; };
    if (std::any_of(m_nowTokens.begin() + hunk.NowStart, m_nowTokens.begin() + hunk.NowEnd, mayEnd))
        for (qsizetype i = hunk.NowStart; i < hunk.NowEnd; ++i)
            if (QStringView(m_now).sliced(Now(i).Start, Now(i).Length).contains(u'<'))
                return false; // of a script or style: might end it
    const auto before = judge(m_merger.m_baseTokens.Tokens, hunk.BaseStart, hunk.BaseEnd);
    const auto after = judge(m_nowTokens, hunk.NowStart, hunk.NowEnd);
    return before.first && before == after;
}
