#include "PaneRig.h"

#include "site/FormNewFolder.h"
#include "support/WithoutPrivileges.h"

#include <QAccessible>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSemaphore>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The folders of the pane, and what happens to them outside of the program.
class FolderPaneTest : public PaneTest
{
    Q_OBJECT

private slots:
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
};

void FolderPaneTest::FollowsTheDisk()
{
    m_rig->Click(u"c.htm"_s);
    m_rig->Put(u"bb.htm"_s, "x");
    QDir(m_rig->Folder()).mkdir(u"new"_s);
    QTRY_COMPARE(m_rig->Rows(), u"a.htm b.htm bb.htm [c.htm] d.jsp"_s); // the user's row, not that of the page
    QTRY_VERIFY(m_rig->Folders().contains(u"new"_s));
    QVERIFY(QFile::remove(m_rig->Path(u"c.htm"_s)));
    QTRY_COMPARE(m_rig->Rows(), u"[a.htm] b.htm bb.htm d.jsp"_s);
}

void FolderPaneTest::FolderGoesAndComes()
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

void FolderPaneTest::RefusedFolder()
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
void FolderPaneTest::SlowFolder()
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

void FolderPaneTest::MovesThroughFolders()
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

void FolderPaneTest::Drives()
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

void FolderPaneTest::NewFolder_data()
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

void FolderPaneTest::NewFolder()
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

void FolderPaneTest::Sorts()
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

void FolderPaneTest::FirstFolder()
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

void FolderPaneTest::ReachedByKeyboardAndName()
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

QTEST_MAIN(FolderPaneTest)
#include "FolderPaneTest.moc"
