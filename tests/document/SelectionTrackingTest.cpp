#include "support/EditorRig.h"
#include "support/RunInPage.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEngineScript>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

/// Finds the marks | [ ] of a text in the document parsed from it, and puts the live selection to the same places.
const char PlaceSelection[] = R"js(((text) => {
  const parsed = new DOMParser().parseFromString(text, "text/html");
  const walker = parsed.createTreeWalker(parsed.body, NodeFilter.SHOW_TEXT);
  const found = {};
  for (let node = walker.nextNode(); node; node = walker.nextNode())
    for (let at; (at = node.data.search(/[[\]|]/)) >= 0;) {
      found[node.data[at]] = [node, at];
      node.deleteData(at, 1);
    }
  const live = ([node, at]) => {
    const kept = (n) => [...n.parentNode.childNodes].filter((c) => c === n || c.nodeType !== 3 || c.length).indexOf(n);
    const path = [];
    if (!node.length) { at = kept(node); node = node.parentNode; }
    for (let n = node; n !== parsed.documentElement; n = n.parentNode) path.unshift(kept(n));
    let target = document.documentElement;
    for (const i of path) target = target.childNodes[i];
    return [target, at];
  };
  const start = live(found["|"] || found["["]);
  getSelection().setBaseAndExtent(...start, ...(found["]"] ? live(found["]"]) : start));
}))js";

QString Plain(QString marked)
{
    return marked.remove(u'|').remove(u'[').remove(u']');
}

QString PageOf(const QString &body, const QString &title = u"t"_s)
{
    return u"<html><head>\n<title>%1</title>\n</head>\n"_s.arg(title) + body + u"\n</html>\n"_s;
}

} // namespace

/// The caret stands at the same character in both views, whatever the clean-up moved in front of it.
class SelectionTrackingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_rig.reset(); }

    void places_data();
    void places();
    void anEditedTextTakesTheCaretAlong_data() { places_data(); }
    void anEditedTextTakesTheCaretAlong();
    void aCaretMovedInTheSourceIsFollowed_data() { places_data(); }
    void aCaretMovedInTheSourceIsFollowed();

private:
    void Open(const QString &marked);
    QVariant Run(const QString &script);
    QString MarkedSource();
    QString SourceAfterTyping(const QString &keys);

    std::unique_ptr<EditorRig> m_rig;
};

void SelectionTrackingTest::initTestCase()
{
    EditorRig::StartEngine();
}

void SelectionTrackingTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_rig = std::make_unique<EditorRig>();
}

QVariant SelectionTrackingTest::Run(const QString &script)
{
    return RunInPage(m_rig->Surface, script);
}

void SelectionTrackingTest::Open(const QString &marked)
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, Plain(marked).toUtf8())));
    m_rig->Surface.InputWidget()->setFocus();
    const QString argument = QString::fromUtf8(QJsonDocument(QJsonArray{marked}).toJson(QJsonDocument::Compact));
    Run(QString::fromUtf8(PlaceSelection) + u"(..."_s + argument + u")"_s);
}

/// The source view's text with its selection written into it.
QString SelectionTrackingTest::MarkedSource()
{
    const SourceEditor &source = m_rig->Source;
    QString text = source.Text();
    const qsizetype start = source.SelectionStart() - 1;
    const qsizetype length = source.SelectionLength();
    if (length == 0)
        return text.insert(start, u'|');
    return text.insert(start + length, u']').insert(start, u'[');
}

/// What real keys in the design view do to the source.
QString SelectionTrackingTest::SourceAfterTyping(const QString &keys)
{
    m_rig->Surface.InputWidget()->setFocus();
    m_rig->Type(keys);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    return m_rig->Source.Text();
}

