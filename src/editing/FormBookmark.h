#pragma once

#include <QDialog>

#include <memory>

class DesignSurface;

namespace Ui {
class FormBookmark;
}

/// Insert > Bookmark: a named anchor where the caret stands. What is selected stays; the anchor comes in front of it.
class FormBookmark : public QDialog
{
    Q_OBJECT

public:
    explicit FormBookmark(DesignSurface &surface, QWidget *parent = nullptr);
    ~FormBookmark() override;

    void done(int result) override;

private:
    void OkCmd_Click();

    DesignSurface &m_surface;
    std::unique_ptr<Ui::FormBookmark> ui;
};
