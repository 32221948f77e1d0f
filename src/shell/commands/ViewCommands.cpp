#include "document/Editor.h"
#include "shell/commands/Commands.h"
#include "shell/MainForm.h"
#include "shell/WorkArea.h"

using namespace Qt::StringLiterals;

namespace {

Command ViewRow(Editor &editor, WorkArea &area, const QString &name, const QString &text, const QString &tip,
                ViewTab view)
{
    return {.Name = name,
            .Text = text,
            .Tip = tip,
            .CanTick = true,
            .Run = [&area, view] { area.Choose(view); },
            .State = [&editor,
                      view] { return editor.Page().ActiveTab == view ? CommandState::Ticked : CommandState::Enabled; }};
}

} // namespace

std::vector<Command> ViewCommands(Editor &editor, WorkArea &area)
{
    return {
        ViewRow(editor, area, u"viewnormal"_s, MainForm::tr("&Normal"), MainForm::tr("Edit the page as it looks"),
                ViewTab::Normal),
        ViewRow(editor, area, u"viewsource"_s, MainForm::tr("&HTML Source"), MainForm::tr("Edit the text of the page"),
                ViewTab::HtmlSource),
        CommandSeparator(),
        {.Name = u"viewnext"_s,
         .Text = MainForm::tr("Ne&xt View"),
         .Shortcuts = {Qt::CTRL | Qt::Key_PageDown},
         .Icon = u"go-next"_s,
         .Tip = MainForm::tr("Show the page in the next view"),
         .Run = [&area] { area.Choose(area.Neighbour(1)); }},
        {.Name = u"viewprevious"_s,
         .Text = MainForm::tr("&Previous View"),
         .Shortcuts = {Qt::CTRL | Qt::Key_PageUp},
         .Icon = u"go-previous"_s,
         .Tip = MainForm::tr("Show the page in the previous view"),
         .Run = [&area] { area.Choose(area.Neighbour(-1)); }},
    };
}
