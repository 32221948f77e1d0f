#include "site/FilePane.h"

#include "document/Editor.h"
#include "platform/Settings.h"
#include "site/FileListModel.h"
#include "site/FileListView.h"
#include "site/FolderListModel.h"
#include "site/FormNewFolder.h"
#include "site/RowDrag.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

constexpr int UsuallyRead = 25;     // milliseconds; a folder of a few thousand files takes less
constexpr int ReadingShown = 300;   // milliseconds until the list says that it waits
constexpr int ChangesSettle = 200;  // milliseconds
constexpr int TooSlowToWatch = 500; // milliseconds; such a folder is far away, and tells of no changes anyway

const QString Section = u"Settings"_s;
const QString FolderKey = u"pane_folder"_s;

QString ErrorText(FileError error)
{
    switch (error) {
    case FileError::PathNotFound:
    case FileError::NotFound:
        return FilePane::tr("it does not exist");
    case FileError::AccessDenied:
        return FilePane::tr("you may not read it");
    default:
        return FilePane::tr("it cannot be read");
    }
}

} // namespace

FilePane::FilePane(Editor &editor, QWidget *parent, FolderReader reader)
    : QWidget(parent),
      m_editor(editor),
      m_lister(std::move(reader)),
      m_files(new FileListModel(this)),
      m_folders(new FolderListModel(this))
{
    setObjectName(u"FilePane"_s);
    BuildControls();
    BuildMenu();
    m_drag = new RowDrag(editor, m_list);
    ReadPlaces();
    ConnectControls();
    ConnectEditor();
}

FilePane::~FilePane() = default;

void FilePane::ConnectEditor()
{
    connect(&m_editor, &Editor::FolderChanged, this, &FilePane::FollowPage);
    connect(&m_editor, &Editor::FilesChanged, this, [this](const QString &folder) {
        const QString clean = QDir::cleanPath(folder);
        if (clean == m_folder)
            File1_PathChange();
        else
            Read(clean, Visit::Follow);
    });
    connect(&m_editor, &Editor::TabSelected, this, &FilePane::FollowTab);
    connect(&m_lister, &FolderLister::Listed, this, &FilePane::Take);
    m_changed.setSingleShot(true);
    m_changed.setInterval(ChangesSettle);
    connect(&m_changed, &QTimer::timeout, this, [this] { Read(m_folder, Visit::Changed); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_changed.isActive()) // not started anew: a folder that never rests is shown, too
            m_changed.start();
    });
    m_slow.setSingleShot(true);
    m_slow.setInterval(ReadingShown);
    connect(&m_slow, &QTimer::timeout, this, [this] { m_list->SetHint(tr("Reading %1...").arg(m_lister.Pending())); });
}

/// While the Publish tab is up, all files are shown, since any can be published.
void FilePane::FollowTab(ViewTab tab)
{
    const bool all = m_editor.App().FilePattern == AllFilesPattern;
    if (tab == ViewTab::Publish && !all)
        Refresh_file_list_all();
    else if (tab != ViewTab::Publish && all)
        Refresh_file_list();
}

void FilePane::FollowPage(const QString &folder)
{
    const PageState &page = m_editor.Page();
    if (page.CurrentFilePath == m_editor.App().MainDir + u"_blank.htm"_s)
        return; // a page without a place; the program's own folder is nothing to look at
    const QString clean = QDir::cleanPath(folder);
    if (clean == m_folder && !m_lister.IsBusy())
        SelectOpenPage();
    else
        Read(clean, Visit::Follow);
}

void FilePane::ShowFolder(const QString &folder)
{
    Read(QDir::cleanPath(folder), Visit::Go);
}

void FilePane::ShowFirstFolder()
{
    if (!m_folder.isEmpty() || m_lister.IsBusy())
        return;
    QString folder = m_editor.Ini().GetIni(Section, FolderKey, {});
    if (folder.isEmpty())
        folder = QFileInfo(m_editor.Ini().GetIni(Section, u"last_file"_s, {})).path();
    Read(QDir::isAbsolutePath(folder) ? folder : QDir::homePath(), Visit::Follow);
}

void FilePane::WriteSettings() const
{
    if (!m_folder.isEmpty())
        m_editor.Ini().SetIni(Section, FolderKey, m_folder);
}

