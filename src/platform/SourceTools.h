#pragma once

class FileDialogs;
class QsciScintilla;

/// What the source view does with its text as a whole.

/// Lets the user choose a printer and prints the text in its colours, dark on white.
void PrintSource(QsciScintilla &view, FileDialogs &dialogs);
