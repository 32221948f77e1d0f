#include "support/KeyText.h"
#include "support/SurfaceRig.h"

#include <QRegularExpression>

#include <memory>

using namespace Qt::StringLiterals;

/// Enter, Backspace, Delete and typing over selections, with real keys: how blocks split and join, and what is left.
class JoinsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Enter_data();
    void Enter() { PressAndUndo(); }
    void Border_data();
    void Border() { PressAndUndo(); }
    void InLine_data();
    void InLine() { PressAndUndo(); }
    void Selection_data();
    void Selection() { PressAndUndo(); }

private:
    static void Columns();
    static void Row(const char *name, const char *before, const char *keys, const char *after);
    void PressAndUndo();

    std::unique_ptr<SurfaceRig> m_rig;
};

void JoinsTest::Columns()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
}

void JoinsTest::Row(const char *name, const char *before, const char *keys, const char *after)
{
    QTest::newRow(name) << QString::fromUtf8(before) << QString::fromUtf8(keys) << QString::fromUtf8(after);
}

void JoinsTest::PressAndUndo()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    PressKeys(*m_rig, keys);
    QCOMPARE(m_rig->Body(), after);
    QVERIFY2(m_rig->ParsesBack(), qUtf8Printable(m_rig->PlainBody()));
    const QString plain = m_rig->PlainBody();
    const int steps = m_rig->UndoAll();
    QVERIFY(steps <= keys.split(u' ').size());
    if (steps == 1 && !keys.contains(u' '))
        QCOMPARE(m_rig->Body(), before);
    else
        QCOMPARE(m_rig->PlainBody(), QString(before).remove(QRegularExpression(u"[][|]"_s)));
    m_rig->RedoAll();
    QCOMPARE(m_rig->PlainBody(), plain);
}

