#include "E2eTest.h"

using namespace Qt::StringLiterals;

/// Saving where it cannot work: the user is told, the old file stays whole, the words stay in the editor.
class FailingDisksTest : public E2eTest
{
    Q_OBJECT

private slots:
    void fullDisk();
    void readOnlyFile();
    void readOnlyFolder();
    void vanishedFile();
    void vanishedFolder();
    void fileChangedByOthers_data();
    void fileChangedByOthers();

private:
    /// Another try, now that nothing is in the way, saves the words: they have been in the editor all the time.
    void SavesNow(const QString &path, const QByteArray &words);
};

void FailingDisksTest::SavesNow(const QString &path, const QByteArray &words)
{
    QVERIFY(m_program->WaitForWindow(m_program->Titles().value(0)));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, words));
    QVERIFY(Quit());
}

void FailingDisksTest::fullDisk()
{
    const SmallDisk disk(96);
    if (!disk.IsMounted())
        QSKIP("This system lets nobody mount a small disk");
    const QString path = disk.FilePath(u"full.htm"_s);
    QVERIFY(PutBytes(path, PageBytes(u"full"_s, "<p>Second</p>")));
    QVERIFY(m_program->Open(path, u"full"_s));
    QVERIFY(ClickAndType(u" too much"_s));
    const QByteArray before = BytesOf(path);
    QFile filler(disk.FilePath(u"filler"_s));
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(1024, 'x')) == 1024) {
    }
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(m_program->WaitForBox(u"Error occurred while saving document: Disk is full."_s));
    QCOMPARE(BytesOf(path), before);
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QCOMPARE(PagesIn(disk.Path()), (QStringList{u"filler"_s, u"full.htm"_s}));
    QVERIFY(filler.remove());
    SavesNow(path, "Click here too much</p>");
}

void FailingDisksTest::readOnlyFile()
{
    const QString path = PutPage(u"locked.htm"_s);
    const QByteArray before = BytesOf(path);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    QVERIFY(m_program->Open(path, u"locked"_s));
    QVERIFY(ClickAndType(u" in vain"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(m_program->WaitForBox(u"Error occurred while saving document: Access denied."_s));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QCOMPARE(BytesOf(path), before);

    // Closing asks for the words; a Yes that cannot be kept does not end the program.
    QVERIFY(Display->Press({u"ctrl+q"_s}));
    QVERIFY(m_program->WaitForBox(u"Save changes to "_s + path));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QVERIFY(m_program->WaitForBox(u"Access denied."_s));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"locked"_s)));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    SavesNow(path, "Click here in vain</p>");
}

/// A folder that takes no new files is no reason to refuse: the file itself may be written.
void FailingDisksTest::readOnlyFolder()
{
    const QString path = PutPage(u"shelf.htm"_s);
    QVERIFY(QFile::setPermissions(m_home->Folder(), QFile::ReadOwner | QFile::ExeOwner));
    m_program->Permissions = RunningProgram::Rights::BoundByPermissions;
    QVERIFY(m_program->Open(path, u"shelf"_s));
    QVERIFY(ClickAndType(u" on the shelf"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "Click here on the shelf</p>"));
    QVERIFY(BytesOf(path).endsWith("</html>\n"));
    QCOMPARE(EntriesOf(m_home->Folder()), QStringList(u"shelf.htm"_s));

    // A new name is one too many.
    QVERIFY(Display->Press({u"ctrl+shift+s"_s}));
    QVERIFY(m_program->WaitForWindow(u"Save As"_s));
    QVERIFY(Display->Press({u"ctrl+a"_s}));
    QVERIFY(Display->Type(m_home->FilePath(u"other.htm"_s)));
    QVERIFY(Display->Press({u"Return"_s}));
    QVERIFY(m_program->WaitForBox(u"Error occurred while saving document: Access denied."_s));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QCOMPARE(EntriesOf(m_home->Folder()), QStringList(u"shelf.htm"_s));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"shelf"_s)));
    QVERIFY(QFile::setPermissions(m_home->Folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(Quit());
}

void FailingDisksTest::vanishedFile()
{
    const QString path = PutPage(u"gone.htm"_s);
    QVERIFY(m_program->Open(path, u"gone"_s));
    QVERIFY(ClickAndType(u" but not lost"_s));
    QVERIFY(QFile::remove(path));
    SavesNow(path, "Click here but not lost</p>");
}

void FailingDisksTest::vanishedFolder()
{
    QVERIFY(QDir(m_home->Folder()).mkdir(u"site"_s));
    const QString path = PutPage(u"site/away.htm"_s);
    QVERIFY(m_program->Open(path, u"away"_s));
    QVERIFY(ClickAndType(u" for now"_s));
    QVERIFY(QDir(m_home->FilePath(u"site"_s)).removeRecursively());
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(m_program->WaitForBox(u"Error occurred while saving document: Path not found."_s));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QVERIFY(QDir(m_home->Folder()).mkdir(u"site"_s));
    SavesNow(path, "Click here for now</p>");
}

void FailingDisksTest::fileChangedByOthers_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("overwrites");
    QTest::newRow("yes") << u"Return"_s << true;
    QTest::newRow("no") << u"n"_s << false;
    QTest::newRow("the box is closed") << u"Escape"_s << false;
}

void FailingDisksTest::fileChangedByOthers()
{
    QFETCH(QString, answer);
    QFETCH(bool, overwrites);
    const QString path = PutPage(u"shared.htm"_s);
    QVERIFY(m_program->Open(path, u"shared"_s));
    QVERIFY(ClickAndType(u" of mine"_s));
    const QByteArray others = PageBytes(u"shared"_s, "<p>Not mine</p>");
    QVERIFY(PutBytes(path, others));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(m_program->WaitForBox(u"The file "_s + path + u" has been changed on disk since it was opened."_s));
    QCOMPARE(BytesOf(path), others);
    QVERIFY(m_program->AnswerBox(answer));
    if (overwrites) {
        QVERIFY(WaitForBytes(path, "Click here of mine</p>"));
        QVERIFY(Display->Type(u" again"_s));
        SavesNow(path, "Click here of mine again</p>"); // the file is ours again, so nobody asks
        return;
    }
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"shared"_s)));
    QVERIFY(Display->Press({u"ctrl+q"_s}));
    QVERIFY(m_program->WaitForBox(u"Save changes to"_s)); // the words are still unsaved
    QCOMPARE(BytesOf(path), others);
    QVERIFY(m_program->AnswerBox(u"n"_s));
    QVERIFY(m_program->WaitForEnd());
    QCOMPARE(BytesOf(path), others);
}

int main(int argc, char **argv)
{
    return RunE2eTest<FailingDisksTest>(argc, argv);
}

#include "FailingDisksTest.moc"
