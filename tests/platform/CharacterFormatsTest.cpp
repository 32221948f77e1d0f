#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Bold and its like, font, size and colour at words, carets and across elements: the markup they leave, their status.
class CharacterFormatsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Command_data();
    void Command();
    void Status_data();
    void Status();
    void Value_data();
    void Value();
    void Waiting_data();
    void Waiting();
    void WholePage();

private:
    DesignSurface &Surface() { return m_rig->Surface; }
    QVariant IsParseStable()
    {
        return m_rig->Run(u"new DOMParser().parseFromString(document.documentElement.outerHTML, 'text/html')"
                          ".body.isEqualNode(document.body)"_s);
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

void CharacterFormatsTest::Command_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariant>("argument");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &before, Decmd command, const QString &after,
                        const QVariant &argument = {}) {
        QTest::newRow(name) << before << int(command) << argument << after;
    };
    row("word", u"<p>a [word] b</p>"_s, DECMD_BOLD, u"<p>a <b>[word]</b> b</p>"_s);
    row("taken off", u"<p>a <i>[word]</i> b</p>"_s, DECMD_ITALIC, u"<p>a [word] b</p>"_s);
    row("em taken off", u"<p>a <em>[word]</em> b</p>"_s, DECMD_ITALIC, u"<p>a [word] b</p>"_s);
    row("middle of a strong", u"<p><strong>aa[bb]cc</strong></p>"_s, DECMD_BOLD,
        u"<p><strong>aa</strong>[bb]<strong>cc</strong></p>"_s);
    row("strong grows", u"<p><strong>aa[bb</strong> cc]</p>"_s, DECMD_BOLD, u"<p><strong>aa[bb cc]</strong></p>"_s);
    row("no bold in bold", u"<p>[a <b>b</b> c]</p>"_s, DECMD_BOLD, u"<p><b>[a b c]</b></p>"_s);
    row("two bolds meet", u"<p><b>a</b>[ x ]<b>b</b></p>"_s, DECMD_BOLD, u"<p><b>a[ x ]b</b></p>"_s);
    row("one in each block", u"<p>a[b</p>\n<ul>\n<li>c\n<li>d\n</ul>\n<p>e]f</p>"_s, DECMD_BOLD,
        u"<p>a<b>[b</b></p>\n<ul>\n<li><b>c</b>\n</li><li><b>d</b>\n</li></ul>\n<p><b>e]</b>f</p>"_s);
    row("cells", u"<table><tbody>\n<tr><td>[a</td> <td> b </td></tr>\n</tbody></table><p>c]</p>"_s, DECMD_BOLD,
        u"<table><tbody>\n<tr><td><b>[a</b></td> <td> <b>b</b> </td></tr>\n</tbody></table><p><b>c]</b></p>"_s);
    row("off inside a named link", u"<p><b>a <a name=\"n\">x[y]z</a> b</b></p>"_s, DECMD_BOLD,
        u"<p><b>a </b><a name=\"n\"><b>x</b>[y]<b>z</b></a><b> b</b></p>"_s);
    row("off under a bold around blocks", u"<b><p>a</p><p>[b]</p><p>c</p></b>"_s, DECMD_BOLD,
        u"<p><b>a</b></p><p>[b]</p><p><b>c</b></p>"_s);
    row("a class outlives its bold", u"<p>[<b class=\"k\">a</b>]</p>"_s, DECMD_BOLD,
        u"<p><span class=\"k\">[a]</span></p>"_s);
    row("style that says the opposite", u"<p>[a<span style=\"font-weight: normal\">b</span>]</p>"_s, DECMD_BOLD,
        u"<p><b>[ab]</b></p>"_s);
    row("off in a part of a style", u"<p><span style=\"color: red; font-weight: bold;\">a[b]c</span></p>"_s, DECMD_BOLD,
        u"<p><span style=\"color: red; font-weight: bold;\">a</span><span style=\"color: red;\">[b]</span>"
        "<span style=\"color: red; font-weight: bold;\">c</span></p>"_s);
    row("line breaks and code go along", u"<p>[a<br><!--n-->b]</p>"_s, DECMD_BOLD, u"<p><b>[a<br><!--n-->b]</b></p>"_s);
    row("scripts stay alone", u"<p>[a</p><script>var a;</script><p>b]</p>"_s, DECMD_BOLD,
        u"<p><b>[a</b></p><script>var a;</script><p><b>b]</b></p>"_s);
    row("picture alone", u"<p>a[<img src=\"x\">]</p>"_s, DECMD_UNDERLINE, u"<p>a[<img src=\"x\">]</p>"_s);
    row("fields keep their words", u"<p>[a<select><option>o</option></select>]</p>"_s, DECMD_BOLD,
        u"<p><b>[a</b><select><option>o</option></select>]</p>"_s);
    row("preformatted", u"<pre>  [a\n  b]</pre>"_s, DECMD_BOLD, u"<pre>  <b>[a\n  b]</b></pre>"_s);
    row("heading can be bold", u"<h1>[a]</h1>"_s, DECMD_BOLD, u"<h1><b>[a]</b></h1>"_s);

    row("face", u"<p>a [b]</p>"_s, DECMD_SETFONTNAME, u"<p>a <font face=\"Arial\">[b]</font></p>"_s, u"Arial"_s);
    row("size joins the face", u"<p><font face=\"Arial\">[b]</font></p>"_s, DECMD_SETFONTSIZE,
        u"<p><font face=\"Arial\" size=\"5\">[b]</font></p>"_s, 5);
    row("size out of bounds", u"<p>[b]</p>"_s, DECMD_SETFONTSIZE, u"<p><font size=\"7\">[b]</font></p>"_s, 50);
    row("part of a font", u"<p><font color=\"red\">a[b]c</font></p>"_s, DECMD_SETFORECOLOR,
        u"<p><font color=\"red\">a<font color=\"#0000FF\">[b]</font>c</font></p>"_s, u"#0000FF"_s);
    row("inner fonts give way", u"<p>[a<font size=\"1\">b</font><font face=\"x\" size=\"1\">c</font>]</p>"_s,
        DECMD_SETFONTSIZE, u"<p><font size=\"4\">[ab<font face=\"x\">c]</font></font></p>"_s, 4);
    row("the same again", u"<p><font color=\"#ff0000\">a[b]c</font></p>"_s, DECMD_SETFORECOLOR,
        u"<p><font color=\"#ff0000\">a[b]c</font></p>"_s, u"#FF0000"_s);
    row("equal fonts meet", u"<p><font size=\"2\">a</font>[b]<font size=\"2\">c</font></p>"_s, DECMD_SETFONTSIZE,
        u"<p><font size=\"2\">a[b]c</font></p>"_s, 2);
    row("colour reaches into a link", u"<p>[a <a href=\"x\">b</a>]</p>"_s, DECMD_SETFORECOLOR,
        u"<p><font color=\"#FF0000\">[a </font><a href=\"x\"><font color=\"#FF0000\">b]</font></a></p>"_s,
        u"#FF0000"_s);
    row("style gives way", u"<p>[<span style=\"color: red\">b</span>]</p>"_s, DECMD_SETFORECOLOR,
        u"<p><font color=\"#0000FF\">[b]</font></p>"_s, u"#0000FF"_s);
    row("bold keeps the font", u"<p><font size=\"2\">[b]</font></p>"_s, DECMD_BOLD,
        u"<p><font size=\"2\"><b>[b]</b></font></p>"_s);
}

