#include "platform/surface/FindTextDialog.h"

#include "ui_FindTextDialog.h"

#include <QKeyEvent>

FindTextDialog::FindTextDialog(Search search, QWidget *parent)
    : QDialog(parent), m_search(std::move(search)), ui(std::make_unique<Ui::FindTextDialog>())
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
    const QString text = ui->EditFind->text();
    switch (m_search({.Text = text,
                      .Back = way == Way::Back,
                      .WholeWords = ui->CheckWholeWords->isChecked(),
                      .MatchCase = ui->CheckCase->isChecked()}))
    {
    case TextFound::No:
        ui->LabelResult->setText(tr("Not found: \"%1\"").arg(text));
        break;
    case TextFound::Here:
        ui->LabelResult->clear();
        break;
    case TextFound::BeyondEnd:
        ui->LabelResult->setText(way == Way::Forward ? tr("Went on from the start of the page.")
                                                     : tr("Went on from the end of the page."));
        break;
    }
}
