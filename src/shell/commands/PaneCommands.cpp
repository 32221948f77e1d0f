#include "shell/commands/Commands.h"
#include "shell/FocusRing.h"
#include "shell/MainForm.h"
#include "shell/WindowPanes.h"

using namespace Qt::StringLiterals;

std::vector<Command> PaneCommands(WindowPanes &panes, FocusRing &ring)
{
    const QString hide = MainForm::tr("&Hide Files/Form Builder Pane");
    return {
        CommandSeparator(),
        {.Name = u"hidepane"_s,
         .Text = hide,
         .Shortcuts = {Qt::Key_F9},
         .Tip = MainForm::tr("Give its room to the page, or bring it back"),
         .Run = [&panes] { panes.PaneHidden() ? panes.ShowPane() : panes.HidePane(); },
         .Caption = [&panes,
                     hide] { return panes.PaneHidden() ? MainForm::tr("&Show Files/Form Builder Pane") : hide; }},
        {.Name = u"nextpane"_s,
         .Text = MainForm::tr("Go to Next Pan&e"),
         .Shortcuts = {Qt::Key_F6},
         .Tip = MainForm::tr("Bring the keyboard from toolbars to left pane, page and status bar"),
         .Run = [&ring] { ring.Move(1); }},
        {.Name = u"previouspane"_s,
         .Text = MainForm::tr("Go to Previo&us Pane"),
         .Shortcuts = {Qt::SHIFT | Qt::Key_F6},
         .Tip = MainForm::tr("The same the other way around"),
         .Run = [&ring] { ring.Move(-1); }},
    };
}
