#include "PaneRig.h"

#include "site/FormNewFolder.h"
#include "support/WithoutPrivileges.h"

#include <QMenu>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The list of files: opening, deleting, the menu.
class FilePaneTest : public PaneTest
{
    Q_OBJECT

private slots:
    void ShowsTheFolderOfThePage();
    void PatternsFollowTheTab();
    void Opens_data();
    void Opens();
    void OpeningRests();
    void StrangeNames_data();
    void StrangeNames();
    void Menu();
    void Deletes_data();
    void Deletes();
    void DeletionIsTakenBack_data();
    void DeletionIsTakenBack();
    void DeletionThatFails();
    void PlaceOfTheDeletedIsTaken();
};

void FilePaneTest::ShowsTheFolderOfThePage()
{
    QCOMPARE(m_rig->Pane->Folder(), m_rig->Folder());
    QCOMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm d.jsp"_s);
    QCOMPARE(m_rig->App.ProjectDir, m_rig->Folder());
    QCOMPARE(m_rig->Folders().last(2), QStringList({QFileInfo(m_rig->Folder()).fileName(), u"sub"_s}));
    const FileListModel &rows = m_rig->Pane->ListTopics();
    QCOMPARE(rows.index(1, FileListModel::PathColumn).data().toString(), m_rig->Path(u"b.htm"_s));

    m_rig->Click(u"c.htm"_s);
    m_rig->Load(m_rig->Path(u"b.htm"_s));
    QCOMPARE(m_rig->Rows(), u"a.htm [b.htm] c.htm d.jsp"_s);
    m_rig->Load(m_rig->Path(u"sub/../sub/x.htm"_s));
    QTRY_COMPARE(m_rig->Rows(), u"[x.htm]"_s);
    QCOMPARE(m_rig->App.ProjectDir, m_rig->Folder()); // the first one stays
    m_rig->Load(m_rig->Path(u"style.css"_s));         // not listed
    QTRY_COMPARE(m_rig->Rows(), u"a.htm b.htm c.htm d.jsp"_s);

    m_rig->App.MainDir = m_rig->Path(u"sub/"_s);
    m_rig->Load(m_rig->Put(u"sub/_blank.htm"_s, EditorRig::SmallPage));
    QCOMPARE(m_rig->Pane->Folder(), m_rig->Folder()); // a blank page is nowhere
}

void FilePaneTest::PatternsFollowTheTab()
{
    const QString copy = m_rig->Path(u"_inklm_temp.htm"_s);
    m_rig->Page.PreviewTempFile = copy;
    m_rig->Edit->SelectTab(ViewTab::Preview);
    m_rig->Pane->File1_PathChange();
    QTRY_VERIFY(!m_rig->Pane->IsReading());
    QVERIFY(QFile::exists(copy)); // the preview shows it

    m_rig->Edit->SelectTab(ViewTab::Publish);
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm d.jsp iltb.tmp style.css"_s);
    QVERIFY(!QFile::exists(copy));
    const FileListModel &rows = m_rig->Pane->ListTopics();
    QCOMPARE(rows.Rows().last().Icon, FileIcon::Text);
    m_rig->Put(u"e.png"_s, "x");
    m_rig->Pane->mnurefreshfilelist_Click();
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm d.jsp e.png iltb.tmp style.css"_s);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm"_s); // what the settings added is lost
    QCOMPARE(m_rig->App.FilePattern, PagesPattern);
}

void FilePaneTest::Opens_data()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<bool>("newWindow");
    QTest::newRow("double click") << 0 << false;
    QTest::newRow("Enter") << 1 << false;
    QTest::newRow("menu") << 2 << false;
    QTest::newRow("double click, Ctrl") << 3 << true;
    QTest::newRow("middle button") << 4 << true;
    QTest::newRow("Enter, Ctrl") << 5 << true;
    QTest::newRow("Shift in the page") << 6 << true;
}

