// What a person waits for, against the least that the engine itself takes for the same: opening a page, saving it, one
// key stroke. Pairs run in one process, one after the other, so that their ratio means something on a busy machine.

#include "document/Editor.h"
#include "platform/FileDialogs.h"
#include "platform/MessageBoxes.h"
#include "platform/Settings.h"
#include "platform/surface/DesignSurface.h"
#include "shell/MainForm.h"

#include <benchmark/benchmark.h>

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

using namespace Qt::StringLiterals;

namespace {

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
        if (Heard && message == "changed"_L1)
            Heard();
    }
};

class Bench
{
public:
    Bench() : Ini(Folder.filePath(u"config"_s), {}), Window({.Ini = Ini, .Boxes = Boxes, .Dialogs = Dialogs})
    {
        Ini.SetIni(u"Locations"_s, u"main dir"_s, QStringLiteral(INKLOOM_SOURCE_DIR "/resources/"));
        Window.Start(u"nosplash-"_s);
        auto *page = new BarePage(&Profile, &Bare);
        page->settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
        QWebEngineScript script;
        script.setInjectionPoint(QWebEngineScript::DocumentCreation);
        script.setWorldId(QWebEngineScript::ApplicationWorld);
        script.setSourceCode(u"addEventListener('input', () => console.debug('changed'), true)"_s);
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
        const QString path = Folder.filePath(u"page%1.htm"_s.arg(kilobytes));
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

Bench *bench = nullptr;

constexpr int KeysInARow = 10; // one after the other, each waited for

void Key(QWidget *widget)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_X, Qt::NoModifier, u"x"_s);
        QCoreApplication::sendEvent(widget, &event);
    }
}

/// Both start from a small page at rest: otherwise each load would pay for the layout of the page before.
void LoadBare(benchmark::State &state)
{
    const QString path = bench->PageFile(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        bench->OpenBare(bench->PageFile(1));
        bench->AskBare(u"document.body.offsetHeight"_s);
        state.ResumeTiming();
        bench->OpenBare(path);
    }
}

void LoadFile(benchmark::State &state)
{
    const QString path = bench->PageFile(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        bench->Open(bench->PageFile(1));
        bench->Surface().QueryStatus(DECMD_BOLD); // needs the layout
        state.ResumeTiming();
        bench->Open(path);
    }
}

/// outerHTML to the host, and that text to a file in the same safe way.
void SaveBare(benchmark::State &state)
{
    bench->OpenBare(bench->PageFile(int(state.range(0))));
    const QString out = bench->Folder.filePath(u"out.htm"_s);
    for (auto _ : state)
        WriteTextFile(out, bench->AskBare(u"document.documentElement.outerHTML"_s).toString(), {});
}

void SaveHTML(benchmark::State &state)
{
    bench->Open(bench->PageFile(int(state.range(0))));
    const QString out = bench->Folder.filePath(u"saved.htm"_s);
    bench->Surface().setFocus();
    bench->Surface().CaretToPageStart();
    for (auto _ : state) {
        state.PauseTiming(); // another page each time: the text of an unchanged one is at hand already
        Key(bench->Surface().InputWidget());
        bench->Surface().IsDirty();
        state.ResumeTiming();
        bench->Window.Page().SaveHTML(out);
    }
    bench->Surface().MarkClean();
    bench->Window.Page().Page().HtmlDirty = false;
}

void KeyBare(benchmark::State &state)
{
    bench->OpenBare(bench->PageFile(int(state.range(0))));
    bench->AskBare(u"document.designMode = 'on'; getSelection().collapse(document.querySelector('p').firstChild, 0)"_s);
    bench->Bare.activateWindow();
    bench->Bare.setFocus();
    QEventLoop loop;
    bench->Page().Heard = [&] { loop.quit(); };
    for (auto _ : state) {
        for (int i = 0; i < KeysInARow; ++i) {
            Key(bench->Bare.focusProxy());
            loop.exec();
        }
        bench->AskBare(u"1"_s);
    }
    bench->Page().Heard = {};
}

void KeyStroke(benchmark::State &state)
{
    bench->Open(bench->PageFile(int(state.range(0))));
    bench->Window.activateWindow();
    bench->Surface().setFocus();
    bench->Surface().SelectText(u" "_s);
    bench->Surface().CollapseSelection();
    QEventLoop loop;
    // Connected last, so that all that the window does on a change is done.
    const auto done = QObject::connect(&bench->Surface(), &DesignSurface::DisplayChanged, &loop, &QEventLoop::quit);
    for (auto _ : state) {
        for (int i = 0; i < KeysInARow; ++i) {
            Key(bench->Surface().InputWidget());
            loop.exec();
        }
        bench->Surface().IsDirty(); // waits for all of them
    }
    QObject::disconnect(done);
    bench->Surface().MarkClean();
    bench->Window.Page().Page().HtmlDirty = false;
}

BENCHMARK(LoadBare)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);
BENCHMARK(LoadFile)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);
BENCHMARK(SaveBare)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveHTML)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(KeyBare)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(KeyStroke)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QTemporaryDir state;
    qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    Bench all;
    bench = &all;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
