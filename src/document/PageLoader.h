#pragma once

#include "platform/TextFile.h"

#include <QString>

class Editor;
class SaveCommands;
class ViewSwitcher;

/// The name of the copy of what was loaded last that stays in a page's folder.
inline constexpr QLatin1StringView ScratchFileName("iltb.tmp");

/// The one door through which a page comes into the editor: looks after the page being left, brings the new one into
/// the design surface and the source view, keeps the history, and tells the window.
class PageLoader
{
public:
    PageLoader(Editor &editor, SaveCommands &saveCommands, ViewSwitcher &views)
        : m_editor(editor), m_saveCommands(saveCommands), m_views(views)
    {}

    /// Loads `FileToLoad`. False when the old page stayed. A call from within a load does nothing.
    bool LoadFile();

    /// Finishes what the surface loaded, in the Normal tab: format boxes, style sheet, and the refill of a surface
    /// that came up blank although it was given a page with content.
    void DocumentComplete();

private:
    /// What one load carries from step to step.
    struct Load
    {
        QString Target; ///< the file asked for
        QString Real;   ///< the page it stands for: Target without ".tmp.htm"
        TextFileContent File;
        QString SurfaceText; ///< text of Real, for the surface
        quint32 ErrorCode = 0;
    };

    bool ReadTarget(Load &load);
    void NoteUnsavedChanges();
    bool LookAfterOldPage(Load &load);
    bool SaveOldPage();
    void ChoosePaths(Load &load);
    void KeepHistory();
    void TakeOver(const Load &load);
    void GiveToSurface(Load &load);
    void WriteScratchCopy(const Load &load, const QString &text);
    void ReadCharset(const QString &text);
    void GiveToSource(const Load &load);
    void ReportError(Load &load);
    void ShowTitle();
    void FinishByTab(const Load &load);

    void ReadBlockFormats();
    void FindStyleSheet(const QString &html);
    void RefillSurface();

    Editor &m_editor;
    SaveCommands &m_saveCommands;
    ViewSwitcher &m_views;
    bool m_loading = false; ///< a load is running: events that arrive while it waits start no other
};

/// Words for an error code of the surface; "" for one that is not known.
QString LoadErrorText(quint32 code);