void SelectionTrackingTest::places_data()
{
    QTest::addColumn<QString>("design");
    QTest::addColumn<QString>("source"); // "": the same
    const auto row = [](const char *name, const char *design, const char *source = "") {
        QTest::newRow(name) << QString::fromUtf8(design) << QString::fromUtf8(source);
    };
    row("plain text", "<body>\n<p>one t|wo</p>\n</body>");
    row("start of a paragraph", "<body>\n<p>one</p>\n<p>|two</p>\n</body>");
    row("end of a paragraph", "<body>\n<p>one|</p>\n<p>two</p>\n</body>");
    row("first character of the page", "<body><p>|one</p></body>");
    row("last character of the page", "<body><p>one</p><p>two|</p></body>");
    row("text right in the body", "<body>a|b</body>");
    row("end of text right in the body", "<body>ab|</body>");
    row("no closing tags at all", "<body><p>one<p>tw|o", "<body><p>one</p><p>tw|o\n</p></body>");
    row("quotes added before", "<BODY BGCOLOR=#ffffff TEXT=black>\n<P ALIGN=center CLASS=x>one t|wo</P>\n</BODY>",
        "<body bgcolor=\"#ffffff\" text=\"black\">\n<p align=\"center\" class=\"x\">one t|wo</p>\n</body>");
    row("many attributes before",
        "<body>\n<p><IMG SRC=a.gif WIDTH=1 HEIGHT=2 BORDER=0 ALT=x> <A HREF=b.htm TARGET=_top>li|nk</A></p>\n</body>",
        "<body>\n<p><img src=\"a.gif\" width=\"1\" height=\"2\" border=\"0\" alt=\"x\"> "
        "<a href=\"b.htm\" target=\"_top\">li|nk</a></p>\n</body>");
    row("attribute without a value before", "<body>\n<p><input type=\"checkbox\" checked> o|ne</p>\n</body>");
    row("values with > before", "<body>\n<p title=\"a > b\">o|ne</p>\n</body>",
        "<body>\n<p title=\"a &gt; b\">o|ne</p>\n</body>");
    row("behind entities", "<body>\n<p>&lt;a&gt; &amp; b|c</p>\n</body>");
    row("right in front of an entity", "<body>\n<p>a|&amp;b</p>\n</body>");
    row("right behind an entity", "<body>\n<p>a&amp;|b</p>\n</body>");
    row("behind a letter written as entity", "<body>\n<p>caf&eacute; o|n</p>\n</body>",
        "<body>\n<p>caf\xC3\xA9 o|n</p>\n</body>");
    row("behind a no-break space", "<body>\n<p>a&nbsp;b|c</p>\n</body>");
    row("behind a picture character", "<body>\n<p>\xF0\x9F\x98\x80 a|b</p>\n</body>");
    row("other alphabets", "<body>\n<p>\xCE\xB1\xCE\xB2|\xCE\xB3</p>\n</body>");
    row("first cell", "<body>\n<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>\n</body>");
    row("last cell", "<body>\n<table><tbody><tr><td>a</td><td>|b</td></tr></tbody></table>\n</body>");
    row("cell without tbody", "<body>\n<table border=1>\n<tr><td width=10>a|b</td></tr></table>\n</body>",
        "<body>\n<table border=\"1\">\n<tbody><tr><td width=\"10\">a|b</td></tr></tbody></table>\n</body>");
    row("nested table", "<body>\n<table><tbody><tr><td><table><tbody><tr><td>in|</td></tr></tbody></table></td></tr></"
                        "tbody></table>\n</body>");
    row("header cell", "<body>\n<table><thead><tr><th>he|ad</th></tr></thead></table>\n</body>");
    row("behind a table", "<body>\n<table><tbody><tr><td>a</td></tr></tbody></table>\n<p>b|</p>\n</body>");
    row("list item", "<body>\n<ul>\n<li>one</li>\n<li>t|wo</li>\n</ul>\n</body>");
    row("nested list", "<body>\n<ol><li>one<ul><li>in|ner</li></ul></li></ol>\n</body>");
    row("definition list", "<body>\n<dl><dt>te|rm</dt><dd>text</dd></dl>\n</body>");
    row("pre", "<body>\n<pre>a\n  b|  c\n</pre>\n</body>");
    row("pre that starts with an empty line", "<body>\n<pre>\n\nab|c</pre>\n</body>");
    row("second line of pre", "<body>\n<pre>one\n|two</pre>\n</body>");
    row("in front of an image", "<body>\n<p>a|<img src=\"x.gif\">b</p>\n</body>");
    row("behind an image", "<body>\n<p>a<img src=\"x.gif\">|b</p>\n</body>");
    row("behind a line break", "<body>\n<p>a<br>|b</p>\n</body>");
    row("in front of a line break", "<body>\n<p>a|<br>b</p>\n</body>");
    row("heading", "<body>\n<h1>He|ading</h1>\n<h2>x</h2>\n</body>");
    row("in bold", "<body>\n<p>a<b>b|b</b>c</p>\n</body>");
    row("deep in inline tags", "<body>\n<p><font face=\"Arial\"><b><i>a|b</i></b></font></p>\n</body>");
    row("in a link", "<body>\n<p><a href=\"x.htm\">li|nk</a></p>\n</body>");
    row("behind a comment", "<body>\n<p>a<!-- c > d -->b|c</p>\n</body>");
    row("behind a script", "<body>\n<script>if (a < b) document.write('<P>');</script><p>a|b</p>\n</body>");
    row("behind a style sheet", "<body>\n<style>p > b { }</style><p>a|b</p>\n</body>");
    row("behind server code", "<body>\n<p><?php echo \"x\" ?>a|b<?= $x ?></p>\n</body>");
    row("server code in an attribute", "<body>\n<p class=\"<?= $c > 1 ?>\">a|b</p>\n</body>");
    row("blockquote and centre", "<body>\n<center><blockquote>a|b</blockquote></center>\n</body>");
    row("runs of blanks", "<body>\n<p>a  \n   b|c</p>\n</body>");
    row("second empty cell", "<body>\n<table><tbody><tr><td></td><td>|</td></tr></tbody></table>\n</body>");
    row("behind the only picture", "<body>\n<p><img src=\"x.gif\">|</p>\n</body>");
    row("between pictures", "<body>\n<p>a</p>\n<p><img src=\"x.gif\">|<img src=\"y.gif\"></p>\n</body>");
    row("selected word", "<body>\n<p>one [two] three</p>\n</body>");
    row("selection over inline tags", "<body>\n<p>o[ne <b>two</b> thr]ee</p>\n</body>");
    row("selection of a whole paragraph", "<body>\n<p>[one]</p>\n<p>two</p>\n</body>");
    row("selection behind quotes", "<BODY BGCOLOR=red>\n<P ALIGN=center>[one]</P>\n</BODY>",
        "<body bgcolor=\"red\">\n<p align=\"center\">[one]</p>\n</body>");
    row("selection with an entity in it", "<body>\n<p>a[b &amp; c]d</p>\n</body>");
}

