#include "support/SurfaceRig.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>

#include <memory>

using namespace Qt::StringLiterals;

/// Text dragged by the mouse within a page, and what other windows drop on it.
class DragDropTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Text_data();
    void Text();
    void ClickIntoSelection();
    void Outside_data();
    void Outside();
    void PictureFile();
    void ItemOfThePrograms();

private:
    /// Where the text of `selector` shows the border in front of a character.
    QPoint PlaceInText(const QString &selector, int offset)
    {
        const QVariantList place =
            m_rig
                ->Run(u"(() => { const r = document.createRange(), t = document.querySelector('%1').lastChild;"
                      "r.setStart(t, %2); r.setEnd(t, %2); const b = r.getBoundingClientRect();"
                      "return [b.left, (b.top + b.bottom) / 2]; })()"_s.arg(selector, QString::number(offset)))
                .toList();
        return {qRound(place.value(0).toDouble()), qRound(place.value(1).toDouble())};
    }
    QPoint MiddleOfSelection()
    {
        const QVariantList place =
            m_rig
                ->Run(u"(() => { const b = document.getSelection().getRangeAt(0).getClientRects()[0];"
                      "return [(b.left + b.right) / 2, (b.top + b.bottom) / 2]; })()"_s)
                .toList();
        return {qRound(place.value(0).toDouble()), qRound(place.value(1).toDouble())};
    }
    void DropOn(QPoint place, QMimeData *data)
    {
        QWidget *widget = m_rig->Surface.InputWidget();
        const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(place, actions, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &enter);
        QVERIFY(enter.isAccepted());
        QDragMoveEvent move(place, actions, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &move);
        QVERIFY(move.isAccepted());
        QDropEvent drop(place, actions, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(drop.dropAction(), Qt::CopyAction);
        delete data; // gone with the drag, as other programs' data is
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

void DragDropTest::Text_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("offset");
    QTest::addColumn<bool>("copy");
    QTest::addColumn<QString>("after");
    const QString two = u"<p id=\"a\">one [two <b onclick=\"x()\">bold</b>] three</p><p id=\"b\">fourfive</p>"_s;
    QTest::newRow("into another paragraph")
        << two << u"#b"_s << 4 << false
        << u"<p id=\"a\">one  three</p><p id=\"b\">fourtwo <b onclick=\"x()\">bold</b>|five</p>"_s;
    QTest::newRow("copied") << two << u"#b"_s << 4 << true
                            << u"<p id=\"a\">one two <b onclick=\"x()\">bold</b> three</p>"
                               "<p id=\"b\">fourtwo <b onclick=\"x()\">bold</b>|five</p>"_s;
    QTest::newRow("within its text, forwards")
        << u"<p id=\"a\">a[bc]defghijkl</p>"_s << u"#a"_s << 9 << false << u"<p id=\"a\">adefghibc|jkl</p>"_s;
    QTest::newRow("within its text, backwards")
        << u"<p id=\"a\">abcdefghi[jk]l</p>"_s << u"#a"_s << 2 << false << u"<p id=\"a\">abjk|cdefghil</p>"_s;
    QTest::newRow("onto itself") << u"<p id=\"a\">a[bcdefgh]i</p>"_s << u"#a"_s << 2 << false
                                 << u"<p id=\"a\">a[bcdefgh]i</p>"_s;
    QTest::newRow("blocks into a cell")
        << u"<p>[1</p><p>2]</p><table><tbody><tr><td id=\"a\">abcdefgh</td></tr></tbody></table>"_s << u"#a"_s << 4
        << false << u"<p><br></p><table><tbody><tr><td id=\"a\">abcd<p>1</p><p>2|</p>efgh</td></tr></tbody></table>"_s;
}

void DragDropTest::Text()
{
    QFETCH(QString, before);
    QFETCH(QString, target);
    QFETCH(int, offset);
    QFETCH(bool, copy);
    QFETCH(QString, after);
    m_rig->SetBody(before);
    QWidget *widget = m_rig->Surface.InputWidget();
    const QPoint from = MiddleOfSelection();
    const QPoint to = PlaceInText(target, offset);
    const auto modifiers = copy ? Qt::ControlModifier : Qt::NoModifier;
    const auto move = [&](QPoint place) {
        QMouseEvent event(QEvent::MouseMove, place, widget->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                          modifiers);
        QCoreApplication::sendEvent(widget, &event);
        m_rig->Settle();
    };
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, from);
    m_rig->Settle();
    move(from + QPoint(6, 2));
    move(from + QPoint(12, 4));
    move(to - QPoint(0, 1));
    move(to);
    QTest::mouseRelease(widget, Qt::LeftButton, modifiers, to);
    m_rig->Settle();
    QCOMPARE(m_rig->Body().replace(u"&nbsp;"_s, u" "_s), after);
    QVERIFY(m_rig->ParsesBack());
    QCOMPARE(m_rig->UndoAll(), before == after ? 0 : 1);
    QCOMPARE(m_rig->Body(), before);
}

