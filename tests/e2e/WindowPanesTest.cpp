#include "E2eTest.h"

using namespace Qt::StringLiterals;

/// The panes of the window with the hand of a person: where the page lies on the screen tells how wide the left one is.
class WindowPanesTest : public E2eTest
{
    Q_OBJECT

private slots:
    void paneFollowsMouseAndKeys();

private:
    bool PageMovesBy(int pixels) const
    {
        return QTest::qWaitFor([&] { return Display->Find(Mark).x() == m_start + pixels; }, RunningProgram::Patience);
    }
    int m_start = 0;
};

void WindowPanesTest::paneFollowsMouseAndKeys()
{
    constexpr int Splitter = 186;
    const QString path = PutPage(u"panes.htm"_s);
    QVERIFY(m_program->Open(path, u"panes"_s));
    QTRY_VERIFY_WITH_TIMEOUT(Display->Find(Mark).x() > 0, RunningProgram::Patience);
    m_start = Display->Find(Mark).x();
    const QRect window = m_program->MainWindow();
    const auto at = [&](int x) { return QPoint(window.left() + x, window.center().y()); };

    QVERIFY(Display->Drag(at(Splitter + 3), at(Splitter + 203)));
    QVERIFY2(PageMovesBy(200), "wider");
    QVERIFY(Display->Drag(at(Splitter + 203), at(-40)));
    QVERIFY2(PageMovesBy(100 - Splitter), "as narrow as it gets");
    QVERIFY(Display->Press({u"F9"_s}));
    QVERIFY2(PageMovesBy(9 - Splitter - 6), "collapsed");
    QVERIFY(Display->Click(at(4)));
    QVERIFY2(PageMovesBy(0), "back");
    QVERIFY(Display->Press({u"F6"_s})); // from the pane, which has the keys now
    QVERIFY(Display->Type(u"typed "_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "typed Click here"));
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<WindowPanesTest>(argc, argv);
}

#include "WindowPanesTest.moc"
