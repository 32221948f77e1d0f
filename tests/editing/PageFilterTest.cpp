#include "editing/PageFilter.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// What may be passed over without being loaded. That nothing is passed over which the engine shows is for
/// GlobalReplaceTest.
class PageFilterTest : public QObject
{
    Q_OBJECT

private slots:
    void MayShowText_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("may");
        const auto row = [](const char *name, const QByteArray &page, const QString &text, bool may) {
            QTest::newRow(name) << page << text << may;
        };
        const QString word = u"lighter"_s;
        row("not there", "<p>some other words, light or</p>", word, false);
        row("there", "<p>a lighter one</p>", word, true);
        row("in capitals", "<p>a LighTer one</p>", word, true);
        row("in an attribute only", "<p title=lighter class=\"x lighter\">x</p>", word, false);
        row("through a tag", "<p>ligh<b class=\"x\">ter</b>", word, true);
        row("through two", "<p>l<b><i>ight</i></b>er", word, true);
        row("another word through a tag", "<p>light<b>house</b>", word, false);
        row("two starts", "<p>liglighter", word, true);
        row("numeric reference", "<p>l&#105;ghter", word, true);
        row("in hex, without an end", "<p>lighte&#X72 x", word, true);
        row("reference of something else", "<p>l&#233;ghter", word, false);
        row("named ligature", "<p>&fjlig;ord", u"fjord"_s, true);
        row("comment amid it", "<p>ligh<!-- > -->ter", word, true);
        row("server code amid it", "<p>ligh<?php echo '>' ?>ter", word, true);
        row("script amid it", "<p>ligh<script>x</script>ter", word, true);
        row("a > in a value amid it", "<p>ligh<b title=\"a>b\">ter", word, true);
        row("moved out of a table", "<table>ligh<tr><td>x</td></tr>ter</table>", word, true);
        row("tags that are text", "<xmp>a<lighter></xmp>", word, true);
        row("UTF-16", QByteArray("l\0i\0g\0h\0t\0e\0r\0", 14), word, true);
        row("a tag that never ends", "<p>ligh<b", word, true);
        row("the plain parts of the text", "<p>n\xE4her \xDFt", u"näher ßt"_s, true);
        row("that is not there", "<p>näh", u"näher ßt"_s, false);
        row("one word of two", "<p>water lily", u"water fern"_s, false);
        row("nothing to go by", "<p>x", u"日本"_s, true);
        row("Kelvin sign for a k",
            "<p>\xE2\x84\xAA"
            "ilo",
            u"kilo"_s, true);
        row("without the k", "<p>kila", u"kilo"_s, false);
    }
    void MayShowText()
    {
        QFETCH(QByteArray, page);
        QFETCH(QString, text);
        QTEST(MayShow(page, text, Qt::CaseInsensitive), "may");
    }
    void CaseCounts()
    {
        QVERIFY(!MayShow("<p>Stork", u"stork"_s, Qt::CaseSensitive));
        QVERIFY(MayShow("<p>sto<b>rk", u"stork"_s, Qt::CaseSensitive));
    }
};

QTEST_GUILESS_MAIN(PageFilterTest)
#include "PageFilterTest.moc"
