#pragma once

#include "document/Editor.h"
#include "platform/FileDialogs.h"
#include "platform/MessageBoxes.h"
#include "platform/Settings.h"
#include "platform/surface/DesignSurface.h"
#include "shell/MainForm.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>

class NoBoxes : public MessageBoxes
{
    Answer Ask(QWidget *, const QString &text, Buttons, Icon) override
    {
        qWarning().noquote() << text;
        return Answer::No;
    }
};

class NoDialogs : public FileDialogs
{
    std::optional<QString> Open(QWidget *, const Request &) override { return {}; }
    std::optional<QString> Save(QWidget *, const Request &) override { return {}; }
    std::optional<QColor> Color(QWidget *, const QColor &) override { return {}; }
    bool Print(QWidget *, QPrinter &) override { return false; }
};

/// A page that tells by console lines what a host would want to know, and nothing else of ours.
class BarePage : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;
    std::function<void()> Heard;

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message, int, const QString &) override
    {
        if (Heard && message == QLatin1String("changed"))
            Heard();
    }
};

/// The whole window, and beside it a bare view of the engine that pages are measured against.
class Bench
{
public:
    Bench()
        : Ini(Folder.filePath(QStringLiteral("config")), {}), Window({.Ini = Ini, .Boxes = Boxes, .Dialogs = Dialogs})
    {
        Ini.SetIni(QStringLiteral("Locations"), QStringLiteral("main dir"),
                   QStringLiteral(INKLOOM_SOURCE_DIR "/resources/"));
        Window.Start(QStringLiteral("nosplash-"));
        auto *page = new BarePage(&Profile, &Bare);
        page->settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
        QWebEngineScript script;
        script.setInjectionPoint(QWebEngineScript::DocumentCreation);
        script.setWorldId(QWebEngineScript::ApplicationWorld);
        // Heard when the change has been drawn, as our surface tells it. Timers do not run with page scripts off.
        script.setSourceCode(QStringLiteral(
            "const drawn = new MessageChannel(); drawn.port1.onmessage = () => console.debug('changed');"
            "addEventListener('input', () => requestAnimationFrame(() => drawn.port2.postMessage(0)), true)"));
        page->scripts().insert(script);
        Bare.setPage(page);
        Bare.resize(Window.Page().Surface().size());
        Bare.show();
    }

    DesignSurface &Surface() { return Window.Page().Surface(); }
    BarePage &Page() { return *static_cast<BarePage *>(Bare.page()); }

    /// The chronicle of the sample site, as often as it takes; a file of that many kilobytes.
    QString PageFile(int kilobytes)
    {
        const QString path = Folder.filePath(QStringLiteral("page%1.htm").arg(kilobytes));
        if (QFile::exists(path))
            return path;
        QFile sample(QStringLiteral(INKLOOM_SOURCE_DIR "/samples/chronicle.htm"));
        QFile file(path);
        if (!sample.open(QFile::ReadOnly) || !file.open(QFile::WriteOnly))
            qFatal("no sample page");
        const QByteArray text = sample.readAll();
        const qsizetype body = text.indexOf('>', text.toLower().indexOf("<body")) + 1;
        const QByteArray inner = text.sliced(body, text.toLower().lastIndexOf("</body") - body);
        file.write(text.first(body));
        for (qsizetype size = body; size < kilobytes * 1000; size += inner.size())
            file.write(inner.first(std::min<qsizetype>(inner.size(), kilobytes * 1000 - size)));
        file.write("</body>\n</html>\n");
        return path;
    }

    void OpenBare(const QString &path)
    {
        QEventLoop loop;
        QObject::connect(&Page(), &QWebEnginePage::loadFinished, &loop, &QEventLoop::quit);
        Page().load(QUrl::fromLocalFile(path));
        loop.exec();
    }

    QVariant AskBare(const QString &script)
    {
        QVariant answer;
        QEventLoop loop;
        Page().runJavaScript(script, QWebEngineScript::ApplicationWorld, [&](const QVariant &value) {
            answer = value;
            loop.quit();
        });
        loop.exec();
        return answer;
    }

    /// Runs a script in the bare view that raises "input", and waits until that was drawn.
    void EditBare(const QString &script)
    {
        QEventLoop loop;
        Page().Heard = [&] { loop.quit(); };
        Page().runJavaScript(script, QWebEngineScript::ApplicationWorld);
        loop.exec();
        Page().Heard = {};
    }

    /// Runs `change` on the surface and waits until it was drawn and the window has taken notice.
    void Edit(const std::function<void()> &change)
    {
        QEventLoop loop;
        // Connected last, so that all that the window does on a change is done.
        bool shown = false;
        const auto done = QObject::connect(&Surface(), &DesignSurface::DisplayChanged, &loop, [&] {
            shown = true;
            loop.quit();
        });
        change();
        if (!shown)
            loop.exec();
        QObject::disconnect(done);
    }

    void Forget()
    {
        Surface().MarkClean();
        Window.Page().Page().HtmlDirty = false;
    }

    /// How pages are opened from here on.
    enum Source { Rewritten, Preserved, Exact };
    void KeepSource(Source how)
    {
        Window.Page().App().PreserveHtml = how != Rewritten;
        Window.Page().App().ExactSource = how == Exact;
        Surface().SetSourceCodePreservation(how != Rewritten);
    }

    void Open(const QString &path)
    {
        Window.Page().Page().FileToLoad = path;
        Window.Page().LoadFile();
        Surface().WaitWhileBusy();
    }

    QTemporaryDir Folder;
    Settings Ini;
    NoBoxes Boxes;
    NoDialogs Dialogs;
    MainForm Window;
    QWebEngineProfile Profile;
    QWebEngineView Bare;
};

inline void Key(QWidget *widget, Qt::Key key = Qt::Key_X, const QString &text = QStringLiteral("x"))
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(widget, &event);
    }
}
