#include "document/FixupHtml.h"
#include "document/GuideStyle.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The rules of the clean-up one by one, on 1-based places and with no care for time: what the quick routine must
/// equal.
class Letter
{
public:
    explicit Letter(const QString &text) : m_text(text) {}

    QString Run()
    {
        for (qsizetype tag = NextTag(1); tag > 0;) {
            const bool isScript = !InCommentEnd(tag) && CleanTag(tag);
            qsizetype next = tag + 1;
            if (isScript) {
                const qsizetype end = m_text.toUpper().indexOf(u"</SCRIPT"_s, next - 1) + 1;
                next = end > 0 ? end : next;
            }
            tag = NextTag(next);
        }
        return m_text;
    }

private:
    qsizetype Find(const QString &what, qsizetype from) const
    {
        return from > m_text.size() ? 0 : m_text.indexOf(what, from - 1) + 1;
    }

    qsizetype NextTag(qsizetype from)
    {
        qsizetype tag = Find(u"<"_s, from);
        while (tag > 0 && m_text.mid(tag - 1, 2) == u"<!") {
            qsizetype next = tag + 1;
            if (m_text.mid(tag - 1, 4) == u"<!--") {
                m_comment = tag;
                const qsizetype end = Find(u"-->"_s, tag + 2);
                if (end > 0 && m_text.mid(tag - 1, 7).toLower() == u"<!--[if")
                    next = end + 3;
            }
            tag = Find(u"<"_s, next);
        }
        return tag;
    }

    bool InCommentEnd(qsizetype tag) const
    {
        const qsizetype end = m_comment > 0 ? Find(u"-->"_s, m_comment + 2) : 0;
        return end > 0 && tag < end + 2 && Find(u">"_s, tag) >= end + 2;
    }

    void Lower(qsizetype from, qsizetype to)
    {
        m_text = m_text.left(from - 1) + m_text.mid(from - 1, to - from).toLower() + m_text.mid(to - 1);
    }

    bool CleanTag(qsizetype tag)
    {
        qsizetype nameEnd = Find(u" "_s, tag);
        qsizetype end = Find(u">"_s, tag);
        m_tagEnd = end;
        if (nameEnd == 0)
            nameEnd = end;
        if (end == 0)
            end = 100000000;
        if (end < nameEnd)
            nameEnd = end;
        bool isScript = false;
        if (nameEnd > 0) {
            isScript = m_text.mid(tag - 1, nameEnd - tag).toLower() == u"<script";
            Lower(tag, nameEnd);
        }
        for (qsizetype at = nameEnd + 1; at < m_tagEnd;)
            at = CleanAttribute(at);
        return isScript;
    }

    qsizetype CleanAttribute(qsizetype at)
    {
        qsizetype blank = Find(u" "_s, at);
        qsizetype lineEnd = Find(u"\r\n"_s, at);
        qsizetype end = Find(u">"_s, at);
        if (blank == 0)
            blank = lineEnd;
        if (blank == 0)
            blank = end;
        constexpr qsizetype Far = 9000000000;
        qsizetype delimiter = qMin(blank, qMin(lineEnd == 0 ? Far : lineEnd, end == 0 ? Far : end));
        const qsizetype equals = Find(u"="_s, at);
        if (delimiter > m_tagEnd || equals == 0 || equals >= delimiter)
            return m_tagEnd + 1;
        Lower(at, equals);
        if (m_text.mid(equals, 1) == u"\"") {
            const qsizetype close = Find(u"\""_s, equals + 2);
            if (close > 0 && close < m_tagEnd)
                delimiter = close + 1;
        } else {
            m_text = m_text.left(equals) + u'"' + m_text.mid(equals, delimiter - equals - 1) + u'"' +
                     m_text.mid(delimiter - 1);
            delimiter += 2;
            m_tagEnd += 2;
        }
        return delimiter + 1;
    }

    QString m_text;
    qsizetype m_tagEnd = 0;
    qsizetype m_comment = 0;
};

