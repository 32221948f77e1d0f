#pragma once

#include "editing/TableAttributes.h"

#include <QWidget>

#include <memory>

class ColorRow;
class Editor;
class QCheckBox;
class QLineEdit;

namespace Ui {
class TableLookPanel;
}

/// The controls for what tables and cells have in common: size, colours, background picture, alignment.
class TableLookPanel : public QWidget
{
    Q_OBJECT

public:
    explicit TableLookPanel(QWidget *parent = nullptr);
    ~TableLookPanel() override;

    /// Before anything else. `pictures` is the filter of the dialog that asks for the background picture.
    void Connect(Editor &editor, const QString &pictures);

    void Show(const TableLook &look);
    /// A percentage is 100 at most.
    TableLook Entered() const;

    /// False when a ticked width or height is no number from 0 up: tells the user so and goes there.
    bool CheckSizes(const QString &widthMessage, const QString &heightMessage);

    /// Unticks the width, or the height, and lets nobody set it.
    enum class Fixed { Nothing, Width, Height };
    void Fix(Fixed fixed);

private:
    bool CheckSize(const QCheckBox *tick, QLineEdit *edit, const QString &message);
    void Command1_Click();

    Editor *m_editor = nullptr;
    QString m_pictures;
    std::unique_ptr<Ui::TableLookPanel> ui;
    ColorRow *m_background = nullptr;
    ColorRow *m_border = nullptr;
};
