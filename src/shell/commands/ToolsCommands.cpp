#include "document/Editor.h"
#include "shell/commands/Commands.h"
#include "shell/FormSettings.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

std::vector<Command> ToolsCommands(Editor &editor)
{
    return {
        {.Name = u"settings"_s,
         .Text = MainForm::tr("&Settings..."),
         .Icon = u"configure"_s,
         .Tip = MainForm::tr("Change how the editor works"),
         .Run = [&editor] { FormSettings(editor.App(), editor.Ini(), editor.Window()).exec(); }},
    };
}
