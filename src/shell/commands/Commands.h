#pragma once

#include "shell/CommandTable.h"

class Editor;
class QWidget;
class OpenPage;
class WorkArea;

/// The rows of each menu.
std::vector<Command> FileCommands(Editor &editor, OpenPage &pages);
std::vector<Command> EditCommands(Editor &editor);
std::vector<Command> InsertCommands(Editor &editor);
std::vector<Command> FormatCommands(Editor &editor);
std::vector<Command> BlockFormatCommands(Editor &editor); ///< a menu within Format
std::vector<Command> TableCommands(Editor &editor);
std::vector<Command> PositionCommands(Editor &editor);
std::vector<Command> ViewCommands(Editor &editor, WorkArea &area);
std::vector<Command> ToolsCommands(Editor &editor);
std::vector<Command> HelpCommands(QWidget *window);
