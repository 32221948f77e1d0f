#include "platform/surface/Islands.h"
#include "support/IslandPages.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// Protected text with tokens a human can read: {0} and, for those in a comment, {0!}.
static QString Readable(const ProtectedText &text)
{
    if (text.Islands.isEmpty())
        return text.Text;
    QString result = text.Text;
    result.replace(text.Open, u'{').replace(text.Close, u'}').replace(text.CommentClose, u"!}"_s);
    for (qsizetype digit = 0; digit < 10; ++digit)
        result.replace(text.Digits[digit], QString::number(digit));
    return result;
}

/// The reverse, to write what an engine or a user made of the tokens.
static QString WithTokens(QString readable, const ProtectedText &text)
{
    static const QRegularExpression token(u"\\{(\\d+)(!?)\\}"_s);
    QRegularExpressionMatch match;
    while ((match = token.match(readable)).hasMatch()) {
        QString made(text.Open);
        for (const QChar digit : match.captured(1))
            made += text.Digits[digit.digitValue()];
        made += match.captured(2).isEmpty() ? text.Close : text.CommentClose;
        readable.replace(match.capturedStart(), match.capturedLength(), made);
    }
    return readable;
}

class IslandsTest : public QObject
{
    Q_OBJECT

private slots:
    void ComesBack_data();
    void ComesBack();
    void StandsFor_data();
    void StandsFor();
    void EndTagLosesItsIsland();
    void Restores_data();
    void Restores();
    void BlocksOfAText_data();
    void BlocksOfAText();
    void Doctype_data();
    void Doctype();
    void PageUsesPrivateCharacters();
    void ManyIslandsInLinearTime();
};

void IslandsTest::ComesBack_data()
{
    QTest::addColumn<QString>("page");
    for (const IslandPage &page : IslandPages())
        QTest::newRow(page.Name) << page.Text;
}

void IslandsTest::ComesBack()
{
    QFETCH(QString, page);
    const ProtectedText text = ProtectIslands(page);
    QVERIFY(!text.Islands.isEmpty());
    QCOMPARE(text.Places.size(), text.Islands.size());
    QVERIFY2(FindServerBlocks(text.Text).isEmpty(), "no code is left for the parser");
    QCOMPARE(RestoreIslands(text.Text, text), page);
}

void IslandsTest::StandsFor_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &page, const QString &expected) {
        QTest::newRow(name) << page << expected;
    };
    row("nothing to do", u"<!DOCTYPE html><p a=1 a='2'>x<!-- c --></p><script>a<b</script>"_s,
        u"<!DOCTYPE html><p a=1 a='2'>x<!-- c --></p><script>a<b</script>"_s);
    row("data", u"<p>a<?x?></p>"_s, u"<p>a<!--{0!}--></p>"_s);
    row("places in a tag", u"<p <?a?> b<?c?>=\"<%d%>\" e=<?f?>>"_s, u"<p {0} b{1}=\"{2}\" e={3}>"_s);
    row("name and attribute", u"<option<?x?>>"_s, u"<option {0}>"_s);
    row("second attribute", u"<p a=1 <?x?> A='2'>"_s, u"<p a=1 {0} {1}>"_s);
    row("empty value", u"<p <?x?>=\"\">"_s, u"<p {0}>"_s);
    row("raw text", u"<style><?x?></style><title><?y?></title><?z?>"_s,
        u"<style>{0}</style><title>{1}</title><!--{2!}-->"_s);
    row("script ends in a block", u"<script><?'</script>'?></script><?y?>"_s, u"<script>{0}</script><!--{1!}-->"_s);
    row("comment", u"<!-- <?a --> ?> --><?b?>"_s, u"<!-- {0} --><!--{1!}-->"_s);
    row("directives", u"<title><!--#a --></title><b c=<!--#d --> <!--#e -->><!--#f -->"_s,
        u"<title>{0}</title><b c={1} {2}><!--{3!}-->"_s);
    row("directive in a comment", u"<!-- <!--#a --> --><?b?>"_s, u"<!-- {0} --><!--{1!}-->"_s);
    row("conditional comment whole", u"<!--[if IE]><?a?><![endif]-->"_s, u"<!--{0!}-->"_s);
    row("conditional in a script is text", u"<script>'<!--[if IE]>'+'<![endif]-->'</script>"_s,
        u"<script>'<!--[if IE]>'+'<![endif]-->'</script>"_s);
    row("same name, same number", u"<h<?n?>>a</h<?n?>><h<?m?>>b</h<?m?>>"_s, u"<h{0}>a</h{0}><h{1}>b</h{1}>"_s);
    row("name without its pair", u"<h<?n?> <?a?>>a</h<?m?>>"_s, u"<!--{0!}-->a<!--{1!}-->"_s);
    row("doctype in its place", u"<?a?> <!-- b --><!DOCTYPE html><!DOCTYPE html>"_s,
        u"<!--{0!}--> <!-- b --><!DOCTYPE html><!--{1!}-->"_s);
    row("code in the doctype", u"<!doctype html PUBLIC \"<?a > b?>\">"_s, u"<!doctype html PUBLIC \"{0}\">"_s);
    row("svg data", u"<svg><![CDATA[a>b]]></svg><![CDATA[a>b]]>"_s, u"<svg><!--{0!}--></svg><!--{1!}-->b]]>"_s);
    row("html in svg", u"<svg><g><p><![CDATA[a>b]]>"_s, u"<svg><g><p><!--{0!}-->b]]>"_s);
    row("svg title is no text element", u"<svg><title><?a?></title></svg>"_s,
        u"<svg><title><!--{0!}--></title></svg>"_s);
    row("behind the page", u"<body>a</body>\n<?b?>\n<!-- c -->\n</html> <?d?> <?e?> "_s,
        u"<body>a</body><!--{0!}--></html><!--{1!}-->"_s);
    row("content behind the page", u"a</html> <?b?> c<?d?>"_s, u"a</html> <!--{0!}--> c<!--{1!}-->"_s);
    row("less-than signs of text", u"a < b <1 <? c > d"_s, u"a < b <1 <!--{0!}-->"_s);
    row("stray instruction", u"<p><?foo bar>x"_s, u"<p><!--{0!}-->x"_s);
    row("nobody's end tag", u"a</>b</ c>d"_s, u"a<!--{0!}-->b<!--{1!}-->d"_s);
}

