#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Block formats and alignment as commands: the markup that they leave and what the surface says of it.
class BlocksTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Names()
    {
        const QStringList names = m_rig->Surface.ExecCommand(DECMD_GETBLOCKFMTNAMES).toStringList();
        QCOMPARE(names.mid(0, 3), QStringList({u"Normal"_s, u"Heading 1"_s, u"Heading 2"_s}));
        for (const QString &name : names) { // each can be set and is then what the box shows
            m_rig->SetBody(u"<p>a|b</p>"_s);
            m_rig->Surface.ExecCommand(DECMD_SETBLOCKFMT, ExecOption::DoDefault, name);
            QCOMPARE(m_rig->Surface.ExecCommand(DECMD_GETBLOCKFMT).toString(), name);
            QVERIFY2(m_rig->ParsesBack(), qUtf8Printable(name));
        }
    }

    void SetFormat_data();
    void SetFormat();
    void GetFormat_data();
    void GetFormat();
    void Align_data();
    void Align();
    void AlignObject();
    void AlignStatus_data();
    void AlignStatus();

private:
    std::unique_ptr<SurfaceRig> m_rig;
};

void BlocksTest::SetFormat_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *before, const char *format, const char *after) {
        QTest::newRow(name) << QString::fromUtf8(before) << QString::fromUtf8(format) << QString::fromUtf8(after);
    };
    row("attributes stay", "<p id=\"i\" class=\"k\" align=\"right\">a<b>b|</b></p>", "Heading 2",
        "<h2 id=\"i\" class=\"k\" align=\"right\">a<b>b|</b></h2>");
    row("back", "<h2 align=\"right\">a|b</h2>", "Normal", "<p align=\"right\">a|b</p>");
    row("several", "<h1>a[b</h1>\n<!--c--><p>c</p>\n<ul><li>d</li></ul><p>e]</p>", "Heading 3",
        "<h3>a[b</h3>\n<!--c--><h3>c</h3>\n<ul><li><h3>d</h3></li></ul><h3>e]</h3>");
    row("only in front of the last", "<p>[a</p><p>]b</p>", "Heading 1", "<h1>[a</h1><p>]b</p>");
    row("items stay items", "<p>[a</p><ul><li>b</li></ul><p>c]</p>", "Normal", "<p>[a</p><ul><li>b</li></ul><p>c]</p>");
    row("heading in an item", "<ul><li><h2>a|</h2></li></ul>", "Normal", "<ul><li>a|</li></ul>");
    row("item to normal", "<ul><li>a</li><li>b|</li></ul>", "Normal", "<ul><li>a</li></ul><p>b|</p>");
    row("bare text", "a<b>b|</b>\n<p>c</p>", "Heading 1", "<h1>a<b>b|</b></h1>\n<p>c</p>");
    row("bare line", "a<br>b|<br>c", "Heading 1", "a<h1>b|</h1>c");
    row("cell", "<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>", "Heading 1",
        "<table><tbody><tr><td><h1>a|</h1></td><td>b</td></tr></tbody></table>");
    row("cells", "<table><tbody><tr><td>[a</td><td>b]</td></tr></tbody></table>", "Formatted",
        "<table><tbody><tr><td><pre>[a</pre></td><td><pre>b]</pre></td></tr></tbody></table>");
    row("text beside a nested list", "<ul><li>a|<ul><li>n</li></ul></li></ul>", "Heading 4",
        "<ul><li><h4>a|</h4><ul><li>n</li></ul></li></ul>");
    row("division", "<div class=\"k\">a|</div>", "Normal", "<p class=\"k\">a|</p>");
    row("positioned division", "<div style=\"position:absolute\">a|</div>", "Heading 1",
        "<div style=\"position:absolute\"><h1>a|</h1></div>");
    row("font around blocks", "<font size=\"2\"><p>a|</p>b</font>", "Heading 1",
        "<font size=\"2\"><h1>a|</h1>b</font>");
    row("to preformatted", "<p>a|\n  b</p>", "Formatted", "<pre>a| b</pre>");
    row("from preformatted", "<pre>|a\n  b</pre>", "Normal", "<p>|a<br>&nbsp; b</p>");
    row("empty paragraph", "<p>|<br></p>", "Heading 1", "<h1>|<br></h1>");
    row("empty cell", "<table><tbody><tr><td>|</td></tr></tbody></table>", "Heading 1",
        "<table><tbody><tr><td><h1>|<br></h1></td></tr></tbody></table>");
    row("list", "<h2>a[b</h2><p>c]</p>", "Numbered List", "<ol><li><h2>a[b</h2></li><li>c]</li></ol>");
}

