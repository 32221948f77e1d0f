#include "document/Editor.h"
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

Command Later(int index, const QString &text)
{
    return NotYetAvailable({.Name = u"tablesub(%1)"_s.arg(index), .Text = text});
}

} // namespace

std::vector<Command> TableCommands(Editor &editor)
{
    Command insert =
        Row(editor, 0, DECMD_INSERTTABLE, MainForm::tr("&Insert Table..."), MainForm::tr("Insert a table"), u"table"_s);
    insert.Run = [&editor] { // until there is a dialog that asks
        editor.save_sourceblank_error();
        const InsertTableParam plain{.NumRows = 3, .NumCols = 3, .TableAttrs = u" border=1 width=\"100%\""_s};
        editor.Surface().ExecCommand(DECMD_INSERTTABLE, ExecOption::DontPromptUser, QVariant::fromValue(plain));
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
        Later(13, MainForm::tr("&Cell Properties")),
        Later(14, MainForm::tr("&Row Properties")),
        Later(15, MainForm::tr("C&olumn Properties")),
        Later(16, MainForm::tr("&Table Properties")),
    };
}
