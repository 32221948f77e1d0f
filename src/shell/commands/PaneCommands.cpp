#include "shell/commands/Commands.h"
#include "shell/FocusRing.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

std::vector<Command> PaneCommands(FocusRing &ring)
{
    return {
        CommandSeparator(),
        {.Name = u"nextpane"_s,
         .Text = MainForm::tr("Go to Next Pan&e"),
         .Shortcuts = {Qt::Key_F6},
         .Tip = MainForm::tr("Bring the keyboard to the next of toolbars, left pane, page and status bar"),
         .Everywhere = true,
         .Run = [&ring] { ring.Move(1); }},
        {.Name = u"previouspane"_s,
         .Text = MainForm::tr("&Go to Previous Pane"),
         .Shortcuts = {Qt::SHIFT | Qt::Key_F6},
         .Tip = MainForm::tr("Bring the keyboard back to the pane before"),
         .Everywhere = true,
         .Run = [&ring] { ring.Move(-1); }},
    };
}
