#include "document/Editor.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/FormSettings.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

std::vector<Command> ToolsCommands(Editor &editor)
{
    return {
        NotYetAvailable({.Name = u"spellck"_s,
                         .Text = MainForm::tr("Spell &Check..."),
                         .Shortcuts = {Qt::Key_F7},
                         .Icon = u"tools-check-spelling"_s}),
        NotYetAvailable({.Name = u"spelloptions"_s, .Text = MainForm::tr("Spelling &Options...")}),
        CommandSeparator(),
        NotYetAvailable({.Name = u"checklinks"_s, .Text = MainForm::tr("Check for Broken &Links")}),
        NotYetAvailable(
            {.Name = u"editstyle"_s, .Text = MainForm::tr("&Edit Style Sheet File"), .Icon = u"text-css"_s}),
        CommandSeparator(),
        {.Name = u"settings"_s,
         .Text = MainForm::tr("&Settings..."),
         .Icon = u"configure"_s,
         .Tip = MainForm::tr("Change how the editor works"),
         .Run = [&editor] { FormSettings(editor.App(), editor.Ini(), editor.Window()).exec(); }},
    };
}
