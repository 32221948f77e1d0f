#include "forms/FormBuilderPane.h"
#include "platform/Twips.h"
#include "shell/FocusRing.h"
#include "shell/LeftPane.h"
#include "shell/WindowPanes.h"
#include "state/AppState.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The panes with plain controls for the file pane and for the page.
struct Panes
{
    AppState App;
    QLineEdit *Work = new QLineEdit;
    QLineEdit *Files = new QLineEdit;
    WindowPanes Window{App, Work};

    explicit Panes(QSize size = {800, 600})
    {
        Window.Left().AddPage(u"Files"_s, {}, Files);
        Window.Left().AddPage(u"Form Builder"_s, {}, new FormBuilderPane);
        Window.resize(size);
        Window.SizeControls(PaneLayout::StartWidth);
        Window.show();
        Window.activateWindow();
        if (!QTest::qWaitForWindowActive(&Window))
            qFatal("the window does not get the keyboard");
    }
    template <class T = QWidget>
    T *Find(const QString &name) const
    {
        return Window.findChild<T *>(name);
    }
    QWidget *Splitter() const { return Find(u"imgSplitter"_s); }
    void Mouse(QEvent::Type type, int x) const
    {
        const QPoint place = Splitter()->mapFrom(&Window, QPoint(x, 300));
        if (type == QEvent::MouseButtonPress)
            QTest::mousePress(Splitter(), Qt::LeftButton, {}, place);
        else if (type == QEvent::MouseButtonRelease)
            QTest::mouseRelease(Splitter(), Qt::LeftButton, {}, place);
        else
            QTest::mouseMove(Splitter(), place);
    }
    void Click(const QString &button) const { QTest::mouseClick(Find(button), Qt::LeftButton); }
};

} // namespace

/// The real controls of the window's inside, with real mouse and keys.
class PanesTest : public QObject
{
    Q_OBJECT

private slots:
    void startsAsWideAsTold();
    void splitterFollowsTheMouse_data();
    void splitterFollowsTheMouse();
    void escapeGivesTheDragUp();
    void splitterFollowsTheKeys();
    void windowIsResized_data();
    void windowIsResized();
    void collapseAndBack_data();
    void collapseAndBack();
    void collapsedAtTheStart();
    void formBuilderHoldsItsRows();
    void ringGoesRound();
};

void PanesTest::startsAsWideAsTold()
{
    const Panes panes;
    QCOMPARE(panes.Window.Left().width(), 186); // 2800 twips are 186 and two thirds
    QCOMPARE(panes.Splitter()->x(), 186);
    QCOMPARE(panes.Work->geometry(), QRect(192, 0, 608, 600));
    QVERIFY(!panes.Find(u"picSplitter"_s)->isVisible());
    // What is seen of it: both tabs within the pane, and the button beside them.
    const auto *tabs = panes.Find<QTabBar>(u"TabStrip1"_s);
    QCOMPARE(tabs->tabText(0), u"Files"_s);
    QVERIFY(tabs->tabRect(1).width() > 40 && tabs->rect().contains(tabs->tabRect(1)));
    QVERIFY(panes.Find(u"CommandHide"_s)->isVisible() && panes.Files->isVisible());
}

void PanesTest::splitterFollowsTheMouse_data()
{
    QTest::addColumn<int>("to");
    QTest::addColumn<double>("width");
    QTest::newRow("wider") << 400 << 5955.;
    QTest::newRow("beyond the left bound") << 20 << 1500.;
    QTest::newRow("out of the window") << 2000 << 10500.;
}

void PanesTest::splitterFollowsTheMouse()
{
    QFETCH(int, to);
    QFETCH(double, width);
    const Panes panes;
    const QWidget *shown = panes.Find(u"picSplitter"_s);
    panes.Mouse(QEvent::MouseButtonPress, 189);
    QVERIFY(shown->isVisible());
    QCOMPARE(shown->x(), 186);
    panes.Mouse(QEvent::MouseMove, 300);
    panes.Mouse(QEvent::MouseMove, to);
    QCOMPARE(shown->x(), PixelsFromTwips(width));
    QCOMPARE(panes.Splitter()->x(), 186); // until the button is let go
    panes.Mouse(QEvent::MouseButtonRelease, to);
    QVERIFY(!shown->isVisible());
    QCOMPARE(panes.Window.PaneWidth(), width);
    QCOMPARE(panes.Splitter()->x(), PixelsFromTwips(width));
    QCOMPARE(panes.Work->x(), PixelsFromTwips(width + 90));
    QCOMPARE(panes.Work->geometry().right(), 799);
}

void PanesTest::escapeGivesTheDragUp()
{
    const Panes panes;
    panes.Mouse(QEvent::MouseButtonPress, 189);
    panes.Mouse(QEvent::MouseMove, 400);
    QTest::keyClick(QWidget::keyboardGrabber(), Qt::Key_Escape);
    QVERIFY(!panes.Find(u"picSplitter"_s)->isVisible());
    panes.Mouse(QEvent::MouseButtonRelease, 400);
    QCOMPARE(panes.Window.PaneWidth(), 2800.);
    QVERIFY(!QWidget::keyboardGrabber());
}

void PanesTest::splitterFollowsTheKeys()
{
    const Panes panes;
    panes.Splitter()->setFocus();
    const QImage focused = panes.Splitter()->grab().toImage();
    const auto press = [&](Qt::Key key) { QTest::keyClick(panes.Splitter(), key); };
    press(Qt::Key_Right);
    QCOMPARE(panes.Window.PaneWidth(), 2950.);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    QCOMPARE(panes.Window.PaneWidth(), 2650.);
    press(Qt::Key_Home);
    QCOMPARE(panes.Window.PaneWidth(), 1500.);
    press(Qt::Key_End);
    QCOMPARE(panes.Window.PaneWidth(), 10500.);
    panes.Work->setFocus();
    QVERIFY(panes.Splitter()->grab().toImage() != focused);
}