void JoinsTest::Enter_data()
{
    Columns();
    Row("paragraph", "<p>ab|cd</p>", "Enter", "<p>ab</p><p>|cd</p>");
    Row("attributes go on, the id does not", "<p id=\"i\" class=\"k\" align=\"center\">ab|cd</p>", "Enter",
        "<p id=\"i\" class=\"k\" align=\"center\">ab</p><p class=\"k\" align=\"center\">|cd</p>");
    Row("end", "<p>ab|</p>", "Enter", "<p>ab</p><p>|<br></p>");
    Row("empty lines show", "<p>ab|</p>", "Enter Enter x", "<p>ab</p><p><br></p><p>x|</p>");
    Row("start", "<p id=\"i\">|ab</p>", "Enter", "<p><br></p><p id=\"i\">|ab</p>");
    Row("blanks at the seam", "<p>ab |cd</p>", "Enter", "<p>ab</p><p>|cd</p>");
    Row("typed blank at the seam", "<p>ab|</p>", "_ Enter c", "<p>ab</p><p>c|</p>");
    Row("in a format", "<p>a<b>b|c</b>d</p>", "Enter", "<p>a<b>b</b></p><p><b>|c</b>d</p>");
    Row("format goes on", "<p>a<b>b|</b></p>", "Enter x", "<p>a<b>b</b></p><p><b>x|</b></p>");
    Row("link does not", "<p><a href=\"x\">b|</a></p>", "Enter x", "<p><a href=\"x\">b</a></p><p>x|</p>");
    Row("anchor stays", "<p><a name=\"n\">a|b</a></p>", "Enter", "<p><a name=\"n\">a</a></p><p><a>|b</a></p>");
    Row("comment behind", "<p>ab|<!--c-->cd</p>", "Enter", "<p>ab</p><p><!--c-->|cd</p>");
    Row("heading's end", "<h2 align=\"center\">ab|</h2>", "Enter", "<h2 align=\"center\">ab</h2><p>|<br></p>");
    Row("heading's middle", "<h2>a|b</h2>", "Enter", "<h2>a</h2><h2>|b</h2>");
    Row("heading's start", "<h2>|ab</h2>", "Enter", "<p><br></p><h2>|ab</h2>");
    Row("item", "<ul><li>a|b</li></ul>", "Enter", "<ul><li>a</li><li>|b</li></ul>");
    Row("item's end, nested list", "<ul><li>a|<ul><li>n</li></ul></li></ul>", "Enter x",
        "<ul><li>a</li><li>x|<ul><li>n</li></ul></li></ul>");
    Row("paragraph in an item", "<ul><li><p>a|b</p></li></ul>", "Enter",
        "<ul><li><p>a</p></li><li><p>|b</p></li></ul>");
    Row("empty item", "<ul><li>a</li><li>|<br></li><li>b</li></ul>", "Enter",
        "<ul><li>a</li></ul><p>|<br></p><ul><li>b</li></ul>");
    Row("empty nested item", "<ul><li>a<ul><li>n</li><li>|<br></li></ul></li></ul>", "Enter x",
        "<ul><li>a<ul><li>n</li></ul></li><li>x|</li></ul>");
    Row("only item of a cell", "<table><tbody><tr><td><ol><li>|<br></li></ol></td></tr></tbody></table>", "Enter x",
        "<table><tbody><tr><td><p>x|</p></td></tr></tbody></table>");
    Row("cell", "<table><tbody><tr><td>a|b</td></tr></tbody></table>", "Enter",
        "<table><tbody><tr><td><p>a</p><p>|b</p></td></tr></tbody></table>");
    Row("body", "a<b>b|c</b>d", "Enter", "<p>a<b>b</b></p><p><b>|c</b>d</p>");
    Row("body, end before a table", "ab|<table><tbody><tr><td>x</td></tr></tbody></table>", "Enter y",
        "<p>ab</p><p>y|</p><table><tbody><tr><td>x</td></tr></tbody></table>");
    Row("division", "<div class=\"k\">a|b</div>", "Enter", "<div class=\"k\"><p>a</p><p>|b</p></div>");
    Row("quote", "<blockquote><p>a</p><p>|<br></p></blockquote>", "Enter x",
        "<blockquote><p>a</p></blockquote><p>x|</p>");
    Row("quote's middle", "<blockquote><p>|<br></p><p>a</p></blockquote>", "Enter x",
        "<blockquote><p><br></p><p>x|</p><p>a</p></blockquote>");
    Row("term", "<dl><dt>a|</dt></dl>", "Enter x Enter y", "<dl><dt>a</dt><dd>x</dd><dd>y|</dd></dl>");
    Row("empty definition", "<dl><dt>a</dt><dd>|<br></dd></dl>", "Enter x", "<dl><dt>a</dt></dl><p>x|</p>");
    Row("preformatted", "<pre>a|b</pre>", "Enter", "<pre>a\n|b</pre>");
    Row("preformatted, end", "<pre>ab|</pre>", "Enter x", "<pre>ab\nx|</pre>");
    Row("preformatted, start", "<pre>|ab</pre>", "Enter", "<pre><br>|ab</pre>");
    Row("caption", "<table><caption>a|b</caption><tbody></tbody></table>", "Enter",
        "<table><caption>a<br>|b</caption><tbody></tbody></table>");
    Row("selection over blocks", "<p>a[b</p><p>c]d</p>", "Enter", "<p>a</p><p>|d</p>");
    Row("break before the seam", "<p>ab<br>|cd</p>", "Enter", "<p>ab</p><p>|cd</p>");
    Row("between a rule and a paragraph", "<hr>|<p>ab</p>", "Enter", "<hr><p><br></p><p>|ab</p>");
    Row("line break", "<p>ab|cd</p>", "S+Enter", "<p>ab<br>|cd</p>");
    Row("line break at the end", "<p>ab|</p>", "S+Enter x", "<p>ab<br>x|</p>");
    Row("two line breaks", "<p>ab|</p>", "S+Enter S+Enter x", "<p>ab<br><br>x|</p>");
    Row("line break in a heading", "<h1>a<b>b|</b></h1>", "S+Enter x", "<h1>a<b>b<br>x|</b></h1>");
}

