#include "platform/PreviewView.h"
#include "support/Program.h"

#include <QEventLoop>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QWebEngineView>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The five views in the real window.
class ViewTabsTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void everyTabShowsItsView();
    void propertiesAreTypedAndSaved();
    void previewShowsUnsavedWords();
    void previewOfACleanPageIsTheFile_data();
    void previewOfACleanPageIsTheFile();
    void previewWithoutAFolderToWriteTo();
    void unnamedPage();
    void hungPreviewIsLeft();
    void bordersKeepTheHistory();

private:
    QVariant InPreview(const Program &program, const QString &script);
    QString Shown(const Program &program);
};

void ViewTabsTest::initTestCase()
{
    StartEngine();
}

void ViewTabsTest::init()
{
    UsePrivateState();
}

QVariant ViewTabsTest::InPreview(const Program &program, const QString &script)
{
    auto *view = program.Find<PreviewView>(u"WebBrowser1"_s)->findChild<QWebEngineView *>();
    if (!view)
        return {};
    QVariant answer;
    QEventLoop loop;
    QTimer::singleShot(3000, &loop, &QEventLoop::quit);
    view->page()->runJavaScript(script, [&](const QVariant &value) {
        answer = value;
        loop.quit();
    });
    loop.exec();
    return answer;
}

QString ViewTabsTest::Shown(const Program &program)
{
    return InPreview(program, u"document.body ? document.body.innerText : ''"_s).toString();
}

void ViewTabsTest::everyTabShowsItsView()
{
    Program program;
    program.Open(u"a.htm"_s);
    const auto *tabs = program.Find<QTabBar>(u"TabStrip2"_s);
    const QStringList titles = {u"Normal"_s, u"Page Properties"_s, u"HTML Source"_s, u"Preview"_s, u"Publish (FTP)"_s};
    const QStringList views = {u"DHTMLEdit1"_s, u"PictureProperties"_s, u"Source1"_s, u"WebBrowser1"_s,
                               u"PictureFTP"_s};
    for (const int view : {2, 1, 4, 3, 0}) {
        QTest::mouseClick(program.Find<QTabBar>(u"TabStrip2"_s), Qt::LeftButton, {}, tabs->tabRect(view).center());
        QCOMPARE(tabs->tabText(tabs->currentIndex()), titles[view]);
        QCOMPARE(int(program.Page().Page().ActiveTab), view + 1);
        for (int other = 0; other < 5; ++other)
            QCOMPARE(program.Find<QWidget>(views[other])->isVisible(), other == view);
        QCOMPARE(program.Drop(u"editselectall"_s)->isEnabled(), view == 0 || view == 2);
        QCOMPARE(program.Drop(u"formatbold"_s)->isEnabled(), view == 0);
        QCOMPARE(program.Drop(u"ViewSub0"_s)->isEnabled(), view == 0);
        QVERIFY(program.Drop(u"filesave"_s)->isEnabled());
    }
    QVERIFY(!program.Page().HasUnsavedChanges());
}

void ViewTabsTest::propertiesAreTypedAndSaved()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Menu(u"viewproperties"_s);
    auto *title = program.Find<QLineEdit>(u"EditTitle"_s);
    QCOMPARE(title->text(), program.Page().Page().EditTitle);
    QVERIFY(!program.Page().Page().PropertiesDirty);
    QVERIFY(title->hasFocus());
    title->selectAll();
    QTest::keyClicks(title, u"New title"_s);
    QTest::keyClick(title, Qt::Key_Tab);
    QTest::keyClicks(program.Window->focusWidget(), u"site.css"_s);
    QTest::keyClicks(program.Find<QPlainTextEdit>(u"TextMetaDesc"_s), u"All dates"_s);
    QVERIFY(program.Page().Page().PropertiesDirty);
    QTest::keyClick(program.Window->focusWidget(), Qt::Key_S, Qt::ControlModifier);
    const QString saved = program.Read(u"a.htm"_s);
    QVERIFY(saved.contains(u"<title>New title</title>"_s));
    QVERIFY(saved.contains(u"<link rel=\"stylesheet\" href=\"site.css\">"_s));
    QVERIFY(saved.contains(u"<meta name=\"description\" content=\"All dates\">"_s));
    QCOMPARE(program.Panel(1), u"New title"_s);
    QVERIFY(!program.Page().HasUnsavedChanges());
}

