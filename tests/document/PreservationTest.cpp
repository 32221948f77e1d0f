#include "document/SourceCleanUp.h"
#include "platform/surface/Islands.h"
#include "platform/surface/merge/MarkupTokens.h"
#include "support/EditorRig.h"
#include "support/PageFolders.h"
#include "support/PageJudge.h"
#include "support/RunInPage.h"

#include <QEventLoop>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QWebEngineScript>
#include <QWebEngineView>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

/// Changes one word in the middle of the page's text; the word before and after.
const char ChangeWord[] = R"js((() => {
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT, {
    acceptNode: (n) => /[a-z]{4}/i.test(n.data) && !n.parentElement.closest("script,style,textarea,title,noframes,xmp,iframe,select")
      ? NodeFilter.FILTER_ACCEPT : NodeFilter.FILTER_REJECT });
  const nodes = [];
  while (walker.nextNode()) nodes.push(walker.currentNode);
  if (!nodes.length) return "";
  const node = nodes[nodes.length >> 1], at = node.data.search(/[a-z]{4}/i);
  node.replaceData(at, 4, "Quux");
  return node.data.substr(at, 4);
})())js";

/// Selects one word in the middle of what the page shows, for real keys to replace it; whether there is one.
const char SelectWord[] = R"js((() => {
  const range = document.createRange();
  const shows = (node) => { range.selectNodeContents(node); return range.getClientRects().length > 0; };
  const words = /[\p{L}\p{N}]{2}/u;
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT, {
    acceptNode: (n) => words.test(n.data) && !n.parentElement.closest("select,textarea,button") && shows(n)
      ? NodeFilter.FILTER_ACCEPT : NodeFilter.FILTER_REJECT });
  const nodes = [];
  while (document.body.nodeName === "BODY" && walker.nextNode()) nodes.push(walker.currentNode);
  if (!nodes.length) return false;
  const node = nodes[nodes.length >> 1], at = node.data.search(words);
  getSelection().setBaseAndExtent(node, at, node, at + node.data.slice(at).match(/^[\p{L}\p{N}]+/u)[0].length);
  return true;
})())js";

/// The caret goes into the last row of the page's middle table; the number of the table, -1 for none.
const char GoToRow[] = R"js((() => {
  const tables = [...document.getElementsByTagName("table")];
  const k = tables.length >> 1, row = tables.length && tables[k].rows[tables[k].rows.length - 1];
  if (!row || !row.cells.length) return -1;
  getSelection().collapse(row.cells[0], 0);
  return k;
})())js";

struct Lines
{
    qsizetype First; ///< of those that are not the same, from 0
    qsizetype Old;   ///< how many there were
    qsizetype New;
};

Lines ChangedLines(const QByteArray &before, const QByteArray &after)
{
    const QList<QByteArray> a = before.split('\n');
    const QList<QByteArray> b = after.split('\n');
    qsizetype head = 0;
    while (head < std::min(a.size(), b.size()) && a[head] == b[head])
        ++head;
    qsizetype tail = 0;
    while (tail < std::min(a.size(), b.size()) - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail])
        ++tail;
    return {head, a.size() - head - tail, b.size() - head - tail};
}

/// First and last line of the table of that number, counted by start tags as the page has them.
std::pair<qsizetype, qsizetype> LinesOfTable(const QString &text, int number)
{
    const quint32 table = TagNameKey(u"table");
    int count = -1;
    int depth = 0;
    qsizetype start = -1;
    for (const MarkupToken &token : TokenizeMarkup(text).Tokens) {
        if (token.Name != table)
            continue;
        if (token.Is == MarkupToken::StartTag && ++count == number)
            start = token.Start;
        if (start >= 0)
            depth += token.Is == MarkupToken::StartTag ? 1 : -1;
        if (start >= 0 && depth == 0)
            return {QStringView(text).first(start).count(u'\n'), QStringView(text).first(token.End()).count(u'\n')};
    }
    return {start < 0 ? 0 : QStringView(text).first(start).count(u'\n'), text.count(u'\n')};
}

} // namespace

