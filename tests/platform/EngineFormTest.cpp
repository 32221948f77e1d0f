#include "platform/surface/EngineForm.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// What a dialog reads, given what the engine writes.
class EngineFormTest : public QObject
{
    Q_OBJECT

private slots:
    void Rewrites_data();
    void Rewrites();
    void BooleanAttributesStandBare();
    void GrowthFitsTheRoom();
};

void EngineFormTest::Rewrites_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &html, const QString &expected) {
        QTest::newRow(name) << html << expected;
    };
    row("names up, plain values bare", u"<table width=\"90%\" bgcolor=\"#ff0000\"><tbody></tbody></table>"_s,
        u"<TABLE width=90% bgcolor=#ff0000><TBODY></TBODY></TABLE>"_s);
    row("address bare, blank quoted", u"<a href=\"http://x.org:80/a-b_c.htm#t\" title=\"a b\">x</a>"_s,
        u"<A href=http://x.org:80/a-b_c.htm#t title=\"a b\">x</A>"_s);
    row("query needs quotes", u"<a href=\"a.htm?b=1&amp;c=2\">"_s, u"<A href=\"a.htm?b=1&amp;c=2\">"_s);
    row("slash at the value's end", u"<a href=\"dir/\">"_s, u"<A href=\"dir/\">"_s);
    row("accents need quotes", u"<img alt=\"é\">"_s, u"<IMG alt=\"é\">"_s);
    row("angle brackets in a value", u"<img alt=\"a>b<c\" src=\"x\">"_s, u"<IMG alt=\"a&gt;b&lt;c\" src=x>"_s);
    row("entities stay", u"<p title=\"&quot;&nbsp;&amp;\">&lt;&nbsp;&amp;&gt;</p>"_s,
        u"<P title=\"&quot;&nbsp;&amp;\">&lt;&nbsp;&amp;&gt;</P>"_s);
    row("empty values", u"<img alt=\"\"><input disabled=\"\" value=\"\">"_s,
        u"<IMG alt=\"\"><INPUT disabled value=\"\">"_s);
    row("boolean with a value", u"<input checked=\"checked\">"_s, u"<INPUT checked=checked>"_s);
    row("token as an attribute", u"<p \uEA00\uEA03\uEA01=\"\" data-\uEA00\uEA04\uEA01=\"\">"_s,
        u"<P \uEA00\uEA03\uEA01 data-\uEA00\uEA04\uEA01>"_s);
    row("token in a value", u"<p class=\"\uEA00\uEA03\uEA01\">"_s, u"<P class=\"\uEA00\uEA03\uEA01\">"_s);
    row("token in a name", u"<h\uEA00\uEA03\uEA01></h\uEA00\uEA03\uEA01>"_s,
        u"<H\uEA00\uEA03\uEA01></H\uEA00\uEA03\uEA01>"_s);
    row("odd attribute names", u"<p =x=\"1\" a\"=\"2\" <b=\"3\">t</p>"_s, u"<P =x=1 a\"=2 <b=3>t</P>"_s);
    row("comment and doctype", u"<!DOCTYPE html><!-- <b a=\"1\"> --><p></p>"_s,
        u"<!DOCTYPE html><!-- <b a=\"1\"> --><P></P>"_s);
    row("comment with tag inside dashes", u"<!--> <b> --><i></i>"_s, u"<!--> <B> --><I></I>"_s);
    row("script", u"<script type=\"a/b\">if (a<b) '<p class=\"x\">'</script><p></p>"_s,
        u"<SCRIPT type=a/b>if (a<b) '<p class=\"x\">'</SCRIPT><P></P>"_s);
    row("script in a script's comment", u"<script><!--<script></script>--></script><p></p>"_s,
        u"<SCRIPT><!--<script></script>--></SCRIPT><P></P>"_s);
    row("script with a lone comment start", u"<script><!--\nx()\n</script><p></p>"_s,
        u"<SCRIPT><!--\nx()\n</SCRIPT><P></P>"_s);
    row("raw text elements", u"<style>a>b{}</style><xmp><b></xmp><iframe><p></iframe><noembed><i></noembed>"_s,
        u"<STYLE>a>b{}</STYLE><XMP><b></XMP><IFRAME><p></IFRAME><NOEMBED><i></NOEMBED>"_s);
    row("noscript holds elements", u"<noscript><p></p></noscript>"_s, u"<NOSCRIPT><P></P></NOSCRIPT>"_s);
    row("template holds elements", u"<template><td></td></template>"_s, u"<TEMPLATE><TD></TD></TEMPLATE>"_s);
    row("plaintext", u"<plaintext><p></plaintext></body>"_s, u"<PLAINTEXT><p>"_s);
    row("lost line feed", u"<pre>\na</pre><pre>a</pre><textarea>\n</textarea><listing>\n\n</listing><p>\n</p>"_s,
        u"<PRE>\n\na</PRE><PRE>a</PRE><TEXTAREA>\n\n</TEXTAREA><LISTING>\n\n\n</LISTING><P>\n</P>"_s);
    row("svg keeps its names", u"<p><svg viewBox=\"0 0 9 9\"><linearGradient id=\"a\"></linearGradient></svg></p>"_s,
        u"<P><svg viewBox=\"0 0 9 9\"><linearGradient id=a></linearGradient></svg></P>"_s);
    row("svg in svg", u"<svg><svg><g></g></svg><g></g></svg><b></b>"_s,
        u"<svg><svg><g></g></svg><g></g></svg><B></B>"_s);
    row("html in svg",
        u"<svg><foreignObject><div><svg><a></a></svg><i></i></div></foreignObject><a></a></svg><a></a>"_s,
        u"<svg><foreignObject><DIV><svg><a></a></svg><I></I></DIV></foreignObject><a></a></svg><A></A>"_s);
    row("title of an svg", u"<svg><title>a<b></b></title><desc><p></p></desc><path></path></svg>"_s,
        u"<svg><title>a<B></B></title><desc><P></P></desc><path></path></svg>"_s);
    row("svg style is no raw text", u"<svg><style>a&gt;b</style><g></g></svg>"_s,
        u"<svg><style>a&gt;b</style><g></g></svg>"_s);
    row("math", u"<math><mi>x</mi><mtext><b></b></mtext></math><i></i>"_s,
        u"<math><mi>x</mi><mtext><B></B></mtext></math><I></I>"_s);
    row("xml attribute names", u"<svg xml:lang=\"en\" xlink:href=\"#a\"></svg>"_s,
        u"<svg xml:lang=en xlink:href=#a></svg>"_s);
    row("unfinished tag", u"<p class=\"a"_s, u"<P class=\"a"_s);
    row("no engine's text", u"a < b <p x=1 y='2' z>c"_s, u"a < b <P x=1 y='2' z>c"_s);
}

void EngineFormTest::Rewrites()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(EngineForm(html), expected);
}

void EngineFormTest::BooleanAttributesStandBare()
{
    const QString names =
        u"checked compact declare defer disabled ismap multiple nohref noresize noshade nowrap readonly "
        "selected async autofocus autoplay controls default formnovalidate hidden itemscope loop muted "
        "novalidate open required reversed allowfullscreen"_s;
    for (const QString &name : names.split(u' '))
        QCOMPARE(EngineForm(u"<td "_s + name + u"=\"\">"_s), u"<TD "_s + name + u">"_s);
}

void EngineFormTest::GrowthFitsTheRoom()
{
    const QString brackets(10000, u'<');
    QCOMPARE(EngineForm(u"<p a=\""_s + brackets + u"\">"_s), u"<P a=\""_s + u"&lt;"_s.repeated(10000) + u"\">"_s);
    QCOMPARE(EngineForm(u"<pre>\n"_s.repeated(5000)), u"<PRE>\n\n"_s.repeated(5000));
}

QTEST_APPLESS_MAIN(EngineFormTest)
#include "EngineFormTest.moc"
