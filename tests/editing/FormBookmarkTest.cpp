#include "editing/FormBookmark.h"
#include "support/EditorRig.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

/// The bookmark dialog on real pages: the file is the one before with the anchor in it, and one undo gives it back.
class FormBookmarkTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_rig.reset(); }
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s)); }
    void cleanup();
    void insertsAnAnchor_data();
    void insertsAnAnchor();

private:
    std::unique_ptr<EditorRig> m_rig;
};

void FormBookmarkTest::initTestCase()
{
    EditorRig::StartEngine();
    m_rig = std::make_unique<EditorRig>();
}

void FormBookmarkTest::cleanup()
{
    m_rig->Boxes.Verify();
    m_rig->Surface.MarkClean();
    m_rig->Page.HtmlDirty = false;
}

void FormBookmarkTest::insertsAnAnchor_data()
{
    QTest::addColumn<QString>("before"); // "[", "]" and "|" as in EditorRig::OpenMarked
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("after"); // "%1": a bookmark "k"
    const auto row = [](const char *name, const QString &before, const QString &after,
                        const QString &bookmark = u"k"_s) { QTest::newRow(name) << before << bookmark << after; };
    row("caret in words", u"<p>a|b</p>"_s, u"<p>a%1b</p>"_s);
    row("start of a paragraph", u"<P ALIGN=center>|a\n<P>b"_s, u"<P ALIGN=center>%1a\n<P>b"_s);
    row("end of a paragraph", u"<p>a|</p>\n<p>b</p>"_s, u"<p>a%1</p>\n<p>b</p>"_s);
    row("in bold", u"<p>a<B>b|c</B></p>"_s, u"<p>a<B>b%1c</B></p>"_s);
    row("words across formats stay", u"<p>a [b <b>c</b> <i>d]e</i></p>"_s, u"<p>a %1b <b>c</b> <i>de</i></p>"_s);
    row("paragraphs stay", u"<p>[a</p>\n<p>b]</p>"_s, u"<p>%1a</p>\n<p>b</p>"_s);
    row("heading", u"<h1 class=x>[a <b>b</b>]</h1>"_s, u"<h1 class=x>%1a <b>b</b></h1>"_s);
    row("in a link", u"<p><a HREF='b.htm' target=t>a|b</a></p>"_s,
        u"<p><a HREF='b.htm' target=t>a</a>%1<a href=\"b.htm\" target=\"t\">b</a></p>"_s);
    row("item", u"<ul>\n<li>a\n<li>b|c\n</ul>"_s, u"<ul>\n<li>a\n<li>b%1c\n</ul>"_s);
    row("cell", u"<TABLE><TR><TD>a<TD WIDTH=5>|b</TABLE>"_s, u"<TABLE><TR><TD>a<TD WIDTH=5>%1b</TABLE>"_s);
    row("preformatted lines", u"<pre>\n  a  b\n  |c</pre>"_s, u"<pre>\n  a  b\n  %1c</pre>"_s);
    row("empty paragraph", u"<p>a</p>\n<p>|</p>\n<p>b</p>"_s, u"<p>a</p>\n<p>%1</p>\n<p>b</p>"_s);
    row("empty cell", u"<table><tr><td>a</td><td>|</td></tr></table>"_s,
        u"<table><tr><td>a</td><td>%1</td></tr></table>"_s);
    row("page without text", u"<p><img src=\"i.gif\">|</p>"_s, u"<p><img src=\"i.gif\">%1</p>"_s);
    row("selected picture stays", u"<p>a[<img src=\"i.gif\" ALT=''>]b</p>"_s,
        u"<p>a%1<img src=\"i.gif\" ALT=''>b</p>"_s);
    row("only a picture, selected", u"<center>[<IMG SRC=i.gif>]</center>"_s, u"<center>%1<IMG SRC=i.gif></center>"_s);
    row("beside another anchor", u"<p><A NAME=top></A>|a</p>"_s, u"<p><A NAME=top></A>%1a</p>"_s);
    row("in another anchor", u"<p><A NAME=top>a|b</A></p>"_s, u"<p><A NAME=top>a</A>%1b</p>"_s);
    row("beside server code", u"<p><?=$a > 1?>|b<!-- c --></p><%= d %>"_s,
        u"<p><?=$a > 1?>%1b<!-- c --></p><%= d %>"_s);
    row("no end of the body", u"<html><title>t</title><body bgcolor=#ffffff>a|b, and never ends"_s,
        u"<html><title>t</title><body bgcolor=#ffffff>a%1b, and never ends"_s);
    row("cut at a blank", u"<p>a|b</p>"_s, u"<p>a<a name=\"two\" words=\"\"></a>b</p>"_s, u"two words"_s);
    row("umlauts", u"<p>a|b</p>"_s, u"<p>a<a name=\"über\"></a>b</p>"_s, u"über"_s);
    row("quotes", u"<p>a|b</p>"_s, u"<p>a<a name=\"x&quot;y\"></a>b</p>"_s, u"x\"y"_s);
    row("a reference is read as one", u"<p>a|b</p>"_s, u"<p>a<a name=\"a&amp;b\"></a>b</p>"_s, u"a&amp;b"_s);
}

void FormBookmarkTest::insertsAnAnchor()
{
    QFETCH(QString, before);
    QFETCH(QString, name);
    QFETCH(QString, after);
    const bool whole = before.startsWith(u"<html"_s);
    const QString page = whole ? u"%1"_s : u"<html><head>\n<title>t</title></head>\n<body>\n%1\n</body></html>\n"_s;
    const QByteArray written = m_rig->OpenMarked(page.arg(before)).toUtf8();
    FormBookmark form(m_rig->Surface);
    form.show();
    auto *box = form.findChild<QLineEdit *>(u"EditBookmark"_s);
    QTest::keyClick(box, Qt::Key_Return); // without a name there is nothing to insert
    QCOMPARE(form.result(), 0);
    box->insert(name);
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    after.replace(u"%1"_s, u"<a name=\"k\"></a>"_s);
    QCOMPARE(QString::fromUtf8(m_rig->SavedAsWritten()), page.arg(after));
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->SavedAsWritten(), written);
}

QTEST_MAIN(FormBookmarkTest)
#include "FormBookmarkTest.moc"
