#pragma once

#include "state/PageState.h"

#include <QWidget>

class DesignSurface;
class LinksPanel;
class QLabel;
class PagePropertiesPanel;
class PreviewView;
class QStackedWidget;
class QTabBar;
class SourceEditor;

/// The right side of the window: `TabStrip2` and, stacked under it, the views of the page.
class WorkArea : public QWidget
{
    Q_OBJECT

public:
    explicit WorkArea(QWidget *parent = nullptr);

    DesignSurface &Surface() const { return *m_surface; }
    SourceEditor &Source() const { return *m_source; }

    PagePropertiesPanel &Properties() const { return *m_properties; }
    PreviewView &Preview() const { return *m_preview; }
    LinksPanel &Links() const { return *m_links; }
    /// What holds the views.
    QWidget *Views() const;

    /// What a click on the view's tab does.
    void Choose(ViewTab view);
    /// Shows a view and its tab; raises nothing. The keyboard goes to the view unless it is in the tabs.
    void ShowView(ViewTab view);
    /// The keyboard goes to the view.
    void TakeFocus();
    /// Covers the source view while a save takes its text to the surface and brings back what was written.
    void ShowWhiteOut(bool saving);
    /// The view `steps` tabs further than the one shown, around the end.
    ViewTab Neighbour(int steps) const;

signals:
    /// The user chose another tab. The views are still as they were.
    void ViewChosen(ViewTab view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void AddView(ViewTab view, const QString &title, const QString &tip, QWidget *widget);
    ViewTab ViewOfTab(int index) const;
    int TabOfView(ViewTab view) const;

    QTabBar *m_tabs;
    QStackedWidget *m_views;
    DesignSurface *m_surface;
    SourceEditor *m_source;
    PagePropertiesPanel *m_properties;
    PreviewView *m_preview;
    LinksPanel *m_links;
    QLabel *m_whiteOut;
};
