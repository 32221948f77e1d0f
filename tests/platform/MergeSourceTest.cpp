#include "platform/surface/merge/MergeSource.h"
#include "platform/surface/merge/CharacterReferences.h"
#include "platform/surface/merge/MarkupTokens.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// What stands between the ranges that the merge calls new.
QString Kept(const MergedText &page)
{
    QString kept;
    qsizetype done = 0;
    for (const MergedText::Range &range : page.New) {
        kept += page.Text.sliced(done, range.Start - done);
        done = range.Start + range.Length;
    }
    return kept + page.Text.sliced(done);
}

QList<quint64> KeysOf(const QString &text)
{
    QList<quint64> keys;
    for (const MarkupToken &token : TokenizeMarkup(text).Tokens)
        keys.append(token.Key);
    return keys;
}

} // namespace

/// Changes made in the engine, brought back into the author's text.
class MergeSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void references_data();
    void references();
    void merge_data();
    void merge();
    void anElementAroundAnotherChange();
    void manyChangesInABigPage();
    void tokensCoverAnyText();
};

void MergeSourceTest::references_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("inText");
    QTest::addColumn<QString>("inAttribute");
    QTest::newRow("names") << u"&eacute;&nbsp;&lt;"_s << u"\u00E9\u00A0<"_s << u"\u00E9\u00A0<"_s;
    QTest::newRow("two characters") << u"&NotEqualTilde;&Afr;"_s << u"\u2242\u0338\U0001D504"_s
                                    << u"\u2242\u0338\U0001D504"_s;
    QTest::newRow("numbers") << u"&#233;&#xE9;&#XE9&#128;&#0;&#x110000;"_s << u"\u00E9\u00E9\u00E9\u20AC\uFFFD\uFFFD"_s
                             << u"\u00E9\u00E9\u00E9\u20AC\uFFFD\uFFFD"_s;
    QTest::newRow("without semicolon") << u"?a=1&copy=2&copyx &notit; &amp"_s << u"?a=1\u00A9=2\u00A9x \u00ACit; &"_s
                                       << u"?a=1&copy=2&copyx &notit; &"_s;
    QTest::newRow("none") << u"a & b &; &#; &#x; &nosuch; &"_s << u"a & b &; &#; &#x; &nosuch; &"_s
                          << u"a & b &; &#; &#x; &nosuch; &"_s;
    QTest::newRow("line ends") << u"a\r\nb\rc\n"_s << u"a\nb\nc\n"_s << u"a\nb\nc\n"_s;
}

void MergeSourceTest::references()
{
    QFETCH(QString, text);
    QTEST(DecodeReferences(text, ReferencePlace::Text), "inText");
    QTEST(DecodeReferences(text, ReferencePlace::Attribute), "inAttribute");
}

