#include "support/EditorRig.h"

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

private:
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

QTEST_MAIN(ViewSwitcherTest)
#include "ViewSwitcherTest.moc"