void JoinsTest::Border_data()
{
    Columns();
    Row("backspace", "<p>ab</p><p>|cd</p>", "Backspace", "<p>ab|cd</p>");
    Row("delete", "<p>ab|</p><p>cd</p>", "Delete", "<p>ab|cd</p>");
    Row("heading into paragraph", "<p class=\"k\">ab</p><h2>|c<i>d</i></h2>", "Backspace",
        "<p class=\"k\">ab|c<i>d</i></p>");
    Row("paragraph into heading", "<h2>ab|</h2><p align=\"right\">cd</p>", "Delete", "<h2>ab|cd</h2>");
    Row("empty paragraph before a heading", "<p><br></p><h2>|cd</h2>", "Backspace", "<h2>|cd</h2>");
    Row("empty paragraph behind", "<h2>ab</h2><p>|<br></p>", "Backspace", "<h2>ab|</h2>");
    Row("empty paragraphs", "<p><br></p><p>|<br></p>", "Backspace", "<p>|<br></p>");
    Row("delete in an empty paragraph", "<p>|<br></p><h2>cd</h2>", "Delete", "<h2>|cd</h2>");
    Row("white space of the source", "<p>ab\n</p>\n\n<p>\n  |cd</p>\n", "Backspace", "<p>ab|cd</p>\n\n\n");
    Row("comments at the seam", "<p>ab<!--1--></p><!--2--><p><!--3-->|cd</p>", "Backspace",
        "<p>ab|<!--1--><!--3-->cd</p><!--2-->");
    Row("item into item", "<ul><li>a</li><li>|b<ul><li>n</li></ul></li></ul>", "Backspace",
        "<ul><li>a|b<ul><li>n</li></ul></li></ul>");
    Row("item into nested item", "<ul><li>a<ul><li>n</li></ul></li><li>|b</li></ul>", "Backspace",
        "<ul><li>a<ul><li>n|b</li></ul></li></ul>");
    Row("nested item into its item", "<ul><li>a<ul><li>|n</li><li>m</li></ul></li></ul>", "Backspace",
        "<ul><li>a|n<ul><li>m</li></ul></li></ul>");
    Row("item into paragraph", "<p>a</p><ul><li>|b</li><li>c</li></ul>", "Backspace", "<p>a|b</p><ul><li>c</li></ul>");
    Row("only item into paragraph", "<p>a</p><ul><!--c--><li>|b</li></ul>", "Backspace", "<p>a|b</p><!--c-->");
    Row("paragraph into item", "<ul><li>a</li></ul><p>|b</p>", "Backspace", "<ul><li>a|b</li></ul>");
    Row("first item of the page", "<ul><li>|a</li><li>b</li></ul>", "Backspace", "<p>|a</p><ul><li>b</li></ul>");
    Row("into a quote", "<blockquote><p>a</p></blockquote><p>|b</p>", "Backspace",
        "<blockquote><p>a|b</p></blockquote>");
    Row("out of a quote", "<p>a</p><blockquote><p>|b</p><p>c</p></blockquote>", "Backspace",
        "<p>a|b</p><blockquote><p>c</p></blockquote>");
    Row("bare text", "ab<p>|cd</p>ef", "Backspace", "ab|cdef");
    Row("preformatted into paragraph", "<p>a</p><pre>|b  c\nd</pre>", "Backspace", "<p>a|b&nbsp; c<br>d</p>");
    Row("paragraph into preformatted", "<pre>a</pre><p>|b\n c</p>", "Backspace", "<pre>a|b c</pre>");
    Row("start of the page", "<p>|a</p>", "Backspace", "<p>|a</p>");
    Row("end of the page", "<p>a|</p>", "Delete", "<p>a|</p>");
    Row("start of a cell", "<table><tbody><tr><td>a</td><td>|b</td></tr></tbody></table>", "Backspace",
        "<table><tbody><tr><td>a</td><td>|b</td></tr></tbody></table>");
    Row("end of a cell", "<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>", "Delete",
        "<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>");
    Row("behind a table", "<table><tbody><tr><td>a</td></tr></tbody></table><p>|b</p>", "Backspace",
        "[<table><tbody><tr><td>a</td></tr></tbody></table>]<p>b</p>");
    Row("behind a table, twice", "<table><tbody><tr><td>a</td></tr></tbody></table><p>|b</p>", "Backspace Backspace",
        "|<p>b</p>");
    Row("before a rule", "<p>a|</p><hr><p>b</p>", "Delete Delete", "<p>a</p>|<p>b</p>");
    Row("empty paragraph before a rule", "<p>x</p><p>|<br></p><hr>", "Delete", "<p>x</p>[<hr>]");
    Row("paragraphs of a cell", "<table><tbody><tr><td><p>a</p><p>|b</p></td></tr></tbody></table>", "Backspace",
        "<table><tbody><tr><td><p>a|b</p></td></tr></tbody></table>");
    Row("typed blank at the seam", "<p>ab|</p><p>cd</p>", "_ Delete", "<p>ab|cd</p>");
}