void FilePane::File1_PathChange()
{
    if (m_lister.IsBusy() && m_visit != Visit::Changed)
        Read(m_lister.Pending(), m_visit);
    else
        Read(m_folder, Visit::Again);
}

void FilePane::Refresh_file_list()
{
    // What the settings have appended is lost on purpose: all that calls this counts on just these four.
    m_editor.App().FilePattern = PagesPattern;
    File1_PathChange();
}

void FilePane::Refresh_file_list_all()
{
    m_editor.App().FilePattern = AllFilesPattern;
    File1_PathChange();
}

void FilePane::mnurefreshfilelist_Click()
{
    if (m_editor.App().FilePattern == AllFilesPattern)
        Refresh_file_list_all();
    else
        Refresh_file_list();
}

void FilePane::Read(const QString &folder, Visit visit)
{
    if (folder.isEmpty())
        return;
    if (visit == Visit::Changed && m_lister.IsBusy()) {
        m_changed.start(); // whoever asked for a folder gets that one first
        return;
    }
    m_visit = visit;
    m_lister.List(folder, {.Pattern = m_editor.App().FilePattern,
                           .TextFileExtensions = m_editor.App().TextFileExtensions,
                           .SortedAsRead = m_sorted});
    if (visit != Visit::Changed && !m_lister.Wait(UsuallyRead))
        m_slow.start();
}

void FilePane::Take(const FolderContent &content)
{
    m_slow.stop();
    m_list->SetHint(QString());
    if (content.Error != FileError::None) {
        TakeRefusal(content);
        return;
    }
    const bool first = m_folder.isEmpty();
    m_folder = content.Folder;
    if (first)
        m_editor.App().ProjectDir = m_folder;
    if (content.Rows.isEmpty())
        m_list->SetHint(m_editor.App().FilePattern == AllFilesPattern ? tr("There are no files in this folder.")
                                                                      : tr("There are no pages in this folder."));
    ShowRows(content.Rows);
    ShowFolders(content.Folders);
    Watch(content);
    if (m_editor.Page().ActiveTab != ViewTab::Preview)
        m_editor.RemovePreviewFile();
    emit Listed();
}

/// A folder that was asked for and cannot be read changes nothing; the one that is shown, if it is gone, shows that.
void FilePane::TakeRefusal(const FolderContent &content)
{
    const QString why = ErrorText(content.Error);
    ShowPlace();
    if (content.Folder != m_folder) {
        if (m_visit != Visit::Follow)
            emit Notice(tr("Cannot open the folder %1: %2.").arg(content.Folder, why), false);
        else if (m_folder.isEmpty() && content.Folder != QDir::homePath())
            Read(QDir::homePath(), Visit::Follow);
        return;
    }
    m_list->SetHint(tr("Cannot read the folder %1: %2.").arg(content.Folder, why));
    ShowRows({});
    ShowFolders({});
    Watch(content);
    emit Listed();
}

void FilePane::ShowRows(const QList<FileRow> &rows)
{
    const QString selected = SelectedPath();
    const bool same = m_files->Folder() == m_folder && m_files->Rows() == rows;
    if (!same)
        m_files->SetRows(m_folder, rows);
    if (m_visit != Visit::Changed) {
        m_list->SelectRow(m_files->RowOf(m_editor.Page().CurrentFilePath));
        m_list->ShowSelectedRow();
    } else if (!same) {
        const int row = m_files->RowOf(selected);
        m_list->SelectRow(row >= 0 ? row : m_files->RowOf(m_editor.Page().CurrentFilePath));
    }
}

void FilePane::SelectOpenPage()
{
    const int row = m_files->RowOf(m_editor.Page().CurrentFilePath);
    if (row < 0)
        return;
    m_list->SelectRow(row);
    m_list->ShowSelectedRow();
}

/// One that is gone or closed is watched from above, where it may come back.
void FilePane::Watch(const FolderContent &content)
{
    const QString watched = content.Error == FileError::None ? content.Folder : QFileInfo(content.Folder).path();
    if (m_watcher.directories() == QStringList{watched})
        return;
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    if (content.Milliseconds < TooSlowToWatch)
        m_watcher.addPath(watched);
}

