#pragma once

#include "document/Editor.h"
#include "platform/Settings.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/MainForm.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMessageBoxes.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

inline const QString PageText =
    QStringLiteral("<html><head><title>Club &amp; <b>dates</title></head><body><p>old words</p></body></html>");

/// The whole program but for its process: a main window on folders of its own, with boxes and dialogs that the test
/// answers.
class Program
{
public:
    Program() : Ini(m_folder.filePath(QStringLiteral("config")), QString())
    {
        QDir().mkpath(m_folder.filePath(QStringLiteral("data")));
        Ini.SetIni(QStringLiteral("Locations"), QStringLiteral("main dir"), m_folder.filePath(QStringLiteral("data/")));
        Ini.SetIni(QStringLiteral("Settings"), QStringLiteral("autoopen"), QStringLiteral("0"));
        Write(QStringLiteral("data/_blank.htm"),
              QStringLiteral("<html><head><title></title></head><body><p>&nbsp;</p></body></html>"));
        Write(QStringLiteral("a.htm"), PageText);
        Write(QStringLiteral("b.htm"),
              QString(PageText).replace(QStringLiteral("old words"), QStringLiteral("other page")));
    }

    QString Path(const QString &name) const { return m_folder.filePath(name); }

    void Write(const QString &name, const QString &text) const
    {
        QFile file(Path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }

    QString Read(const QString &name) const
    {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("(no such file)");
    }

    void Start(const QString &commandText)
    {
        Window = std::make_unique<MainForm>(Services{.Ini = Ini,
                                                     .Boxes = Boxes,
                                                     .Dialogs = Dialogs,
                                                     .StartProgram =
                                                         [this](const QString &, const QStringList &arguments) {
                                                             Started.append(arguments);
                                                             return true;
                                                         },
                                                     .Browse =
                                                         [this](const QUrl &address) {
                                                             Browsed.append(address);
                                                             return true;
                                                         }});
        Window->Start(commandText);
    }
    /// With a page of the folder, and without the splash.
    void Open(const QString &name) { Start(QStringLiteral("nosplash-") + Path(name)); }

    Editor &Page() const { return Window->Page(); }
    template <class T>
    T *Find(const QString &name) const
    {
        return Window->findChild<T *>(name);
    }
    /// Drops the menu of a command; gives the command.
    QAction *Drop(const QString &name) const
    {
        QAction *action = Find<QAction>(name);
        emit qobject_cast<QMenu *>(action->parent())->aboutToShow();
        return action;
    }
    void Menu(const QString &name) const { Drop(name)->trigger(); }
    QString Panel(int number) const { return Find<QLabel>(QStringLiteral("StatusBar1Panel%1").arg(number))->text(); }
    QString Setting(const QString &key) const
    {
        return Ini.GetIni(QStringLiteral("Settings"), key, QStringLiteral("none"));
    }

    QWidget *Input() const
    {
        Page().Surface().InputWidget()->setFocus();
        return Page().Surface().InputWidget();
    }
    /// Real keys at the caret of the view that is shown.
    void Type(const QString &text) const
    {
        if (Page().Page().ActiveTab == ViewTab::Normal)
            QTest::keyClicks(Input(), text);
        else
            QTest::keyClicks(SourceInput(), text);
    }
    QWidget *SourceInput() const { return Page().Source().findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly); }

    /// Gives up what is not saved.
    void Close()
    {
        if (Window && Page().HasUnsavedChanges())
            Boxes.Expect(MessageBoxes::Answer::No);
        if (Window)
            Window->close();
    }

    FakeMessageBoxes Boxes;
    FakeFileDialogs Dialogs;
    QList<QStringList> Started; ///< arguments of each second window
    QList<QUrl> Browsed;        ///< what was shown in the browser

private:
    QTemporaryDir m_folder;

public:
    Settings Ini;
    std::unique_ptr<MainForm> Window;
};

/// A test of the window: what comes before its first function, and before each.
class ProgramTest : public QObject
{
protected:
    void StartEngine()
    {
        QCoreApplication::setApplicationName(QStringLiteral("inkloom"));
        // The engine's own start speaks of graphics that an offscreen platform does not have.
        DesignSurface first;
        first.LoadText({}, {});
        QVERIFY(first.WaitWhileBusy());
    }
    void UsePrivateState()
    {
        // The offscreen platform complains of every window that asks for a size or for the top.
        QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
        m_state = std::make_unique<QTemporaryDir>();
        qputenv("XDG_STATE_HOME", m_state->path().toUtf8());
    }

private:
    std::unique_ptr<QTemporaryDir> m_state;
};
