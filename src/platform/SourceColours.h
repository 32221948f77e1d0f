#pragma once

#include <QColor>
#include <QPalette>

class QsciLexerHTML;
class QsciScintilla;

/// Colours of the source view, worked out from a palette: its own text and paper, and hues that can be read on that
/// paper, be it light or dark.
struct SourceColours
{
    explicit SourceColours(const QPalette &palette);

    QColor Text;
    QColor Paper;
    QColor ScriptPaper; ///< behind script, Paper with a hint of blue
    QColor ServerPaper; ///< behind PHP and other server code, Paper with a hint of red
    QColor CurrentLine;
    QColor MarginText;
    QColor MarginPaper;

    QColor Tag;
    QColor Attribute;
    QColor String; ///< attribute values and strings of any language
    QColor Comment;
    QColor Entity;
    QColor Keyword;
    QColor Number;
    QColor Variable;
    QColor Delimiter; ///< the marks around server code
    QColor Error;
};

/// Gives all styles of the lexer their font and colours. Loses what was set on them before.
void ColourLexer(QsciLexerHTML &lexer, const SourceColours &colours);

/// Colours everything around the text: margins, caret, selection, fold marks, braces, the current line.
void ColourEditor(QsciScintilla &editor, const SourceColours &colours, const QPalette &palette);
