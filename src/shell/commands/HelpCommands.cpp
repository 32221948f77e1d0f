#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

std::vector<Command> HelpCommands(const WindowActions &window)
{
    return {
        OrLater({.Name = u"helpcontents"_s,
                 .Text = MainForm::tr("&Contents"),
                 .Shortcuts = {Qt::Key_F1},
                 .Icon = u"help-contents"_s,
                 .Tip = MainForm::tr("Open the manual"),
                 .Run = window.ShowHelp}),
        CommandSeparator(),
        OrLater({.Name = u"helpabout"_s,
                 .Text = MainForm::tr("&About Inkloom"),
                 .Icon = u"help-about"_s,
                 .Tip = MainForm::tr("Version and licence"),
                 .Run = window.ShowAbout}),
    };
}