void CharacterFormatsTest::Command()
{
    QFETCH(QString, before);
    QFETCH(int, command);
    QFETCH(QVariant, argument);
    m_rig->SetBody(before);
    const QString start = m_rig->Body();
    Surface().ExecCommand(Decmd(command), ExecOption::DoDefault, argument);
    QTEST(m_rig->Body(), "after");
    QCOMPARE(IsParseStable(), true);
    QVERIFY(m_rig->UndoAll() <= 1);
    QCOMPARE(m_rig->Body(), start);
    m_rig->RedoAll();
    QTEST(m_rig->Body(), "after");
}

void CharacterFormatsTest::Status_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("bold");
    QTest::newRow("caret in strong") << u"<p><strong>a|</strong></p>"_s << int(DECMDF_LATCHED);
    QTest::newRow("nothing") << u"<p>[a]<b>b</b></p>"_s << int(DECMDF_ENABLED);
    QTest::newRow("all, over blocks") << u"<p><b>[a</b></p> <p><i><b>b]</b></i></p>"_s << int(DECMDF_LATCHED);
    QTest::newRow("part") << u"<p><b>[a</b></p><p>b]</p>"_s << int(DECMDF_NINCHED);
    QTest::newRow("by style") << u"<p>[<span style='font-weight:bold'>a</span>]</p>"_s << int(DECMDF_LATCHED);
    QTest::newRow("style against it") << u"<p>[<b>a<span style='font-weight:normal'>b</span></b>]</p>"_s
                                      << int(DECMDF_NINCHED);
    QTest::newRow("far behind") << u"<p>[<b>x</b></p>"_s + u"<p><b>x</b></p>"_s.repeated(500) + u"<p>b]</p>"_s
                                << int(DECMDF_NINCHED);
}

void CharacterFormatsTest::Status()
{
    QFETCH(QString, body);
    m_rig->SetBody(body);
    QTEST(int(Surface().QueryStatus(DECMD_BOLD)), "bold");
    QCOMPARE(Surface().QueryStatus(DECMD_ITALIC) >= DECMDF_LATCHED, body.contains(u"<i>"_s));
}

