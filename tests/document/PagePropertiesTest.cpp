#include "document/PageProperties.h"
#include "document/NavLinkStyles.h"
#include "support/EditorRig.h"

using namespace Qt::StringLiterals;

namespace {

QString Head(const QString &inside)
{
    return u"<html><HEAD>%1</head><body>x</body></html>"_s.arg(inside);
}

} // namespace

/// Title, style sheet, keywords and description as text in the page, and through the real surface.
class PagePropertiesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void reads_data();
    void reads();
    void writes_data();
    void writes();
    void whatPeopleTypeComesBack_data();
    void whatPeopleTypeComesBack();
    void navLinkStyles_data();
    void navLinkStyles();
    void savingIsOneStep();
    void absentTagsKeepTheFields();
    void everySaveTakesThemAlong();
};

void PagePropertiesTest::initTestCase()
{
    EditorRig::StartEngine();
}

void PagePropertiesTest::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found"); // title|style|keywords|description, "-" for none
    QTest::newRow("all") << Head(
                                u"<TITLE>t</TITLE><LINK REL=StyleSheet HREF=a.css><META NAME=Keywords CONTENT=\"k, l\">"
                                "<meta content=\"d e\" name=\"description\">"_s)
                         << u"t|a.css|k, l|d e"_s;
    QTest::newRow("nothing") << Head({}) << u"||-|-"_s;
    QTest::newRow("title without an end") << Head(u"<title>t"_s) << u"||-|-"_s;
    QTest::newRow("the last tag counts") << Head(
                                                u"<meta name=description content=a><meta name=description content=b>"_s)
                                         << u"||-|b"_s;
    QTest::newRow("other links are passed over")
        << Head(u"<link rel=alternate href=a.xml><LINK HREF=b.css REL=STYLESHEET><link rel=stylesheet href=c.css>"_s)
        << u"|b.css|-|-"_s;
    QTest::newRow("server code with > in a value")
        << Head(u"<meta name=\"keywords\" content=\"<?= $a->k ?>, b\">"_s) << u"||<?= $a->k ?>, b|-"_s;
}

void PagePropertiesTest::reads()
{
    QFETCH(QString, text);
    const PageProperties::Found found = PageProperties::Read(text);
    QTEST((QStringList{found.Title, found.Style, found.Keywords.value_or(u"-"_s), found.Description.value_or(u"-"_s)}
               .join(u'|')),
          "found");
}

void PagePropertiesTest::writes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fields"); // title|style|keywords|description
    QTest::addColumn<QString>("after");
    QTest::newRow("new tags stand in front of each other")
        << Head(u"<title>t</title>"_s) << u"new|a.css|k|d"_s
        << Head(u"\r\n<link rel=\"stylesheet\" href=\"a.css\">\r\n<meta name=\"description\" content=\"d\">"
                "\r\n<meta name=\"keywords\" content=\"k\"><title>new</title>"_s);
    QTest::newRow("empty fields add nothing")
        << Head(u"<title>t</title>"_s) << u"t|||"_s << Head(u"<title>t</title>"_s);
    QTest::newRow("no head tag, only the title")
        << u"<title>t</title><p>x"_s << u"new|a.css|k|d"_s << u"<title>new</title><p>x"_s;
    QTest::newRow("no title is made") << Head({}) << u"new|||"_s << Head({});
    QTest::newRow("both descriptions")
        << Head(u"<meta name=description content=a><META NAME=DESCRIPTION CONTENT=\"b\">"_s) << u"|||d e"_s
        << Head(u"<meta name=description content=\"d e\"><META NAME=DESCRIPTION CONTENT=\"d e\">"_s);
    QTest::newRow("emptied, not removed")
        << Head(u"<link rel=stylesheet href=a.css><meta name=keywords content=\"k\">"_s) << u"|||"_s
        << Head(u"<link rel=stylesheet href=\"\"><meta name=keywords content=\"\">"_s);
    QTest::newRow("first style sheet only")
        << Head(u"<link rel=stylesheet href=a.css><link rel=stylesheet href=b.css>"_s) << u"|n.css||"_s
        << Head(u"<link rel=stylesheet href=n.css><link rel=stylesheet href=b.css>"_s);
    QTest::newRow("a blank in its name") << Head(u"<link rel=stylesheet href=a.css>"_s) << u"|my style.css||"_s
                                         << Head(u"<link rel=stylesheet href=\"my style.css\">"_s);
    QTest::newRow("an attribute without a value is no page")
        << Head(u"<meta name=keywords content>"_s) << u"||k|"_s << Head(u"<meta name=keywords content=\"k\">"_s);
    QTest::newRow("server code around the value stays")
        << Head(u"<title><?= $t ?></title><meta class=\"<?= 1 > 0 ?>\" name=\"keywords\" content=\"a\">"_s)
        << u"<?= $t ?>||k|"_s
        << Head(u"<title><?= $t ?></title><meta class=\"<?= 1 > 0 ?>\" name=\"keywords\" content=\"k\">"_s);
}