void BlocksTest::SetFormat()
{
    QFETCH(QString, before);
    QFETCH(QString, format);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    m_rig->Surface.ExecCommand(DECMD_SETBLOCKFMT, ExecOption::DoDefault, format);
    QCOMPARE(m_rig->Body(), after);
    QVERIFY(m_rig->ParsesBack());
    if (before == after)
        return;
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(m_rig->Body(), before);
    const QString plain = m_rig->PlainBody();
    m_rig->Surface.ExecCommand(DECMD_REDO);
    QVERIFY(m_rig->PlainBody() != plain);
}

void BlocksTest::GetFormat_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("format");
    QTest::newRow("inside a format") << u"<h3>a<b>b|</b></h3>"_s << u"Heading 3"_s;
    QTest::newRow("mixed") << u"<h3>a[b</h3><p>c]</p>"_s << u""_s;
    QTest::newRow("alike over a rule") << u"<h3>a[b</h3><hr><h3>c]</h3>"_s << u"Heading 3"_s;
    QTest::newRow("cell in a heading's neighbour")
        << u"<table><tbody><tr><td>a|</td></tr></tbody></table>"_s << u"Normal"_s;
    QTest::newRow("paragraph in an item") << u"<ol><li><p>a|</p></li></ol>"_s << u"Numbered List"_s;
    QTest::newRow("cell in an item") << u"<ul><li><table><tbody><tr><td>a|</td></tr></tbody></table></li></ul>"_s
                                     << u"Normal"_s;
}

void BlocksTest::GetFormat()
{
    QFETCH(QString, body);
    m_rig->SetBody(body);
    QTEST(m_rig->Surface.ExecCommand(DECMD_GETBLOCKFMT).toString(), "format");
}

void BlocksTest::Align_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *before, int command, const char *after) {
        QTest::newRow(name) << QString::fromUtf8(before) << command << QString::fromUtf8(after);
    };
    row("paragraphs", "<p>a[b</p><h2 align=\"left\">c]</h2>", DECMD_JUSTIFYCENTER,
        "<p align=\"center\">a[b</p><h2 align=\"center\">c]</h2>");
    row("left takes it away", "<p align=\"center\">a|</p>", DECMD_JUSTIFYLEFT, "<p>a|</p>");
    row("left in a centre", "<center><p>a|</p></center>", DECMD_JUSTIFYLEFT,
        "<center><p align=\"left\">a|</p></center>");
    row("as its division", "<div align=\"right\"><p align=\"left\">a|</p></div>", DECMD_JUSTIFYRIGHT,
        "<div align=\"right\"><p>a|</p></div>");
    row("style against it", "<p style=\"color:red; text-align: center; margin:0\">a|</p>", DECMD_JUSTIFYRIGHT,
        "<p style=\"color:red; margin:0\" align=\"right\">a|</p>");
    row("only style", "<p style=\"text-align:center\">a|</p>", DECMD_JUSTIFYLEFT, "<p>a|</p>");
    row("cell", "<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>", DECMD_JUSTIFYCENTER,
        "<table><tbody><tr><td align=\"center\">a|</td><td>b</td></tr></tbody></table>");
    row("one of a cell's lines", "<table><tbody><tr><td>a|<ul><li>b</li></ul></td></tr></tbody></table>",
        DECMD_JUSTIFYCENTER,
        "<table><tbody><tr><td><div align=\"center\">a|</div><ul><li>b</li></ul></td></tr></tbody></table>");
    row("head cell", "<table><tbody><tr><th>a|</th></tr></tbody></table>", DECMD_JUSTIFYLEFT,
        "<table><tbody><tr><th align=\"left\">a|</th></tr></tbody></table>");
    row("item", "<ul><li>a|<ul><li>b</li></ul></li></ul>", DECMD_JUSTIFYRIGHT,
        "<ul><li><div align=\"right\">a|</div><ul><li>b</li></ul></li></ul>");
    row("item back", "<ul><li><div align=\"right\">a|</div></li></ul>", DECMD_JUSTIFYLEFT, "<ul><li>a|</li></ul>");
    row("bare text", "a|b<p>c</p>", DECMD_JUSTIFYCENTER, "<p align=\"center\">a|b</p><p>c</p>");
    row("bare text that is left", "a|b", DECMD_JUSTIFYLEFT, "a|b");
    row("preformatted", "<pre>a|</pre>", DECMD_JUSTIFYCENTER, "<div align=\"center\"><pre>a|</pre></div>");
}

