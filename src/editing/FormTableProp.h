#pragma once

#include "editing/TableAttributes.h"
#include "platform/surface/Dom.h"

#include <QDialog>

#include <memory>

class Editor;

namespace Ui {
class FormTableProp;
}

/// Table Properties: shows the table around the selection; OK gives it what is shown, one step for undo. Without a
/// change the table is left as it is written.
class FormTableProp : public QDialog
{
    Q_OBJECT

public:
    explicit FormTableProp(Editor &editor, QWidget *parent = nullptr);
    ~FormTableProp() override;

private:
    void FindTable();
    void ShowTable(const TableAttributes &table);
    TableAttributes Entered() const;
    void WriteTableBack();
    void BringBordersInLine();
    void OKButton_Click();

    Editor &m_editor;
    std::unique_ptr<Ui::FormTableProp> ui;
    DomElement m_element; ///< the table, or what it stands close to the start of
    QString m_text;       ///< of that element; "" when there is none
    bool m_bordersShown;  ///< as the dialog found them
};
