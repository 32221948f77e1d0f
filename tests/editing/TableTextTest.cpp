#include "editing/TableAttributes.h"
#include "editing/TableCells.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Tables in page text: which cells a row or a column has, and what is written into tags.
class TableTextTest : public QObject
{
    Q_OBJECT

private slots:
    void cells_data();
    void cells();
    void placesMoveAlong();
    void spans_data();
    void spans();
    void valuesAreEscaped();
    void numbers_data();
    void numbers();
    void manyRows();
};

void TableTextTest::cells_data()
{
    QTest::addColumn<QString>("page"); // "|": the caret
    QTest::addColumn<QString>("cell"); // ids of the cells of each scope
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("column");
    const auto row = [](const char *name, const char *page, const char *cell, const char *inRow, const char *inColumn) {
        QTest::newRow(name) << QString::fromLatin1(page) << QString::fromLatin1(cell) << QString::fromLatin1(inRow)
                            << QString::fromLatin1(inColumn);
    };
    row("plain", "<table><tr><td 1></td><td 2></td></tr><tr><td 3></td><td 4>|</td></tr></table><td 5>", "4", "34",
        "24");
    row("upper case, line ends", "<TABLE>\n<TR>\n<TD 1>|\n<TD 2>\n</TR>\n<TR><TD 3></TR></TABLE>", "1", "12", "13");
    row("second table", "<table><tr><td 1></table><table><tr><td 2>|<td 3></tr></table>", "2", "23", "2");
    row("no end tags of rows", "<table><tr><td 1>|<td 2><tr><td 3><td 4></table><table><tr><td 5></tr></table>", "1",
        "12", "13");
    row("end tags of some rows", "<table><tr><td 1>|<td 2><tr><td 3></tr></table>", "1", "12", "13");
    row("short row", "<table><tr><td 1><td 2>|</tr><tr><td 3></tr><tr><td 4><td 5></tr></table>", "2", "12", "25");
    row("headings are of no column", "<table><tr><th 1><th 2></tr><tr><th 3><td 4>|<td 5></tr></table>", "4", "45",
        "4");
    row("in a heading", "<table><tr><td 1><th 2>|<td 3></tr></table>", "2", "13", "1");
    row("a table in a cell counts along",
        "<table><tr><td 1><table><tr><td 2></td></tr></table></td><td 3>|</td></tr>"
        "<tr><td 4></td><td 5></td></tr></table>",
        "3", "2", "5");
    row("behind a table in a cell", "<table><tr><td 1><table><tr><td 2></table>|</td></tr></table>", "1", "2", "2");
    row("in a table in a cell", "<table><tr><td 1><table><tr><td 2>|<td 3></table></table>", "2", "23", "2");
    row("behind the table", "<table><tr><td 1></td></tr></table><p>|</p>", "", "", "");
    row("before the table", "<p>|</p><table><tr><td 1></td></tr></table>", "", "", "");
    row("between rows", "<table>|<tr><td 1></td></tr></table>", "", "", "");
    row("no table at all", "<p>a|</p>", "", "", "");
    row("cells in a comment", "<table><tr><!-- <td 8><tr> --><td 1><td 2>|</tr><tr><td 3><td 4></tr></table>", "2",
        "12", "24");
    row("cells in code", "<table><tr><td 1><?php echo \"<td 8><tr>\"; ?><td 2>|</tr><tr><td 3><td 4></tr></table>", "2",
        "12", "24");
    row("cells in a script", "<table><tr><td 1><script>w('<td 8></table>')</script><td 2>|</tr></table>", "2", "12",
        "2");
    row("letters that grow in capitals", "<p>\xDF\xDF</p><table><tr><td 1>\xDF<td 2>|</tr></table>", "2", "12", "2");
}

void TableTextTest::cells()
{
    QFETCH(QString, page);
    const qsizetype place = page.indexOf(u'|') + 1;
    page.remove(u'|');
    const auto ids = [&](CellScope scope) {
        QString found;
        for (const qsizetype tag : CellsInScope(page, place, scope))
            found += page.sliced(tag - 1 + 4, 1);
        return found;
    };
    QTEST(ids(CellScope::Cell), "cell");
    QTEST(ids(CellScope::Row), "row");
    QTEST(ids(CellScope::Column), "column");
}

