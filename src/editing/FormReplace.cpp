#include "editing/FormReplace.h"

#include "document/Editor.h"
#include "platform/Help.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "state/FindState.h"
#include "ui_FormReplace.h"

#include <QScreen>

#include <algorithm>

namespace {

constexpr int Gap = 12; ///< pixels between the window and what was found

void TellEnd(Editor &editor, QWidget *parent)
{
    editor.Boxes().Tell(parent, FormReplace::tr("Finished searching the document"));
}

bool IsSearchable(ViewTab view)
{
    return view == ViewTab::Normal || view == ViewTab::HtmlSource;
}

} // namespace

FormReplace::FormReplace(Editor &editor, FindState &state, QWidget *parent)
    : QDialog(parent), m_editor(editor), m_state(state), ui(std::make_unique<Ui::FormReplace>())
{
    ui->setupUi(this);
    connect(ui->EditFind, &QLineEdit::textChanged, this, &FormReplace::EnableButtons);
    connect(ui->OKButton, &QPushButton::clicked, this, &FormReplace::OKButton_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &FormReplace::Command2_Click);
    connect(ui->Command1, &QPushButton::clicked, this, &FormReplace::Command1_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
    connect(&m_editor, &Editor::TabSelected, this, &FormReplace::ShowView);
}

FormReplace::~FormReplace() = default;

void FormReplace::Open()
{
    if (!isVisible()) {
        ui->EditFind->setText(m_state.FindText);
        ui->EditReplace->setText(m_state.ReplaceText);
        m_lastFound = false;
    }
    ShowMode();
    ShowView();
    ui->EditFind->selectAll();
    ui->EditFind->setFocus();
    show();
    raise();
    activateWindow();
}

/// However the dialog is closed.
void FormReplace::done(int result)
{
    m_state.FindText = ui->EditFind->text();
    m_state.ReplaceText = ui->EditReplace->text();
    QDialog::done(result);
    m_editor.Window()->activateWindow();
}

void FormReplace::ShowMode()
{
    setWindowTitle(m_state.ReplaceMode ? tr("Replace") : tr("Find"));
    ui->LabelRep->setVisible(m_state.ReplaceMode);
    ui->EditReplace->setVisible(m_state.ReplaceMode);
    ui->Command1->setVisible(m_state.ReplaceMode);
    adjustSize();
}

void FormReplace::ShowView()
{
    m_lastFound = false; // in the other view
    ui->CheckPattern->setVisible(InSource());
    EnableButtons();
    adjustSize();
}

void FormReplace::EnableButtons()
{
    const bool on = !ui->EditFind->text().isEmpty() && IsSearchable(m_editor.Page().ActiveTab);
    ui->OKButton->setEnabled(on);
    ui->Command1->setEnabled(on);
    ui->Command2->setEnabled(on);
}

bool FormReplace::InSource() const
{
    return m_editor.Page().ActiveTab == ViewTab::HtmlSource;
}

FindStep FormReplace::Entered() const
{
    return {.Text = ui->EditFind->text(),
            .Span = ui->OptionDown->isChecked() ? FindStep::WholePage : -FindStep::WholePage,
            .Flags = FindFlagsOf(ui->CheckWholeWords->isChecked(), ui->CheckCase->isChecked()),
            .Pattern = InSource() && ui->CheckPattern->isChecked()};
}

bool FormReplace::FindOnce()
{
    const FindStep step = Entered();
    m_lastFound = InSource() ? FindIn(m_editor.Source(), step) : FindIn(m_editor.Surface(), step);
    Remember(step);
    if (m_lastFound)
        StepAside();
    return m_lastFound;
}

/// What was found is to be seen: this window goes below it, or above where there is no room.
void FormReplace::StepAside()
{
    const QRect found = InSource() ? m_editor.Source().SelectionOnScreen() : m_editor.Surface().SelectionOnScreen();
    const QRect frame = frameGeometry();
    const QRect room = screen()->availableGeometry();
    if (!frame.intersects(found))
        return;
    const int below = found.bottom() + Gap;
    const bool fits = below + frame.height() <= room.bottom();
    move(frame.left(), fits ? below : std::max(room.top(), found.top() - Gap - frame.height()));
}

void FormReplace::Remember(const FindStep &step)
{
    m_state.FindCount = step.Span;
    m_state.FindFlags = step.Flags;
    m_state.FindPattern = step.Pattern;
    m_state.FindText = step.Text;
}

bool FormReplace::TellPatternFault()
{
    const QString fault = PatternFault(Entered());
    if (fault.isEmpty())
        return false;
    m_editor.Boxes().Tell(this, tr("The regular expression is not complete or not right: %1.").arg(fault),
                          MessageBoxes::Icon::Exclamation);
    return true;
}

void FormReplace::OKButton_Click()
{
    if (!TellPatternFault() && !FindOnce())
        TellEnd(m_editor, this);
}

void FormReplace::Command2_Click()
{
    if (!m_state.ReplaceMode) {
        m_state.ReplaceMode = true;
        ShowMode();
        return;
    }
    if (TellPatternFault())
        return;
    if (!m_lastFound && !FindOnce())
        return;
    if (InSource())
        ReplaceIn(m_editor.Source(), Entered(), ui->EditReplace->text());
    else
        ReplaceIn(m_editor.Surface(), ui->EditReplace->text());
    FindOnce();
}

void FormReplace::Command1_Click()
{
    if (TellPatternFault())
        return;
    const FindStep step = Entered();
    const QString text = ui->EditReplace->text();
    const int count =
        InSource() ? ReplaceAllIn(m_editor.Source(), step, text) : ReplaceAllIn(m_editor.Surface(), step, text);
    Remember(step);
    m_lastFound = false; // as the last of all searches left it
    if (count == 1)
        m_editor.Boxes().Tell(this, tr("1 replacement made."));
    else if (count > 1)
        m_editor.Boxes().Tell(this, tr("%1 replacements made.").arg(count));
}

void DoFindNext(Editor &editor, const FindState &state)
{
    const ViewTab view = editor.Page().ActiveTab;
    if (state.FindText.isEmpty() || !IsSearchable(view))
        return;
    const bool inSource = view == ViewTab::HtmlSource;
    const FindStep step{.Text = state.FindText,
                        .Span = state.FindCount,
                        .Flags = state.FindFlags,
                        .Pattern = inSource && state.FindPattern};
    if (!PatternFault(step).isEmpty())
        return;
    const bool found = inSource ? FindIn(editor.Source(), step) : FindIn(editor.Surface(), step);
    if (!found)
        TellEnd(editor, editor.Window());
}
