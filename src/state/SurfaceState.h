#pragma once

#include <QString>

/// What goes on between design surface and host: keys, context menu, drags, and the selection as it was marked in page
/// text.
struct SurfaceState
{
    bool ShiftDown = false; ///< the keys, as the events of the surface tell
    bool CtrlDown = false;
    bool AltDown = false; ///< one press of Alt follows one link

    // What was there when a context menu was built. Once set, each of the three stays set until the program ends.
    bool ContextHasPosition = false;  ///< the position of the selection can be made absolute, or is
    bool ContextIsPositioned = false; ///< the order of positioned elements can be changed
    bool ContextHasTable = false;     ///< rows can be inserted
    int ContextBaseCount = 6;         ///< index of the last item of the menu's fixed block
    int ContextPositionCount = 0;     ///< items on position behind it: 2 or 0
    int ContextTableCount = 0;        ///< items on tables behind these: 11 or 0

    int PendingDialog = 0;      ///< what Timer1 is to open: 0 nothing, 1 cell properties, 2 table properties
    int CellScope = 0;          ///< of the cell properties to open: 0 cell, 1 row, 2 column
    int ImageDialogEditing = 0; ///< set to 0 before the graphic dialog opens from a menu or a double click
    QString LastCutMarkup;      ///< outer markup of the object that Edit > Cut met last

    int DragState = -1;     ///< 1 while something is dragged from the left pane, -1 otherwise
    bool DropArmed = false; ///< the drag has been over the surface
    QString DropMarkup;     ///< what the drag inserts, or "exform" for a form element
    QString DropKind;       ///< which form element

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