QString Soup(QRandomGenerator &random, const QStringList &pieces, int length)
{
    QString text;
    for (int i = 0; i < length; ++i)
        text += pieces.at(random.bounded(int(pieces.size())));
    return text;
}

const QString EnginePage =
    u"<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\r\n"
    "<HTML><HEAD><TITLE>Our Shop</TITLE>\r\n<META content=\"text/html; charset=unicode\" http-equiv=Content-Type>\r\n"
    "<SCRIPT type=text/javascript>if (A<B && C>D) X=1; document.write(\"<B ID=x>\");</SCRIPT>\r\n"
    "<STYLE>TD > P { Color: Red }</STYLE></HEAD>\r\n<BODY bgColor=#ffffff onload=\"Init('A b');\">\r\n"
    "<!-- Navigation <B CLASS=x> --><TABLE border=1 cellPadding=2 width=100%>\r\n<TBODY><TR vAlign=top>\r\n"
    "<TD noWrap width=10>A &lt; B</TD><TD title=\"a &gt; b\"><A href=Page%20Two.htm "
    "target=_blank>Next</A></TD></TR>\r\n"
    "</TBODY></TABLE><INPUT type=checkbox CHECKED name=N><IMG alt=\"\" src=Images/Logo.GIF></BODY></HTML>\r\n"_s;

} // namespace