void FilePaneTest::Opens()
{
    QFETCH(int, way);
    QFETCH(bool, newWindow);
    QSignalSpy windows(m_rig->Pane.get(), &FilePane::NewWindowWanted);
    m_rig->Selection.ShiftDown = way == 6;
    if (way == 4)
        m_rig->Click(u"c.htm"_s, Qt::MiddleButton);
    else if (way == 0 || way == 3 || way == 6)
        m_rig->DoubleClick(u"c.htm"_s, way == 3 ? Qt::ControlModifier : Qt::NoModifier);
    else
        m_rig->Click(u"c.htm"_s);
    if (way == 1 || way == 5)
        m_rig->Key(way == 1 ? Qt::Key_Return : Qt::Key_Enter, way == 5 ? Qt::ControlModifier : Qt::NoModifier);
    if (way == 2)
        m_rig->Pane->findChild<QAction *>(u"poplstopen"_s)->trigger();
    QCOMPARE(m_rig->OpenName(), newWindow ? u"a.htm"_s : u"c.htm"_s);
    QCOMPARE(windows.size(), newWindow ? 1 : 0);
    if (newWindow)
        QCOMPARE(windows.at(0).at(0).toString(), m_rig->Path(u"c.htm"_s));
    QCOMPARE(m_rig->Rows(), u"a.htm b.htm [c.htm] d.jsp"_s);
}

void FilePaneTest::OpeningRests()
{
    m_rig->Click(u"a.htm"_s, Qt::LeftButton, Qt::ControlModifier); // nothing is selected any more
    QCOMPARE(m_rig->Rows(), u"a.htm b.htm c.htm d.jsp"_s);
    m_rig->Key(Qt::Key_Return);
    m_rig->Edit->SelectTab(ViewTab::Publish);
    QTRY_VERIFY(!m_rig->Pane->IsReading());
    QSignalSpy windows(m_rig->Pane.get(), &FilePane::NewWindowWanted);
    m_rig->DoubleClick(u"c.htm"_s);
    m_rig->DoubleClick(u"c.htm"_s, Qt::ControlModifier);
    QCOMPARE(m_rig->OpenName(), u"a.htm"_s);
    QVERIFY(windows.isEmpty());

    m_rig->Edit->SelectTab(ViewTab::Normal);
    QTRY_VERIFY(!m_rig->Pane->IsReading());
    m_rig->TypeAtStart(u"x"_s);
    m_rig->Boxes.Expect(Answer::Cancel, u"Save changes to "_s);
    m_rig->DoubleClick(u"c.htm"_s);
    QCOMPARE(m_rig->OpenName(), u"a.htm"_s);
    QVERIFY(QFile::remove(m_rig->Path(u"c.htm"_s)));
    m_rig->Boxes.Expect(Answer::Ok, u"Error: File "_s + m_rig->Path(u"c.htm"_s) + u" does not exist."_s);
    m_rig->Key(Qt::Key_Return); // before the list has heard of it
}

void FilePaneTest::StrangeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("opened"); // "": there is no such file
    for (const QString &name : {u"my page.htm"_s, u" .htm"_s, u"Gr\u00F6\u00DFe \u4E2D.htm"_s, u"-rf.htm"_s,
                                u"two\nlines.htm"_s, u"a&b<i>.htm"_s, u"%41.htm"_s, u"c:d.htm"_s})
        QTest::newRow(name.toUtf8()) << name << name;
    QTest::newRow("cut at #") << u"e#1.htm"_s << QString();
}

void FilePaneTest::StrangeNames()
{
    QFETCH(QString, name);
    QFETCH(QString, opened);
    m_rig->Put(name, EditorRig::SmallPage);
    m_rig->Pane->File1_PathChange();
    QTRY_VERIFY(m_rig->Rows().contains(name));
    m_rig->Click(name);
    if (opened.isEmpty())
        m_rig->Boxes.Expect(Answer::Ok, u"/e does not exist."_s);
    m_rig->Key(Qt::Key_Return);
    QCOMPARE(m_rig->OpenName(), opened.isEmpty() ? u"a.htm"_s : opened);
    m_rig->Click(name);
    m_rig->Key(Qt::Key_Delete);
    QTRY_VERIFY(!QFile::exists(m_rig->Path(name)));
    m_rig->Pane->UndoLastDeletion();
    QTRY_COMPARE(BytesOf(m_rig->Path(name)), EditorRig::SmallPage);
}