void PagePropertiesTest::writes()
{
    QFETCH(QString, text);
    QFETCH(QString, fields);
    const QStringList f = fields.split(u'|');
    QTEST(PageProperties::Write(text, {f[0], f[1], f[2], f[3]}), "after");
    QCOMPARE(PageProperties::Write(PageProperties::Write(text, {f[0], f[1], f[2], f[3]}), {f[0], f[1], f[2], f[3]}),
             PageProperties::Write(text, {f[0], f[1], f[2], f[3]}));
}

void PagePropertiesTest::whatPeopleTypeComesBack_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("plain") << u"Club news"_s;
    QTest::newRow("ampersand") << u"Tea & Cake"_s;
    QTest::newRow("brackets") << u"a < b -> c"_s;
    QTest::newRow("quotes") << u"the \"best\" 'ever'"_s;
    QTest::newRow("words that look like an entity") << u"how to write &eacute; and &amp;"_s;
    QTest::newRow("accents") << u"caf\u00E9 \u20AC"_s;
}

void PagePropertiesTest::whatPeopleTypeComesBack()
{
    QFETCH(QString, typed);
    EditorRig rig;
    const QString path = rig.LoadSmallPage();
    rig.Edit->SelectTab(ViewTab::PageProperties);
    rig.Page.EditTitle = rig.Page.TextMetaDesc = rig.Page.TextMetaKeys = typed;
    rig.Page.EditStyle = u"a.css"_s;
    rig.Page.PropertiesDirty = true;
    rig.Edit->SelectTab(ViewTab::Normal);
    QCOMPARE(rig.Surface.DocumentTitle(), typed.simplified());
    rig.Edit->FileSave_Click();
    const QByteArray once = rig.Bytes(path);
    rig.Page.EditTitle = rig.Page.TextMetaDesc = rig.Page.TextMetaKeys = rig.Page.EditStyle = QString();
    QVERIFY(rig.Load(path));
    rig.Edit->SelectTab(ViewTab::PageProperties);
    QCOMPARE(rig.Page.EditTitle, typed);
    QCOMPARE(rig.Page.TextMetaDesc, typed);
    QCOMPARE(rig.Page.TextMetaKeys, typed);
    QCOMPARE(rig.Page.StyleSheetPath, rig.Path(u"a.css"_s));
    rig.Page.PropertiesDirty = true;
    rig.Edit->FileSave_Click();
    QCOMPARE(rig.Bytes(path), once);
    QVERIFY(once.startsWith("<html><head>\n<link rel=\"stylesheet\" href=\"a.css\">\n<meta name=\"description\""));
}

void PagePropertiesTest::navLinkStyles_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<bool>("added");
    QTest::newRow("behind the title") << Head(u"<Title>t</Title>"_s) << true;
    QTest::newRow("one class is enough") << Head(u"<title>t</title><style>a.navblack:link {}</style>"_s) << false;
    QTest::newRow("no title") << Head({}) << false;
    QTest::newRow("case counts") << Head(u"<title>t</title><style>A.NAVWHITE {}</style>"_s) << true;
}

