#include "document/Editor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

namespace {

CommandState StateOf(Editor &editor, Decmd command)
{
    DesignSurface &surface = editor.Surface();
    if (editor.Page().ActiveTab != ViewTab::Normal || surface.Busy())
        return CommandState::Disabled;
    const Decmdf status = surface.QueryStatus(command);
    if (status < DECMDF_ENABLED)
        return CommandState::Disabled;
    return status == DECMDF_LATCHED ? CommandState::Ticked : CommandState::Enabled;
}

Command Row(Editor &editor, const QString &name, const QString &text, const QKeySequence &key, const QString &icon,
            const QString &tip, Decmd command)
{
    return {.Name = name,
            .Text = text,
            .Shortcuts = {key},
            .Icon = icon,
            .Tip = tip,
            .CanTick = true,
            .StateOnDrop = true,
            .Run = [&editor, command] { editor.Surface().ExecCommand(command); },
            .State = [&editor, command] { return StateOf(editor, command); }};
}

} // namespace

std::vector<Command> FormatCommands(Editor &editor)
{
    return {
        Row(editor, u"formatbold"_s, MainForm::tr("&Bold"), Qt::CTRL | Qt::Key_B, u"format-text-bold"_s,
            MainForm::tr("Make the selection bold, or not bold any more"), DECMD_BOLD),
        Row(editor, u"formatitalic"_s, MainForm::tr("&Italic"), Qt::CTRL | Qt::Key_I, u"format-text-italic"_s,
            MainForm::tr("Make the selection italic, or upright again"), DECMD_ITALIC),
        Row(editor, u"formatunderline"_s, MainForm::tr("&Underline"), Qt::CTRL | Qt::Key_U, u"format-text-underline"_s,
            MainForm::tr("Underline the selection, or take the line away"), DECMD_UNDERLINE),
    };
}