void SelectionTrackingTest::places()
{
    QFETCH(QString, design);
    QFETCH(QString, source);
    const QString expected = PageOf(source.isEmpty() ? design : source);
    Open(PageOf(design));
    const QString before = m_rig->Surface.DocumentHTML();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    if (source.isEmpty() || !design.endsWith(u'o'))
        QCOMPARE(MarkedSource(), expected);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
    // Back: the next key goes where the caret was.
    const QString marked = MarkedSource();
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    static const QRegularExpression selection(u"\\||\\[.*\\]"_s);
    QCOMPARE(SourceAfterTyping(u"X"_s), QString(marked).replace(selection, u"X"_s));
}

void SelectionTrackingTest::aCaretMovedInTheSourceIsFollowed()
{
    QFETCH(QString, design);
    Open(PageOf(design));
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    const QString marked = MarkedSource();
    const qsizetype start = m_rig->Source.SelectionStart();
    const qsizetype length = m_rig->Source.SelectionLength();
    m_rig->Edit->SelectTab(ViewTab::Normal);
    m_rig->Surface.SelectText(u"t"_s);
    m_rig->Surface.CaretToPageStart();
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->Source.Select(1, 3);
    m_rig->Source.Select(start, length);
    if (m_rig->Source.SelectionStart() == start && MarkedSource() != marked)
        QFAIL("the source changed");
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    static const QRegularExpression selection(u"\\||\\[.*\\]"_s);
    QCOMPARE(SourceAfterTyping(u"X"_s), QString(marked).replace(selection, u"X"_s));
}

void SelectionTrackingTest::anEditedTextTakesTheCaretAlong()
{
    QFETCH(QString, design);
    Open(PageOf(design));
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QString marked = MarkedSource();
    const qsizetype start = m_rig->Source.SelectionStart();
    const qsizetype length = m_rig->Source.SelectionLength();
    m_rig->Source.Select(m_rig->Source.Text().indexOf("</title>"_L1) + 1, 0);
    m_rig->TypeInSource(u"T"_s);
    m_rig->Source.Select(start + 1, length);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QCOMPARE(m_rig->Surface.DocumentTitle(), u"tT"_s);
    QVERIFY(!m_rig->Surface.DocumentHTML().contains("<!--mark"_L1));
    static const QRegularExpression selection(u"\\||\\[.*\\]"_s);
    marked.replace("<title>t"_L1, "<title>tT"_L1).replace(selection, u"X"_s);
    QCOMPARE(SourceAfterTyping(u"X"_s), marked);
}

QTEST_MAIN(SelectionTrackingTest)
#include "SelectionTrackingTest.moc"
