#include "support/RunningProgram.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTest>

#include <csignal>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// From a child's own start on, also as root, what files forbid is forbidden.
void GiveUpPrivileges()
{
    for (unsigned long capability = 0; capability <= CAP_LAST_CAP; ++capability)
        ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0);
}

QByteArray ProcFile(qint64 process, const QByteArray &name)
{
    QFile file(u"/proc/%1/%2"_s.arg(process).arg(QString::fromLatin1(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<qint64> AllProcesses()
{
    QList<qint64> all;
    for (const QString &name : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        if (const qint64 process = name.toLongLong())
            all.append(process);
    }
    return all;
}

qint64 ParentOf(qint64 process)
{
    const QByteArray line = ProcFile(process, "stat"); // "7 (name, maybe with blanks) S 1 ..."
    return line.mid(line.lastIndexOf(')') + 2).split(' ').value(1).toLongLong();
}

/// The engine forks its renderers off a process that waits for such orders, and leaves them that one's command line.
bool IsRenderer(qint64 process)
{
    const QByteArray commandLine = ProcFile(process, "cmdline");
    if (commandLine.contains("--type=renderer"))
        return true;
    const qint64 parent = ParentOf(process);
    return commandLine.contains("--type=zygote") && ProcFile(parent, "cmdline").contains("--type=zygote") &&
           ProcFile(process, "task/" + QByteArray::number(process) + "/children").trimmed().isEmpty();
}

bool DescendsFrom(qint64 process, qint64 ancestor)
{
    for (int steps = 0; process > 1 && steps < 10; ++steps) {
        if (process == ancestor)
            return true;
        process = ParentOf(process);
    }
    return false;
}

} // namespace

PrivateHome::PrivateHome()
{
    for (const QString &name : {u"config"_s, u"state"_s, u"data"_s, u"cache"_s, u"runtime"_s, u"pages"_s}) {
        QDir(m_folder.path()).mkdir(name);
        QFile::setPermissions(m_folder.filePath(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

QProcessEnvironment PrivateHome::Environment(const QString &display) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name.startsWith(u"QT"_s) || name.startsWith(u"LC_"_s) || name.startsWith(u"INKLOOM_"_s))
            environment.remove(name);
    }
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
    environment.insert(u"HOME"_s, Folder());
    environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.filePath(u"config"_s));
    environment.insert(u"XDG_STATE_HOME"_s, m_folder.filePath(u"state"_s));
    environment.insert(u"XDG_DATA_HOME"_s, m_folder.filePath(u"data"_s));
    environment.insert(u"XDG_CACHE_HOME"_s, m_folder.filePath(u"cache"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.filePath(u"runtime"_s));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"DISPLAY"_s, display);
    if (::geteuid() == 0)
        environment.insert(u"QTWEBENGINE_DISABLE_SANDBOX"_s, u"1"_s); // it does not work for root
    return environment;
}

QList<qint64> PrivateHome::Programs() const
{
    const QByteArray mark = "XDG_CONFIG_HOME=" + QFile::encodeName(m_folder.filePath(u"config"_s));
    QList<qint64> found;
    for (const qint64 process : AllProcesses()) {
        if (ProcFile(process, "comm").trimmed() == "inkloom" && ProcFile(process, "environ").contains(mark))
            found.append(process);
    }
    return found;
}

RunningProgram::RunningProgram(VirtualDisplay &display, const PrivateHome &home)
    : Environment(home.Environment(display.Name())), WorkingFolder(home.Folder()), m_display(display), m_home(home)
{}

RunningProgram::~RunningProgram()
{
    for (const qint64 process : m_home.Programs()) {
        ::kill(static_cast<pid_t>(process), SIGKILL);
    }
    m_process.waitForFinished();
}

void RunningProgram::Start(const QStringList &arguments)
{
    m_process.setProcessEnvironment(Environment);
    m_process.setWorkingDirectory(WorkingFolder);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    if (Permissions == Rights::BoundByPermissions)
        m_process.setChildProcessModifier(GiveUpPrivileges);
    m_process.start(QStringLiteral(INKLOOM_PROGRAM), arguments);
    m_process.waitForStarted();
}

bool RunningProgram::Open(const QString &page, const QString &title)
{
    Start({u"nosplash-"_s + page});
    return WaitForWindow(PageTitle(title));
}

bool RunningProgram::WaitForEnd()
{
    return QTest::qWaitFor([this] { return !Runs(); }, Patience);
}

void RunningProgram::Kill(int signal)
{
    ::kill(static_cast<pid_t>(Pid()), signal);
}

QList<qint64> RunningProgram::Renderers() const
{
    QList<qint64> found;
    for (const qint64 process : AllProcesses()) {
        if (DescendsFrom(process, Pid()) && IsRenderer(process))
            found.append(process);
    }
    return found;
}

QStringList RunningProgram::Titles() const
{
    QStringList titles;
    for (const QString &window : m_display.Windows(Pid()))
        titles.append(m_display.Title(window));
    return titles;
}

bool RunningProgram::WaitForWindow(const QString &title)
{
    return QTest::qWaitFor([&] { return !WindowWithKeys(title).isEmpty(); }, Patience);
}

bool RunningProgram::WaitUntilGone(const QString &title)
{
    return QTest::qWaitFor([&] { return !Titles().contains(title); }, Patience);
}

QRect RunningProgram::MainWindow() const
{
    for (const QString &window : m_display.Windows(Pid())) {
        if (m_display.Title(window).startsWith(BoxTitle() + u" - "_s))
            return m_display.Geometry(window);
    }
    return {};
}

QImage RunningProgram::StatusBar() const
{
    constexpr int height = 26;
    const QRect window = MainWindow();
    return m_display.Picture().copy(window.left(), window.bottom() - height, window.width() / 2, height);
}

/// The id of the window of this title, if that is the one that gets the keys.
QString RunningProgram::WindowWithKeys(const QString &title) const
{
    const QString window = m_display.WindowWithFocus();
    const bool ours = !window.isEmpty() && m_display.Windows(Pid()).contains(window);
    return ours && m_display.Title(window) == title ? window : QString();
}

bool RunningProgram::WaitForBox(const QString &text)
{
    return WaitForWindow(BoxTitle()) && QTest::qWaitFor([&] { return BoxSays(text); }, Patience);
}

/// Three clicks select a paragraph, and what is selected can be taken over by others; two of them, on the way there, a
/// word. The paragraph stands right of the sign, at a height that depends on its length.
bool RunningProgram::BoxSays(const QString &text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    const QRect box = m_display.Geometry(m_display.WindowWithFocus());
    const auto read = [&] {
        const QString selected = clipboard->text(QClipboard::Selection);
        m_boxText = selected.isEmpty() ? m_boxText : selected;
        return selected.contains(text);
    };
    m_boxText.clear();
    for (const int down : {20, 28, 36}) {
        clipboard->setText(u""_s, QClipboard::Selection);
        m_display.Click(box.topLeft() + QPoint(90, down), 3);
        if (QTest::qWaitFor(read, ShortPatience))
            return true;
    }
    return false;
}

bool RunningProgram::AnswerBox(const QString &key)
{
    const QString window = WindowWithKeys(BoxTitle());
    if (window.isEmpty() || !m_display.Press({key}))
        return false;
    return QTest::qWaitFor([&] { return !Runs() || !m_display.Windows(Pid()).contains(window); }, Patience);
}

bool RunningProgram::ClickBehind(QRgb colour)
{
    QPoint place;
    const bool found = QTest::qWaitFor(
        [&] {
            place = m_display.Find(colour);
            return place.x() >= 0;
        },
        Patience);
    return found && m_display.Click(place + QPoint(12, 6)) && m_display.Press({u"End"_s});
}

bool RunningProgram::ShowSource(QRgb colourInPage)
{
    m_display.Press({u"ctrl+Next"_s, u"ctrl+Next"_s}); // past the page properties
    return QTest::qWaitFor([&] { return m_display.Find(colourInPage).x() < 0; }, Patience);
}

bool RunningProgram::ShowNormal(QRgb colourInPage)
{
    m_display.Press({u"ctrl+Prior"_s, u"ctrl+Prior"_s});
    return QTest::qWaitFor([&] { return m_display.Find(colourInPage).x() >= 0; }, Patience);
}
