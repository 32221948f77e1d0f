#include "E2eTest.h"

#include <csignal>

using namespace Qt::StringLiterals;

/// The ways from one page to the next: dialogs, the recent list, a second window.
class FilesTest : public E2eTest
{
    Q_OBJECT

private slots:
    void openByDialog();
    void saveAsAddsTheExtension();
    void cancelledDialogsLeaveAll();
    void recentFileOpensAgain();
    void lostRecentFileIsTold();
    void secondWindowIsAProcessOfItsOwn();

private:
    /// Types a path into the file dialog of this title, and takes it.
    bool ChooseFile(const QString &dialog, const QString &path);
    bool SavesTyped(const QString &path, const QString &words);
};

bool FilesTest::ChooseFile(const QString &dialog, const QString &path)
{
    return m_program->WaitForWindow(dialog) && Display->Press({u"ctrl+a"_s}) && Display->Type(path) &&
           Display->Press({u"Return"_s}) && m_program->WaitUntilGone(dialog);
}

bool FilesTest::SavesTyped(const QString &path, const QString &words)
{
    return ClickAndType(words) && Display->Press({u"ctrl+s"_s}) &&
           WaitForBytes(path, ("Click here" + words + "</p>").toUtf8());
}

void FilesTest::openByDialog()
{
    const QString first = PutPage(u"first.htm"_s);
    const QString second = PutPage(u"zweite Säte.htm"_s);
    const QByteArray firstBytes = BytesOf(first);
    QVERIFY(m_program->Open(first, u"first"_s));
    QVERIFY(Display->Press({u"ctrl+o"_s}));
    QVERIFY(ChooseFile(u"Open HTML Page"_s, second));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"zweite Säte"_s)));
    QVERIFY(SavesTyped(second, u" in the second"_s));
    QCOMPARE(BytesOf(first), firstBytes);
    QVERIFY(Quit());
}

void FilesTest::saveAsAddsTheExtension()
{
    const QString path = PutPage(u"old.htm"_s);
    const QByteArray before = BytesOf(path);
    QVERIFY(m_program->Open(path, u"old"_s));
    QVERIFY(ClickAndType(u" under a new name"_s));
    QVERIFY(Display->Press({u"ctrl+shift+s"_s}));
    QVERIFY(ChooseFile(u"Save As"_s, m_home->FilePath(u"new"_s)));
    const QString copy = m_home->FilePath(u"new.htm"_s);
    QVERIFY(WaitForBytes(copy, "Click here under a new name</p>"));
    QCOMPARE(BytesOf(path), before);
    // A new file has its name a moment before the one that it was written under goes.
    QTRY_COMPARE_WITH_TIMEOUT(PagesIn(m_home->Folder()), (QStringList{u"new.htm"_s, u"old.htm"_s}),
                              RunningProgram::Patience);

    // From here on the new file is the page.
    QVERIFY(ClickAndType(u", really"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(copy, "Click here under a new name, really</p>"));
    QCOMPARE(BytesOf(path), before);
    QVERIFY(Quit());
}

void FilesTest::cancelledDialogsLeaveAll()
{
    const QString path = PutPage(u"kept.htm"_s);
    const QByteArray before = BytesOf(path);
    QVERIFY(m_program->Open(path, u"kept"_s));
    for (const auto &[keys, title] :
         {std::pair(u"ctrl+o"_s, u"Open HTML Page"_s), std::pair(u"ctrl+shift+s"_s, u"Save As"_s)})
    {
        QVERIFY(Display->Press({keys}));
        QVERIFY(m_program->WaitForWindow(title));
        QVERIFY(Display->Type(m_home->FilePath(u"other.htm"_s)));
        QVERIFY(Display->Press({u"Escape"_s}));
        QVERIFY(m_program->WaitUntilGone(title));
        QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"kept"_s)));
    }
    QCOMPARE(BytesOf(path), before);
    QCOMPARE(PagesIn(m_home->Folder()), QStringList(u"kept.htm"_s));
    QVERIFY(SavesTyped(path, u" as ever"_s));
    QVERIFY(Quit());
}

