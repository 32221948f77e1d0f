#pragma once

#include "editing/BodyAttributes.h"

#include <QDialog>

#include <array>
#include <memory>

class Editor;
class QCheckBox;
class QFrame;
class QPushButton;

namespace Ui {
class FormBackground;
}

/// Set Page Background: the colours of a page and its background picture. OK is one step for undo; without a change it
/// leaves the page as it is.
class FormBackground : public QDialog
{
    Q_OBJECT

public:
    explicit FormBackground(Editor &editor, QWidget *parent = nullptr);
    ~FormBackground() override;

private:
    struct Row
    {
        QCheckBox *Tick;
        QFrame *Sample;
        QPushButton *Choose;
        quint32 Color;       ///< 0xBBGGRR, as the sample shows it
        bool Chosen = false; ///< by the user; else the page's own words for the colour stay
    };

    void ShowAttributes();
    void ShowColor(int row);
    void ChooseColor(int row);
    void Command1_Click();
    void OKButton_Click();
    BodyAttributes Entered() const;

    Editor &m_editor;
    std::unique_ptr<Ui::FormBackground> ui;
    std::array<Row, BodyAttributes::ColorCount> m_rows;
    BodyAttributes m_page; ///< as the page has them
};
