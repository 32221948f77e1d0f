#pragma once

#include <QObject>

#include <memory>

class CommandTable;
class Editor;
class FormatBoxes;
class PreviewView;
class QMainWindow;
class QToolBar;

/// The two rows under the menus: `tbToolBar` with the commands on the page, `Toolbar1` with those on its text and the
/// boxes of style, font and size.
class ToolBars : public QObject
{
    Q_OBJECT

public:
    /// Adds the bars to `window`; the menus are in `table` already.
    ToolBars(QMainWindow &window, Editor &editor, PreviewView &preview, CommandTable &table);
    ~ToolBars() override;

    /// Selection or page changed in the design view. Quick: it runs at every move of the caret.
    void Follow();
    /// Sets what is on in the view of the page that is shown, menus included.
    void UpdateToolbars();

private:
    Editor &m_editor;
    CommandTable &m_table;
    QToolBar *m_formats;
    std::unique_ptr<FormatBoxes> m_boxes;
};
