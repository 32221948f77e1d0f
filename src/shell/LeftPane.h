#pragma once

#include <QWidget>

class PaneStrip;
class QStackedLayout;
class QStackedWidget;
class QTabBar;
class QToolButton;

/// The left side of the window: `TabStrip1` with the pages under it and the button that collapses the pane, or the
/// strip that brings it back.
class LeftPane : public QWidget
{
    Q_OBJECT

public:
    explicit LeftPane(QWidget *parent = nullptr);

    /// Pages come in the order of their tabs: Files, Form Builder.
    void AddPage(const QString &title, const QString &tip, QWidget *page);
    /// Selects the first tab, as at every start.
    void ShowFirstPage();
    void ShowCollapsed(bool collapsed);
    /// The keyboard goes to the page that is seen, or to the strip.
    void TakeFocus();

signals:
    void HideAsked();
    void ShowAsked();

private:
    QToolButton *HideButton(const QString &name, QWidget *parent);
    void ShowPage(int index);

    QStackedLayout *m_states;
    PaneStrip *m_strip;
    QTabBar *m_tabs;
    QStackedWidget *m_pages;
    QToolButton *m_hide;  ///< `CommandHide`, beside the tab Files
    QToolButton *m_hide2; ///< `CommandHide2`, at the same place, beside the other tabs
};
