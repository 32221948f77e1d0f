#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Three by three cells of one letter, a to i, wide enough to hit.
QString Letters(const char *attributes = "width=\"300\"")
{
    QString html = u"<table %1 border=\"1\" cellspacing=\"0\" cellpadding=\"8\"><tbody>"_s.arg(QLatin1String(attributes));
    for (const char *row : {"abc", "def", "ghi"}) {
        html += u"<tr>"_s;
        for (const char *c = row; *c; ++c)
            html += u"<td id=\"%1\">%1</td>"_s.arg(QLatin1Char(*c));
        html += u"</tr>"_s;
    }
    return html + u"</tbody></table>"_s;
}

} // namespace

/// Cells selected by real mouse and keys, what keys do to them, and borders that are dragged.
class TableMouseTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void DragSelects();
    void ShiftSelects();
    void SelectedCellsAndKeys_data();
    void SelectedCellsAndKeys();
    void TabWalks();
    void BorderDrag_data();
    void BorderDrag();
    void BorderCursor();

private:
    void Drag(QPoint from, QPoint to, bool letGo = true)
    {
        QWidget *widget = m_rig->Surface.InputWidget();
        QTest::mouseMove(widget, from);
        QTest::mousePress(widget, Qt::LeftButton, {}, from);
        QTest::mouseMove(widget, (from + to) / 2);
        QTest::mouseMove(widget, to);
        if (letGo)
            QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
        m_rig->Settle();
    }
    /// The letters of the selected cells.
    QString Selected()
    {
        return m_rig->Run(u"Surface.call('selectedCells').join('')"_s).toString();
    }
    QString Text() { return m_rig->Run(u"[...document.querySelectorAll('td')].map((c) => c.textContent || '-').join('')"_s)
                         .toString(); }

    std::unique_ptr<SurfaceRig> m_rig;
};

void TableMouseTest::DragSelects()
{
    m_rig->SetBody(Letters() + u"<p>x</p>"_s);
    Drag(m_rig->PlaceOf(u"#b"_s), m_rig->PlaceOf(u"#d"_s));
    QCOMPARE(Selected(), u"abde"_s);
    // Nothing of the marks is in the page, and nothing changed.
    QVERIFY(!m_rig->Surface.DocumentHTML().contains(u"inkloom"_s, Qt::CaseInsensitive));
    QVERIFY(!m_rig->Surface.IsDirty());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_MERGECELLS), DECMDF_ENABLED);
    m_rig->Surface.ExecCommand(DECMD_MERGECELLS);
    QCOMPARE(Text(), u"abdecfghi"_s);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Selected(), u"abde"_s);
    // A span that the rectangle would cut is taken in.
    m_rig->SetBody(u"<table border=\"1\" cellpadding=\"9\"><tbody><tr><td id=\"a\">a</td><td rowspan=\"2\">b</td></tr>"
                   "<tr><td>c</td></tr><tr><td id=\"d\">d</td><td>e</td></tr></tbody></table>"_s);
    Drag(m_rig->PlaceOf(u"#a"_s), m_rig->PlaceOf(u"td[rowspan]"_s));
    QCOMPARE(Selected(), u"abc"_s);
    m_rig->Click(u"#d"_s);
    QCOMPARE(Selected(), QString());
}