QString FilePane::SelectedPath() const
{
    return m_files->PathOf(m_list->SelectedRow());
}

void FilePane::SortBy(int column)
{
    // The names are the only texts that differ; a second click on the same header turns nothing around.
    m_sorted = m_sorted || column == FileListModel::NameColumn;
    m_list->header()->setSortIndicatorShown(true);
    m_list->header()->setSortIndicator(column, Qt::AscendingOrder);
    Read(m_folder, Visit::Changed);
}

void FilePane::OpenRow(int row)
{
    const QString path = PathToOpen(m_files->PathOf(row));
    if (path.isEmpty() || m_editor.Page().ActiveTab == ViewTab::Publish)
        return;
    if (m_editor.Selection().ShiftDown) {
        emit NewWindowWanted(path);
        return;
    }
    m_editor.Page().FileToLoad = path;
    m_editor.LoadFile();
}

void FilePane::OpenRowInNewWindow(int row)
{
    const QString path = PathToOpen(m_files->PathOf(row));
    if (!path.isEmpty() && m_editor.Page().ActiveTab != ViewTab::Publish)
        emit NewWindowWanted(path);
}

void FilePane::DragRow(int row)
{
    const QModelIndex index = m_files->index(row, FileListModel::NameColumn);
    const QIcon icon = m_files->data(index, Qt::DecorationRole).value<QIcon>();
    m_drag->Run(m_files->PathOf(row), icon.pixmap(m_list->iconSize()));
}

void FilePane::CreDir_Click()
{
    if (m_folder.isEmpty())
        return;
    const QString path = FormNewFolder::Ask(m_editor.Window(), m_folder);
    if (!path.isEmpty())
        ShowFolder(path);
}

void FilePane::DeleteSelectedFile(bool deleteFromDisk)
{
    const int row = m_list->SelectedRow();
    const QString path = m_files->PathOf(row);
    if (path.isEmpty())
        return;
    const bool isOpenPage = row == m_files->RowOf(m_editor.Page().CurrentFilePath);
    m_files->RemoveRow(row);
    const int next = qMin(row, m_files->rowCount() - 1);
    m_list->SelectRow(next);
    if (isOpenPage && next >= 0) {
        m_editor.Page().FileToLoad = m_files->PathOf(next);
        m_editor.LoadFile();
    }
    if (!deleteFromDisk)
        return;
    m_work.Start([this, path] {
        const FileDeletion deletion = DeletePage(path);
        return [this, deletion] { TakeDeletion(deletion); };
    });
    m_work.Settle(UsuallyRead);
}

void FilePane::TakeDeletion(const FileDeletion &deletion)
{
    const QString name = ShownName(QFileInfo(deletion.Path).fileName());
    if (!deletion.Done) {
        emit Notice(tr("%1 could not be deleted.").arg(name), false);
        Read(m_folder, Visit::Changed); // its row is back
        return;
    }
    m_deleted = deletion;
    emit Notice((deletion.InTrash ? tr("%1 was moved to the trash.") : tr("%1 was deleted.")).arg(name),
                deletion.CanUndo());
}

void FilePane::UndoLastDeletion()
{
    if (!m_deleted.CanUndo())
        return;
    m_work.Start([this, deletion = std::exchange(m_deleted, {})] {
        const Undeleted outcome = UndoDeletion(deletion);
        return [this, outcome, deletion] {
            if (outcome != Undeleted::Done)
                m_deleted = deletion; // it can be tried again
            TakeUndo(outcome, deletion.Path);
        };
    });
    m_work.Settle(UsuallyRead);
}

void FilePane::TakeUndo(Undeleted outcome, const QString &path)
{
    const QString name = ShownName(QFileInfo(path).fileName());
    switch (outcome) {
    case Undeleted::Done:
        emit Notice(tr("%1 is back.").arg(name), false);
        Read(m_folder, Visit::Again);
        m_list->SelectRow(m_files->RowOf(path));
        m_list->ShowSelectedRow();
        return;
    case Undeleted::PlaceTaken:
        emit Notice(tr("There is a new file %1; the deleted one was not put in its place.").arg(name), true);
        return;
    case Undeleted::Failed:
        emit Notice(tr("%1 could not be brought back.").arg(name), true);
        return;
    }
}
