#include "document/Editor.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"
#include "shell/WorkArea.h"

using namespace Qt::StringLiterals;

namespace {

Command ViewRow(Editor &editor, WorkArea &area, const QString &name, const QString &text, const QString &tip,
                ViewTab view, const QList<QKeySequence> &keys)
{
    return {.Name = name,
            .Text = text,
            .Shortcuts = keys,
            .Tip = tip,
            .CanTick = true,
            .Everywhere = true,
            .Run = [&area, view] { area.Choose(view); },
            .State = [&editor,
                      view] { return editor.Page().ActiveTab == view ? CommandState::Ticked : CommandState::Enabled; }};
}

/// An item that switches something of the design view on and off.
Command OptionRow(Editor &editor, int index, const QString &text, const QString &tip)
{
    return {.Name = u"ViewSub"_s + QString::number(index),
            .Text = text,
            .Tip = tip,
            .CanTick = true,
            .Run = [&editor, index] { editor.ViewSub_Click(index); },
            .State =
                [&editor, index] {
                    if (!editor.ViewSubPossible(index))
                        return CommandState::Disabled;
                    return editor.ViewSubTicked(index) ? CommandState::Ticked : CommandState::Enabled;
                }};
}

Command PaneRow(const WindowActions &window)
{
    return OrLater({.Name = u"hidepane"_s,
                    .Text = MainForm::tr("&Hide Files/Form Builder Pane"),
                    .Shortcuts = {Qt::Key_F9},
                    .Tip = MainForm::tr("Make room for the page, or show the files again"),
                    .Everywhere = true,
                    .Run = window.TogglePane,
                    .Caption = [hidden = window.PaneHidden] {
                        return hidden && hidden() ? MainForm::tr("&Show Files/Form Builder Pane")
                                                  : MainForm::tr("&Hide Files/Form Builder Pane");
                    }});
}

} // namespace

std::vector<Command> ViewCommands(Editor &editor, WorkArea &area, const WindowActions &window)
{
    return {
        ViewRow(editor, area, u"viewnormal"_s, MainForm::tr("&Normal"), MainForm::tr("Edit the page as it looks"),
                ViewTab::Normal, {Qt::CTRL | Qt::Key_1}),
        ViewRow(editor, area, u"viewproperties"_s, MainForm::tr("Page P&roperties"),
                MainForm::tr("Title, style sheet and description of the page"), ViewTab::PageProperties,
                {Qt::CTRL | Qt::Key_2}),
        ViewRow(editor, area, u"viewsource"_s, MainForm::tr("HTM&L Source"), MainForm::tr("Edit the text of the page"),
                ViewTab::HtmlSource, {Qt::CTRL | Qt::Key_3}),
        ViewRow(editor, area, u"viewpreview"_s, MainForm::tr("Pre&view"),
                MainForm::tr("The page as a browser shows it, unsaved words too"), ViewTab::Preview,
                {Qt::Key_F12, Qt::CTRL | Qt::Key_4}),
        ViewRow(editor, area, u"viewpublish"_s, MainForm::tr("Pu&blish (FTP)"),
                MainForm::tr("Bring the page to a server"), ViewTab::Publish, {Qt::CTRL | Qt::Key_5}),
        CommandSeparator(),
        {.Name = u"viewnext"_s,
         .Text = MainForm::tr("Ne&xt View"),
         .Shortcuts = {Qt::CTRL | Qt::Key_PageDown},
         .Icon = u"go-next"_s,
         .Tip = MainForm::tr("Show the page in the next view"),
         .Everywhere = true,
         .Run = [&area] { area.Choose(area.Neighbour(1)); }},
        {.Name = u"viewprevious"_s,
         .Text = MainForm::tr("&Previous View"),
         .Shortcuts = {Qt::CTRL | Qt::Key_PageUp},
         .Icon = u"go-previous"_s,
         .Tip = MainForm::tr("Show the page in the previous view"),
         .Everywhere = true,
         .Run = [&area] { area.Choose(area.Neighbour(-1)); }},
        CommandSeparator(),
        OptionRow(editor, 0, MainForm::tr("B&orders"),
                  MainForm::tr("Show lines around tables and cells that have no border")),
        OptionRow(editor, 1, MainForm::tr("Document &Details"),
                  MainForm::tr("Show marks for anchors, comments, scripts and line breaks")),
        OptionRow(editor, 2, MainForm::tr("Preserve HTML Source &Formatting"),
                  MainForm::tr("Keep the source of what is not changed as it was written")),
        OptionRow(editor, 3, MainForm::tr("Keep &Untouched Source Exactly"),
                  MainForm::tr("Clean up only what was changed")),
        CommandSeparator(),
        PaneRow(window),
        NotYetAvailable({.Name = u"viewbrowse"_s, .Text = MainForm::tr("&Current Page in Browser(s)")}),
    };
}
