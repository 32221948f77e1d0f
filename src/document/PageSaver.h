#pragma once

#include "platform/TextFile.h"

#include <QString>

class Editor;
struct MergedText;
class ViewSwitcher;

/// Writes the page in hand: the surface's text, cleaned up, with relative links, without the guide style, in the
/// encoding and line ends of the file it came from. Asks nobody and tells nobody; that is for SaveCommands.
class PageSaver
{
public:
    PageSaver(Editor &editor, ViewSwitcher &views) : m_editor(editor), m_views(views) {}

    enum class Result {
        Written,
        NothingToDo, ///< no name, or saving is switched off
        Refused,     ///< the page has lost its content
        Failed       ///< Editor::LastSaveError tells why
    };

    /// The file that SetDirty writes; "" for a page without a name.
    QString SetDirtyPath() const;
    /// Saves under that name. BusySaving stays set for a page without a name.
    Result SetDirty();

    /// Saves under the page's name, with the hourglass on; a refused save leaves it on.
    Result SaveCurrentPage();
    /// Writes the page to `path`, which may be another file than the page's own.
    Result SaveHTML(const QString &path);
    /// Writes the text as the surface has it, without the clean-up.
    Result SaveAsItIs(const QString &path);

private:
    /// Whose file is written: only the page's own makes the page a saved one.
    enum class Target { Page, Copy };

    Target TargetFor(const QString &path) const;
    QString AsItIs(const QString &html) const;
    Result SaveTo(const QString &path, Target target);
    Result WriteCleanedUp(const QString &path, const MergedText &source, Target target);
    Result Write(const QString &path, const QString &text, Target target);
    void ShowInSource(const QString &text);

    Editor &m_editor;
    ViewSwitcher &m_views;
};

/// Words for a failed save, without a full stop.
QString SaveErrorText(FileError error);
