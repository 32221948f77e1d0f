#pragma once

#include <QWidget>

#include <memory>

class Editor;

namespace Ui {
class PagePropertiesPanel;
}

/// The Page Properties view: title, style sheet, keywords and description of the page. Changes go into the page when
/// the view is left or the page is saved.
class PagePropertiesPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PagePropertiesPanel(QWidget *parent = nullptr);
    ~PagePropertiesPanel() override;

    /// From now on the panel shows and changes this editor's page.
    void Connect(Editor &editor);

private:
    void ShowFields();
    void TakeFields();
    void ChooseStyleSheet();
    void Command3_Click();

    std::unique_ptr<Ui::PagePropertiesPanel> ui;
    Editor *m_editor = nullptr;
};