void ViewTabsTest::previewShowsUnsavedWords()
{
    Program program;
    program.Write(u"x.css"_s, u"p { color: rgb(1, 2, 3) }"_s);
    program.Write(
        u"c.htm"_s,
        u"<html><head><link rel=\"stylesheet\" href=\"x.css\"></head><body><p>old</p>"
        "<script>document.body.append('written by a script');"
        "fetch('x.css').then((r) => r.text()).then((t) => document.body.append('read ' + t));"
        "const x = new XMLHttpRequest(); x.open('GET', 'x.css'); x.onload = () => document.body.append('read');"
        "x.onerror = () => document.body.append('refused'); x.send();</script></body></html>"_s);
    program.Open(u"c.htm"_s);
    program.Type(u"unsaved "_s);
    QTest::keyClick(program.Input(), Qt::Key_F12);
    QCOMPARE(program.Page().Page().ActiveTab, ViewTab::Preview);
    QTRY_VERIFY(Shown(program).contains(u"unsaved old"_s));
    QVERIFY(Shown(program).contains(u"written by a script"_s));
    QCOMPARE(InPreview(program, u"getComputedStyle(document.querySelector('p')).color"_s).toString(),
             u"rgb(1, 2, 3)"_s);
    QTRY_VERIFY(Shown(program).contains(u"refused"_s)); // scripts read no files
    QVERIFY(!Shown(program).contains(u"read"_s));
    QVERIFY(QFile::exists(program.Path(u"_inklm_temp.htm"_s)));
    QVERIFY(!program.Read(u"c.htm"_s).contains(u"unsaved"_s));
    QVERIFY(program.Page().Page().HtmlDirty);
    QVERIFY(!program.Page().Surface().DocumentHTML().contains(u"written by a script</BODY>"_s));
    QTest::keyClick(program.Window.get(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(program.Read(u"c.htm"_s).contains(u"unsaved old"_s));
    program.Window->close();
    QVERIFY(!QFile::exists(program.Path(u"_inklm_temp.htm"_s)));
}

void ViewTabsTest::previewOfACleanPageIsTheFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("page") << u"a.htm"_s;
    QTest::newRow("a type that browsers would save") << u"d.php"_s;
}

void ViewTabsTest::previewOfACleanPageIsTheFile()
{
    QFETCH(QString, name);
    Program program;
    program.Write(u"d.php"_s, u"<html><body><p>old words</p></body></html>"_s);
    program.Open(name);
    program.Menu(u"viewpreview"_s);
    QTRY_VERIFY(Shown(program).contains(u"old words"_s));
    QVERIFY(!QFile::exists(program.Path(u"_inklm_temp.htm"_s)));
    QVERIFY(!program.Page().HasUnsavedChanges());
    program.Menu(u"viewnormal"_s);
    QCOMPARE(program.Find<PreviewView>(u"WebBrowser1"_s)->Url(), QUrl());
}

/// What lies in the place of the copy is no file that may be written over.
void ViewTabsTest::previewWithoutAFolderToWriteTo()
{
    Program program;
    program.Write(u"pic.svg"_s, u"<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"7\" height=\"7\"/>"_s);
    program.Write(u"c.htm"_s, u"<html><head></head><body><p>old</p><img src=\"pic.svg\"></body></html>"_s);
    program.Write(u"precious.txt"_s, u"precious"_s);
    QVERIFY(QFile::link(program.Path(u"precious.txt"_s), program.Path(u"_inklm_temp.htm"_s)));
    program.Open(u"c.htm"_s);
    program.Type(u"unsaved "_s);
    program.Menu(u"viewpreview"_s);
    QTRY_VERIFY(Shown(program).contains(u"unsaved old"_s));
    QTRY_COMPARE(InPreview(program, u"document.images[0].naturalWidth"_s).toInt(), 7);
    QCOMPARE(program.Read(u"precious.txt"_s), u"precious"_s);
    program.Boxes.Expect(Answer::No);
    program.Window->close();
    QCOMPARE(program.Read(u"precious.txt"_s), u"precious"_s);
}

void ViewTabsTest::unnamedPage()
{
    Program program;
    program.Start(u"nosplash-"_s);
    program.Menu(u"viewpreview"_s);
    QCOMPARE(program.Find<PreviewView>(u"WebBrowser1"_s)->Url(), QUrl());
    program.Menu(u"viewnormal"_s);
    program.Type(u"first words"_s);
    program.Menu(u"viewpreview"_s);
    QTRY_VERIFY(Shown(program).contains(u"first words"_s));
    const QString copy = program.Page().Page().PreviewTempFile;
    QVERIFY(QFile::exists(copy));
    program.Boxes.Expect(Answer::No);
    program.Window->close();
    QVERIFY(!QFile::exists(copy));
}

void ViewTabsTest::hungPreviewIsLeft()
{
    Program program;
    program.Write(u"h.htm"_s, u"<html><body><p>hangs</p><script>while (true);</script></body></html>"_s);
    program.Open(u"h.htm"_s);
    program.Menu(u"viewpreview"_s);
    program.Menu(u"viewnormal"_s);
    program.Type(u"alive "_s);
    QVERIFY(program.Page().Surface().DocumentHTML().contains(u"alive"_s));
    program.Page().Surface().MarkClean();
    program.Page().Page().HtmlDirty = false;
    program.Page().Page().FileToLoad = program.Path(u"a.htm"_s);
    QVERIFY(program.Page().LoadFile());
    program.Menu(u"viewpreview"_s);
    QTRY_VERIFY(Shown(program).contains(u"old words"_s));
}

void ViewTabsTest::bordersKeepTheHistory()
{
    Program program;
    program.Open(u"a.htm"_s);
    program.Type(u"typed "_s);
    DesignSurface &surface = program.Page().Surface();
    const auto guides = [&] { return surface.DocumentHTML().count(u"border-collapse: collapse"_s); };
    QCOMPARE(guides(), 1);
    QVERIFY(program.Drop(u"ViewSub0"_s)->isChecked());
    program.Menu(u"ViewSub0"_s);
    QCOMPARE(guides(), 0);
    QVERIFY(!program.Drop(u"ViewSub0"_s)->isChecked());
    surface.ExecCommand(DECMD_UNDO);
    QVERIFY(!surface.IsDirty());
    QVERIFY(!surface.DocumentHTML().contains(u"typed"_s));
    surface.ExecCommand(DECMD_REDO);
    QVERIFY(surface.DocumentHTML().contains(u"typed"_s));
    program.Menu(u"ViewSub0"_s);
    QCOMPARE(guides(), 1);
    // A page that an undo brings back follows too.
    surface.SetDocumentHTML(surface.DocumentHTML());
    QVERIFY(surface.WaitWhileBusy());
    program.Menu(u"ViewSub0"_s);
    surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(guides(), 0);
    program.Menu(u"ViewSub1"_s);
    QVERIFY(surface.ShowDetails());
    QVERIFY(program.Drop(u"ViewSub1"_s)->isChecked());
    program.Menu(u"filesave"_s);
    QVERIFY(!program.Read(u"a.htm"_s).contains(u"border-collapse"_s));
}

QTEST_MAIN(ViewTabsTest)
#include "ViewTabsTest.moc"
