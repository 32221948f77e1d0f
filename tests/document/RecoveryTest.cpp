#include "document/Recovery.h"
#include "platform/Folders.h"
#include "platform/ProcessMark.h"
#include "support/EditorRig.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

constexpr auto VictimOption = "--types-until-killed";

QString Folder()
{
    return Folders::State() + "/recovery"_L1;
}

QStringList Copies()
{
    return QDir(Folder()).entryList({u"*.recovery"_s}, QDir::Files);
}

/// The only copy there is.
QByteArray CopyBytes()
{
    const QStringList copies = Copies();
    return copies.size() == 1 ? EditorRig::Bytes(Folder() + u'/' + copies.first()) : QByteArray();
}

/// Mark of a process that ran and runs no more.
QString DeadMark()
{
    return u"%1 1@gone"_s.arg(QCoreApplication::applicationPid());
}

QString PutCopy(const QString &name, const RecoveryFile &copy)
{
    const QString path = Folder() + u'/' + name + ".recovery"_L1;
    WriteRecoveryFile(path, copy);
    return path;
}

} // namespace

/// Unsaved words outlive the program, and are gone when they are saved.
class RecoveryTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void processMarks();
    void typedWordsAreKeptAndSavedOnesAreNot();
    void sourceWordsAreKept();
    void textOfADialogIsKept();
    void undoneWordsAreNotKept();
    void aCleanEndLeavesNothing();
    void bigPagesAreWrittenAside();
    void orphansAreThoseOfDeadProcesses();
    void killedProgramLeavesItsWords();
    void restoredPageIsUnsaved();
    void restoredPageAsksWhenTheFileChanged();
    void restoredPageWithoutAFile();
    void restoreThatTheUserDeclinesChangesNothing();
    void restoredSourceIsSavedFromTheSourceView();

private:
    std::unique_ptr<EditorRig> m_rig;
    QTemporaryDir m_state;
};

void RecoveryTest::initTestCase()
{
    qputenv("XDG_STATE_HOME", m_state.path().toUtf8());
    EditorRig::StartEngine();
}

void RecoveryTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    QDir(Folder()).removeRecursively();
    m_rig = std::make_unique<EditorRig>();
}

void RecoveryTest::cleanup()
{
    m_rig.reset();
}

void RecoveryTest::processMarks()
{
    QVERIFY(ProcessRuns(OwnProcessMark()));
    QVERIFY(!ProcessRuns(DeadMark())); // the number is in use again, by another process
    QVERIFY(!ProcessRuns({}));
    QVERIFY(!ProcessRuns(u"no mark"_s));
    QProcess other;
    other.start(u"sleep"_s, {u"60"_s});
    QVERIFY(other.waitForStarted());
    const qint64 pid = other.processId();
    other.kill();
    QVERIFY(other.waitForFinished());
    QVERIFY(!ProcessRuns(OwnProcessMark().replace(0, OwnProcessMark().indexOf(u' '), QString::number(pid))));
}

void RecoveryTest::typedWordsAreKeptAndSavedOnesAreNot()
{
    const QString path = m_rig->Put(u"a.htm"_s, EditorRig::SmallPage);
    QVERIFY(m_rig->Load(path));
    QVERIFY(Copies().isEmpty());
    m_rig->TypeAtStart(u"new "_s);
    QElapsedTimer age;
    age.start();
    QTRY_VERIFY(CopyBytes().contains("new words"));
    QVERIFY2(age.elapsed() < 3000, "the copy is too old when a program dies");
    QVERIFY(!CopyBytes().contains("border-collapse"));
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QVERIFY(!(QFile(Folder() + u'/' + Copies().first()).permissions() & others));
    QVERIFY(!(QFile(Folder()).permissions() & others));
    QCOMPARE(QDir(m_rig->Folder()).entryList(QDir::Files | QDir::Hidden), (QStringList{u"a.htm"_s, u"iltb.tmp"_s}));

    m_rig->Edit->FileSave_Click();
    QVERIFY(Copies().isEmpty());
    m_rig->TypeAtStart(u"more "_s);
    QTRY_VERIFY(CopyBytes().contains("more new"));
    m_rig->Boxes.Expect(Answer::No, u"Save changes to"_s);
    QVERIFY(m_rig->Load(m_rig->Put(u"b.htm"_s, EditorRig::SmallPage)));
    QVERIFY(Copies().isEmpty()); // given up with the page
}

void RecoveryTest::sourceWordsAreKept()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, EditorRig::SmallPage)));
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->Source.Select(m_rig->Source.Text().indexOf("words"_L1) + 1, 0);
    m_rig->TypeInSource(u"typed "_s);
    QTRY_VERIFY(CopyBytes().contains("<p>typed words"));
    m_rig->Edit->SelectTab(ViewTab::Normal); // unsaved all the same
    QTRY_VERIFY(CopyBytes().contains("<P>typed words"));
    m_rig->Edit->FileSave_Click();
    QVERIFY(Copies().isEmpty());
}

