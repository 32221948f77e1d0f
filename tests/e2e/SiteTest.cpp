#include "E2eTest.h"

using namespace Qt::StringLiterals;

/// Work with the files of a site in the left pane, with mouse and keys.
class SiteTest : public E2eTest
{
    Q_OBJECT

private slots:
    void rowBecomesALinkWhereItIsDropped();
    void dragGivenUpLeavesNoTrace();
    void rowsOpen();
    void deletionAndBack();
    void newPageAmongThePagesOfASite();

private:
    /// Opens alpha, with beta beside it.
    bool OpenSite();
    /// Brings the pane to the folder of the sample site, which lies below that of the page.
    bool ShowSiteFolder();
    enum class List { Folders, Files };
    /// Middle of a row of a list, seen from the selected one.
    QPoint Row(int distance, List list = List::Files) const;
    /// In the line of the marked paragraph.
    QPoint InMarkedLine() const { return Display->Find(Mark) + QPoint(34, 8); }

    QString m_alpha;
    QString m_beta;
};

bool SiteTest::OpenSite()
{
    m_alpha = PutPage(u"alpha.htm"_s);
    m_beta = PutPage(u"beta two.htm"_s);
    return m_program->Open(m_alpha, u"alpha"_s) &&
           QTest::qWaitFor([this] { return Display->Find(Mark).x() >= 0 && Row(0).y() > 0; }, RunningProgram::Patience);
}

QPoint SiteTest::Row(int distance, List list) const
{
    constexpr QRgb selected = 0xff308cc6; // under the row, in the style that a bare desktop gets
    const QImage picture = Display->Picture();
    const QRect window = m_program->MainWindow();
    const int x = window.left() + 165; // right of the names
    const int middle = window.top() + window.height() / 2;
    const int highest = list == List::Folders ? window.top() + 140 : middle;
    int bottom = qMin(list == List::Folders ? middle : window.bottom(), picture.height() - 1);
    while (bottom > highest && picture.pixel(x, bottom) != selected)
        --bottom;
    int top = bottom;
    while (top > highest && picture.pixel(x, top - 1) == selected)
        --top;
    const int height = bottom - top + 1;
    return height > 8 ? QPoint(window.left() + 60, (top + bottom) / 2 + distance * height) : QPoint();
}

void SiteTest::rowBecomesALinkWhereItIsDropped()
{
    QVERIFY(OpenSite());
    QVERIFY(Display->Drag(Row(1), InMarkedLine()));
    QVERIFY(QTest::qWaitFor([this] { return Display->Press({u"ctrl+s"_s}) && BytesOf(m_alpha).contains("<a "); },
                            RunningProgram::Patience));
    const QByteArray saved = BytesOf(m_alpha);
    const qsizetype link = saved.indexOf("<a href=\"beta%20two.htm\">beta two</a>");
    QVERIFY2(link > saved.indexOf("#12ab9e") && link < saved.indexOf("Second"), saved);
    QVERIFY(saved.indexOf("Cl") < link && saved.lastIndexOf("here") > link); // within the words
    QVERIFY(Display->Press({u"ctrl+z"_s, u"ctrl+s"_s}));                     // one step
    QTRY_VERIFY_WITH_TIMEOUT(!BytesOf(m_alpha).contains("<a "), RunningProgram::Patience);
    QVERIFY(BytesOf(m_alpha).contains("Click here"));
    QVERIFY(Quit());
}

