#include "editing/DialogGlobalReplace.h"

#include "document/Editor.h"
#include "document/PageOutput.h"
#include "document/PageSaver.h"
#include "editing/FormReplace.h"
#include "platform/Help.h"
#include "state/FindState.h"
#include "ui_DialogGlobalReplace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <filesystem>

namespace {

enum Column { TitleColumn = 0, LocationColumn = 1 };

/// An empty list takes no keyboard: nothing in it could show that it has it.
void Clear(QTreeWidget *list)
{
    list->clear();
    list->setEnabled(false);
}

void Add(QTreeWidget *list, const QString &first, const QString &second)
{
    auto *row = new QTreeWidgetItem(list, {first, second});
    row->setToolTip(1, second);
    list->setEnabled(true);
}

} // namespace

DialogGlobalReplace::DialogGlobalReplace(Editor &editor, FindState &state, SiteFiles files, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_state(state),
      m_files(std::move(files)),
      ui(std::make_unique<Ui::DialogGlobalReplace>())
{
    ui->setupUi(this);
    ui->LabelFailed->hide();
    ui->ListFailed->hide();
    for (QTreeWidget *list : {ui->ListTopics, ui->ListFailed}) {
        list->setColumnWidth(0, fontMetrics().averageCharWidth() * 28);
        Clear(list);
    }
    ui->ListTopics->installEventFilter(this);
    connect(ui->EditFind, &QLineEdit::textChanged, this, &DialogGlobalReplace::EnableControls);
    connect(ui->OKButton, &QPushButton::clicked, this, &DialogGlobalReplace::OKButton_Click);
    connect(ui->CommandFindAll, &QPushButton::clicked, this, [this] { Start(Work::Find); });
    connect(ui->Command1, &QPushButton::clicked, this, &DialogGlobalReplace::Command1_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &DialogGlobalReplace::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
    connect(ui->ListTopics, &QTreeWidget::itemDoubleClicked, this, &DialogGlobalReplace::ListTopics_DblClick);
    EnableControls();
}

DialogGlobalReplace::~DialogGlobalReplace()
{
    m_run.reset(); // before the surface that it works on
}

void DialogGlobalReplace::Open()
{
    if (!isVisible()) {
        ui->EditFind->setText(m_state.FindText);
        ui->EditReplace->setText(m_state.ReplaceText);
    }
    ui->EditFind->selectAll();
    ui->EditFind->setFocus();
    show();
    raise();
    activateWindow();
}

void DialogGlobalReplace::done(int result)
{
    m_state.FindText = ui->EditFind->text();
    m_state.ReplaceText = ui->EditReplace->text();
    QDialog::done(result);
}

void DialogGlobalReplace::reject()
{
    if (m_run && m_run->IsRunning())
        m_run->Cancel();
    else
        QDialog::reject();
}

/// Enter opens a row, as a double click does; the default button would take it.
bool DialogGlobalReplace::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->ListTopics && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            ListTopics_DblClick(ui->ListTopics->currentItem());
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void DialogGlobalReplace::EnableControls()
{
    const bool running = m_run && m_run->IsRunning();
    const bool on = !running && !ui->EditFind->text().isEmpty();
    ui->OKButton->setEnabled(on);
    ui->Command1->setEnabled(on);
    ui->CommandFindAll->setEnabled(on);
    ui->EditFind->setReadOnly(running);
    ui->EditReplace->setReadOnly(running);
}

FindStep DialogGlobalReplace::Entered() const
{
    return {.Text = ui->EditFind->text(),
            .Span = ui->OptionDown->isChecked() ? FindStep::WholePage : -FindStep::WholePage,
            .Flags = FindFlagsOf(ui->CheckWholeWords->isChecked(), ui->CheckCase->isChecked())};
}

void DialogGlobalReplace::Remember(const FindStep &step)
{
    m_state.FindText = step.Text;
    m_state.FindCount = step.Span;
    m_state.FindFlags = step.Flags;
    m_state.FindPattern = false;
}

/// Only a page with changes is written: a search rewrites no file. Why it could not be, "" when all is well: nothing
/// must be replaced in the file of a page whose words are not in it, nor what another program wrote there be lost.
QString DialogGlobalReplace::SaveOpenPage()
{
    const QString path = m_editor.Page().CurrentFilePath;
    if (!IsPageName(path) || !m_editor.HasUnsavedChanges())
        return {};
    if (QFileInfo::exists(path) && ChangedOnDisk(path, m_editor.File().Stamp))
        return tr("Another program has changed the file meanwhile");
    if (m_editor.SaveHTML(path))
        return {};
    const FileError error = m_editor.LastSaveError;
    return error == FileError::None ? tr("The page has lost its content") : SaveErrorText(error);
}

bool DialogGlobalReplace::IsOpenPage(const QString &path) const
{
    const QByteArray open = QFile::encodeName(m_editor.Page().CurrentFilePath);
    std::error_code error;
    return std::filesystem::equivalent(QFile::encodeName(path).constData(), open.constData(), error);
}

/// The window lives while files are looked through: which page is open, and what is typed there, is seen when the run
/// comes to its file.
GlobalRun::Hold DialogGlobalReplace::HoldOn(const QString &path, QString &reason)
{
    if (!IsOpenPage(path))
        return GlobalRun::Hold::No;
    if (m_editor.Surface().Busy())
        return GlobalRun::Hold::Busy;
    reason = SaveOpenPage();
    return reason.isEmpty() ? GlobalRun::Hold::Open : GlobalRun::Hold::Unsaved;
}

void DialogGlobalReplace::Command1_Click()
{
    const QString question = tr("This command will replace the specific text in every file in the current "
                                "directory/folder. Are you sure you want to continue?");
    if (m_editor.Boxes().Ask(this, question, MessageBoxes::Buttons::YesNo, MessageBoxes::Icon::Exclamation) ==
        MessageBoxes::Answer::Yes)
        Start(Work::Replace);
}

void DialogGlobalReplace::Start(Work work)
{
    Clear(ui->ListTopics);
    Clear(ui->ListFailed);
    ui->LabelFailed->hide();
    ui->ListFailed->hide();
    ui->LabelFoundIn->setText(tr("Found in: (Double click to open)"));
    if (const QString fault = SaveOpenPage(); !fault.isEmpty()) {
        m_editor.Boxes().Tell(this, tr("The open page could not be saved: %1. Nothing was searched.").arg(fault),
                              MessageBoxes::Icon::Exclamation);
        return;
    }
    if (!m_run) {
        DHTMLEdit1 = std::make_unique<DesignSurface>();
        m_run = std::make_unique<GlobalRun>(*DHTMLEdit1);
        connect(m_run.get(), &GlobalRun::Progress, this, &DialogGlobalReplace::ShowProgress);
        connect(m_run.get(), &GlobalRun::Found, this, &DialogGlobalReplace::AddRow);
        connect(m_run.get(), &GlobalRun::Failed, this, &DialogGlobalReplace::AddFailure);
        connect(m_run.get(), &GlobalRun::Finished, this, &DialogGlobalReplace::Ended);
    }
    m_work = work;
    m_searchOn = work == Work::Find;
    const FindStep step = Entered();
    Remember(step);
    const AppState &app = m_editor.App();
    m_run->Start({.Files = m_files(),
                  .Step = step,
                  .Replace = work == Work::Replace,
                  .Replacement = ui->EditReplace->text(),
                  .Preserved = m_editor.Surface().SourceCodePreservation(),
                  .Exact = app.ExactSource,
                  .CharsetFix = app.CharsetFix,
                  .HoldOn = [this](const QString &path, QString &reason) { return HoldOn(path, reason); }});
    EnableControls();
}

void DialogGlobalReplace::OKButton_Click()
{
    const FindStep step = Entered();
    Remember(step);
    if (m_run)
        m_run->HoldLastFile();
    if (!m_run || !FindIn(*DHTMLEdit1, step))
        m_editor.Boxes().Tell(this, tr("Finished searching the document"));
}

void DialogGlobalReplace::ListTopics_DblClick(const QTreeWidgetItem *row)
{
    if (!row)
        return;
    QString path = row->text(LocationColumn);
    if (!QFileInfo::exists(path)) // a file may have a "#" in its name
        path = path.section(u'#', 0, 0);
    m_editor.Page().FileToLoad = QDir(QFileInfo(m_editor.Page().CurrentFilePath).path()).filePath(path);
    if (m_editor.LoadFile() && m_editor.Surface().WaitWhileBusy() && m_searchOn)
        DoFindNext(m_editor, m_state);
}

void DialogGlobalReplace::ShowProgress(int done, int files)
{
    ui->LabelProgress->setText(tr("%1 of %2 files").arg(done).arg(files));
    emit Progress(done, files);
}

void DialogGlobalReplace::AddRow(const QString &path)
{
    Add(ui->ListTopics, QFileInfo(path).fileName(), path);
    if (m_work == Work::Replace && IsOpenPage(path))
        ReloadOpenPage(); // before another key gets there
}

void DialogGlobalReplace::AddFailure(const QString &path, const QString &reason)
{
    Add(ui->ListFailed, QFileInfo(path).fileName(), reason);
    ui->LabelFailed->show();
    ui->ListFailed->show();
}

void DialogGlobalReplace::Ended()
{
    EnableControls();
    emit Progress(0, 0);
    const int pages = ui->ListTopics->topLevelItemCount();
    ui->LabelProgress->setText(m_run->WasCancelled()
                                   ? tr("Stopped after %1 of %2 files.").arg(m_run->Done()).arg(m_run->Files())
                                   : tr("Pages found: %1").arg(pages));
    if (m_work == Work::Replace)
        m_editor.Boxes().Tell(this, tr("%1 replacements made thoughout the project.").arg(m_run->Total()));
}

void DialogGlobalReplace::ReloadOpenPage()
{
    PageState &page = m_editor.Page();
    const QScopedValueRollback<bool> again(page.GoingBack, true); // nothing for the history
    page.FileToLoad = page.CurrentFilePath;
    m_editor.LoadFile();
}