class FixupHtmlTest : public QObject
{
    Q_OBJECT

private slots:
    void Rules_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *title, const QString &text, const QString &expected) {
            QTest::newRow(title) << text << expected;
        };
        row("names and values", u"<P ALIGN=center>Hi</P>"_s, u"<p align=\"center\">Hi</p>"_s);
        row("values keep their case", u"<A HREF=A.htm Title=\"B C\">D</A>"_s,
            u"<a href=\"A.htm\" title=\"B C\">D</a>"_s);
        row("flag ends the clean-up", u"<INPUT TYPE=radio CHECKED NAME=X>"_s,
            u"<input type=\"radio\" CHECKED NAME=X>"_s);
        row("two blanks end it too", u"<INPUT  TYPE=radio>"_s, u"<input  TYPE=radio>"_s);
        row("line end between attributes", u"<IMG SRC=a\r\nALT=b>"_s, u"<img src=\"a\"\r\nalt=\"b\">"_s);
        row("line end is no end of the name", u"<IMG\r\nSRC=A ALT=b>"_s, u"<img\r\nsrc=a alt=\"b\">"_s);
        row("a lone line feed is none", u"<IMG SRC=A\nALT=B>"_s, u"<img src=\"A\nALT=B\">"_s);
        row("empty value", u"<A HREF= ID=b>"_s, u"<a href=\"\" id=\"b\">"_s);
        row("empty value at the end", u"<A HREF=>"_s, u"<a href=\"\">"_s);
        row("> in quotes ends the tag", u"<A B=\"c D=e>F\" G=h>"_s, u"<a b=\"c d=\"e\">F\" G=h>"_s);
        row("no >", u"<B CLASS=x"_s, u"<b CLASS=x"_s);
        row("no > and no blank", u"<B"_s, u"<B"_s);
        row("two < before one >", u"A < B <B ID=c>"_s, u"A < B <b id=\"c\">"_s);
        row("script", u"<SCRIPT SRC=a>if (A<B C=d>) X</SCRIPT><P ID=a>"_s,
            u"<script src=\"a\">if (A<B C=d>) X</script><p id=\"a\">"_s);
        row("script never closes", u"<SCRIPT><P ID=a>"_s, u"<script><p id=\"a\">"_s);
        row("comment keeps its case", u"<!-- Note A=B --><P>"_s, u"<!-- Note A=B --><p>"_s);
        row("tags in a comment do not", u"<!-- <P ID=a> --><P>"_s, u"<!-- <p id=\"a\"> --><p>"_s);
        row("comment's end is no tag's end", u"<!-- <P ID=a --><P ID=b>"_s, u"<!-- <P ID=a --><p id=\"b\">"_s);
        row("conditional comment", u"<!--[if IE]><P ID=a><![endif]--><P ID=b>"_s,
            u"<!--[if IE]><P ID=a><![endif]--><p id=\"b\">"_s);
        row("conditional section", u"<![if !IE]><P ID=a><![endif]>"_s, u"<![if !IE]><p id=\"a\"><![endif]>"_s);
        row("revealed conditional comment", u"<!--[if !IE]><!--><P ID=a><!--<![endif]-->"_s,
            u"<!--[if !IE]><!--><p id=\"a\"><!--<![endif]-->"_s);
        row("conditional comment never closes", u"<!--[if IE]><P ID=a>"_s, u"<!--[if IE]><p id=\"a\">"_s);
        row("doctype", u"<!DOCTYPE HTML PUBLIC><P>"_s, u"<!DOCTYPE HTML PUBLIC><p>"_s);
        row("empty", u""_s, u""_s);
        row("only <", u"<"_s, u"<"_s);
        row("guide style", u"<HEAD>"_s + GuideStyle::Upper() + GuideStyle::Lower() + u"</HEAD>"_s, u"<head></head>"_s);
        row("guide style as a value",
            u"<INPUT value=\"&lt;style&gt;"_s + GuideStyle::Lower().sliced(7).chopped(8) + u"&lt;/style&gt;x\">"_s,
            u"<input value=\"x\">"_s);
        row("server code between tags", u"<?php if (A<B) echo \"<P ID=a>\" ?><P ID=b><% =\"<P>\" %>"_s,
            u"<?php if (A<B) echo \"<P ID=a>\" ?><p id=\"b\"><% =\"<P>\" %>"_s);
        row("server code as a value", u"<A HREF=<?= $A[\"b\"] > 1 ?> ID=x>"_s,
            u"<a href=\"<?= $A[\"b\"] > 1 ?>\" id=\"x\">"_s);
        row("server code within a value", u"<A HREF=\"a.php?x=<?= \"A B\" ?>&Y\" ID=x>"_s,
            u"<a href=\"a.php?x=<?= \"A B\" ?>&Y\" id=\"x\">"_s);
        row("server code in single quotes", u"<A HREF='<?= $A[\"b\"] ?> C' ID=x>"_s,
            u"<a href='<?= $A[\"b\"] ?> C' id=\"x\">"_s);
        row("server code as attributes", u"<TR <?php echo A=\"B\" ?>><TD ID=a>"_s,
            u"<tr <?php echo A=\"B\" ?>><td id=\"a\">"_s);
        row("server code in a name", u"<H<?= $N ?> ID=a>"_s, u"<h<?= $N ?> id=\"a\">"_s);
        row("server code in a script", u"<SCRIPT><?= \"</script>\" ?> A<B C=d></SCRIPT>"_s,
            u"<script><?= \"</script>\" ?> A<B C=d></script>"_s);
        row("server code never closes", u"<P ID=a><?php <P ID=b>"_s, u"<p id=\"a\"><?php <P ID=b>"_s);
        row("server code and our stand-in", u"<P ID=\uE000 <?=A?>=\uE001>"_s, u"<p id=\"\uE000\" <?=A?>=\"\uE001\">"_s);
    }

    void Rules()
    {
        QFETCH(QString, text);
        QTEST(FixupHTML(text), "expected");
    }

    void EqualsTheRulesToTheLetter()
    {
        const QStringList pieces{u"<"_s,       u">"_s,     u" "_s,        u"="_s,         u"\""_s,        u"\r\n"_s,
                                 u"\n"_s,      u"A"_s,     u"b"_s,        u"<A "_s,       u"<IMG SRC="_s, u" X=Y"_s,
                                 u" C=\""_s,   u"\" D="_s, u"<SCRIPT>"_s, u"</SCRIPT>"_s, u"<!-- "_s,     u" -->"_s,
                                 u"<!--[IF"_s, u"'"_s,     u"É"_s,        u"<!"_s,        u"</P>"_s,      u" NOWRAP"_s};
        // Fewer ends and quotes give long tags that overlap.
        const QStringList open{u"<A "_s,    u" X=Y"_s,     u" C=\""_s,    u"\" D="_s,     u"<B C=D "_s,
                               u"\r\nE="_s, u"F=\"G\" "_s, u"<SCRIPT "_s, u"</SCRIPT "_s, u" "_s,
                               u"=\"\""_s,  u"H"_s,        u"<!--"_s,     u"--"_s,        u"\""_s};
        QRandomGenerator random(20260715);
        for (int i = 0; i < 30000; ++i) {
            const QString text = i % 3 == 0 ? Soup(random, open, 2 + random.bounded(20)) + u"> <P ID=x>"_s
                                            : Soup(random, pieces, 1 + random.bounded(i % 50 == 1 ? 400 : 40));
            const QString expected = Letter(text).Run();
            const QString actual = FixupHTML(text);
            if (actual != expected)
                qInfo().noquote() << "Text number" << i << text.toUtf8().toPercentEncoding(" <>=\"'");
            QCOMPARE(actual, expected);
        }
    }

    void EnginePageIsCleanedOnce()
    {
        FixupContext context;
        context.CharsetFix = true;
        context.DocumentCharset = u"windows-1252"_s;
        const QString once = FixupHTML(EnginePage, context);
        QVERIFY(once.contains(u"<meta content=\"text/html; charset=windows-1252\" http-equiv=\"Content-Type\">"_s));
        QVERIFY(once.contains(u"if (A<B && C>D) X=1; document.write(\"<B ID=x>\");</script>"_s));
        QVERIFY(once.contains(u"<td noWrap width=10>A &lt; B</td><td title=\"a &gt; b\">"_s));
        QVERIFY(once.contains(u"<img alt=\"\" src=\"Images/Logo.GIF\">"_s));
        QCOMPARE(FixupHTML(once), once);
        QCOMPARE(once, Letter(QString(EnginePage).replace(u"charset=unicode"_s, u"charset=windows-1252"_s)).Run());
    }

    /// Wherever the caret stands in the text between tags, it stands before the same character afterwards.
    void CaretIsFollowed()
    {
        const QString marker = u"\u2588"_s;
        const QString page = QString(EnginePage).replace(u"</HEAD>"_s, GuideStyle::Lower() + u"</HEAD>"_s);
        for (const QString &word : {u"Our"_s, u"TD > P"_s, u"A &lt; B"_s, u"Next"_s, u"</BODY>"_s}) {
            const qsizetype at = page.indexOf(word);
            FixupContext context;
            context.SelectionOffset = at + 1;
            context.SelectionShift = 4;
            FixupHTML(page, context);
            const qsizetype style = at > page.indexOf(u"<style>"_s) ? GuideStyle::Lower().size() : 0;
            const QString marked = FixupHTML(QString(page).insert(at, marker));
            QCOMPARE(at + context.SelectionShift - 4 - style, marked.indexOf(marker));
        }
        FixupContext none;
        FixupHTML(page, none);
        QCOMPARE(none.SelectionShift, 0);
    }

    void GuideStyleGoesInAndOut()
    {
        const QString page = u"<html><HEAD></HEAD><head></head><body></body></html>"_s;
        const QString styled = GuideStyle::Insert(page);
        QCOMPARE(styled.count(GuideStyle::Lower() + u"</head>"_s), 2);
        QVERIFY(!styled.contains(u"</HEAD>"_s));
        QCOMPARE(GuideStyle::Remove(styled), QString(page).replace(u"</HEAD>"_s, u"</head>"_s));
        QVERIFY(GuideStyle::Lower().startsWith(u"<style> table, td, th { border-color: #cccccc;"_s));
        QCOMPARE(GuideStyle::Upper().size(), GuideStyle::Lower().size());
        QCOMPARE(GuideStyle::Remove(u"a"_s + GuideStyle::Upper() + u"b"_s), u"ab"_s);
        QCOMPARE(GuideStyle::Remove(page), page);
    }
};

QTEST_GUILESS_MAIN(FixupHtmlTest)
#include "FixupHtmlTest.moc"
