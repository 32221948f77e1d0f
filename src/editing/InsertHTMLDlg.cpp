#include "editing/InsertHTMLDlg.h"

#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_InsertHTMLDlg.h"

#include <QFontDatabase>

InsertHTMLDlg::InsertHTMLDlg(DesignSurface &surface, QWidget *parent)
    : QDialog(parent), m_surface(surface), ui(std::make_unique<Ui::InsertHTMLDlg>())
{
    ui->setupUi(this);
    ui->HTMLText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const QFontMetrics metrics(ui->HTMLText->font());
    ui->HTMLText->setMinimumSize(metrics.averageCharWidth() * 60, metrics.lineSpacing() * 10);
    connect(ui->cmdOK, &QPushButton::clicked, this, &InsertHTMLDlg::cmdOK_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

InsertHTMLDlg::~InsertHTMLDlg() = default;

void InsertHTMLDlg::cmdOK_Click()
{
    m_surface.DOM().PasteHTML(ui->HTMLText->toPlainText());
    accept();
}
