#include "site/FilePane.h"

#include "site/FileListModel.h"
#include "site/FileListView.h"
#include "site/FormNewFolder.h"
#include "site/NoticeLabel.h"
#include "support/EditorRig.h"
#include "support/Files.h"
#include "support/WithoutPrivileges.h"

#include <QAccessible>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// An editor with its file pane, on a folder with three pages and some other files.
class PaneRig : public EditorRig
{
public:
    explicit PaneRig(FolderReader reader = ListFolder)
    {
        App.FilePattern = PagesPattern + u";*.jsp"_s;
        for (const QString &name : {u"b.htm"_s, u"c.htm"_s, u"d.jsp"_s, u"style.css"_s, u"_inklm_temp.htm"_s})
            Put(name, SmallPage);
        QDir(Folder()).mkdir(u"sub"_s);
        PutBytes(Path(u"sub/x.htm"_s), SmallPage);
        Pane = std::make_unique<FilePane>(*Edit, &Window, std::move(reader));
        Pane->resize(190, 600);
        Pane->show();
        Notices = std::make_unique<NoticeLabel>(*Pane, &Window);
        List = Pane->findChild<FileListView *>(u"ListTopics"_s);
        Dir = Pane->findChild<QListView *>(u"Dir1"_s);
        Load(Put(u"a.htm"_s, SmallPage));
        if (!QTest::qWaitFor([this] { return !Pane->IsReading(); }, 10000))
            qFatal("the pane does not read its folder");
    }

    /// The rows, the selected one in brackets.
    QString Rows() const
    {
        QStringList rows;
        for (int row = 0; row < Pane->ListTopics().rowCount(); ++row) {
            const QString name = Pane->ListTopics().NameOf(row);
            rows.append(row == List->SelectedRow() ? u'[' + name + u']' : name);
        }
        return rows.join(u' ');
    }
    QPoint PlaceOf(const QString &name) const
    {
        const int row = Pane->ListTopics().RowOf(Pane->Folder() + u'/' + name);
        return List->visualRect(List->model()->index(row, 0)).center();
    }
    void Click(const QString &name, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(List->viewport(), button, modifiers, PlaceOf(name));
    }
    void DoubleClick(const QString &name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        Click(name, Qt::LeftButton, modifiers);
        QTest::mouseDClick(List->viewport(), Qt::LeftButton, modifiers, PlaceOf(name));
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(List, key, modifiers);
    }
    QStringList Folders() const
    {
        QStringList rows;
        for (int row = 0; row < Dir->model()->rowCount(); ++row)
            rows.append(Dir->model()->index(row, 0).data().toString());
        return rows;
    }
    QString OpenName() const { return QFileInfo(Page.CurrentFilePath).fileName(); }

    std::unique_ptr<FilePane> Pane;
    std::unique_ptr<NoticeLabel> Notices;
    FileListView *List = nullptr;
    QListView *Dir = nullptr;
};

class FilePaneTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_rig.reset(); }
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
    void FollowsTheDisk();
    void FolderGoesAndComes();
    void RefusedFolder();
    void SlowFolder();
    void MovesThroughFolders();
    void Drives();
    void NewFolder_data();
    void NewFolder();
    void Sorts();
    void FirstFolder();
    void ReachedByKeyboardAndName();

private:
    void Rig(FolderReader reader = ListFolder)
    {
        m_rig.reset();
        m_rig = std::make_unique<PaneRig>(std::move(reader));
    }

    std::unique_ptr<PaneRig> m_rig;
    std::unique_ptr<QTemporaryDir> m_home;
};

void FilePaneTest::initTestCase()
{
    EditorRig::StartEngine();
}

void FilePaneTest::init()
{
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", m_home->filePath(u"data"_s).toUtf8());
    qputenv("XDG_STATE_HOME", m_home->filePath(u"state"_s).toUtf8());
    Rig();
}

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

void FilePaneTest::FollowsTheDisk()
{
    m_rig->Click(u"c.htm"_s);
    m_rig->Put(u"bb.htm"_s, "x");
    QDir(m_rig->Folder()).mkdir(u"new"_s);
    QTRY_COMPARE(m_rig->Rows(), u"a.htm b.htm bb.htm [c.htm] d.jsp"_s); // the user's row, not that of the page
    QTRY_VERIFY(m_rig->Folders().contains(u"new"_s));
    QVERIFY(QFile::remove(m_rig->Path(u"c.htm"_s)));
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] b.htm bb.htm d.jsp"_s);
}

void FilePaneTest::FolderGoesAndComes()
{
    const QString sub = m_rig->Path(u"sub"_s);
    m_rig->Pane->ShowFolder(sub);
    QTRY_COMPARE(m_rig->Rows(), u"x.htm"_s);
    QVERIFY(QDir(m_rig->Folder()).rename(u"sub"_s, u"gone"_s));
    m_rig->Pane->mnurefreshfilelist_Click();
    QTRY_COMPARE(m_rig->Rows(), QString());
    QVERIFY(m_rig->List->accessibleDescription().contains(sub));
    QCOMPARE(m_rig->Pane->Folder(), sub);
    QVERIFY(QDir(m_rig->Folder()).rename(u"gone"_s, u"sub"_s));
    QTRY_COMPARE(m_rig->Rows(), u"x.htm"_s);
    QCOMPARE(m_rig->List->accessibleDescription(), QString());
    QVERIFY(QDir(sub).removeRecursively());
    QTRY_COMPARE(m_rig->Rows(), QString());
    QTRY_VERIFY(m_rig->List->accessibleDescription().contains(sub));
}

