#pragma once

#include <QString>
#include <QWidget>

class QsciScintilla;

/// The source view: HTML with embedded script, style and PHP in colour, line numbers, folding, brace matching and
/// soft wrap. Text goes in and out exactly as it is, line ends included.
/// Positions are 1-based UTF-16 units in `Text()`; a position outside the text is taken as its nearer end.
class SourceEditor : public QWidget
{
    Q_OBJECT

public:
    explicit SourceEditor(QWidget *parent = nullptr);
    ~SourceEditor() override;

    QString Text() const;
    /// Replaces everything, forgets the undo history, and counts as unchanged.
    void SetText(const QString &text);

    /// True when the text differs from what it was at the last SetText or ResetModified; undoing back to that is
    /// unchanged again.
    bool IsModified() const;
    void ResetModified();

    qsizetype CaretPosition() const;
    void Select(qsizetype position, qsizetype length);

    void Undo();
    void Redo();
    void Cut();
    void Copy();
    void Paste();
    void SelectAll();
    bool CanUndo() const;
    bool CanRedo() const;

signals:
    /// The user changed the text.
    void TextEdited();
    /// The answer of IsModified changed.
    void ModifiedChanged(bool modified);
    void CaretMoved();

private:
    QsciScintilla *m_editor;
};
