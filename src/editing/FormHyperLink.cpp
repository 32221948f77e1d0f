#include "editing/FormHyperLink.h"

#include "document/Editor.h"
#include "document/PageOutput.h"
#include "document/PageTitle.h"
#include "document/PathText.h"
#include "editing/FirstArrowKey.h"
#include "editing/LinkFileModel.h"
#include "editing/SelectedLink.h"
#include "platform/FolderTree.h"
#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_FormHyperLink.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QScreen>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

const QString NoAddress = u"http://"_s;
const QString White = u"navwhite"_s;
const QString Black = u"navblack"_s;

/// Where the files of a link are looked for: beside the page, or in the site's folder for a page without a name.
QString StartFolder(const Editor &editor)
{
    const QString page = editor.Page().CurrentFilePath;
    const QString folder = IsPageName(page) ? QFileInfo(page).path() : editor.App().ProjectDir;
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

/// What a browser is shown for an address that was typed; nothing for one that is no page.
QUrl TargetOf(const QString &typed, const QString &page)
{
    const QString path = PathFromPageText(SplitAddress(typed).File, page);
    if (QFileInfo(path).isAbsolute())
        return QFileInfo(path).isFile() ? QUrl::fromLocalFile(path) : QUrl();
    const QUrl url(WrittenAddress(typed));
    const bool network = url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
    return network && !url.host().isEmpty() ? url : QUrl();
}

} // namespace