/// A selection stays where it was in spite of what is written before it and in it.
void TableTextTest::placesMoveAlong()
{
    const QString page = u"<table><tr><td width=1>a<td>b[c<td>d]e<td>f</tr></table>"_s;
    QString plain = page;
    const qsizetype start = plain.indexOf(u'[') + 1;
    plain.remove(u'[');
    const qsizetype length = plain.indexOf(u']') + 1 - start;
    plain.remove(u']');
    CellAttributes cell;
    cell.VAlign = u"Top"_s;
    cell.NoWrap = true;
    const ChangedCells changed = WriteCells(plain, start, length, CellScope::Row, cell);
    QString marked = changed.Text;
    marked.insert(changed.Position - 1 + changed.Length, u']').insert(changed.Position - 1, u'[');
    QCOMPARE(marked, u"<table><tr><td  VALIGN=Top NOWRAP>a<td VALIGN=Top NOWRAP>b[c<td VALIGN=Top NOWRAP>d]e"
                     "<td VALIGN=Top NOWRAP>f</tr></table>"_s);
}

void TableTextTest::spans_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("shown");
    QTest::addColumn<int>("written");
    QTest::addColumn<QString>("after");
    QTest::newRow("added") << u"<td>"_s << 1 << 3 << u"<td ROWSPAN=3>"_s;
    QTest::newRow("1 goes") << u"<td rowspan=\"2\">"_s << 2 << 1 << u"<td >"_s;
    QTest::newRow("to the end of the table stays") << u"<td rowspan=0>"_s << 1 << 1 << u"<td rowspan=0>"_s;
    QTest::newRow("told without need stays") << u"<td rowspan=1>"_s << 1 << 1 << u"<td rowspan=1>"_s;
    QTest::newRow("nonsense stays") << u"<td rowspan=-2x>"_s << 1 << 1 << u"<td rowspan=-2x>"_s;
    QTest::newRow("beyond all numbers") << u"<td rowspan=99999999999>"_s << 65534 << 65534
                                        << u"<td rowspan=99999999999>"_s;
}

void TableTextTest::spans()
{
    QFETCH(QString, before);
    QFETCH(int, written);
    CellAttributes cell = ReadCell(before, 1);
    QTEST(cell.RowSpan, "shown");
    cell.RowSpan = written;
    QTEST(WriteCell(before, 1, cell), "after");
}

/// A box shows what a browser reads, and what is typed there reads the same in the page.
void TableTextTest::valuesAreEscaped()
{
    CellAttributes cell = ReadCell(u"<td background='a&amp;b&quot;.gif'>"_s, 1);
    QCOMPARE(cell.Background.value_or(QString()), u"a&b\".gif"_s);
    cell.Background = u"<?=\"x\"?>&amp;>/"_s;
    const QString tag = WriteCell(u"<td background='a&amp;b&quot;.gif'>"_s, 1, cell);
    QCOMPARE(tag, u"<td background=\"<?=\"x\"?>&amp;amp;&gt;/\">"_s);
    QCOMPARE(ReadCell(tag, 1).Background, cell.Background);
}

void TableTextTest::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");
    QTest::newRow("digits and more") << u"12.5px"_s << 12.5;
    QTest::newRow("blank and sign") << u" -3"_s << -3.0;
    QTest::newRow("no number") << u"wide"_s << 0.0;
    QTest::newRow("only a point") << u"."_s << 0.0;
}

void TableTextTest::numbers()
{
    QFETCH(QString, text);
    QTEST(LeadingNumber(text), "number");
}

/// A column of a long table costs no more than going over the page a few times.
void TableTextTest::manyRows()
{
    constexpr int Rows = 20000;
    const QString page = u"<table>"_s + u"<tr><td>a</td><td width=5>b</td></tr>\n"_s.repeated(Rows) + u"</table>"_s;
    CellAttributes cell;
    cell.Width = TableExtent{u"7"_s};
    const ChangedCells changed = WriteCells(page, page.indexOf(u"b</td>"_s) + 1, 0, CellScope::Column, cell);
    QCOMPARE(changed.Text, QString(page).replace(u"width=5"_s, u"width=7"_s));
}

QTEST_APPLESS_MAIN(TableTextTest)
#include "TableTextTest.moc"
