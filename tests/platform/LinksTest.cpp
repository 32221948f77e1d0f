#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Links at words, carets, blocks and pictures, and how they go again.
class LinksTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Command_data();
    void Command();
    void Status_data();
    void Status();
    void PictureAsObject();

private:
    DesignSurface &Surface() { return m_rig->Surface; }

    std::unique_ptr<SurfaceRig> m_rig;
};

void LinksTest::Command_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("after");
    const auto link = [](const char *name, const QString &before, const QString &after) {
        QTest::newRow(name) << before << int(DECMD_HYPERLINK) << u"n.htm"_s << after;
    };
    link("word", u"<p>a [b] c</p>"_s, u"<p>a <a href=\"n.htm\">[b]</a> c</p>"_s);
    link("one a block", u"<p>[a</p>\n<p>b</p>\n<p>c]</p>"_s,
         u"<p><a href=\"n.htm\">[a</a></p>\n<p><a href=\"n.htm\">b</a></p>\n<p><a href=\"n.htm\">c]</a></p>"_s);
    link("caret in a link", u"<p><a href=\"o.htm\"><b>a|b</b></a></p>"_s, u"<p><a href=\"n.htm\"><b>a|b</b></a></p>"_s);
    link("words of one link", u"<p><a href=\"o.htm\">a[b]c</a></p>"_s, u"<p><a href=\"n.htm\">a[b]c</a></p>"_s);
    link("over a whole link", u"<p>[a <i><a href=\"o.htm\">b</a></i> c]</p>"_s,
         u"<p><a href=\"n.htm\">[a <i>b</i> c]</a></p>"_s);
    link("half a link", u"<p>[a <a href=\"o.htm\">b]c</a></p>"_s,
         u"<p><a href=\"n.htm\">[a b]</a><a href=\"o.htm\">c</a></p>"_s);
    link("an anchor becomes the link", u"<p>[a <a name=\"k\">b</a> c]</p>"_s,
         u"<p><a href=\"n.htm\">[a </a><a name=\"k\" href=\"n.htm\">b</a><a href=\"n.htm\"> c]</a></p>"_s);
    link("empty anchor", u"<p>[a<a name=\"k\"></a>b]</p>"_s,
         u"<p><a href=\"n.htm\">[a</a><a name=\"k\"></a><a href=\"n.htm\">b]</a></p>"_s);
    link("a picture with words", u"<p>[<img src=\"i\">b]</p>"_s, u"<p><a href=\"n.htm\">[<img src=\"i\">b]</a></p>"_s);
    link("caret in text", u"<p>a|b</p>"_s, u"<p>a<a href=\"n.htm\">n.htm</a>|b</p>"_s);
    QTest::newRow("address with marks") << u"<p>|</p>"_s << int(DECMD_HYPERLINK) << u"a?b=\"1\"&c"_s
                                        << u"<p><a href=\"a?b=&quot;1&quot;&amp;c\">a?b=\"1\"&amp;c</a>|</p>"_s;
    QTest::newRow("picture") << u"<p>a[b]c</p>"_s << int(DECMD_IMAGE) << u"x y.gif"_s
                             << u"<p>a<img src=\"x y.gif\">|c</p>"_s;

    const auto unlink = [](const char *name, const QString &before, const QString &after) {
        QTest::newRow(name) << before << int(DECMD_UNLINK) << QString() << after;
    };
    unlink("link at the caret", u"<p>a <a href=\"x\" target=\"_top\"><b>b|</b></a> c</p>"_s, u"<p>a <b>b|</b> c</p>"_s);
    unlink("caret between texts", u"<p>a <a href=\"x\">b|c</a> d</p>"_s, u"<p>a b|c d</p>"_s);
    unlink("all of the selection", u"<p>x<a href=\"x\">a[b</a></p><p><a href=\"y\">c</a>d]</p>"_s,
           u"<p>xa[b</p><p>cd]</p>"_s);
    unlink("named link", u"<p><a name=\"k\" href=\"x\">a|</a></p>"_s, u"<p><a name=\"k\">a|</a></p>"_s);
}

void LinksTest::Command()
{
    QFETCH(QString, before);
    QFETCH(int, command);
    QFETCH(QString, argument);
    m_rig->SetBody(before);
    const QString start = m_rig->Body();
    Surface().ExecCommand(Decmd(command), ExecOption::DoDefault, argument);
    QTEST(m_rig->Body(), "after");
    QCOMPARE(m_rig->Run(u"new DOMParser().parseFromString(document.documentElement.outerHTML, 'text/html')"
                        ".body.isEqualNode(document.body)"_s),
             true);
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), start);
}

void LinksTest::Status_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<Decmdf>("unlink");
    QTest::newRow("no link") << u"<p>[a]<a href=x>b</a></p>"_s << DECMDF_DISABLED;
    QTest::newRow("an anchor is no link") << u"<p><a name=x>a|b</a></p>"_s << DECMDF_DISABLED;
    QTest::newRow("caret") << u"<p><a href=x>a|b</a></p>"_s << DECMDF_ENABLED;
    QTest::newRow("within") << u"<p>[a<a href=x><img src=y></a>b]</p>"_s << DECMDF_ENABLED;
}

void LinksTest::Status()
{
    QFETCH(QString, body);
    m_rig->SetBody(body);
    QTEST(Surface().QueryStatus(DECMD_UNLINK), "unlink");
    QCOMPARE(Surface().QueryStatus(DECMD_HYPERLINK), DECMDF_ENABLED);
}

void LinksTest::PictureAsObject()
{
    const auto select = [this](const QString &selector) {
        m_rig->Run(u"getSelection().removeAllRanges(); getSelection().selectAllChildren("
                   "document.querySelector('%1').parentNode)"_s.arg(selector));
    };
    m_rig->SetBody(u"<p><img src=\"i.gif\"></p>"_s);
    select(u"img"_s);
    Surface().ExecCommand(DECMD_HYPERLINK, ExecOption::DoDefault, u"n.htm"_s);
    QCOMPARE(m_rig->PlainBody(), u"<p><a href=\"n.htm\"><img src=\"i.gif\"></a></p>"_s);
    Surface().ExecCommand(DECMD_UNLINK);
    QCOMPARE(m_rig->PlainBody(), u"<p><img src=\"i.gif\"></p>"_s);
}

QTEST_MAIN(LinksTest)
#include "LinksTest.moc"
