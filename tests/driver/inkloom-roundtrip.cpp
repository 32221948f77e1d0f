// inkloom-roundtrip IN OUT [--edit OLD NEW] [--set KEY=VALUE]...
//
// Opens IN in the program's own main window, offscreen or on a display, replaces the first text OLD that the design
// view shows by typing NEW over it, and saves to OUT through File > Save As. Exit code 0 only if all of that worked.
// Settings come from a folder of its own, where --set writes keys of the section "Settings" beforehand.

#include "document/Editor.h"
#include "platform/FileDialogs.h"
#include "platform/MessageBoxes.h"
#include "platform/Settings.h"
#include "platform/surface/DesignSurface.h"
#include "shell/MainForm.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Nobody is there to answer: what the program says goes to the error output, and the box is closed.
class SpokenBoxes : public MessageBoxes
{
public:
    Answer Ask(QWidget *, const QString &text, Buttons buttons, Icon icon) override
    {
        fprintf(stderr, "inkloom says: %s\n", qPrintable(text));
        Complaint = Complaint || icon == Icon::Stop;
        return buttons == Buttons::YesNoCancel ? Answer::Cancel : buttons == Buttons::YesNo ? Answer::No : Answer::Ok;
    }
    bool Complaint = false;
};

class OneName : public FileDialogs
{
public:
    explicit OneName(QString path) : m_path(std::move(path)) {}
    std::optional<QString> Open(QWidget *, const Request &) override { return {}; }
    std::optional<QString> Save(QWidget *, const Request &) override { return m_path; }
    std::optional<QColor> Color(QWidget *, const QColor &) override { return {}; }
    bool Print(QWidget *, QPrinter &) override { return false; }

private:
    QString m_path;
};

struct Order
{
    QString In;
    QString Out;
    QString Old;
    QString New;
    bool Edit = false;
    QStringList Settings;
};

std::optional<Order> ReadArguments(QStringList arguments)
{
    Order order;
    QStringList files;
    arguments.removeFirst();
    while (!arguments.isEmpty()) {
        const QString word = arguments.takeFirst();
        if (word == "--edit"_L1 && arguments.size() >= 2) {
            order.Edit = true;
            order.Old = arguments.takeFirst();
            order.New = arguments.takeFirst();
        } else if (word == "--set"_L1 && !arguments.isEmpty() && arguments.first().contains(u'=')) {
            order.Settings.append(arguments.takeFirst());
        } else {
            files.append(word);
        }
    }
    if (files.size() != 2)
        return {};
    order.In = QFileInfo(files[0]).absoluteFilePath();
    order.Out = QFileInfo(files[1]).absoluteFilePath();
    return order;
}

int Fail(const char *what)
{
    fprintf(stderr, "inkloom-roundtrip: %s\n", what);
    return 1;
}

void TypeWithKeys(QWidget *widget, const QString &text)
{
    for (const QChar c : text) {
        const int key = c.unicode() < 128 ? c.toUpper().unicode() : int(Qt::Key_unknown);
        const auto modifiers = c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier;
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, c);
            QCoreApplication::sendEvent(widget, &event);
        }
    }
}

int Run(MainForm &window, const Order &order, const SpokenBoxes &boxes)
{
    window.Start("nosplash-"_L1 + order.In);
    Editor &editor = window.Page();
    DesignSurface &surface = editor.Surface();
    if (editor.Page().CurrentFilePath != order.In || !surface.WaitWhileBusy())
        return Fail("the page was not opened");
    if (order.Edit) {
        surface.setFocus();
        if (!surface.SelectText(order.Old))
            return Fail("the text to replace is not in the page");
        TypeWithKeys(surface.InputWidget(), order.New);
        if (!surface.IsDirty())
            return Fail("typing changed nothing");
    }
    auto *save = window.findChild<QAction *>(u"filesaveas"_s);
    if (!save)
        return Fail("there is no Save As");
    save->trigger();
    if (editor.Page().CurrentFilePath != order.Out || boxes.Complaint || editor.HasUnsavedChanges())
        return Fail("the page was not saved");
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir folder;
    qputenv("XDG_STATE_HOME", folder.filePath(u"state"_s).toLocal8Bit());
    qputenv("XDG_DATA_HOME", folder.filePath(u"data"_s).toLocal8Bit());
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(u"qt.webenginecontext.info=false"_s);

    const std::optional<Order> order = ReadArguments(QCoreApplication::arguments());
    if (!order)
        return Fail("usage: inkloom-roundtrip IN OUT [--edit OLD NEW] [--set KEY=VALUE]...");
    Settings ini(folder.filePath(u"config"_s), {});
    ini.SetIni(u"Locations"_s, u"main dir"_s, QStringLiteral(INKLOOM_SOURCE_DIR "/resources/"));
    for (const QString &setting : order->Settings) {
        const qsizetype equals = setting.indexOf(u'=');
        ini.SetIni(u"Settings"_s, setting.first(equals), setting.sliced(equals + 1));
    }
    SpokenBoxes boxes;
    OneName dialogs(order->Out);
    MainForm window({.Ini = ini, .Boxes = boxes, .Dialogs = dialogs});
    QTimer::singleShot(0, &window, [&] { QCoreApplication::exit(Run(window, *order, boxes)); });
    return QApplication::exec();
}
