#include "platform/PreviewView.h"

#include <QFile>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

bool IsShown(const QUrl &url)
{
    const QString scheme = url.scheme();
    return scheme == "http"_L1 || scheme == "https"_L1 || scheme == "file"_L1 || scheme == "about"_L1 ||
           scheme == "data"_L1 || scheme == "blob"_L1;
}

/// A page may show pictures and style sheets of its own disk, and reach the network. So that it can't send away what
/// lies there, its scripts may not read files, nor frames show what is no page or picture.
class NoReadingOfFiles : public QWebEngineUrlRequestInterceptor
{
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        if (info.requestUrl().scheme() != "file"_L1)
            return;
        using Info = QWebEngineUrlRequestInfo;
        const QString path = info.requestUrl().path();
        const bool frame = info.resourceType() == Info::ResourceTypeSubFrame;
        const bool object = info.resourceType() == Info::ResourceTypeObject;
        static const QRegularExpression shown(u"\\.(s?html?|php|asp|jpe?g|gif|png|svg|webp)$"_s,
                                              QRegularExpression::CaseInsensitiveOption);
        const bool read =
            info.resourceType() == Info::ResourceTypeXhr || info.resourceType() == Info::ResourceTypePrefetch;
        info.block(read || ((frame || object) && !shown.match(path).hasMatch()));
    }
};

} // namespace

/// Links that would open a window stay here. What a page writes to its console is the page's own affair.
class PreviewView::Page : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;

    qint64 ShownBy = 0; ///< the renderer process of this page; 0 before it has one

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType, bool) override { return IsShown(url); }

    QWebEnginePage *createWindow(WebWindowType) override
    {
        // The address is known only once the new page asks for it.
        auto *asked = new QWebEnginePage(profile(), this);
        QObject::connect(asked, &QWebEnginePage::urlChanged, this, [this, asked](const QUrl &url) {
            asked->deleteLater();
            if (IsShown(url))
                load(url);
        });
        return asked;
    }

    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int, const QString &) override {}
};

PreviewView::PreviewView(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

PreviewView::~PreviewView()
{
    DropPage();
    delete m_view; // before the profile
}

void PreviewView::StartEngine()
{
    if (m_profile)
        return;
    m_profile = std::make_unique<QWebEngineProfile>();
    m_view = new QWebEngineView(this);
    QWebEngineSettings *settings = m_profile->settings();
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    m_profile->setUrlRequestInterceptor(new NoReadingOfFiles(m_profile.get()));
    settings->setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, false);
    settings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    settings->setAttribute(QWebEngineSettings::ShowScrollBars, true);
    settings->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, true);
    // A file that the engine does not take for a page, such as a .php one, is meant to be shown all the same.
    connect(m_profile.get(), &QWebEngineProfile::downloadRequested, this, [this](QWebEngineDownloadRequest *download) {
        const QUrl url = download->url();
        download->cancel();
        QFile file(m_path);
        if (m_page && url.matches(QUrl::fromLocalFile(m_path), QUrl::RemoveFragment) && file.open(QIODevice::ReadOnly))
            m_page->setContent(file.readAll(), u"text/html"_s, url);
    });
    m_view->setAccessibleName(tr("Preview"));
    layout()->addWidget(m_view);
    setFocusProxy(m_view);
}

void PreviewView::Navigate(const QString &path)
{
    ShowAddress(path.isEmpty() ? QUrl() : QUrl::fromLocalFile(path));
}

void PreviewView::ShowAddress(const QUrl &address)
{
    m_path = address.toLocalFile();
    DropPage();
    if (!address.isValid() || !IsShown(address))
        return;
    StartEngine();
    NewPage();
    m_page->load(address);
    if (QWidget *input = m_view->focusProxy())
        input->setAccessibleName(tr("Preview"));
}

/// Each file gets a page of its own: one that hangs can't be led anywhere else.
void PreviewView::NewPage()
{
    m_page = new Page(m_profile.get());
    connect(m_page, &QWebEnginePage::loadFinished, this, &PreviewView::Loaded);
    connect(m_page, &QWebEnginePage::renderProcessPidChanged, this,
            [this](qint64 process) { m_page->ShownBy = process; });
    m_view->setPage(m_page);
}

/// No question is asked of the page, which may hang in a script: its process ends with it.
void PreviewView::DropPage()
{
    Page *page = std::exchange(m_page, nullptr);
    if (!page)
        return;
    page->disconnect(this);
    const qint64 process = page->ShownBy;
    m_view->setPage(nullptr);
    delete page;
    if (process > 0)
        ::kill(static_cast<pid_t>(process), SIGKILL);
}

QUrl PreviewView::Url() const
{
    return m_page ? m_page->url() : QUrl();
}

void PreviewView::GoBack()
{
    if (m_page)
        m_page->triggerAction(QWebEnginePage::Back);
}

void PreviewView::Refresh()
{
    if (m_page)
        m_page->triggerAction(QWebEnginePage::ReloadAndBypassCache);
}

void PreviewView::Stop()
{
    if (m_page)
        m_page->triggerAction(QWebEnginePage::Stop);
}
