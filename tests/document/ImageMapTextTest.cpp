#include "document/ImageMapText.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Which map an element uses, and a page without that map, or with another one in its place.
class ImageMapTextTest : public QObject
{
    Q_OBJECT

private slots:
    void UsedName_data()
    {
        QTest::addColumn<QString>("markup");
        QTest::addColumn<QString>("name");
        QTest::newRow("unquoted") << u"<IMG src=a.gif useMap=#plots width=2>"_s << u"plots"_s;
        QTest::newRow("last in its tag") << u"<IMG src=a.gif usemap=#plots>"_s << u"plots"_s;
        QTest::newRow("quoted") << u"<IMG usemap=\"#my plots\" border=0>"_s << u"my plots"_s;
        QTest::newRow("other file") << u"<IMG usemap=maps.htm#m border=0>"_s << u"m"_s;
        QTest::newRow("no map") << u"<IMG src=a#b.gif border=0>"_s << QString();
        QTest::newRow("no name sign") << u"<IMG usemap=plots border=0>"_s << QString();
    }
    void UsedName()
    {
        QFETCH(QString, markup);
        QTEST(UsedMapName(markup), "name");
    }

    void Without_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("rest");
        const auto row = [](const char *title, const char *html, const char *name, const char *rest) {
            QTest::newRow(title) << QString::fromLatin1(html) << QString::fromLatin1(name) << QString::fromLatin1(rest);
        };
        row("the one of the name", "a<MAP name=x><AREA></MAP>b<map id=q name=\"y\">\n<area>\n</map >c", "y",
            "a<MAP name=x><AREA></MAP>bc");
        row("same case first", "<MAP name=A>1</MAP><MAP name=a>2</MAP>", "a", "<MAP name=A>1</MAP>");
        row("other case", "x<MAP name=Plots></MAP>y", "plots", "xy");
        row("not in a comment or script",
            "<!--<MAP name=m></MAP>--><SCRIPT>'<MAP name=m></MAP>'</SCRIPT><MAP name=m></MAP>", "m",
            "<!--<MAP name=m></MAP>--><SCRIPT>'<MAP name=m></MAP>'</SCRIPT>");
        row("never closes", "a<MAP name=m><AREA>b", "m", "a<MAP name=m><AREA>b");
        row("none of the name", "<MAP name=m></MAP>", "n", "<MAP name=m></MAP>");
        row("another element", "<MAPLE name=m></MAPLE>", "m", "<MAPLE name=m></MAPLE>");
        row("a nameless map is not that of no name", "<MAP></MAP>", "", "<MAP></MAP>");
    }
    void Without()
    {
        QFETCH(QString, html);
        QFETCH(QString, name);
        QTEST(WithoutImageMap(html, name), "rest");
    }

    void With_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("oldMap");
        QTest::addColumn<QString>("after"); // with the map "m", which is "(new)" here
        const auto row = [](const char *title, const char *html, const char *oldMap, const char *after) {
            QTest::newRow(title) << QString::fromLatin1(html) << QString::fromLatin1(oldMap)
                                 << QString::fromLatin1(after);
        };
        row("in place of the old one", "<BODY><MAP name=x></MAP><map NAME='M'>1</map>a</BODY>", "<map NAME='M'>1</map>",
            "<BODY><MAP name=x></MAP>(new)a</BODY>");
        row("at the end of the body", "<BODY>a</BODY></HTML>", "", "<BODY>a(new)</BODY></HTML>");
        row("once only, whatever was there", "<BODY>a</body>", "gone", "<BODY>a(new)</body>");
        row("no end of the body", "<BODY style={a>b}>a", "gone", "<BODY style={a>b}>(new)a");
        row("no end, and it is new", "<BODY>a", "", "<BODY>a");
        row("no body", "a", "gone", "a");
    }
    void With()
    {
        QFETCH(QString, html);
        QFETCH(QString, oldMap);
        QTEST(WithImageMap(html, u"m"_s, u"(new)"_s, oldMap), "after");
    }
};

QTEST_GUILESS_MAIN(ImageMapTextTest)
#include "ImageMapTextTest.moc"
