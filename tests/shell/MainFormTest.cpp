#include "shell/frmSplash.h"
#include "support/Program.h"

#include <QProgressBar>
#include <QRegularExpression>
#include <QTabBar>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

class MainFormTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void StartsOnANamelessBlankPage();
    void OpensThePageOfTheCommandLine();
    void MissingPage();
    void LastFile_data();
    void LastFile();
    void StartsInTheSourceView();
    void ComesUpWithoutProgramFolder();
    void SplashGoesAtAKey();
    void TypedWordsAreSavedByKey();
    void UndoKeyActsOnce();
    void MenusFollowPageAndView();
    void EditCommandsGoToTheViewThatShows();
    void KeysChangeTheView();
    void RecentFilesAreInTheMenu();
    void OpenAsksOnce_data();
    void OpenAsksOnce();
    void NewWindowIsASecondProcess();
    void FirstPageHasNoName();
    void LongPathIsWholeInTheTooltip();

private:
};

void MainFormTest::initTestCase()
{
    StartEngine();
}

void MainFormTest::init()
{
    UsePrivateState();
}

void MainFormTest::StartsOnANamelessBlankPage()
{
    Program program;
    program.Start(u"nosplash-"_s);
    QVERIFY(program.Window->isVisible());
    QVERIFY(!program.Page().App().StartingUp);
    QCOMPARE(program.Page().Page().CurrentFilePath, QString());
    QVERIFY(program.Page().Page().BackHistory.isEmpty());
    QVERIFY(program.Page().Surface().DocumentHTML().contains(u"&nbsp;"_s));
    QCOMPARE(program.Panel(1), u"[No Title]"_s);
    QCOMPARE(program.Panel(2), QString());
    QCOMPARE(program.Window->windowTitle(), u"Inkloom HTML Editor - [No Title]"_s);
    QCOMPARE(program.Find<QTabBar>(u"TabStrip2"_s)->tabText(0), u"Normal"_s);
    QVERIFY(!program.Find<QAction>(u"fileexitsep"_s)->isVisible());
    QVERIFY(!program.Page().HasUnsavedChanges());
}

void MainFormTest::OpensThePageOfTheCommandLine()
{
    Program program;
    program.Open(u"a.htm"_s);
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(u"a.htm"_s));
    QVERIFY(program.Page().Surface().DocumentHTML().contains(u"old words"_s));
    QCOMPARE(program.Panel(1), u"Club & <b>dates"_s);
    QCOMPARE(program.Panel(2), program.Path(u"a.htm"_s));
    QCOMPARE(program.Window->windowTitle(), u"Inkloom HTML Editor - Club & <b>dates"_s);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!program.Find<QProgressBar>(u"ProgressReport"_s)->isVisible());
    QCOMPARE(program.Page().App().RecentList, QStringList{program.Path(u"a.htm"_s) + u"| "_s});
}

void MainFormTest::MissingPage()
{
    Program program;
    program.Boxes.Expect(Answer::Ok);
    program.Open(u"no.htm"_s);
    QCOMPARE(program.Boxes.Boxes.value(0).Text, u"Cannot find file %1."_s.arg(program.Path(u"no.htm"_s)));
    QCOMPARE(program.Page().Page().CurrentFilePath, QString());
    QCOMPARE(program.Page().App().FileToOpen, QString());
    QVERIFY(program.Page().App().RecentList.isEmpty());
}

void MainFormTest::LastFile_data()
{
    QTest::addColumn<QString>("autoopen");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("opened");
    QTest::newRow("reopened") << u"1"_s << u""_s << u"b.htm"_s;
    QTest::newRow("not wanted") << u"0"_s << u""_s << u""_s;
    QTest::newRow("command line wins") << u"1"_s << u"a.htm"_s << u"a.htm"_s;
}

void MainFormTest::LastFile()
{
    QFETCH(QString, autoopen);
    QFETCH(QString, argument);
    QFETCH(QString, opened);
    Program program;
    program.Ini.SetIni(u"Settings"_s, u"autoopen"_s, autoopen);
    program.Ini.SetIni(u"Settings"_s, u"last_file"_s, program.Path(u"b.htm"_s));
    program.Start(u"nosplash-"_s + (argument.isEmpty() ? QString() : program.Path(argument)));
    QCOMPARE(program.Page().Page().CurrentFilePath, opened.isEmpty() ? QString() : program.Path(opened));
}

void MainFormTest::StartsInTheSourceView()
{
    Program program;
    program.Ini.SetIni(u"Settings"_s, u"useexted"_s, u"1"_s);
    program.Open(u"a.htm"_s);
    QCOMPARE(program.Page().Page().ActiveTab, ViewTab::HtmlSource);
    QVERIFY(program.Page().Source().isVisible());
    QVERIFY(!program.Page().Surface().isVisible());
    QCOMPARE(program.Page().Source().Text(), PageText);
}

