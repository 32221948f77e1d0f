#pragma once

#include <QRect>
#include <QString>
#include <QWidget>

#include <memory>

class FileDialogs;

/// The source view: HTML with embedded script, style sheets and PHP in colour, line numbers, folding, brace matching
/// and soft wrap. Text goes in and out exactly as it is, line ends included. Colours follow the palette, dark or light.
///
/// Positions are 1-based UTF-16 units in `Text()`; a position outside the text is taken as its nearer end, and one
/// between the halves of a surrogate pair as the place before that pair.
///
/// Only the usual editing keys belong to the view (arrows, undo, clipboard, ...); every other shortcut reaches the
/// actions of the window around it.
class SourceEditor : public QWidget
{
    Q_OBJECT

public:
    explicit SourceEditor(QWidget *parent = nullptr);
    ~SourceEditor() override;

    QString Text() const;
    /// Replaces everything, forgets the undo history, puts the caret at the start and counts as unchanged. Lines typed
    /// from now on end and are indented (tabs or blanks) as most lines of `text` are. What the control cannot hold,
    /// U+0000 and lone surrogates, becomes U+FFFD, so that the lengths agree and nothing behind it is lost.
    void SetText(const QString &text);

    /// True when the text differs from what it was at the last SetText or ResetModified; undoing back to that is
    /// unchanged again.
    bool IsModified() const;
    void ResetModified();

    /// The end of the selection that moves.
    qsizetype CaretPosition() const;
    /// Where the selected text starts; the caret's place when nothing is selected.
    qsizetype SelectionStart() const;
    qsizetype SelectionLength() const;
    /// What the selected text covers on the screen, from its first line to its last; empty when nothing is selected.
    QRect SelectionOnScreen() const;
    /// Number of the line at the top of the view, from 0; another text may stand there by now.
    int FirstLine() const;
    void SetFirstLine(int line);
    /// Selects and scrolls there; the caret stands behind the selected text. Folded lines open.
    void Select(qsizetype position, qsizetype length);

    /// Puts other text in that place, as one step for undo; the caret stands behind it.
    void ReplaceText(qsizetype position, qsizetype length, const QString &text);

    void Undo();
    void Redo();
    void Cut();
    void Copy();
    void Paste();
    void SelectAll();
    /// Lets the user choose a printer and prints the text.
    void Print(FileDialogs &dialogs);
    bool CanUndo() const;
    bool CanRedo() const;

    void SetReadOnly(bool readOnly);

signals:
    /// The user changed the text: by typing, the clipboard, undo or redo, not through SetText. The new text may be read
    /// at once, but not changed again before the slot has returned.
    void TextEdited();
    /// The answer of IsModified changed.
    void ModifiedChanged(bool modified);
    void CaretMoved();

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    struct Private;
    void ScrollToCaret();
    void ShowLineNumbers();
    const std::unique_ptr<Private> m_d;
};
