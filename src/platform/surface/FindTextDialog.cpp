#include "platform/surface/FindTextDialog.h"

#include "platform/surface/DesignSurface.h"
#include "ui_FindTextDialog.h"

#include <QKeyEvent>

namespace {

constexpr int WholeWord = 2; // flags of findText
constexpr int MatchCase = 4;
constexpr int WholePage = 9999999;

} // namespace

FindTextDialog::FindTextDialog(DesignSurface &surface, QWidget *parent)
    : QDialog(parent), m_surface(surface), ui(std::make_unique<Ui::FindTextDialog>())
{
    ui->setupUi(this);
    const auto enable = [this] {
        ui->FindNext->setEnabled(!ui->EditFind->text().isEmpty());
        ui->FindPrevious->setEnabled(!ui->EditFind->text().isEmpty());
        ui->LabelResult->clear();
    };
    connect(ui->EditFind, &QLineEdit::textChanged, this, enable);
    connect(ui->FindNext, &QPushButton::clicked, this, [this] { Find(Way::Forward); });
    connect(ui->FindPrevious, &QPushButton::clicked, this, [this] { Find(Way::Back); });
    connect(ui->CloseButton, &QPushButton::clicked, this, &QDialog::close);
    enable();
}

FindTextDialog::~FindTextDialog() = default;

void FindTextDialog::Ask()
{
    ui->LabelResult->clear();
    ui->EditFind->selectAll();
    ui->EditFind->setFocus();
    show();
    raise();
    activateWindow();
}

void FindTextDialog::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && event->modifiers() == Qt::ShiftModifier)
        ui->FindPrevious->click();
    else
        QDialog::keyPressEvent(event);
}

void FindTextDialog::Find(Way way)
{
    const int count = way == Way::Forward ? WholePage : -WholePage;
    const int flags = (ui->CheckWholeWords->isChecked() ? WholeWord : 0) | (ui->CheckCase->isChecked() ? MatchCase : 0);
    const QString text = ui->EditFind->text();
    DomTextRange range = m_surface.DOM().SelectionTextRange();
    range.collapse(way == Way::Back);
    QString result;
    if (!range.findText(text, count, flags)) {
        range = m_surface.DOM().BodyTextRange();
        if (!range.findText(text, count, flags)) {
            ui->LabelResult->setText(tr("Not found: \"%1\"").arg(text));
            return;
        }
        result =
            way == Way::Forward ? tr("Went on from the start of the page.") : tr("Went on from the end of the page.");
    }
    range.Select();
    range.scrollIntoView();
    ui->LabelResult->setText(result);
}
