#include "editing/FormCellProp.h"

#include "document/Editor.h"
#include "editing/TableAttributes.h"
#include "editing/TableControls.h"
#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_FormCellProp.h"

using namespace Qt::StringLiterals;

FormCellProp::FormCellProp(Editor &editor, QWidget *parent)
    : QDialog(parent), m_editor(editor), ui(std::make_unique<Ui::FormCellProp>())
{
    ui->setupUi(this);
    // "pgn" is how the list has always been written.
    ui->Look->Connect(editor, u"Graphics Files |*.gif;*.jpg;*.pgn"_s);
    OfferWords(ui->ComboVert, VAlignWords());
    NameEdit(ui->UpDownRowSpan, u"EditRowSpan"_s);
    NameEdit(ui->UpDownColSpan, u"EditColSpan"_s);
    ReadPage();
    const qsizetype cell = CellAt(m_page, m_position);
    ShowCell(cell > 0 ? ReadCell(m_page, cell) : CellAttributes());

    const int scope = editor.Selection().CellScope;
    (scope == 1 ? ui->OptionRow : scope == 2 ? ui->OptionColumn : ui->OptionCell)->setChecked(true);
    TakeScope();
    for (const QRadioButton *option : {ui->OptionCell, ui->OptionRow, ui->OptionColumn})
        connect(option, &QRadioButton::toggled, this, &FormCellProp::TakeScope);
    connect(ui->OKButton, &QPushButton::clicked, this, &FormCellProp::OKButton_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

FormCellProp::~FormCellProp() = default;

void FormCellProp::ReadPage()
{
    if (!m_editor.Surface().WaitWhileBusy())
        return;
    m_editor.SaveSelection();
    m_editor.GetSelection();
    const SurfaceState &state = m_editor.Selection();
    m_page = state.PendingHtml;
    m_position = state.SelectionOffset;
    m_length = state.SelectionLength;
}

void FormCellProp::ShowCell(const CellAttributes &cell)
{
    ui->Look->Show(cell);
    SelectWord(ui->ComboVert, cell.VAlign);
    ui->CheckNoWrap->setChecked(cell.NoWrap);
    ui->UpDownRowSpan->setValue(cell.RowSpan);
    ui->UpDownColSpan->setValue(cell.ColSpan);
}

CellAttributes FormCellProp::Entered() const
{
    CellAttributes cell;
    static_cast<TableLook &>(cell) = ui->Look->Entered();
    cell.VAlign = ChosenWord(ui->ComboVert);
    cell.NoWrap = ui->CheckNoWrap->isChecked();
    cell.RowSpan = ui->UpDownRowSpan->value();
    cell.ColSpan = ui->UpDownColSpan->value();
    return cell;
}

CellScope FormCellProp::Scope() const
{
    if (ui->OptionRow->isChecked())
        return CellScope::Row;
    return ui->OptionColumn->isChecked() ? CellScope::Column : CellScope::Cell;
}

void FormCellProp::TakeScope()
{
    using Fixed = TableLookPanel::Fixed;
    const CellScope scope = Scope();
    const bool row = scope == CellScope::Row;
    const bool column = scope == CellScope::Column;
    setWindowTitle(row ? tr("Row Properties") : column ? tr("Column Properties") : tr("Cell Properties"));
    ui->Look->Fix(row ? Fixed::Width : column ? Fixed::Height : Fixed::Nothing);
    ui->UpDownRowSpan->setEnabled(!row);
    ui->UpDownColSpan->setEnabled(!column);
    if (row)
        ui->UpDownRowSpan->setValue(1);
    if (column)
        ui->UpDownColSpan->setValue(1);
}

void FormCellProp::OKButton_Click()
{
    if (!ui->Look->CheckSizes(tr("You must specify a valid width for the table cell."),
                              tr("You must specify a valid height for the table cell.")))
        return;
    const ChangedCells changed = WriteCells(m_page, m_position, m_length, Scope(), Entered());
    if (changed.Text != m_page)
        WritePage(changed);
    accept();
    m_editor.Surface().setFocus();
}

void FormCellProp::WritePage(const ChangedCells &changed)
{
    DesignSurface &surface = m_editor.Surface();
    if (!surface.WaitWhileBusy())
        return;
    const QString base = surface.BaseURL();
    // What the cells do not differ in stays the source that it was.
    surface.SetDocumentHTML(changed.Text, DesignSurface::TextForm::Engine);
    surface.SetBaseURL(base);
    m_editor.Page().HtmlDirty = true;
    if (surface.WaitWhileBusy() && !surface.SelectInText(changed.Text, {changed.Position, changed.Length}))
        m_editor.RestoreSelection();
}