/// With its source preserved, a page that is saved is the page that was opened, but for what was changed: on our
/// samples and on pages that people kept by hand for decades.
class PreservationTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void pages_data();
    void pages();
    void bytesAsTheyAre_data();
    void bytesAsTheyAre();
    void typedInSourceStaysAsTyped();
    void engineFormKeepsTheSource();
    void undoAcrossReplacedPages();
    void rendererRestartKeepsTheSource();

private:
    QByteArray Saved(CleanUp reach);
    QVariant Run(const char *script);
    bool Open(const QString &path);
    struct OpenedPage
    {
        QString Name;
        QByteArray File;
        QString Text;
        QByteArray Cleaned; ///< the file as it is saved after the clean-up
        QString CleanedText;
    };
    void WithoutEdit(const OpenedPage &page);
    void OneWord(const OpenedPage &page);
    void OneRow(const OpenedPage &page);
    QString DifferenceFromScreen();
    void UndoAll();
    void Note(const char *what, bool holds, const OpenedPage &page, const QString &why = {});

    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<PageJudge> m_judge;
    struct Share
    {
        int Of = 0;
        int Held = 0;
        QStringList Others;
    };
    QMap<QString, Share> m_shares;
};

void PreservationTest::initTestCase()
{
    EditorRig::StartEngine();
    m_rig = std::make_unique<EditorRig>();
    m_judge = std::make_unique<PageJudge>();
    m_rig->App.PreserveHtml = true;
    m_rig->Surface.SetSourceCodePreservation(true);
}

void PreservationTest::cleanup()
{
    m_rig->Surface.MarkClean();
    m_rig->Page.HtmlDirty = false;
    m_rig->Page.ActiveTab = ViewTab::Normal;
    m_rig->App.ExactSource = false;
}

/// The shares, for whoever wants them in a table.
void PreservationTest::cleanupTestCase()
{
    for (auto share = m_shares.cbegin(); share != m_shares.cend(); ++share) {
        qInfo().noquote() << share.key() << share->Held << "of" << share->Of;
        for (const QString &other : share->Others)
            qInfo().noquote() << "    " << other;
    }
}

void PreservationTest::Note(const char *what, bool holds, const OpenedPage &page, const QString &why)
{
    Share &share = m_shares[QString::fromLatin1(what)];
    ++share.Of;
    share.Held += holds ? 1 : 0;
    if (!holds)
        share.Others.append(page.Name + u' ' + why);
}

QByteArray PreservationTest::Saved(CleanUp reach)
{
    m_rig->App.ExactSource = reach == CleanUp::NewOnly;
    const QString copy = m_rig->Path(u"saved.htm"_s);
    return m_rig->Edit->SaveHTML(copy) ? EditorRig::Bytes(copy) : QByteArray("(not saved)");
}

QVariant PreservationTest::Run(const char *script)
{
    return RunInPage(m_rig->Surface, QString::fromUtf8(script));
}

bool PreservationTest::Open(const QString &path)
{
    return m_rig->Load(path) && m_rig->Surface.WaitWhileBusy();
}

void PreservationTest::pages_data()
{
    QTest::addColumn<QString>("path");
    const QList<PageFile> files = PageFiles();
    for (const PageFile &file : files)
        QTest::newRow(qPrintable(file.Name)) << file.Path;
    QVERIFY2(files.size() >= 200, "the documentation pages are missing: run ./test, which installs them");
}

