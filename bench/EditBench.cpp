// What a person does again and again, against what the engine itself takes for the same: a key, bold and its undo, a
// look at the source. Both sides are waited for until the change has been drawn.

#include "bench/BenchRig.h"
#include "platform/SourceEditor.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

Bench *bench = nullptr;

constexpr int KeysInARow = 10; // one after the other, each waited for

void StartBare(const benchmark::State &state)
{
    bench->OpenBare(bench->PageFile(int(state.range(0))));
    bench->AskBare(u"document.designMode = 'on'; document.execCommand('styleWithCSS', false, false);"
                   "getSelection().collapse(document.querySelector('p').firstChild, 0)"_s);
    bench->Bare.activateWindow();
    bench->Bare.setFocus();
}

void Start(const benchmark::State &state)
{
    bench->Open(bench->PageFile(int(state.range(0))));
    bench->Window.activateWindow();
    bench->Surface().setFocus();
    bench->Surface().CaretToPageStart();
    bench->Surface().IsDirty();
}

/// `steps` words in bold and not bold again, each a step of its own.
void FillHistory(int steps)
{
    bench->Surface().SelectText(u"biscuit"_s);
    for (int i = 0; i < steps; ++i)
        bench->Surface().ExecCommand(i % 2 ? DECMD_ITALIC : DECMD_UNDERLINE);
}

void KeyBare(benchmark::State &state)
{
    StartBare(state);
    QEventLoop loop;
    bench->Page().Heard = [&] { loop.quit(); };
    for (auto _ : state)
        for (int i = 0; i < KeysInARow; ++i) {
            Key(bench->Bare.focusProxy());
            loop.exec();
        }
    bench->Page().Heard = {};
}

void KeyStroke(benchmark::State &state)
{
    Start(state);
    FillHistory(int(state.range(1)));
    bench->Surface().CaretToPageStart();
    for (auto _ : state)
        for (int i = 0; i < KeysInARow; ++i)
            bench->Edit([] { Key(bench->Surface().InputWidget()); });
    bench->Forget();
}

/// An arrow key held down: as many as come, then the answer to one question.
void ArrowBare(benchmark::State &state)
{
    StartBare(state);
    for (auto _ : state) {
        for (int i = 0; i < 50; ++i)
            Key(bench->Bare.focusProxy(), i < 25 ? Qt::Key_Right : Qt::Key_Left, {});
        bench->AskBare(u"1"_s);
    }
}

void ArrowHeld(benchmark::State &state)
{
    Start(state);
    for (auto _ : state) {
        for (int i = 0; i < 50; ++i)
            Key(bench->Surface().InputWidget(), i < 25 ? Qt::Key_Right : Qt::Key_Left, {});
        bench->Surface().IsDirty();
    }
}

const QString SelectWord = u"(() => { const t = document.querySelector('p').firstChild;"
                           "getSelection().setBaseAndExtent(t, 0, t, 3); })();"_s;

void BoldBare(benchmark::State &state)
{
    StartBare(state);
    for (auto _ : state) {
        bench->EditBare(SelectWord + u"document.execCommand('bold')"_s);
        state.PauseTiming();
        bench->EditBare(u"document.execCommand('undo')"_s);
        state.ResumeTiming();
    }
}

void Bold(benchmark::State &state)
{
    Start(state);
    FillHistory(int(state.range(1)));
    bench->Surface().SelectText(u"biscuit"_s);
    for (auto _ : state) {
        bench->Edit([] { bench->Surface().ExecCommand(DECMD_BOLD); });
        state.PauseTiming();
        bench->Edit([] { bench->Surface().ExecCommand(DECMD_UNDO); });
        state.ResumeTiming();
    }
    bench->Forget();
}

void UndoBoldBare(benchmark::State &state)
{
    StartBare(state);
    for (auto _ : state) {
        state.PauseTiming();
        bench->EditBare(SelectWord + u"document.execCommand('bold')"_s);
        state.ResumeTiming();
        bench->EditBare(u"document.execCommand('undo')"_s);
    }
}

void UndoBold(benchmark::State &state)
{
    Start(state);
    FillHistory(int(state.range(1)));
    bench->Surface().SelectText(u"biscuit"_s);
    for (auto _ : state) {
        state.PauseTiming();
        bench->Edit([] { bench->Surface().ExecCommand(DECMD_BOLD); });
        state.ResumeTiming();
        bench->Edit([] { bench->Surface().ExecCommand(DECMD_UNDO); });
    }
    bench->Forget();
}

