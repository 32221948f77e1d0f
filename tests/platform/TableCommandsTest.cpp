#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Rows, columns and cells by command: the exact markup, where the caret is, what is available.
class TableCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Rows_data();
    void Rows() { RunCommand(); }
    void Columns_data();
    void Columns() { RunCommand(); }
    void Cells_data();
    void Cells() { RunCommand(); }
    void MergeAndSplit_data();
    void MergeAndSplit() { RunCommand(); }

    void Insert_data();
    void Insert();
    void Statuses_data();
    void Statuses();
    void LargeTable();

private:
    static void Column()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
    }
    static void Row(const char *name, Decmd command, const char *before, const char *after)
    {
        QTest::newRow(name) << int(command) << QString::fromUtf8(before) << QString::fromUtf8(after);
    }
    void RunCommand()
    {
        QFETCH(int, command);
        QFETCH(QString, before);
        QFETCH(QString, after);
        m_rig->SetBody(before);
        const QString marked = m_rig->Body();
        m_rig->Surface.ExecCommand(Decmd(command));
        QCOMPARE(m_rig->Body(), after);
        QVERIFY(m_rig->ParsesBack());
        QCOMPARE(m_rig->UndoAll(), 1);
        QCOMPARE(m_rig->Body(), marked);
        QCOMPARE(m_rig->RedoAll(), 1);
        QCOMPARE(m_rig->Body(), after);
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

void TableCommandsTest::Rows_data()
{
    Column();
    Row("below, of the same kind", DECMD_INSERTROW,
        "<table><tbody><tr><th>a|</th><td>b</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>",
        "<table><tbody><tr><th>a</th><td>b</td></tr><tr><th>|<br></th><td><br></td></tr>"
        "<tr><td>c</td><td>d</td></tr></tbody></table>");
    Row("looks are shared, sizes and names are not", DECMD_INSERTROW,
        "<table><tbody><tr bgcolor=\"red\" id=\"r\"><td width=\"20\" align=\"right\" class=\"k\" id=\"x\" "
        "style=\"width: 4px; color: red;\">a|</td></tr></tbody></table>",
        "<table><tbody><tr bgcolor=\"red\" id=\"r\"><td width=\"20\" align=\"right\" class=\"k\" id=\"x\" "
        "style=\"width: 4px; color: red;\">a</td></tr><tr bgcolor=\"red\">"
        "<td align=\"right\" class=\"k\" style=\"color: red;\">|<br></td></tr></tbody></table>");
    Row("stays in the header", DECMD_INSERTROW,
        "<table><thead><tr><th>a|</th></tr></thead><tbody><tr><td>b</td></tr></tbody></table>",
        "<table><thead><tr><th>a</th></tr><tr><th>|<br></th></tr></thead><tbody><tr><td>b</td></tr></tbody></table>");
    Row("below all of a spanned cell, crossing cells grow", DECMD_INSERTROW,
        "<table><tbody><tr><td rowspan=\"2\">a|</td><td rowspan=\"3\">b</td><td>c</td></tr><tr><td>d</td></tr>"
        "<tr><td>e</td><td>f</td></tr></tbody></table>",
        "<table><tbody><tr><td rowspan=\"2\">a</td><td rowspan=\"4\">b</td><td>c</td></tr><tr><td>d</td></tr>"
        "<tr><td>|<br></td><td><br></td></tr><tr><td>e</td><td>f</td></tr></tbody></table>");
    Row("a span down to the end stays one, too long a one is not stretched", DECMD_INSERTROW,
        "<table><tbody><tr><td rowspan=\"0\">a</td><td rowspan=\"9\">b</td><td>c|</td></tr></tbody></table>",
        "<table><tbody><tr><td rowspan=\"0\">a</td><td>b</td><td>c</td></tr><tr><td><br></td><td>|<br></td></tr>"
        "</tbody></table>");
    Row("white space and loop comments stay", DECMD_INSERTROW,
        "<table><tbody>\n<!--each-->\n<tr><td>a|</td></tr>\n<!--end-->\n</tbody></table>",
        "<table><tbody>\n<!--each-->\n<tr><td>a</td></tr>\n<tr><td>|<br></td></tr>\n<!--end-->\n</tbody></table>");
    Row("as many as are selected", DECMD_INSERTROW,
        "<table><tbody><tr><td>[a</td></tr><tr><td>b]</td></tr></tbody></table>",
        "<table><tbody><tr><td>a</td></tr><tr><td>b</td></tr><tr><td>|<br></td></tr><tr><td><br></td></tr></tbody>"
        "</table>");
    Row("the inner table", DECMD_INSERTROW,
        "<table><tbody><tr><td>o<table><tbody><tr><td>a|</td></tr></tbody></table></td></tr></tbody></table>",
        "<table><tbody><tr><td>o<table><tbody><tr><td>a</td></tr><tr><td>|<br></td></tr></tbody></table></td></tr>"
        "</tbody></table>");
    Row("delete: what crosses shrinks, what starts there moves down", DECMD_DELETEROWS,
        "<table><tbody><tr><td rowspan=\"2\">a</td><td>b</td><td>c</td></tr>"
        "<tr><td rowspan=\"2\">d|</td><td>e</td></tr><tr><td>f</td><td>g</td></tr><tr><td>h</td></tr></tbody></table>",
        "<table><tbody><tr><td>a</td><td>b</td><td>c</td></tr><tr><td>|h</td></tr></tbody></table>");
    Row("delete the top of a spanned cell", DECMD_DELETEROWS,
        "<table><tbody><tr><td>a|</td><td rowspan=\"3\">b</td><td>c</td></tr><tr><td>d</td><td>e</td></tr>"
        "<tr><td>f</td><td>g</td></tr></tbody></table>",
        "<table><tbody><tr><td>|d</td><td rowspan=\"2\">b</td><td>e</td></tr><tr><td>f</td><td>g</td></tr></tbody>"
        "</table>");
    Row("delete: what lies between rows and cells stays", DECMD_DELETEROWS,
        "<table><tbody><!--each-->\n<tr><!--if--><td>a|</td><!--fi--></tr>\n<!--end--><tr><td>b</td></tr></tbody></"
        "table>",
        "<table><tbody><!--each-->\n<!--if--><!--fi-->\n<!--end--><tr><td>|b</td></tr></tbody></table>");
    Row("delete all rows", DECMD_DELETEROWS,
        "<p>x</p><table><tbody><tr><td>[a</td></tr><!--c--><tr><td>b]</td></tr></tbody></table><p>y</p>",
        "<p>x</p><!--c--><p>|y</p>");
    Row("delete the only thing in the page", DECMD_DELETEROWS, "<table><tbody><tr><td>a|</td></tr></tbody></table>",
        "<p>|<br></p>");
    Row("delete all of a header", DECMD_DELETEROWS,
        "<table><thead><tr><th>a|</th></tr></thead><tbody><tr><td>b</td></tr></tbody></table>",
        "<table><tbody><tr><td>|b</td></tr></tbody></table>");
}

void TableCommandsTest::Columns_data()
{
    Column();
    Row("to the right, col elements follow", DECMD_INSERTCOL,
        "<table><colgroup><col width=\"10\" align=\"right\"><col></colgroup><tbody><tr><th>a|</th><td>b</td></tr>"
        "<tr><td>c</td><td>d</td></tr></tbody></table>",
        "<table><colgroup><col width=\"10\" align=\"right\"><col align=\"right\"><col></colgroup><tbody>"
        "<tr><th>a</th><th>|<br></th><td>b</td></tr><tr><td>c</td><td><br></td><td>d</td></tr></tbody></table>");
    Row("a group and a col of several grow", DECMD_INSERTCOL,
        "<table><colgroup span=\"2\"></colgroup><tbody><tr><td>a</td><td>b|</td></tr></tbody></table>",
        "<table><colgroup span=\"3\"></colgroup><tbody><tr><td>a</td><td>b</td><td>|<br></td></tr></tbody></table>");
    Row("crossing cells grow, short rows stay short", DECMD_INSERTCOL,
        "<table><tbody><tr><td>a</td><td>b|</td><td>c</td></tr><tr><td colspan=\"3\">d</td></tr><tr><td>e</td></tr>"
        "</tbody></table>",
        "<table><tbody><tr><td>a</td><td>b</td><td>|<br></td><td>c</td></tr><tr><td colspan=\"4\">d</td></tr>"
        "<tr><td>e</td></tr></tbody></table>");
    Row("right of a spanned cell", DECMD_INSERTCOL,
        "<table><tbody><tr><td rowspan=\"2\">a|</td><td>b</td></tr><tr><td>c</td></tr></tbody></table>",
        "<table><tbody><tr><td rowspan=\"2\">a</td><td "
        "rowspan=\"2\">|<br></td><td>b</td></tr><tr><td>c</td></tr></tbody>"
        "</table>");
    Row("delete: spans shrink, cols go", DECMD_DELETECOLS,
        "<table><colgroup><col span=\"2\"></colgroup><colgroup><col class=\"k\"></colgroup><tbody>"
        "<tr><td>a</td><td colspan=\"2\">b</td></tr><tr><td>c</td><td>d</td><td>e|</td></tr></tbody></table>",
        "<table><colgroup><col span=\"2\"></colgroup><tbody><tr><td>a</td><td>b</td></tr><tr><td>c</td><td>|d</td></tr>"
        "</tbody></table>");
    Row("delete: a row left without cells goes too", DECMD_DELETECOLS,
        "<table><tbody><tr><td>a|</td><td>b</td></tr><tr><td>c</td></tr></tbody></table>",
        "<table><tbody><tr><td>|b</td></tr></tbody></table>");
    Row("delete all columns", DECMD_DELETECOLS, "<table><tbody><tr><td>[a</td><td>b]</td></tr></tbody></table><p>y</p>",
        "<p>|y</p>");
    Row("delete in a cell of another table", DECMD_DELETECOLS,
        "<table><tbody><tr><td><table><tbody><tr><td>a|</td></tr></tbody></table></td></tr></tbody></table>",
        "<table><tbody><tr><td>|<br></td></tr></tbody></table>");
}

void TableCommandsTest::Cells_data()
{
    Column();
    Row("insert: what follows moves on", DECMD_INSERTCELL,
        "<table><tbody><tr><th>a|</th><td>b</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>",
        "<table><tbody><tr><th>a</th><th>|<br></th><td>b</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>");
    Row("insert in each selected row", DECMD_INSERTCELL,
        "<table><tbody><tr><td>[a</td></tr><tr><td>b]</td></tr></tbody></table>",
        "<table><tbody><tr><td>a</td><td>|<br></td></tr><tr><td>b</td><td><br></td></tr></tbody></table>");
    Row("delete: what follows moves up", DECMD_DELETECELLS,
        "<table><tbody><tr><td>a|</td><td>b</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>",
        "<table><tbody><tr><td>|b</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>");
    Row("delete the last of a row", DECMD_DELETECELLS,
        "<table><tbody><tr><td>a|</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>",
        "<table><tbody><tr><td>|c</td><td>d</td></tr></tbody></table>");
    Row("delete: a row that a span needs stays", DECMD_DELETECELLS,
        "<table><tbody><tr><td rowspan=\"2\">a</td><td>b</td></tr><tr><td>c|</td></tr></tbody></table>",
        "<table><tbody><tr><td rowspan=\"2\">|a</td><td>b</td></tr><tr></tr></tbody></table>");
    Row("delete the last", DECMD_DELETECELLS, "<p>x</p><table><tbody><tr><td>a|</td></tr></tbody></table><p>y</p>",
        "<p>x</p><p>|y</p>");
}

void TableCommandsTest::MergeAndSplit_data()
{
    Column();
    Row("merge: content in order, empty cells add nothing", DECMD_MERGECELLS,
        "<table><tbody><tr><td>[a</td><td>&nbsp;</td><td>x</td></tr><tr><td><br></td><td><b>b]</b></td><td>y</td></tr>"
        "<tr><td>1</td><td>2</td><td>3</td></tr></tbody></table>",
        "<table><tbody><tr><td rowspan=\"2\" colspan=\"2\">|a<br><b>b</b></td><td>x</td></tr><tr><td>y</td></tr>"
        "<tr><td>1</td><td>2</td><td>3</td></tr></tbody></table>");
    Row("merge: blocks need no break, comments come along", DECMD_MERGECELLS,
        "<table><tbody><tr><td><!--i--><br></td><td><p>[a</p></td><td><!--j--></td><td>b]</td></tr>"
        "<tr><td>1</td><td>2</td><td>3</td><td>4</td></tr></tbody></table>",
        "<table><tbody><tr><td><!--i--><br></td><td colspan=\"3\"><p>|a</p><!--j-->b</td></tr>"
        "<tr><td>1</td><td>2</td><td>3</td><td>4</td></tr></tbody></table>");
    Row("merge grows until no span is cut", DECMD_MERGECELLS,
        "<table><tbody><tr><td>[a</td><td rowspan=\"2\">b]</td></tr><tr><td>c</td></tr><tr><td>1</td><td>2</td></tr>"
        "</tbody></table>",
        "<table><tbody><tr><td colspan=\"2\">|a<br>b<br>c</td></tr><tr><td>1</td><td>2</td></tr></tbody></table>");
    Row("merge whole columns: they become one", DECMD_MERGECELLS,
        "<table><colgroup><col><col "
        "class=\"k\"></colgroup><tbody><tr><td>[a</td><td>b</td></tr><tr><td>c</td><td>d]</td>"
        "</tr></tbody></table>",
        "<table><colgroup><col></colgroup><tbody><tr><td>|a<br>b<br>c<br>d</td></tr></tbody></table>");
    Row("split a spanned cell", DECMD_SPLITCELL,
        "<table><tbody><tr><td rowspan=\"2\" colspan=\"2\" align=\"right\">a|</td><td>b</td></tr><tr><td>c</td></tr>"
        "</tbody></table>",
        "<table><tbody><tr><td align=\"right\">|a</td><td align=\"right\"><br></td><td>b</td></tr>"
        "<tr><td align=\"right\"><br></td><td align=\"right\"><br></td><td>c</td></tr></tbody></table>");
    Row("split a plain cell: its column widens", DECMD_SPLITCELL,
        "<table><tbody><tr><th>a|</th><td>b</td></tr><tr><td>c</td><td>d</td></tr></tbody></table>",
        "<table><tbody><tr><th>|a</th><th><br></th><td>b</td></tr><tr><td colspan=\"2\">c</td><td>d</td></tr></tbody>"
        "</table>");
    Row("split two of a column", DECMD_SPLITCELL,
        "<table><tbody><tr><td>[a</td></tr><tr><td>b]</td></tr><tr><td>c</td></tr></tbody></table>",
        "<table><tbody><tr><td>|a</td><td><br></td></tr><tr><td>b</td><td><br></td></tr><tr><td "
        "colspan=\"2\">c</td></tr>"
        "</tbody></table>");
}

void TableCommandsTest::Insert_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<InsertTableParam>("table");
    QTest::addColumn<QString>("after");
    const InsertTableParam one{.NumRows = 1, .NumCols = 1};
    const QString plain = u"<table><tbody><tr><td>|<br></td></tr></tbody></table>"_s;
    QTest::newRow("attributes as text, a caption")
        << u"<p>a|</p>"_s
        << InsertTableParam{.NumRows = 2,
                            .NumCols = 2,
                            .TableAttrs = u" WIDTH=100% ALIGN=CENTER BORDER=0"_s,
                            .CellAttrs = u"nowrap title='a b'"_s,
                            .Caption = u"1 < 2"_s}
        << u"<p>a</p><table width=\"100%\" align=\"CENTER\" border=\"0\"><caption>1 &lt; 2</caption><tbody>"
           "<tr><td nowrap=\"\" title=\"a b\">|<br></td><td nowrap=\"\" title=\"a b\"><br></td></tr>"
           "<tr><td nowrap=\"\" title=\"a b\"><br></td><td nowrap=\"\" title=\"a b\"><br></td></tr></tbody></table>"_s;
    QTest::newRow("splits a line, inline tags too")
        << u"<p>a<b>b|c</b>d</p>"_s << one << u"<p>a<b>b</b></p>"_s + plain + u"<p><b>c</b>d</p>"_s;
    QTest::newRow("splits a heading") << u"<h2>a|b</h2>"_s << one << u"<h2>a</h2>"_s + plain + u"<h2>b</h2>"_s;
    QTest::newRow("an empty line becomes the table") << u"<p>|<br></p><p>x</p>"_s << one << plain + u"<p>x</p>"_s;
    QTest::newRow("in an empty cell") << u"<table><tbody><tr><td>|<br></td></tr></tbody></table>"_s << one
                                      << u"<table><tbody><tr><td>"_s + plain + u"</td></tr></tbody></table>"_s;
    QTest::newRow("in a list item") << u"<ul><li>a|b</li></ul>"_s << one << u"<ul><li>a"_s + plain + u"b</li></ul>"_s;
    QTest::newRow("in place of the selection")
        << u"<p>a[b</p><p>c]d</p>"_s << one << u"<p>a</p>"_s + plain + u"<p>d</p>"_s;
    QTest::newRow("formats of what goes leave nothing behind")
        << u"<p>a<font color=\"red\">[b</font>c]d</p>"_s << one << u"<p>a</p>"_s + plain + u"<p>d</p>"_s;
    QTest::newRow("an empty line's comment stays") << u"<p><!--c-->|<br></p>"_s << one << u"<!--c-->"_s + plain;
}

