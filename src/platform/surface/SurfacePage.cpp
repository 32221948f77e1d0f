#include "platform/surface/SurfacePage.h"

#include "platform/surface/InertProfile.h"
#include "platform/surface/SurfaceScripts.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QUuid>
#include <QWebEngineHistory>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSurface, "inkloom.surface", QtWarningMsg)

constexpr auto OwnWorld = QWebEngineScript::ApplicationWorld;

QString ToScriptLiteral(const QJsonValue &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array).sliced(1).chopped(1);
}

} // namespace

/// Where the answer of one call arrives. Shared with the engine's callback, which may come after the caller gave up.
struct SurfacePage::Answer
{
    QVariant Value;
    bool Done = false;
    QEventLoop Loop;
};

SurfacePage::SurfacePage(QObject *parent)
    : QWebEnginePage(InertProfile::Instance(), parent), m_secret(QUuid::createUuid().toString(QUuid::Id128))
{
    InertProfile::ApplySettings(*settings());
    m_queueTimer.setSingleShot(true);
    m_queueTimer.setInterval(1);
    connect(&m_queueTimer, &QTimer::timeout, this, &SurfacePage::DispatchQueue);
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this] {
        m_alive = false;
        for (const auto &waiting : std::as_const(m_pending))
            if (const auto answer = waiting.lock())
                answer->Loop.quit();
        m_pending.clear();
        Enqueue([this] { emit RendererGone(); });
    });
}

SurfacePage::~SurfacePage()
{
    m_living.reset(); // the engine still answers, with nothing, what is open when it goes down
}

void SurfacePage::InjectScripts()
{
    // By hand rather than as a script of the page: after a renderer was replaced, the engine at times runs none of
    // those in the documents that follow.
    static const QString scripts = SurfaceScripts();
    runJavaScript(QString(scripts).replace("@SECRET@"_L1, m_secret), OwnWorld);
}

QString SurfacePage::StartDocument(const QString &doctype, const QUrl &base)
{
    // The policy of this empty document goes on to hold for the page that replaces its content: even what the request
    // filter never sees (frames of data: addresses, say) stays shut.
    static const QString policy = u"default-src 'none'; img-src file: data:; style-src file: 'unsafe-inline'; "
                                  "font-src file: data:; media-src file:"_s;
    const QString name = "document-"_L1 + QString::number(++m_documents);
    m_alive = true;
    m_ownUrl = base.isEmpty() ? QUrl(u"about:blank"_s) : base;
    setHtml(doctype + "<html id=\""_L1 + name + "\"><head><meta http-equiv=\"Content-Security-Policy\" content=\""_L1 +
                policy + "\"></head></html>"_L1,
            m_ownUrl);
    history()->clear();
    return name;
}

void SurfacePage::RunScript(const QString &name, const QJsonValue &argument, std::function<void(const QVariant &)> done)
{
    const QString script = "Surface.call("_L1 + ToScriptLiteral(name) + u',' + ToScriptLiteral(argument) + u')';
    runJavaScript(script, OwnWorld, std::move(done));
}

QVariant SurfacePage::Call(const QString &name, const QJsonValue &argument, int timeoutMilliseconds)
{
    if (!m_alive)
        return {};
    const auto answer = std::make_shared<Answer>();
    m_pending.append(answer);
    RunScript(name, argument, [answer](const QVariant &value) {
        answer->Value = value;
        answer->Done = true;
        answer->Loop.quit();
    });
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(timeoutMilliseconds);
    connect(&limit, &QTimer::timeout, &answer->Loop, &QEventLoop::quit);
    ++m_waiting;
    while (!answer->Done && m_alive && limit.isActive())
        if (answer->Loop.exec(QEventLoop::ExcludeUserInputEvents) != 0)
            break; // the program is ending
    --m_waiting;
    m_pending.removeIf([&](const std::weak_ptr<Answer> &other) { return other.expired() || other.lock() == answer; });
    if (!answer->Done)
        qCInfo(lcSurface) << "no answer from the page to" << name;
    ResumeQueue();
    return answer->Value;
}

std::optional<QJsonValue> SurfacePage::WaitForEvent(const QString &type, const std::function<void()> &start,
                                                    int timeoutMilliseconds)
{
    if (m_awaiter)
        return {};
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(this, &QWebEnginePage::renderProcessTerminated, &loop, &QEventLoop::quit);
    limit.start(timeoutMilliseconds);
    m_awaited = type;
    m_awaiter = &loop;
    ++m_waiting;
    start();
    while (m_awaiter && m_alive && limit.isActive())
        if (loop.exec(QEventLoop::ExcludeUserInputEvents) != 0)
            break;
    --m_waiting;
    const bool arrived = !m_awaiter;
    m_awaiter = nullptr;
    ResumeQueue();
    return arrived ? std::optional(m_arrived) : std::nullopt;
}

void SurfacePage::ResumeQueue()
{
    if (m_waiting == 0 && (!m_events.isEmpty() || !m_tasks.isEmpty()) && !m_queueTimer.isActive())
        m_queueTimer.start();
}

void SurfacePage::CallLater(const QString &name, const QJsonValue &argument, std::function<void(const QVariant &)> done)
{
    RunScript(name, argument,
              [this, living = std::weak_ptr<int>(m_living), done = std::move(done)](const QVariant &value) {
                  if (!living.expired())
                      Enqueue([done, value] { done(value); });
              });
}

void SurfacePage::Enqueue(std::function<void()> task)
{
    m_tasks.append(std::move(task));
    if (!m_queueTimer.isActive())
        m_queueTimer.start();
}

void SurfacePage::Queue(PageEvent event)
{
    if (m_awaiter && event.Type == m_awaited) {
        m_arrived = event.Data;
        std::exchange(m_awaiter, nullptr)->quit();
        return;
    }
    const auto same = std::find_if(m_events.begin(), m_events.end(),
                                   [&](const PageEvent &other) { return other.Type == event.Type; });
    // The newest one goes to the end: what it says holds after all that is told there, not before.
    if (same != m_events.end() && !event.Type.startsWith("on"_L1))
        m_events.erase(same);
    m_events.append(std::move(event));
    if (!m_queueTimer.isActive())
        m_queueTimer.start();
}

void SurfacePage::DispatchQueue()
{
    if (m_waiting > 0)
        return; // the wait starts the timer again when it is over
    // One by one: a handler may wait for something that stands behind it in the queue.
    while (!m_events.isEmpty() && m_waiting == 0)
        emit EventArrived(m_events.takeFirst());
    while (!m_tasks.isEmpty() && m_waiting == 0)
        m_tasks.takeFirst()();
}

bool SurfacePage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    // setHtml arrives as a typed "data:" address. All else (a meta refresh, a form, a frame, a dropped file) is what
    // the page or the user's mouse tries on its own.
    return isMainFrame && type == NavigationTypeTyped && (url.scheme() == "data"_L1 || url == m_ownUrl);
}

void SurfacePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message, int line,
                                           const QString &source)
{
    if (!message.startsWith(m_secret)) {
        qCDebug(lcSurface) << source << line << message;
        return;
    }
    const QJsonArray parts = QJsonDocument::fromJson(QStringView(message).sliced(m_secret.size()).toUtf8()).array();
    Queue({parts.at(0).toString(), parts.at(1)});
}

QWebEnginePage *SurfacePage::createWindow(WebWindowType)
{
    return nullptr;
}

QStringList SurfacePage::chooseFiles(FileSelectionMode, const QStringList &, const QStringList &)
{
    return {}; // a click on a file field of the page under edit
}