void TableMouseTest::ShiftSelects()
{
    m_rig->SetBody(Letters());
    m_rig->Click(u"#e"_s);
    m_rig->Click(u"#c"_s, {-1, -1}, Qt::LeftButton, Qt::ShiftModifier);
    QCOMPARE(Selected(), u"bcef"_s);
    m_rig->Key(Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(Selected(), u"ef"_s);
    m_rig->Key(Qt::Key_Down, Qt::ShiftModifier);
    m_rig->Key(Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(Selected(), u"eh"_s);
    // From a caret, at the end of a cell's text.
    m_rig->Run(u"document.getSelection().collapse(document.getElementById('a').firstChild, 1)"_s);
    m_rig->Key(Qt::Key_Right, Qt::ShiftModifier);
    QTRY_COMPARE(Selected(), u"ab"_s);
}

void TableMouseTest::SelectedCellsAndKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("delete") << int(Qt::Key_Delete) << u"--c--fghi"_s;
    QTest::newRow("backspace") << int(Qt::Key_Backspace) << u"--c--fghi"_s;
    QTest::newRow("letter") << int(Qt::Key_X) << u"xbcdefghi"_s;
    QTest::newRow("enter") << int(Qt::Key_Return) << u"abcdefghi"_s;
}

void TableMouseTest::SelectedCellsAndKeys()
{
    QFETCH(int, key);
    QFETCH(QString, text);
    m_rig->SetBody(Letters());
    Drag(m_rig->PlaceOf(u"#a"_s), m_rig->PlaceOf(u"#e"_s));
    m_rig->Key(Qt::Key(key));
    QCOMPARE(Text(), text);
    QVERIFY(m_rig->ParsesBack());
    m_rig->UndoAll();
    QCOMPARE(Text(), u"abcdefghi"_s);
    QCOMPARE(Selected(), u"abde"_s);
    if (key == Qt::Key_Delete) { // the command is the same thing
        m_rig->Surface.ExecCommand(DECMD_DELETE);
        QCOMPARE(Text(), text);
    }
}

void TableMouseTest::TabWalks()
{
    m_rig->SetBody(u"<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>"_s);
    m_rig->Key(Qt::Key_Tab);
    QVERIFY(m_rig->Body().contains(u"<td>|b</td>"_s));
    m_rig->Key(Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(m_rig->Body().contains(u"<td>|a</td>"_s));
    m_rig->Key(Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(m_rig->Body().contains(u"<td>|a</td>"_s));
    m_rig->Key(Qt::Key_Tab);
    m_rig->Key(Qt::Key_Tab);
    m_rig->Type(u"c"_s);
    QCOMPARE(m_rig->Body(), u"<table><tbody><tr><td>a</td><td>b</td></tr><tr><td>c|</td><td><br></td></tr></tbody></table>"_s);
    m_rig->Key(Qt::Key_Down);
    m_rig->UndoAll();
    QCOMPARE(m_rig->PlainBody(), u"<table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>"_s);
}

void TableMouseTest::BorderDrag_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("change"); // of the page, by script, before it is loaded
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QString>("written");
    QTest::newRow("a table with a width: both columns") << u"width=\"300\""_s << QString() << u"a"_s << u"a b"_s;
    QTest::newRow("no width: only the column") << u"class=\"k\""_s << QString() << u"a"_s << u"a"_s;
    QTest::newRow("the right edge: the last column and the table") << u"width=\"300\""_s << QString() << u"c"_s << u"c table"_s;
    QTest::newRow("where a width stands") << u"class=\"k\""_s << u"id=\"d\" width=\"90\""_s << u"a"_s << u"d"_s;
    QTest::newRow("as a style") << u"class=\"k\""_s << u"id=\"d\" style=\"color: red; width: 90px\""_s << u"a"_s << u"d"_s;
}

void TableMouseTest::BorderDrag()
{
    QFETCH(QString, attributes);
    QFETCH(QString, change);
    QFETCH(QString, cell);
    QFETCH(QString, written);
    QString html = Letters(attributes.toLatin1());
    if (!change.isEmpty())
        html.replace(u"id=\"d\""_s, change);
    m_rig->SetBody(html);
    const QString before = m_rig->PlainBody();
    const QRect rect = m_rig->RectOf(u'#' + cell);
    const QPoint edge(rect.right(), rect.center().y());
    // Esc leaves everything as it was.
    Drag(edge, edge + QPoint(30, 0), false);
    m_rig->Key(Qt::Key_Escape);
    QTest::mouseRelease(m_rig->Surface.InputWidget(), Qt::LeftButton, {}, edge + QPoint(30, 0));
    m_rig->Settle();
    QCOMPARE(m_rig->PlainBody(), before);

    Drag(edge, edge + QPoint(30, 0));
    QVERIFY2(qAbs(m_rig->RectOf(u'#' + cell).right() - rect.right() - 30) <= 3, qPrintable(m_rig->PlainBody()));
    const QString sized = m_rig->Run(u"[...document.querySelectorAll('td'), document.querySelector('table')]"
                                     ".filter((e) => !%1.includes(e.outerHTML.match(/<[^>]*>/)[0])).map((e) => e.id ||"
                                     " e.localName).join(' ')"_s.arg(SurfaceRig::Literal(before)))
                              .toString();
    QCOMPARE(sized, written);
    if (change.contains(u"style"))
        QVERIFY(m_rig->PlainBody().contains(u"style=\"color: red; width: 1"_s));
    QVERIFY(m_rig->ParsesBack());
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->PlainBody(), before);
}

void TableMouseTest::BorderCursor()
{
    m_rig->SetBody(Letters());
    QWidget *widget = m_rig->Surface.InputWidget();
    const QRect rect = m_rig->RectOf(u"#e"_s);
    QTest::mouseMove(widget, {rect.right() + 1, rect.center().y()});
    QTRY_COMPARE(widget->cursor().shape(), Qt::SplitHCursor);
    QTest::mouseMove(widget, rect.center() + QPoint(15, 0));
    QTRY_VERIFY(widget->cursor().shape() != Qt::SplitHCursor);
    QTest::mouseMove(widget, {rect.right() - 8, rect.bottom()});
    QTRY_COMPARE(widget->cursor().shape(), Qt::SplitVCursor);
    QTest::mouseMove(widget, {500, 400});
    QTRY_VERIFY(widget->cursor().shape() != Qt::SplitVCursor);
}

QTEST_MAIN(TableMouseTest)
#include "TableMouseTest.moc"
