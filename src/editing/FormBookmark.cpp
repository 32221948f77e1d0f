#include "editing/FormBookmark.h"

#include "editing/LinkText.h"
#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_FormBookmark.h"

using namespace Qt::StringLiterals;

FormBookmark::FormBookmark(DesignSurface &surface, QWidget *parent)
    : QDialog(parent), m_surface(surface), ui(std::make_unique<Ui::FormBookmark>())
{
    ui->setupUi(this);
    connect(ui->EditBookmark, &QLineEdit::textChanged, this,
            [this](const QString &text) { ui->OkCmd->setEnabled(!text.isEmpty()); });
    connect(ui->OkCmd, &QPushButton::clicked, this, &FormBookmark::OkCmd_Click);
    connect(ui->CancelCmd, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

FormBookmark::~FormBookmark() = default;

void FormBookmark::OkCmd_Click()
{
    const QString markup = BookmarkMarkup(ui->EditBookmark->text());
    const DomDocument dom = m_surface.DOM();
    if (dom.SelectionType() == "Control"_L1) {
        dom.SelectionControlRange().commonParentElement().insertAdjacentHTML(u"BeforeBegin"_s, markup);
    } else {
        DomTextRange place = dom.SelectionTextRange();
        place.collapse();
        place.pasteHTML(markup);
    }
    accept();
}

void FormBookmark::done(int result)
{
    QDialog::done(result);
    m_surface.InputWidget()->setFocus();
}
