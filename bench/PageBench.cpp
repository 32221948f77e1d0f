// What a person waits for, against the least that the engine itself takes for the same: opening a page and
// saving it. Pairs run in one process, one after the other, so that their ratio means something on a busy machine.

#include "bench/BenchRig.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

Bench *bench = nullptr;

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
    bench->KeepSource(Bench::Source(state.range(1)));
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
    bench->Forget();
    bench->KeepSource(Bench::Rewritten);
}

BENCHMARK(LoadBare)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);
BENCHMARK(LoadFile)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);
BENCHMARK(SaveBare)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveHTML)
    ->ArgsProduct({{100, 1000, 5000}, {Bench::Rewritten, Bench::Preserved, Bench::Exact}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

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
