#pragma once

#include "platform/surface/Decmd.h"
#include "shell/CommandTable.h"

class Editor;

/// Rows that stand for a command of the design surface, as most menus have them.

/// Ticked where the command is latched; disabled in every view but Normal, and where the surface says so.
CommandState StateOnSurface(Editor &editor, Decmd command);

/// Fills in what running and state are where `row` brings none of its own.
Command SurfaceRow(Editor &editor, Decmd command, Command row);

/// A row whose dialog is still to come: it shows where it will be and says so.
Command NotYetAvailable(Command row);
/// The same for a row that nobody runs yet.
Command OrLater(Command row);
