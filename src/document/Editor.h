#pragma once

#include "document/LoadedFile.h"
#include "platform/FileDialogs.h"
#include "platform/MessageBoxes.h"
#include "platform/surface/DesignSurface.h"
#include "state/AppState.h"
#include "state/PageState.h"
#include "state/SurfaceState.h"

#include <QObject>

#include <memory>

class DomElement;
class PageLoader;
class PageSaver;
class Recovery;
class SaveCommands;
class Settings;
class SourceEditor;
class ViewSwitcher;

/// One open page between disk, design surface and source view: the routines and fields that every dialog works
/// through. The work itself lies in PageLoader, PageSaver, ViewSwitcher and Recovery; this class holds them together
/// and tells the window, by signals, what changed.
class Editor : public QObject
{
    Q_OBJECT

public:
    /// What the editor works with; all of it outlives the editor.
    struct Parts
    {
        AppState &App;
        PageState &Page;
        SurfaceState &Selection;
        DesignSurface &Surface;
        SourceEditor &Source;
        Settings &Ini;
        MessageBoxes &Boxes;
        FileDialogs &Dialogs;
        QWidget *Window; ///< parent of boxes and dialogs
    };

    explicit Editor(const Parts &parts, QObject *parent = nullptr);
    ~Editor() override;

    AppState &App() const { return m_parts.App; }
    PageState &Page() const { return m_parts.Page; }
    SurfaceState &Selection() const { return m_parts.Selection; }
    DesignSurface &Surface() const { return m_parts.Surface; }
    SourceEditor &Source() const { return m_parts.Source; }
    Settings &Ini() const { return m_parts.Ini; }
    MessageBoxes &Boxes() const { return m_parts.Boxes; }
    FileDialogs &Dialogs() const { return m_parts.Dialogs; }
    QWidget *Window() const { return m_parts.Window; }

    /// The file of the page in hand as it was read or written last.
    LoadedFile &File() { return m_file; }

    /// Brings the page `FileToLoad` into surface and source view; offers to save the page being left. False when the
    /// old page stayed: no such file, no text file, or the user chose Cancel.
    bool LoadFile();
    /// Opens the page left last again. It comes off the history when it could be opened.
    void GoBack();
    /// Takes the text of the source view into the surface, unless it has fewer than 20 characters.
    void SetHTML();

    /// Saves now if the page has a name (in spite of what it is called). Tells the user when that failed.
    void SetDirty();
    void SaveCurrentPage();
    /// Writes the cleaned-up page to `path`. False when nothing was written; says nothing to the user: LastSaveError
    /// tells whether the write failed or the text was not fit to be saved. Only when `path` is the page's own file do
    /// surface and page count as saved.
    bool SaveHTML(const QString &path);
    /// None after a save that was refused because the page has lost its content.
    FileError LastSaveError = FileError::None;
    /// The surface's own save, which asks for the name. The page keeps the name it has.
    void SaveDocument();

    enum class Prompted { Nothing = 0, Yes = 1, Cancel = 2, No = 7 };
    /// Asks "Save changes to ...?" when there is something to save. Yes is also the answer when its Save As was
    /// cancelled; Cancel is also the answer when the page could not be written, so that nothing unsaved is dropped.
    Prompted PromptSaveChanges();
    void FileSave_Click();
    void FileSaveAs_Click();

    /// True when the surface's text (`which` 1) or the source view's text (other values) is blank.
    bool source_blank_error(int which);
    void save_sourceblank_error();

    /// Replaces the title in surface and source view; a page without a title element stays as it is.
    void SetHTMLTitle(const QString &title);
    /// Opens the colour dialog at `start` (0xBBGGRR) and leaves the answer in ChosenColor. False when cancelled.
    bool ChooseAColor(quint32 start);
    quint32 ChosenColor = 0;

    /// Fills the page properties from the text of the source view, and puts changed ones into the page: one step for
    /// undo, unsaved.
    void LoadTopicProperties();
    void SaveTopicProperties();
    /// Adds the styles of the two navigation link classes to the page, unless it has one of them.
    void AddNavLinkStyles();

    /// Where the design view's selection stands in the page's text (see SelectionTracker.h).
    void SaveSelection();
    void RestoreSelection();
    void GetSelection();

    /// View menu: 0 lines around tables and cells, 1 details, 2 source preservation, 3 keeping untouched source
    /// exactly.
    void ViewSub_Click(int index);
    bool ViewSubTicked(int index) const;
    bool ViewSubPossible(int index) const;

    /// The copy that the preview was shown goes.
    void RemovePreviewFile();

    /// Shows a view and brings the texts up to date; what a click on a tab runs.
    void SelectTab(ViewTab tab);

    /// The element under the selection: the selected object, else the innermost element around the start of the
    /// selection. Null when there is none.
    DomElement GetSelectedElement() const;

    /// Side file of the page: "index.prj" for a page named index.htm, in the settings folder.
    QString GetProjFile() const;
    QString GetProj(const QString &section, const QString &key, const QString &fallback) const;
    void SetProj(const QString &section, const QString &key, const QString &value);
    void ReadImageMapCount();
    void WriteImageMapCount();

    /// Texts of panels 1 and 2 of the status bar.
    QString StatusText() const { return m_statusText; }
    QString StatusPath() const { return m_statusPath; }
    void SetStatusText(const QString &text);
    void SetStatusPath(const QString &path);

    /// False until a first page, the blank one too, was loaded.
    bool HasPage() const { return !Page().LoadedFilePath.isEmpty(); }

    /// True from the moment that surface, source view or properties are ahead of the file.
    bool HasUnsavedChanges();

    /// Makes `text` the page in the design view, unsaved, and waits until it is there.
    void ReplacePage(const QString &text, DesignSurface::TextForm form = DesignSurface::TextForm::Source);

    /// Recovery copies of unsaved words (see Recovery.h).
    Recovery &RecoveryCopies() const { return *m_recovery; }

signals:
    void StatusTextChanged(const QString &text);
    void StatusPathChanged(const QString &path);
    void CaptionChanged(const QString &caption);
    /// The folder of the page now open: the file pane goes there if it shows another.
    void FolderChanged(const QString &folder);
    /// Save As made a file in `folder`: a list of its files is out of date.
    void FilesChanged(const QString &folder);
    /// A load begins: what watches the page by a timer stops.
    void LoadStarted();
    /// The page properties were read from the page.
    void TopicPropertiesLoaded();
    /// The Preview tab is active and is to show this file, or nothing when it is "".
    void PreviewRequested(const QString &path);
    /// What can be done has changed: menus and toolbars ask again.
    void CommandStatesChanged();
    /// Hourglass on or off; a state, not a count: a refused save leaves it on until the next load.
    void WaitCursor(bool on);
    /// A save reads and writes the page; both views may change under it.
    void Saving(bool on);
    /// A view is to be shown, after the texts were brought up to date.
    void TabSelected(ViewTab tab);
    /// The back history was filled or emptied.
    void BackHistoryChanged();
    /// Names of the block formats, once after each load.
    void BlockFormatsRead(const QStringList &names);

private:
    void ForgetUndoneChanges();

    Parts m_parts;
    LoadedFile m_file;
    QString m_statusText;
    QString m_statusPath;
    std::unique_ptr<ViewSwitcher> m_views;
    std::unique_ptr<PageSaver> m_saver;
    std::unique_ptr<SaveCommands> m_saveCommands;
    std::unique_ptr<PageLoader> m_loader;
    std::unique_ptr<Recovery> m_recovery;
};