void PanesTest::windowIsResized_data()
{
    QTest::addColumn<QList<QSize>>("sizes");
    QTest::addColumn<double>("width");
    QTest::newRow("wider") << QList{QSize(1600, 900)} << 2800.;
    QTest::newRow("too narrow for both") << QList{QSize(190, 600)} << 1350.;
    QTest::newRow("from the place it was pushed to") << QList{QSize(190, 600), QSize(800, 600)} << 1500.;
    QTest::newRow("next to nothing and back") << QList{QSize(1, 1), QSize(800, 600)} << 1500.;
}

void PanesTest::windowIsResized()
{
    QFETCH(QList<QSize>, sizes);
    Panes panes;
    for (const QSize size : sizes)
        panes.Window.resize(size);
    QTEST(panes.Window.PaneWidth(), "width");
    QCOMPARE(panes.Splitter()->x(), PixelsFromTwips(panes.Window.PaneWidth()));
    QCOMPARE(panes.Work->geometry().bottomRight(), panes.Window.rect().bottomRight());
    panes.Window.showMinimized();
    panes.Window.showNormal();
    QTEST(panes.Window.PaneWidth(), "width");
}

void PanesTest::collapseAndBack_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("button");
    QTest::newRow("Files") << 0 << u"CommandHide"_s;
    QTest::newRow("Form Builder") << 1 << u"CommandHide2"_s;
}

void PanesTest::collapseAndBack()
{
    QFETCH(int, page);
    QFETCH(QString, button);
    Panes panes;
    const QSignalSpy changed(&panes.Window, &WindowPanes::PaneHiddenChanged);
    const QSignalSpy lost(&panes.Window, &WindowPanes::FocusLost);
    panes.Window.SizeControls(5000);
    panes.Find<QTabBar>(u"TabStrip1"_s)->setCurrentIndex(page);
    panes.Find<QTabBar>(u"TabStrip1"_s)->setFocus();
    panes.Click(button);
    QVERIFY(panes.App.PaneHidden);
    QVERIFY(!panes.Find(button)->isVisible() && !panes.Splitter()->isVisible());
    QVERIFY(panes.Find(u"CommandShowAddress"_s)->isVisible());
    QCOMPARE(panes.Window.Left().width(), 9);
    QCOMPARE(panes.Work->geometry(), QRect(9, 0, 791, 600));
    QCOMPARE(lost.size(), 1);
    panes.Window.resize(700, 500);
    QCOMPARE(panes.Work->geometry(), QRect(9, 0, 691, 500));

    panes.Click(u"CommandShowAddress"_s);
    QVERIFY(!panes.App.PaneHidden);
    QCOMPARE(panes.Window.PaneWidth(), 2800.); // not where the splitter had been
    QVERIFY(panes.Find(button)->isVisible() && panes.Splitter()->isVisible());
    QVERIFY(!panes.Find(u"CommandShowAddress"_s)->isVisible());
    QCOMPARE(changed.size(), 2);
    QVERIFY(panes.Window.Left().isAncestorOf(panes.Window.focusWidget())); // the strip had it, and went
}

void PanesTest::collapsedAtTheStart()
{
    AppState app;
    app.PaneHidden = true;
    auto *work = new QWidget;
    WindowPanes window(app, work);
    window.resize(800, 600);
    window.HidePane();
    window.SizeControls(PaneLayout::StartWidth);
    window.show();
    QCOMPARE(work->geometry(), QRect(9, 0, 791, 600));
    window.ShowPane();
    QCOMPARE(work->geometry(), QRect(192, 0, 608, 600));
}

void PanesTest::formBuilderHoldsItsRows()
{
    const Panes panes;
    const auto rows = [&](const QString &name) {
        QStringList texts;
        const auto *list = panes.Find<QListWidget>(name);
        for (int row = 0; row < list->count(); ++row) {
            texts += list->item(row)->text();
            if (list->item(row)->icon().pixmap(16).toImage().isNull())
                texts += u"no icon"_s;
        }
        return texts.join(u", "_s);
    };
    QCOMPARE(rows(u"ListForm2"_s), u"Form, Knowledgebase"_s);
    QCOMPARE(rows(u"ListForm"_s),
             u"Text Box, Text Area, Listbox, Drop-Down List, Checkbox, Radio Button, Password Box, Hidden Field, "
             "Image, Radio Group, Check Group, Validation"_s);
}

void PanesTest::ringGoesRound()
{
    Panes panes;
    FocusRing ring;
    ring.Add(&panes.Window.Left());
    ring.Add(panes.Work);
    QWidget empty(&panes.Window); // nothing in it takes keys
    empty.show();
    ring.Add(&empty);
    panes.Work->setFocus();
    ring.Move(1);
    QVERIFY(panes.Window.Left().isAncestorOf(panes.Window.focusWidget()));
    panes.Files->setFocus();
    ring.Move(1);
    QCOMPARE(panes.Window.focusWidget(), panes.Work);
    ring.Move(-1);
    QCOMPARE(panes.Window.focusWidget(), panes.Files); // where one was last
    panes.Window.HidePane();
    panes.Work->setFocus();
    ring.Move(1);
    QCOMPARE(panes.Window.focusWidget(), panes.Find(u"CommandShowAddress"_s));
    QTest::keyClick(panes.Window.focusWidget(), Qt::Key_Space);
    QCOMPARE(panes.Window.focusWidget(), panes.Files);
}

QTEST_MAIN(PanesTest)
#include "PanesTest.moc"
