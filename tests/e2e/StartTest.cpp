#include "E2eTest.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

QByteArray RandomBytes()
{
    QByteArray bytes;
    QRandomGenerator random(4711);
    for (int i = 0; i < 20'000; ++i)
        bytes += static_cast<char>(random.bounded(256));
    return bytes;
}

} // namespace

namespace {
constexpr QRgb SplashBorder = 0xffa8894f;
} // namespace

/// What the program makes of its command line and of odd files, and how its window stands on the screen.
class StartTest : public E2eTest
{
    Q_OBJECT

private slots:
    void blankPageWithoutSettings();
    void splashGoesByItself();
    void pagesOpen_data();
    void pagesOpen();
    void whatIsNoPageIsTold_data();
    void whatIsNoPageIsTold();
    void windowFitsTheScreen_data();
    void windowFitsTheScreen();
};

void StartTest::blankPageWithoutSettings()
{
    m_program->Start({});
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"[No Title]"_s)));
    QVERIFY(Display->Type(u"first words"_s)); // without a click, and while the splash still shows
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(m_program->WaitForWindow(u"Save As"_s));
    QVERIFY(Display->Type(m_home->FilePath(u"first"_s)));
    QVERIFY(Display->Press({u"Return"_s}));
    QVERIFY(WaitForBytes(m_home->FilePath(u"first.htm"_s), "first words"));
    QVERIFY(m_program->WaitUntilGone(u"Save As"_s));
    QVERIFY(Quit());
}

void StartTest::splashGoesByItself()
{
    const QString path = PutPage(u"splash.htm"_s);
    const QByteArray before = BytesOf(path);
    m_program->Start({path});
    QTRY_VERIFY_WITH_TIMEOUT(Display->Find(SplashBorder).x() >= 0, RunningProgram::Patience);
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"splash"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(Display->Find(SplashBorder).x() < 0, RunningProgram::Patience);
    QVERIFY(Quit());
    QCOMPARE(BytesOf(path), before);
}

void StartTest::pagesOpen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QByteArray>("saved"); // after the words "xyz" were typed at the start of the page
    const QByteArray page = "<html><head><title>T</title></head><body><p>old</p></body></html>\n";
    const QByteArray typed = "<p>xyzold</p>";
    QTest::newRow("blanks and umlauts") << u"grüne Äpfel.htm"_s << QStringList(u"nosplash-grüne Äpfel.htm"_s) << page
                                        << u"T"_s << typed;
    QTest::newRow("blanks, not quoted") << u"a b  c.htm"_s << QStringList{u"nosplash-a"_s, u"b"_s, u" c.htm"_s} << page
                                        << u"T"_s << typed;
    QTest::newRow("index of a folder") << u"index.htm"_s << QStringList(u"nosplash-."_s) << page << u"T"_s << typed;
    QTest::newRow("empty file") << u"empty.htm"_s << QStringList(u"nosplash-empty.htm"_s) << QByteArray()
                                << u"[No Title]"_s << QByteArray("xyz");
    QTest::newRow("PHP only") << u"only.php"_s << QStringList(u"nosplash-only.php"_s)
                              << QByteArray("<?php\nfunction F() { return '<b>'; }\n?>\n") << u"[No Title]"_s
                              << QByteArray("<?php\nfunction F() { return '<b>'; }\n?>");
}

void StartTest::pagesOpen()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, title);
    QFETCH(QByteArray, saved);
    const QString path = m_home->FilePath(name);
    QVERIFY(PutBytes(path, bytes));
    m_program->Start(arguments);
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(title)));
    QTRY_VERIFY_WITH_TIMEOUT(PagesIn(m_home->Folder()).contains(name), RunningProgram::Patience);
    QVERIFY(Display->Type(u"xyz"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY2(WaitForBytes(path, "xyz"), BytesOf(path));
    QVERIFY2(BytesOf(path).contains(saved), BytesOf(path));
    QVERIFY(Quit());
    QCOMPARE(PagesIn(m_home->Folder()), QStringList(name));
}

void StartTest::whatIsNoPageIsTold_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message"); // %1: the file
    QTest::newRow("no such file") << u"missing.htm"_s << QByteArray() << u"Cannot find file %1."_s;
    QTest::newRow("no such folder") << u"missing/page.htm"_s << QByteArray() << u"Cannot find file %1."_s;
    QTest::newRow("folder without an index") << u"."_s << QByteArray() << u"Cannot find file %1."_s;
    QTest::newRow("random bytes") << u"random.htm"_s << RandomBytes() << u"Error: File %1 is not a text file."_s;
}

void StartTest::whatIsNoPageIsTold()
{
    QFETCH(QString, argument);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString path = QDir::cleanPath(m_home->FilePath(argument));
    if (!bytes.isEmpty())
        QVERIFY(PutBytes(path, bytes));
    m_program->Start({u"nosplash-"_s + argument});
    QVERIFY2(m_program->WaitForBox(message.arg(path)), qPrintable(m_program->BoxText()));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"[No Title]"_s))); // a blank page instead
    QVERIFY(Quit());
    if (!bytes.isEmpty())
        QCOMPARE(BytesOf(path), bytes);
}

void StartTest::windowFitsTheScreen_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QString>("scale");
    QTest::newRow("small") << QSize(1024, 768) << u"1"_s;
    QTest::newRow("of many dots") << QSize(1920, 1200) << u"2"_s;
}

void StartTest::windowFitsTheScreen()
{
    QFETCH(QSize, screen);
    QFETCH(QString, scale);
    VirtualDisplay display(screen);
    QVERIFY(display.IsReady());
    RunningProgram program(display, *m_home);
    program.Environment.insert(u"QT_SCALE_FACTOR"_s, scale);
    QVERIFY(program.Open(QStringLiteral(INKLOOM_SOURCE_DIR "/samples/index.htm"), u"Hollowmere Allotment Society"_s));
    constexpr QRgb navigation = 0xffdfe8c8; // colour of a cell
    const bool painted = QTest::qWaitFor([&] { return display.Find(navigation).x() >= 0; }, RunningProgram::Patience);
    QDir().mkpath(QStringLiteral(INKLOOM_SCREENS)); // for the eye: what is cut off, what does not fit
    const QString picture = QStringLiteral(INKLOOM_SCREENS "/start-%1x%2-scale-%3.png");
    QVERIFY(display.Picture().save(picture.arg(screen.width()).arg(screen.height()).arg(scale)));
    QVERIFY(painted);
    QVERIFY2(QRect(QPoint(), screen).contains(program.MainWindow()), "the window reaches beyond the screen");
    QVERIFY(display.Press({u"ctrl+q"_s}));
    QVERIFY(program.WaitForEnd());
    QVERIFY(program.EndedWell());
}

int main(int argc, char **argv)
{
    return RunE2eTest<StartTest>(argc, argv);
}

#include "StartTest.moc"
