// The second half of a merge: the changes that were found are made in the written text.
#include "platform/surface/merge/Alignment.h"
#include "platform/surface/merge/MergeRun.h"
#include "platform/surface/merge/TagPatch.h"

#include <algorithm>

namespace {

bool TakesFirstNewline(quint32 name)
{
    return name == TagNameKey(u"pre") || name == TagNameKey(u"textarea") || name == TagNameKey(u"listing");
}

/// Where a parser puts the element, or how it reads what is in it, depends on this one's attributes.
bool AttributesDecide(quint32 name)
{
    return name == TagNameKey(u"input") || name == TagNameKey(u"annotation-xml") || name == TagNameKey(u"font");
}

} // namespace

qsizetype MergeRun::WrittenStart(qsizetype token) const
{
    return token < WrittenCount() ? Written(token).Start : m_merger.m_written.size();
}

QString MergeRun::WrittenText(Range range) const
{
    const qsizetype start = WrittenStart(range.Start);
    return m_merger.m_written.sliced(start, WrittenStart(range.End) - start);
}

QString MergeRun::NowText(qsizetype from, qsizetype to) const
{
    return from < to ? m_now.sliced(Now(from).Start, Now(to - 1).End() - Now(from).Start) : QString();
}

/// What is written between the nearest pieces around the change that stand in both.
MergeRun::Range MergeRun::GapAround(const Hunk &hunk) const
{
    qsizetype before = hunk.BaseStart - 1;
    while (before >= 0 && Place(before) < 0)
        --before;
    qsizetype behind = hunk.BaseEnd;
    while (behind < BaseCount() && Place(behind) < 0)
        ++behind;
    return {before < 0 ? 0 : Place(before) + 1, behind < BaseCount() ? Place(behind) : WrittenCount()};
}

/// White space that a parser passes over and end tags without an element: nothing that the engine wrote otherwise.
bool MergeRun::IsIgnorable(Range written) const
{
    for (qsizetype i = written.Start; i < written.End; ++i)
        if (Written(i).Is != MarkupToken::Space && Written(i).Is != MarkupToken::EndTag)
            return false;
    return true;
}

MergeRun::Range MergeRun::InsertionPlace(const Hunk &hunk, Range gap) const
{
    const bool behindKnown = hunk.BaseStart > 0 && Place(hunk.BaseStart - 1) >= 0;
    if (!behindKnown && hunk.BaseEnd < BaseCount() && Place(hunk.BaseEnd) >= 0)
        return {gap.End, gap.End};
    // The first line end in such an element is not part of it.
    const bool newline = gap.Start > 0 && gap.Start < gap.End && Written(gap.Start - 1).Is == MarkupToken::StartTag &&
                         TakesFirstNewline(Written(gap.Start - 1).Name) && Written(gap.Start).Is == MarkupToken::Space;
    const qsizetype place = gap.Start + (newline ? 1 : 0);
    return {place, place};
}

/// The tokens that the hunk's base tokens are in the written text.
MergeRun::Range MergeRun::WrittenRange(const Hunk &hunk) const
{
    const Range gap = GapAround(hunk);
    qsizetype first = hunk.BaseStart;
    while (first < hunk.BaseEnd && Place(first) < 0)
        ++first;
    if (first == hunk.BaseEnd) {
        const bool nothingWritten = hunk.BaseStart == hunk.BaseEnd || IsIgnorable(gap);
        return nothingWritten ? InsertionPlace(hunk, gap) : gap;
    }
    qsizetype last = hunk.BaseEnd - 1;
    while (Place(last) < 0)
        --last;
    const bool fromFirst = first == hunk.BaseStart || IsIgnorable({gap.Start, Place(first)});
    const bool toLast = last == hunk.BaseEnd - 1 || IsIgnorable({Place(last) + 1, gap.End});
    return {fromFirst ? Place(first) : gap.Start, toLast ? Place(last) + 1 : gap.End};
}

void MergeRun::Doubt(const Hunk &hunk)
{
    const size_t bounds = qHashMulti(size_t(m_reach), hunk.BaseStart, hunk.BaseEnd);
    m_doubt += quint64(qHash(NowText(hunk.NowStart, hunk.NowEnd), bounds)) | 1;
    if (m_doubt == 0)
        m_doubt = 1;
}