void IslandsTest::StandsFor()
{
    QFETCH(QString, page);
    QFETCH(QString, expected);
    QCOMPARE(Readable(ProtectIslands(page)), expected);
}

void IslandsTest::EndTagLosesItsIsland()
{
    const auto both = [](const QString &page) {
        const ProtectedText text = ProtectIslands(page);
        return QStringList{Readable(text), RestoreIslands(text.Text, text)};
    };
    QCOMPARE(both(u"<p>a</p <?x?> <%y%>>b"_s),
             (QStringList{u"<p>a<!--{0!}--><!--{1!}--></p  >b"_s, u"<p>a<?x?><%y%></p  >b"_s}));
    QCOMPARE(both(u"<title>a</title<?x?>>b"_s),
             (QStringList{u"<title>a</title><!--{0!}-->b"_s, u"<title>a</title><?x?>b"_s}));
}

void IslandsTest::Restores_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &page, const QString &text, const QString &expected) {
        QTest::newRow(name) << page << text << expected;
    };
    const QString two = u"<?a?><p <?b?>>"_s;
    row("none", two, u"<P>x</P>"_s, u"<P>x</P>"_s);
    row("clones", two, u"<!--{0!}--><P {1}>{1}{0!}<!--{0!}-->"_s, u"<?a?><P <?b?>><?b?><?a?><?a?>"_s);
    row("comment form only when whole", two, u"<!-- {0!}--><!--{0!} -->"_s, u"<!-- <?a?>--><!--<?a?> -->"_s);
    row("number of another page", two, u"{2}<!--{2!}-->{99999999999999999999999}"_s,
        u"{2}<!--{2!}-->{99999999999999999999999}"_s);
    row("engine's empty value", two, u"<p {1}=\"\" {0}=\"\">"_s, u"<p <?b?> <?a?>=\"\">"_s);
    row("engine's empty value in a script", u"<script><?a?>=\"\";</script>"_s, u"<SCRIPT>{0}=\"\";</SCRIPT>"_s,
        u"<SCRIPT><?a?>=\"\";</SCRIPT>"_s);
    row("name and attribute", u"<td<?a?> b>"_s, u"<TD {0} b><TD b {0}>x {0}"_s, u"<TD<?a?> b><TD b <?a?>>x <?a?>"_s);
    row("engine finishes an open end", u"<p>a<?php b"_s, u"<HTML><BODY><P>a<!--{0!}--></P>\n</BODY></HTML>"_s,
        u"<HTML><BODY><P>a<?php b"_s);
    row("open end in front of all", u"<?php b"_s, u"<!--{0!}--><HTML><HEAD></HEAD><BODY></BODY></HTML>"_s,
        u"<?php b"_s);
    row("open end in a comment", u"<!-- <% b"_s, u"<!-- {0}--></BODY></HTML>"_s, u"<!-- <% b"_s);
    row("user writes behind an open end", u"<p>a<?php b"_s, u"<P>a<!--{0!}-->more</P>"_s, u"<P>a<?php b\n?>more</P>"_s);
}

