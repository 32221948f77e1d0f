#pragma once

#include "platform/surface/Islands.h"
#include "platform/surface/MarkupText.h"

/// Writes protected text: copies the page up to each island and puts the island's token. Nothing is written, nor any
/// token chosen, before the first island comes.
class IslandWriter
{
public:
    IslandWriter(const QString &page, const MarkupSource &source) : m_page(page), m_source(source) {}

    /// Copies what has not been copied yet.
    void CopyTo(qsizetype end);
    /// The same without the blocks in it.
    void CopyToWithoutBlocks(qsizetype end);
    /// What stands up to `position` is taken as copied; may go back.
    void GoTo(qsizetype position) { m_copied = position; }

    /// An island in the place where it stands; `openEnded` when it runs to the end of the page without its end mark.
    void Comment(TextRange range, bool openEnded = false);
    void Token(TextRange range, IslandPlace place, bool openEnded = false);
    /// One more token of an island that has got its number.
    void Again(TextRange range, qsizetype number);
    /// Tokens for all blocks that start in the range.
    void TokensIn(TextRange range);
    /// Comments for all blocks that start in the range, written here and now: the place is up to the caller.
    void CommentsHere(TextRange range);

    qsizetype LastNumber() const { return m_result.Islands.size() - 1; }
    ProtectedText Finish();

private:
    qsizetype Keep(TextRange range, IslandPlace place, bool openEnded);
    void ChooseTokenCharacters();
    void PutNumber(qsizetype number, QChar close);
    bool IsOpenEnded(TextRange range) const;

    const QString &m_page;
    const MarkupSource &m_source;
    ProtectedText m_result;
    qsizetype m_copied = 0;
    bool m_noTokens = false; ///< the page uses nearly every character there is
};
