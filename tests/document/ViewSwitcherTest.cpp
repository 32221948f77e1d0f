#include "support/EditorRig.h"
#include "support/RunInPage.h"

#include <QEventLoop>
#include <QWebEngineScript>
#include <QWebEngineView>

#include <csignal>

using namespace Qt::StringLiterals;

/// From the design view to the source view and back.
class ViewSwitcherTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void sourceReachesTheFile();
    void aNewDeclarationMakesANewEncoding();
    void lookAtTheSourceCostsNothing();
    void sourceEditReachesTheDesignView();
    void titleIsReplacedInBothViews();
    void colourIsChosen();
    void rendererThatDiesOverTheSourceTextLosesNothing();
    void rendererThatDiesOnTheWayToTheSourceLosesNothing();
    void lostContentNeverReplacesTheSource();
    void ownMarkerWordIsLost();
    void objectLeadsToItsTagAndBack();
    void selectionOverBlocksGoesToItsStart();
    void selectionForDialogsIsWhole();
    void caretIsCountedInCharacters();
    void scrollIsKept();
    void editIsOneStepForUndo();

private:
    QVariant Run(const QString &script);
    std::unique_ptr<EditorRig> m_rig;
};

void ViewSwitcherTest::initTestCase()
{
    EditorRig::StartEngine();
}

void ViewSwitcherTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_rig = std::make_unique<EditorRig>();
}

void ViewSwitcherTest::cleanup()
{
    m_rig.reset();
}

void ViewSwitcherTest::sourceReachesTheFile()
{
    const QString path = m_rig->LoadSmallPage();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Source.Text(), QString::fromLatin1(EditorRig::SmallPage));
    const qsizetype at = m_rig->Source.Text().indexOf("words"_L1) + 1;
    m_rig->Source.Select(at, 0);
    m_rig->TypeInSource(u"<B CLASS=x>bold</B> "_s);
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), QByteArray(EditorRig::SmallPage).replace("words", "<b class=\"x\">bold</b> words"));
    QCOMPARE(m_rig->Source.Text().toLatin1(), m_rig->Bytes(path));
    QCOMPARE(m_rig->Source.CaretPosition(), at + 20);
    QCOMPARE(m_rig->Page.ActiveTab, ViewTab::HtmlSource);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
}

void ViewSwitcherTest::aNewDeclarationMakesANewEncoding()
{
    const QString path =
        m_rig->Put(u"a.htm"_s, "<html><head><meta charset=\"windows-1252\"></head>\n<body>caf\xE9</body></html>\n");
    QVERIFY(m_rig->Load(path));
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->Source.Select(m_rig->Source.Text().indexOf("windows-1252"_L1) + 1, 12);
    m_rig->TypeInSource(u"utf-8"_s);
    m_rig->Edit->FileSave_Click();
    const QByteArray saved = "<html><head><meta charset=\"utf-8\"></head>\n<body>caf\xC3\xA9</body></html>\n";
    QCOMPARE(m_rig->Bytes(path), saved);
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), saved);
}

void ViewSwitcherTest::lookAtTheSourceCostsNothing()
{
    m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    const QString before = m_rig->Surface.DocumentHTML();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QVERIFY(m_rig->Source.Text().contains("new words"_L1));
    QVERIFY(!m_rig->Source.Text().contains("border-collapse"_L1));
    QVERIFY(m_rig->Page.SourceChanged);
    QVERIFY(m_rig->Page.HtmlDirty);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(!m_rig->Page.SourceChanged);
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_ENABLED);
}

void ViewSwitcherTest::sourceEditReachesTheDesignView()
{
    m_rig->LoadSmallPage();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->Source.Select(m_rig->Source.Text().indexOf("words"_L1) + 1, 0);
    m_rig->TypeInSource(u"typed "_s);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("typed words"_L1));
    QCOMPARE(m_rig->Surface.DocumentHTML().count("border-collapse: collapse"_L1), 1);
    QVERIFY(m_rig->Page.HtmlDirty);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Source.Text().toLatin1(), QByteArray(EditorRig::SmallPage).replace("words", "typed words"));
}

void ViewSwitcherTest::titleIsReplacedInBothViews()
{
    m_rig->LoadSmallPage();
    m_rig->Edit->SetHTMLTitle(u"Second"_s);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QCOMPARE(m_rig->Surface.DocumentTitle(), u"Second"_s);
    QVERIFY(m_rig->Source.Text().contains("Second"_L1));
    QVERIFY(!m_rig->Source.Text().contains("border-collapse"_L1));
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
}

