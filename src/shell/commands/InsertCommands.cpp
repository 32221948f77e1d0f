#include "document/Editor.h"
#include "editing/EditingDialogs.h"
#include "editing/FormBookmark.h"
#include "editing/InsertHTMLDlg.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

namespace {

CommandState CanPaste(Editor &editor)
{
    const bool possible = editor.Page().ActiveTab == ViewTab::Normal && !editor.Surface().Busy();
    return possible ? CommandState::Enabled : CommandState::Disabled;
}

/// What would take the place of a selected object is not offered there.
CommandState CanPasteAtText(Editor &editor)
{
    if (CanPaste(editor) == CommandState::Disabled || editor.Surface().SelectionType() == "Control"_L1)
        return CommandState::Disabled;
    return CommandState::Enabled;
}

Command Markup(Editor &editor, Command row, const QString &html, CommandState (*state)(Editor &))
{
    row.StateOnDrop = true;
    row.Run = [&editor, html] { editor.Surface().DOM().PasteHTML(html); };
    row.State = [&editor, state] { return state(editor); };
    return row;
}

} // namespace

std::vector<Command> InsertCommands(Editor &editor, const EditingDialogs &dialogs)
{
    return {
        SurfaceRow(editor, DECMD_IMAGE,
                   {.Name = u"InsertSub(0)"_s,
                    .Text = MainForm::tr("&Graphic..."),
                    .Icon = u"insert-image"_s,
                    .Tip = MainForm::tr("Insert a picture, or change the one that is selected"),
                    .Run =
                        [&editor, &dialogs] {
                            editor.Selection().ImageDialogEditing = 0;
                            dialogs.OpenImage();
                        }}),
        SurfaceRow(editor, DECMD_HYPERLINK,
                   {.Name = u"InsertSub(1)"_s,
                    .Text = MainForm::tr("&Hyperlink..."),
                    .Shortcuts = {Qt::CTRL | Qt::Key_K},
                    .Icon = u"insert-link"_s,
                    .Tip = MainForm::tr("Make the selection a link, or change the link at the caret"),
                    .Run = [&dialogs] { dialogs.OpenHyperlink(); }}),
        {.Name = u"insertboomkark"_s,
         .Text = MainForm::tr("&Bookmark..."),
         .Icon = u"bookmark-new"_s,
         .Tip = MainForm::tr("Insert a named place that links can lead to"),
         .StateOnDrop = true,
         .Run = [&editor] { FormBookmark(editor.Surface(), editor.Window()).exec(); },
         .State = [&editor] { return CanPaste(editor); }},
        CommandSeparator(),
        Markup(editor,
               {.Name = u"horizline"_s,
                .Text = MainForm::tr("Horizontal &Line"),
                .Icon = u"insert-horizontal-rule"_s,
                .Tip = MainForm::tr("Insert a line across the page")},
               u"<HR>"_s, CanPaste),
        Markup(editor,
               {.Name = u"InsertButton"_s, .Text = MainForm::tr("B&utton"), .Tip = MainForm::tr("Insert a button")},
               u"<BUTTON TITLE=Button>Button!</BUTTON>"_s, CanPasteAtText),
        {.Name = u"InsertHTML"_s,
         .Text = MainForm::tr("&HTML Code..."),
         .Icon = u"format-text-code"_s,
         .Tip = MainForm::tr("Insert HTML that you type"),
         .StateOnDrop = true,
         .Run = [&editor] { InsertHTMLDlg(editor.Surface(), editor.Window()).exec(); },
         .State = [&editor] { return CanPasteAtText(editor); }},
        CommandSeparator(),
        NotYetAvailable({.Name = u"insertexpsec"_s, .Text = MainForm::tr("&Expanding/Contracting Section...")}),
        NotYetAvailable({.Name = u"insertpopup"_s, .Text = MainForm::tr("&Pop-up/Secondary Window Link...")}),
    };
}
