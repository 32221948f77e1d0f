#include "site/FormNewTopic.h"

#include "document/Editor.h"
#include "document/PageSaver.h"
#include "platform/ErrorLog.h"
#include "platform/FolderTree.h"
#include "platform/Help.h"
#include "platform/Settings.h"
#include "site/NewPageText.h"
#include "site/Templates.h"
#include "ui_FormNewTopic.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QKeyEvent>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

/// Numbers of the error log.
int NumberOf(FileError error)
{
    switch (error) {
    case FileError::DiskFull:
        return 61;
    case FileError::AccessDenied:
        return 70;
    case FileError::PathNotFound:
        return 76;
    default:
        return 75;
    }
}

/// The nearest folder that exists; the home folder for a path that means nothing.
QString ExistingFolder(const QString &folder)
{
    QFileInfo info(folder);
    while (info.isAbsolute() && !info.isDir() && !info.isRoot())
        info.setFile(info.path());
    return info.isAbsolute() && info.isDir() ? info.filePath() : QDir::homePath();
}

} // namespace

FormNewTopic::FormNewTopic(Editor &editor, const QString &folder, NewFolder newFolder, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_newFolder(std::move(newFolder)),
      m_folders(new QFileSystemModel(this)),
      ui(std::make_unique<Ui::FormNewTopic>())
{
    ui->setupUi(this);
    resize(size().boundedTo(screen()->availableSize() * 9 / 10));
    BuildFolders(folder);
    MakeTemplatesFolder(editor.App());
    ui->FileTemplate->addItems(TemplateNames(editor.App()));
    const auto rows = ui->FileTemplate->findItems(editor.App().DefaultTemplate, Qt::MatchExactly);
    if (!rows.isEmpty())
        ui->FileTemplate->setCurrentItem(rows.first());
    ui->Command2->setEnabled(bool(m_newFolder));
    ConnectControls();
    FileTemplate_Change();
}

FormNewTopic::~FormNewTopic() = default;

void FormNewTopic::BuildFolders(const QString &folder)
{
    ShowFolderTree(*ui->Dir1, *m_folders);
    SelectFolder(ExistingFolder(folder));
}

void FormNewTopic::ConnectControls()
{
    connect(ui->EditTitle, &QLineEdit::textChanged, this, &FormNewTopic::EditTitle_Change);
    connect(ui->Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this, &FormNewTopic::Dir1_Change);
    connect(ui->FileTemplate, &QListWidget::currentRowChanged, this, &FormNewTopic::FileTemplate_Change);
    connect(ui->Command2, &QPushButton::clicked, this, &FormNewTopic::Command2_Click);
    connect(ui->Command3, &QPushButton::clicked, this, &FormNewTopic::Command3_Click);
    connect(ui->Command4, &QPushButton::clicked, this, &FormNewTopic::Command4_Click);
    connect(ui->Command5, &QPushButton::clicked, this, &FormNewTopic::Command5_Click);
    connect(ui->Command6, &QToolButton::clicked, this,
            [this] { ui->FileTemplate->setCurrentRow(ui->FileTemplate->currentRow() - 1); });
    connect(ui->Command7, &QToolButton::clicked, this,
            [this] { ui->FileTemplate->setCurrentRow(ui->FileTemplate->currentRow() + 1); });
    connect(ui->OkCmd, &QPushButton::clicked, this, &FormNewTopic::OkCmd_Click);
    connect(ui->CancelCmd, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

void FormNewTopic::SelectFolder(const QString &folder)
{
    const QModelIndex index = m_folders->index(folder);
    ui->Dir1->setCurrentIndex(index);
    ui->Dir1->expand(index.parent());
    ui->Dir1->scrollTo(index);
}

QString FormNewTopic::Folder() const
{
    return m_folders->filePath(ui->Dir1->currentIndex());
}

void FormNewTopic::EditTitle_Change()
{
    const bool titled = !ui->EditTitle->text().isEmpty();
    ui->OkCmd->setEnabled(titled);
    if (titled)
        SuggestFile();
    else
        ui->EditFile->clear();
}

void FormNewTopic::SuggestFile()
{
    const AppState &app = m_editor.App();
    const QString name = FileNameFromTitle(ui->EditTitle->text(), app.DefaultExtension);
    m_suggested = SuggestedFile(name, Folder(), app.ProjectDir);
    ui->EditFile->setText(m_suggested);
}

/// A name that the user wrote stays.
void FormNewTopic::Dir1_Change()
{
    if (!ui->EditTitle->text().isEmpty() && ui->EditFile->text() == m_suggested)
        SuggestFile();
}

void FormNewTopic::Command2_Click()
{
    const QString made = m_newFolder(this, Folder());
    if (!made.isEmpty())
        SelectFolder(made);
}

/// A row was chosen, in the list or while looking at the templates one by one.
void FormNewTopic::FileTemplate_Change()
{
    const int row = ui->FileTemplate->currentRow();
    ui->Command3->setEnabled(row >= 0);
    ui->Command5->setEnabled(row >= 0);
    ui->Command6->setEnabled(row > 0);
    ui->Command7->setEnabled(row >= 0 && row < ui->FileTemplate->count() - 1);
    if (ui->Pages->currentWidget() == ui->PicturePreview)
        Command3_Click();
}

void FormNewTopic::Command3_Click()
{
    const QString name = ui->FileTemplate->currentItem()->text();
    ui->WebBrowser1->Navigate(TemplatePath(m_editor.App(), name));
    ui->LabelTempName->setText(name);
    if (ui->Pages->currentWidget() == ui->PicturePreview)
        return;
    ui->Pages->setCurrentWidget(ui->PicturePreview);
    ui->Command4->setFocus();
}

void FormNewTopic::Command4_Click()
{
    ui->Pages->setCurrentWidget(ui->FormPage);
    ui->WebBrowser1->Navigate({});
    ui->FileTemplate->setFocus();
}

void FormNewTopic::Command5_Click()
{
    m_editor.App().DefaultTemplate = ui->FileTemplate->currentItem()->text();
    m_editor.Ini().SetIni(u"Settings"_s, u"def_template"_s, m_editor.App().DefaultTemplate);
}

void FormNewTopic::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && ui->Pages->currentWidget() == ui->PicturePreview)
        Command4_Click();
    else
        QDialog::keyPressEvent(event);
}

void FormNewTopic::OkCmd_Click()
{
    const QString path = NewPagePath(ui->EditFile->text(), Folder(), m_editor.App().ProjectDir);
    if (path.isEmpty()) {
        m_editor.Boxes().Tell(this, tr("You must specify a name for your new file."), MessageBoxes::Icon::Exclamation);
        ui->EditFile->setFocus();
        return;
    }
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return Fail(NumberOf(FileError::PathNotFound), folder);
    const QString question =
        tr("A file named %1 already exists. Do you want to overwrite the existing file?").arg(path);
    if (QFileInfo::exists(path) && m_editor.Boxes().Ask(this, question, MessageBoxes::Buttons::OkCancel,
                                                        MessageBoxes::Icon::Exclamation) != MessageBoxes::Answer::Ok)
        return;
    if (!WritePage(path))
        return;
    accept();
    emit m_editor.FilesChanged(folder);
    m_editor.Page().FileToLoad = path;
    m_editor.LoadFile();
}

/// A template that cannot be read gives way to the built-in page without a word.
bool FormNewTopic::WritePage(const QString &path)
{
    const QListWidgetItem *row = ui->FileTemplate->currentItem();
    TextFileContent page = ReadTextFile(TemplatePath(m_editor.App(), row ? row->text() : QString()));
    if (page.Error != FileError::None)
        page.Text = BuiltInTemplate;
    const QString text = NewPageText(page.Text, ui->EditTitle->text());
    const FileError error = WriteTextFile(path, text, NewPageEncoding(page.Text, page.Encoding)).Error;
    if (error != FileError::None)
        Fail(NumberOf(error), SaveErrorText(error) + u": "_s + path);
    return error == FileError::None;
}

/// No box on purpose: the log has the details, and the status bar says what became of the page.
void FormNewTopic::Fail(int number, const QString &description)
{
    LogError(u"formnewtopic OkCmd_Click"_s, number, description);
    m_editor.SetStatusText(tr("The new page could not be written."));
    reject();
}

void FormNewTopic::reject()
{
    QDialog::reject();
    if (m_editor.Page().ActiveTab == ViewTab::Normal)
        m_editor.Surface().InputWidget()->setFocus();
}
