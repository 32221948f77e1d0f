// The file pane's controls: what they are, and what a click on each of them runs.
#include "site/FileListModel.h"
#include "site/FileListView.h"
#include "site/FilePane.h"
#include "site/FolderListModel.h"

#include "document/Editor.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QListView>
#include <QMenu>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

/// The choice of drives; it looks at what is mounted each time it drops.
class DriveBox : public QComboBox
{
public:
    DriveBox(QWidget *parent, std::function<void()> aboutToShow) : QComboBox(parent), m_aboutToShow(aboutToShow) {}
    void showPopup() override
    {
        m_aboutToShow();
        QComboBox::showPopup();
    }

private:
    std::function<void()> m_aboutToShow;
};

} // namespace

void FilePane::BuildControls()
{
    auto *picture = new QWidget(this);
    picture->setObjectName(u"Picture2"_s);
    m_drive = new DriveBox(picture, [this] { ReadPlaces(); });
    m_drive->setObjectName(u"Drive1"_s);
    m_drive->setAccessibleName(tr("Drive"));
    m_drive->setToolTip(tr("Drives and places"));
    m_drive->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_drive->setMinimumContentsLength(4); // the pane may be made narrow
    m_newFolder = new QToolButton(picture);
    m_newFolder->setObjectName(u"CreDir"_s);
    m_newFolder->setIcon(QIcon::fromTheme(u"folder-new"_s));
    m_newFolder->setToolTip(tr("Create New Folder"));
    m_newFolder->setAccessibleName(tr("Create New Folder"));
    m_newFolder->setFocusPolicy(Qt::StrongFocus);
    m_newFolder->setAutoRaise(true);
    m_dir = new QListView(picture);
    m_dir->setObjectName(u"Dir1"_s);
    m_dir->setAccessibleName(tr("Folders"));
    m_dir->setModel(m_folders);
    m_dir->setItemDelegate(new FolderListDelegate(m_dir));
    m_dir->setUniformItemSizes(true);
    m_dir->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list = new FileListView(this);
    m_list->setObjectName(u"ListTopics"_s);
    m_list->setAccessibleName(tr("Files"));
    m_list->setModel(m_files);
    m_list->SetColumnWidths();
    const int small = style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_dir->setIconSize({small, small});
    m_list->setIconSize({small, small});

    auto *row = new QHBoxLayout;
    row->addWidget(m_drive, 1);
    row->addWidget(m_newFolder);
    auto *above = new QVBoxLayout(picture);
    above->setContentsMargins(0, 0, 0, 0);
    above->addLayout(row);
    above->addWidget(m_dir, 1);
    auto *halves = new QSplitter(Qt::Vertical, this);
    halves->setChildrenCollapsible(false);
    halves->addWidget(picture);
    halves->addWidget(m_list);
    halves->setStretchFactor(0, 2);
    halves->setStretchFactor(1, 3);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(halves);
    setFocusProxy(m_list);
}

void FilePane::BuildMenu()
{
    m_menu = new QMenu(this);
    m_menu->setObjectName(u"mnulistpop"_s);
    const auto add = [this](const QString &name, const QString &text, const std::function<void()> &run) {
        QAction *action = m_menu->addAction(text, this, run);
        action->setObjectName(name);
    };
    add(u"poplstopen"_s, tr("&Open Page"), [this] { OpenRow(m_list->SelectedRow()); });
    m_menu->addSeparator();
    add(u"poplstnewtopic"_s, tr("&New Page...                                 F2"), [this] { emit NewPageWanted(); });
    m_menu->addSeparator();
    add(u"poplstdelete"_s, tr("&Delete File"), [this] { DeleteSelectedFile(true); });
    m_menu->addSeparator();
    add(u"mnurefreshfilelist"_s, tr("&Refresh File List"), [this] { mnurefreshfilelist_Click(); });
}

void FilePane::ShowMenu(QPoint place)
{
    const bool hasRow = m_list->SelectedRow() >= 0;
    for (QAction *action : m_menu->actions())
        action->setEnabled(hasRow || action->objectName() == "mnurefreshfilelist"_L1);
    m_menu->popup(place);
}

void FilePane::ConnectControls()
{
    connect(m_drive, &QComboBox::activated, this, [this](int index) { ShowFolder(m_places.value(index).Path); });
    connect(m_newFolder, &QToolButton::clicked, this, &FilePane::CreDir_Click);
    const auto goTo = [this](const QModelIndex &index) { ShowFolder(m_folders->PathOf(index.row())); };
    connect(m_dir, &QListView::doubleClicked, this, goTo);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *enter = new QShortcut(key, m_dir, nullptr, nullptr, Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, this, [this, goTo] { goTo(m_dir->currentIndex()); });
    }
    auto *up = new QShortcut(Qt::Key_Backspace, m_dir, nullptr, nullptr, Qt::WidgetShortcut);
    connect(up, &QShortcut::activated, this, [this] { ShowFolder(QFileInfo(m_folder).path()); });

    connect(m_list, &FileListView::OpenWanted, this, &FilePane::OpenRow);
    connect(m_list, &FileListView::NewWindowWanted, this, &FilePane::OpenRowInNewWindow);
    connect(m_list, &FileListView::DeleteWanted, this, [this] { DeleteSelectedFile(true); });
    connect(m_list, &FileListView::MenuWanted, this, &FilePane::ShowMenu);
    connect(m_list, &FileListView::DragWanted, this, &FilePane::DragRow);
    connect(m_list->header(), &QHeaderView::sectionClicked, this, &FilePane::SortBy);
}

void FilePane::ReadPlaces()
{
    const QList<Place> places = PlacesOf(QDir::homePath(), MountedVolumes());
    if (places != m_places) {
        m_places = places;
        m_drive->clear();
        for (const Place &place : places) {
            m_drive->addItem(QIcon::fromTheme(place.Icon), ShownName(place.Name));
            m_drive->setItemData(m_drive->count() - 1, place.Path.toHtmlEscaped(), Qt::ToolTipRole);
        }
    }
    ShowPlace();
}

void FilePane::ShowPlace()
{
    m_drive->setCurrentIndex(m_folder.isEmpty() ? -1 : PlaceOf(m_folder, m_places));
}

void FilePane::ShowFolders(const QStringList &inside)
{
    ShowPlace();
    const Place place = m_places.value(PlaceOf(m_folder, m_places));
    const QString current = m_folders->PathOf(m_dir->currentIndex().row());
    m_folders->SetFolders(FoldersDownTo(m_folder, place.Path), place.Name, inside);
    if (m_dir->currentIndex().isValid())
        return;
    int row = m_folders->ShownRow();
    for (int other = 0; m_visit == Visit::Changed && other < m_folders->rowCount(); ++other) {
        if (m_folders->PathOf(other) == current)
            row = other;
    }
    m_dir->setCurrentIndex(m_folders->index(row));
    m_dir->scrollTo(m_folders->index(row), QAbstractItemView::PositionAtTop);
}