void PreservationTest::pages()
{
    QFETCH(QString, path);
    OpenedPage page{QString::fromUtf8(QTest::currentDataTag()), EditorRig::Bytes(path), {}, {}, {}};
    QVERIFY(Open(m_rig->Put("page."_L1 + QFileInfo(path).suffix(), page.File)));
    const TextFileContent content = ReadTextFile(path);
    FixupContext context;
    page.Text = content.Text;
    page.CleanedText = CleanUpSource({content.Text, {}}, CleanUp::Whole, context);
    const auto bytes = [&](const QString &text) {
        WriteTextFile(m_rig->Path(u"expected.htm"_s), text, content.Encoding);
        return EditorRig::Bytes(m_rig->Path(u"expected.htm"_s));
    };
    page.Cleaned = bytes(page.CleanedText);
    Note("preserved, no edit: FixupHTML of the file", page.Cleaned == bytes(FixupHTML(content.Text)), page,
         u"holds tags that the clean-up would garble, kept as written"_s);
    WithoutEdit(page);
    if (!QTest::currentTestFailed())
        OneWord(page);
    if (!QTest::currentTestFailed())
        OneRow(page);
}

void PreservationTest::WithoutEdit(const OpenedPage &page)
{
    const bool whole = Saved(CleanUp::Whole) == page.Cleaned;
    const bool exact = Saved(CleanUp::NewOnly) == page.File;
    Note("exact, no edit: the file", exact, page);
    QVERIFY(whole);
    QVERIFY(exact);
    m_rig->Surface.CaretToPageStart();
    const QString before = m_rig->Surface.DocumentHTML(); // with the guide style
    QStringList faults;
    for (const CleanUp reach : {CleanUp::Whole, CleanUp::NewOnly}) {
        m_rig->App.ExactSource = reach == CleanUp::NewOnly;
        m_rig->Edit->SelectTab(ViewTab::HtmlSource);
        if (m_rig->Source.Text() != (reach == CleanUp::NewOnly ? page.Text : page.CleanedText))
            faults += u"source"_s;
        m_rig->Edit->SelectTab(ViewTab::Normal);
        if (m_rig->Surface.DocumentHTML() != before)
            faults += u"page"_s;
        if (m_rig->Edit->HasUnsavedChanges())
            faults += u"unsaved"_s;
        if (m_rig->Surface.QueryStatus(DECMD_UNDO) != DECMDF_DISABLED)
            faults += u"undo"_s;
    }
    Note("to the source and back", faults.isEmpty(), page, faults.join(u", "_s));
    QCOMPARE(faults, QStringList());
    QCOMPARE(Saved(CleanUp::NewOnly), page.File);
}

/// Where the source, read again, is not the page on screen. Blanks at the page's end show nowhere, and the author may
/// have them behind end tags.
QString PreservationTest::DifferenceFromScreen()
{
    const QString difference = m_judge->FirstDifference(ProtectIslands(m_rig->Surface.DocumentSource().Text).Text,
                                                        ProtectIslands(m_rig->Surface.EngineHTML()).Text);
    static const QRegularExpression onlyEnd(uR"(^(["\[\],]|</>|T:|\\[nrt]| |became)*$)"_s);
    return onlyEnd.match(difference).hasMatch() ? QString() : difference;
}

void PreservationTest::UndoAll()
{
    for (int step = 0; step < 10 && m_rig->Surface.QueryStatus(DECMD_UNDO) == DECMDF_ENABLED; ++step)
        m_rig->Surface.ExecCommand(DECMD_UNDO);
}

void PreservationTest::OneWord(const OpenedPage &page)
{
    if (!Run(SelectWord).toBool())
        return;
    m_rig->Surface.InputWidget()->setFocus();
    m_rig->Type(u"Quux"_s);
    QVERIFY(m_rig->Surface.IsDirty());
    const Lines whole = ChangedLines(page.Cleaned, Saved(CleanUp::Whole));
    Note("preserved, a word: its line", whole.Old == 1 && whole.New == 1, page,
         u"%1 became %2"_s.arg(whole.Old).arg(whole.New));
    const QByteArray after = Saved(CleanUp::NewOnly);
    const Lines exact = ChangedLines(page.File, after);
    Note("exact, a word: its line", exact.Old == 1 && exact.New == 1, page,
         u"%1 became %2"_s.arg(exact.Old).arg(exact.New));
    QCOMPARE(DifferenceFromScreen(), QString());
    QVERIFY(after.contains("Quux"));
    UndoAll();
    QCOMPARE(Saved(CleanUp::NewOnly), page.File);
    QVERIFY2(exact.Old == 1 && exact.New == 1 && whole.Old == 1 && whole.New == 1, "more than one line changed");
}