/// A press on selected text that is let go where it was is a click.
void DragDropTest::ClickIntoSelection()
{
    m_rig->SetBody(u"<p id=\"a\">a[bcdefgh]i</p>"_s);
    QTest::mouseClick(m_rig->Surface.InputWidget(), Qt::LeftButton, {}, PlaceInText(u"#a"_s, 4));
    QCOMPARE(m_rig->Body(), u"<p id=\"a\">abcd|efghi</p>"_s);
    m_rig->Type(u"x"_s);
    QCOMPARE(m_rig->Body(), u"<p id=\"a\">abcdx|efghi</p>"_s);
}

void DragDropTest::Outside_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("after");
    QTest::newRow("text") << QString() << u"x < y"_s << QString() << u"<p>|z</p><p id=\"a\">abcdx &lt; y|efgh</p>"_s;
    QTest::newRow("markup") << u"<meta charset=utf-8><i>x</i>"_s << u"x"_s << QString()
                            << u"<p>|z</p><p id=\"a\">abcd<i>x</i>|efgh</p>"_s;
    QTest::newRow("address") << QString() << u"http://h.example/?a&b"_s << u"http://h.example/?a&b"_s
                             << u"<p>|z</p><p id=\"a\">abcd<a href=\"http://h.example/?a&amp;b\">"
                                "http://h.example/?a&amp;b</a>|efgh</p>"_s;
}

void DragDropTest::Outside()
{
    QFETCH(QString, html);
    QFETCH(QString, text);
    QFETCH(QString, url);
    QFETCH(QString, after);
    m_rig->SetBody(u"<p>|z</p><p id=\"a\">abcdefgh</p>"_s);
    auto *data = new QMimeData;
    data->setText(text);
    if (!html.isEmpty())
        data->setHtml(html);
    if (!url.isEmpty())
        data->setUrls({QUrl(url)});
    DropOn(PlaceInText(u"#a"_s, 4), data);
    QTRY_COMPARE(m_rig->Body(), after.mid(0, 3) + after.mid(4));
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->PlainBody(), u"<p>z</p><p id=\"a\">abcdefgh</p>"_s);
}

void DragDropTest::PictureFile()
{
    m_rig->SetBody(u"<p id=\"a\">abcd|efgh</p>"_s);
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(m_rig->Path(u"p.png"_s)));
    auto *data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(m_rig->Path(u"p.png"_s))});
    DropOn(PlaceInText(u"#a"_s, 2), data);
    QTRY_COMPARE(m_rig->Body(), u"<p id=\"a\">ab<img src=\"p.png\" width=\"3\" height=\"2\">|cdefgh</p>"_s);
    QCOMPARE(m_rig->Surface.CurrentDocumentPath(), m_rig->PagePath());
}

/// A row of a pane: the caret goes along, and whoever started the drag hears of the drop.
void DragDropTest::ItemOfThePrograms()
{
    m_rig->SetBody(u"<p id=\"a\">abcdefgh|</p>"_s);
    const QPoint place = PlaceInText(u"#a"_s, 4);
    QMimeData item;
    item.setData(QLatin1StringView(DesignSurface::ItemMimeType), "row");
    QWidget *widget = m_rig->Surface.InputWidget();
    QSignalSpy shown(&m_rig->Surface, &DesignSurface::DisplayChanged);
    QDragEnterEvent enter(place, Qt::CopyAction, &item, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &enter);
    QVERIFY(enter.isAccepted());
    QTRY_COMPARE(m_rig->Body(), u"<p id=\"a\">abcd|efgh</p>"_s);
    QTRY_VERIFY(!shown.isEmpty());
    QDragMoveEvent move(PlaceInText(u"#a"_s, 2), Qt::CopyAction, &item, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &move);
    QTRY_COMPARE(m_rig->Body(), u"<p id=\"a\">ab|cdefgh</p>"_s);
    QDropEvent drop(place, Qt::CopyAction, &item, Qt::LeftButton, Qt::NoModifier);
    QSignalSpy dropped(&m_rig->Surface, &DesignSurface::ItemDropped);
    QCoreApplication::sendEvent(widget, &drop);
    QVERIFY(drop.isAccepted());
    QVERIFY(dropped.isEmpty()); // not before the caret stands there
    QVERIFY(dropped.wait(2000));
    QCOMPARE(m_rig->Body(), u"<p id=\"a\">abcd|efgh</p>"_s);
    m_rig->Settle();
    shown.clear();
    QVERIFY(shown.wait(2000));
    QVERIFY(!m_rig->Surface.IsDirty());
}

QTEST_MAIN(DragDropTest)
#include "DragDropTest.moc"
