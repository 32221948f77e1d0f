// Find and replace: a word in all pages of a documentation tree, against grep and what the engine takes to load the
// pages that hold it; every place in one page, against the same in the bare source control.

#include "bench/BenchRig.h"
#include "editing/GlobalRun.h"
#include "editing/PageSearch.h"
#include "platform/SourceEditor.h"

#include <benchmark/benchmark.h>
#include <QElapsedTimer>
#include <QProcess>
#include <Qsci/qsciscintilla.h>

#include <algorithm>
#include <functional>

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

double Milliseconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

/// What we take and what it is measured against, in turns, so that both see the machine under the same load.
class Against
{
public:
    explicit Against(benchmark::State &state) : m_state(state) {}
    ~Against()
    {
        const double ours = Median(m_ours);
        const double theirs = Median(m_theirs);
        m_state.counters["yardstick_ms"] = theirs;
        m_state.counters["ratio"] = theirs > 0 ? ours / theirs : 0;
    }
    Q_DISABLE_COPY(Against)

    void Measure(const std::function<void()> &theirs, const std::function<void()> &ours)
    {
        m_theirs.append(Milliseconds(theirs));
        m_ours.append(Milliseconds(ours));
        m_state.SetIterationTime(m_ours.last() / 1000);
    }

private:
    static double Median(QList<double> values)
    {
        std::sort(values.begin(), values.end());
        return values.value(values.size() / 2);
    }

    benchmark::State &m_state;
    QList<double> m_ours;
    QList<double> m_theirs;
};

/// What it takes at least: to know the files that hold the word, and to have their pages in the engine.
void GrepAndLoad(const QString &word, const std::function<void(const QString &)> &then = {})
{
    QProcess grep;
    grep.start(u"grep"_s, {u"-rl"_s, word, bench->Folder.filePath(u"tree"_s)});
    grep.waitForFinished();
    for (const QString &path : hits) {
        bench->OpenBare(path);
        if (then)
            then(path);
    }
}

/// The text that the engine has, as plain bytes, beside the page.
void SaveBare(const QString &path)
{
    const QByteArray text = bench->AskBare(u"document.documentElement.outerHTML"_s).toString().toUtf8();
    QFile file(path + u".saved"_s);
    if (!file.open(QFile::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write a page");
    file.close();
    file.remove();
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
    Against against(state);
    for (auto _ : state) {
        found = 0;
        against.Measure([&] { GrepAndLoad(word, replace ? SaveBare : std::function<void(const QString &)>()); },
                        [&] {
                            run.Start(
                                {.Files = files, .Step = {.Text = word}, .Replace = replace, .Replacement = other});
                            loop.exec();
                        });
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

/// The same in the bare source control.
class BareReplace
{
public:
    explicit BareReplace(int count) : m_text(PageWithWords(count).toUtf8()) { m_view.setUtf8(true); }
    void Reset() { m_view.SendScintilla(QsciScintilla::SCI_SETTEXT, m_text.constData()); }
    void Replace() { m_view.setText(m_view.text().replace(Word, u"fern"_s)); }

private:
    QByteArray m_text;
    QsciScintilla m_view;
};

void ReplaceAllInPage(benchmark::State &state, const QString &replacement)
{
    bench->Surface().LoadText(PageWithWords(int(state.range(0))), bench->Folder.filePath(u"x.htm"_s));
    bench->Surface().WaitWhileBusy();
    BareReplace bare(int(state.range(0)));
    Against against(state);
    for (auto _ : state) {
        bare.Reset();
        bench->Surface().CaretToPageStart();
        bench->Surface().IsDirty();
        int count = 0;
        against.Measure([&] { bare.Replace(); },
                        [&] { count = ReplaceAllIn(bench->Surface(), {.Text = Word}, replacement); });
        if (count != state.range(0))
            state.SkipWithError("not every place was replaced");
        bench->Edit([] { bench->Surface().ExecCommand(DECMD_UNDO); }); // the page is at rest again
    }
    bench->Forget();
}

void ReplaceAllInSource(benchmark::State &state)
{
    SourceEditor &source = bench->Window.Page().Source();
    BareReplace bare(int(state.range(0)));
    Against against(state);
    for (auto _ : state) {
        bare.Reset();
        source.SetText(PageWithWords(int(state.range(0))));
        against.Measure([&] { bare.Replace(); }, [&] { ReplaceAllIn(source, {.Text = Word}, u"fern"_s); });
    }
    source.ResetModified();
}

} // namespace

BENCHMARK(GlobalFind)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
BENCHMARK(GlobalReplace)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(6);
BENCHMARK(ReplaceAllInSource)->Arg(1250)->Arg(2500)->Arg(5000)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(ReplaceAllInPage, words, u"fern"_s)
    ->Arg(1250)
    ->Arg(2500)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(ReplaceAllInPage, markup, u"<b>fern</b>"_s)
    ->Arg(1250)
    ->Arg(2500)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

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