void BlocksTest::Align()
{
    QFETCH(QString, before);
    QFETCH(int, command);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    m_rig->Surface.ExecCommand(Decmd(command));
    QCOMPARE(m_rig->Body(), after);
    QVERIFY(m_rig->ParsesBack());
    if (m_rig->UndoAll())
        QCOMPARE(m_rig->Body(), before);
}

void BlocksTest::AlignObject()
{
    m_rig->SetBody(u"<p>|a</p><hr width=\"50%\"><p>b</p>"_s);
    m_rig->Key(Qt::Key_End);
    m_rig->Key(Qt::Key_Delete); // selects the rule
    QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    m_rig->Surface.ExecCommand(DECMD_JUSTIFYLEFT);
    QCOMPARE(m_rig->PlainBody(), u"<p>a</p><hr width=\"50%\" align=\"left\"><p>b</p>"_s);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_JUSTIFYLEFT), DECMDF_LATCHED);
    m_rig->Surface.ExecCommand(DECMD_JUSTIFYCENTER);
    QCOMPARE(m_rig->Body(), u"<p>a</p>[<hr width=\"50%\">]<p>b</p>"_s);
}

void BlocksTest::AlignStatus_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("centre");
    QTest::newRow("none") << u"<p>a|</p>"_s << int(DECMDF_ENABLED);
    QTest::newRow("attribute in capitals") << u"<p align=\"CENTER\"><b>a|</b></p>"_s << int(DECMDF_LATCHED);
    QTest::newRow("centre element") << u"<center>a|</center>"_s << int(DECMDF_LATCHED);
    QTest::newRow("nearest counts") << u"<center><p align=\"left\">a|</p></center>"_s << int(DECMDF_ENABLED);
    QTest::newRow("style counts") << u"<p align=\"left\" style=\"text-align:center\">a|</p>"_s << int(DECMDF_LATCHED);
    QTest::newRow("mixed") << u"<p align=\"center\">a[b</p><p>c]</p>"_s << int(DECMDF_NINCHED);
    QTest::newRow("place of a table") << u"<table align=\"center\"><tbody><tr><td>a|</td></tr></tbody></table>"_s
                                      << int(DECMDF_ENABLED);
}

void BlocksTest::AlignStatus()
{
    QFETCH(QString, body);
    m_rig->SetBody(body);
    QTEST(int(m_rig->Surface.QueryStatus(DECMD_JUSTIFYCENTER)), "centre");
}

QTEST_MAIN(BlocksTest)
#include "BlocksTest.moc"
