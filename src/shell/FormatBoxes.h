#pragma once

#include <QObject>
#include <QStringList>

class Editor;
class QComboBox;
class QToolBar;

/// The boxes of block format, font and size. They show what holds at the selection, and give it what the user chooses,
/// also when it is the row that they show already. Then the keyboard is back in the page.
class FormatBoxes : public QObject
{
    Q_OBJECT

public:
    /// Appends the boxes to `bar`.
    FormatBoxes(Editor &editor, QToolBar &bar);

    /// Shows what the page told last of the selection; asks it for nothing.
    void Follow();
    void SetOn(bool on);
    /// The block formats of a page that was loaded, in this order.
    void ShowBlockFormats(const QStringList &names);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QComboBox *AddBox(QToolBar &bar, const QString &name, const QString &tip, const QStringList &rows);
    void FontCombo_Click(int row);
    void FontSizeCombo_Click(int row);
    void ComboStyle_Click(int row);

    Editor &m_editor;
    QComboBox *m_styles;
    QComboBox *m_fonts;
    QComboBox *m_sizes;
};