void RecoveryTest::textOfADialogIsKept()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, EditorRig::SmallPage)));
    m_rig->Edit->SetHTMLTitle(u"Second"_s);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QTRY_VERIFY(CopyBytes().contains("Second"));
}

void RecoveryTest::undoneWordsAreNotKept()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, EditorRig::SmallPage)));
    m_rig->TypeAtStart(u"new"_s);
    QTRY_VERIFY(CopyBytes().contains("newwords"));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QVERIFY(!m_rig->Surface.IsDirty());
    QTRY_VERIFY(Copies().isEmpty());
}

void RecoveryTest::aCleanEndLeavesNothing()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, EditorRig::SmallPage)));
    m_rig->TypeAtStart(u"new "_s);
    m_rig->Edit->RecoveryCopies().Update();
    QCOMPARE(Copies().size(), 1);
    m_rig.reset();
    QVERIFY(Copies().isEmpty());
}

void RecoveryTest::bigPagesAreWrittenAside()
{
    const QByteArray filling = ("<p>" + QByteArray("0123456789 ").repeated(90) + "</p>\n").repeated(1500);
    QVERIFY(m_rig->Load(
        m_rig->Put(u"big.htm"_s, QByteArray(EditorRig::SmallPage).replace("</body>", filling + "</body>"))));
    // Texts faster than the disk takes them: the last one is what must be there in the end.
    for (int i = 0; i < 5; ++i) {
        m_rig->TypeAtStart(QString::number(i));
        m_rig->Edit->RecoveryCopies().Update();
    }
    QTRY_VERIFY(CopyBytes().contains("<P>43210words"));
    QVERIFY(CopyBytes().size() > 1400000);
    m_rig->TypeAtStart(u"x"_s);
    m_rig->Edit->RecoveryCopies().Update();
    m_rig->Edit->RecoveryCopies().Clear(); // also what is on its way to the disk
    QVERIFY(Copies().isEmpty());
}

void RecoveryTest::orphansAreThoseOfDeadProcesses()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString text = u"caf\u00e9 \U0001F600\r\n<p>\n"_s;
    const FileStamp stamp{true, 12, now.addDays(-1), "digest"};
    PutCopy(u"older"_s, {DeadMark(), u"/site/old.htm"_s, now.addSecs(-60), {"windows-1252", false}, stamp, text});
    const QString newer = PutCopy(u"newer"_s, {DeadMark(), {}, now, {"UTF-8", true}, {}, u"x"_s});
    PutCopy(u"own"_s, {OwnProcessMark(), u"/site/a.htm"_s, now, {}, {}, u"mine"_s});
    for (const auto &[name, bytes] : {std::pair{"torn", "{\"version\":1,\"pro"},
                                      std::pair{"later", "{\"version\":2}\ntext"}, std::pair{"empty", ""}})
    {
        QFile file(Folder() + u'/' + QLatin1String(name) + ".recovery"_L1);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    const QList<Recovery::Copy> orphans = Recovery::Orphans();
    QCOMPARE(orphans.size(), 2);
    QCOMPARE(orphans[0].File, newer);
    QCOMPARE(orphans[0].PagePath, QString());
    QVERIFY(orphans[0].Encoding.ByteOrderMark);
    QCOMPARE(orphans[1].PagePath, u"/site/old.htm"_s);
    QCOMPARE(orphans[1].Text, text);
    QCOMPARE(orphans[1].Encoding.Name, QByteArray("windows-1252"));
    QCOMPARE(orphans[1].Stamp.Size, 12);
    QCOMPARE(orphans[1].Stamp.Modified.toMSecsSinceEpoch(), stamp.Modified.toMSecsSinceEpoch());
    QCOMPARE(orphans[1].Stamp.Digest, stamp.Digest);
    Recovery::Discard(orphans[0]);
    QCOMPARE(Recovery::Orphans().size(), 1);
}

void RecoveryTest::killedProgramLeavesItsWords()
{
    const QString path = m_rig->Put(u"a.htm"_s, EditorRig::SmallPage);
    QProcess victim;
    victim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    victim.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(VictimOption), path});
    QTRY_VERIFY_WITH_TIMEOUT(victim.canReadLine(), 30000);
    QTRY_VERIFY(CopyBytes().contains("unsaved words"));
    QVERIFY(Recovery::Orphans().isEmpty()); // it lives
    ::kill(static_cast<pid_t>(victim.processId()), SIGKILL);
    QVERIFY(victim.waitForFinished());

    const QList<Recovery::Copy> orphans = Recovery::Orphans();
    QCOMPARE(orphans.size(), 1);
    QCOMPARE(orphans.first().PagePath, path);
    QVERIFY(orphans.first().Text.contains("unsaved words"_L1));
    m_rig->Edit->RecoveryCopies().Restore(orphans.first());
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), QByteArray(EditorRig::SmallPage).replace("words", "unsaved words"));
    QVERIFY(Copies().isEmpty());
}

