#include "support/SurfaceRig.h"

#include <QElapsedTimer>

#include <memory>

using namespace Qt::StringLiterals;

/// Markup put in by a dialog: it stands in the page exactly as it was given, whatever is around the caret.
class InsertionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Markup_data();
    void Markup();
    void TypingGoesOnBehind_data();
    void TypingGoesOnBehind();
    void NothingGoesIntoAField();
    void LargeMarkupInALargePage();

private:
    void Put(const QString &html) { m_rig->Surface.DOM().PasteHTML(html); }

    std::unique_ptr<SurfaceRig> m_rig;
};

void InsertionTest::Markup_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &before, const QString &html, const QString &after) {
        QTest::newRow(name) << before << html << after;
    };

    row("text in text", u"<p>a|d</p>"_s, u"b &amp; c"_s, u"<p>ab &amp; c|d</p>"_s);
    row("inline in text", u"<p>a|b</p>"_s, u"<b>x</b>"_s, u"<p>a<b>x</b>|b</p>"_s);
    row("text on both sides joins", u"<p>a|b</p>"_s, u"1<i>x</i>2"_s, u"<p>a1<i>x</i>2|b</p>"_s);
    row("block in a paragraph", u"<p class=\"k\" id=\"i\">a|b</p>"_s, u"<h2>x</h2>"_s,
        u"<p class=\"k\" id=\"i\">a</p><h2>x|</h2><p class=\"k\">b</p>"_s);
    row("block at the start", u"<p id=\"i\">|b</p>"_s, u"<h2>x</h2>"_s, u"<h2>x|</h2><p id=\"i\">b</p>"_s);
    row("block at the end", u"<p>a|</p>"_s, u"<ul><li>x</li></ul>"_s, u"<p>a</p><ul><li>x|</li></ul>"_s);
    row("block in an empty paragraph", u"<p>a</p><p>|<br></p>"_s, u"<h2>x</h2>"_s, u"<p>a</p><h2>x|</h2>"_s);
    row("inline in an empty paragraph", u"<p>|<br></p>"_s, u"<b>x</b>"_s, u"<p><b>x</b>|</p>"_s);
    row("comments keep an empty half", u"<p><!--c-->|b</p>"_s, u"<hr>"_s, u"<p><!--c--></p><hr>|<p>b</p>"_s);
    row("block in a heading", u"<h1>a|b</h1>"_s, u"<p>x</p>"_s, u"<h1>a</h1><p>x|</p><h1>b</h1>"_s);
    row("block in preformatted text", u"<pre>a\n|b</pre>"_s, u"<table><tbody><tr><td>x</td></tr></tbody></table>"_s,
        u"<pre>a\n</pre><table><tbody><tr><td>x</td></tr></tbody></table>|<pre>b</pre>"_s);
    row("block in inline elements", u"<p>1<b>2<i>a|b</i></b></p>"_s, u"<p>x</p>"_s,
        u"<p>1<b>2<i>a</i></b></p><p>x|</p><p><b><i>b</i></b></p>"_s);
    row("block in an inline element of a cell",
        u"<table><tbody><tr><td><font size=\"2\">a|b</font></td></tr></tbody></table>"_s, u"<p>x</p>"_s,
        u"<table><tbody><tr><td><font size=\"2\">a</font><p>x|</p><font size=\"2\">b</font></td></tr></tbody></table>"_s);
    row("font around a whole page stays whole", u"<font><p>a|b</p><p>c</p></font>"_s, u"<hr>"_s,
        u"<font><p>a</p><hr>|<p>b</p><p>c</p></font>"_s);
    row("block in the body itself", u"a|b"_s, u"<p>x</p>"_s, u"a<p>x|</p>b"_s);
    row("item in an item", u"<ul><li>a|b</li></ul>"_s, u"<li>x</li>"_s, u"<ul><li>a</li><li>x|</li><li>b</li></ul>"_s);
    row("item in a heading of an item", u"<ul><li><h2>a|b</h2></li></ul>"_s, u"<li>x</li>"_s,
        u"<ul><li><h2>a</h2></li><li>x|</li><li><h2>b</h2></li></ul>"_s);
    row("list in an item", u"<ul><li>a|</li></ul>"_s, u"<ol><li>x</li></ol>"_s,
        u"<ul><li>a<ol><li>x|</li></ol></li></ul>"_s);
    row("term in a term", u"<dl><dt>a|b</dt></dl>"_s, u"<dd>x</dd>"_s, u"<dl><dt>a</dt><dd>x|</dd><dt>b</dt></dl>"_s);
    row("link in a link", u"<p><a href=\"u\">a|b</a></p>"_s, u"<a href=\"v\">x</a>"_s,
        u"<p><a href=\"u\">a</a><a href=\"v\">x</a>|<a href=\"u\">b</a></p>"_s);
    row("bookmark without an end tag in a link", u"<p><a href=\"u\">a|b</a></p>"_s, u"<A Name=top>"_s,
        u"<p><a href=\"u\">a</a><a name=\"top\"></a>|<a href=\"u\">b</a></p>"_s);
    row("block in a bookmark: the name stands once", u"<p><a name=\"n\">a|b</a></p>"_s, u"<hr>"_s,
        u"<p><a name=\"n\">a</a></p><hr>|<p>b</p>"_s);
    row("form in a form", u"<form><p>a|</p></form>"_s, u"<form><input type=\"hidden\" name=\"h\"></form>"_s,
        u"<form><p>a<input type=\"hidden\" name=\"h\">|</p></form>"_s);
    row("scripts, handlers, hidden fields", u"<div>a|b</div>"_s,
        u"<form action=\"f.cgi\" onsubmit=\"return x()\"><input type=\"hidden\" name=\"n\"><script>if (a < b) "
        u"x();</script>"
        "<style>p { color: red }</style><!-- c --><o:x y=\"1\">z</o:x></form>"_s,
        u"<div>a<form action=\"f.cgi\" onsubmit=\"return x()\"><input type=\"hidden\" name=\"n\"><script>if (a < b) "
        u"x();"
        "</script><style>p { color: red }</style><!-- c --><o:x y=\"1\">z|</o:x></form>b</div>"_s);

    const QString table = u"<table><tbody>%1</tbody></table>"_s;
    row("row in a cell", table.arg(u"<tr><td>a|b</td></tr>"_s), u"<tr><td>x</td></tr>"_s,
        table.arg(u"<tr><td>ab</td></tr><tr><td>x|</td></tr>"_s));
    row("cells in a cell", table.arg(u"<tr><td>a|b</td><td>c</td></tr>"_s), u"<td>x</td><th>y</th>"_s,
        table.arg(u"<tr><td>ab</td><td>x</td><th>y|</th><td>c</td></tr>"_s));
    row("row outside of tables", u"<p>a|</p>"_s, u"<tr><td>x</td></tr>"_s,
        u"<p>a</p>"_s + table.arg(u"<tr><td>x</td></tr>"_s) + u'|');
    row("between rows", u"<table> |<tbody><tr><td>a</td></tr></tbody></table>"_s, u"<hr>"_s,
        u"<table> <tbody><tr><td><hr>|a</td></tr></tbody></table>"_s);
    row("cell with a block", table.arg(u"<tr><td>a|b</td></tr>"_s), u"<p>x</p>"_s,
        table.arg(u"<tr><td>a<p>x|</p>b</td></tr>"_s));

    row("over part of a text", u"<p>a[bc]d</p>"_s, u"x"_s, u"<p>ax|d</p>"_s);
    row("over blocks", u"<p>a[b</p><p>c]d</p>"_s, u"<b>x</b>"_s, u"<p>a<b>x</b>|d</p>"_s);
    row("blocks over blocks", u"<p>a[b</p><ul><li>c]d</li></ul><p>e</p>"_s, u"<hr>"_s,
        u"<p>a</p><hr>|<p>d</p><p>e</p>"_s);
    row("over all of a paragraph", u"<p>[a]</p><p>b</p>"_s, u"<h1>x</h1>"_s, u"<h1>x|</h1><p>b</p>"_s);
    row("over items", u"<ul><li>a[b</li><li>c]d<ol><li>e</li></ol></li></ul>"_s, u"x"_s,
        u"<ul><li>ax|d<ol><li>e</li></ol></li></ul>"_s);
    row("over cells: they stay", table.arg(u"<tr><td>a[b</td><td>c</td></tr><tr><td>d]e</td><td>f</td></tr>"_s), u"x"_s,
        table.arg(u"<tr><td>ax|</td><td><br></td></tr><tr><td>e</td><td>f</td></tr>"_s));
    row("over cells and the white space between them",
        u"<table><tbody><tr><td>[a</td> <td>]<div>b</div></td></tr></tbody></table>"_s, u"x"_s,
        u"<table><tbody><tr><td>x|</td> <td><div>b</div></td></tr></tbody></table>"_s);
    row("from text into a table", u"<p>a[b</p><p>c</p>"_s + table.arg(u"<tr><td>d</td><td>e]f</td></tr>"_s), u"x"_s,
        u"<p>ax|</p>"_s + table.arg(u"<tr><td><br></td><td>f</td></tr>"_s));
}