FormHyperLink::FormHyperLink(Editor &editor, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_folders(new QFileSystemModel(this)),
      m_files(new LinkFileModel(this)),
      ui(std::make_unique<Ui::FormHyperLink>())
{
    ui->setupUi(this);
    resize(size().boundedTo(screen()->availableSize() * 9 / 10));
    ui->ComboTarget->setCurrentIndex(-1);
    ui->ListTopics->setModel(m_files);
    ui->ListTopics->setColumnWidth(LinkFileModel::TitleColumn, 200);
    LetFirstArrowKeyChoose(*ui->ListTopics);
    BuildFolders();
    ShowFiles();
    ReadSelection();
    ShowAddress();
    ui->ComboTarget->setEditText(m_link.Target);
    ui->ChkNavWhite->setChecked(m_link.Class == White);
    ui->ChkNavBlack->setChecked(m_link.Class == Black);
    ui->CommandRemoveLink->setEnabled(!m_link.Address.isEmpty());
    m_shown = Entered();
    ConnectControls();
    m_shown.Local ? ui->ListTopics->setFocus() : ui->EditExtURL->setFocus();
}

FormHyperLink::~FormHyperLink() = default;

void FormHyperLink::BuildFolders()
{
    ShowFolderTree(*ui->Dir1, *m_folders);
    m_folder = StartFolder(m_editor);
    const QModelIndex folder = m_folders->index(m_folder);
    ui->Dir1->setCurrentIndex(folder);
    ui->Dir1->expand(folder.parent());
}

void FormHyperLink::ConnectControls()
{
    connect(ui->Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex &folder) {
        m_folder = m_folders->filePath(folder);
        ShowFiles();
    });
    connect(ui->CheckShowAllTypes, &QCheckBox::toggled, this, &FormHyperLink::ShowFiles);
    connect(ui->ListTopics->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!SelectedPath().isEmpty())
            ui->Option1->setChecked(true);
    });
    connect(ui->EditExtURL, &QLineEdit::textEdited, this, [this] { ui->Option2->setChecked(true); });
    connect(ui->ComboBookmark, &BookmarkBox::DropDown, this, &FormHyperLink::ComboBookmark_DropDown);
    connect(ui->ChkNavWhite, &QCheckBox::toggled, this, [this](bool on) {
        if (on)
            ui->ChkNavBlack->setChecked(false);
    });
    connect(ui->ChkNavBlack, &QCheckBox::toggled, this, [this](bool on) {
        if (on)
            ui->ChkNavWhite->setChecked(false);
    });
    connect(ui->TabStrip1, &QTabWidget::currentChanged, this, &FormHyperLink::TabStrip1_Click);
    connect(ui->CommandRemoveLink, &QPushButton::clicked, this, &FormHyperLink::CommandRemoveLink_Click);
    connect(ui->OkCmd, &QPushButton::clicked, this, &FormHyperLink::OkCmd_Click);
    connect(ui->CancelCmd, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

void FormHyperLink::ReadSelection()
{
    DesignSurface &surface = m_editor.Surface();
    if (!surface.WaitWhileBusy())
        return;
    m_link = ReadLink(SelectedAnchor(surface).outerHTML());
    m_linkExists = !m_link.Address.isEmpty() || surface.SelectionType() == "Control"_L1;
    if (m_linkExists)
        return;
    LeaveOutTrailingBlank(surface);
    m_hasText = !surface.DOM().SelectionTextRange().Text().isEmpty();
}

/// The row of the file that the link leads to; any other address as text.
void FormHyperLink::ShowAddress()
{
    const SplitAddress address(m_link.Address);
    const QString page = m_editor.Page().CurrentFilePath;
    QString path = PathFromPageText(address.File, page);
    if (address.File.isEmpty() && !address.Bookmark.isEmpty())
        path = page;
    ui->ComboBookmark->setEditText(ShownAddress(address.Bookmark));
    ui->EditExtURL->setText(NoAddress);
    const int row = path.isEmpty() ? -1 : m_files->RowOf(path);
    if (row >= 0) {
        SelectRow(row);
    } else if (!address.File.isEmpty()) {
        ui->Option2->setChecked(true);
        ui->EditExtURL->setText(ShownAddress(address.File));
    }
}

void FormHyperLink::ShowFiles()
{
    const QString path = SelectedPath();
    m_files->ShowFolder(m_folder, ui->CheckShowAllTypes->isChecked());
    if (const int row = path.isEmpty() ? -1 : m_files->RowOf(path); row >= 0)
        SelectRow(row);
}

void FormHyperLink::SelectRow(int row)
{
    const QModelIndex index = m_files->index(row, 0);
    ui->ListTopics->setCurrentIndex(index);
    ui->ListTopics->scrollTo(index);
}

/// A list that only has the keyboard has a current row, but none that was chosen.
QString FormHyperLink::SelectedPath() const
{
    const QModelIndexList rows = ui->ListTopics->selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : m_files->PathOf(rows.first().row());
}

bool FormHyperLink::IsThisPage(const QString &path) const
{
    return path.compare(m_editor.Page().CurrentFilePath, Qt::CaseInsensitive) == 0;
}

FormHyperLink::Choice FormHyperLink::Entered() const
{
    return {.Local = ui->Option1->isChecked(),
            .Path = SelectedPath(),
            .Url = ui->EditExtURL->text(),
            .Bookmark = ui->ComboBookmark->currentText(),
            .Target = ui->ComboTarget->currentText(),
            .Style = ui->ChkNavWhite->isChecked()   ? White
                     : ui->ChkNavBlack->isChecked() ? Black
                                                    : QString()};
}

QString FormHyperLink::AddressOf(const Choice &choice) const
{
    const QString page = m_editor.Page().CurrentFilePath;
    QString address;
    if (!choice.Local)
        address = AddressTyped(choice.Url, page);
    else if (!choice.Path.isEmpty() && !IsThisPage(choice.Path))
        address = AddressForPage(choice.Path, page);
    return choice.Bookmark.isEmpty() ? address : address + u'#' + WrittenAddress(choice.Bookmark);
}

/// What was typed stays.
void FormHyperLink::ComboBookmark_DropDown()
{
    const QString typed = ui->ComboBookmark->currentText();
    const QString path = SelectedPath();
    QStringList names;
    if (IsThisPage(path) && m_editor.Surface().WaitWhileBusy())
        names = BookmarksInText(m_editor.Surface().EngineHTML());
    else if (path.contains(".htm"_L1, Qt::CaseInsensitive))
        names = BookmarksInFile(path);
    ui->ComboBookmark->clear();
    ui->ComboBookmark->addItems(names);
    ui->ComboBookmark->setCurrentIndex(ui->ComboBookmark->findText(typed));
    ui->ComboBookmark->setEditText(typed);
}

void FormHyperLink::TabStrip1_Click()
{
    if (ui->TabStrip1->currentWidget() != ui->PreviewPage) {
        ui->WebBrowser1->Navigate({});
        return;
    }
    const Choice choice = Entered();
    QUrl target = TargetOf(choice.Url, m_editor.Page().CurrentFilePath);
    if (choice.Local)
        target = choice.Path.isEmpty() ? QUrl() : QUrl::fromLocalFile(choice.Path);
    if (!target.isEmpty() && !choice.Bookmark.isEmpty())
        target.setFragment(choice.Bookmark);
    ui->WebBrowser1->ShowAddress(target);
}

void FormHyperLink::CommandRemoveLink_Click()
{
    RemoveLink(m_editor.Surface());
    accept();
}

void FormHyperLink::OkCmd_Click()
{
    const Choice entered = Entered();
    const bool restyled = entered.Style != m_shown.Style; // a class of the user's own stays
    LinkAttributes now = m_link;
    if (!entered.LeadsAs(m_shown))
        now.Address = AddressOf(entered);
    now.Target = entered.Target;
    if (restyled)
        now.Class = entered.Style;
    if (now != m_link) {
        const DesignSurface::OneStep step(m_editor.Surface());
        ChangeLink(m_editor.Surface(), m_link, now);
        if (restyled && !entered.Style.isEmpty() && m_editor.App().AutoLinkStyles)
            m_editor.AddNavLinkStyles();
    }
    accept();
}

void FormHyperLink::done(int result)
{
    ui->WebBrowser1->Navigate({});
    QDialog::done(result);
    m_editor.Surface().InputWidget()->setFocus();
}

void OpenHyperlink(Editor &editor)
{
    FormHyperLink form(editor, editor.Window());
    if (form.HasSomethingToLink())
        form.exec();
    else
        editor.Boxes().Tell(editor.Window(), FormHyperLink::tr("You must select some text to make into a link"));
}
