#include "document/TagText.h"

#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(TagMode)

namespace {

constexpr TagMode Read = TagMode::Read;
constexpr TagMode Set = TagMode::Set;
constexpr TagMode SetFlag = TagMode::SetFlag;

} // namespace

class TagTextTest : public QObject
{
    Q_OBJECT

private:
    static void Columns()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("start");
        QTest::addColumn<QString>("name");
        QTest::addColumn<TagMode>("mode");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");
    }

    static void Row(const char *title, const char *text, int start, const char *name, TagMode mode, const char *value,
                    const char *expected)
    {
        QTest::newRow(title) << QString::fromUtf8(text) << start << QString::fromUtf8(name) << mode
                             << QString::fromUtf8(value) << QString::fromUtf8(expected);
    }

private slots:
    void TagValue_data()
    {
        Columns();
        Row("unquoted", "<img src=a.gif>", 1, "SRC", Read, "", "a.gif");
        Row("blanks around =", "<img src = \"a b.gif\" alt=x>", 1, "SRC", Read, "", "a b.gif");
        Row("flag", "<td nowrap>", 1, "NOWRAP", Read, "", "<ON>");
        Row("absent", "<td nowrap>", 1, "WIDTH", Read, "", "");
        Row("flag takes the next value", "<td nowrap width=10>", 1, "NOWRAP", Read, "", "10");
        Row("no word boundary", "<img datasrc=x src=y>", 1, "SRC", Read, "", "x");
        Row("name with blank wins", "<img datasrc=x src =y>", 1, "SRC", Read, "", "y");
        Row("name in a value", "<a title=\"my href \" href=b>", 1, "HREF", Read, "", "b");
        Row("> ends the tag in quotes", "<a title=\"a>b\" href=c>", 1, "TITLE", Read, "", "a");
        Row("name with blank behind the tag", "<td width=1><td width =2>", 1, "WIDTH", Read, "", "1");
        Row("quote never closes", "<a href=\"x y>z\"", 1, "HREF", Read, "", "x y");
        Row("empty quotes", "<a href=\"\" id=b>", 1, "HREF", Read, "", "");
        Row("quotes inside an unquoted value", "<a href=b\"c\"d>", 1, "HREF", Read, "", "bcd");
        Row("single quotes are part of it", "<a href='b' id=c>", 1, "HREF", Read, "", "'b'");
        Row("line end is no blank", "<a href=b\r\nid=c>", 1, "HREF", Read, "", "b\r\nid=c");
        Row("= at the end", "<a href=>", 1, "HREF", Read, "", "");
        Row("blanks, then the end", "<a href=  >x", 1, "HREF", Read, "", "");
        Row("start within the tag", "<a href=b id=c>", 4, "ID", Read, "", "c");
        Row("start behind the attribute", "<a href=b id=c>", 5, "HREF", Read, "", "");
        Row("second tag", "<a href=b><a href=c>", 11, "HREF", Read, "", "c");
        Row("start 0", "<a href=b>", 0, "HREF", Read, "", "b");
        Row("start below 0", "<a href=b>", -7, "HREF", Read, "", "b");
        Row("start behind the text", "<a href=b>", 4000, "HREF", Read, "", "");
        Row("empty text", "", 1, "HREF", Read, "", "");
        Row("no >", "<a href=b", 1, "HREF", Read, "", "");
        Row("surrogates before", "\xF0\x9F\x98\x80<a href=b>", 3, "HREF", Read, "", "b");
        Row("sharp s keeps places", "<a title=\xC3\x9F href=b>", 1, "HREF", Read, "", "b");

        Row("remove leaves the blank", "<td width=10>x", 1, "WIDTH", Set, "", "<td >x");
        Row("replace", "<td width=10>x", 1, "WIDTH", Set, "20", "<td width=20>x");
        Row("add", "<td width=10>x", 1, "HEIGHT", Set, "5", "<td width=10 HEIGHT=5>x");
        Row("add nothing", "<td width=10>x", 1, "HEIGHT", Set, "", "<td width=10>x");
        Row("old quotes go", "<a href=\"b c\" id=d>", 1, "HREF", Set, "e", "<a href=e id=d>");
        Row("new quotes come", "<a href=b id=d>", 1, "HREF", Set, "\"e f\"", "<a href=\"e f\" id=d>");
        Row("remove quoted", "<a href=\"b c\" id=d>", 1, "HREF", Set, "", "<a  id=d>");
        Row("blanks after = stay", "<a href =  b>", 1, "HREF", Set, "c", "<a href =  c>");
        Row("set a flag", "<td nowrap>x", 1, "NOWRAP", Set, "1", "<ON>");
        Row("quote never closes, set", "<a href=\"x>y", 1, "HREF", Set, "z", "<a href=z>y");
        Row("set without >", "<td width=10", 1, "WIDTH", Set, "5", "");
        Row("set in the second tag", "<td width=1><td width=2>", 13, "WIDTH", Set, "3", "<td width=1><td width=3>");

        Row("flag on", "<td>", 1, "NOWRAP", SetFlag, "1", "<td NOWRAP>");
        Row("flag off that is off", "<td>", 1, "NOWRAP", SetFlag, "0", "<td>");
        Row("flag off", "<td nowrap>x", 1, "NOWRAP", SetFlag, "", "<td >x");
        Row("flag on again drops the rest", "<td nowrap checked>x", 1, "NOWRAP", SetFlag, "1", "<td NOWRAP>x");
        Row("flag off drops the rest", "<td nowrap checked>x", 1, "NOWRAP", SetFlag, "0", "<td >x");
        Row("flag without >", "<td", 1, "NOWRAP", SetFlag, "1", "");
    }

    void TagValue()
    {
        QFETCH(QString, text);
        QFETCH(int, start);
        QFETCH(QString, name);
        QFETCH(TagMode, mode);
        QFETCH(QString, value);
        QTEST(::TagValue(text, start, name, value, mode), "expected");
    }

    void TagValueTellsQuotes()
    {
        bool quoted = false;
        QCOMPARE(::TagValue(u"<a href= \"b\">"_s, 1, u"HREF"_s, {}, Read, &quoted), u"b"_s);
        QVERIFY(quoted);
        QCOMPARE(::TagValue(u"<a href=b>"_s, 1, u"HREF"_s, {}, Read, &quoted), u"b"_s);
        QVERIFY(!quoted);
    }

    void ReadAttribute_data()
    {
        Columns();
        Row("whole name", "<body vlink=red alink=blue link=green>", 1, "LINK", Read, "", "green");
        Row("not valign", "<td valign=top align=left>", 1, "ALIGN", Read, "", "left");
        Row("not bordercolor", "<table bordercolor=red>", 1, "BORDER", Read, "", "");
        Row("not in a value", "<a title=\"my href =x\" href=b>", 1, "HREF", Read, "", "b");
        Row("> in quotes", "<a title=\"a>b\" href=c>", 1, "HREF", Read, "", "c");
        Row("value with >", "<a title=\"a > b\" href=c>", 1, "TITLE", Read, "", "a > b");
        Row("single quotes", "<a title='a \"b\"' href=c>", 1, "TITLE", Read, "", "a \"b\"");
        Row("flag before a value", "<td nowrap width=10>", 1, "NOWRAP", Read, "", "<ON>");
        Row("flag at the end", "<td width=10 nowrap>", 1, "NOWRAP", Read, "", "<ON>");
        Row("blanks around =", "<td nowrap width = 10>", 1, "WIDTH", Read, "", "10");
        Row("line ends in the tag", "<img\r\nsrc=a.gif\r\nalt=x>", 1, "SRC", Read, "", "a.gif");
        Row("slash", "<img src=\"a\"/>", 1, "SRC", Read, "", "a");
        Row("first of two", "<a id=b id=c>", 1, "ID", Read, "", "b");
        Row("server code with >", "<a <?php if ($a->b) ?> href=\"<?= $x[\"y\"] ?>\">", 1, "HREF", Read, "",
            "<?= $x[\"y\"] ?>");
        Row("server code unquoted", "<td width=<%= w > 1 %> align=left>", 1, "ALIGN", Read, "", "left");
        Row("start before the tag", "a < b <!-- --><a href=c>", 1, "HREF", Read, "", "c");
        Row("quote never closes", "<a href=\"b>c <td>", 1, "HREF", Read, "", "b");
        Row("no >", "<a href=b", 1, "HREF", Read, "", "");
        Row("server code never closes", "<a href=b <?php >", 1, "HREF", Read, "", "");
        Row("start behind the text", "<a href=b>", 99, "HREF", Read, "", "");
        Row("empty value", "<a href= >", 1, "HREF", Read, "", "");
    }

    void ReadAttribute()
    {
        QFETCH(QString, text);
        QFETCH(int, start);
        QFETCH(QString, name);
        QTEST(::ReadAttribute(text, start, name), "expected");
    }

    void WriteAttribute_data()
    {
        Columns();
        Row("not vlink", "<body vlink=red>", 1, "LINK", Set, "#000000", "<body vlink=red LINK=#000000>");
        Row("remove only the whole name", "<td valign=top align=left>", 1, "ALIGN", Set, "", "<td valign=top >");
        Row("> in quotes", "<a title=\"a>b\">x", 1, "HREF", Set, "c", "<a title=\"a>b\" HREF=c>x");
        Row("replace a value with >", "<a title=\"a>b\" id=c>", 1, "TITLE", Set, "\"d\"", "<a title=\"d\" id=c>");
        Row("single quotes go", "<a title='a b' id=c>", 1, "TITLE", Set, "d", "<a title=d id=c>");
        Row("flag becomes value", "<td nowrap width=1>", 1, "NOWRAP", Set, "x", "<td nowrap=x width=1>");
        Row("flag removed", "<td nowrap width=1>", 1, "NOWRAP", Set, "", "<td  width=1>");
        Row("flag on keeps the rest", "<td nowrap width=1>", 1, "NOWRAP", SetFlag, "1", "<td nowrap width=1>");
        Row("flag off keeps the rest", "<td nowrap width=1>", 1, "NOWRAP", SetFlag, "0", "<td  width=1>");
        Row("flag added", "<td width=1>x", 1, "NOWRAP", SetFlag, "1", "<td width=1 NOWRAP>x");
        Row("flag off with a value", "<input checked=\"checked\" id=a>", 1, "CHECKED", SetFlag, "", "<input  id=a>");
        Row("nothing to remove", "<td width=1>", 1, "ALIGN", Set, "", "<td width=1>");
        Row("no tag", "text > text", 1, "ALIGN", Set, "left", "text > text");
        Row("no >", "<td width=1", 1, "WIDTH", Set, "2", "<td width=1");
        Row("server code stays", "<td <?php if ($a > 1) ?> width=1>", 1, "WIDTH", Set, "2",
            "<td <?php if ($a > 1) ?> width=2>");
        Row("add behind server code", "<td <%= x > \"%>>y", 1, "WIDTH", Set, "2", "<td <%= x > \"%> WIDTH=2>y");
        Row("second tag", "<td width=1><td width=2>", 13, "WIDTH", Set, "3", "<td width=1><td width=3>");
    }

    void WriteAttribute()
    {
        QFETCH(QString, text);
        QFETCH(int, start);
        QFETCH(QString, name);
        QFETCH(TagMode, mode);
        QFETCH(QString, value);
        QTEST(::WriteAttribute(text, start, name, value, mode), "expected");
    }
};

QTEST_GUILESS_MAIN(TagTextTest)
#include "TagTextTest.moc"
