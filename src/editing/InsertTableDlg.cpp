#include "editing/InsertTableDlg.h"

#include "document/Editor.h"
#include "editing/ColorRow.h"
#include "editing/TableAttributes.h"
#include "editing/TableControls.h"
#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_InsertTableDlg.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double MostCells = 100000; ///< more would keep the page busy for too long

} // namespace

InsertTableDlg::InsertTableDlg(Editor &editor, QWidget *parent)
    : QDialog(parent), m_editor(editor), ui(std::make_unique<Ui::InsertTableDlg>())
{
    ui->setupUi(this);
    m_background = new ColorRow(editor, ui->CheckSetBkColor, ui->ShapeBkColor, ui->Command2, 0xFFFFFF);
    m_border = new ColorRow(editor, ui->CheckSetBorderColor, ui->ShapeBorderColor, ui->Command3, 0);
    OfferWords(ui->ComboHoriz, AlignWords());
    NameEdit(ui->UpDownBorder, u"EditBorder"_s);
    NameEdit(ui->UpDownPadding, u"EditPadding"_s);
    NameEdit(ui->UpDownSpacing, u"EditSpacing"_s);
    ui->CheckShowBorder->setChecked(editor.Surface().ShowBorders());
    ui->Rows->selectAll();
    connect(ui->EditWidth, &QLineEdit::textChanged, this,
            [this](const QString &text) { ui->CheckSetWidth->setChecked(!text.isEmpty()); });
    connect(ui->OkCmd, &QPushButton::clicked, this, &InsertTableDlg::OkCmd_Click);
    connect(ui->CancelCmd, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

InsertTableDlg::~InsertTableDlg() = default;

double InsertTableDlg::PositiveNumber(QLineEdit *box, const QString &message)
{
    bool isNumber = false;
    const double number = box->text().trimmed().toDouble(&isNumber);
    if (isNumber && std::isfinite(number) && number > 0)
        return std::max(std::nearbyint(number), 1.0);
    m_editor.Boxes().Tell(this, message, MessageBoxes::Icon::Stop);
    box->setFocus();
    box->selectAll();
    return 0;
}

QString InsertTableDlg::TableAttrs() const
{
    QString text;
    if (ui->CheckSetWidth->isChecked() && !ui->EditWidth->text().isEmpty())
        text += u" WIDTH="_s + ui->EditWidth->text() + (ui->OptionWidthPix->isChecked() ? QString() : u"%"_s);
    if (const QString align = ChosenWord(ui->ComboHoriz); !align.isEmpty())
        text += u" ALIGN="_s + align.toUpper();
    text += u" BORDER=%1 CELLPADDING=%2 CELLSPACING=%3"_s.arg(ui->UpDownBorder->value())
                .arg(ui->UpDownPadding->value())
                .arg(ui->UpDownSpacing->value());
    if (const std::optional<QString> color = m_background->Entered())
        text += u" BGCOLOR="_s + *color;
    if (const std::optional<QString> color = m_border->Entered())
        text += u" BORDERCOLOR="_s + *color;
    return text;
}

void InsertTableDlg::OkCmd_Click()
{
    const double rows = PositiveNumber(ui->Rows, tr("Please specify a positive integer for the number of table rows."));
    if (rows == 0)
        return;
    const double columns =
        PositiveNumber(ui->Cols, tr("Please specify a positive integer for the number of table columns."));
    if (columns == 0)
        return;
    if (rows * columns > MostCells) {
        m_editor.Boxes().Tell(
            this, tr("A new table can have %L1 cells at most. Please specify fewer rows or columns.").arg(MostCells),
            MessageBoxes::Icon::Stop);
        ui->Rows->setFocus();
        return;
    }
    m_table.NumRows = int(rows);
    m_table.NumCols = int(columns);
    m_table.TableAttrs = TableAttrs();
    m_table.Caption = ui->TableCaption->text();
    DesignSurface &surface = m_editor.Surface();
    surface.SetShowBorders(ui->CheckShowBorder->isChecked());
    m_table = surface.ExecCommand(DECMD_INSERTTABLE, ExecOption::DontPromptUser, QVariant::fromValue(m_table))
                  .value<InsertTableParam>();
    accept();
    surface.setFocus();
}
