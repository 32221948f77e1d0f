#pragma once

#include <QString>

/// Selection as it was marked in page text, and what goes on between design surface and host.
struct SurfaceState
{
    qsizetype SelectionOffset = 0;      ///< 1-based position of the caret in the page text; 0: no place was found
    qsizetype SelectionShift = 0;       ///< how far FixupHTML moved the text before that place
    bool PendingHtmlFromSource = false; ///< DocumentComplete puts the caret back
    bool DisplayChangedBusy = false;    ///< while set, DisplayChanged does nothing
};