void FilePaneTest::Menu()
{
    auto *menu = m_rig->Pane->findChild<QMenu *>(u"mnulistpop"_s);
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts.append(action->isSeparator() ? u"-"_s : action->text());
    QCOMPARE(texts, QStringList({u"&Open Page"_s, u"-"_s, u"&New Page...                                 F2"_s, u"-"_s,
                                 u"&Delete File"_s, u"-"_s, u"&Refresh File List"_s}));
    const auto enabled = [&] {
        QString states;
        for (const QAction *action : menu->actions())
            states += action->isSeparator() ? QString() : action->isEnabled() ? u"1"_s : u"0"_s;
        menu->hide();
        return states;
    };
    QTest::mousePress(m_rig->List->viewport(), Qt::RightButton, {}, m_rig->PlaceOf(u"b.htm"_s));
    QVERIFY(!menu->isVisible());
    QTest::mouseRelease(m_rig->List->viewport(), Qt::RightButton, {}, m_rig->PlaceOf(u"b.htm"_s));
    QVERIFY(menu->isVisible());
    QCOMPARE(m_rig->Rows(), u"a.htm [b.htm] c.htm d.jsp"_s);
    QCOMPARE(enabled(), u"1111"_s);
    QTest::mouseClick(m_rig->List->viewport(), Qt::RightButton, {}, m_rig->PlaceOf(u"d.jsp"_s) + QPoint(0, 60));
    QVERIFY(menu->isVisible()); // over no row
    QCOMPARE(enabled(), u"0001"_s);

    m_rig->Click(u"b.htm"_s);
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(m_rig->List->viewport(), &key);
    QVERIFY(menu->isVisible());
    QCOMPARE(enabled(), u"1111"_s);
    QSignalSpy pages(m_rig->Pane.get(), &FilePane::NewPageWanted);
    m_rig->Pane->findChild<QAction *>(u"poplstnewtopic"_s)->trigger();
    QCOMPARE(pages.size(), 1);
}

void FilePaneTest::Deletes_data()
{
    QTest::addColumn<QString>("open");
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("rows"); // then
    QTest::newRow("another page") << u"a.htm"_s << u"b.htm"_s << u"a.htm [c.htm] d.jsp"_s;
    QTest::newRow("the last row") << u"a.htm"_s << u"d.jsp"_s << u"a.htm b.htm [c.htm]"_s;
    QTest::newRow("the open page") << u"b.htm"_s << u"b.htm"_s << u"a.htm [c.htm] d.jsp"_s;
    QTest::newRow("the open page in the last row") << u"d.jsp"_s << u"d.jsp"_s << u"a.htm b.htm [c.htm]"_s;
    QTest::newRow("the only row") << u"sub/x.htm"_s << u"x.htm"_s << QString();
}

void FilePaneTest::Deletes()
{
    QFETCH(QString, open);
    QFETCH(QString, row);
    QFETCH(QString, rows);
    m_rig->Load(m_rig->Path(open));
    QTRY_VERIFY(m_rig->Rows().contains(row));
    const QString path = m_rig->Pane->Folder() + u'/' + row;
    QVERIFY(PutBytes(path + u".tmp.htm"_s, "copy"));
    m_rig->Click(row);
    const QString was = m_rig->OpenName();
    m_rig->Key(Qt::Key_Delete); // nothing is asked
    QTRY_VERIFY(!QFile::exists(path) && !QFile::exists(path + u".tmp.htm"_s));
    QTRY_COMPARE(m_rig->Rows(), rows);
    const bool opensNeighbour = was == row && !rows.isEmpty();
    QCOMPARE(m_rig->OpenName(), opensNeighbour ? u"c.htm"_s : was);
    QTRY_VERIFY(m_rig->Notices->text().contains(u"moved to the trash"_s));
    m_rig->Pane->DeleteSelectedFile(false); // off the list only
    if (!rows.isEmpty())
        QVERIFY(QFile::exists(m_rig->Path(u"c.htm"_s)) && !m_rig->Rows().contains(u"c.htm"_s));
}

