#include "E2eTest.h"

#include <csignal>

using namespace Qt::StringLiterals;

/// Nothing that was typed gets lost when a process dies.
class CrashTest : public E2eTest
{
    Q_OBJECT

private slots:
    void wordsOutliveTheRenderer();
    void wordsOutliveTheProgram_data();
    void wordsOutliveTheProgram();
    void newPageOutlivesTheProgram();
    void cleanEndLeavesNoCopy();

private:
    /// The recovery copy holds these words, sooner or later.
    bool WaitForCopy(const QByteArray &words);
    QStringList Copies() const { return EntriesOf(m_home->RecoveryFolder()); }
};

bool CrashTest::WaitForCopy(const QByteArray &words)
{
    return QTest::qWaitFor(
        [&] {
            for (const QString &name : Copies()) {
                if (BytesOf(m_home->RecoveryFolder() + u'/' + name).contains(words))
                    return true;
            }
            return false;
        },
        RunningProgram::Patience);
}

void CrashTest::wordsOutliveTheRenderer()
{
    const QString path = PutPage(u"renderer.htm"_s);
    QVERIFY(m_program->Open(path, u"renderer"_s));
    QVERIFY(ClickAndType(u" before the end"_s));
    QVERIFY(WaitForCopy("Click here before the end")); // within a second of the last key
    const QImage status = m_program->StatusBar();
    const QList<qint64> renderers = m_program->Renderers();
    QVERIFY(!renderers.isEmpty());
    for (const qint64 renderer : renderers)
        QCOMPARE(::kill(static_cast<pid_t>(renderer), SIGKILL), 0);

    // Only the status bar tells: the title of the page made way for other words.
    QTRY_VERIFY_WITH_TIMEOUT(m_program->StatusBar() != status, RunningProgram::Patience);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->Renderers().isEmpty(), RunningProgram::Patience);
    QVERIFY(ClickAndType(u" and behind it"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "Click here before the end and behind it</p>"));
    QVERIFY(Quit());
}

void CrashTest::wordsOutliveTheProgram_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("inSource");
    QTest::addColumn<QString>("answer");
    QTest::newRow("killed, yes") << SIGKILL << false << u"Return"_s;
    QTest::newRow("killed, no") << SIGKILL << false << u"n"_s;
    QTest::newRow("killed in the source view") << SIGKILL << true << u"Return"_s;
    QTest::newRow("terminated") << SIGTERM << false << u"Return"_s;
    QTest::newRow("terminated in the source view") << SIGTERM << true << u"Return"_s;
}

void CrashTest::wordsOutliveTheProgram()
{
    QFETCH(int, signal);
    QFETCH(bool, inSource);
    QFETCH(QString, answer);
    const QString path = PutPage(u"killed.htm"_s);
    const QByteArray before = BytesOf(path);
    QVERIFY(m_program->Open(path, u"killed"_s));
    if (inSource) {
        QVERIFY(m_program->ClickBehind(Mark));
        QVERIFY(m_program->ShowSource(Mark));
        QVERIFY(Display->Press({u"ctrl+Home"_s, u"Down"_s, u"Down"_s, u"Down"_s, u"Home"_s}));
        QVERIFY(Display->Type(u"<p>unsaved words</p>"_s));
    } else {
        QVERIFY(ClickAndType(u" unsaved words"_s));
    }
    if (signal == SIGKILL)
        QVERIFY(WaitForCopy("unsaved words")); // a second later; a program that is asked to go needs no time
    m_program->Kill(signal);
    QVERIFY(m_program->WaitForEnd());
    QCOMPARE(BytesOf(path), before);
    QCOMPARE(Copies().size(), 1);
    QCOMPARE(PagesIn(m_home->Folder()), QStringList(u"killed.htm"_s));

    m_program = std::make_unique<RunningProgram>(*Display, *m_home);
    m_program->Start({u"nosplash-"_s});
    QVERIFY(m_program->WaitForBox(u"Inkloom was closed unexpectedly while "_s + path + u" had unsaved changes."_s));
    QVERIFY(m_program->AnswerBox(answer));
    const bool restored = answer == u"Return"_s;
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(restored ? u"killed"_s : u"[No Title]"_s)));
    if (restored) {
        QVERIFY(m_program->ClickBehind(Mark));
        QCOMPARE(BytesOf(path), before);
        QVERIFY(Display->Press({u"ctrl+s"_s}));
        QVERIFY(WaitForBytes(path, "unsaved words</p>"));
    }
    QVERIFY(Quit());
    QCOMPARE(Copies(), QStringList());
    QCOMPARE(BytesOf(path).contains("unsaved words</p>"), restored);
}

void CrashTest::newPageOutlivesTheProgram()
{
    m_program->Start({u"nosplash-"_s});
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"[No Title]"_s)));
    QVERIFY(Display->Click(m_program->MainWindow().center()));
    QVERIFY(Display->Type(u"without a name"_s));
    QVERIFY(WaitForCopy("without a name"));
    m_program->Kill(SIGKILL);
    QVERIFY(m_program->WaitForEnd());

    m_program = std::make_unique<RunningProgram>(*Display, *m_home);
    m_program->Start({u"nosplash-"_s});
    QVERIFY(m_program->WaitForBox(u"Inkloom was closed unexpectedly while a page without a name"_s));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(m_program->WaitForWindow(u"Save As"_s));
    QVERIFY(Display->Type(m_home->FilePath(u"named.htm"_s)));
    QVERIFY(Display->Press({u"Return"_s}));
    QVERIFY(WaitForBytes(m_home->FilePath(u"named.htm"_s), "without a name"));
    QVERIFY(Quit());
    QCOMPARE(Copies(), QStringList());
}

void CrashTest::cleanEndLeavesNoCopy()
{
    const QString path = PutPage(u"clean.htm"_s);
    QVERIFY(m_program->Open(path, u"clean"_s));
    QVERIFY(ClickAndType(u" some words"_s));
    QVERIFY(WaitForCopy("some words"));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "some words"));
    QTRY_COMPARE_WITH_TIMEOUT(Copies(), QStringList(), RunningProgram::Patience);
    QVERIFY(Display->Type(u" given up"_s));
    QVERIFY(WaitForCopy("some words given up"));
    QVERIFY(Display->Press({u"ctrl+q"_s}));
    QVERIFY(m_program->WaitForBox(u"Save changes to"_s));
    QVERIFY(m_program->AnswerBox(u"n"_s));
    QVERIFY(m_program->WaitForEnd());
    QCOMPARE(Copies(), QStringList());
    QCOMPARE(PagesIn(m_home->Folder()), QStringList(u"clean.htm"_s));

    m_program = std::make_unique<RunningProgram>(*Display, *m_home); // and so the next start asks nothing
    QVERIFY(m_program->Open(path, u"clean"_s));
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<CrashTest>(argc, argv);
}

#include "CrashTest.moc"