void MergeSourceTest::merge_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("certain");
    const auto row = [](const char *name, const char *written, const char *base, const char *now, const char *expected,
                        bool certain) {
        QTest::newRow(name) << QString::fromUtf8(written) << QString::fromUtf8(base) << QString::fromUtf8(now)
                            << QString::fromUtf8(expected) << certain;
    };
    row("nothing changed", "<p\nCLASS='x'>a", "<P class=x>a</P>", "<P class=x>a</P>", "<p\nCLASS='x'>a", true);
    row("a word", "<p  ALIGN = 'left'>one  two &eacute;t&eacute;<BR/>x</p>\n",
        "<P align=left>one  two \u00E9t\u00E9<BR>x</P>\n", "<P align=left>one  2 \u00E9t\u00E9<BR>x</P>\n",
        "<p  ALIGN = 'left'>one  2 &eacute;t&eacute;<BR/>x</p>\n", true);
    row("within a word", "<p>caf&eacute;s &amp;c", "<P>caf\u00E9s &amp;c</P>", "<P>caf\u00E9x &amp;c!</P>",
        "<p>caf&eacute;x &amp;c!", true);
    row("a bare ampersand stays apart", "<p>a &b</p>", "<P>a &amp;b</P>", "<P>a &amp;copy</P>", "<p>a &amp;copy</p>",
        true);
    row("a reference without semicolon", "<p>&copy x</p>", "<P>\u00A9 x</P>", "<P>\u00A9s x</P>", "<p>&copys x</p>",
        true);
    row("line ends of the file", "<p>a\r\nb</p>\r\n<p>c</p>\r\n", "<P>a\r\nb</P>\r\n<P>c</P>\r\n",
        "<P>a\r\nb</P>\r\n<P>c\r\nd</P>\r\n", "<p>a\r\nb</p>\r\n<p>c\r\nd</p>\r\n", true);
    row("mixed line ends", "<p>a\nb</p>\r\n<p>c</p>\r\n", "<P>a\r\nb</P>\r\n<P>c</P>\r\n",
        "<P>a\r\nb</P>\r\n<P>x</P>\r\n", "<p>a\nb</p>\r\n<p>x</p>\r\n", true);
    row("an attribute", "<TD  WIDTH='10'  nowrap\n align=left>x", "<TD width=10 nowrap align=left>x</TD>",
        "<TD width=20 nowrap align=left>x</TD>", "<TD  WIDTH='20'  nowrap\n align=left>x", true);
    row("a bare attribute", "<TD WIDTH=10 align=left>x", "<TD width=10 align=left>x</TD>",
        "<TD width=100% align=\"a b\">x</TD>", "<TD WIDTH=100% align=\"a b\">x", true);
    row("attributes come and go", "<img alt=\"x\" SRC=a.gif border=0 >", "<IMG alt=x src=a.gif border=0>",
        "<IMG src=a.gif border=0 hspace=3 title=\"a b\">", "<img SRC=a.gif border=0 hspace=\"3\" title=\"a b\" >",
        true);
    row("the first of two attributes", "<p id=a ID=b>x", "<P id=a>x</P>", "<P id=c>x</P>", "<p id=c ID=b>x", true);
    row("a quote in single quotes", "<p title='a'>x", "<P title=a>x</P>", "<P title=\"it's &quot;b&quot;\">x</P>",
        "<p title='it&#39;s \"b\"'>x", true);
    row("unchanged value keeps its spelling", "<a href='?a=1&b=2' target=x>t</a>",
        "<A href=\"?a=1&amp;b=2\" target=x>t</A>", "<A href=\"?a=1&amp;b=2\" target=y>t</A>",
        "<a href='?a=1&b=2' target=y>t</a>", true);
    row("a paragraph behind an omitted end", "<body><p>one\n<p>two\n", "<BODY><P>one\n</P><P>two\n</P></BODY>",
        "<BODY><P>one\n</P><P>new</P><P>two\n</P></BODY>", "<body><p>one\n</P><P>new</P><p>two\n", false);
    row("a list item", "<ul>\n<li>one\n<li>two\n</ul>", "<UL>\n<LI>one\n</LI><LI>two\n</LI></UL>",
        "<UL>\n<LI>one\n</LI><LI>new\n</LI><LI>two\n</LI></UL>", "<ul>\n<li>one\n</LI><LI>new\n</LI><li>two\n</ul>",
        false);
    row("a first row, body of the table omitted", "<table>\n<tr><td>1</table>",
        "<TABLE>\n<TBODY><TR><TD>1</TD></TR></TBODY></TABLE>",
        "<TABLE>\n<TBODY><TR><TD>0</TD></TR><TR><TD>1</TD></TR></TBODY></TABLE>",
        "<table>\n<TBODY><TR><TD>0</TD></TR><tr><td>1</table>", false);
    row("a row like the others", "<table><tbody>\n<tr><td>1</td></tr>\n<tr><td>1</td></tr>\n</tbody></table>",
        "<TABLE><TBODY>\n<TR><TD>1</TD></TR>\n<TR><TD>1</TD></TR>\n</TBODY></TABLE>",
        "<TABLE><TBODY>\n<TR><TD>1</TD></TR>\n<TR><TD>1</TD></TR>\n<TR><TD>1</TD></TR>\n</TBODY></TABLE>",
        "<table><tbody>\n<tr><td>1</td></tr>\n<tr><td>1</td></tr>\n<TR><TD>1</TD></TR>\n</tbody></table>", false);
    row("an item goes", "<ul><li>one\n<li>two\n<li>three\n</ul>",
        "<UL><LI>one\n</LI><LI>two\n</LI><LI>three\n</LI></UL>", "<UL><LI>one\n</LI><LI>three\n</LI></UL>",
        "<ul><li>one\n</LI><li>three\n</ul>", false);
    row("bold", "<P>one two three", "<P>one two three</P>", "<P>one <B>two</B> three</P>", "<P>one <B>two</B> three",
        false);
    row("behind the newline of pre", "<pre>\nold text</pre>", "<PRE>old text</PRE>", "<PRE><B>x</B>old text</PRE>",
        "<pre>\n<B>x</B>old text</pre>", false);
    row("a word of pre", "<pre>\r\n  old\r\n  text</pre>", "<PRE>  old\r\n  text</PRE>", "<PRE>  new\r\n  text</PRE>",
        "<pre>\r\n  new\r\n  text</pre>", true);
    row("a text field", "<textarea>\n a <b> &eacute;</textarea>", "<TEXTAREA> a &lt;b&gt; \u00E9</TEXTAREA>",
        "<TEXTAREA> a &lt;i&gt; \u00E9</TEXTAREA>", "<textarea>\n a <i> &eacute;</textarea>", true);
    row("a style sheet", "<style>\n p > a { x: y }\n b { }</style><p>&lt;",
        "<STYLE>\n p > a { x: y }\n b { }</STYLE><P>&lt;</P>", "<STYLE>\n p > a { x: z }\n b { }</STYLE><P>&lt;</P>",
        "<style>\n p > a { x: z }\n b { }</style><p>&lt;", true);
    row("comments", "<!-- a\n --><p>x<!-- y --> z", "<!-- a\n --><P>x<!-- y --> z</P>",
        "<!-- a\n --><P>x<!-- y --> w</P>", "<!-- a\n --><p>x<!-- y --> w", true);
    row("server code", "<p <?php a('>') ?> class='<%= b %>'><?= $x ?> word</p>",
        "<P <?php a('>') ?> class=\"<%= b %>\"><?= $x ?> word</P>",
        "<P <?php a('>') ?> class=\"<%= b %>\"><?= $x ?> WORD</P>",
        "<p <?php a('>') ?> class='<%= b %>'><?= $x ?> WORD</p>", true);
    row("code in a changed tag", "<p <?php a() ?> id='x'>y", "<P <?php a() ?> id=x>y</P>", "<P <?php a() ?> id=z>y</P>",
        "<p <?php a() ?> id='z'>y", true);
    row("code goes", "<p><? a ?>b <? c ?>d", "<P><? a ?>b <? c ?>d</P>", "<P>b <? c ?>d</P>", "<p>b <? c ?>d", false);
    row("two places", "<HTML><BODY><P>one<P>two<P>three</BODY>",
        "<HTML><HEAD></HEAD><BODY><P>one</P><P>two</P><P>three</P></BODY></HTML>",
        "<HTML><HEAD></HEAD><BODY><P>1</P><P>two</P><P>3</P></BODY></HTML>", "<HTML><BODY><P>1<P>two<P>3</BODY>", true);
    row("an empty page", "", "<HTML><HEAD></HEAD><BODY></BODY></HTML>", "<HTML><HEAD></HEAD><BODY>x</BODY></HTML>",
        "<HTML><HEAD></HEAD><BODY>x</BODY></HTML>", false);
}