void RecoveryTest::restoredPageIsUnsaved()
{
    const QString path = m_rig->Put(u"a.htm"_s, EditorRig::SmallPage);
    const FileStamp stamp = ReadTextFile(path).Stamp;
    const QString file =
        PutCopy(u"dead"_s, {DeadMark(),
                            path,
                            QDateTime::currentDateTime(),
                            {},
                            stamp,
                            QString::fromLatin1(EditorRig::SmallPage).replace("words"_L1, "saved words"_L1)});
    m_rig->Edit->RecoveryCopies().Restore(Recovery::Orphans().first());

    QCOMPARE(m_rig->Page.CurrentFilePath, path);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("saved words"_L1));
    QCOMPARE(m_rig->Surface.DocumentHTML().count("border-collapse: collapse"_L1), 1);
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Bytes(path), EditorRig::SmallPage);
    QVERIFY(Recovery::Orphans().isEmpty()); // no other window is to offer it as well
    QVERIFY(m_rig->Bytes(file).contains("saved words"));
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), QByteArray(EditorRig::SmallPage).replace("words", "saved words"));
    QVERIFY(Copies().isEmpty());
}

void RecoveryTest::restoredPageAsksWhenTheFileChanged()
{
    const QString path = m_rig->Put(u"a.htm"_s, EditorRig::SmallPage);
    const FileStamp stamp = ReadTextFile(path).Stamp;
    m_rig->Put(u"a.htm"_s, "<html><head></head><body><p>their work</p></body></html>");
    PutCopy(u"dead"_s,
            {DeadMark(), path, QDateTime::currentDateTime(), {}, stamp, QString::fromLatin1(EditorRig::SmallPage)});
    m_rig->Edit->RecoveryCopies().Restore(Recovery::Orphans().first());
    QVERIFY(m_rig->Surface.DocumentHTML().contains("<P>words"_L1));
    m_rig->Boxes.Expect(Answer::No, u"has been changed on disk"_s);
    m_rig->Edit->FileSave_Click();
    m_rig->Boxes.Verify();
    QVERIFY(m_rig->Bytes(path).contains("their work"));
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
}

void RecoveryTest::restoredPageWithoutAFile()
{
    PutCopy(u"dead"_s, {DeadMark(),
                        m_rig->Path(u"vanished.htm"_s),
                        QDateTime::currentDateTime(),
                        {"windows-1252", false},
                        {},
                        QString::fromLatin1(EditorRig::SmallPage).replace("words"_L1, u"caf\u00e9"_s)});
    m_rig->Edit->RecoveryCopies().Restore(Recovery::Orphans().first());
    QCOMPARE(m_rig->Page.CurrentFilePath, QString());
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.DocumentTitle(), u"First"_s);
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"new.htm"_s));
    m_rig->Edit->FileSave_Click();
    QVERIFY(m_rig->Bytes(m_rig->Path(u"new.htm"_s)).contains("caf\xE9"));
    QVERIFY(Copies().isEmpty());
}

void RecoveryTest::restoreThatTheUserDeclinesChangesNothing()
{
    const QString first = m_rig->Put(u"first.htm"_s, EditorRig::SmallPage);
    const QString other = m_rig->Put(u"other.htm"_s, EditorRig::SmallPage);
    QVERIFY(m_rig->Load(first));
    m_rig->TypeAtStart(u"new "_s);
    PutCopy(u"dead"_s, {DeadMark(), other, QDateTime::currentDateTime(), {}, {}, u"their words"_s});
    m_rig->Boxes.Expect(Answer::Cancel, u"Save changes to"_s);
    m_rig->Edit->RecoveryCopies().Restore(Recovery::Orphans().first());
    QCOMPARE(m_rig->Page.CurrentFilePath, first);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("new words"_L1));
    QCOMPARE(Recovery::Orphans().size(), 1); // to be offered again
}

void RecoveryTest::restoredSourceIsSavedFromTheSourceView()
{
    const QString path = m_rig->Put(u"a.htm"_s, EditorRig::SmallPage);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    PutCopy(u"dead"_s, {DeadMark(),
                        path,
                        QDateTime::currentDateTime(),
                        {},
                        ReadTextFile(path).Stamp,
                        QString::fromLatin1(EditorRig::SmallPage).replace("words"_L1, "saved words"_L1)});
    m_rig->Edit->RecoveryCopies().Restore(Recovery::Orphans().first());
    QVERIFY(m_rig->Source.Text().contains("saved words"_L1));
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), QByteArray(EditorRig::SmallPage).replace("words", "saved words"));
}

/// The program as it dies: types a word, says so, and waits for its end.
static int TypeUntilKilled(const QString &path)
{
    EditorRig rig;
    rig.Load(path);
    rig.TypeAtStart(u"unsaved "_s);
    std::puts("typed");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc == 3 && QLatin1String(argv[1]) == QLatin1String(VictimOption))
        return TypeUntilKilled(QString::fromLocal8Bit(argv[2]));
    RecoveryTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "RecoveryTest.moc"