void TableCommandsTest::Insert()
{
    QFETCH(QString, before);
    QFETCH(InsertTableParam, table);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    const QString marked = m_rig->Body();
    const QVariant answer =
        m_rig->Surface.ExecCommand(DECMD_INSERTTABLE, ExecOption::DontPromptUser, QVariant::fromValue(table));
    QCOMPARE(answer.value<InsertTableParam>().TableAttrs, table.TableAttrs);
    QCOMPARE(m_rig->Body(), after);
    QVERIFY(m_rig->ParsesBack());
    // Typed text takes the place of what kept the cell open.
    m_rig->Type(u"x"_s);
    QVERIFY2(m_rig->Body().contains(u">x|</td>"_s), qPrintable(m_rig->Body()));
    m_rig->UndoAll();
    QCOMPARE(m_rig->Body(), marked);
    m_rig->Surface.ExecCommand(DECMD_REDO);
    QCOMPARE(m_rig->Body(), after);
}

void TableCommandsTest::Statuses_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("available"); // insertTable, rows and the like, split, merge
    const QString table = u"<table><caption>k%1</caption><thead><tr><th>%2a</th><td>b%3</td></tr></thead>"
                          "<tbody><tr><td>c%4</td></tr></tbody></table><p>d%5</p>"_s;
    const auto with = [&](const char *a, const char *b, const char *c, const char *d, const char *e) {
        return table.arg(QLatin1String(a), QLatin1String(b), QLatin1String(c), QLatin1String(d), QLatin1String(e));
    };
    QTest::newRow("in text") << with("", "", "", "", "|") << u"1000"_s;
    QTest::newRow("in a cell") << with("", "", "|", "", "") << u"1110"_s;
    QTest::newRow("in a caption") << with("|", "", "", "", "") << u"0000"_s;
    QTest::newRow("two cells") << with("", "[", "]", "", "") << u"1111"_s;
    QTest::newRow("text of one cell") << u"<table><tbody><tr><td>a[b]c</td></tr></tbody></table>"_s << u"1110"_s;
    QTest::newRow("across sections") << with("", "[", "", "]", "") << u"1110"_s;
    QTest::newRow("from a cell out of the table") << with("", "", "", "[", "]") << u"1000"_s;
    QTest::newRow("from a cell into a table in it")
        << u"<table><tbody><tr><td>[a<table><tbody><tr><td>b]</td></tr></tbody></table></td></tr></tbody></table>"_s
        << u"1110"_s;
}

