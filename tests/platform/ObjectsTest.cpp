#include "support/SurfaceRig.h"

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>

#include <memory>

using namespace Qt::StringLiterals;

/// Objects of the page under a real mouse: what selects them, resizing by handles, deleting, dragging in the text.
class ObjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_rig = std::make_unique<SurfaceRig>();
        QImage picture(60, 40, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(m_rig->Path(u"a.png"_s)));
    }
    void cleanupTestCase() { m_rig.reset(); }

    void ClickSelects_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("clicked");
        QTest::addColumn<QPoint>("offset");
        QTest::addColumn<QString>("object"); // none: the click means the text
        const QPoint middle(-1, -1);
        const QString before = u"<p>before</p>"_s;
        const auto row = [&](const char *name, const QString &body, const QString &clicked, QPoint offset,
                             const QString &object) { QTest::newRow(name) << body << clicked << offset << object; };
        row("image", u"<p>a <img src=\"a.png\"> b</p>"_s, u"img"_s, middle, u"img"_s);
        row("image in a link", u"<p>a <a href=\"x.htm\"><img src=\"a.png\"></a></p>"_s, u"img"_s, middle, u"img"_s);
        row("image with a map",
            u"<p><img src=\"a.png\" usemap=\"#m\"></p><map name=\"m\"><area href=\"x\" coords=\"0,0,60,40\"></map>"_s,
            u"img"_s, middle, u"img"_s);
        row("text field", u"<p><input type=\"text\" value=\"v\"></p>"_s, u"input"_s, middle, u"input"_s);
        row("check box", u"<p><input type=\"checkbox\"></p>"_s, u"input"_s, middle, u"input"_s);
        row("list", u"<p><select size=\"3\"><option>one</option><option>two</option></select></p>"_s, u"option"_s,
            middle, u"select"_s);
        row("drop-down list", u"<p><select><option>one</option></select></p>"_s, u"select"_s, middle, u"select"_s);
        row("text area", u"<p><textarea cols=\"20\" rows=\"3\">t</textarea></p>"_s, u"textarea"_s, middle,
            u"textarea"_s);
        row("button with markup", u"<p><button><b>Go</b></button></p>"_s, u"b"_s, middle, u"button"_s);
        row("frame", u"<p><iframe src=\"x.htm\" width=\"100\" height=\"50\"></iframe></p>"_s, u"iframe"_s, middle,
            u"iframe"_s);
        row("plug-in", u"<p><object width=\"100\" height=\"50\"></object></p>"_s, u"object"_s, middle, u"object"_s);
        row("rule", u"<p>a</p><hr><p>b</p>"_s, u"hr"_s, middle, u"hr"_s);
        const QString table = u"<table border=\"6\" cellspacing=\"6\"><tbody><tr><td>one</td><td>two</td></tr></tbody>"
                              u"</table>"_s;
        row("edge of a table", before + table, u"table"_s, {2, 20}, u"table"_s);
        row("between two cells", before + table, u"td"_s, {-3, 8}, u"table"_s);
        row("text of a cell", before + table, u"td"_s, middle, {});
        row("text at the edge of a table",
            before + u"<table cellspacing=\"0\" cellpadding=\"0\"><tbody><tr><td>one</td></tr></tbody></table>"_s,
            u"td"_s, {2, 9}, {});
        row("inner table",
            u"<table border=\"1\"><tbody><tr><td><table id=\"in\" border=\"6\"><tbody><tr><td>x</td>"
            u"</tr></tbody></table></td></tr></tbody></table>"_s,
            u"#in"_s, {2, 10}, u"#in"_s);
        const QString layer = u"<div style=\"position:absolute;left:50px;top:60px;width:200px;height:80px\">"
                              u"layer</div>"_s;
        row("edge of a layer", before + layer, u"div"_s, {3, 40}, u"div"_s);
        row("text of a layer", before + layer, u"div"_s, {20, 10}, {});
        row("image below the text",
            u"<p>t</p><img src=\"a.png\" style=\"position:absolute;left:90px;top:90px;z-index:-1\">"_s, u"img"_s,
            middle, u"img"_s);
    }
    void ClickSelects()
    {
        QFETCH(QString, body);
        QFETCH(QString, clicked);
        QFETCH(QPoint, offset);
        QFETCH(QString, object);
        Show(body);
        const QRect rect = m_rig->RectOf(clicked);
        const QPoint place = offset == QPoint(-1, -1) ? rect.center() : rect.topLeft() + offset;
        QTest::mouseClick(m_rig->Surface.InputWidget(), Qt::LeftButton, {}, place);
        QCOMPARE(m_rig->Surface.SelectionType(), object.isEmpty() ? u"None"_s : u"Control"_s);
        if (object.isEmpty())
            return;
        QCOMPARE(Selected(object), true);
        m_rig->Type(u"xy"_s); // nothing is lost to a slip, and no field takes it
        QCOMPARE(m_rig->PlainBody(), body);
        QCOMPARE(m_rig->Run(u"const i = document.querySelector('input'); !!i && (i.checked || i.value.includes('x'))"_s)
                     .toBool(),
                 false);
        QVERIFY(!m_rig->Surface.IsDirty());
        QVERIFY(!m_rig->Surface.DocumentHTML().contains(u"inkloom"_s, Qt::CaseInsensitive));
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    }

    void Resize_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("handle");
        QTest::addColumn<QPoint>("by");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *name, const QString &tag, const QString &handle, QPoint by, bool shift,
                            const QString &after) { QTest::newRow(name) << tag << handle << by << shift << after; };
        const auto image = [](const QString &attributes) { return u"<img src=\"a.png\"%1>"_s.arg(attributes); };
        row("no size yet", image({}), u"se"_s, {20, 10}, false, image(u" width=\"80\" height=\"50\""_s));
        row("one side of none", image({}), u"e"_s, {20, 0}, false, image(u" width=\"80\" height=\"40\""_s));
        row("attributes", image(u" height=\"60\" width=\"60\""_s), u"ne"_s, {30, -20}, false,
            image(u" height=\"80\" width=\"90\""_s));
        row("west grows to the left", image(u" width=\"60\" height=\"40\""_s), u"w"_s, {-15, 7}, false,
            image(u" width=\"75\" height=\"40\""_s));
        row("north", image(u" width=\"60\" height=\"40\""_s), u"n"_s, {5, -30}, false,
            image(u" width=\"60\" height=\"70\""_s));
        row("in proportion", image(u" width=\"60\" height=\"40\""_s), u"se"_s, {60, 10}, true,
            image(u" width=\"120\" height=\"80\""_s));
        row("in proportion with one side", image(u" style=\"width:60px\""_s), u"sw"_s, {-30, 0}, true,
            image(u" style=\"width: 90px\""_s));
        row("style with more in it", image(u" style=\"MSO-X:1;WIDTH:60px;height:40px;\""_s), u"se"_s, {10, 10}, false,
            image(u" style=\"MSO-X:1;WIDTH: 70px;height: 50px;\""_s));
        row("style in another unit", image(u" style=\"width:6em;height:40px\""_s), u"e"_s, {48, 0}, false,
            image(u" style=\"width: 9em;height:40px\""_s));
        row("border of the page is no width", image(u" width=\"60\" height=\"40\" border=\"5\""_s), u"e"_s, {10, 0},
            false, image(u" width=\"70\" height=\"40\" border=\"5\""_s));
        row("a rule of the page beats attributes", image(u" class=\"small\""_s), u"se"_s, {20, 20}, false,
            image(u" class=\"small\" width=\"50\" height=\"50\" style=\"width: 50px; height: 50px\""_s));
        row("not to nothing", image(u" width=\"60\" height=\"40\""_s), u"nw"_s, {100, 100}, false,
            image(u" width=\"4\" height=\"4\""_s));
        row("rule", u"<hr width=\"200\" size=\"4\">"_s, u"s"_s, {0, 6}, false, u"<hr width=\"200\" size=\"10\">"_s);
        row("rule in percent", u"<hr width=\"50%\">"_s, u"e"_s, {78, 0}, false, u"<hr width=\"60%\">"_s);
        const QString rest = u"><tbody><tr><td>x</td></tr></tbody></table>"_s;
        row("table in percent", u"<table border=\"4\" width=\"50%\""_s + rest, u"e"_s, {78, 0}, false,
            u"<table border=\"4\" width=\"60%\""_s + rest);
        row("table, width alone", u"<table border=\"4\" width=\"200\""_s + rest, u"e"_s, {50, 9}, false,
            u"<table border=\"4\" width=\"250\""_s + rest);
        row("table, a rule of the page", u"<table class=\"small\" border=\"4\""_s + rest, u"e"_s, {90, 0}, false,
            u"<table class=\"small\" border=\"4\" width=\"120\" style=\"width: 120px\""_s + rest);
        row("table, height too", u"<table border=\"4\" width=\"200\" height=\"50\""_s + rest, u"se"_s, {50, 50}, false,
            u"<table border=\"4\" width=\"250\" height=\"100\""_s + rest);
        row("frame", u"<iframe width=\"100\" height=\"50\" frameborder=\"0\"></iframe>"_s, u"se"_s, {10, 20}, false,
            u"<iframe width=\"110\" height=\"70\" frameborder=\"0\"></iframe>"_s);
        row("field with a style", u"<input style=\"width:100px\">"_s, u"e"_s, {50, 0}, false,
            u"<input style=\"width: 150px\">"_s);
        row("field with nothing", u"<button class=\"wide\">b</button>"_s, u"e"_s, {50, 0}, false,
            u"<button class=\"wide\" style=\"width: 150px\">b</button>"_s);
        row("lines of a text area", u"<textarea cols=\"20\" rows=\"2\"></textarea>"_s, u"s"_s, {0, 60}, false,
            u"<textarea cols=\"20\" rows=\"6\"></textarea>"_s);
    }
    void Resize()
    {
        QFETCH(QString, before);
        QFETCH(QString, handle);
        QFETCH(QPoint, by);
        QFETCH(bool, shift);
        QFETCH(QString, after);
        Show(u"<p>text</p>"_s + before, Head());
        Select();
        const QRect rect = m_rig->RectOf(Object());
        Drag(HandleOf(rect, handle), by, shift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(m_rig->PlainBody(), u"<p>text</p>"_s + after);
        QCOMPARE(Parsed(), u"<p>text</p>"_s + after);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        QVERIFY(!m_rig->Surface.DocumentHTML().contains(u"inkloom"_s, Qt::CaseInsensitive));
        m_rig->Click(u"p"_s);
        m_rig->Surface.ExecCommand(DECMD_UNDO);
        QCOMPARE(m_rig->PlainBody(), u"<p>text</p>"_s + before);
        QVERIFY(!m_rig->Surface.IsDirty());
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        m_rig->Surface.ExecCommand(DECMD_REDO);
        QCOMPARE(m_rig->PlainBody(), u"<p>text</p>"_s + after);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    }

    void ServerCodeInASizeSurvives()
    {
        Show(u"<p>text</p><img src=\"a.png\" width=\"<?=$w?>\" height=\"40\">"_s);
        Select();
        Drag(HandleOf(m_rig->RectOf(u"img"_s), u"se"_s), {20, 20});
        QVERIFY2(m_rig->Surface.DocumentHTML().contains(u"<?=$w?>"_s), qPrintable(m_rig->Surface.DocumentHTML()));
        QCOMPARE(m_rig->RectOf(u"img"_s).size(), QSize(80, 60));
    }

    void HandlesStandAtTheCorners()
    {
        Show(u"<p id=\"grows\">text</p><img src=\"a.png\"><p style=\"height:2000px\">text</p>"_s);
        Select();
        QTRY_VERIFY(HandleShows());
        m_rig->Run(u"scrollTo(0, 20)"_s);
        QTRY_VERIFY(HandleShows());
        m_rig->Run(u"var sheet = new CSSStyleSheet(); sheet.replaceSync('#grows { font-size: 60px }');"
                   "document.adoptedStyleSheets = [...document.adoptedStyleSheets, sheet];"_s); // as a late style sheet
        QTRY_VERIFY(HandleShows());
        const QPoint corner = m_rig->RectOf(u"img"_s).bottomRight();
        m_rig->Click(u"p"_s, {5, 10});
        QTRY_COMPARE(m_rig->Surface.grab().toImage().pixelColor(corner - QPoint(1, 1)), QColor(Qt::red));
    }

    void EscapeEndsADrag()
    {
        const QString body = u"<p>text</p><img src=\"a.png\" width=\"60\" height=\"40\">"_s;
        Show(body);
        Select();
        QWidget *input = m_rig->Surface.InputWidget();
        const QPoint handle = HandleOf(m_rig->RectOf(u"img"_s), u"se"_s);
        QTest::mousePress(input, Qt::LeftButton, {}, handle);
        QTest::mouseMove(input, handle + QPoint(30, 30));
        QCOMPARE(m_rig->Run(u"Surface.call('dragLabel')"_s).toString(), u"90 x 70"_s);
        QTest::keyClick(input, Qt::Key_Escape);
        QTest::mouseMove(input, handle + QPoint(40, 40));
        QTest::mouseRelease(input, Qt::LeftButton, {}, handle + QPoint(40, 40));
        QCOMPARE(m_rig->PlainBody(), body);
        QVERIFY(m_rig->Surface.QueryStatus(DECMD_UNDO) < DECMDF_ENABLED);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        QCOMPARE(m_rig->Run(u"Surface.call('dragLabel')"_s).toString(), QString());
    }

    void Keys_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *name, const QString &before, Qt::Key key, Qt::KeyboardModifiers modifiers,
                            const QString &after) { QTest::newRow(name) << before << key << modifiers << after; };
        const QString line = u"<p>a<img src=\"a.png\">b</p>"_s;
        row("Delete", line, Qt::Key_Delete, {}, u"<p>a|b</p>"_s);
        row("Backspace", line, Qt::Key_Backspace, {}, u"<p>a|b</p>"_s);
        row("with its link and font", u"<p>a<font color=\"red\"><a href=\"x\"><img src=\"a.png\"></a></font>b</p>"_s,
            Qt::Key_Delete, {}, u"<p>a|b</p>"_s);
        row("a bookmark stays", u"<p>a<a name=\"x\"><img src=\"a.png\"></a>b</p>"_s, Qt::Key_Delete, {},
            u"<p>a<a name=\"x\">|</a>b</p>"_s);
        row("server code stays", u"<p>a<b><!--c--><img src=\"a.png\"></b>b</p>"_s, Qt::Key_Delete, {},
            u"<p>a<b><!--c-->|</b>b</p>"_s);
        row("alone in its line", u"<p><img src=\"a.png\"></p><p>b</p>"_s, Qt::Key_Delete, {},
            u"<p>|<br></p><p>b</p>"_s);
        row("a table", u"<p>a</p><table border=\"5\"><tbody><tr><td>x</td></tr></tbody></table><p>b</p>"_s,
            Qt::Key_Delete, {}, u"<p>a</p>|<p>b</p>"_s);
        row("left", line, Qt::Key_Left, {}, u"<p>a|<img src=\"a.png\">b</p>"_s);
        row("down", line, Qt::Key_Down, {}, u"<p>a<img src=\"a.png\">|b</p>"_s);
        row("Escape", line, Qt::Key_Escape, {}, u"<p>a<img src=\"a.png\">|b</p>"_s);
        row("one pixel", line, Qt::Key_Right, Qt::ControlModifier,
            u"<p>a[<img src=\"a.png\" width=\"61\" height=\"40\">]b</p>"_s);
    }
    void Keys()
    {
        QFETCH(QString, before);
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, after);
        Show(before);
        Select();
        m_rig->Key(key, modifiers);
        QCOMPARE(m_rig->Body(), after);
        QCOMPARE(Parsed(), m_rig->PlainBody());
        if (m_rig->Surface.IsDirty()) {
            m_rig->Surface.ExecCommand(DECMD_UNDO);
            QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        }
        QCOMPARE(m_rig->PlainBody(), before);
    }

    void DeleteCommandTakesTheObject()
    {
        Show(u"<p>a<a href=\"x\"><img src=\"a.png\"></a>b</p>"_s);
        Select();
        m_rig->Surface.ExecCommand(DECMD_DELETE);
        QCOMPARE(m_rig->Body(), u"<p>a|b</p>"_s);
        m_rig->SetBody(u"<p>a[b]c</p>"_s);
        m_rig->Surface.ExecCommand(DECMD_DELETE);
        QCOMPARE(m_rig->Body(), u"<p>a|c</p>"_s);
    }

    void DoubleClickKeepsTheObject()
    {
        Show(u"<p><input type=\"text\" value=\"word\"></p>"_s);
        m_rig->Run(u"window.addEventListener('dblclick', (e) => { window.twice = e.target.nodeName; });"_s);
        QWidget *input = m_rig->Surface.InputWidget();
        const QPoint place = m_rig->PlaceOf(u"input"_s);
        // Qt Test keeps its clicks too far apart in time to be a double one.
        quint64 time = 1000000;
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                        QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease})
        {
            QMouseEvent event(type, place, input->mapToGlobal(place), Qt::LeftButton,
                              type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
            event.setTimestamp(time += 20);
            QCoreApplication::sendEvent(input, &event);
        }
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        QCOMPARE(m_rig->Run(u"window.twice"_s).toString(), u"INPUT"_s);
        m_rig->Type(u"x"_s);
        QCOMPARE(m_rig->Run(u"document.querySelector('input').value"_s).toString(), u"word"_s);
    }

    void RightButtonSelects()
    {
        Show(u"<p>a <img src=\"a.png\"> b</p>"_s);
        m_rig->Click(u"img"_s, {-1, -1}, Qt::RightButton);
        QVERIFY(Selected(u"img"_s));
        // ... and a key that extends the selection starts from the object, as from any text.
        m_rig->Key(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Text"_s);
    }

    void DragInTheText_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("with its link") << u"<p id=\"to\">ab</p><p>x<a href=\"x\"><img src=\"a.png\"></a>y</p>"_s
                                       << u"<p id=\"to\">ab<a href=\"x\"><img src=\"a.png\"></a></p><p>xy</p>"_s;
        QTest::newRow("into another link")
            << u"<p><a href=\"y\" id=\"to\">ab</a></p><p>x<a href=\"x\"><img src=\"a.png\"></a>y</p>"_s
            << u"<p><a href=\"y\" id=\"to\">ab<img src=\"a.png\"></a></p><p>xy</p>"_s;
    }
    void DragInTheText()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        Show(before);
        Select();
        const QRect line = m_rig->RectOf(u"#to"_s);
        const QPoint from = m_rig->PlaceOf(u"img"_s);
        Drag(from, QPoint(line.left() + 60, line.center().y()) - from);
        QCOMPARE(m_rig->PlainBody(), after);
        QCOMPARE(Parsed(), after);
        QVERIFY(Selected(u"img"_s));
        m_rig->Surface.ExecCommand(DECMD_UNDO);
        QCOMPARE(m_rig->PlainBody(), before);
        QVERIFY(Selected(u"img"_s));
    }