void MainFormTest::ComesUpWithoutProgramFolder()
{
    Program program;
    program.Ini.SetIni(u"Locations"_s, u"main dir"_s, QString());
    program.Boxes.Expect(Answer::Ok, u"Error: File _blank.htm does not exist."_s);
    program.Open(u"a.htm"_s);
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(u"a.htm"_s));
}

void MainFormTest::SplashGoesAtAKey()
{
    Program program;
    program.Start(program.Path(u"a.htm"_s));
    const QPointer<frmSplash> splash = program.Window->findChild<frmSplash *>();
    QVERIFY(splash && splash->isVisible());
    program.Type(u"x"_s);
    QVERIFY(!splash || !splash->isVisible());
}

void MainFormTest::TypedWordsAreSavedByKey()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Type(u"New "_s);
    QTest::keyClick(program.Input(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY(program.Read(u"a.htm"_s).contains(u"New old words"_s));
    QVERIFY(!program.Page().HasUnsavedChanges());
    QVERIFY(program.Window->close());
}

void MainFormTest::UndoKeyActsOnce()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Type(u"x"_s);
    QTest::keyClick(program.Input(), Qt::Key_Return);
    program.Type(u"y"_s);
    QTest::keyClick(program.Input(), Qt::Key_Z, Qt::ControlModifier);
    const QString html = program.Page().Surface().DocumentHTML();
    QVERIFY2(html.contains(u"<P>x</P>"_s) && !html.contains(u"yold"_s), qPrintable(html));
    program.Boxes.Expect(Answer::No);
    program.Window->close();
}

void MainFormTest::MenusFollowPageAndView()
{
    Program program;
    program.Open(u"a.htm"_s);
    const auto enabled = [&](const QString &name) { return program.Drop(name)->isEnabled(); };
    QVERIFY(!enabled(u"editundo"_s));
    QVERIFY(!enabled(u"editcut"_s));
    QVERIFY(enabled(u"formatbold"_s));
    QVERIFY(enabled(u"editselectall"_s));
    program.Type(u"x"_s);
    QVERIFY(enabled(u"editundo"_s));
    program.Menu(u"editselectall"_s);
    QVERIFY(enabled(u"editcut"_s));
    program.Menu(u"formatbold"_s);
    QVERIFY(enabled(u"formatbold"_s));
    QVERIFY(program.Find<QAction>(u"formatbold"_s)->isChecked());

    program.Menu(u"viewsource"_s);
    QVERIFY(!enabled(u"formatbold"_s));
    QVERIFY(!program.Find<QAction>(u"formatbold"_s)->isChecked());
    QVERIFY(!enabled(u"editundo"_s));
    QVERIFY(enabled(u"viewsource"_s));
    QVERIFY(program.Find<QAction>(u"viewsource"_s)->isChecked());
    QVERIFY(!program.Find<QAction>(u"viewnormal"_s)->isChecked());
    program.Boxes.Expect(Answer::No);
    program.Window->close();
}

void MainFormTest::EditCommandsGoToTheViewThatShows()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Type(u"designed"_s);
    program.Menu(u"editundo"_s);
    QVERIFY(!program.Page().Surface().DocumentHTML().contains(u"designed"_s));
    program.Menu(u"editredo"_s);
    QVERIFY(program.Page().Surface().DocumentHTML().contains(u"designed"_s));

    program.Menu(u"viewsource"_s);
    const QString source = program.Page().Source().Text();
    program.Type(u"<!-- written -->"_s);
    QVERIFY(program.Page().Source().Text() != source);
    while (program.Page().Source().CanUndo())
        program.Menu(u"editundo"_s);
    QCOMPARE(program.Page().Source().Text(), source);
    QVERIFY(program.Page().Surface().DocumentHTML().contains(u"designed"_s));
    program.Boxes.Expect(Answer::No);
    program.Window->close();
}