void SiteTest::dragGivenUpLeavesNoTrace()
{
    QVERIFY(OpenSite());
    const QByteArray before = BytesOf(m_alpha);
    QVERIFY(Display->Drag(Row(1), InMarkedLine(), {u"Escape"_s}));
    QVERIFY(ClickAndType(u" typed"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(m_alpha, "Click here typed</p>"));
    QVERIFY(!BytesOf(m_alpha).contains("<a "));
    QVERIFY(Quit());
}

void SiteTest::rowsOpen()
{
    QVERIFY(OpenSite());
    QVERIFY(Display->Click(Row(1), 2));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"beta two"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(Row(0).y() > 0, RunningProgram::Patience);
    QVERIFY(Display->Click(Row(0)));
    QVERIFY(Display->Press({u"Up"_s, u"Return"_s}));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"alpha"_s)));
    QVERIFY(Display->MiddleClick(Row(1)));
    QTRY_COMPARE_WITH_TIMEOUT(m_home->Programs().size(), 2, RunningProgram::Patience);
    QVERIFY(m_program->Titles().contains(RunningProgram::PageTitle(u"alpha"_s)));
}

void SiteTest::deletionAndBack()
{
    QVERIFY(OpenSite());
    const QByteArray bytes = BytesOf(m_alpha);
    QVERIFY(Display->Click(Row(0)));
    QVERIFY(Display->Press({u"Delete"_s})); // no question, and the neighbour is opened
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"beta two"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(m_alpha), RunningProgram::Patience);
    const QPoint undo = m_program->MainWindow().bottomRight() - QPoint(40, 13);
    QVERIFY(QTest::qWaitFor([&] { return Display->Click(undo) && QFile::exists(m_alpha); }, RunningProgram::Patience));
    QCOMPARE(BytesOf(m_alpha), bytes);
    QVERIFY(Quit());
}

bool SiteTest::ShowSiteFolder()
{
    return Display->Click(Row(1, List::Folders), 2) &&
           QTest::qWaitFor([this] { return Row(0).isNull(); }, RunningProgram::Patience);
}

/// From the folder of a site to a new page of it, with words and a link, and back to where it began.
void SiteTest::newPageAmongThePagesOfASite()
{
    const QString site = m_home->FilePath(u"site"_s);
    QVERIFY(CopyFolder(QStringLiteral(INKLOOM_SOURCE_DIR "/samples"), site));
    QVERIFY(OpenSite());
    QVERIFY(ShowSiteFolder());
    QVERIFY(Display->Press({u"ctrl+n"_s}));
    QVERIFY(m_program->WaitForWindow(u"Create New Page"_s));
    QVERIFY(Display->Type(u"Seed swap"_s) && Display->Press({u"Return"_s}));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"Seed swap"_s)));
    const QString made = site + "/Seed_swap.htm"_L1;
    QVERIFY(QTest::qWaitFor([this] { return Row(0).y() > 0; }, RunningProgram::Patience));

    const QPoint firstLine = m_program->MainWindow().topLeft() + QPoint(230, 150);
    QVERIFY(Display->Click(firstLine));
    QVERIFY(Display->Type(u"Bring a bag and ask Dora."_s) && Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(made, "Bring a bag and ask Dora."));
    QVERIFY(Display->Drag(Row(-1), firstLine));
    QVERIFY(QTest::qWaitFor([&] { return Display->Press({u"ctrl+s"_s}) && BytesOf(made).contains("<a "); },
                            RunningProgram::Patience));
    QVERIFY2(BytesOf(made).contains("<a href=\"rules.htm\">"), BytesOf(made));

    QVERIFY(Display->Press({u"alt+Left"_s}));
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"alpha"_s)));
    QVERIFY(
        QTest::qWaitFor([this] { return Display->Find(Mark).x() >= 0 && Row(0).y() > 0; }, RunningProgram::Patience));
    QVERIFY(ShowSiteFolder());
    QVERIFY(Display->Press({u"Tab"_s})); // from the folders to the files
    QVERIFY(Display->Type(u"seed"_s) && Display->Press({u"Delete"_s}));
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(made), RunningProgram::Patience);
    QCOMPARE(PagesIn(site).size(), PagesIn(QStringLiteral(INKLOOM_SOURCE_DIR "/samples")).size());
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<SiteTest>(argc, argv);
}

#include "SiteTest.moc"