void MergeRun::Put(Range written, QString text, MergedText::Part kind)
{
    const qsizetype start = WrittenStart(written.Start);
    const qsizetype end = std::max(start, WrittenStart(written.End));
    if (!m_edits.empty() && start < m_edits.back().End)
        m_failed = true;
    m_edits.push_back({start, end, std::move(text), kind});
}

void MergeRun::Apply(const Hunk &hunk)
{
    if (ApplyText(hunk))
        return;
    if (m_reach != SourceMerger::Reach::Smallest || !ApplyPairs(hunk))
        ApplyPlain(hunk);
}

bool MergeRun::ApplyText(const Hunk &hunk)
{
    if (!IsTextOnly(hunk))
        return false;
    const Range range = WrittenRange(hunk);
    bool raw = false;
    bool cooked = false;
    const auto note = [&](const MarkupToken &one) { (one.Raw ? raw : cooked) = true; };
    for (qsizetype i = range.Start; i < range.End; ++i) {
        if (!Written(i).IsText())
            return false;
        note(Written(i));
    }
    for (qsizetype i = hunk.NowStart; i < hunk.NowEnd; ++i)
        note(Now(i));
    if (raw && cooked)
        return false;
    const QString now = NowText(hunk.NowStart, hunk.NowEnd);
    if (!KeepsRun(hunk))
        Doubt(hunk);
    Put(range, raw ? now : PatchText(WrittenText(range), now), MergedText::Part::Patched);
    return true;
}

/// Start tags of one name in what went and what came are the same element with other attributes.
bool MergeRun::ApplyPairs(const Hunk &hunk)
{
    const auto looseKey = [](const MarkupToken &token) {
        return token.Is == MarkupToken::StartTag ? quint64(token.Name) : token.Key;
    };
    std::vector<quint64> base;
    for (qsizetype i = hunk.BaseStart; i < hunk.BaseEnd; ++i)
        base.push_back(looseKey(Base(i)));
    std::vector<quint64> now;
    for (qsizetype i = hunk.NowStart; i < hunk.NowEnd; ++i)
        now.push_back(looseKey(Now(i)));
    const std::vector<qint32> matches = AlignKeys(base, now);
    Hunk rest{hunk.BaseStart, hunk.BaseStart, hunk.NowStart, hunk.NowStart};
    bool any = false;
    const auto applyRest = [&](qsizetype baseEnd, qsizetype nowEnd) {
        rest.BaseEnd = baseEnd;
        rest.NowEnd = nowEnd;
        if ((rest.BaseStart < baseEnd || rest.NowStart < nowEnd) && !ApplyText(rest))
            ApplyPlain(rest);
    };
    for (size_t i = 0; i < matches.size(); ++i) {
        const qsizetype token = hunk.BaseStart + qsizetype(i);
        if (matches[i] < 0 || Base(token).Is != MarkupToken::StartTag || Place(token) < 0)
            continue;
        const qsizetype other = hunk.NowStart + matches[i];
        applyRest(token, other);
        rest = {token + 1, token + 1, other + 1, other + 1};
        any = true;
        if (Base(token).Key == Now(other).Key)
            continue;
        if (AttributesDecide(Base(token).Name))
            Doubt({token, token + 1, other, other + 1});
        const Range tag{Place(token), Place(token) + 1};
        Put(tag, PatchTag(WrittenText(tag), NowText(other, other + 1)), MergedText::Part::Patched);
    }
    if (any)
        applyRest(hunk.BaseEnd, hunk.NowEnd);
    return any;
}

void MergeRun::ApplyPlain(const Hunk &hunk)
{
    Doubt(hunk);
    Put(WrittenRange(hunk), NowText(hunk.NowStart, hunk.NowEnd), MergedText::Part::Inserted);
}

SourceMerger::Result MergeRun::Finish() const
{
    if (m_failed)
        return {{m_now, {{0, m_now.size(), MergedText::Part::Inserted}}}, 1};
    SourceMerger::Result result;
    result.Doubt = m_doubt;
    MergedText &page = result.Page;
    page.Text.reserve(m_merger.m_written.size() + m_now.size() / 16);
    qsizetype done = 0;
    for (const Edit &edit : m_edits) {
        page.Text += QStringView(m_merger.m_written).sliced(done, edit.Start - done);
        if (!edit.Text.isEmpty())
            page.New.append({page.Text.size(), edit.Text.size(), edit.Kind});
        page.Text += edit.Text;
        done = edit.End;
    }
    page.Text += QStringView(m_merger.m_written).sliced(done);
    return result;
}
