#pragma once

#include "platform/surface/merge/MarkupTokens.h"
#include "platform/surface/merge/MergedText.h"

#include <QString>

/// Brings changes that were made to a page in the engine back into the text that its author wrote: what did not change
/// stays as it was written, spelling, quotes, order, line ends, omitted tags and all.
///
/// Three texts of one page: `written`, the author's; `base`, how the engine writes the page right after it was loaded;
/// and how it writes the page now. What differs between the last two is looked up in `written` and changed there.
/// Texts are compared piece by piece (MarkupTokens.h). No engine is used here, so a change of tags can come out
/// differently when it is read again: who asked then tries the next reach.
class SourceMerger
{
public:
    SourceMerger(QString written, QString base);
    ~SourceMerger();

    /// How much around a change is taken from the engine's text.
    enum class Reach {
        Smallest,  ///< the change, and the tags beside it that the author omitted
        Element,   ///< the element that the change lies in, if its tags are written
        Around,    ///< the element around that one
        Everything ///< the whole page
    };

    struct Result
    {
        MergedText Page;
        /// 0: reads as wanted for sure, since nothing but words or values of attributes changed. Else a number for the
        /// changes that it takes a parser to judge: the same for the same changes.
        quint64 Doubt = 0;
    };
    /// Reads both texts, which the first merge does otherwise.
    void Prepare();
    /// Linear in the texts but for the places that changed.
    Result Merge(const QString &now, Reach reach = Reach::Smallest);

    const QString &Written() const { return m_written; }
    const QString &Base() const { return m_base; }

private:
    friend class MergeRun;

    QString m_written;
    QString m_base;
    bool m_prepared = false;
    TokenizedMarkup m_writtenTokens;
    TokenizedMarkup m_baseTokens;
    std::vector<qint32> m_places; ///< of each token of the base its equal in the written text, -1: none
};
