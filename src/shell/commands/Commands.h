#pragma once

#include "shell/CommandTable.h"

#include <functional>

class Editor;
class FindTools;
class FocusRing;
class OpenPage;
class PreviewView;
class QWidget;
class WorkArea;
struct EditingDialogs;

/// What commands ask of other parts of the window. The row of one that is missing when the menus are built is not
/// available yet.
struct WindowActions
{
    std::function<void()> TogglePane; ///< collapses the left pane, or brings it back
    std::function<bool()> PaneHidden;
};

/// The rows of each menu.
std::vector<Command> FileCommands(Editor &editor, OpenPage &pages);
std::vector<Command> EditCommands(Editor &editor, FindTools &find);
std::vector<Command> InsertCommands(Editor &editor, const EditingDialogs &dialogs);
std::vector<Command> FormatCommands(Editor &editor);
std::vector<Command> BlockFormatCommands(Editor &editor); ///< a menu within Format
std::vector<Command> FormCommands();
std::vector<Command> TableCommands(Editor &editor, const EditingDialogs &dialogs);
std::vector<Command> PositionCommands(Editor &editor);
std::vector<Command> ViewCommands(Editor &editor, WorkArea &area, const WindowActions &window);
std::vector<Command> PaneCommands(FocusRing &ring); ///< at the end of the View menu
std::vector<Command> ToolsCommands(Editor &editor);
std::vector<Command> HelpCommands(QWidget *window);

/// The buttons of `tbToolBar` and `Toolbar1`, in order. Those that do the same as a menu's command run that one, which
/// must be in `table` by then.
std::vector<Command> PageButtons(Editor &editor, PreviewView &preview, CommandTable &table);
std::vector<Command> FormatButtons(Editor &editor);
