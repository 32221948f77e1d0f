// How long the editor takes from its start to a page on the screen, and how much memory its processes hold then,
// against a bare window of the web engine. Both are started in turns, on the display that the bench runs on.
//
//   StartBench [ROUNDS]

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb PageColor = 0xff12ab34; // on the screen only when the page is
constexpr int Patience = 30000;        // milliseconds

struct Measured
{
    QList<double> Milliseconds;
    QList<double> Megabytes;
};

/// Looks at three lines of the screen only: grabbing all of it again and again would take a core from who is measured.
bool PageOnScreen()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    const QSize size = screen->size();
    for (int y = size.height() / 4; y < size.height(); y += size.height() / 4) {
        const QImage line = screen->grabWindow(0, 0, y, size.width(), 1).toImage();
        for (int x = 20; x < line.width(); x += 40)
            if (line.pixel(x, 0) == PageColor)
                return true;
    }
    return false;
}

/// Proportional set size of a process and all below it, in megabytes.
double Memory(qint64 process)
{
    const QString folder = u"/proc/%1/"_s.arg(process);
    double sum = 0;
    QFile rollup(folder + u"smaps_rollup"_s);
    if (rollup.open(QFile::ReadOnly)) {
        for (const QByteArray &line : rollup.readAll().split('\n'))
            if (line.startsWith("Pss:"))
                sum += line.mid(4).replace("kB", "").trimmed().toDouble() / 1024;
    }
    for (const QString &thread : QDir(folder + u"task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile children(folder + u"task/"_s + thread + u"/children"_s);
        if (children.open(QFile::ReadOnly))
            for (const QByteArray &child : children.readAll().split(' '))
                if (!child.trimmed().isEmpty())
                    sum += Memory(child.toLongLong());
    }
    return sum;
}

void Measure(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
             Measured &into)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    while (!PageOnScreen() && clock.elapsed() < Patience)
        QThread::msleep(2);
    into.Milliseconds.append(double(clock.elapsed()));
    QThread::msleep(1500); // until caches and spare processes have settled
    into.Megabytes.append(Memory(process.processId()));
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished();
    clock.start();
    while (PageOnScreen() && clock.elapsed() < Patience)
        QThread::msleep(10);
}

double Median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QTemporaryDir folder;
    const QString page = folder.filePath(u"page.htm"_s);
    QFile file(page);
    if (!file.open(QFile::WriteOnly))
        return 1;
    file.write("<html><head><title>Start</title></head><body bgcolor=\"#12ab34\"><p>x</p></body></html>");
    file.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
        environment.insert(QString::fromLatin1(name), folder.filePath(QString::fromLatin1(name)));

    const int rounds = std::max(1, application.arguments().value(1, u"7"_s).toInt());
    Measured editor;
    Measured bare;
    for (int i = 0; i <= rounds; ++i) {
        Measured warm; // the first round only fills the disk cache
        Measure(QStringLiteral(BARE_WINDOW), {page}, environment, i ? bare : warm);
        Measure(QStringLiteral(EDITOR), {u"nosplash-"_s + page}, environment, i ? editor : warm);
    }
    const auto row = [](const char *what, double ours, double theirs) {
        printf("%-36s %8.0f %8.0f %8.2f\n", what, ours, theirs, ours / theirs);
    };
    printf("%-36s %8s %8s %8s\n", "median of rounds", "editor", "bare", "ratio");
    row("start to page on the screen, ms", Median(editor.Milliseconds), Median(bare.Milliseconds));
    row("memory of the process tree, MB", Median(editor.Megabytes), Median(bare.Megabytes));
    return 0;
}
