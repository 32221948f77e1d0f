#pragma once

#include "platform/surface/Decmd.h"

#include <QDialog>

#include <memory>

class ColorRow;
class Editor;
class QLineEdit;

namespace Ui {
class InsertTableDlg;
}

/// Insert > Table: OK puts a new table where the caret is, one step for undo.
class InsertTableDlg : public QDialog
{
    Q_OBJECT

public:
    explicit InsertTableDlg(Editor &editor, QWidget *parent = nullptr);
    ~InsertTableDlg() override;

private:
    void OkCmd_Click();
    /// The number in a box, rounded; 0 after telling the user that it is none, or not above zero.
    double PositiveNumber(QLineEdit *box, const QString &message);
    QString TableAttrs() const;

    Editor &m_editor;
    std::unique_ptr<Ui::InsertTableDlg> ui;
    ColorRow *m_background;
    ColorRow *m_border;
    InsertTableParam m_table; ///< what OK is to make
};
