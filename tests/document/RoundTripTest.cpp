#include "platform/surface/Islands.h"
#include "platform/TextFile.h"
#include "support/EditorRig.h"
#include "support/IslandPages.h"
#include "support/PageFolders.h"
#include "support/PageJudge.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// The pieces of a page that must come back byte for byte, in their order.
QStringList Verbatim(const QString &text)
{
    QStringList pieces;
    for (const IslandSpan &block : FindServerCode(text))
        pieces += text.sliced(block.Start, block.Length);
    static const QRegularExpression comments(u"<!--\\[if.*?-->|<!\\[(if|endif)[^>]*>"_s,
                                             QRegularExpression::DotMatchesEverythingOption);
    for (const auto &match : comments.globalMatch(text))
        pieces += match.captured();
    return pieces;
}

} // namespace

/// Opening and saving a page changes nothing of what it says: on our samples and on a few hundred pages that people
/// kept by hand for decades.
class RoundTripTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void pageStaysTheSameDocument_data();
    void pageStaysTheSameDocument();
    void aLookAtTheSourceChangesNothing_data() { pageStaysTheSameDocument_data(); }
    void aLookAtTheSourceChangesNothing();
    void serverCodeComesBackByteForByte_data();
    void serverCodeComesBackByteForByte();

private:
    QByteArray SavedOnce(const QString &path, const QString &name);

    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<PageJudge> m_judge;
};

void RoundTripTest::initTestCase()
{
    m_rig = std::make_unique<EditorRig>();
    m_judge = std::make_unique<PageJudge>();
}

void RoundTripTest::cleanup()
{
    m_rig->Surface.MarkClean();
    m_rig->Page.HtmlDirty = false;
}

QByteArray RoundTripTest::SavedOnce(const QString &path, const QString &name)
{
    const QString copy = m_rig->Path(name);
    if (!m_rig->Load(path) || !m_rig->Surface.WaitWhileBusy() || !m_rig->Edit->SaveHTML(copy))
        return "(not saved)";
    return EditorRig::Bytes(copy);
}

void RoundTripTest::pageStaysTheSameDocument_data()
{
    QTest::addColumn<QString>("path");
    int others = 0;
    for (const PageFile &file : PageFiles()) {
        QTest::newRow(qPrintable(file.Name)) << file.Path;
        others += file.Sample ? 0 : 1;
    }
    QVERIFY2(others >= 200, "the documentation pages are missing: run ./test, which installs them");
}

void RoundTripTest::pageStaysTheSameDocument()
{
    QFETCH(QString, path);
    const QString page = m_rig->Put("page."_L1 + QFileInfo(path).suffix(), EditorRig::Bytes(path));
    const QString saved = "saved."_L1 + QFileInfo(path).suffix();
    const QByteArray once = SavedOnce(page, saved);
    const TextFileContent before = ReadTextFile(page);
    const TextFileContent after = ReadTextFile(m_rig->Path(saved));
    QCOMPARE(after.Encoding, before.Encoding);
    QCOMPARE(Verbatim(after.Text), Verbatim(before.Text));
    const QString difference =
        m_judge->FirstDifference(ProtectIslands(before.Text).Text, ProtectIslands(after.Text).Text);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    QCOMPARE(SavedOnce(m_rig->Path(saved), u"again.htm"_s), once);
}

void RoundTripTest::aLookAtTheSourceChangesNothing()
{
    QFETCH(QString, path);
    QVERIFY(m_rig->Load(m_rig->Put("page."_L1 + QFileInfo(path).suffix(), EditorRig::Bytes(path))));
    m_rig->Surface.CaretToPageStart();
    const QString before = m_rig->Surface.DocumentHTML();
    for (const ViewTab tab : {ViewTab::HtmlSource, ViewTab::Normal, ViewTab::PageProperties, ViewTab::Normal})
        m_rig->Edit->SelectTab(tab);
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void RoundTripTest::serverCodeComesBackByteForByte_data()
{
    QTest::addColumn<QString>("text");
    for (const IslandPage &page : IslandPages())
        QTest::newRow(page.Name) << page.Text;
    QTest::newRow("carriage returns in code")
        << u"<html>\r\n<body>\r\n<p>x<?php\r\n a();\r\n?></p>\r\n</body>\r\n</html>\r\n"_s;
    QTest::newRow("carriage returns in code of a line feed page")
        << u"<html>\n<body>\n<p>x<?php\r\n a();\r\n?></p>\n\n</body>\n"_s;
    QTest::newRow("conditional comments")
        << u"<!--[if lt IE 7]><HTML CLASS=old><![endif]--><head><!--[if IE]><LINK REL=x HREF=Y><![endif]-->"
           "<![if !IE]><TITLE>t</TITLE><![endif]></head><table><!--[if A]><TR><TD NOWRAP><![endif]--><tr><td>x</table>"_s;
    QTest::newRow("server side includes")
        << u"<!--#include virtual=\"/Top.inc\" --><p>x<!--#echo var=\"DATE_LOCAL\"--><table><!--#include FILE=Row --></table>"_s;
}

void RoundTripTest::serverCodeComesBackByteForByte()
{
    QFETCH(QString, text);
    const QString page = m_rig->Put(u"page.php"_s, text.toUtf8());
    const QByteArray once = SavedOnce(page, u"saved.php"_s);
    QCOMPARE(Verbatim(QString::fromUtf8(once)), Verbatim(text));
    QCOMPARE(SavedOnce(m_rig->Path(u"saved.php"_s), u"again.php"_s), once);

    m_rig->TypeAtStart(u"typed"_s);
    const bool dirty = m_rig->Surface.IsDirty(); // a page of frames or pictures takes no text
    QVERIFY(m_rig->Edit->SaveHTML(m_rig->Path(u"edited.php"_s)));
    const QString edited = QString::fromUtf8(EditorRig::Bytes(m_rig->Path(u"edited.php"_s)));
    QCOMPARE(edited.contains("typed"_L1), dirty);
    if (text.startsWith("<?php\nif"_L1)) // what is typed behind a block without an end needs one
        QVERIFY(edited.startsWith(text + "\n?><html>"_L1));
    else
        QCOMPARE(Verbatim(edited), Verbatim(text));
}

QTEST_MAIN(RoundTripTest)
#include "RoundTripTest.moc"
