#pragma once

#include "editing/TableCells.h"

#include <QDialog>

#include <memory>

class Editor;
struct CellAttributes;

namespace Ui {
class FormCellProp;
}

/// Cell, Row and Column Properties: shows the cell in which the selection starts; OK gives what is shown to that cell,
/// or to all of its row or column. Opens with the scope of SurfaceState. One step for undo; a cell that is as shown is
/// left as it is written.
class FormCellProp : public QDialog
{
    Q_OBJECT

public:
    explicit FormCellProp(Editor &editor, QWidget *parent = nullptr);
    ~FormCellProp() override;

private:
    void ReadPage();
    void ShowCell(const CellAttributes &cell);
    CellAttributes Entered() const;
    CellScope Scope() const;
    void TakeScope();
    void OKButton_Click();
    void WritePage(const ChangedCells &changed);

    Editor &m_editor;
    std::unique_ptr<Ui::FormCellProp> ui;
    QString m_page; ///< its text, as the dialog found it
    qsizetype m_position = 0;
    qsizetype m_length = 0;
};
