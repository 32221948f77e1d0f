#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Positioned elements: out of the text and back, moved by mouse and keys, locked, one above the other.
class PositionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }
    void cleanup() { m_rig->Surface.SetSnapToGrid(false); }

    void MakeAbsolute_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("clicked"); // or the caret stands in it
        const auto row = [](const char *name, const QString &before, bool clicked) {
            QTest::newRow(name) << before << clicked;
        };
        const QString button = u"<button id=\"o\">Go</button>"_s;
        row("in the line", u"<p>some text %1 more</p>"_s.arg(button), true);
        row("in a positioned parent",
            u"<div style=\"position:relative;left:30px;border:7px solid\"><p>a</p>%1</div>"_s.arg(button), true);
        row("in a table cell",
            u"<table border=\"3\" align=\"center\"><tbody><tr><td>a %1</td></tr></tbody></table>"_s.arg(button), true);
        row("far down", u"<p style=\"height:2000px\">a</p><p>%1</p><p style=\"height:900px\">b</p>"_s.arg(button),
            true);
        row("in an inline element", u"<center>a <b style=\"position:relative\">b %1</b></center>"_s.arg(button), true);
        row("rule of a width in percent", u"<p>a</p><hr id=\"o\" width=\"50%\"><p>b</p>"_s, true);
        row("table",
            u"<center><table id=\"o\" border=\"5\" width=\"60%\"><tbody><tr><td>x</td></tr></tbody></table>"
            u"</center><p>b</p>"_s,
            true);
        row("container of the caret", u"<p>a</p><div id=\"o\" style=\"color:red\"><p>te|xt</p></div><p>b</p>"_s, false);
        row("width of its own", u"<div id=\"o\" style=\"width:300px; padding:5px\">te|xt</div>"_s, false);
    }
    void MakeAbsolute()
    {
        QFETCH(QString, before);
        QFETCH(bool, clicked);
        m_rig->SetBody(before);
        before.remove(u'|');
        m_rig->Run(u"document.querySelector('#o').scrollIntoView({block: 'center'})"_s);
        if (clicked)
            m_rig->Click(u"#o"_s, u"table"_s == Name() ? QPoint(2, 2) : QPoint(-1, -1));
        const QRect rect = m_rig->RectOf(u"#o"_s);
        QCOMPARE(Status(DECMD_MAKE_ABSOLUTE), 3);
        QCOMPARE(Status(DECMD_SEND_TO_BACK), 1);
        m_rig->Surface.ExecCommand(DECMD_MAKE_ABSOLUTE);
        QCOMPARE(Status(DECMD_MAKE_ABSOLUTE), 7);
        QCOMPARE(Status(DECMD_SEND_TO_BACK), 3);
        QCOMPARE(m_rig->Run(u"getComputedStyle(document.querySelector('#o')).position"_s).toString(), u"absolute"_s);
        const QRect now = m_rig->RectOf(u"#o"_s);
        for (const int difference : {now.left() - rect.left(), now.top() - rect.top(), now.right() - rect.right(),
                                     now.bottom() - rect.bottom()})
            QVERIFY2(qAbs(difference) <= 1, qPrintable(m_rig->PlainBody()));
        m_rig->Surface.ExecCommand(DECMD_MAKE_ABSOLUTE);
        QCOMPARE(m_rig->PlainBody(), before);
        QCOMPARE(m_rig->UndoAll(), 2);
        QCOMPARE(m_rig->PlainBody(), before);
    }

    void NothingToPosition()
    {
        m_rig->SetBody(u"<p>te|xt</p>"_s);
        for (const Decmd command : {DECMD_MAKE_ABSOLUTE, DECMD_BRING_TO_FRONT, DECMD_LOCK_ELEMENT})
            QCOMPARE(Status(command), 1);
    }

    void BackIntoTheTextOfAPagesOwn()
    {
        m_rig->SetBody(u"<img id=\"o\" style=\"color:red;LEFT:90px;WIDTH:50px;POSITION:absolute;TOP:90px;HEIGHT:40px;"
                       u"Z-INDEX:3\" design_time_lock=\"True\"><p>a</p>"_s);
        m_rig->Click(u"#o"_s);
        m_rig->Surface.ExecCommand(DECMD_MAKE_ABSOLUTE);
        QCOMPARE(m_rig->PlainBody(), u"<img id=\"o\" style=\"color:red;WIDTH:50px;HEIGHT:40px\"><p>a</p>"_s);
    }

    void Move_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<bool>("snap");
        QTest::addColumn<QPoint>("by");
        QTest::addColumn<QString>("after");
        QTest::newRow("by pixels") << u"left:33px;top:47px"_s << false << QPoint(20, -10) << u"left: 53px;top: 37px"_s;
        QTest::newRow("to the grid") << u"left:33px;top:47px"_s << true << QPoint(20, -10) << u"left: 50px;top: 40px"_s;
        QTest::newRow("held at the right")
            << u"right:100px;top:47px"_s << false << QPoint(-20, 0) << u"top: 47px; left: 560px"_s;
        QTest::newRow("another unit") << u"left:10em;top:47px"_s << false << QPoint(0, 5) << u"left: 160px;top: 52px"_s;
    }
    void Move()
    {
        QFETCH(QString, style);
        QFETCH(bool, snap);
        QFETCH(QPoint, by);
        QFETCH(QString, after);
        Layer(style);
        m_rig->Surface.SetSnapToGrid(snap);
        const QString before = m_rig->PlainBody();
        Drag(m_rig->PlaceOf(u"#o"_s, {3, 30}), by);
        QCOMPARE(StyleOf(u"#o"_s), Fixed + after);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        QVERIFY(!m_rig->Surface.DocumentHTML().contains(u"inkloom"_s, Qt::CaseInsensitive));
        // Its frame, just outside, is as good to take hold of.
        const QString once = m_rig->PlainBody();
        Drag(m_rig->RectOf(u"#o"_s).topLeft() + QPoint(-3, 15), {30, 30});
        QVERIFY(m_rig->PlainBody() != once);
        QCOMPARE(m_rig->UndoAll(), 2);
        QCOMPARE(m_rig->PlainBody(), before);
    }

    void SnapHoldsForTheNextPage()
    {
        m_rig->Surface.SetSnapToGrid(true);
        // Without a doctype, which takes a new document of the engine.
        m_rig->Surface.LoadText(u"<body><div id=\"o\" style=\"%1left:13px;top:17px\">x</div></body>"_s.arg(Fixed),
                                m_rig->PagePath());
        QVERIFY(m_rig->Surface.WaitWhileBusy(30000));
        Drag(m_rig->PlaceOf(u"#o"_s, {3, 30}), {31, 0});
        QCOMPARE(StyleOf(u"#o"_s), Fixed + u"left: 40px;top: 20px"_s);
    }

    void HandlesOfTheWestMoveAsWell()
    {
        Layer(u"left:100px;top:100px"_s);
        m_rig->Click(u"#o"_s, {3, 30});
        Drag(m_rig->RectOf(u"#o"_s).topLeft(), {-20, -30});
        QCOMPARE(StyleOf(u"#o"_s), u"position:absolute;width: 140px;height: 110px;left: 80px;top: 70px"_s);
        m_rig->Surface.SetSnapToGrid(true);
        Drag(m_rig->RectOf(u"#o"_s).bottomRight() + QPoint(1, 1), {7, 17});
        QCOMPARE(StyleOf(u"#o"_s), u"position:absolute;width: 150px;height: 130px;left: 80px;top: 70px"_s);
        QCOMPARE(m_rig->UndoAll(), 2);
    }

    void ArrowsNudge()
    {
        Layer(u"left:103px;top:100px"_s);
        m_rig->Click(u"#o"_s, {3, 30});
        m_rig->Key(Qt::Key_Right);
        m_rig->Key(Qt::Key_Right);
        m_rig->Key(Qt::Key_Up);
        QCOMPARE(StyleOf(u"#o"_s), Fixed + u"left: 105px;top: 99px"_s);
        m_rig->Surface.ExecCommand(DECMD_UNDO); // all of them
        QCOMPARE(StyleOf(u"#o"_s), Fixed + u"left:103px;top:100px"_s);
        m_rig->Key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(StyleOf(u"#o"_s), u"position:absolute;width:120px;height: 81px;left:103px;top:100px"_s);
        m_rig->Surface.SetSnapToGrid(true);
        m_rig->Key(Qt::Key_Left);
        QVERIFY2(StyleOf(u"#o"_s).contains(u"left: 90px;top: 100px"_s), qPrintable(StyleOf(u"#o"_s)));
    }

    void LockRefusesMouseAndKeys()
    {
        Layer(u"left:100px;top:100px"_s);
        m_rig->Click(u"#o"_s, {3, 30});
        QCOMPARE(Status(DECMD_LOCK_ELEMENT), 3);
        m_rig->Surface.ExecCommand(DECMD_LOCK_ELEMENT);
        QCOMPARE(Status(DECMD_LOCK_ELEMENT), 7);
        const QString locked = m_rig->PlainBody();
        QVERIFY(locked.contains(u"design_time_lock=\"true\""_s));
        const QRect rect = m_rig->RectOf(u"#o"_s);
        Drag(rect.topLeft() + QPoint(3, 30), {20, 20});
        Drag(rect.bottomRight(), {20, 20});
        m_rig->Key(Qt::Key_Right);
        m_rig->Key(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(m_rig->PlainBody(), locked);
        QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
        m_rig->Surface.ExecCommand(DECMD_LOCK_ELEMENT);
        QVERIFY(!m_rig->PlainBody().contains(u"design_time_lock"_s));
    }

    void Stacking_data()
    {
        QTest::addColumn<QString>("element");
        QTest::addColumn<QList<int>>("commands");
        QTest::addColumn<QString>("order"); // from the top, t the text
        QTest::addColumn<int>("changed");   // elements with another style than before
        const auto row = [](const char *name, const QString &element, QList<int> commands, const QString &order,
                            int changed) { QTest::newRow(name) << element << commands << order << changed; };
        row("front", u"a"_s, {DECMD_BRING_TO_FRONT}, u"acbt"_s, 1);
        row("front of the front", u"c"_s, {DECMD_BRING_TO_FRONT}, u"cbat"_s, 0);
        row("back", u"c"_s, {DECMD_SEND_TO_BACK}, u"bact"_s, 2);
        row("forward", u"a"_s, {DECMD_BRING_FORWARD}, u"cabt"_s, 2);
        row("backward", u"c"_s, {DECMD_SEND_BACKWARD}, u"bcat"_s, 1);
        row("below the text", u"b"_s, {DECMD_SEND_BELOW_TEXT}, u"catb"_s, 1);
        row("and above it", u"b"_s, {DECMD_SEND_BELOW_TEXT, DECMD_BRING_ABOVE_TEXT}, u"cabt"_s, 0);
        row("above while above", u"a"_s, {DECMD_BRING_ABOVE_TEXT}, u"cbat"_s, 0);
    }
    void Stacking()
    {
        QFETCH(QString, element);
        QFETCH(QList<int>, commands);
        QFETCH(QString, order);
        QFETCH(int, changed);
        const QString layer = u"<div id=\"%1\" style=\"position:absolute;left:%2px;top:%2px;width:200px;height:200px;"
                              u"background:#ccc\">%1</div>"_s;
        m_rig->SetBody(u"<p id=\"t\" style=\"height:300px\">text</p>"_s + layer.arg(u"a"_s).arg(20) +
                       layer.arg(u"b"_s).arg(40) + layer.arg(u"c"_s).arg(60));
        m_rig->Run(u"window.styles = [...'abc'].map((i) => document.getElementById(i).style.zIndex);"
                   u"getSelection().collapse(document.getElementById('%1').firstChild, 0)"_s.arg(element));
        m_rig->Learn();
        for (const int command : commands)
            m_rig->Surface.ExecCommand(Decmd(command));
        QCOMPARE(m_rig->Run(u"document.elementsFromPoint(150, 150).map((e) => e.id).join('')"_s).toString(), order);
        const int same =
            m_rig
                ->Run(u"[...'abc'].filter((id, i) => (document.getElementById(id).style.zIndex || '0') === "
                      u"(window.styles[i] || '0')).length"_s)
                .toInt();
        if (changed != 0 || commands.size() == 1)
            QCOMPARE(3 - same, changed);
        m_rig->UndoAll();
        QVERIFY(!m_rig->PlainBody().contains(u"z-index"_s));
    }

    void NumbersOfOtherGroundsStay()
    {
        m_rig->SetBody(
            u"<div style=\"position:absolute;z-index:4\" id=\"g\"><img style=\"position:absolute;z-index:9\" "
            u"id=\"i\"></div><div style=\"position:absolute\" id=\"o\">x|</div>"_s);
        m_rig->Surface.ExecCommand(DECMD_BRING_TO_FRONT);
        QCOMPARE(StyleOf(u"#o"_s), u"position:absolute; z-index: 4"_s);
        QCOMPARE(StyleOf(u"#i"_s), u"position:absolute;z-index:9"_s);
    }

private:
    static inline const QString Fixed = u"position:absolute;width:120px;height:80px;"_s;

    static QString Name() { return QString::fromLatin1(QTest::currentDataTag()); }
    void Layer(const QString &style)
    {
        m_rig->SetBody(u"<p>text</p><div id=\"o\" style=\"%1%2\">layer</div>"_s.arg(Fixed, style),
                       u"<style>body { font-size: 16px; width: 780px }</style>"_s);
    }
    int Status(Decmd command) { return m_rig->Surface.QueryStatus(command); }
    QString StyleOf(const QString &selector)
    {
        return m_rig->Run(u"document.querySelector('%1').getAttribute('style')"_s.arg(selector)).toString();
    }
    void Drag(QPoint from, QPoint by)
    {
        QWidget *input = m_rig->Surface.InputWidget();
        QTest::mousePress(input, Qt::LeftButton, {}, from);
        QTest::mouseMove(input, from + by / 2);
        QTest::mouseMove(input, from + by);
        QTest::mouseRelease(input, Qt::LeftButton, {}, from + by);
        m_rig->Settle();
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

QTEST_MAIN(PositionTest)
#include "PositionTest.moc"