void JoinsTest::InLine_data()
{
    Columns();
    Row("last letter", "<p>a|</p>", "Backspace", "<p>|<br></p>");
    Row("last letter of a format", "<p>a<b>b|</b>c</p>", "Backspace", "<p>a|c</p>");
    Row("an empty element beside stays out of it", "<p>a<i></i>bc|</p>", "Backspace", "<p>a<i></i>b|</p>");
    Row("across the border of a format", "<p>a<b>|bc</b></p>", "Backspace", "<p><b>|bc</b></p>");
    Row("forward across a border", "<p>ab|<b>c</b>d</p>", "Delete", "<p>ab|d</p>");
    Row("picture", "<p>a<img src=\"x.gif\">|b</p>", "Backspace", "<p>a|b</p>");
    Row("line break", "<p>a<br>|b</p>", "Backspace", "<p>a|b</p>");
    Row("comment before the letter", "<p>ab<!--c-->|d</p>", "Backspace", "<p>a|<!--c-->d</p>");
    Row("only letter beside a comment", "<p><!--c-->d|</p>", "Backspace", "<p><!--c-->|<br></p>");
    Row("word", "<p>ab cd|</p>", "C+Backspace x", "<p>ab x|</p>");
    Row("word forward", "<p>|ab cd</p>", "C+Delete", "<p>|&nbsp;cd</p>");
    Row("only word of a format", "<p>a <b>bold|</b></p>", "C+Backspace x", "<p>a x|</p>");
    Row("blank between formats", "<p><b>a</b> |<i>b</i></p>", "Backspace", "<p><b>a|</b><i>b</i></p>");
    Row("two blanks typed", "<p>a|b</p>", "_ _", "<p>a&nbsp; |b</p>");
}

