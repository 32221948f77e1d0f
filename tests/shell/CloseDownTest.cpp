#include "document/RecoveryFile.h"
#include "platform/Folders.h"
#include "shell/TerminationSignals.h"
#include "support/Program.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QWindow>

#include <csignal>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

class CloseDownTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void Closing_data();
    void Closing();
    void WindowButtonAltF4AndExitAskOnce_data();
    void WindowButtonAltF4AndExitAskOnce();
    void SessionEndAsksOnce_data();
    void SessionEndAsksOnce();
    void ClosingWaitsForALoad();
    void ClosingWritesWhatIsKept();
    void EndNowKeepsUnsavedWords();
    void RecoveryIsOffered_data();
    void RecoveryIsOffered();
    void TerminationBecomesASignal();

private:
};

void CloseDownTest::initTestCase()
{
    StartEngine();
}

void CloseDownTest::init()
{
    UsePrivateState();
}

void CloseDownTest::Closing_data()
{
    QTest::addColumn<bool>("inSource");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("saves");
    QTest::newRow("yes") << false << Answer::Yes << true << true;
    QTest::newRow("no") << false << Answer::No << true << false;
    QTest::newRow("cancel") << false << Answer::Cancel << false << false;
    QTest::newRow("source, yes") << true << Answer::Yes << true << true;
    QTest::newRow("source, no") << true << Answer::No << true << false;
    QTest::newRow("source, cancel") << true << Answer::Cancel << false << false;
}

void CloseDownTest::Closing()
{
    QFETCH(bool, inSource);
    QFETCH(Answer, answer);
    QFETCH(bool, closes);
    Program program;
    program.Open(u"a.htm"_s);
    if (inSource) {
        program.Menu(u"viewsource"_s);
        program.Page().Source().Select(program.Page().Source().Text().indexOf(u"old"_s) + 1, 0);
    }
    program.Type(u"New "_s);
    program.Boxes.Expect(answer, u"Save changes to %1?"_s.arg(program.Path(u"a.htm"_s)));
    QCOMPARE(program.Window->close(), closes);
    QCOMPARE(program.Window->isVisible(), !closes);
    QCOMPARE(program.Page().App().ClosingDown, closes);
    QTEST(program.Read(u"a.htm"_s).contains(u"New old"_s), "saves");
    QCOMPARE(program.Setting(u"last_file"_s), closes ? program.Path(u"a.htm"_s) : u"none"_s);
    if (closes) {
        program.Window.reset();
        QVERIFY(QDir(Folders::State() + u"/recovery"_s).entryList(QDir::Files).isEmpty());
    }
}

void CloseDownTest::WindowButtonAltF4AndExitAskOnce_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("inSource");
    for (const bool inSource : {false, true}) {
        const QByteArray view = inSource ? ", source" : "";
        QTest::newRow("window manager" + view) << u"close"_s << inSource;
        QTest::newRow("menu" + view) << u"fileexit"_s << inSource;
        QTest::newRow("key" + view) << u"Ctrl+Q"_s << inSource;
    }
}

void CloseDownTest::WindowButtonAltF4AndExitAskOnce()
{
    QFETCH(QString, way);
    QFETCH(bool, inSource);
    Program program;
    program.Open(u"a.htm"_s);
    if (inSource) {
        program.Menu(u"viewsource"_s);
        program.Page().Source().Select(program.Page().Source().Text().indexOf(u"old"_s) + 1, 0);
    }
    program.Type(u"New "_s);
    const auto leave = [&] {
        if (way == u"close") // the button of the window's frame and Alt+F4 both come as this event
            program.Window->windowHandle()->close();
        else if (way == u"fileexit")
            program.Menu(way);
        else
            QTest::keyClick(inSource ? program.SourceInput() : program.Input(), Qt::Key_Q, Qt::ControlModifier);
    };
    program.Boxes.Expect(Answer::Cancel, u"Save changes to %1?"_s.arg(program.Path(u"a.htm"_s)));
    leave();
    QTRY_VERIFY(program.Boxes.Boxes.size() == 1);
    QVERIFY(program.Window->isVisible() && program.Page().HasUnsavedChanges());
    QVERIFY(!program.Page().App().ClosingDown);
    program.Boxes.Expect(Answer::Yes, u"Save changes to %1?"_s.arg(program.Path(u"a.htm"_s)));
    leave();
    QTRY_VERIFY(!program.Window->isVisible());
    QVERIFY(program.Read(u"a.htm"_s).contains(u"New old words"_s));
}

void CloseDownTest::SessionEndAsksOnce_data()
{
    QTest::addColumn<bool>("mayAsk");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("typesOn"); // another program held the session up
    QTest::addColumn<bool>("saved");
    QTest::addColumn<int>("copies");
    QTest::newRow("yes") << true << Answer::Yes << false << true << 0;
    QTest::newRow("no") << true << Answer::No << false << false << 0;
    QTest::newRow("no, and typed on") << true << Answer::No << true << false << 0;
    QTest::newRow("must not ask") << false << Answer::Yes << false << false << 1;
}

void CloseDownTest::SessionEndAsksOnce()
{
    QFETCH(bool, mayAsk);
    QFETCH(Answer, answer);
    QFETCH(bool, typesOn);
    Program program;
    program.Open(u"a.htm"_s);
    program.Type(u"New "_s);
    CloseDown session(program.Page());
    if (mayAsk) {
        program.Boxes.Expect(Answer::Cancel);
        QVERIFY(!session.EndSession(CloseDown::Questions::Allowed));
        program.Boxes.Expect(answer);
    }
    QVERIFY(session.EndSession(mayAsk ? CloseDown::Questions::Allowed : CloseDown::Questions::Forbidden));
    if (typesOn) {
        program.Type(u"more "_s);
        program.Boxes.Expect(Answer::No);
    }
    QVERIFY(session.Close()); // a question that nobody announced fails the test
    QTEST(program.Read(u"a.htm"_s).contains(u"New old"_s), "saved");
    QTEST(static_cast<int>(QDir(Folders::State() + u"/recovery"_s).entryList(QDir::Files).size()), "copies");
}

