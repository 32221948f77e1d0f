#pragma once

#include "support/VirtualDisplay.h"

#include <QImage>
#include <QProcess>
#include <QRect>
#include <QStringList>
#include <QTemporaryDir>

/// Folders of a person who has never used the program: settings, state, data and caches. Several runs may share one.
class PrivateHome
{
public:
    PrivateHome();

    QString ConfigFolder() const { return m_folder.filePath(QStringLiteral("config/inkloom")); }
    QString RecoveryFolder() const { return m_folder.filePath(QStringLiteral("state/inkloom/recovery")); }
    /// Where this person keeps pages.
    QString Folder() const { return m_folder.filePath(QStringLiteral("pages")); }
    QString FilePath(const QString &name) const { return Folder() + QLatin1Char('/') + name; }
    QProcessEnvironment Environment(const QString &display) const;
    /// Processes of the program that live here, whoever started them.
    QList<qint64> Programs() const;

private:
    QTemporaryDir m_folder;
};

/// The program itself, as a process on a display, used from outside only: what its windows show, what it leaves on
/// the disk, keys and clicks. Killed with the object, and all the processes it started.
///
/// What waits, waits for something that can be seen, up to `Patience`, and answers whether it came.
class RunningProgram
{
public:
    static constexpr int Patience = 30000; ///< milliseconds: a busy machine starts the engine in ten seconds

    enum class Rights { Own, BoundByPermissions };

    RunningProgram(VirtualDisplay &display, const PrivateHome &home);
    ~RunningProgram();
    Q_DISABLE_COPY(RunningProgram)

    /// Set before Start: more of the environment, the folder it is started in, and whether permission bits bind it
    /// even when a superuser runs the tests.
    QProcessEnvironment Environment;
    QString WorkingFolder;
    Rights Permissions = Rights::Own;

    void Start(const QStringList &arguments);
    /// Starts it without the splash and waits until its main window shows a page of this title.
    bool Open(const QString &page, const QString &title);

    bool Runs() const { return m_process.state() == QProcess::Running; }
    qint64 Pid() const { return m_process.processId(); }
    /// It ended by itself and says that all went well.
    bool EndedWell() const { return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0; }
    QString HowItEnded() const
    {
        return QStringLiteral("code %1, %2").arg(m_process.exitCode()).arg(m_process.errorString());
    }
    QByteArray Output() { return m_process.readAll(); }
    bool WaitForEnd();
    void Kill(int signal);
    /// Processes that show pages.
    QList<qint64> Renderers() const;

    /// Title of the main window with a page in it.
    static QString PageTitle(const QString &page) { return QStringLiteral("Inkloom HTML Editor - ") + page; }
    static QString BoxTitle() { return QStringLiteral("Inkloom HTML Editor"); }

    QStringList Titles() const;
    /// A window of exactly this title gets the keys.
    bool WaitForWindow(const QString &title);
    /// No window of this title is left to be seen.
    bool WaitUntilGone(const QString &title);
    /// Place of the main window on the screen, without its frame.
    QRect MainWindow() const;

    /// A message box with this text gets the keys. The text is read as a person can take it: selected with the mouse.
    bool WaitForBox(const QString &text);
    /// What the last WaitForBox read.
    QString BoxText() const { return m_boxText; }
    /// Presses a key in the message box on top and waits until it is gone.
    bool AnswerBox(const QString &key);

    /// Clicks into the place that has this colour, and has the caret put at the end of the line there.
    bool ClickBehind(QRgb colour);
    /// From the one to the other with the keys for the tabs. That the view has changed shows in a colour that only the
    /// page has.
    bool ShowSource(QRgb colourInPage);
    bool ShowNormal(QRgb colourInPage);
    /// The half of the status bar that holds words for the user.
    QImage StatusBar() const;

private:
    static constexpr int ShortPatience = 700; ///< milliseconds, for what is tried again

    QString WindowWithKeys(const QString &title) const;
    bool BoxSays(const QString &text);

    VirtualDisplay &m_display;
    const PrivateHome &m_home;
    QProcess m_process;
    QString m_boxText;
};