void ViewSwitcherTest::colourIsChosen()
{
    m_rig->Dialogs.ExpectColor(QColor(0x12, 0x34, 0x56));
    QVERIFY(m_rig->Edit->ChooseAColor(0x030201));
    QCOMPARE(m_rig->Edit->ChosenColor, 0x563412u);
    QCOMPARE(m_rig->Dialogs.StartColors.last(), QColor(1, 2, 3));
    m_rig->Dialogs.ExpectColor(std::nullopt);
    QVERIFY(!m_rig->Edit->ChooseAColor(0));
    QCOMPARE(m_rig->Edit->ChosenColor, 0x563412u);
}

void ViewSwitcherTest::rendererThatDiesOverTheSourceTextLosesNothing()
{
    const QString path = m_rig->LoadSmallPage();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->Source.Select(m_rig->Source.Text().indexOf("words"_L1) + 1, 0);
    m_rig->TypeInSource(u"typed "_s);
    ::kill(static_cast<pid_t>(m_rig->Surface.RendererProcessId()), SIGKILL);
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), QByteArray(EditorRig::SmallPage).replace("words", "typed words"));
}

QVariant ViewSwitcherTest::Run(const QString &script)
{
    return RunInPage(m_rig->Surface, script);
}

void ViewSwitcherTest::rendererThatDiesOnTheWayToTheSourceLosesNothing()
{
    m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"kept "_s);
    QTRY_VERIFY(m_rig->Surface.LastSnapshot().contains("kept words"_L1));
    ::kill(static_cast<pid_t>(m_rig->Surface.RendererProcessId()), SIGKILL);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Page.ActiveTab, ViewTab::HtmlSource);
    QVERIFY(m_rig->Source.Text().contains("kept words"_L1));
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QVERIFY(m_rig->Surface.DocumentHTML().contains("kept words"_L1));
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
}

void ViewSwitcherTest::lostContentNeverReplacesTheSource()
{
    m_rig->LoadSmallPage();
    m_rig->Surface.SetDocumentHTML(u"<frameset><frame></frameset>"_s);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Page.ActiveTab, ViewTab::HtmlSource);
    QCOMPARE(m_rig->Source.Text().toLatin1(), EditorRig::SmallPage);
}

void ViewSwitcherTest::ownMarkerWordIsLost()
{
    const QByteArray text = QByteArray(EditorRig::SmallPage).replace("words", "aQZKSEL28b words QZKSEL28");
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, text)));
    m_rig->Surface.SelectText(u"words"_s);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Source.Text().toLatin1(), QByteArray(text).replace("QZKSEL28", ""));
    QCOMPARE(m_rig->Source.Text().mid(m_rig->Source.SelectionStart() - 1, m_rig->Source.SelectionLength()), u"words"_s);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(!m_rig->Surface.DocumentHTML().contains("QZKSEL28"_L1));
    QVERIFY(m_rig->Page.HtmlDirty);
}

void ViewSwitcherTest::objectLeadsToItsTagAndBack()
{
    const QString tag = u"<img src=\"x.gif\" alt=\"a &gt; b\" width=\"20\" height=\"20\">"_s;
    const QString page =
        u"<html><head><title>t</title></head><body>\n<p>a</p>\n<p>b"_s + tag + u"c</p></body></html>\n"_s;
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, page.toUtf8())));
    // An object is selected by the text around it as much as by a click.
    QVERIFY(m_rig->Surface.SelectInText(page, {page.indexOf(tag) + 1, tag.size()}));
    QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    for (int visit = 0; visit < 2; ++visit) {
        m_rig->Edit->SelectTab(ViewTab::HtmlSource);
        QCOMPARE(m_rig->Source.Text().mid(m_rig->Source.SelectionStart() - 1, m_rig->Source.SelectionLength()), tag);
        QVERIFY(m_rig->Selection.SelectionIsControl);
        if (visit == 1) { // an edit in front of it
            const qsizetype start = m_rig->Source.SelectionStart();
            m_rig->Source.Select(m_rig->Source.Text().indexOf("</title>"_L1) + 1, 0);
            m_rig->TypeInSource(u"T"_s);
            m_rig->Source.Select(start + 1, tag.size());
        }
        m_rig->Edit->SelectTab(ViewTab::Normal);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    }
    QCOMPARE(m_rig->Surface.DocumentTitle(), u"tT"_s);
    m_rig->Edit->GetSelection();
    QVERIFY(m_rig->Selection.SelectedHtml.startsWith("<IMG src=x.gif"_L1));
}

