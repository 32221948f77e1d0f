#include "document/PageText.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Generator = u"<META Content=\"MSHTML 6.00\" name=GENERATOR>"_s;

QString Filled(const QString &text, qsizetype size)
{
    return text + QString(size - text.size(), u'x');
}

} // namespace

class PageTextTest : public QObject
{
    Q_OBJECT

private slots:
    void LostPages_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("hasBodyTag");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<bool>("blank");
        const QString body = u"<BODY>some text</BODY>"_s;
        QTest::newRow("page") << body << true << false << false;
        QTest::newRow("short with generator") << Filled(Generator + body, 250) << true << true << true;
        QTest::newRow("one short of 300") << Filled(Generator + body, 299) << true << true << true;
        QTest::newRow("300 with generator") << Filled(Generator + body, 300) << true << false << false;
        QTest::newRow("generator with the name first")
            << u"<META name=GENERATOR content=\"MSHTML 6\">"_s + body << true << false << true;
        QTest::newRow("body lost") << u"<P>text"_s << true << true << true;
        QTest::newRow("never had a body") << u"<P>text"_s << false << false << false;
        QTest::newRow("mixed case body") << u"<Body>some text</Body>"_s << true << false << false;
        QTest::newRow("empty body") << u"<BODY>\r\n</BODY>"_s << true << false << true;
        QTest::newRow("eight characters") << u"<BODY a=b>12345678</BODY>"_s << true << false << true;
        QTest::newRow("nine characters") << u"<BODY a=b>123456789</BODY>"_s << true << false << false;
        QTest::newRow("body never ends") << u"<BODY>"_s << true << false << false;
        QTest::newRow("body tag never ends") << u"<BODY"_s << true << false << false;
        QTest::newRow("made by the surface, long")
            << Filled(u"<META content=\"Microsoft DHTML Editing Control\">"_s + body, 400) << true << false << true;
        QTest::newRow("no text") << QString() << true << true << true;
        QTest::newRow("no text, no body") << QString() << false << false << false;
    }

    void LostPages()
    {
        QFETCH(QString, text);
        QFETCH(bool, hasBodyTag);
        QTEST(RefuseSave(text, hasBodyTag), "refused");
        QTEST(IsBlankPage(text, hasBodyTag), "blank");
    }

    void BodyTag()
    {
        QVERIFY(HasBodyTagIn(u"a<body>"_s));
        QVERIFY(HasBodyTagIn(u"a<BODY x"_s));
        QVERIFY(!HasBodyTagIn(u"a<Body>"_s));
        QVERIFY(!HasBodyTagIn(u"body"_s));
    }

    void DeclaredCharset_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const QString none = u"ISO-8859-1"_s;
        QTest::newRow("declared") << u"<meta content=\"text/html; charset=utf-8\">"_s << u"utf-8"_s;
        QTest::newRow("none") << u"<p>"_s << none;
        QTest::newRow("one character") << u"charset=x\""_s << none;
        QTest::newRow("three") << u"charset=xyz\""_s << u"xyz"_s;
        QTest::newRow("20") << u"charset=12345678901234567890\""_s << u"12345678901234567890"_s;
        QTest::newRow("21") << u"charset=123456789012345678901\""_s << none;
        QTest::newRow("unicode") << u"charset=unicode-1-1\""_s << u"UTF-8"_s;
        QTest::newRow("no quote behind") << u"charset=utf-8>"_s << none;
        QTest::newRow("quote at once") << u"<meta charset=\"utf-8\">"_s << none;
        QTest::newRow("first counts") << u"charset=one\" charset=two\""_s << u"one"_s;
        QTest::newRow("at the end") << u"charset="_s << none;
    }

    void DeclaredCharset()
    {
        QFETCH(QString, text);
        QTEST(::DeclaredCharset(text), "expected");
    }

    void WithTitle_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("expected");
        QTest::newRow("replaced") << u"<Title>Old</Title>x"_s << u"<Title>New</Title>x"_s;
        QTest::newRow("was empty") << u"<TITLE></TITLE>"_s << u"<TITLE>New</TITLE>"_s;
        QTest::newRow("no title") << u"<head></head>"_s << u"<head></head>"_s;
        QTest::newRow("never ends") << u"<title>Old"_s << u"<title>Old"_s;
        QTest::newRow("tag inside") << u"<title>A<b>C</title>"_s << u"<title>New<b>C</title>"_s;
        QTest::newRow("with attribute") << u"<title id=a>Old</title>"_s << u"<title id=a>Old</title>"_s;
    }

    void WithTitle()
    {
        QFETCH(QString, html);
        QTEST(::WithTitle(html, u"New"_s), "expected");
    }

    void FileLinks_data()
    {
        QTest::addColumn<bool>("windows");
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("expected");
        const auto win = [](const char *title, const QString &html, const QString &expected) {
            QTest::addRow("win %s", title) << true << html << expected;
        };
        const auto posix = [](const char *title, const QString &html, const QString &expected) {
            QTest::addRow("posix %s", title) << false << html << expected;
        };
        win("beside", u"<A href=\"file:///C|/web/a.htm\">"_s, u"<A href=\"a.htm\">"_s);
        win("other drive", u"<A href=\"file:///D|/a.htm\">"_s, u"<A href=\"/D:/a.htm\">"_s);
        win("rest of the tag", u"<A href=\"file://C:\\web\\x\\a.htm\" title=\"b\\c\">d\\e"_s,
            u"<A href=\"x/a.htm\" title=\"b/c\">d\\e"_s);
        win("localhost", u"<A href=\"file://localhost/C|/web/a.htm\">"_s, u"<A href=\"a.htm\">"_s);
        posix("beside", u"<a href=\"file:///home/ann/my site/a.htm#b\">c</a>"_s, u"<a href=\"a.htm#b\">c</a>"_s);
        posix("up", u"<a href=\"file:///home/ann/a|b.htm\">"_s, u"<a href=\"../a|b.htm\">"_s);
        posix("localhost", u"<a href=\"file://localhost/home/ann/my site/a.htm\">"_s, u"<a href=\"a.htm\">"_s);
        posix("other machine", u"<a href=\"file://host/a.htm\">"_s, u"<a href=\"file://host/a.htm\">"_s);
        posix("folder percent-encoded", u"<a href=\"file:///home/ann/my%20site/x/a%20b.htm\">"_s,
              u"<a href=\"x/a%20b.htm\">"_s);
        posix("two in a tag", u"<a href=\"file:///home/ann/a.htm\" id=\"file:///home/ann/my site/b\">\\"_s,
              u"<a href=\"../a.htm\" id=\"b\">\\"_s);
        posix("no >", u"<a href=\"file:///home/ann/a.htm\""_s, u"<a href=\"file:///home/ann/a.htm\""_s);
        posix("quote never closes", u"<a href=\"file:///home/ann/my site/a.htm>b"_s, u"<a href=\"a.htm>b"_s);
        posix("not quoted", u"<a href=file:///home/ann/a.htm>"_s, u"<a href=file:///home/ann/a.htm>"_s);
        posix("server code", u"<?= '=\"file:///home/x\">' ?><a href=\"file:///<?= $a ?>/b\" id=\"file:///home/c\">"_s,
              u"<?= '=\"file:///home/x\">' ?><a href=\"file:///<?= $a ?>/b\" id=\"../../c\">"_s);
        posix("nothing", u"<a href=\"a.htm\">"_s, u"<a href=\"a.htm\">"_s);
    }

    void FileLinks()
    {
        QFETCH(bool, windows);
        QFETCH(QString, html);
        const QString page = windows ? u"C:\\web\\b.htm"_s : u"/home/ann/my site/b.htm"_s;
        QTEST(WithRelativeFileLinks(html, page, windows ? PathStyle::Windows() : PathStyle::Posix()), "expected");
        QCOMPARE(WithRelativeFileLinks(html, {}), html);
    }
};

QTEST_GUILESS_MAIN(PageTextTest)
#include "PageTextTest.moc"