void CharacterFormatsTest::Value_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const QString &body, Decmd command, const QVariant &value) {
        QTest::newRow(name) << body << int(command) << value;
    };
    row("face", u"<p><font face='Courier New, monospace'><b>[a]</b></font></p>"_s, DECMD_GETFONTNAME, u"Courier New"_s);
    row("face by style", u"<p style=\"font-family:'Some Face'\">|a</p>"_s, DECMD_GETFONTNAME, u"Some Face"_s);
    row("faces differ", u"<p>[a<font face=Arial>b</font>]</p>"_s, DECMD_GETFONTNAME, u""_s);
    row("size", u"<p><font size=5>a|</font></p>"_s, DECMD_GETFONTSIZE, 5);
    row("relative size", u"<p><font size='+1'>a|</font></p>"_s, DECMD_GETFONTSIZE, 4);
    row("size by style inside", u"<p><font size=5><span style='font-size:10px'>a|</span></font></p>"_s,
        DECMD_GETFONTSIZE, 1);
    row("plain size", u"<p>a|</p>"_s, DECMD_GETFONTSIZE, 3);
    row("heading", u"<h1>a|</h1>"_s, DECMD_GETFONTSIZE, 6);
    row("sizes differ", u"<h1>[a</h1><p>b]</p>"_s, DECMD_GETFONTSIZE, {});
    row("named colour", u"<p><font color=red>a|</font></p>"_s, DECMD_GETFORECOLOR, u"#FF0000"_s);
    row("colours differ", u"<p><font color=red>[a</font>b]</p>"_s, DECMD_GETFORECOLOR, u""_s);
}

void CharacterFormatsTest::Value()
{
    QFETCH(QString, body);
    QFETCH(int, command);
    QFETCH(QVariant, value);
    m_rig->SetBody(body);
    const QVariant answer = Surface().ExecCommand(Decmd(command), ExecOption::DontPromptUser);
    QCOMPARE(answer.isValid() && !answer.isNull(), value.isValid());
    QCOMPARE(answer.toString(), value.toString());
}

void CharacterFormatsTest::Waiting_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("heldBefore");
    QTest::newRow("in a word") << u"<p>a|b</p>"_s << u"<p>a<b>xy|</b>b</p>"_s << false;
    QTest::newRow("in a heading") << u"<h2>a|</h2>"_s << u"<h2>a<b>xy|</b></h2>"_s << false;
    QTest::newRow("taken off") << u"<p><b>a|b</b></p>"_s << u"<p><b>a</b>xy|<b>b</b></p>"_s << true;
    QTest::newRow("taken off in strong") << u"<p><strong>a|</strong> c</p>"_s << u"<p><strong>a</strong>xy| c</p>"_s
                                         << true;
}

void CharacterFormatsTest::Waiting()
{
    QFETCH(QString, before);
    QFETCH(bool, heldBefore);
    m_rig->SetBody(before);
    m_rig->Key(Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(Surface().QueryStatus(DECMD_BOLD), heldBefore ? DECMDF_ENABLED : DECMDF_LATCHED);
    QVERIFY(!Surface().IsDirty());
    m_rig->Type(u"xy"_s);
    QTEST(m_rig->Body(), "after");
    QCOMPARE(Surface().QueryStatus(DECMD_BOLD), heldBefore ? DECMDF_ENABLED : DECMDF_LATCHED);
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), before);

    // A caret that goes elsewhere takes nothing along, and two presses are none.
    m_rig->Key(Qt::Key_B, Qt::ControlModifier);
    m_rig->Key(Qt::Key_Home);
    m_rig->Key(Qt::Key_End);
    QCOMPARE(Surface().QueryStatus(DECMD_ITALIC), DECMDF_ENABLED);
    m_rig->Key(Qt::Key_I, Qt::ControlModifier);
    m_rig->Key(Qt::Key_I, Qt::ControlModifier);
    m_rig->Type(u"z"_s);
    QVERIFY(!m_rig->PlainBody().contains(u"<i>"_s));
}

void CharacterFormatsTest::WholePage()
{
    m_rig->SetBody(u"|"_s + u"<p>Some <i>words</i> of a long page.</p>\n"_s.repeated(4000));
    const QString before = m_rig->PlainBody();
    Surface().ExecCommand(DECMD_SELECTALL);
    Surface().ExecCommand(DECMD_BOLD);
    Surface().ExecCommand(DECMD_SETFORECOLOR, ExecOption::DoDefault, u"#FF0000"_s);
    QCOMPARE(Surface().QueryStatus(DECMD_BOLD), DECMDF_LATCHED);
    QCOMPARE(
        m_rig->PlainBody().count(u"<p><font color=\"#FF0000\"><b>Some <i>words</i> of a long page.</b></font></p>"_s),
        4000);
    Surface().ExecCommand(DECMD_BOLD);
    QVERIFY(!m_rig->PlainBody().contains(u"<b>"_s));
    QCOMPARE(m_rig->UndoAll(), 3);
    QCOMPARE(m_rig->PlainBody(), before);
}

QTEST_MAIN(CharacterFormatsTest)
#include "CharacterFormatsTest.moc"