void PreservationTest::OneRow(const OpenedPage &page)
{
    const int table = Run(GoToRow).toInt();
    if (table < 0)
        return;
    QTRY_COMPARE(m_rig->Surface.QueryStatus(DECMD_INSERTROW), DECMDF_ENABLED);
    m_rig->Surface.ExecCommand(DECMD_INSERTROW);
    const auto holds = [&](const QByteArray &before, const QByteArray &after, const QString &text, const char *what) {
        const Lines lines = ChangedLines(before, after);
        const auto [first, last] = LinesOfTable(text, table);
        const bool inside = after.size() > before.size() && lines.First >= first && lines.First + lines.Old <= last + 1;
        Note(what, inside, page,
             u"line %1, %2 became %3; table %4 to %5"_s.arg(lines.First)
                 .arg(lines.Old)
                 .arg(lines.New)
                 .arg(first)
                 .arg(last));
        return inside;
    };
    const bool whole = holds(page.Cleaned, Saved(CleanUp::Whole), page.CleanedText, "preserved, a row: its table");
    const bool exact = holds(page.File, Saved(CleanUp::NewOnly), page.Text, "exact, a row: its table");
    QCOMPARE(DifferenceFromScreen(), QString());
    UndoAll();
    QCOMPARE(Saved(CleanUp::NewOnly), page.File);
    QVERIFY2(whole && exact, "lines outside the table changed");
}

void PreservationTest::bytesAsTheyAre_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("mixed line ends") << QByteArray(
        "<HTML>\r\n<HEAD><TITLE>t</TITLE>\n</HEAD>\r<BODY>\r\n<P ALIGN='left'\r\n  ID=x>a&eacute; "
        "b\n<P>word\r\n</BODY></HTML>\r\n\n");
    QTest::newRow("byte order mark") << QByteArray(
        "\xEF\xBB\xBF<html><head></head><body>\n<p>word \xC3\xA9</p></body></html>");
    QTest::newRow("windows-1252") << QByteArray(
        "<html><head>\n<meta charset=windows-1252></head>\n<body><p>caf\xE9 word</p>\n</body></html>");
    QTest::newRow("upper-case head end") << QByteArray(
        "<HTML><HEAD><TITLE>T</TITLE></HEAD>\n<BODY><P>word</BODY></HTML>");
    QTest::newRow("code everywhere") << QByteArray(
        "<?php session(); ?>\n<html><head><title><?= $t ?></title></head>\n<body <?= $b ?> class='<%= c %>'>\n<p><? if "
        "(a>b) { ?>word<? } ?></p <? x ?>>\n"
        "<ul><? each() ?>\n<li>a\n<li>b\n<? end() ?></ul></body>\n</html>\n<!-- end --><?php bye();");
    QTest::newRow("no page around it") << QByteArray(
        "<h1>Title\n<p>word <b>bold<i>both</b>it</i>\n<font color=red>x\n\n");
    QTest::newRow("file link") << QByteArray(
        "<html><body>\n<a href=\"file:///etc/x.htm\" target='y'>word</a>\n</body></html>\n");
}

void PreservationTest::bytesAsTheyAre()
{
    QFETCH(QByteArray, file);
    const QString path = m_rig->Put(u"page.php"_s, file);
    QVERIFY(Open(path));
    QCOMPARE(Saved(CleanUp::NewOnly), file);
    QCOMPARE(Run(ChangeWord).toString(), u"Quux"_s);
    const QByteArray saved = Saved(CleanUp::NewOnly);
    const Lines lines = ChangedLines(file, saved);
    QVERIFY2(lines.Old == 1 && lines.New == 1 && saved.contains("Quux"), saved.constData());
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Saved(CleanUp::NewOnly), file);
    // Under its own name it counts as saved, and still is what it was.
    Run(ChangeWord);
    m_rig->App.ExactSource = true;
    QVERIFY(m_rig->Edit->SaveHTML(path));
    QCOMPARE(EditorRig::Bytes(path), saved);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
}

