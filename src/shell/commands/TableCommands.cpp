#include "document/Editor.h"
#include "editing/EditingDialogs.h"
#include "editing/InsertTableDlg.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

namespace {

Command Row(Editor &editor, int index, Decmd command, const QString &text, const QString &tip, const QString &icon = {})
{
    return SurfaceRow(
        editor, command,
        {.Name = u"tablesub(%1)"_s.arg(index), .Text = text, .Icon = icon, .Tip = tip, .Run = [=, &editor] {
             editor.save_sourceblank_error();
             editor.Surface().ExecCommand(command);
         }});
}

/// A row that opens the dialog on the cell, its row or its column.
Command CellRow(Editor &editor, const EditingDialogs &dialogs, int index, int scope, const QString &text,
                const QString &tip)
{
    Command row = Row(editor, index, DECMD_INSERTCELL, text, tip);
    row.Run = [&editor, &dialogs, scope] {
        editor.save_sourceblank_error();
        editor.Selection().CellScope = scope;
        dialogs.OpenCellProperties();
    };
    return row;
}

} // namespace

std::vector<Command> TableCommands(Editor &editor, const EditingDialogs &dialogs)
{
    Command insert =
        Row(editor, 0, DECMD_INSERTTABLE, MainForm::tr("&Insert Table..."), MainForm::tr("Insert a table"), u"table"_s);
    insert.Run = [&editor] {
        editor.save_sourceblank_error();
        InsertTableDlg(editor, editor.Window()).exec();
    };
    Command properties = Row(editor, 16, DECMD_INSERTCELL, MainForm::tr("&Table Properties"),
                             MainForm::tr("Change the look of the table"));
    properties.Run = [&editor, &dialogs] {
        editor.save_sourceblank_error();
        dialogs.OpenTableProperties();
    };
    return {
        insert,
        CommandSeparator(),
        Row(editor, 2, DECMD_INSERTROW, MainForm::tr("Insert &Row"), MainForm::tr("Insert a row"),
            u"edit-table-insert-row-below"_s),
        Row(editor, 3, DECMD_INSERTCOL, MainForm::tr("Insert &Column"), MainForm::tr("Insert a column"),
            u"edit-table-insert-column-right"_s),
        Row(editor, 4, DECMD_INSERTCELL, MainForm::tr("Insert C&ell"), MainForm::tr("Insert a cell into the row")),
        CommandSeparator(),
        Row(editor, 6, DECMD_DELETEROWS, MainForm::tr("&Delete Row"), MainForm::tr("Delete the selected rows"),
            u"edit-table-delete-row"_s),
        Row(editor, 7, DECMD_DELETECOLS, MainForm::tr("De&lete Column"), MainForm::tr("Delete the selected columns"),
            u"edit-table-delete-column"_s),
        Row(editor, 8, DECMD_DELETECELLS, MainForm::tr("Dele&te Cells"), MainForm::tr("Delete the selected cells")),
        CommandSeparator(),
        Row(editor, 10, DECMD_MERGECELLS, MainForm::tr("&Merge Cells"),
            MainForm::tr("Make one cell of the selected ones"), u"edit-table-cell-merge"_s),
        Row(editor, 11, DECMD_SPLITCELL, MainForm::tr("&Split Cell"), MainForm::tr("Divide the cell"),
            u"edit-table-cell-split"_s),
        CommandSeparator(),
        CellRow(editor, dialogs, 13, 0, MainForm::tr("&Cell Properties"), MainForm::tr("Change the look of the cell")),
        CellRow(editor, dialogs, 14, 1, MainForm::tr("&Row Properties"),
                MainForm::tr("Change the look of all cells of the row")),
        CellRow(editor, dialogs, 15, 2, MainForm::tr("C&olumn Properties"),
                MainForm::tr("Change the look of all cells of the column")),
        properties,
    };
}
