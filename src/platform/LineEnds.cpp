#include "platform/LineEnds.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// How far a line is looked for among the old lines between two anchors: keeps the work linear.
constexpr qsizetype LookAhead = 64;

struct Counts
{
    qsizetype Lf = 0;
    qsizetype CrLf = 0;
    qsizetype Cr = 0;
};

struct Line
{
    QStringView Content;
    QStringView End; ///< empty only behind the last line
};

Counts CountLineEnds(QStringView text)
{
    Counts counts;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == u'\n') {
            ++counts.Lf;
        } else if (text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') {
            ++counts.CrLf;
            ++at;
        } else if (text[at] == u'\r') {
            ++counts.Cr;
        }
    }
    return counts;
}

QStringView EndText(LineEnds ends)
{
    return ends == LineEnds::CrLf ? u"\r\n" : ends == LineEnds::Cr ? u"\r" : u"\n";
}

std::vector<Line> SplitLines(QStringView text)
{
    std::vector<Line> lines;
    qsizetype start = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] != u'\n' && text[at] != u'\r')
            continue;
        const qsizetype length = text.sliced(at).startsWith(u"\r\n") ? 2 : 1;
        lines.push_back({text.sliced(start, at - start), text.sliced(at, length)});
        at += length - 1;
        start = at + 1;
    }
    if (start < text.size())
        lines.push_back({text.sliced(start), {}});
    return lines;
}

/// Finds for every new line the old line it came from. Lines that stand exactly once in both texts and in the same
/// order are anchors; between two anchors the rest is matched in order.
class LineMatcher
{
public:
    LineMatcher(const std::vector<Line> &oldLines, const std::vector<Line> &newLines)
        : m_old(oldLines), m_new(newLines), m_matches(newLines.size(), -1)
    {}

    /// Index of the old line for every new line, -1 for none.
    std::vector<qsizetype> Match()
    {
        qsizetype oldStart = 0;
        qsizetype newStart = 0;
        for (const Anchor &anchor : Anchors()) {
            MatchGap(oldStart, anchor.Old, newStart, anchor.New);
            m_matches[size_t(anchor.New)] = anchor.Old;
            oldStart = anchor.Old + 1;
            newStart = anchor.New + 1;
        }
        MatchGap(oldStart, qsizetype(m_old.size()), newStart, qsizetype(m_new.size()));
        return m_matches;
    }

private:
    struct Anchor
    {
        qsizetype Old;
        qsizetype New;
    };

    bool Same(qsizetype oldLine, qsizetype newLine) const
    {
        return m_old[size_t(oldLine)].Content == m_new[size_t(newLine)].Content;
    }

    /// Line numbers of the lines that stand once in `lines`; -1 for those that stand more often.
    static QHash<QStringView, qsizetype> SingleLines(const std::vector<Line> &lines)
    {
        QHash<QStringView, qsizetype> single;
        single.reserve(qsizetype(lines.size()));
        for (size_t i = 0; i < lines.size(); ++i) {
            const auto place = single.find(lines[i].Content);
            if (place == single.end())
                single.insert(lines[i].Content, qsizetype(i));
            else
                *place = -1;
        }
        return single;
    }

    /// The longest row of single lines that go up in both texts.
    std::vector<Anchor> Anchors() const
    {
        const auto inOld = SingleLines(m_old);
        const auto inNew = SingleLines(m_new);
        std::vector<Anchor> candidates;
        for (size_t i = 0; i < m_new.size(); ++i) {
            const qsizetype old = inOld.value(m_new[i].Content, -1);
            if (old >= 0 && inNew.value(m_new[i].Content, -1) >= 0)
                candidates.push_back({old, qsizetype(i)});
        }
        std::vector<size_t> tails; // tails[n]: candidate that ends the lowest row of n + 1
        std::vector<qsizetype> before(candidates.size(), -1);
        for (size_t i = 0; i < candidates.size(); ++i) {
            const auto place = std::lower_bound(tails.begin(), tails.end(), candidates[i].Old,
                                                [&](size_t tail, qsizetype old) { return candidates[tail].Old < old; });
            if (place != tails.begin())
                before[i] = qsizetype(*(place - 1));
            if (place == tails.end())
                tails.push_back(i);
            else
                *place = i;
        }
        std::vector<Anchor> anchors;
        for (qsizetype i = tails.empty() ? -1 : qsizetype(tails.back()); i >= 0; i = before[size_t(i)])
            anchors.push_back(candidates[size_t(i)]);
        std::reverse(anchors.begin(), anchors.end());
        return anchors;
    }

    void MatchGap(qsizetype oldStart, qsizetype oldEnd, qsizetype newStart, qsizetype newEnd)
    {
        while (oldEnd > oldStart && newEnd > newStart && Same(oldEnd - 1, newEnd - 1))
            m_matches[size_t(--newEnd)] = --oldEnd;
        for (; newStart < newEnd && oldStart < oldEnd; ++newStart) {
            const qsizetype reach = std::min(oldEnd, oldStart + LookAhead);
            qsizetype old = oldStart;
            while (old < reach && !Same(old, newStart))
                ++old;
            if (old == reach)
                continue;
            m_matches[size_t(newStart)] = old;
            oldStart = old + 1;
        }
    }

    const std::vector<Line> &m_old;
    const std::vector<Line> &m_new;
    std::vector<qsizetype> m_matches;
};

} // namespace

LineEnds DetectLineEnds(QStringView text)
{
    const Counts counts = CountLineEnds(text);
    if ((counts.Lf > 0) + (counts.CrLf > 0) + (counts.Cr > 0) > 1)
        return LineEnds::Mixed;
    return counts.CrLf > 0 ? LineEnds::CrLf : counts.Cr > 0 ? LineEnds::Cr : LineEnds::Lf;
}

LineEnds MajorityLineEnds(QStringView text)
{
    const Counts counts = CountLineEnds(text);
    if (counts.CrLf > counts.Lf && counts.CrLf >= counts.Cr)
        return LineEnds::CrLf;
    return counts.Cr > counts.Lf ? LineEnds::Cr : LineEnds::Lf;
}

QString WithLineEnds(const QString &text, LineEnds ends)
{
    if (ends == LineEnds::Mixed)
        return text;
    const QStringView end = EndText(ends);
    QString result;
    result.reserve(text.size() + text.size() / 16);
    qsizetype start = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] != u'\n' && text[at] != u'\r')
            continue;
        result += QStringView(text).sliced(start, at - start);
        result += end;
        if (text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n')
            ++at;
        start = at + 1;
    }
    result += QStringView(text).sliced(start);
    return result;
}

QString WithLineEndsOf(const QString &text, const QString &old)
{
    const LineEnds ends = DetectLineEnds(old);
    if (ends != LineEnds::Mixed)
        return WithLineEnds(text, ends);

    const QStringView majority = EndText(MajorityLineEnds(old));
    const std::vector<Line> oldLines = SplitLines(old);
    const std::vector<Line> newLines = SplitLines(text);
    const std::vector<qsizetype> matches = LineMatcher(oldLines, newLines).Match();
    QString result;
    result.reserve(text.size() + qsizetype(newLines.size()));
    for (size_t i = 0; i < newLines.size(); ++i) {
        result += newLines[i].Content;
        if (newLines[i].End.isEmpty())
            continue;
        const QStringView oldEnd = matches[i] < 0 ? QStringView() : oldLines[size_t(matches[i])].End;
        result += oldEnd.isEmpty() ? majority : oldEnd;
    }
    return result;
}
