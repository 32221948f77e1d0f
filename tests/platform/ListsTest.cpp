#include "support/KeyText.h"
#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Lists, indentation and the Tab key: real lists, nested inside items, and quotes.
class ListsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Toggle_data();
    void Toggle() { RunAndUndo(); }
    void Indent_data();
    void Indent() { RunAndUndo(); }
    void Tab_data();
    void Tab();
    void Status_data();
    void Status();

private:
    static void Columns();
    static void Row(const char *name, const char *before, Decmd command, const char *after);
    void RunAndUndo();

    std::unique_ptr<SurfaceRig> m_rig;
};

void ListsTest::Columns()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("after");
}

void ListsTest::Row(const char *name, const char *before, Decmd command, const char *after)
{
    QTest::newRow(name) << QString::fromUtf8(before) << int(command) << QString::fromUtf8(after);
}

void ListsTest::RunAndUndo()
{
    QFETCH(QString, before);
    QFETCH(int, command);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    m_rig->Surface.ExecCommand(Decmd(command));
    QCOMPARE(m_rig->Body(), after);
    QVERIFY2(m_rig->ParsesBack(), qUtf8Printable(m_rig->PlainBody()));
    const QString plain = m_rig->PlainBody();
    if (!m_rig->UndoAll())
        return;
    QCOMPARE(m_rig->Body(), before);
    m_rig->RedoAll();
    QCOMPARE(m_rig->PlainBody(), plain);
}

void ListsTest::Toggle_data()
{
    Columns();
    const Decmd ol = DECMD_ORDERLIST;
    const Decmd ul = DECMD_UNORDERLIST;
    Row("paragraph", "<p>a|</p>", ul, "<ul><li>a|</li></ul>");
    Row("paragraphs", "<p>a[b</p>\n<!--c--><p>c]</p>", ol, "<ol><li>a[b</li>\n<!--c--><li>c]</li></ol>");
    Row("with attributes", "<p class=\"k\">a|</p>", ul, "<ul><li><p class=\"k\">a|</p></li></ul>");
    Row("empty paragraph", "<p>|<br></p>", ul, "<ul><li>|<br></li></ul>");
    Row("bare lines", "x<br>a[b<br>c]<br>d", ul, "x<ul><li>a[b</li><li>c]</li></ul>d");
    Row("cells", "<table><tbody><tr><td>[a</td><td><p>b]</p></td></tr></tbody></table>", ul,
        "<table><tbody><tr><td><ul><li>[a</li></ul></td><td><ul><li>b]</li></ul></td></tr></tbody></table>");
    Row("list behind", "<p>a|</p>\n<ul id=\"i\"><li>b</li></ul>", ul, "<ul id=\"i\"><li>a|</li>\n<li>b</li></ul>");
    Row("list before", "<ul id=\"i\"><li>b</li></ul>\n<p>a|</p>", ul, "<ul id=\"i\"><li>b</li>\n<li>a|</li></ul>");
    Row("other kind before", "<ol><li>b</li></ol><p>a|</p>", ul, "<ol><li>b</li></ol><ul><li>a|</li></ul>");
    Row("off", "<ul><li>a|</li></ul>", ul, "<p>a|</p>");
    Row("off in the middle", "<ol start=\"3\"><li>a</li><li>[b</li><li>c]</li><li>d</li></ol>", ol,
        "<ol start=\"3\"><li>a</li></ol><p>[b</p><p>c]</p><ol><li>d</li></ol>");
    Row("off with blocks", "<ul><li><h2>a|</h2>b</li></ul>", ul, "<h2>a|</h2>b");
    Row("off when nested", "<ul><li>a<ul><li>n|</li></ul></li><li>b</li></ul>", ul,
        "<ul><li>a</li></ul><p>n|</p><ul><li>b</li></ul>");
    Row("whole list to the other kind", "<ul class=\"k\"><li>a|</li><li>b</li></ul>", ol,
        "<ol class=\"k\"><li>a|</li><li>b</li></ol>");
    Row("some items to the other kind", "<ul><li>a</li><li>[b</li><li>c]</li></ul>", ol,
        "<ul><li>a</li></ul><ol><li>[b</li><li>c]</li></ol>");
    Row("mixed", "<p>[a</p><ul><li>b]</li><li>c</li></ul>", ul, "<ul><li>[a</li><li>b]</li><li>c</li></ul>");
    Row("over a table", "<p>[a</p><table><tbody><tr><td>b</td></tr></tbody></table><p>c]</p>", ul,
        "<ul><li>[a</li></ul><table><tbody><tr><td><ul><li>b</li></ul></td></tr></tbody></table><ul><li>c]</li></ul>");
}