void MainFormTest::KeysChangeTheView()
{
    Program program;
    program.Open(u"a.htm"_s);
    QTest::keyClick(program.Input(), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(program.Page().Page().ActiveTab, ViewTab::PageProperties);
    QTest::keyClick(program.Window->focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(program.Page().Page().ActiveTab, ViewTab::HtmlSource);
    QCOMPARE(program.Find<QTabBar>(u"TabStrip2"_s)->currentIndex(), 2);
    QVERIFY(program.Page().Source().isVisible());
    QVERIFY(program.Page().Source().isAncestorOf(program.Window->focusWidget()));

    program.Page().Source().Select(program.Page().Source().Text().indexOf(u"old"_s) + 1, 3);
    program.Type(u"brand new"_s);
    for (const ViewTab next : {ViewTab::Preview, ViewTab::Publish, ViewTab::Normal}) { // around the end
        QTest::keyClick(program.Window->focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(program.Page().Page().ActiveTab, next);
    }
    QCOMPARE(program.Page().Page().ActiveTab, ViewTab::Normal);
    QVERIFY(program.Page().Surface().isVisible());
    QVERIFY(program.Page().Surface().DocumentHTML().contains(u"brand new words"_s));
    QTest::keyClick(program.Input(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY(program.Read(u"a.htm"_s).contains(u"brand new words"_s));
}

void MainFormTest::RecentFilesAreInTheMenu()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Dialogs.ExpectOpen(program.Path(u"b.htm"_s));
    program.Menu(u"fileopen"_s);
    QCOMPARE(program.Dialogs.Requests.value(0).Title, u"Open HTML Page"_s);
    QCOMPARE(program.Dialogs.Requests.value(0).Filter, u"HTML Files (*.htm*)|*.htm*"_s);
    QVERIFY(program.Drop(u"recent(0)"_s)->text().endsWith(u"b.htm"_s));
    QVERIFY(program.Find<QAction>(u"recent(1)"_s)->text().endsWith(u"a.htm"_s));
    QVERIFY(!program.Find<QAction>(u"recent(2)"_s)->isVisible());
    QVERIFY(program.Find<QAction>(u"fileexitsep"_s)->isVisible());

    program.Menu(u"recent(1)"_s);
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(u"a.htm"_s));
    QCOMPARE(program.Page().App().RecentList.value(0), program.Path(u"a.htm"_s) + u"| "_s);

    QVERIFY(QFile::remove(program.Path(u"b.htm"_s)));
    program.Boxes.Expect(Answer::Ok, u"Cannot find file %1."_s.arg(program.Path(u"b.htm"_s)));
    program.Menu(u"recent(1)"_s);
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(u"a.htm"_s));
    QCOMPARE(program.Page().App().RecentList.size(), 2); // the dead row stays
}

void MainFormTest::OpenAsksOnce_data()
{
    QTest::addColumn<QString>("autosave");
    QTest::addColumn<QList<Answer>>("answers");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<bool>("saves");
    QTest::newRow("yes") << u"0"_s << QList{Answer::Yes} << true << true;
    QTest::newRow("no") << u"0"_s << QList{Answer::No} << true << false;
    QTest::newRow("cancel") << u"0"_s << QList{Answer::Cancel} << false << false;
    QTest::newRow("autosave") << u"1"_s << QList<Answer>{} << true << true;
}

void MainFormTest::OpenAsksOnce()
{
    QFETCH(QString, autosave);
    QFETCH(QList<Answer>, answers);
    QFETCH(bool, opens);
    Program program;
    program.Ini.SetIni(u"Settings"_s, u"autosave"_s, autosave);
    program.Open(u"a.htm"_s);
    program.Type(u"New "_s);
    for (const Answer answer : answers)
        program.Boxes.Expect(answer, u"Save changes to %1?"_s.arg(program.Path(u"a.htm"_s)));
    if (opens)
        program.Dialogs.ExpectOpen(program.Path(u"b.htm"_s));
    program.Menu(u"fileopen"_s);
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(opens ? u"b.htm"_s : u"a.htm"_s));
    QTEST(program.Read(u"a.htm"_s).contains(u"New old"_s), "saves");
    QCOMPARE(program.Page().HasUnsavedChanges(), !opens);
    QCOMPARE(program.Page().Surface().DocumentHTML().contains(u"New old"_s), !opens);
}

void MainFormTest::NewWindowIsASecondProcess()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Dialogs.ExpectOpen(program.Path(u"b.htm"_s));
    program.Menu(u"newwin"_s);
    QCOMPARE(program.Dialogs.Requests.value(0).Title, u"Open HTML Page in New Editor Window"_s);
    QCOMPARE(program.Started, QList<QStringList>{{u"nosplash-"_s + program.Path(u"b.htm"_s)}});
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(u"a.htm"_s));
    QVERIFY(!program.Page().App().NewWindowMode);
}

void MainFormTest::FirstPageHasNoName()
{
    Program program;
    program.Start(u"nosplash-"_s);
    QCOMPARE(program.Page().Page().CurrentFilePath, QString());
    QCOMPARE(program.Panel(2), QString());
    QVERIFY(program.Page().App().RecentList.isEmpty());

    const QString blank = program.Read(u"data/_blank.htm"_s);
    program.Type(u"Fresh"_s);
    program.Dialogs.ExpectSave(program.Path(u"fresh"_s));
    QTest::keyClick(program.Input(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(program.Read(u"fresh.htm"_s).contains(u"Fresh"_s));
    QCOMPARE(program.Page().Page().CurrentFilePath, program.Path(u"fresh.htm"_s));
    QCOMPARE(program.Read(u"data/_blank.htm"_s), blank);
}

void MainFormTest::LongPathIsWholeInTheTooltip()
{
    Program program;
    const QString name = u"<i>"_s + QString(150, u'x') + u".htm"_s;
    program.Write(name, PageText);
    program.Open(name);
    program.Window->resize(500, 400);
    const QLabel *panel = program.Find<QLabel>(u"StatusBar1Panel2"_s);
    QVERIFY(panel->width() <= 250);
    QCOMPARE(panel->text(), program.Path(name));
    QCOMPARE(panel->toolTip(), program.Path(name).toHtmlEscaped());
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    MainFormTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MainFormTest.moc"