void ViewSwitcherTest::selectionOverBlocksGoesToItsStart()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, "<html><head></head><body><p>one</p><p>two</p></body></html>\n")));
    Run(u"(() => { const [a, b] = document.querySelectorAll('p');"
        "getSelection().setBaseAndExtent(a.firstChild, 1, b.firstChild, 2); })()"_s);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Source.SelectionLength(), 0);
    QCOMPARE(m_rig->Source.SelectionStart(), m_rig->Source.Text().indexOf("ne</p>"_L1) + 1);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QCOMPARE(Run(u"getSelection().toString().replace(/\\s+/g, ' ')"_s).toString(), u"ne tw"_s);
}

void ViewSwitcherTest::selectionForDialogsIsWhole()
{
    QVERIFY(
        m_rig->Load(m_rig->Put(u"a.htm"_s, "<html><head></head><body><p>o<b>n</b>e</p><p>two</p></body></html>\n")));
    Run(u"(() => { const [a, b] = document.querySelectorAll('p');"
        "getSelection().setBaseAndExtent(a.firstChild, 1, b.firstChild, 2); })()"_s);
    const QString before = m_rig->Surface.DocumentHTML();
    m_rig->Edit->GetSelection();
    const SurfaceState &state = m_rig->Selection;
    QCOMPARE(state.SelectedHtml, u"<B>n</B>e</P><P>tw"_s);
    QCOMPARE(state.PendingHtml, before);
    QCOMPARE(state.PendingHtml.mid(state.SelectionOffset - 1, state.SelectionLength), state.SelectedHtml);
    QVERIFY(!state.SelectionIsControl);
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void ViewSwitcherTest::caretIsCountedInCharacters()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, "<html><head></head><body><p>one</p><p>two</p></body></html>\n")));
    Run(u"getSelection().collapse(document.querySelectorAll('p')[1].firstChild, 1)"_s);
    m_rig->Edit->SaveSelection();
    QCOMPARE(m_rig->Selection.SavedCaretChars, 5);
    m_rig->Surface.CaretToPageStart();
    m_rig->Edit->RestoreSelection();
    m_rig->Surface.InputWidget()->setFocus();
    m_rig->Type(u"X"_s);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("<P>tXwo</P>"_L1));
}

void ViewSwitcherTest::scrollIsKept()
{
    QByteArray body;
    for (int i = 0; i < 300; ++i)
        body += "<p>line " + QByteArray::number(i) + "</p>\n";
    QVERIFY(
        m_rig->Load(m_rig->Put(u"a.htm"_s, "<html><head><title>t</title></head><body>\n" + body + "</body></html>\n")));
    m_rig->Surface.SelectText(u"line 200"_s);
    Run(u"window.scrollBy(0, 37)"_s);
    const int top = Run(u"window.scrollY"_s).toInt();
    QVERIFY(top > 1000);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QVERIFY(m_rig->Source.FirstLine() > 100);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QCOMPARE(Run(u"window.scrollY"_s).toInt(), top);
    QCOMPARE(Run(u"getSelection().toString()"_s).toString(), u"line 200"_s);
    // With an edit elsewhere the page is a new one, and still shows what it showed.
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    const qsizetype start = m_rig->Source.SelectionStart();
    m_rig->Source.Select(m_rig->Source.Text().indexOf("</title>"_L1) + 1, 0);
    m_rig->TypeInSource(u"T"_s);
    m_rig->Source.Select(start + 1, 8);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QTRY_COMPARE(Run(u"getSelection().toString()"_s).toString(), u"line 200"_s);
    QCOMPARE(Run(u"window.scrollY"_s).toInt(), top);
}

void ViewSwitcherTest::editIsOneStepForUndo()
{
    m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    const QString designed = m_rig->Surface.DocumentHTML();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->TypeInSource(u"typed "_s);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("typed words"_L1));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(m_rig->Surface.DocumentHTML(), designed);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QVERIFY(!m_rig->Surface.IsDirty());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
    QTRY_VERIFY(!m_rig->Edit->HasUnsavedChanges());
    m_rig->Surface.ExecCommand(DECMD_REDO);
    m_rig->Surface.ExecCommand(DECMD_REDO);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("typed words"_L1));
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
}

QTEST_MAIN(ViewSwitcherTest)
#include "ViewSwitcherTest.moc"
