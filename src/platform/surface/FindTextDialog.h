#pragma once

#include <QDialog>

#include <memory>

class DesignSurface;
namespace Ui {
class FindTextDialog;
}

/// Looks for words in the page of a design surface, from the selection on, and goes on at the page's other end. Stays
/// open beside the page; where nothing is found it says so in its own line.
class FindTextDialog : public QDialog
{
    Q_OBJECT

public:
    FindTextDialog(DesignSurface &surface, QWidget *parent);
    ~FindTextDialog() override;

    /// Shows itself, ready for other words.
    void Ask();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Way { Forward, Back };
    void Find(Way way);

    DesignSurface &m_surface;
    std::unique_ptr<Ui::FindTextDialog> ui;
};