void MergeSourceTest::merge()
{
    QFETCH(QString, written);
    QFETCH(QString, base);
    QFETCH(QString, now);
    SourceMerger merger(written, base);
    const SourceMerger::Result result = merger.Merge(now);
    QTEST(result.Page.Text, "expected");
    QTEST(result.Doubt == 0, "certain");
    // What is not new stands in the file, in that order.
    const QString kept = Kept(result.Page);
    qsizetype at = -1;
    for (const QChar c : kept)
        QVERIFY((at = written.indexOf(c, at + 1)) >= 0);
    if (now == base)
        QVERIFY(result.Page.New.isEmpty());
}

/// The element that a change is widened to holds another change, which moved what is in front of it.
void MergeSourceTest::anElementAroundAnotherChange()
{
    const QString base = u"<BODY><DIV><P>a b c d e f g h i j k l</P><HR></DIV><P>z</P></BODY>"_s;
    const QString shorter = u"<BODY><DIV><P>a</P><B>x</B></DIV><P>z</P></BODY>"_s;
    for (auto reach : {SourceMerger::Reach::Smallest, SourceMerger::Reach::Element, SourceMerger::Reach::Around}) {
        QCOMPARE(SourceMerger(base, base).Merge(shorter, reach).Page.Text, shorter);
        QCOMPARE(SourceMerger(shorter, shorter).Merge(base, reach).Page.Text, base);
    }
}