void PreservationTest::typedInSourceStaysAsTyped()
{
    QVERIFY(Open(m_rig->Put(u"a.htm"_s, "<html><head></head><body>\n<p>one\n<p>two\n</body></html>\n")));
    m_rig->App.ExactSource = true;
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    const QString typed = u"<P  CLASS='mine'>typed &eacute;<BR/>"_s;
    m_rig->Source.Select(m_rig->Source.Text().indexOf("<p>two"_L1) + 1, 0);
    m_rig->TypeInSource(typed);
    const QString source = m_rig->Source.Text();
    QVERIFY(source.contains(typed + "<p>two"_L1));
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QCOMPARE(QString::fromUtf8(Saved(CleanUp::NewOnly)), source);
    Run(ChangeWord);
    const Lines lines = ChangedLines(source.toUtf8(), Saved(CleanUp::NewOnly));
    QCOMPARE(lines.Old, 1);
    QCOMPARE(lines.New, 1);
}

/// Dialogs that work on the engine form give it back; the file's own text stays the source.
void PreservationTest::engineFormKeepsTheSource()
{
    const QByteArray file = "<html><head><title>t</title></head>\n<body BGCOLOR='white'\n text=black>\n<p <?= $x "
                            "?>>one\n<p>two\n</body></html>\n";
    QVERIFY(Open(m_rig->Put(u"a.php"_s, file)));
    QString html = m_rig->Surface.EngineHTML();
    QVERIFY2(html.contains("bgcolor=white text=black"_L1), qPrintable(html));
    m_rig->Surface.SetDocumentHTML(html.replace("text=black"_L1, "text=navy link=red"_L1),
                                   DesignSurface::TextForm::Engine);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QCOMPARE(Saved(CleanUp::NewOnly), QByteArray(file).replace("text=black", "text=navy link=\"red\""));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Saved(CleanUp::NewOnly), file);
}

void PreservationTest::undoAcrossReplacedPages()
{
    const QByteArray file = "<html><head></head><body>\n<P>one  <BR/>\n</body></html>\n";
    QVERIFY(Open(m_rig->Put(u"a.htm"_s, file)));
    Run(ChangeWord);
    m_rig->Surface.SetDocumentHTML(u"<html><head></head><body>\n<P  ID='other'>text\n</body></html>\n"_s);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    Run(ChangeWord);
    QCOMPARE(Saved(CleanUp::NewOnly), "<html><head></head><body>\n<P  ID='other'>Quux\n</body></html>\n");
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(m_rig->Surface.DocumentSource().New.isEmpty(), true);
    QCOMPARE(Saved(CleanUp::NewOnly), file);
}

void PreservationTest::rendererRestartKeepsTheSource()
{
    const QByteArray file = "<html><head></head><body>\n<P CLASS='x'>words  here<BR/>\n<p>more\n</body></html>\n";
    QVERIFY(Open(m_rig->Put(u"a.htm"_s, file)));
    QSignalSpy snapshot(&m_rig->Surface, &DesignSurface::SnapshotTaken);
    Run(ChangeWord);
    QVERIFY(snapshot.wait());
    QSignalSpy lost(&m_rig->Surface, &DesignSurface::RendererLost);
    ::kill(pid_t(m_rig->Surface.RendererProcessId()), SIGKILL);
    QVERIFY(lost.wait());
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QCOMPARE(Saved(CleanUp::NewOnly), QByteArray(file).replace("more", "Quux"));
}

QTEST_MAIN(PreservationTest)
#include "PreservationTest.moc"