void FilePaneTest::DeletionIsTakenBack_data()
{
    QTest::addColumn<bool>("trash");
    QTest::newRow("from the trash") << true;
    QTest::newRow("where there is no trash") << false;
}

void FilePaneTest::DeletionIsTakenBack()
{
    QFETCH(bool, trash);
    if (!trash) { // in the place of the folder
        QVERIFY(PutBytes(m_home->filePath(u"file"_s), "x"));
        qputenv("XDG_DATA_HOME", m_home->filePath(u"file"_s).toUtf8());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"trash"_s));
    }
    const QString path = m_rig->Put(u"b.htm"_s, "own bytes \xFF\n");
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    m_rig->Click(u"b.htm"_s);
    m_rig->Key(Qt::Key_Delete);
    QTRY_VERIFY(!QFile::exists(path) && m_rig->Notices->isVisible());
    QCOMPARE(m_rig->Notices->text().contains(u"trash"_s), trash);
    QCOMPARE(EntriesOf(m_home->filePath(u"data/Trash/files"_s)).size(), trash ? 1 : 0);
    QApplication::setActiveWindow(&m_rig->Window);
    m_rig->Notices->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_rig->Notices.get(), Qt::Key_Return);
    QTRY_VERIFY(m_rig->Rows().contains(u"[b.htm]"_s));
    QCOMPARE(BytesOf(path), QByteArray("own bytes \xFF\n"));
    QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    QCOMPARE(EntriesOf(m_home->filePath(u"data/Trash/files"_s)), QStringList());
    QCOMPARE(EntriesOf(m_home->filePath(u"data/Trash/info"_s)), QStringList());
    QVERIFY(!m_rig->Notices->text().contains(u"<a "_s)); // once
}

void FilePaneTest::DeletionThatFails()
{
    const WithoutPrivileges bound;
    QVERIFY(QFile::setPermissions(m_rig->Folder(), QFile::ReadOwner | QFile::ExeOwner));
    m_rig->Click(u"b.htm"_s);
    m_rig->Key(Qt::Key_Delete);
    QTRY_COMPARE(m_rig->Notices->text(), u"b.htm could not be deleted."_s);
    QTRY_VERIFY(m_rig->Rows().contains(u"b.htm"_s)); // its row comes back
    QVERIFY(QFile::exists(m_rig->Path(u"b.htm"_s)));
    QFile::setPermissions(m_rig->Folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void FilePaneTest::PlaceOfTheDeletedIsTaken()
{
    m_rig->Click(u"b.htm"_s);
    m_rig->Key(Qt::Key_Delete);
    QTRY_VERIFY(!QFile::exists(m_rig->Path(u"b.htm"_s)) && m_rig->Notices->isVisible());
    m_rig->Put(u"b.htm"_s, "new");
    m_rig->Pane->UndoLastDeletion();
    QTRY_VERIFY(m_rig->Notices->text().contains(u"new file"_s));
    QCOMPARE(BytesOf(m_rig->Path(u"b.htm"_s)), QByteArray("new"));
    QVERIFY(QFile::remove(m_rig->Path(u"b.htm"_s)));
    m_rig->Pane->UndoLastDeletion();
    QTRY_COMPARE(BytesOf(m_rig->Path(u"b.htm"_s)), EditorRig::SmallPage);
}

QTEST_MAIN(FilePaneTest)
#include "FilePaneTest.moc"
