#include "support/SurfaceRig.h"

#include <QRandomGenerator>

#include <memory>

using namespace Qt::StringLiterals;

/// Elements, ranges and the selected object as dialogs and tools work with them: on pages of every kind, and exact.
class DomTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    // ---- texts and places ----

    void Text_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QString &body, const QString &text) {
            QTest::newRow(name) << body << text;
        };
        row("white space is one blank", u"\n<p>a \n\t b  <b> c</b> </p>\n"_s, u"a b c"_s);
        row("blocks have a border", u"<h1>a</h1><p>b</p>\n<div>c<p>d</p>e</div>"_s, u"a\r\nb\r\nc\r\nd\r\ne"_s);
        row("entities are characters", u"<p>&lt;&amp;&eacute;&nbsp;x&#128512;</p>"_s, u"<&é\u00A0x\U0001F600"_s);
        row("line breaks and pictures", u"<p>a <br> b<img src=x.png>c</p><hr><p>d</p><hr><hr>"_s,
            u"a\r\nb c\r\n d\r\n  "_s);
        row("empty cells have a place", u"<table><tr><td>a</td><td></td><td>b</td></tr></table>"_s, u"a\r\n\r\nb"_s);
        row("nested list", u"<ul><li>a<ul><li>b</li></ul></li><li>c</li></ul>"_s, u"a\r\nb\r\nc"_s);
        row("pre keeps its white space", u"<p>a</p><pre>b  c\n d</pre>"_s, u"a\r\nb  c\r\n d"_s);
        row("what does not show is none", u"<p>a<!--x--><script>y</script><input type=hidden>b</p>"_s, u"ab"_s);
        row("server code is none", u"<p>a<?php b() ?>c</p>"_s, u"ac"_s);
        row("nothing", QString(), QString());
    }
    void Text()
    {
        QFETCH(QString, body);
        m_rig->SetBody(body);
        QTEST(m_rig->Surface.DOM().BodyTextRange().Text(), "text");
    }

    void Steps_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("steps"); // "m" Move, "s" moveStart, "e" moveEnd, capital for words; a blank between
        QTest::addColumn<QString>("moved");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *name, const char *before, const char *steps, const char *moved,
                            const char *after) {
            QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(steps)
                                << QString::fromLatin1(moved) << QString::fromLatin1(after);
        };
        row("back and forth", "<p>abc</p><p>d|e</p>", "m-2 m1", "-2 1", "<p>abc</p><p>|de</p>");
        row("no further than the ends", "<p>ab|c</p>", "m-9 m99", "-2 3", "<p>abc|</p>");
        row("over collapsed space", "<p>a|  \n b</p>", "m2", "2", "<p>a  \n b|</p>");
        row("picture is one", "<p>|a<img src=\"x\">b</p>", "m2", "2", "<p>a<img src=\"x\">|b</p>");
        row("into an empty cell", "<table><tbody><tr><td>a|</td><td></td></tr></tbody></table>", "m1", "1",
            "<table><tbody><tr><td>a</td><td>|</td></tr></tbody></table>");
        row("a selection moves from its start", "<p>a[bc]d</p>", "m1", "1", "<p>ab|cd</p>");
        row("start and end", "<p>ab|cd<b>ef</b></p>", "e3 s1", "3 1", "<p>abc[d<b>e]f</b></p>");
        row("start takes the end along", "<p>|abcd</p>", "e2 s3", "2 3", "<p>abc|d</p>");
        row("end takes the start along", "<p>ab[cd]</p>", "e-3", "-3", "<p>a|bcd</p>");
        row("words", "<p>one <b>tw|o</b>, don't</p>", "M1 M1 M-2", "1 1 -2", "<p>one |<b>two</b>, don't</p>");
        row("words run out", "<p>on|e two</p>", "M9 M-9", "2 -2", "<p>|one two</p>");
        row("word selected", "<p>|one two</p>", "E1", "1", "<p>[one ]two</p>");
    }
    void Steps()
    {
        QFETCH(QString, before);
        QFETCH(QString, steps);
        QFETCH(QString, moved);
        m_rig->SetBody(before);
        DomTextRange range = m_rig->Surface.DOM().SelectionTextRange();
        QStringList answers;
        for (const QString &step : steps.split(u' ')) {
            const QString unit = step[0].isUpper() ? u"Word"_s : u"character"_s;
            const int count = step.mid(1).toInt();
            const QChar kind = step[0].toLower();
            answers << QString::number(kind == u'm'   ? range.Move(unit, count)
                                       : kind == u's' ? range.moveStart(unit, count)
                                                      : range.moveEnd(unit, count));
        }
        range.Select();
        QCOMPARE(answers.join(u' '), moved);
        QTEST(m_rig->Body(), "after");
    }

    /// The way to the page's start and back leads to the same place, from anywhere.
    void PlacesAreExact_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *name : {"index.htm", "plots.htm", "news.php", "chronicle.htm", "join.htm", "verein.htm"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void PlacesAreExact()
    {
        QFETCH(QString, file);
        DesignSurface &surface = m_rig->Surface;
        QCOMPARE(surface.LoadDocument(QStringLiteral(INKLOOM_SOURCE_DIR "/samples/") + file),
                 DesignSurface::LoadError::None);
        QVERIFY(surface.WaitWhileBusy());
        DomTextRange whole = surface.DOM().BodyTextRange();
        const int length = whole.moveEnd(u"character"_s, -5000000) * -1;
        QVERIFY(length > 100);
        QRandomGenerator random(7);
        for (int i = 0; i < 150; ++i) {
            const int place = int(random.bounded(length + 1));
            DomTextRange range = surface.DOM().BodyTextRange();
            range.collapse();
            QCOMPARE(range.Move(u"character"_s, place), place);
            range.Select();
            DomTextRange caret = surface.DOM().SelectionTextRange();
            QCOMPARE(caret.Move(u"character"_s, -5000000), -place);
            // A stretch reads the same from both of its ends.
            const int size = int(random.bounded(qMin(40, length + 1 - place)));
            const int got = range.moveEnd(u"character"_s, size);
            QCOMPARE(range.duplicate().moveEnd(u"character"_s, -got), -got);
            QCOMPARE(range.Text().replace(u"\r\n"_s, u"\n"_s).size(), got);
        }
    }

    void Find_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("after"); // "" for not found
        const auto row = [](const char *name, const QString &before, const QString &text, int count, int flags,
                            const QString &after) { QTest::newRow(name) << before << text << count << flags << after; };
        row("across tags", u"<p>|say he<b>ll</b>o</p>"_s, u"HELLO"_s, 0, 0, u"<p>say [he<b>ll</b>o]</p>"_s);
        row("match case", u"<p>|Cat cat</p>"_s, u"cat"_s, 0, 4, u"<p>Cat [cat]</p>"_s);
        row("whole word", u"<p>|cats a_cat cat</p>"_s, u"cat"_s, 0, 2, u"<p>cats a_cat [cat]</p>"_s);
        row("whole word beside a letter of another tag", u"<p>|cat<i>s</i></p>"_s, u"cat"_s, 0, 2, QString());
        row("forward starts at the caret", u"<p>cat| cat</p>"_s, u"cat"_s, 9999999, 0, u"<p>cat [cat]</p>"_s);
        row("back", u"<p>cat cat |cat</p>"_s, u"cat"_s, -9999999, 0, u"<p>cat [cat] cat</p>"_s);
        row("within the range", u"<p>cat [dog] cat</p>"_s, u"cat"_s, 0, 0, QString());
        row("reach", u"<p>|one two</p>"_s, u"two"_s, 5, 0, QString());
        row("not over a block's border", u"<p>|one</p><p>two</p>"_s, u"one two"_s, 0, 0, QString());
        row("over a line end of the source", u"<p>|one\n  two</p>"_s, u"one two"_s, 0, 0, u"<p>[one\n  two]</p>"_s);
        row("signs of patterns", u"<p>|a.b a*(b)</p>"_s, u"*(b)"_s, 0, 0, u"<p>a.b a[*(b)]</p>"_s);
        row("nothing", u"<p>|a</p>"_s, QString(), 0, 0, QString());
    }
    void Find()
    {
        QFETCH(QString, before);
        QFETCH(QString, text);
        QFETCH(int, count);
        QFETCH(int, flags);
        QFETCH(QString, after);
        m_rig->SetBody(before);
        DomTextRange range = m_rig->Surface.DOM().SelectionTextRange();
        QCOMPARE(range.findText(text, count, flags), !after.isEmpty());
        range.Select();
        QCOMPARE(m_rig->Body(), after.isEmpty() ? before : after);
    }

    /// A replacement that holds what is looked for: the search goes on behind it.
    void FindAndPasteEnds()
    {
        m_rig->SetBody(u"<p>|a b a</p><p>a</p>"_s);
        int hits = 0;
        for (; hits < 10; ++hits) {
            DomTextRange range = m_rig->Surface.DOM().SelectionTextRange();
            range.collapse(false);
            if (!range.findText(u"a"_s, 9999999, 4))
                break;
            range.Select();
            m_rig->Surface.DOM().PasteHTML(u"aa"_s);
        }
        QCOMPARE(hits, 3);
        QCOMPARE(m_rig->PlainBody(), u"<p>aa b aa</p><p>aa</p>"_s);
    }

    // ---- markup ----

    void Paste_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *name, const QString &before, const QString &html, const QString &after) {
            QTest::newRow(name) << before << html << after;
        };
        row("as it is", u"<p>a[b]c</p>"_s, u"<B onclick=x>y</B>"_s, u"<p>a<b onclick=\"x\">y</b>|c</p>"_s);
        row("text", u"<p>a|c</p>"_s, u"x &lt; y"_s, u"<p>ax &lt; y|c</p>"_s);
        row("nothing takes away", u"<p>a[b]c</p>"_s, QString(), u"<p>a|c</p>"_s);
        row("hidden field", u"<p>a|</p>"_s, u"<INPUT TYPE=hidden NAME=n>"_s,
            u"<p>a<input type=\"hidden\" name=\"n\">|</p>"_s);
    }
    void Paste()
    {
        QFETCH(QString, before);
        QFETCH(QString, html);
        m_rig->SetBody(before);
        DomTextRange range = m_rig->Surface.DOM().SelectionTextRange();
        range.pasteHTML(html);
        QTEST(m_rig->Body(), "after");
        QCOMPARE(range.Text(), QString());
        range.Select();
        QTEST(m_rig->Body(), "after"); // the range stands where the caret does
        QCOMPARE(m_rig->UndoAll(), 1);
        QCOMPARE(m_rig->Body(), before);
    }

    void Elements_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("outer"); // of the element at the selection, in engine form
        QTest::addColumn<QString>("replacement");
        QTest::addColumn<QString>("after"); // all of the body in engine form
        const auto row = [](const char *name, const QString &body, const QString &outer, const QString &replacement,
                            const QString &after) { QTest::newRow(name) << body << outer << replacement << after; };
        row("link", u"<p><a href=\"x.htm\" title=\"a b\">y|</a></p>"_s, u"<A href=x.htm title=\"a b\">y</A>"_s,
            u"<A HREF=\"z\">w</A>!"_s, u"<P><A href=z>w</A>!</P>"_s);
        row("cell", u"<table><tr><td nowrap>a|</td></tr></table>"_s, u"<TD nowrap>a</TD>"_s, u"<TD>b</TD>"_s,
            u"<TABLE><TBODY><TR><TD>b</TD></TR></TBODY></TABLE>"_s);
        row("server code in and out", u"<p class=<?=$a?>>x|<?php b() ?></p>"_s,
            u"<P class=\"<?=$a?>\">x<?php b() ?></P>"_s, u"<H1 <?c?> id=\"<%=d%>\">y<?php e() ?></H1>"_s,
            u"<H1 <?c?> id=\"<%=d%>\">y<?php e() ?></H1>"_s);
    }
    void Elements()
    {
        QFETCH(QString, body);
        QFETCH(QString, replacement);
        m_rig->SetBody(body);
        DomDocument dom = m_rig->Surface.DOM();
        DomElement element = dom.SelectionTextRange().parentElement();
        QTEST(element.outerHTML(), "outer");
        element.SetOuterHTML(replacement);
        QTEST(dom.body().innerHTML(), "after");
        QVERIFY(element.outerHTML().startsWith(replacement.left(2))); // now on the new element
        QCOMPARE(m_rig->UndoAll(), 1);
    }

    /// Code that comes into a page without any, and into one whose own code is there already, is told apart.
    void ServerCodeComesIn()
    {
        m_rig->SetBody(u"<p>a|</p>"_s);
        DomDocument dom = m_rig->Surface.DOM();
        dom.PasteHTML(u"<?php one() ?>\r\n<b title='<?=two()?>'>x</b>"_s);
        dom.PasteHTML(u"<% three() %><? open"_s);
        const QString html = m_rig->Surface.DocumentHTML();
        QVERIFY2(html.contains(u"a<?php one() ?>\n<B title=\"<?=two()?>\">x</B><% three() %>"_s), qPrintable(html));
        m_rig->Surface.SetDocumentHTML(html);
        QVERIFY(m_rig->Surface.WaitWhileBusy());
        QCOMPARE(m_rig->Surface.DocumentHTML(), html);
        m_rig->Surface.ExecCommand(DECMD_UNDO); // the page before: its code is its own again
        QCOMPARE(m_rig->Surface.DocumentHTML(), html);
    }

    void InsertsBeside()
    {
        m_rig->SetBody(u"<p><b>x|</b></p>"_s);
        DomElement element = m_rig->Surface.DOM().SelectionTextRange().parentElement();
        QCOMPARE(element.tagName(), u"B"_s);
        element.insertAdjacentHTML(u"AfterBegin"_s, u"1"_s);
        element.insertAdjacentHTML(u"beforeEnd"_s, u"<?=2?>"_s);
        element.insertAdjacentHTML(u"BeforeBegin"_s, u"3"_s);
        element.insertAdjacentHTML(u"AfterEnd"_s, u"4"_s);
        QCOMPARE(element.parentElement().outerHTML(), u"<P>3<B>1x<?=2?></B>4</P>"_s);
        QCOMPARE(m_rig->UndoAll(), 4);
    }

    /// Attributes change in place, server code too; several calls, a new page among them, can be one step.
    void AttributesInOneStep()
    {
        m_rig->SetBody(u"<p><a name=\"k\" <?=1?> class=\"c\" href=\"x\">[a<i>b</i>]</a></p>"_s);
        const QString start = m_rig->Body();
        DesignSurface &surface = m_rig->Surface;
        {
            const DesignSurface::OneStep step(surface);
            DomElement anchor = surface.DOM().SelectionTextRange().parentElement();
            anchor.TakeAttributes(u"<A <?=1?> href='<?=\">\"?>' target=\"a b\">"_s);
            QCOMPARE(anchor.outerHTML(), u"<A <?=1?> href=\"<?=\">\"?>\" target=\"a b\">a<I>b</I></A>"_s);
            const DesignSurface::OneStep within(surface);
            surface.ExecCommand(DECMD_BOLD);
            surface.SetDocumentHTML(surface.EngineHTML() + u"<!-- end -->"_s, DesignSurface::TextForm::Engine);
        }
        QVERIFY(surface.IsDirty());
        QVERIFY(surface.EngineHTML().endsWith(u"<!-- end -->"_s));
        surface.ExecCommand(DECMD_UNDO);
        QVERIFY(!surface.IsDirty());
        QCOMPARE(m_rig->Body(), start);
        QCOMPARE(surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
        surface.ExecCommand(DECMD_REDO);
        QVERIFY(surface.EngineHTML().endsWith(u"<!-- end -->"_s));
        QVERIFY(surface.EngineHTML().contains(u"target=\"a b\"><B>a<I>b</I></B></A>"_s));
    }

    void ControlSelection()
    {
        m_rig->SetBody(u"<p>a<img src=\"x.png\" usemap=\"#m\">b|</p>"_s);
        m_rig->Click(u"img"_s, {2, 2}, Qt::RightButton);
        DomDocument dom = m_rig->Surface.DOM();
        QCOMPARE(dom.SelectionType(), u"Control"_s);
        QVERIFY(dom.SelectionTextRange().IsNull());
        DomElement image = dom.SelectionControlRange().commonParentElement();
        QCOMPARE(image.outerHTML(), u"<IMG src=x.png usemap=#m>"_s);
        image.SetOuterHTML(u"<IMG src=y.png>"_s);
        QCOMPARE(dom.SelectionType(), u"Control"_s);
        QCOMPARE(dom.SelectionControlRange().commonParentElement().outerHTML(), u"<IMG src=y.png>"_s);
        dom.PasteHTML(u"<b>c</b>"_s);
        QCOMPARE(m_rig->Body(), u"<p>a<b>c</b>|b</p>"_s);
        QVERIFY(dom.SelectionControlRange().IsNull());
    }

    /// Handles on what is gone answer nothing and do nothing; those of the page before never mean a new thing.
    void HandlesEnd()
    {
        m_rig->SetBody(u"<p>a|b</p>"_s);
        DomTextRange range = m_rig->Surface.DOM().SelectionTextRange();
        DomElement element = range.parentElement();
        m_rig->SetBody(u"<p>c|d</p>"_s);
        const DomElement other = m_rig->Surface.DOM().SelectionTextRange().parentElement();
        QCOMPARE(element.outerHTML(), QString());
        QVERIFY(element.parentElement().IsNull());
        QCOMPARE(range.Move(u"character"_s, 1), 0);
        range.pasteHTML(u"x"_s);
        element.SetOuterHTML(u"x"_s);
        QCOMPARE(other.outerHTML(), u"<P>cd</P>"_s);
        DomElement outlives;
        {
            DesignSurface gone;
            gone.LoadText(u"<p>x"_s, {});
            QVERIFY(gone.WaitWhileBusy(30000));
            outlives = gone.DOM().body();
            QVERIFY(!outlives.outerHTML().isEmpty());
        }
        QCOMPARE(outlives.outerHTML(), QString());
    }

    /// The page holds no thing that the host has let go.
    void HandlesAreForgotten()
    {
        m_rig->SetBody(u"<p>a|b</p>"_s);
        for (int i = 0; i < 50; ++i)
            QVERIFY(!m_rig->Surface.DOM().SelectionTextRange().parentElement().parentElement().IsNull());
        QTRY_COMPARE(m_rig->Run(u"Surface.call('domCount')"_s).toInt(), 0);
    }

private:
    std::unique_ptr<SurfaceRig> m_rig;
};

QTEST_MAIN(DomTest)
#include "DomTest.moc"
