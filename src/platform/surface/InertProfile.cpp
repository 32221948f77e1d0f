#include "platform/surface/InertProfile.h"

#include <QCoreApplication>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

using namespace Qt::StringLiterals;

namespace {

/// Lets through what a page may show from its own disk, and nothing that is a document of its own or needs a network.
class LocalOnly : public QWebEngineUrlRequestInterceptor
{
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        const QString scheme = info.requestUrl().scheme();
        const bool local = scheme == "file"_L1 || scheme == "data"_L1 || scheme == "about"_L1;
        switch (info.resourceType()) {
        case QWebEngineUrlRequestInfo::ResourceTypeSubFrame:
        case QWebEngineUrlRequestInfo::ResourceTypeObject:
        case QWebEngineUrlRequestInfo::ResourceTypePluginResource:
        case QWebEngineUrlRequestInfo::ResourceTypeScript:
        case QWebEngineUrlRequestInfo::ResourceTypeWorker:
        case QWebEngineUrlRequestInfo::ResourceTypeSharedWorker:
        case QWebEngineUrlRequestInfo::ResourceTypeServiceWorker:
        case QWebEngineUrlRequestInfo::ResourceTypePing:
        case QWebEngineUrlRequestInfo::ResourceTypePrefetch:
        case QWebEngineUrlRequestInfo::ResourceTypeXhr:
            info.block(true);
            break;
        default:
            info.block(!local);
        }
    }
};

} // namespace

QWebEngineProfile *InertProfile::Instance()
{
    static QWebEngineProfile *profile = [] {
        auto *made = new QWebEngineProfile(qApp); // no name: off the record
        made->setUrlRequestInterceptor(new LocalOnly(made));
        made->setSpellCheckEnabled(false);
        return made;
    }();
    return profile;
}

void InertProfile::ApplySettings(QWebEngineSettings &settings)
{
    using S = QWebEngineSettings;
    for (const S::WebAttribute off :
         {S::JavascriptEnabled, S::JavascriptCanOpenWindows, S::LocalStorageEnabled, S::PluginsEnabled,
          S::LocalContentCanAccessRemoteUrls, S::HyperlinkAuditingEnabled, S::ErrorPageEnabled, S::DnsPrefetchEnabled,
          S::FullScreenSupportEnabled, S::WebGLEnabled, S::AutoLoadIconsForPage, S::FocusOnNavigationEnabled,
          S::NavigateOnDropEnabled, S::PdfViewerEnabled})
        settings.setAttribute(off, false);
    settings.setAttribute(S::PlaybackRequiresUserGesture, true);
    settings.setAttribute(S::JavascriptCanAccessClipboard, true); // our own scripts only: the page's never run
    settings.setAttribute(S::JavascriptCanPaste, true);
    settings.setAttribute(S::ShowScrollBars, true);
}
