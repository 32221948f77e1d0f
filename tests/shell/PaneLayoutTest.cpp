#include "shell/PaneLayout.h"

#include <QTest>

/// The sizes of the window's panes, as numbers.
class PaneLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void widthIsHeld_data();
    void widthIsHeld();
    void draggedPlace_data();
    void draggedPlace();
    void areaIsDivided_data();
    void areaIsDivided();
    void nothingFallsBelowZero();
};

void PaneLayoutTest::widthIsHeld_data()
{
    QTest::addColumn<double>("asked");
    QTest::addColumn<double>("inner");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<double>("held");
    QTest::newRow("start-up") << 2800. << 16500. << false << 2800.;
    QTest::newRow("least") << 1499.5 << 16500. << false << 1500.;
    QTest::newRow("left of the window") << -400. << 16500. << false << 1500.;
    QTest::newRow("most") << 15000.5 << 16500. << false << 15000.;
    QTest::newRow("room for exactly two") << 2800. << 3000. << false << 1500.;
    QTest::newRow("narrower than two: the window less one") << 2800. << 2985. << false << 1485.;
    QTest::newRow("narrower than one") << 2800. << 900. << false << -600.;
    QTest::newRow("collapsed") << 2800. << 16500. << true << 135.;
    QTest::newRow("collapsed in a narrow window: no bounds") << 2800. << 900. << true << 135.;
}

void PaneLayoutTest::widthIsHeld()
{
    QFETCH(double, asked);
    QFETCH(double, inner);
    QFETCH(bool, hidden);
    const PaneLayout::Area area{.Width = inner, .Height = 9000, .PaneHidden = hidden};
    QTEST(PaneLayout::HeldWidth(asked, area), "held");
}

void PaneLayoutTest::draggedPlace_data()
{
    QTest::addColumn<double>("mouse");
    QTest::addColumn<double>("place");
    QTest::newRow("half its width left of the mouse") << 5000. << 4955.;
    QTest::newRow("beyond the left bound") << 20. << 1500.;
    QTest::newRow("beyond the right bound") << 13000. << 10500.;
}

void PaneLayoutTest::draggedPlace()
{
    QFETCH(double, mouse);
    QTEST(PaneLayout::DraggedTo(mouse, {.Width = 12000, .Height = 9000}), "place");
}

void PaneLayoutTest::areaIsDivided_data()
{
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<QList<double>>("pane"); // left and width of each
    QTest::addColumn<QList<double>>("splitter");
    QTest::addColumn<QList<double>>("work");
    QTest::newRow("open") << false << QList{0., 2800.} << QList{2800., 90.} << QList{2890., 9110.};
    QTest::newRow("collapsed") << true << QList{0., 135.} << QList{135., 0.} << QList{135., 11865.};
}

void PaneLayoutTest::areaIsDivided()
{
    QFETCH(bool, hidden);
    PaneLayout::Boxes boxes;
    PaneLayout::SizeControls(boxes, 2800, {.Width = 12000, .Height = 9000, .PaneHidden = hidden});
    QTEST((QList{boxes.Pane.Left, boxes.Pane.Width}), "pane");
    QTEST((QList{boxes.Splitter.Left, boxes.Splitter.Width}), "splitter");
    QTEST((QList{boxes.Work.Left, boxes.Work.Width}), "work");
    for (const PaneLayout::Box &box : {boxes.Pane, boxes.Splitter, boxes.Work}) {
        QCOMPARE(box.Top, 0.);
        QCOMPARE(box.Height, 9000.);
    }
}

void PaneLayoutTest::nothingFallsBelowZero()
{
    PaneLayout::Boxes boxes;
    PaneLayout::SizeControls(boxes, 2800, {.Width = 12000, .Height = 9000});
    PaneLayout::SizeControls(boxes, 2800, {.Width = 0, .Height = 0}); // minimised
    QCOMPARE(boxes.Pane.Width, 2800.);                                // would be -1500
    QCOMPARE(boxes.Pane.Height, 0.);
    QCOMPARE(boxes.Splitter.Left, -1500.);
    PaneLayout::SizeControls(boxes, 2800, {.Width = 100, .Height = -30, .PaneHidden = true});
    QCOMPARE(boxes.Work.Left, 135.);
    QCOMPARE(boxes.Work.Width, 1410.); // as it was
    QCOMPARE(boxes.Work.Height, 0.);
}

QTEST_GUILESS_MAIN(PaneLayoutTest)
#include "PaneLayoutTest.moc"
