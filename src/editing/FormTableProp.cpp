#include "editing/FormTableProp.h"

#include "document/Editor.h"
#include "editing/TableControls.h"
#include "platform/Help.h"
#include "platform/surface/DesignSurface.h"
#include "ui_FormTableProp.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype Reach = 20; ///< a table that starts so early in the text of an element is taken with it

/// 0-based in the text of an element; -1: there is none.
qsizetype TableIn(const QString &text)
{
    return text.indexOf("<TABLE"_L1, 0, Qt::CaseInsensitive);
}

} // namespace

FormTableProp::FormTableProp(Editor &editor, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      ui(std::make_unique<Ui::FormTableProp>()),
      m_bordersShown(editor.Surface().ShowBorders())
{
    ui->setupUi(this);
    ui->Look->Connect(editor, u"Graphics Files |*.gif;*.jpg;*.png"_s);
    NameEdit(ui->UpDownBorder, u"EditBorder"_s);
    NameEdit(ui->UpDownPadding, u"EditPadding"_s);
    NameEdit(ui->UpDownSpacing, u"EditSpacing"_s);
    if (editor.Surface().WaitWhileBusy()) {
        editor.SaveSelection();
        FindTable();
    }
    ShowTable(m_text.isEmpty() ? TableAttributes() : ReadTable(m_text, TableIn(m_text) + 1));
    ui->CheckShowBorder->setChecked(m_bordersShown);
    connect(ui->OKButton, &QPushButton::clicked, this, &FormTableProp::OKButton_Click);
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->CommandHelp, &QPushButton::clicked, this, [this] { ShowHelp(this); });
}

FormTableProp::~FormTableProp() = default;

void FormTableProp::FindTable()
{
    const bool isObject = m_editor.Surface().SelectionType() == "Control"_L1;
    DomElement element = m_editor.GetSelectedElement();
    qsizetype reach = isObject ? std::numeric_limits<qsizetype>::max() : Reach - 1;
    // The body may begin with a table that the selection is not in.
    for (; !element.IsNull() && element.tagName() != "BODY"_L1; element = element.parentElement()) {
        const QString text = element.outerHTML();
        const qsizetype table = TableIn(text);
        if (table >= 0 && table < reach) {
            m_text = text;
            if (!isObject) // of an object nothing is written back, as ever
                m_element = element;
            return;
        }
        reach = Reach - 1;
    }
}

void FormTableProp::ShowTable(const TableAttributes &table)
{
    ui->Look->Show(table);
    ui->UpDownBorder->setValue(table.Border);
    ui->UpDownPadding->setValue(table.Padding);
    ui->UpDownSpacing->setValue(table.Spacing);
}

TableAttributes FormTableProp::Entered() const
{
    TableAttributes table;
    static_cast<TableLook &>(table) = ui->Look->Entered();
    table.Border = ui->UpDownBorder->value();
    table.Padding = ui->UpDownPadding->value();
    table.Spacing = ui->UpDownSpacing->value();
    return table;
}

void FormTableProp::WriteTableBack()
{
    if (m_element.IsNull())
        return;
    const QString text = WriteTable(m_text, TableIn(m_text) + 1, Entered());
    if (text == m_text)
        return;
    const DesignSurface::OneStep step(m_editor.Surface()); // redo then brings the caret back, too
    m_element.SetOuterHTML(text);
    m_editor.RestoreSelection();
}

/// The box stands for the surface's own marks, View > Borders for whatever lines there are.
void FormTableProp::BringBordersInLine()
{
    const bool wanted = ui->CheckShowBorder->isChecked();
    if (wanted == m_bordersShown)
        return;
    if (wanted != m_editor.ViewSubTicked(0)) {
        m_editor.ViewSub_Click(0);
        m_editor.RestoreSelection(); // switching the lines takes the caret to the start
    }
    m_editor.Surface().SetShowBorders(wanted);
}

void FormTableProp::OKButton_Click()
{
    if (!ui->Look->CheckSizes(tr("You must specify a valid width for the table."),
                              tr("You must specify a valid height for the table.")))
        return;
    WriteTableBack();
    BringBordersInLine();
    accept();
    m_editor.Surface().setFocus();
}