void PagePropertiesTest::navLinkStyles()
{
    QFETCH(QString, html);
    QFETCH(bool, added);
    const QString after = NavLinkStyles::AddedTo(html);
    if (!added) {
        QCOMPARE(after, html);
        return;
    }
    QVERIFY(after.contains(
        "itle>\r\n<style>\r\na.navwhite:link { text-decoration: none; color: #ffffff; font-family: Verdana, Arial, "
        "sans-serif; font-size: 10px; font-weight: bold; }\r\na.navwhite:visited { text-decoration: none;"_L1));
    QVERIFY(
        after.contains("a.navblack:hover { text-decoration: underline; color: #000000; font-family: Verdana, Arial, "
                       "sans-serif; font-size: 10px; font-weight: bold; }\r\n</style>\r\n"_L1));
    QCOMPARE(NavLinkStyles::AddedTo(after), after);
    EditorRig rig;
    QVERIFY(rig.Load(rig.Put(u"a.htm"_s, html.toLatin1())));
    rig.Edit->AddNavLinkStyles();
    QVERIFY(rig.Surface.WaitWhileBusy());
    QCOMPARE(rig.Surface.DocumentHTML().count("a.navwhite:"_L1), 3);
    QVERIFY(rig.Page.HtmlDirty);
    rig.Surface.ExecCommand(DECMD_UNDO);
    QVERIFY(!rig.Surface.DocumentHTML().contains("a.navwhite:"_L1));
}

void PagePropertiesTest::savingIsOneStep()
{
    EditorRig rig;
    rig.LoadSmallPage();
    const QString before = rig.Surface.DocumentHTML();
    rig.Edit->SelectTab(ViewTab::PageProperties);
    QCOMPARE(rig.Page.EditTitle, u"First"_s);
    rig.Page.EditTitle = u"Second"_s;
    rig.Page.EditStyle = u"a.css"_s;
    rig.Page.TextMetaKeys = u"k"_s;
    rig.Page.TextMetaDesc = u"d"_s;
    rig.Page.PropertiesDirty = true;
    rig.Edit->SelectTab(ViewTab::HtmlSource);
    QVERIFY(!rig.Page.PropertiesDirty);
    QVERIFY(rig.Page.HtmlDirty);
    QCOMPARE(rig.Edit->StatusText(), u"Second"_s);
    QCOMPARE(rig.Source.Text(),
             u"<html><head>\n<link rel=\"stylesheet\" href=\"a.css\">\n<meta name=\"description\" content=\"d\">\n"
             "<meta name=\"keywords\" content=\"k\">\n<title>Second</title>\n</head>\n<body>\n<p>words</p>\n</body>\n"
             "</html>\n"_s);
    rig.Edit->SelectTab(ViewTab::Normal);
    rig.Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(rig.Surface.DocumentHTML(), before);
    QCOMPARE(rig.Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
    // The view reads what the page says now, not what it said when the source was last shown.
    rig.Edit->SelectTab(ViewTab::PageProperties);
    QCOMPARE(rig.Page.EditTitle, u"First"_s);
}

void PagePropertiesTest::absentTagsKeepTheFields()
{
    EditorRig rig;
    QVERIFY(rig.Load(
        rig.Put(u"a.htm"_s, Head(u"<meta name=keywords content=k><link rel=stylesheet href=a.css>"_s).toLatin1())));
    rig.Edit->SelectTab(ViewTab::PageProperties);
    rig.LoadSmallPage();
    QCOMPARE(rig.Page.TextMetaKeys, u"k"_s);
    QCOMPARE(rig.Page.EditStyle, QString());
    QCOMPARE(rig.Page.EditTitle, u"First"_s);
}

void PagePropertiesTest::everySaveTakesThemAlong()
{
    EditorRig rig;
    const QString path = rig.LoadSmallPage();
    rig.Edit->SelectTab(ViewTab::PageProperties);
    rig.Page.EditTitle = u"Saved"_s;
    rig.Page.PropertiesDirty = true;
    rig.Edit->FileSave_Click();
    QCOMPARE(rig.Bytes(path), QByteArray(EditorRig::SmallPage).replace("First", "Saved"));
    QVERIFY(!rig.Edit->HasUnsavedChanges());
    rig.Page.EditTitle = u"Left"_s;
    rig.Page.PropertiesDirty = true;
    rig.Boxes.Expect(MessageBoxes::Answer::Yes);
    QVERIFY(rig.Load(rig.Put(u"b.htm"_s, EditorRig::SmallPage)));
    QCOMPARE(rig.Bytes(path), QByteArray(EditorRig::SmallPage).replace("First", "Left"));
}

QTEST_MAIN(PagePropertiesTest)
#include "PagePropertiesTest.moc"
