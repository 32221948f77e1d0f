#pragma once

#include "platform/surface/FindTextDialog.h"

class FileDialogs;
class QsciScintilla;

/// What the source view does with its text as a whole.

/// Selects the next place of the words, and opens its line where that was folded. Plain words, no pattern.
TextFound FindInSource(QsciScintilla &view, const TextQuery &query);

/// Lets the user choose a printer and prints the text in its colours, dark on white.
void PrintSource(QsciScintilla &view, FileDialogs &dialogs);