void ListsTest::Indent_data()
{
    Columns();
    const Decmd in = DECMD_INDENT;
    const Decmd out = DECMD_OUTDENT;
    Row("paragraph", "<p class=\"k\">a|</p>", in, "<blockquote><p class=\"k\">a|</p></blockquote>");
    Row("again", "<blockquote><p>a|</p></blockquote>", in,
        "<blockquote><blockquote><p>a|</p></blockquote></blockquote>");
    Row("beside a quote", "<blockquote><p>a</p></blockquote><p>b|</p><blockquote><p>c</p></blockquote>", in,
        "<blockquote><p>a</p><p>b|</p><p>c</p></blockquote>");
    Row("several and a table", "<p>a[</p><table><tbody><tr><td>b</td></tr></tbody></table><p>c]</p>", in,
        "<blockquote><p>a[</p><table><tbody><tr><td>b</td></tr></tbody></table><p>c]</p></blockquote>");
    Row("bare text in a cell", "<table><tbody><tr><td>a|</td></tr></tbody></table>", in,
        "<table><tbody><tr><td><blockquote><p>a|</p></blockquote></td></tr></tbody></table>");
    Row("item", "<ol><li>a</li><li>b|</li><li>c</li></ol>", in, "<ol><li>a<ol><li>b|</li></ol></li><li>c</li></ol>");
    Row("into a nested list", "<ul><li>a<ul><li>n</li></ul></li>\n<li>b|</li></ul>", in,
        "<ul><li>a<ul><li>n</li><li>b|</li></ul></li>\n</ul>");
    Row("items", "<ul><li>a</li><li>[b</li><li>c]</li></ul>", in, "<ul><li>a<ul><li>[b</li><li>c]</li></ul></li></ul>");
    Row("first item", "<ul><li>a|</li></ul>", in, "<ul><li>a|</li></ul>");
    Row("out of a quote", "<blockquote><p>a|</p></blockquote>", out, "<p>a|</p>");
    Row("out of its middle", "<blockquote class=\"k\"><p>a</p><p>b|</p><p>c</p></blockquote>", out,
        "<blockquote class=\"k\"><p>a</p></blockquote><p>b|</p><blockquote class=\"k\"><p>c</p></blockquote>");
    Row("bare text out of a quote", "<blockquote>a|</blockquote>", out, "<p>a|</p>");
    Row("nested item", "<ul><li>a<ul><li>n|</li><li>m</li></ul></li></ul>", out,
        "<ul><li>a</li><li>n|<ul><li>m</li></ul></li></ul>");
    Row("nested items", "<ul><li>a<ul><li>[n</li><li>m]</li></ul></li></ul>", out,
        "<ul><li>a</li><li>[n</li><li>m]</li></ul>");
    Row("item of a list in a list", "<ul><li>a</li><ul><li>n|</li><li>m</li></ul></ul>", out,
        "<ul><li>a</li><li>n|<ul><li>m</li></ul></li></ul>");
    Row("text behind the nested list", "<ul><li>a<ul><li>n|</li></ul>b</li></ul>", out,
        "<ul><li>a</li><li>n|b</li></ul>");
    Row("item of the top", "<ul><li>a|</li><li>b</li></ul>", out, "<p>a|</p><ul><li>b</li></ul>");
    Row("nothing to leave", "<p>a|</p>", out, "<p>a|</p>");
    Row("quote around a cell", "<blockquote><table><tbody><tr><td>a|</td></tr></tbody></table></blockquote>", out,
        "<blockquote><table><tbody><tr><td>a|</td></tr></tbody></table></blockquote>");
}

void ListsTest::Tab_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    QTest::newRow("in") << u"<ul><li>a</li><li>b|</li></ul>"_s << u"Tab x"_s
                        << u"<ul><li>a<ul><li>bx|</li></ul></li></ul>"_s;
    QTest::newRow("out") << u"<ul><li>a<ul><li>b|</li></ul></li></ul>"_s << u"S+Tab"_s
                         << u"<ul><li>a</li><li>b|</li></ul>"_s;
    QTest::newRow("elsewhere") << u"<p>a|</p>"_s << u"Tab S+Tab x"_s << u"<p>ax|</p>"_s;
}

void ListsTest::Tab()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    m_rig->SetBody(before);
    PressKeys(*m_rig, keys);
    QTEST(m_rig->Body(), "after");
}

void ListsTest::Status_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("status");
    const auto row = [](const char *name, const char *body, Decmd command, Decmdf status) {
        QTest::newRow(name) << QString::fromUtf8(body) << int(command) << int(status);
    };
    row("no list", "<p>a|</p>", DECMD_ORDERLIST, DECMDF_ENABLED);
    row("list", "<ol><li><b>a|</b></li></ol>", DECMD_ORDERLIST, DECMDF_LATCHED);
    row("other kind", "<ol><li>a|</li></ol>", DECMD_UNORDERLIST, DECMDF_ENABLED);
    row("half", "<ol><li>a[b</li></ol><p>c]</p>", DECMD_ORDERLIST, DECMDF_NINCHED);
    row("cell in an item", "<ol><li><table><tbody><tr><td>a|</td></tr></tbody></table></li></ol>", DECMD_ORDERLIST,
        DECMDF_ENABLED);
    row("outdent, plain", "<p>a|</p>", DECMD_OUTDENT, DECMDF_DISABLED);
    row("outdent, quote", "<blockquote><p>a|</p></blockquote>", DECMD_OUTDENT, DECMDF_ENABLED);
    row("outdent, item", "<ul><li>a|</li></ul>", DECMD_OUTDENT, DECMDF_ENABLED);
    row("indent, plain", "<p>a|</p>", DECMD_INDENT, DECMDF_ENABLED);
    row("indent, first item", "<ul><li>a|</li></ul>", DECMD_INDENT, DECMDF_DISABLED);
}

void ListsTest::Status()
{
    QFETCH(QString, body);
    QFETCH(int, command);
    m_rig->SetBody(body);
    QTEST(int(m_rig->Surface.QueryStatus(Decmd(command))), "status");
}

QTEST_MAIN(ListsTest)
#include "ListsTest.moc"