/// The page's text from the engine into a bare source control.
void ToSourceBare(benchmark::State &state)
{
    StartBare(state);
    SourceEditor source;
    source.resize(bench->Surface().size());
    source.show();
    for (auto _ : state) {
        bench->EditBare(u"document.execCommand('insertText', false, 'x')"_s);
        source.SetText(bench->AskBare(u"document.documentElement.outerHTML"_s).toString());
        source.repaint();
    }
}

void ToSource(benchmark::State &state)
{
    bench->KeepSource(Bench::Source(state.range(1)));
    Start(state);
    for (auto _ : state) {
        bench->Edit([] { Key(bench->Surface().InputWidget()); });
        bench->Window.Page().SelectTab(ViewTab::HtmlSource);
        bench->Window.Page().Source().repaint();
        state.PauseTiming();
        bench->Window.Page().SelectTab(ViewTab::Normal);
        bench->Surface().setFocus();
        bench->Surface().IsDirty();
        state.ResumeTiming();
    }
    bench->Forget();
    bench->KeepSource(Bench::Rewritten);
}

/// The engine's own load of the same text from a file.
void FromSourceBare(benchmark::State &state)
{
    for (auto _ : state)
        bench->OpenBare(bench->PageFile(int(state.range(0))));
}

void FromSource(benchmark::State &state)
{
    bench->KeepSource(Bench::Source(state.range(1)));
    Start(state);
    for (auto _ : state) {
        state.PauseTiming();
        bench->Window.Page().SelectTab(ViewTab::HtmlSource);
        Key(bench->Window.Page().Source().focusProxy() ? bench->Window.Page().Source().focusProxy()
                                                       : &bench->Window.Page().Source());
        state.ResumeTiming();
        bench->Window.Page().SelectTab(ViewTab::Normal);
        bench->Surface().WaitWhileBusy();
    }
    bench->Forget();
    bench->KeepSource(Bench::Rewritten);
}

/// To another view and back, with nothing changed in between.
void LookAt(benchmark::State &state)
{
    Start(state);
    const auto view = static_cast<ViewTab>(state.range(1));
    bench->Window.Page().SelectTab(view); // the source's text is in place from the first look on
    bench->Window.Page().SelectTab(ViewTab::Normal);
    for (auto _ : state) {
        bench->Window.Page().SelectTab(view);
        bench->Window.Page().SelectTab(ViewTab::Normal);
    }
}

/// From the page's word that it was drawn to all menus and toolbars brought up to date.
void DisplayToCommands(benchmark::State &state)
{
    Start(state);
    for (auto _ : state)
        emit bench->Surface().DisplayChanged();
    bench->Forget();
}

#define IN_MILLISECONDS Unit(benchmark::kMillisecond)->UseRealTime()
BENCHMARK(KeyBare)->Arg(500)->IN_MILLISECONDS;
BENCHMARK(KeyStroke)->Args({500, 0})->Args({500, 1000})->IN_MILLISECONDS;
BENCHMARK(ArrowBare)->Arg(500)->IN_MILLISECONDS;
BENCHMARK(ArrowHeld)->Arg(500)->IN_MILLISECONDS;
BENCHMARK(BoldBare)->Arg(500)->IN_MILLISECONDS;
BENCHMARK(Bold)->Args({500, 0})->Args({500, 1000})->IN_MILLISECONDS;
BENCHMARK(UndoBoldBare)->Arg(500)->IN_MILLISECONDS;
BENCHMARK(UndoBold)->Args({500, 0})->Args({500, 1000})->IN_MILLISECONDS;
BENCHMARK(ToSourceBare)->Arg(1000)->IN_MILLISECONDS;
BENCHMARK(ToSource)->ArgsProduct({{1000}, {Bench::Rewritten, Bench::Preserved, Bench::Exact}})->IN_MILLISECONDS;
BENCHMARK(FromSourceBare)->Arg(1000)->IN_MILLISECONDS;
BENCHMARK(FromSource)->ArgsProduct({{1000}, {Bench::Rewritten, Bench::Preserved, Bench::Exact}})->IN_MILLISECONDS;
BENCHMARK(LookAt)
    ->Args({500, int(ViewTab::HtmlSource)})
    ->Args({500, int(ViewTab::PageProperties)})
    ->Args({500, int(ViewTab::Publish)})
    ->IN_MILLISECONDS;
BENCHMARK(DisplayToCommands)->Arg(500)->Unit(benchmark::kMicrosecond)->UseRealTime();

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