void TableCommandsTest::Statuses()
{
    QFETCH(QString, body);
    QFETCH(QString, available);
    m_rig->SetBody(body);
    QString found;
    for (Decmd command : {DECMD_INSERTTABLE, DECMD_INSERTROW, DECMD_SPLITCELL, DECMD_MERGECELLS})
        found += m_rig->Surface.QueryStatus(command) == DECMDF_ENABLED ? u'1' : u'0';
    QCOMPARE(found, available);
    for (Decmd command : {DECMD_INSERTCOL, DECMD_INSERTCELL, DECMD_DELETEROWS, DECMD_DELETECOLS, DECMD_DELETECELLS})
        QCOMPARE(m_rig->Surface.QueryStatus(command), m_rig->Surface.QueryStatus(DECMD_INSERTROW));
}

void TableCommandsTest::LargeTable()
{
    QString rows;
    for (int i = 0; i < 2000; ++i)
        rows += u"<tr>"_s + u"<td>x</td>"_s.repeated(10) + u"</tr>"_s;
    m_rig->SetBody(u"<table><tbody>"_s + rows + u"</tbody></table>"_s);
    m_rig->Run(u"document.getSelection().collapse(document.querySelectorAll('td')[10005].firstChild, 0)"_s);
    // Linear in the cells: each takes tens of milliseconds. The limit only catches what would be quadratic.
    for (const char *name : {"insertRow", "insertColumn", "splitCell", "deleteColumns", "deleteRows"}) {
        const double time = m_rig
                                ->Run(u"(() => { const t = performance.now(); Surface.call('run', { name: '%1' });"
                                      "return performance.now() - t; })()"_s.arg(QLatin1String(name)))
                                .toDouble();
        qInfo("%s on 20,000 cells: %.0f ms", name, time);
        QVERIFY(time < 3000);
    }
}

QTEST_MAIN(TableCommandsTest)
#include "TableCommandsTest.moc"
