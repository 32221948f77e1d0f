#pragma once

#include "platform/surface/DesignSurface.h"
#include "state/PageState.h"

#include <QString>

#include <functional>

class Editor;
struct FixupContext;

/// Keeps design surface and source view in step when the user goes from one to the other. A text is handed over only
/// when it was changed, so a look at the source costs neither undo history nor caret.
class ViewSwitcher
{
public:
    explicit ViewSwitcher(Editor &editor) : m_editor(editor) {}

    /// Stays in the source view when the surface does not take its text.
    void SelectTab(ViewTab tab);

    /// True while the source view holds text that the surface has not got.
    bool SourceIsAhead() const;
    /// Hands the source view's text to the surface if it is ahead, and waits until the surface has it. The page then
    /// counts as changed. False when the surface did not take it: the source view is still ahead.
    bool BringSurfaceUpToDate();
    /// Makes `text` the page in the surface, with the guide style where it is in use; the base stays. Does not wait.
    void GiveToSurface(const QString &text, DesignSurface::TextForm form = DesignSurface::TextForm::Source);
    /// The surface's text as it is saved and as the source view shows it: cleaned up, as far as exact source lets it,
    /// in the page's line ends. With the `path` of a file, absolute file links become relative to it.
    QString Output(const MergedText &page, const QString &path = {});
    /// Keeps the texts of surface (`html`) and source view to fall back on, unless they are blank.
    void RememberGoodTexts(const QString &html);

private:
    QString CleanedUp(const QString &html);
    QString WithFixup(const std::function<QString(FixupContext &)> &clean);
    bool HandOver();
    void ShowSource();

    Editor &m_editor;
};