void InsertionTest::Markup()
{
    QFETCH(QString, before);
    QFETCH(QString, html);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    const QString start = m_rig->PlainBody();
    Put(html);
    QCOMPARE(m_rig->Body(), after);
    QVERIFY(m_rig->ParsesBack());
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->PlainBody(), start);
    QCOMPARE(m_rig->Body(), before);
    m_rig->RedoAll();
    QCOMPARE(m_rig->Body(), after);
}

void InsertionTest::TypingGoesOnBehind_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("after");
    QTest::newRow("text") << u"<p>a|b</p>"_s << u"x"_s << u"<p>axy z|b</p>"_s;
    QTest::newRow("outside of bold") << u"<p>a|b</p>"_s << u"<b>x</b>"_s << u"<p>a<b>x</b>y z|b</p>"_s;
    QTest::newRow("outside of a link") << u"<p>a|</p>"_s << u"<a href=\"u\">x</a>"_s
                                       << u"<p>a<a href=\"u\">x</a>y z|</p>"_s;
    QTest::newRow("behind a picture") << u"<p>a|b</p>"_s << u"<img src=\"x.gif\">"_s
                                      << u"<p>a<img src=\"x.gif\">y z|b</p>"_s;
    QTest::newRow("in the last block") << u"<p>a|b</p>"_s << u"<p>1</p><p>2</p>"_s
                                       << u"<p>a</p><p>1</p><p>2y z|</p><p>b</p>"_s;
}

