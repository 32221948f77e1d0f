#pragma once

#include "document/PreviewFile.h"
#include "document/SelectionTracker.h"
#include "platform/surface/DesignSurface.h"
#include "state/PageState.h"

#include <QString>

#include <functional>

class Editor;
struct FixupContext;

/// Keeps the views of the page in step when the user goes from one to the other. A text is handed over only when it was
/// changed, so a look at the source costs neither undo history nor caret.
class ViewSwitcher
{
public:
    explicit ViewSwitcher(Editor &editor) : m_editor(editor), m_tracker(editor), m_preview(editor) {}

    /// Stays in the view when the surface does not take the text of the source view.
    void SelectTab(ViewTab tab);

    /// True while the source view holds text that the surface has not got.
    bool SourceIsAhead() const;
    /// Hands what the source view or the page properties are ahead of to the surface, and waits until it has it. The
    /// page then counts as changed. False when the surface did not take it: the source view is still ahead.
    bool BringSurfaceUpToDate();
    /// Makes `text` the page in the surface, with the guide style where it is in use; the base stays. Does not wait.
    void GiveToSurface(const QString &text, DesignSurface::TextForm form = DesignSurface::TextForm::Source);
    /// The surface's text as it is saved and as the source view shows it: cleaned up, as far as exact source lets it,
    /// in the page's line ends. With the `path` of a file, absolute file links become relative to it.
    QString Output(const MergedText &page, const QString &path = {});
    /// The page as a routine changed its engine form: surface and source view get it; unsaved.
    void GiveChanged(const QString &engineHtml);
    /// Keeps the texts of surface (`html`) and source view to fall back on, unless they are blank.
    void RememberGoodTexts(const QString &html);
    /// The source view gets the surface's text, unless that has lost the page's content.
    void RefreshSource();

    /// Switches the lines around tables and cells that have no border. The caret goes to the start of the page.
    void ToggleGuides();

    SelectionTracker &Tracker() { return m_tracker; }
    PreviewFile &Preview() { return m_preview; }

private:
    QString WithFixup(const std::function<QString(FixupContext &)> &clean);
    enum class Outcome { Done, Failed };
    Outcome Enter(ViewTab tab);
    void Recover();
    bool HandOver();
    void GiveToSurface(const QString &text, qsizetype position, qsizetype length);
    Outcome ShowSource();
    void FollowSource();

    Editor &m_editor;
    SelectionTracker m_tracker;
    PreviewFile m_preview;
    bool m_switching = false;
    bool m_sourceLostWord = false; ///< the text shown in the source view is not the surface's, though nobody edited it
    SelectionTracker::Place m_shown; ///< selection of the source view when the user came to it
};
