#include "site/NewPageText.h"
#include "platform/PageEncoding.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Names and text of a new page, from what the user types.
class NewPageTextTest : public QObject
{
    Q_OBJECT

private slots:
    void FileName_data();
    void FileName();
    void Suggestion_data();
    void Suggestion();
    void Path_data();
    void Path();
    void Text_data();
    void Text();
    void Bytes_data();
    void Bytes();
};

void NewPageTextTest::FileName_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("name");
    QTest::newRow("signs and blanks") << u"My Page!"_s << u".htm"_s << u"My_Page_.htm"_s;
    QTest::newRow("blanks only") << u"  "_s << u".htm"_s << u"__.htm"_s;
    QTest::newRow("letters, digits, underscore stay") << u"aZ_09"_s << u".php"_s << u"aZ_09.php"_s;
    QTest::newRow("other alphabets") << u"Grüße ıſ"_s << u".htm"_s << u"Gr__e___.htm"_s;
    QTest::newRow("no way out of the folder") << u"../a\\b"_s << u".htm"_s << u"___a_b.htm"_s;
}

void NewPageTextTest::FileName()
{
    QFETCH(QString, title);
    QFETCH(QString, extension);
    QTEST(FileNameFromTitle(title, extension), "name");
}

void NewPageTextTest::Suggestion_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("suggested");
    QTest::addColumn<QString>("path"); ///< that the suggestion stands for
    QTest::newRow("the root") << u"/site"_s << u"/site"_s << u"a.htm"_s << u"/site/a.htm"_s;
    QTest::newRow("root ends in a separator") << u"/site"_s << u"/site/"_s << u"a.htm"_s << u"/site/a.htm"_s;
    QTest::newRow("below") << u"/site/x/y"_s << u"/site"_s << u"x/y/a.htm"_s << u"/site/x/y/a.htm"_s;
    QTest::newRow("outside") << u"/home/ann"_s << u"/site"_s << u"/home/ann/a.htm"_s << u"/home/ann/a.htm"_s;
    QTest::newRow("beside, with a name that begins like it")
        << u"/site2"_s << u"/site"_s << u"/site2/a.htm"_s << u"/site2/a.htm"_s;
    QTest::newRow("the whole disk is the site") << u"/x"_s << u"/"_s << u"x/a.htm"_s << u"/x/a.htm"_s;
    QTest::newRow("no site") << u"/home/ann"_s << u""_s << u"a.htm"_s << u"/home/ann/a.htm"_s;
}

void NewPageTextTest::Suggestion()
{
    QFETCH(QString, folder);
    QFETCH(QString, root);
    const QString suggested = SuggestedFile(u"a.htm"_s, folder, root);
    QTEST(suggested, "suggested");
    QTEST(NewPagePath(suggested, folder, root), "path");
}

void NewPageTextTest::Path_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("path"); // in /site/x, with /site as root
    QTest::newRow("plain name") << u"b.htm"_s << u"/site/x/b.htm"_s;
    QTest::newRow("no extension") << u"b"_s << u"/site/x/b.htm"_s;
    QTest::newRow("keeps an extension") << u"a.b"_s << u"/site/x/a.b"_s;
    QTest::newRow("blanks around") << u" b "_s << u"/site/x/b.htm"_s;
    QTest::newRow("new folder below") << u"new/b.htm"_s << u"/site/x/new/b.htm"_s;
    QTest::newRow("from the root") << u"x/b.htm"_s << u"/site/x/b.htm"_s;
    QTest::newRow("doubled separators") << u"n//b.htm"_s << u"/site/x/n/b.htm"_s;
    QTest::newRow("absolute") << u"/elsewhere/b"_s << u"/elsewhere/b.htm"_s;
    QTest::newRow("dot in a folder is no extension") << u"/e.d/b"_s << u"/e.d/b.htm"_s;
    QTest::newRow("colon is a letter like others") << u"a:b"_s << u"/site/x/a:b.htm"_s;
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("blanks") << u"  "_s << u""_s;
    QTest::newRow("folder without a name") << u"new/"_s << u""_s;
}

void NewPageTextTest::Path()
{
    QFETCH(QString, typed);
    QTEST(NewPagePath(typed, u"/site/x"_s, u"/site"_s), "path");
}

void NewPageTextTest::Text_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("built in: capitals stay in the body")
        << QString(BuiltInTemplate) << u"My Page"_s << u"<HTML><TITLE>My Page</TITLE><BODY>[TITLE]<P></BODY></HTML>"_s;
    QTest::newRow("every mark") << u"<h1>[title]</h1>[Title]<p>[title]"_s << u"A"_s << u"<h1>A</h1>[Title]<p>A"_s;
    QTest::newRow("old title goes, tag keeps its case")
        << u"<title>Old</title>\r\n<body>"_s << u"New"_s << u"<title>New</title>\r\n<body>"_s;
    QTest::newRow("none is made") << u"<html><body>x"_s << u"New"_s << u"<html><body>x"_s;
    QTest::newRow("title is text") << u"<title></title>[title]"_s << u"<b> & \"c\""_s
                                   << u"<title>&lt;b&gt; &amp; \"c\"</title>&lt;b&gt; &amp; \"c\""_s;
    QTest::newRow("in a value") << u"<img alt=\"[title]\" src=x>[title]"_s << u"a \"b\""_s
                                << u"<img alt=\"a &quot;b&quot;\" src=x>a \"b\""_s;
    QTest::newRow("title that is a mark") << u"[title][title]"_s << u"[title]"_s << u"[title][title]"_s;
}

void NewPageTextTest::Text()
{
    QFETCH(QString, page);
    QFETCH(QString, title);
    QTEST(NewPageText(page, title), "text");
}

void NewPageTextTest::Bytes_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("bytes"); // of "ü€"
    const QString declared = u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=%1\">"_s;
    QTest::newRow("declares UTF-8") << declared.arg(u"utf-8") << QByteArray("UTF-8") << QByteArray("ü€");
    QTest::newRow("declares another") << declared.arg(u"windows-1252") << QByteArray("windows-1252")
                                      << QByteArray("\xFC\x80");
    QTest::newRow("declares nothing") << u"<p>a"_s << QByteArray("UTF-8") << QByteArray("&#252;&#8364;");
    QTest::newRow("has letters of its own") << u"<p>ß"_s << QByteArray("windows-1252") << QByteArray("\xFC\x80");
}

void NewPageTextTest::Bytes()
{
    QFETCH(QString, page);
    QFETCH(QByteArray, encoding);
    const TextEncoding chosen = NewPageEncoding(page, {.Name = encoding, .ByteOrderMark = false});
    QTEST(EncodeText(u"ü€"_s, chosen.Name).value_or("cannot"), "bytes");
}

QTEST_APPLESS_MAIN(NewPageTextTest)
#include "NewPageTextTest.moc"
