#pragma once

#include "support/Files.h"
#include "support/RunningProgram.h"
#include "support/SmallDisk.h"
#include "support/VirtualDisplay.h"

#include <QDir>
#include <QGuiApplication>
#include <QObject>
#include <QTest>

#include <memory>

/// A test with a screen of its own. Each test function starts with nothing on it, and with a new home.
class E2eTest : public QObject
{
    Q_OBJECT

public:
    /// The colour of the paragraph that gets the clicks; no other thing on the screen has it.
    static constexpr QRgb Mark = 0xff12ab9e;
    static constexpr QLatin1StringView MarkedParagraph{"<p style=\"background:#12ab9e\">Click here</p>"};

    VirtualDisplay *Display = nullptr;

private slots:
    void init();
    void cleanup();

protected:
    /// A page whose first paragraph is the marked one; the title is its name without the extension.
    static QByteArray PageBytes(const QString &title, const QByteArray &more = "<p>Second</p>");
    QString PutPage(const QString &name, const QByteArray &more = "<p>Second</p>");

    /// The file's text holds these words, sooner or later.
    static bool WaitForBytes(const QString &path, const QByteArray &words);
    /// Names in a folder but for the copy of the page that the editor keeps there while it loads.
    static QStringList PagesIn(const QString &folder);
    bool ClickAndType(const QString &words);
    /// Ends the program with the keys for it; without a question.
    bool Quit();

    std::unique_ptr<PrivateHome> m_home;
    std::unique_ptr<RunningProgram> m_program;
};

/// The screen has to be there before the application object, which then is one of its clients.
template <typename Test>
int RunE2eTest(int argc, char **argv)
{
    SmallDisk::Prepare();
    VirtualDisplay display;
    if (!display.IsReady()) {
        qCritical("No virtual display: Xvfb, openbox, xdotool, xprop, setxkbmap are needed.");
        return 1;
    }
    qputenv("DISPLAY", display.Name().toLatin1());
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    Test test;
    test.Display = &display;
    return QTest::qExec(&test, argc, argv);
}
