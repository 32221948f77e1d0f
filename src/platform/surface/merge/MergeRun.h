#pragma once

#include "platform/surface/merge/MergeSource.h"

/// One merge: the changes between base and now, carried over to the written text.
class MergeRun
{
public:
    MergeRun(const SourceMerger &merger, const QString &now, SourceMerger::Reach reach);
    SourceMerger::Result Run();

private:
    /// A stretch of base tokens that became a stretch of tokens of now. All bounds are token numbers; Now* count in
    /// m_now, which is about the middle of the page only.
    struct Hunk
    {
        qsizetype BaseStart;
        qsizetype BaseEnd;
        qsizetype NowStart;
        qsizetype NowEnd;
    };
    /// What is put in place of a piece of the written text.
    struct Edit
    {
        qsizetype Start; ///< in characters
        qsizetype End;
        QString Text;
        MergedText::Part Kind;
    };
    /// Of tokens of the written text.
    struct Range
    {
        qsizetype Start;
        qsizetype End;
    };

    void ReadMiddle();
    void ReadAll();
    bool IsLandmark(qsizetype baseToken) const;
    std::vector<Hunk> FindHunks() const;
    void Slide(Hunk &hunk) const;
    std::vector<Hunk> Widened(const std::vector<Hunk> &hunks) const;
    void Widen(Hunk &hunk) const;
    bool WidenToElement(Hunk &hunk) const;
    qsizetype OpeningBefore(qsizetype token) const;
    qsizetype ClosingBehind(qsizetype token) const;

    void Apply(const Hunk &hunk);
    bool ApplyPairs(const Hunk &hunk);
    bool ApplyText(const Hunk &hunk);
    void ApplyPlain(const Hunk &hunk);
    void Doubt(const Hunk &hunk);
    void Put(Range written, QString text, MergedText::Part kind);
    SourceMerger::Result Finish() const;

    bool IsTextOnly(const Hunk &hunk) const;
    bool KeepsRun(const Hunk &hunk) const;
    Range WrittenRange(const Hunk &hunk) const;
    Range InsertionPlace(const Hunk &hunk, Range gap) const;
    bool IsIgnorable(Range written) const;
    Range GapAround(const Hunk &hunk) const;

    qint32 Place(qsizetype token) const { return m_merger.m_places[size_t(token)]; }
    const MarkupToken &Base(qsizetype token) const { return m_merger.m_baseTokens.Tokens[size_t(token)]; }
    const MarkupToken &Written(qsizetype token) const { return m_merger.m_writtenTokens.Tokens[size_t(token)]; }
    const MarkupToken &Now(qsizetype token) const { return m_nowTokens[size_t(token)]; }
    qsizetype BaseCount() const { return qsizetype(m_merger.m_baseTokens.Tokens.size()); }
    qsizetype WrittenCount() const { return qsizetype(m_merger.m_writtenTokens.Tokens.size()); }
    qsizetype WrittenStart(qsizetype token) const;
    QString NowText(qsizetype from, qsizetype to) const;
    QString WrittenText(Range range) const;

    const SourceMerger &m_merger;
    const QString &m_now;
    SourceMerger::Reach m_reach;
    MarkupTokens m_nowTokens;   ///< of the page now, from the first one that may differ to the last
    qsizetype m_firstBase = 0;  ///< number of the base token where those start
    qsizetype m_behindBase = 0; ///< number of the base token behind them
    std::vector<Edit> m_edits;
    quint64 m_doubt = 0;
    bool m_failed = false; ///< the changes got into each other's way
};
