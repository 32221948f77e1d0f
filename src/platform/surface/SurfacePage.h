#pragma once

#include <QEventLoop>
#include <QJsonValue>
#include <QTimer>
#include <QVariant>
#include <QWebEnginePage>

#include <functional>
#include <memory>
#include <optional>

/// Something that the page told the host.
struct PageEvent
{
    QString Type;
    QJsonValue Data;
};

/// The engine's page behind the design surface: inert, and spoken to by one door in each direction.
///
/// The engine runs its callbacks (console lines, script results) inside a task of its own, in which another script
/// call would never come back, and a queued connection does not leave that task reliably. So whatever the page says
/// goes into one queue, and a timer of one millisecond empties it; handlers run only from there.
class SurfacePage : public QWebEnginePage
{
    Q_OBJECT

public:
    explicit SurfacePage(QObject *parent = nullptr);
    ~SurfacePage() override;

    /// Starts an empty document with this doctype and base; answers with the name that `load` must be called with.
    QString StartDocument(const QString &doctype, const QUrl &base);

    /// Gives the document that was started, once it is there, our page scripts.
    void InjectScripts();

    /// Calls a routine that a page script offers and waits for its answer, without user input. An invalid value when
    /// the renderer died or did not answer in time. Never to be called from within a callback of the engine.
    QVariant Call(const QString &name, const QJsonValue &argument = {}, int timeoutMilliseconds = 10000);
    /// The same without waiting; `done` runs from the queue, with an invalid value when the renderer died.
    void CallLater(const QString &name, const QJsonValue &argument, std::function<void(const QVariant &)> done);

    /// Runs `start` and waits, without user input, for an event of this type, which then does not go into the queue.
    /// Its data; nothing when it did not come in time.
    std::optional<QJsonValue> WaitForEvent(const QString &type, const std::function<void()> &start,
                                           int timeoutMilliseconds);

    /// Runs `task` from the queue.
    void Enqueue(std::function<void()> task);

    bool RendererAlive() const { return m_alive; }
signals:
    /// From the queue. Equal types that wait there together come only once, with the newest data, except for what the
    /// user did ("on...").
    void EventArrived(const PageEvent &event);
    /// From the queue.
    void RendererGone();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message, int line,
                                  const QString &source) override;
    QWebEnginePage *createWindow(WebWindowType type) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList &old, const QStringList &mimeTypes) override;

private:
    struct Answer;

    void Queue(PageEvent event);
    void DispatchQueue();
    void ResumeQueue();
    void RunScript(const QString &name, const QJsonValue &argument, std::function<void(const QVariant &)> done);

    std::shared_ptr<int> m_living = std::make_shared<int>(); ///< gone when this object is
    QString m_secret;                                        ///< first word of every console line that is ours
    QTimer m_queueTimer;
    QList<PageEvent> m_events;
    QList<std::function<void()>> m_tasks;
    QList<std::weak_ptr<Answer>> m_pending;
    QUrl m_ownUrl; ///< of the document being started; any other navigation is refused
    int m_documents = 0;
    QString m_awaited; ///< type that WaitForEvent waits for
    QEventLoop *m_awaiter = nullptr;
    QJsonValue m_arrived;
    int m_waiting = 0; ///< waits under way; the queue rests meanwhile
    bool m_alive = true;
};