void InsertionTest::TypingGoesOnBehind()
{
    QFETCH(QString, before);
    QFETCH(QString, html);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    Put(html);
    m_rig->Type(u"y z"_s);
    QCOMPARE(m_rig->Body().replace(u"&nbsp;"_s, u" "_s), after);
    m_rig->UndoAll();
    QCOMPARE(m_rig->Body(), before);
}

/// A script, or a page just read from its source, may have left the caret there.
void InsertionTest::NothingGoesIntoAField()
{
    const QString field = u"<p><select><option>a%1b</option></select>%2c</p>"_s;
    m_rig->SetBody(field.arg(u"|"_s, u""_s));
    Put(u"<b>x</b>"_s);
    QCOMPARE(m_rig->Body(), field.arg(u""_s, u"<b>x</b>|"_s));
    m_rig->SetBody(field.arg(u"|"_s, u""_s));
    m_rig->Type(u"xy"_s);
    QCOMPARE(m_rig->Body(), field.arg(u""_s, u"xy|"_s));
}

/// No walk over the page and no layout for each piece that goes in.
void InsertionTest::LargeMarkupInALargePage()
{
    const QString paragraph = u"<p>some <b>bold</b> text with <a href=\"x.htm\">a link</a> and more</p>"_s;
    m_rig->SetBody(u"<p>start|end</p>"_s + paragraph.repeated(7000));
    QElapsedTimer time;
    time.start();
    Put(paragraph.repeated(14000));
    const qint64 taken = time.elapsed();
    QVERIFY2(taken < 15000, qPrintable(QString::number(taken)));
    QVERIFY(m_rig->PlainBody().startsWith(u"<p>start</p>"_s + paragraph));
    m_rig->UndoAll();
    QVERIFY(m_rig->PlainBody().startsWith(u"<p>startend</p>"_s));
}

QTEST_MAIN(InsertionTest)
#include "InsertionTest.moc"
