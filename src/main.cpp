#include "platform/DesktopFileDialogs.h"
#include "platform/DesktopMessageBoxes.h"
#include "platform/Folders.h"
#include "platform/Settings.h"
#include "shell/CommandLine.h"
#include "shell/IconTheme.h"
#include "shell/MainForm.h"
#include "shell/TerminationSignals.h"

#include <QApplication>
#include <QIcon>
#include <QLoggingCategory>
#include <QTimer>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts); // the web engine wants it before the application
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"inkloom"_s);
    QGuiApplication::setDesktopFileName(u"inkloom"_s);
    QLoggingCategory::setFilterRules(u"qt.webenginecontext.info=false"_s); // thirty lines on every start
    UseIconTheme();
    UseDimmedIcons();
    QGuiApplication::setWindowIcon(QIcon(u":/inkloom/icons/inkloom.svg"_s));

    Settings ini(Folders::Config(), Folders::SystemConfig());
    // Not as the application's display name: the desktop would add that to every window's title.
    DesktopMessageBoxes boxes(AppState().AppTitle);
    DesktopFileDialogs dialogs;
    MainForm window({.Ini = ini, .Boxes = boxes, .Dialogs = dialogs});

    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::Received, &window, &MainForm::EndNow);
    // The start waits for the engine, so it runs inside the message loop like everything after it.
    QTimer::singleShot(0, &window, [&window] { window.Start(CommandText(QCoreApplication::arguments())); });
    return QApplication::exec();
}