private:
    static QString Head() { return u"<style>.small { width: 30px; height: 30px } .wide { width: 100px }</style>"_s; }
    static QString Object() { return u"img,input,textarea,button,iframe,hr,table"_s; }

    void Show(const QString &body, const QString &head = {})
    {
        m_rig->SetBody(body, head);
        QTRY_VERIFY(m_rig->Run(u"[...document.images].every((i) => i.complete && i.naturalWidth === 60)"_s).toBool());
    }
    // A handle reaches into the picture by some pixels, and is white.
    bool HandleShows()
    {
        const QPoint corner = m_rig->RectOf(u"img"_s).bottomRight();
        return m_rig->Surface.grab().toImage().pixelColor(corner - QPoint(1, 1)) == QColor(Qt::white);
    }
    // What a parser makes of the body as it stands.
    QString Parsed()
    {
        return m_rig
            ->Run(u"new DOMParser().parseFromString('<!DOCTYPE html><body>' + document.body.innerHTML, 'text/html')"
                  ".body.innerHTML"_s)
            .toString();
    }
    void Select()
    {
        const QRect rect = m_rig->RectOf(Object());
        const bool table = m_rig->Run(u"!!document.querySelector('table')"_s).toBool();
        QTest::mouseClick(m_rig->Surface.InputWidget(), Qt::LeftButton, {},
                          table ? rect.topLeft() + QPoint(2, 2) : rect.center());
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    }
    bool Selected(const QString &selector)
    {
        return m_rig->Surface.SelectionType() == u"Control"_s &&
               m_rig
                   ->Run(
                       u"(() => { const s = getSelection(); return s.anchorNode.childNodes[s.anchorOffset].matches(%1);"
                       u"})()"_s.arg(SurfaceRig::Literal(selector)))
                   .toBool();
    }
    static QPoint HandleOf(const QRect &rect, const QString &direction)
    {
        const auto along = [&](QChar low, QChar high, int start, int length) {
            return direction.contains(low) ? start : direction.contains(high) ? start + length : start + length / 2;
        };
        return {along(u'w', u'e', rect.x(), rect.width()), along(u'n', u's', rect.y(), rect.height())};
    }
    void Drag(QPoint from, QPoint by, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget *input = m_rig->Surface.InputWidget();
        QTest::mousePress(input, Qt::LeftButton, modifiers, from);
        QTest::mouseMove(input, from + by / 2);
        QTest::mouseMove(input, from + by);
        QTest::mouseRelease(input, Qt::LeftButton, modifiers, from + by);
        m_rig->Settle();
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

QTEST_MAIN(ObjectsTest)
#include "ObjectsTest.moc"
