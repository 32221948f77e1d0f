#pragma once

#include <QString>

/// What was looked for last, in the open page or all over the site: the dialogs for both show it again, and Find Next
/// repeats it.
struct FindState
{
    bool ReplaceMode = false; ///< the dialog shows what it takes to replace; set before it opens
    QString FindText;
    QString ReplaceText;
    int FindCount = 0;        ///< characters to look through: negative towards the start of the page
    quint16 FindFlags = 0;    ///< 2 whole words, 4 match case
    bool FindPattern = false; ///< the text is a regular expression; in the source only
};