void CloseDownTest::ClosingWaitsForALoad()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Dialogs.ExpectOpen(program.Path(u"b.htm"_s));
    bool closedAtOnce = true;
    bool wasBusy = false;
    connect(
        &program.Page(), &Editor::WaitCursor, program.Window.get(),
        [&] {
            wasBusy = program.Page().Surface().Busy();
            closedAtOnce = program.Window->close();
        },
        Qt::SingleShotConnection);
    program.Menu(u"fileopen"_s);
    QVERIFY(wasBusy);
    QVERIFY(!closedAtOnce);
    QTRY_VERIFY(!program.Window->isVisible());
    QCOMPARE(program.Setting(u"last_file"_s), program.Path(u"b.htm"_s));
}

void CloseDownTest::ClosingWritesWhatIsKept()
{
    Program program;
    program.Ini.SetIni(u"Settings"_s, u"showpane"_s, u"0"_s);
    program.Ini.SetIni(u"Settings"_s, u"preserveHTML"_s, u"1"_s);
    program.Ini.SetIni(u"Settings"_s, u"exactsource"_s, u"1"_s);
    program.Open(u"a.htm"_s);
    program.Window->move(20, 30);
    program.Window->resize(640, 480);
    const QSize frame = program.Window->frameSize();
    QVERIFY(program.Window->close());
    QCOMPARE(program.Setting(u"pos_x"_s), u"300"_s); // 15 to a pixel
    QCOMPARE(program.Setting(u"pos_y"_s), u"450"_s);
    QCOMPARE(program.Setting(u"pos_w"_s), QString::number(frame.width() * 15));
    QCOMPARE(program.Setting(u"pos_h"_s), QString::number(frame.height() * 15));
    QCOMPARE(program.Setting(u"pos_max"_s), u"0"_s);
    QCOMPARE(program.Setting(u"showpane"_s), u"0"_s);
    QCOMPARE(program.Setting(u"preserveHTML"_s), u"1"_s);
    QCOMPARE(program.Setting(u"exactsource"_s), u"1"_s);
    QVERIFY(program.Ini.GetIni(u"Recent Projects"_s, u"0"_s, {}).startsWith(program.Path(u"a.htm"_s) + u'|'));
}

void CloseDownTest::EndNowKeepsUnsavedWords()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Type(u"New "_s);
    program.Window->EndNow(); // no box is announced: a question would fail the test
    program.Window.reset();
    const QDir folder(Folders::State() + u"/recovery"_s);
    QCOMPARE(folder.entryList(QDir::Files).size(), 1);
    QFile file(folder.filePath(folder.entryList(QDir::Files).value(0)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const std::optional<RecoveryFile> copy = DecodeRecoveryFile(file.readAll());
    QVERIFY(copy && copy->Text.contains(u"New old words"_s));
    QCOMPARE(copy->PagePath, program.Path(u"a.htm"_s));
    QCOMPARE(program.Read(u"a.htm"_s), PageText);
    QCOMPARE(program.Setting(u"last_file"_s), program.Path(u"a.htm"_s));
}

void CloseDownTest::RecoveryIsOffered_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("restored");
    QTest::addColumn<int>("copies");
    QTest::newRow("yes") << Answer::Yes << true << 1; // until the page is saved
    QTest::newRow("no") << Answer::No << false << 0;
    QTest::newRow("closed") << Answer::Cancel << false << 1;
}

void CloseDownTest::RecoveryIsOffered()
{
    QFETCH(Answer, answer);
    QFETCH(bool, restored);
    Program program;
    const QString words = QString(PageText).replace(u"old"_s, u"rescued"_s);
    const QString folder = Folders::State() + u"/recovery"_s;
    QVERIFY(WriteRecoveryFile(folder + u"/1.recovery"_s,
                              {u"dead"_s, program.Path(u"a.htm"_s), QDateTime::currentDateTime(), {}, {}, words}));
    program.Boxes.Expect(answer, u"Inkloom was closed unexpectedly while %1 had unsaved changes. Restore them?"_s.arg(
                                     program.Path(u"a.htm"_s)));
    program.Open(u"b.htm"_s);
    QCOMPARE(program.Page().HasUnsavedChanges(), restored);
    QCOMPARE(program.Page().Surface().DocumentHTML().contains(u"rescued words"_s), restored);
    QCOMPARE(program.Panel(2), program.Path(restored ? u"a.htm"_s : u"b.htm"_s));
    QTEST(static_cast<int>(QDir(folder).entryList(QDir::Files).size()), "copies");
    if (restored) {
        QCOMPARE(program.Read(u"a.htm"_s), PageText);
        program.Boxes.Expect(Answer::Yes); // the file is not as the dead process knew it
        QTest::keyClick(program.Input(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(program.Read(u"a.htm"_s).contains(u"rescued words"_s));
        QVERIFY(QDir(folder).entryList(QDir::Files).isEmpty());
    }
}

void CloseDownTest::TerminationBecomesASignal()
{
    const TerminationSignals termination;
    QSignalSpy received(&termination, &TerminationSignals::Received);
    QCOMPARE(std::raise(SIGTERM), 0);
    QVERIFY(received.isEmpty()); // only in the message loop
    QVERIFY(received.wait());
    QCOMPARE(received.size(), 1);
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    CloseDownTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "CloseDownTest.moc"