void JoinsTest::Selection_data()
{
    Columns();
    Row("over blocks", "<h2>a[b</h2><p>x</p><ul><li>c]d</li><li>e</li></ul>", "Delete",
        "<h2>a|d</h2><ul><li>e</li></ul>");
    Row("typed over blocks", "<p>a[b</p><h3><i>c]d</i></h3>", "xy", "<p>axy|<i>d</i></p>");
    Row("a whole line", "<p>[ab</p><h2>]cd</h2>", "Delete", "<h2>|cd</h2>");
    Row("a whole line typed over", "<p>[ab</p><h2>]cd</h2>", "x", "<p>x|</p><h2>cd</h2>");
    Row("all of a format typed over", "<p>a<span style=\"color:red\">[bc]</span></p>", "x",
        "<p>a<span style=\"color:red\">x|</span></p>");
    Row("all of a link typed over", "<p>a <a href=\"x\">[bc]</a> d</p>", "xy _ z",
        "<p>a <a href=\"x\">xy z|</a> d</p>");
    Row("end of a link typed over, then bold", "<p><a href=\"x\">a[bc]</a> d</p>", "x C+B y",
        "<p><a href=\"x\">ax</a><b>y|</b> d</p>");
    Row("beside line ends", "<ul><li>\n [ab]\n</li><li>c</li></ul>", "xy", "<ul><li>\n xy|\n</li><li>c</li></ul>");
    Row("before a line end", "<ul><li>a|\n</li><li>b</li></ul>", "_ b", "<ul><li>a b|\n</li><li>b</li></ul>");
    Row("between lines", "<p>a|\nb</p>", "x", "<p>ax|\nb</p>");
    Row("at the start of a line", "<p>a\n|b</p>", "x", "<p>a\nx|b</p>");
    Row("part of a line", "<p>a<b>b[c</b>d<!--i-->e]f</p>", "Backspace", "<p>a<b>b|</b>f</p>");
    Row("into a cell", "<p>a[b</p><table><tbody><tr><td>c</td><td>d]e</td></tr></tbody></table>", "Delete",
        "<p>a|</p><table><tbody><tr><td><br></td><td>e</td></tr></tbody></table>");
    Row("over cells", "<table><tbody><tr><td>a[b</td><td>c</td></tr><tr><td>d</td><td>e]f</td></tr></tbody></table>",
        "Delete",
        "<table><tbody><tr><td>|<br></td><td><br></td></tr><tr><td><br></td><td><br></td></tr></tbody></table>");
    Row("a whole table", "<p>a[b</p><table><tbody><tr><td>c</td></tr></tbody></table><p>d]e</p>", "x", "<p>ax|e</p>");
    Row("out of a cell", "<table><tbody><tr><td>a[b</td></tr></tbody></table><p>c]d</p>", "Delete",
        "<table><tbody><tr><td>a|</td></tr></tbody></table><p>d</p>");
    Row("everything", "<h1>a</h1><p>[b]</p>", "C+A Delete x", "<h1>x|</h1>");
    Row("an empty line in italics", "<p>a</p><p><i>|<br></i></p><p>c d</p>", "Delete", "<p>a</p><p>|c d</p>");
    Row("back from an empty line in italics", "<p>a</p><p><i>|<br></i></p><p>c</p>", "Backspace", "<p>a|</p><p>c</p>");
    Row("behind two lines in italics", "<p><i><br></i><i><br>|</i></p><p>es</p>", "Delete", "<p><i><br>|</i>es</p>");
    Row("on in italics", "<p>a<i>b|</i></p>", "Enter Enter", "<p>a<i>b</i></p><p><br></p><p><i>|<br></i></p>");
    Row("items", "<ul><li>a[b<ul><li>c</li></ul></li><li>d]e</li></ul>", "Delete", "<ul><li>a|e</li></ul>");
    Row("up to the end of a link", "<h4><a href=\"i\">S</a> [b <a href=\"r\">Ru]</a></h4><p>x</p>", "Delete",
        "<h4><a href=\"i\">S</a>&nbsp;|</h4><p>x</p>");
    Row("from a link's start", "<p>x <a href=\"r\">[Ru</a></p><p>a]b</p>", "Delete", "<p>x |b</p>");
    Row("blanks on both sides", "<p>foo [bar</p><p>baz] qux</p>", "Delete", "<p>foo&nbsp;| qux</p>");
    Row("typed in the format of the first", "<p>a<b>[b</b></p><p>c]d</p>", "x", "<p>a<b>x|</b>d</p>");
    Row("link to link", "<p>x <a href=\"r\">[Ru</a></p><p><a href=\"s\">a]</a></p>", "Delete", "<p>x&nbsp;|</p>");
    Row("from a blank to a link's end", "<h4><a href=\"i\">S</a>[ <a href=\"r\">Ru]</a></h4>", "Backspace",
        "<h4><a href=\"i\">S</a>|</h4>");
    Row("cut", "<p>a[b</p><p>c]d</p>", "C+X", "<p>a|d</p>");
}

QTEST_MAIN(JoinsTest)
#include "JoinsTest.moc"