void MergeSourceTest::manyChangesInABigPage()
{
    QString written;
    QString base;
    QString now;
    QString expected;
    for (int i = 0; i < 40000; ++i) {
        const QString number = QString::number(i);
        const bool changed = i % 1000 == 7;
        written += "<p CLASS='c'>Line "_L1 + number + " of &uuml;ber<br/>text\r\n"_L1;
        base += "<P class=c>Line "_L1 + number + u" of \u00FCber<BR>text\r\n</P>"_s;
        now += "<P class=c>Line "_L1 + (changed ? u"changed"_s : number) + u" of \u00FCber<BR>text\r\n</P>"_s;
        expected += "<p CLASS='c'>Line "_L1 + (changed ? u"changed"_s : number) + " of &uuml;ber<br/>text\r\n"_L1;
    }
    SourceMerger merger(written, base);
    const SourceMerger::Result result = merger.Merge(now);
    QVERIFY(result.Page.Text == expected);
    QCOMPARE(result.Doubt, 0u);
}

/// Any text: the tokens stand one behind the other, and equal texts have equal ones.
void MergeSourceTest::tokensCoverAnyText()
{
    static const QStringList pieces = {u"<"_s,     u">"_s,        u"</"_s,          u"p"_s,       u" "_s,
                                       u"\n"_s,    u"\r"_s,       u"=\""_s,         u"\""_s,      u"'"_s,
                                       u"<!--"_s,  u"-->"_s,      u"<?php "_s,      u"?>"_s,      u"<%"_s,
                                       u"%>"_s,    u"<script>"_s, u"</script>"_s,   u"<title>"_s, u"</title >"_s,
                                       u"&amp;"_s, u"&"_s,        u"<plaintext>"_s, u"<svg>"_s,   u"</svg>"_s,
                                       u"a=b"_s,   u"/"_s,        u"<!"_s,          u"<style "_s, u"\u00E9"_s};
    QRandomGenerator random(20240611);
    int certain = 0;
    for (int round = 0; round < 20000; ++round) {
        QString text;
        for (int i = random.bounded(40); i >= 0; --i)
            text += pieces[random.bounded(int(pieces.size()))];
        const TokenizedMarkup read = TokenizeMarkup(text);
        qsizetype at = 0;
        for (const MarkupToken &token : read.Tokens) {
            QCOMPARE(token.Start, at);
            QVERIFY2(token.Length > 0, qPrintable(text));
            at = token.End();
        }
        QVERIFY2(at == text.size(), qPrintable(text));
        // A word put in somewhere reads as if it had been written there, or the merge says that it is not sure.
        const QString other = text.first(text.size() / 2) + "word"_L1 + text.sliced(text.size() / 2);
        SourceMerger merger(text, text);
        const SourceMerger::Result result = merger.Merge(other);
        if (result.Doubt != 0)
            continue;
        ++certain;
        QCOMPARE(KeysOf(result.Page.Text), KeysOf(other));
    }
    QVERIFY2(certain > 3000, qPrintable(QString::number(certain)));
}

QTEST_GUILESS_MAIN(MergeSourceTest)
#include "MergeSourceTest.moc"