void IslandsTest::Restores()
{
    QFETCH(QString, page);
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const ProtectedText from = ProtectIslands(page);
    ProtectedText restored = from;
    restored.Text = RestoreIslands(WithTokens(text, from), from);
    QCOMPARE(Readable(restored), expected);
    const QString broken = QString(from.Open) + from.Digits[0] + u'x' + from.Open + from.Close + from.Open;
    QCOMPARE(RestoreIslands(broken, from), broken);
}

void IslandsTest::BlocksOfAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QString &text, const QStringList &expected) {
        QTest::newRow(name) << text << expected;
    };
    row("first end mark counts", u"a<?b '?>' ?>c<%d '%>' %>"_s, {u"<?b '?>"_s, u"<%d '%>"_s});
    row("kinds do not mix", u"<? %> ?><% ?> %>"_s, {u"<? %> ?>"_s, u"<% ?> %>"_s});
    row("smallest", u"<?\?><%%><?>"_s, {u"<?\?>"_s, u"<%%>"_s});
    row("remark holds code", u"<%-- <%a%> --%>b<%--c%>"_s, {u"<%-- <%a%> --%>"_s, u"<%--c%>"_s});
    row("no end", u"a<?=b"_s, {u"<?=b"_s});
    row("no end of a short tag", u"a<?\nb>c"_s, {u"<?\nb>c"_s});
    row("no server code", u"<?xml:namespace a /><?import a><?foo a><?phpx"_s, {});
    row("earlier stray swallows", u"<?foo a><?php b ?>"_s, {u"<?foo a><?php b ?>"_s});
    row("none", u"a < b <!-- c --> <"_s, {});
}

void IslandsTest::BlocksOfAText()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QStringList blocks;
    for (const IslandSpan &block : FindServerBlocks(text))
        blocks << text.mid(block.Start, block.Length);
    QCOMPARE(blocks, expected);
}

void IslandsTest::Doctype_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << u"<!DOCTYPE html><p>"_s << u"<!DOCTYPE html>"_s;
    QTest::newRow("as written") << u"\r\n<!doctype  HTML\r\nPUBLIC 'x' >\n"_s << u"<!doctype  HTML\r\nPUBLIC 'x' >"_s;
    QTest::newRow("behind code") << u"<?xml version='1.0'?><!-- > --><!x><% > %> <!DOCTYPE html>"_s
                                 << u"<!DOCTYPE html>"_s;
    QTest::newRow("with code") << u"<!DOCTYPE <?= a > b ?> >"_s << u"<!DOCTYPE <?= a > b ?> >"_s;
    QTest::newRow("too late") << u"x<!DOCTYPE html>"_s << QString();
    QTest::newRow("in a comment") << u"<!-- <!DOCTYPE html> -->"_s << QString();
    QTest::newRow("unfinished") << u"<!DOCTYPE html"_s << QString();
    QTest::newRow("unfinished comment") << u"<!-- x"_s << QString();
    QTest::newRow("none") << u""_s << QString();
}

void IslandsTest::Doctype()
{
    QFETCH(QString, page);
    QTEST(SourceDoctype(page), "expected");
}

void IslandsTest::PageUsesPrivateCharacters()
{
    QString all = u"<p title=\"<?a?>\"><?b?>"_s;
    for (char16_t c = 0xE000; c <= 0xF8FF; ++c)
        all += QChar(c);
    const ProtectedText text = ProtectIslands(all);
    QCOMPARE(text.Islands.size(), 2);
    QVERIFY(!all.contains(text.Open) && !all.contains(text.Close) && !all.contains(text.CommentClose));
    QCOMPARE(RestoreIslands(text.Text, text), all);

    for (char16_t c = 0x3400; c < 0xD800; ++c)
        all += QChar(c);
    for (char16_t c = 0xFDD0; c <= 0xFDEF; ++c)
        all += QChar(c);
    const ProtectedText unprotected = ProtectIslands(all);
    QVERIFY(unprotected.Islands.isEmpty());
    QCOMPARE(unprotected.Text, all);
}

void IslandsTest::ManyIslandsInLinearTime()
{
    // Each of these made one kind of search start again and again; quadratic they take minutes.
    for (const QString &piece :
         {u"<p <?a?> b=\"<%c%>\">d<?e?></p>"_s, u"<!--<?a?>"_s, u"<%--a%>"_s, u"<?b>"_s, u"<script><?a?>"_s, u"<a \""_s,
          u"<![x"_s, u"<a b=\"<?c?>"_s, u"<h<?a?>"_s, u"<?<!--#?>"_s, u"<!--#<?a?>"_s, u"</body><!--#a-->"_s})
    {
        const QString page = piece.repeated(100000);
        const ProtectedText text = ProtectIslands(page);
        QVERIFY2(RestoreIslands(text.Text, text) == page, qPrintable(piece));
    }
}

QTEST_APPLESS_MAIN(IslandsTest)
#include "IslandsTest.moc"