void FilesTest::recentFileOpensAgain()
{
    const QString first = PutPage(u"first.htm"_s);
    const QString second = PutPage(u"second.htm"_s);
    QVERIFY(m_program->Open(first, u"first"_s));
    QVERIFY(Quit());

    m_program = std::make_unique<RunningProgram>(*Display, *m_home); // the list outlives the program
    QVERIFY(m_program->Open(second, u"second"_s));
    QVERIFY(Display->Press({u"alt+f"_s, u"1"_s})); // 0 is the page that was opened last
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"first"_s)));
    QVERIFY(SavesTyped(first, u" again"_s));
    QVERIFY(Display->Press({u"alt+f"_s, u"1"_s}));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"second"_s)));
    QVERIFY(Quit());

    m_program = std::make_unique<RunningProgram>(*Display, *m_home); // without a page: the last one comes up
    m_program->Start({u"nosplash-"_s});
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"second"_s)));
    QVERIFY(Quit());
}

void FilesTest::lostRecentFileIsTold()
{
    const QString lost = PutPage(u"lost.htm"_s);
    const QString path = PutPage(u"page.htm"_s);
    QVERIFY(m_program->Open(lost, u"lost"_s));
    QVERIFY(Display->Press({u"ctrl+o"_s}));
    QVERIFY(ChooseFile(u"Open HTML Page"_s, path));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"page"_s)));
    QVERIFY(QFile::remove(lost));
    QVERIFY(Display->Press({u"alt+f"_s, u"1"_s}));
    QVERIFY(m_program->WaitForBox(u"Cannot find file "_s + lost + u'.'));
    QVERIFY(m_program->AnswerBox(u"Return"_s));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"page"_s)));
    QVERIFY(SavesTyped(path, u" is still here"_s));
    QVERIFY(Quit());
}

void FilesTest::secondWindowIsAProcessOfItsOwn()
{
    const QString first = PutPage(u"first.htm"_s);
    const QString second = PutPage(u"second page.htm"_s);
    QVERIFY(m_program->Open(first, u"first"_s));
    QVERIFY(Display->Press({u"alt+f"_s, u"w"_s}));
    QVERIFY(ChooseFile(u"Open HTML Page in New Editor Window"_s, second));
    qint64 other = 0;
    QTRY_VERIFY_WITH_TIMEOUT(m_home->Programs().size() == 2, RunningProgram::Patience);
    for (const qint64 process : m_home->Programs()) {
        if (process != m_program->Pid())
            other = process;
    }
    const QString otherTitle = RunningProgram::PageTitle(u"second page"_s);
    QTRY_COMPARE_WITH_TIMEOUT(Display->Title(Display->WindowWithFocus()), otherTitle, RunningProgram::Patience);
    QVERIFY(Display->Windows(other).contains(Display->WindowWithFocus()));
    QVERIFY(m_program->Titles().contains(RunningProgram::PageTitle(u"first"_s)));

    // The new window lies above the first one, at the same or another place; what is clicked is its paragraph.
    const QRect window = Display->Geometry(Display->WindowWithFocus());
    QTRY_VERIFY_WITH_TIMEOUT(window.contains(Display->Find(Mark)), RunningProgram::Patience);
    QVERIFY(SavesTyped(second, u" of the second"_s));
    QVERIFY(!BytesOf(first).contains("of the second"));
    QVERIFY(Display->Press({u"ctrl+q"_s}));
    QTRY_COMPARE_WITH_TIMEOUT(m_home->Programs(), QList<qint64>{m_program->Pid()}, RunningProgram::Patience);
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"first"_s)));
    QVERIFY(SavesTyped(first, u" of the first"_s));
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<FilesTest>(argc, argv);
}

#include "FilesTest.moc"
