#pragma once

#include "shell/PaneLayout.h"

#include <QWidget>

class LeftPane;
class Splitter;
struct AppState;

/// The inside of the window: left pane, splitter and work area. Places them as PaneLayout says.
class WindowPanes : public QWidget
{
    Q_OBJECT

public:
    /// Takes `work`, which fills the right side.
    WindowPanes(AppState &app, QWidget *work, QWidget *parent = nullptr);

    LeftPane &Left() const { return *m_left; }

    /// Lays all out with a left pane of so many twips, within the bounds of PaneLayout. In a window that does not show
    /// yet, the width is kept for the moment when it does.
    void SizeControls(double paneWidth);
    /// The place of the splitter in twips, as held within its bounds.
    double PaneWidth() const { return m_width; }

    /// Collapses the left pane, or brings it back at the width that it has at start-up. The keyboard does not stay on
    /// a control that goes.
    void HidePane();
    void ShowPane();

signals:
    void PaneHiddenChanged();
    /// The collapsed pane had the keyboard.
    void FocusLost();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    PaneLayout::Area Inside() const;
    void ConnectSplitter();
    void DragTo(int place);
    void Place(QWidget *widget, const PaneLayout::Box &box);

    AppState &m_app;
    LeftPane *m_left;
    Splitter *m_splitter;
    QWidget *m_work;
    QWidget *m_picSplitter; ///< shows where the splitter would go
    PaneLayout::Boxes m_boxes;
    double m_width = PaneLayout::StartWidth;
    double m_dragged = 0;
};
