#pragma once

#include <QDialog>

#include <memory>

class DesignSurface;

namespace Ui {
class InsertHTMLDlg;
}

/// Insert > HTML Code: OK puts what was typed into the page as it stands, in place of the selection.
class InsertHTMLDlg : public QDialog
{
    Q_OBJECT

public:
    explicit InsertHTMLDlg(DesignSurface &surface, QWidget *parent = nullptr);
    ~InsertHTMLDlg() override;

private:
    void cmdOK_Click();

    DesignSurface &m_surface;
    std::unique_ptr<Ui::InsertHTMLDlg> ui;
};
