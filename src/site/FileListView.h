#pragma once

#include <QTreeView>

/// The list of files. It tells what the user wants of a row and does nothing itself.
class FileListView : public QTreeView
{
    Q_OBJECT

public:
    explicit FileListView(QWidget *parent = nullptr);

    void SetColumnWidths();  ///< after the model was set
    int SelectedRow() const; ///< -1 when there is none
    void SelectRow(int row); ///< none, when there is no such row
    void ShowSelectedRow();

    /// Words that stand in the list while it is empty.
    void SetHint(const QString &hint);

signals:
    /// Double click or Enter.
    void OpenWanted(int row);
    /// The same with Ctrl, or a click with the middle button.
    void NewWindowWanted(int row);
    void DeleteWanted();
    /// The right button rose, or the menu key was pressed; `place` is one of the screen.
    void MenuWanted(QPoint place);
    void DragWanted(int row);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_hint;
};
