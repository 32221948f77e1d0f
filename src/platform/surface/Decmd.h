#pragma once

#include <QMetaType>
#include <QString>

/// Commands that the design surface runs (ExecCommand) and answers for (QueryStatus).
enum Decmd {
    DECMD_UNDO = 1,
    DECMD_REDO,
    DECMD_CUT,
    DECMD_COPY,
    DECMD_PASTE,
    DECMD_DELETE,
    DECMD_SELECTALL,
    DECMD_FINDTEXT, ///< raises FindTextWanted: what is looked for is asked in a window that the source view shares

    DECMD_BOLD,
    DECMD_ITALIC,
    DECMD_UNDERLINE,
    DECMD_FONT,         ///< with ExecOption::PromptUser: asks for font, size and colour
    DECMD_GETFONTNAME,  ///< a QString; "" where fonts differ
    DECMD_SETFONTNAME,  ///< argument: family
    DECMD_GETFONTSIZE,  ///< an int, 1 to 7; invalid where sizes differ
    DECMD_SETFONTSIZE,  ///< argument: 1 to 7
    DECMD_GETFORECOLOR, ///< "#RRGGBB"
    DECMD_SETFORECOLOR, ///< argument: "#RRGGBB"

    DECMD_GETBLOCKFMT,      ///< one of the names below; "" where formats differ
    DECMD_SETBLOCKFMT,      ///< argument: one of the names below
    DECMD_GETBLOCKFMTNAMES, ///< gives a QStringList, in the order in which the format box shows the names
    DECMD_JUSTIFYLEFT,
    DECMD_JUSTIFYCENTER,
    DECMD_JUSTIFYRIGHT,
    DECMD_ORDERLIST,
    DECMD_UNORDERLIST,
    DECMD_INDENT,
    DECMD_OUTDENT,

    DECMD_HYPERLINK, ///< argument: the address that the selection is to lead to
    DECMD_UNLINK,
    DECMD_IMAGE, ///< argument: the address of a picture to put in

    DECMD_INSERTTABLE, ///< argument: an InsertTableParam, which the answer carries back
    DECMD_INSERTROW,
    DECMD_INSERTCOL,
    DECMD_INSERTCELL,
    DECMD_DELETEROWS,
    DECMD_DELETECOLS,
    DECMD_DELETECELLS,
    DECMD_MERGECELLS,
    DECMD_SPLITCELL,

    DECMD_MAKE_ABSOLUTE, ///< or back into the flow of the text; latched: the element is positioned
    DECMD_BRING_TO_FRONT,
    DECMD_SEND_TO_BACK,
    DECMD_BRING_FORWARD,
    DECMD_SEND_BACKWARD,
    DECMD_BRING_ABOVE_TEXT,
    DECMD_SEND_BELOW_TEXT,
    DECMD_LOCK_ELEMENT
};

/// What the surface says of a command. Below 3 it is not available.
enum Decmdf {
    DECMDF_NOTSUPPORTED = 0,
    DECMDF_DISABLED = 1,
    DECMDF_ENABLED = 3,
    DECMDF_LATCHED = 7, ///< holds for the whole selection
    DECMDF_NINCHED = 11 ///< holds for a part of it
};

/// Whether a command may ask the user for what it needs.
enum class ExecOption { DoDefault = 0, PromptUser = 1, DontPromptUser = 2 };

/// What DECMD_INSERTTABLE makes. Attributes are the text behind "<TABLE" and "<TD" of each cell; Caption is plain text,
/// no caption when empty.
struct InsertTableParam
{
    int NumRows = 1;
    int NumCols = 1;
    QString TableAttrs = {};
    QString CellAttrs = {};
    QString Caption = {};
};
Q_DECLARE_METATYPE(InsertTableParam)
