#pragma once

class Editor;

/// What a menu's command and a button of a toolbar both do.

bool CanPrint(Editor &editor);
/// The page as the design view shows it, or its source; in other views nothing.
void PrintPage(Editor &editor);

/// Lets the user choose a colour for the selected text, starting at the one it has.
void ChooseTextColor(Editor &editor);
