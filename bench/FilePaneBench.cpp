// The file pane on a big folder, against what the system takes to list it.
//
//   FilePaneBench [FILES]

#include "BenchRig.h"
#include "platform/FolderListing.h"
#include "site/FileListModel.h"
#include "site/FilePane.h"
#include "state/AppState.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <dirent.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Rounds = 25;

struct Measured
{
    const char *What;
    std::function<void()> Work;
    std::function<void()> Before = [] {};
    double Best = 1e9; ///< milliseconds; the least is what the machine's other work has disturbed least
};

/// All in turns, so that each has the same share of quiet moments.
void Measure(std::vector<Measured> &rows)
{
    for (int round = 0; round < Rounds; ++round) {
        for (Measured &row : rows) {
            row.Before();
            QElapsedTimer clock;
            clock.start();
            row.Work();
            row.Best = std::min(row.Best, double(clock.nsecsElapsed()) / 1e6);
        }
    }
}

/// The names as the system gives them, kept as it gives them.
qsizetype Bare(const QByteArray &folder)
{
    QByteArrayList names;
    DIR *open = ::opendir(folder.constData());
    while (const dirent *entry = ::readdir(open)) {
        if (entry->d_type == DT_REG)
            names.append(entry->d_name);
    }
    ::closedir(open);
    return names.size();
}

/// Until the rows of a folder are there and have been drawn.
void Show(FilePane &pane, const QString &folder)
{
    pane.ShowFolder(folder);
    while (pane.IsReading())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    pane.repaint();
}

/// The longest time that the window takes nothing in while the pane goes there; of the quietest round.
double LongestBlock(FilePane &pane, const QString &folder, const std::function<void()> &leave)
{
    double best = 1e9;
    for (int round = 0; round < Rounds; ++round) {
        leave();
        QCoreApplication::processEvents();
        double longest = 0;
        QElapsedTimer clock;
        const auto note = [&] {
            longest = std::max(longest, double(clock.nsecsElapsed()) / 1e6);
            clock.start();
        };
        clock.start();
        pane.ShowFolder(folder);
        note();
        while (pane.IsReading()) {
            QCoreApplication::processEvents();
            note();
        }
        pane.repaint();
        note();
        best = std::min(best, longest);
    }
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    const int files = std::max(1, application.arguments().value(1, u"20000"_s).toInt());
    QTemporaryDir folder;
    for (int number = 0; number < files; ++number) {
        const char *form = number % 4 == 3 ? "picture of page %1.jpeg" : "Page %1.html";
        QFile(folder.filePath(QString::fromLatin1(form).arg(number * 7919LL % files))).open(QFile::WriteOnly);
    }
    QTemporaryDir empty;
    Bench bench;
    auto *pane = bench.Window.findChild<FilePane *>();
    Show(*pane, folder.path());
    printf("%d files, %d rows; best of %d rounds\n", files, pane->ListTopics().rowCount(), Rounds);

    QString &pattern = bench.Window.Page().App().FilePattern;
    const QByteArray path = folder.path().toUtf8();
    const QStringList names = ListFolder(folder.path()).Files;
    const FileRules all{.Pattern = AllFilesPattern, .TextFileExtensions = AppState().TextFileExtensions};
    const auto leave = [&](const QString &next) {
        return [&, next] {
            pattern = next;
            Show(*pane, empty.path());
        };
    };
    const auto fill = [&] { Show(*pane, folder.path()); };
    std::vector<Measured> rows = {{"readdir", [&] { Bare(path); }},
                                  {"QDir::entryList", [&] { QDir(folder.path()).entryList(QDir::Files); }},
                                  {"ListFolder", [&] { ListFolder(folder.path()); }},
                                  {"rows of pages", [&] { RowsOf(names, {}); }},
                                  {"rows of all files", [&] { RowsOf(names, all); }},
                                  {"pane, pages", fill, leave(PagesPattern)},
                                  {"pane, all files", fill, leave(AllFilesPattern)}};
    Measure(rows);
    for (const Measured &row : rows)
        printf("%-44s %8.2f ms %8.2f\n", row.What, row.Best, row.Best / rows.front().Best);
    printf("%-44s %8.2f ms\n", "longest time that the window stands still",
           LongestBlock(*pane, folder.path(), leave(AllFilesPattern)));
    return 0;
}