void FilePaneTest::RefusedFolder()
{
    const WithoutPrivileges bound;
    const QString sub = m_rig->Path(u"sub"_s);
    QVERIFY(QFile::setPermissions(sub, QFile::Permissions()));
    const QString rows = m_rig->Rows();
    m_rig->Pane->ShowFolder(sub);
    QTRY_VERIFY(m_rig->Notices->text().contains(u"you may not read it"_s));
    QCOMPARE(m_rig->Pane->Folder(), m_rig->Folder());
    QCOMPARE(m_rig->Rows(), rows);
    m_rig->Pane->ShowFolder(m_rig->Path(u"none"_s));
    QTRY_VERIFY(m_rig->Notices->text().contains(u"does not exist"_s));
    QCOMPARE(m_rig->Rows(), rows);
    QFile::setPermissions(sub, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// As a network folder whose server does not answer.
void FilePaneTest::SlowFolder()
{
    const auto answer = std::make_shared<QSemaphore>();
    Rig([answer](const QString &folder) {
        if (folder.endsWith(u"/sub"_s))
            answer->acquire();
        return ListFolder(folder);
    });
    QElapsedTimer clock;
    clock.start();
    m_rig->Pane->ShowFolder(m_rig->Path(u"sub"_s));
    m_rig->Pane->File1_PathChange(); // asks for the same again
    QVERIFY(clock.elapsed() < 2000);
    QTRY_VERIFY(m_rig->List->accessibleDescription().contains(u"Reading"_s));
    QCOMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm d.jsp"_s); // and can be worked with
    m_rig->DoubleClick(u"b.htm"_s);
    QCOMPARE(m_rig->OpenName(), u"b.htm"_s);
    QTRY_VERIFY(!m_rig->Pane->IsReading()); // the page's folder is asked for now
    QCOMPARE(m_rig->Pane->Folder(), m_rig->Folder());

    m_rig->Pane->ShowFolder(m_rig->Path(u"sub"_s));
    answer->release(3); // the late ones are not wanted any more, the last one is
    QTRY_COMPARE(m_rig->Rows(), u"x.htm"_s);
    m_rig->Pane->ShowFolder(m_rig->Folder());
    QTRY_COMPARE(m_rig->Pane->Folder(), m_rig->Folder());
    m_rig->Pane->ShowFolder(m_rig->Path(u"sub"_s)); // never answers
    m_rig.reset();
    answer->release(10);
}

void FilePaneTest::MovesThroughFolders()
{
    QListView *dir = m_rig->Dir;
    const int inside = dir->model()->rowCount() - 1;
    QCOMPARE(dir->currentIndex().row(), inside - 1); // the folder shown
    dir->setFocus();
    QTest::keyClick(dir, Qt::Key_Down);
    QTest::keyClick(dir, Qt::Key_Return);
    QTRY_COMPARE(m_rig->Pane->Folder(), m_rig->Path(u"sub"_s));
    QCOMPARE(m_rig->Rows(), u"x.htm"_s);
    QTest::keyClick(dir, Qt::Key_Backspace);
    QTRY_COMPARE(m_rig->Pane->Folder(), m_rig->Folder());
    QCOMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm d.jsp"_s);
    const QPoint above = dir->visualRect(dir->model()->index(inside - 2, 0)).center();
    dir->scrollTo(dir->model()->index(inside - 2, 0));
    QTest::mouseClick(dir->viewport(), Qt::LeftButton, {}, above);
    QCOMPARE(m_rig->Pane->Folder(), m_rig->Folder()); // one click only selects
    QTest::mouseDClick(dir->viewport(), Qt::LeftButton, {},
                       dir->visualRect(dir->model()->index(inside - 2, 0)).center());
    QTRY_COMPARE(m_rig->Pane->Folder(), QFileInfo(m_rig->Folder()).path());
}

void FilePaneTest::Drives()
{
    auto *drive = m_rig->Pane->findChild<QComboBox *>(u"Drive1"_s);
    QCOMPARE(drive->itemText(0), u"File System"_s);
    QCOMPARE(drive->currentIndex(), 0); // the folder of the test lies there
    drive->setFocus();
    QTest::keyClick(drive, Qt::Key_Down);
    QTRY_COMPARE(m_rig->Pane->Folder(), QDir::homePath());
    QCOMPARE(drive->currentText(), u"Home"_s);
    QCOMPARE(m_rig->Folders().first(), u"Home"_s);
    m_rig->Pane->ShowFolder(m_rig->Folder());
    QTRY_COMPARE(drive->currentIndex(), 0);
}

void FilePaneTest::NewFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown"); // below the folder; "-": the dialog stays open
    QTest::newRow("plain") << u"n\u00F6w one"_s << u"/n\u00F6w one"_s;
    QTest::newRow("leading dash") << u"-p"_s << u"/-p"_s;
    QTest::newRow("there already") << u"sub"_s << u"/sub"_s;
    QTest::newRow("no name") << QString() << QString();
    QTest::newRow("in one that is not there") << u"no/where"_s << u"-"_s;
    QTest::newRow("over a file") << u"b.htm"_s << u"-"_s;
    QTest::newRow("too long") << QString(255, u'\u00F6') << u"-"_s;
}

void FilePaneTest::NewFolder()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    const QStringList before = EntriesOf(m_rig->Folder());
    bool refused = false;
    QTimer::singleShot(0, m_rig->Pane.get(), [&] {
        auto *dialog = qobject_cast<FormNewFolder *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), u"Create New Folder"_s);
        dialog->findChild<QLineEdit *>(u"Text1"_s)->setText(name);
        QTest::keyClick(dialog->findChild<QLineEdit *>(u"Text1"_s), Qt::Key_Return);
        if (shown != u"-")
            return;
        auto *problem = dialog->findChild<QLabel *>(u"LabelProblem"_s);
        QTRY_VERIFY(problem->isVisible());
        refused = dialog->isVisible();
        QTest::mouseClick(dialog->findChild<QPushButton *>(u"CancelButton"_s), Qt::LeftButton);
    });
    m_rig->Pane->findChild<QToolButton *>(u"CreDir"_s)->click();
    QCOMPARE(refused, shown == u"-");
    QTRY_VERIFY(!m_rig->Pane->IsReading());
    QCOMPARE(m_rig->Pane->Folder(), m_rig->Folder() + (refused ? QString() : shown));
    const QByteArray log = BytesOf(m_home->filePath(u"state/inkloom/TomeloftJavaHelp.log"_s));
    QCOMPARE(log.contains("FormNewFolder OKButton_Click: "), refused);
    if (refused)
        QCOMPARE(EntriesOf(m_rig->Folder()), before);
    else
        QVERIFY(QFileInfo(m_rig->Pane->Folder()).isDir());
}

