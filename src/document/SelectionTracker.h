#pragma once

#include <QString>

class Editor;
struct MergedText;

/// Knows where the selection of the design view stands in the page's text, by a marker word that rides in that text for
/// a moment. The page itself is never marked. A page's own marker word is lost on the way, on purpose.
class SelectionTracker
{
public:
    explicit SelectionTracker(Editor &editor) : m_editor(editor) {}

    /// Remembers the caret as a count of characters from the start of the page (0 for a selected object).
    void SaveSelection();
    /// Puts the caret back to that count and scrolls there.
    void RestoreSelection();

    /// Fills PendingHtml, SelectionOffset, SelectionLength, SelectedHtml and SelectionIsControl from the surface. With
    /// MarkingForSource, a selection over several blocks counts as a caret at its start.
    void GetSelection();

    /// GetSelection, and answers with the text that still holds the marks, for routines that change it.
    MergedText MarkedPage();

    struct Place
    {
        qsizetype Position = 0; ///< 1-based; 0: no mark was found
        qsizetype Length = 0;
        bool LostWord = false; ///< the page had the marker word in it
    };
    /// Takes the marks of the last MarkedPage out of what became of it. For a selected object the place is its tag.
    Place TakeMarksOut(QString &text) const;

private:
    Place Strip(QString &text) const;

    Editor &m_editor;
    QString m_start; ///< the marks of the last MarkedPage
    QString m_end;
};
