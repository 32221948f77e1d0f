#pragma once

#include <QRect>

class FileDialogs;
class QsciScintilla;

/// What the source view does beyond editing.

/// Lets the user choose a printer and prints the text in its colours, dark on white.
void PrintSource(QsciScintilla &view, FileDialogs &dialogs);

/// What the selected text covers on the screen, from its first line to its last; empty when nothing is selected.
QRect SelectionOnScreen(const QsciScintilla &view);