void FilePaneTest::Sorts()
{
    QLocale::setDefault(QLocale(QLocale::German));
    m_rig->Put(u"\u00E4.htm"_s, "x");
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] b.htm c.htm d.jsp \u00E4.htm"_s);
    QHeaderView *header = m_rig->List->header();
    QCOMPARE(header->sectionSize(0), 3500 / 15);
    QVERIFY(header->isSectionHidden(FileListModel::PathColumn));
    for (int click = 0; click < 2; ++click) { // a second one turns nothing around
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(30, header->height() / 2));
        QTRY_COMPARE(m_rig->Rows(), u"[a.htm] \u00E4.htm b.htm c.htm d.jsp"_s);
    }
    m_rig->Put(u"\u00E5.htm"_s, "x");
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] \u00E5.htm \u00E4.htm b.htm c.htm d.jsp"_s); // it stays sorted
    QLocale::setDefault(QLocale::c());
}

void FilePaneTest::FirstFolder()
{
    m_rig->Pane->WriteSettings();
    FilePane second(*m_rig->Edit);
    m_rig->App.ProjectDir.clear();
    second.ShowFirstFolder();
    QTRY_COMPARE(second.Folder(), m_rig->Folder());
    QCOMPARE(m_rig->App.ProjectDir, m_rig->Folder());
    second.ShowFolder(m_rig->Path(u"sub"_s));
    QTRY_COMPARE(second.Folder(), m_rig->Path(u"sub"_s));
    second.ShowFirstFolder(); // there is one
    QCOMPARE(second.Folder(), m_rig->Path(u"sub"_s));
    second.WriteSettings();
    QVERIFY(QDir(second.Folder()).removeRecursively());
    FilePane third(*m_rig->Edit);
    third.ShowFirstFolder();
    QTRY_COMPARE(third.Folder(), QDir::homePath());
}

void FilePaneTest::ReachedByKeyboardAndName()
{
    auto *drive = m_rig->Pane->findChild<QComboBox *>(u"Drive1"_s);
    QApplication::setActiveWindow(&m_rig->Window);
    drive->setFocus();
    QStringList reached;
    for (int tab = 0; tab < 4; ++tab) {
        QWidget *widget = m_rig->Window.focusWidget();
        reached.append(widget->objectName());
        const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(face && !face->text(QAccessible::Name).isEmpty(), qPrintable(widget->objectName()));
        QTest::keyClick(widget, Qt::Key_Tab);
    }
    QCOMPARE(reached, QStringList({u"Drive1"_s, u"CreDir"_s, u"Dir1"_s, u"ListTopics"_s}));
    m_rig->List->setFocus();
    QTest::keyClick(m_rig->List, Qt::Key_C); // to the name that starts so
    QCOMPARE(m_rig->Rows(), u"a.htm b.htm [c.htm] d.jsp"_s);
}

QTEST_MAIN(FilePaneTest)
#include "FilePaneTest.moc"
