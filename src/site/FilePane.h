#pragma once

#include "platform/FolderListing.h"
#include "site/FileDeletion.h"
#include "site/FolderLister.h"
#include "site/Places.h"
#include "state/PageState.h"

#include <QFileSystemWatcher>
#include <QTimer>
#include <QWidget>

class Editor;
class FileListModel;
class FileListView;
class FolderListDelegate;
class FolderListModel;
class QComboBox;
class QListView;
class QMenu;
class QToolButton;
class RowDrag;

/// The files of one folder: the only view of the site that there is, and the list that every site tool works on.
///
/// Folders are read in the background. Mostly the rows are there when a call returns; of a slow folder they come later
/// (`Listed`), and the window stays alive meanwhile. A folder that cannot be read is not gone to.
///
/// The pane goes along with the page that is open, and follows what other programs do in its folder.
class FilePane : public QWidget
{
    Q_OBJECT

public:
    explicit FilePane(Editor &editor, QWidget *parent = nullptr, FolderReader reader = ListFolder);
    ~FilePane() override;

    /// The folder shown; "" before the first.
    QString Folder() const { return m_folder; }
    void ShowFolder(const QString &folder);
    /// At the end of the start, when no page brought its folder: the one shown last time, else that of the last page,
    /// else the home folder.
    void ShowFirstFolder();
    /// Keeps the folder for the next start.
    void WriteSettings() const;

    /// The rows as they are now. `Listed` comes behind each change of them.
    const FileListModel &ListTopics() const { return *m_files; }
    /// A folder has been asked for that is not here yet.
    bool IsReading() const { return m_lister.IsBusy(); }
    QString SelectedPath() const;

    /// Reads the folder again; the open page's row becomes the selected one.
    void File1_PathChange();
    /// The same with the pattern for pages, without extensions of the settings, and with the one for all files.
    void Refresh_file_list();
    void Refresh_file_list_all();
    void mnurefreshfilelist_Click();

    /// Takes the selected row off the list, opens its neighbour if its page is the open one, and takes the file off the
    /// disk if so told. Asks nothing.
    void DeleteSelectedFile(bool deleteFromDisk);
    void UndoLastDeletion();

signals:
    /// New Page was chosen from the list's menu.
    void NewPageWanted();
    /// A page is to be opened in a window of its own.
    void NewWindowWanted(const QString &path);
    /// Something that the user should read. The deletion told of last can be taken back if `canUndo`.
    void Notice(const QString &text, bool canUndo);
    void Listed();

private:
    enum class Visit {
        Go,     ///< to another folder, which may turn out not to be readable
        Follow, ///< the same, with the page that was opened: silently
        Again,  ///< the folder shown, by the user or the program
        Changed ///< the folder shown, because something changed in it: the user's selection stays
    };

    void BuildControls();
    void BuildMenu();
    void ConnectControls();
    void ConnectEditor();
    void FollowTab(ViewTab tab);
    void FollowPage(const QString &folder);

    void Read(const QString &folder, Visit visit);
    void Take(const FolderContent &content);
    void TakeRefusal(const FolderContent &content);
    void ShowFolders(const QStringList &inside);
    void ShowRows(const QList<FileRow> &rows);
    void SelectOpenPage();
    void Watch(const FolderContent &content);
    void ReadPlaces();
    void ShowPlace();

    void OpenRow(int row);
    void OpenRowInNewWindow(int row);
    void ShowMenu(QPoint place);
    void DragRow(int row);
    void SortBy(int column);
    void CreDir_Click();
    void TakeDeletion(const FileDeletion &deletion);
    void TakeUndo(Undeleted outcome, const QString &path);

    Editor &m_editor;
    FolderLister m_lister;
    BackgroundWork m_work;
    Visit m_visit = Visit::Again;
    QString m_folder;
    QList<Place> m_places;
    QFileSystemWatcher m_watcher;
    QTimer m_changed;
    QTimer m_slow;
    FileDeletion m_deleted;
    bool m_sorted = false;
    FileListModel *m_files;
    FolderListModel *m_folders;
    QComboBox *m_drive;
    QToolButton *m_newFolder;
    QListView *m_dir;
    FileListView *m_list;
    QMenu *m_menu;
    RowDrag *m_drag;
};
