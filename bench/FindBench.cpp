// Find and replace: a word in all pages of a documentation tree, against grep and what the engine takes to load the
// pages that hold it; every place in one page, against the same in the bare source control.

#include "bench/BenchRig.h"
#include "editing/GlobalRun.h"
#include "editing/PageSearch.h"
#include "platform/SourceEditor.h"

#include <benchmark/benchmark.h>
#include <QProcess>
#include <Qsci/qsciscintilla.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Pages = 2000;
constexpr int PagesWithWord = Pages / 100;
const QString Word = u"quillwort"_s;

Bench *bench = nullptr;
DesignSurface *hidden = nullptr;
QStringList files;
QStringList hits;

/// Pages of some 8 KB, a stretch of the sample chronicle each; the word in every hundredth, once through tags.
void MakeTree()
{
    QFile sample(QStringLiteral(INKLOOM_SOURCE_DIR "/samples/chronicle.htm"));
    if (!sample.open(QFile::ReadOnly))
        qFatal("no sample page");
    const QByteArray text = sample.readAll();
    QDir().mkpath(bench->Folder.filePath(u"tree"_s));
    for (int i = 0; i < Pages; ++i) {
        const bool has = i % (Pages / PagesWithWord) == 7;
        QByteArray page = "<html><head><title>Page</title></head><body>\n";
        const qsizetype start = text.indexOf("<p", (i * 997) % (text.size() / 2));
        page += text.sliced(start, text.indexOf("</p>", start + 7000) - start);
        page += "</p>\n<p>The ";
        page += has ? (i % 200 == 7 ? "quill<b>wort</b>" : "quillwort") : "water lily";
        page += " grows here.</p>\n</body></html>\n";
        const QString path = bench->Folder.filePath(u"tree/page%1.htm"_s.arg(i));
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(page) != page.size())
            qFatal("cannot write a page");
        files.append(path);
        if (has)
            hits.append(path);
    }
}

void GrepAndLoad(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess grep;
        grep.start(u"grep"_s, {u"-rl"_s, Word, bench->Folder.filePath(u"tree"_s)});
        grep.waitForFinished();
        for (const QString &path : hits)
            bench->OpenBare(path);
    }
}

void GrepAlone(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess grep;
        grep.start(u"grep"_s, {u"-rl"_s, Word, bench->Folder.filePath(u"tree"_s)});
        grep.waitForFinished();
    }
}

/// Every other round of a replace puts the word back.
void Run(benchmark::State &state, bool replace)
{
    GlobalRun run(*hidden);
    int found = 0;
    QString word = Word;
    QString other = replace ? u"pillwort"_s : Word;
    QObject::connect(&run, &GlobalRun::Found, &run, [&found] { ++found; });
    QEventLoop loop;
    QObject::connect(&run, &GlobalRun::Finished, &loop, &QEventLoop::quit);
    for (auto _ : state) {
        found = 0;
        run.Start({.Files = files, .Step = {.Text = word}, .Replace = replace, .Replacement = other});
        loop.exec();
        if (found != PagesWithWord)
            state.SkipWithError("not every page was found");
        std::swap(word, other);
    }
}

void GlobalFind(benchmark::State &state)
{
    Run(state, false);
}

void GlobalReplace(benchmark::State &state)
{
    Run(state, true);
}

/// A page of 1 MB with the word that often.
QString PageWithWords(int count)
{
    QString page = u"<html><head><title>x</title></head><body>\n"_s;
    const qsizetype size = 1000000 / count;
    for (int i = 0; i < count; ++i) {
        const QString start = u"<p>The quillwort grows"_s;
        page += start + u" in the water"_s.repeated((size - start.size()) / 13) + u"</p>\n"_s;
    }
    return page + u"</body></html>\n"_s;
}

void ReplaceInSourceControl(benchmark::State &state)
{
    const QByteArray text = PageWithWords(int(state.range(0))).toUtf8();
    QsciScintilla view;
    view.setUtf8(true);
    for (auto _ : state) {
        state.PauseTiming();
        view.SendScintilla(QsciScintilla::SCI_SETTEXT, text.constData());
        state.ResumeTiming();
        view.setText(view.text().replace(Word, u"fern"_s));
    }
}

void ReplaceAllInPage(benchmark::State &state, const QString &replacement)
{
    bench->Surface().LoadText(PageWithWords(int(state.range(0))), bench->Folder.filePath(u"x.htm"_s));
    bench->Surface().WaitWhileBusy();
    for (auto _ : state) {
        state.PauseTiming();
        bench->Surface().CaretToPageStart();
        bench->Surface().IsDirty();
        state.ResumeTiming();
        if (ReplaceAllIn(bench->Surface(), {.Text = Word}, replacement) != state.range(0))
            state.SkipWithError("not every place was replaced");
        state.PauseTiming();
        bench->Surface().ExecCommand(DECMD_UNDO);
        bench->Surface().IsDirty();
        state.ResumeTiming();
    }
    bench->Forget();
}

void ReplaceAllInSource(benchmark::State &state)
{
    SourceEditor &source = bench->Window.Page().Source();
    for (auto _ : state) {
        state.PauseTiming();
        source.SetText(PageWithWords(int(state.range(0))));
        state.ResumeTiming();
        ReplaceAllIn(source, {.Text = Word}, u"fern"_s);
    }
    source.ResetModified();
}

} // namespace

BENCHMARK(GrepAlone)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(GrepAndLoad)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(GlobalFind)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(GlobalReplace)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);
BENCHMARK(ReplaceInSourceControl)->Arg(1000)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReplaceAllInSource)->Arg(1000)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ReplaceAllInPage, words, u"fern"_s)
    ->Arg(1000)
    ->Arg(5000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(ReplaceAllInPage, markup, u"<b>fern</b>"_s)
    ->Arg(1000)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QTemporaryDir state;
    qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    Bench all;
    bench = &all;
    DesignSurface unseen;
    hidden = &unseen;
    MakeTree();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
