#include "shell/commands/SurfaceRows.h"

#include "document/Editor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/MainForm.h"

CommandState StateOnSurface(Editor &editor, Decmd command)
{
    DesignSurface &surface = editor.Surface();
    if (editor.Page().ActiveTab != ViewTab::Normal || surface.Busy())
        return CommandState::Disabled;
    const Decmdf status = surface.QueryStatus(command);
    if (status < DECMDF_ENABLED)
        return CommandState::Disabled;
    return status == DECMDF_LATCHED ? CommandState::Ticked : CommandState::Enabled;
}

Command SurfaceRow(Editor &editor, Decmd command, Command row)
{
    row.StateOnDrop = true;
    if (!row.Run)
        row.Run = [&editor, command] { editor.Surface().ExecCommand(command); };
    if (!row.State)
        row.State = [&editor, command] { return StateOnSurface(editor, command); };
    return row;
}

Command NotYetAvailable(Command row)
{
    row.Tip = MainForm::tr("Not available yet");
    row.Later = true;
    return row;
}

Command OrLater(Command row)
{
    return row.Run ? row : NotYetAvailable(std::move(row));
}
