#pragma once

#include <QString>

/// Selection as it was marked in page text, and what goes on between design surface and host.
struct SurfaceState
{
    qsizetype SelectionOffset = 0;      ///< 1-based position of the selection in PendingHtml; 0: no place was found
    qsizetype SelectionLength = 0;      ///< of SelectedHtml
    QString SelectedHtml;               ///< what is selected, as it stands in PendingHtml
    QString PendingHtml;                ///< the page text in which the selection was marked, without the mark
    qsizetype SelectionShift = 0;       ///< how far FixupHTML moved the text before that place
    bool MarkingForSource = false;      ///< the selection is marked on the way to the source view
    bool SelectionIsControl = false;    ///< an object is selected as a whole
    int SavedCaretChars = 0;            ///< caret as a count of characters, from SaveSelection
    bool PendingHtmlFromSource = false; ///< DocumentComplete puts the caret back
    bool DisplayChangedBusy = false;    ///< while set, DisplayChanged does nothing
};
