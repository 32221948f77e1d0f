#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QKeyEvent;
class QWebEngineView;
class QWidget;
class SurfacePage;

/// The keyboard and mouse of the design surface on the host's side: which keys belong to the page, and when all that
/// the user did so far has been worked on.
class SurfaceInput : public QObject
{
    Q_OBJECT

public:
    SurfaceInput(QWebEngineView *view, SurfacePage *page, QObject *parent);

    /// Follows the engine's inner widget, which is another one after the renderer was replaced.
    void Watch();

    /// Returns when the page has worked on every key and click up to now. Keys wait in the engine until the page took
    /// the one before, so a question asked right after them would be answered before they arrive.
    /// False when there was nothing to wait for.
    bool Flush();
    /// The page says how many keys and buttons it has seen.
    void Seen(int count);
    /// A new document starts counting anew.
    void Restart();

    /// What answers to the events of a drag over the page; true when it took one. The engine sees none of them.
    void HandleDrags(std::function<bool(QEvent *)> handler) { m_drags = std::move(handler); }

signals:
    /// A key that cuts, copies or pastes was pressed. The page does not see it: nothing overtakes the host's work.
    void Cut();
    void Copy();
    void Paste();
    void PasteText();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Signal = void (SurfaceInput::*)();
    static Signal ClipboardSignal(const QKeyEvent &event);

    QWebEngineView *m_view;
    SurfacePage *m_page;
    QPointer<QWidget> m_widget;
    std::function<bool(QEvent *)> m_drags;
    bool m_pending = false;  ///< input was sent that the page is not known to have worked on
    int m_sent = 0;          ///< keys and buttons sent; equal to the page's count when all arrived
    bool m_flushing = false; ///< the keys that arrive now are our own
};
