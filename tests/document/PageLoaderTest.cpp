#include "document/PageLoader.h"
#include "document/BackHistory.h"
#include "document/GuideStyle.h"
#include "support/EditorRig.h"

#include <QRandomGenerator>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;
using Buttons = MessageBoxes::Buttons;

namespace {

QByteArray PageTitled(const QByteArray &title)
{
    return "<html><head><title>" + title + "</title></head><body><p>words</p></body></html>\n";
}

} // namespace

/// Opening real files into the real design view.
class PageLoaderTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aPageIsInThreePlacesAndItsNameInTheWindow();
    void whatCannotBeOpenedLeavesTheOldPage_data();
    void whatCannotBeOpenedLeavesTheOldPage();
    void oddPagesOpen_data();
    void oddPagesOpen();
    void guideStyleIsOnlyInTheDesignView_data();
    void guideStyleIsOnlyInTheDesignView();
    void oldEngineGetsTheFileItself();
    void scratchCopyIsNotNeeded();
    void leavingAChangedPage_data();
    void leavingAChangedPage();
    void anUnnamedPageIsAskedForItsName();
    void changedSourceIsSavedBeforeLeaving();
    void fourPagesBackAreKept();
    void goBackOpensTheLastPage();
    void goBackKeepsThePageThatIsGone();
    void workingCopyOpensAsItsPage();
    void charsetOfThePage_data();
    void charsetOfThePage();
    void styleSheetOfThePage_data();
    void styleSheetOfThePage();
    void anEmptyPageIsNotFilledWithTheOneBefore();
    void errorWords_data();
    void errorWords();

private:
    std::unique_ptr<EditorRig> m_rig;
};

void PageLoaderTest::initTestCase()
{
    EditorRig::StartEngine();
}

void PageLoaderTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_rig = std::make_unique<EditorRig>();
}

void PageLoaderTest::cleanup()
{
    m_rig.reset();
}

void PageLoaderTest::aPageIsInThreePlacesAndItsNameInTheWindow()
{
    QSignalSpy captions(m_rig->Edit.get(), &Editor::CaptionChanged);
    QSignalSpy folders(m_rig->Edit.get(), &Editor::FolderChanged);
    QSignalSpy formats(m_rig->Edit.get(), &Editor::BlockFormatsRead);
    QSignalSpy cursor(m_rig->Edit.get(), &Editor::WaitCursor);
    const QString path = m_rig->Put(u"a.htm"_s, EditorRig::SmallPage);
    QVERIFY(m_rig->Load(path));

    QCOMPARE(m_rig->Source.Text(), QString::fromLatin1(EditorRig::SmallPage));
    QVERIFY(!m_rig->Source.IsModified());
    QVERIFY(m_rig->Surface.DocumentHTML().contains("<P>words</P>"_L1));
    QCOMPARE(m_rig->Surface.BaseURL(), QUrl::fromLocalFile(path).toString());
    QCOMPARE(m_rig->Bytes(m_rig->Path(u"iltb.tmp"_s)),
             QByteArray(EditorRig::SmallPage).replace("</head>", (GuideStyle::Lower() + "</head>"_L1).toLatin1()));
    QCOMPARE(m_rig->Bytes(path), EditorRig::SmallPage);

    QCOMPARE(m_rig->Page.CurrentFilePath, path);
    QCOMPARE(m_rig->Page.LoadedFilePath, path);
    QVERIFY(m_rig->Page.HasBodyTag);
    QVERIFY(m_rig->Page.FormatBoxesReady);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Edit->StatusText(), u"First"_s);
    QCOMPARE(m_rig->Edit->StatusPath(), path);
    QCOMPARE(captions.takeFirst().at(0).toString(), u"Inkloom HTML Editor - First"_s);
    QCOMPARE(folders.takeFirst().at(0).toString(), m_rig->Folder());
    QCOMPARE(formats.size(), 1);
    QCOMPARE(formats.at(0).at(0).toStringList().first(), u"Normal"_s);
    QCOMPARE(cursor.last().at(0).toBool(), false);
    QCOMPARE(m_rig->Surface.SelectionType(), u"None"_s);

    QVERIFY(m_rig->Load(m_rig->Put(u"untitled.htm"_s, "<Body>x</Body>")));
    QCOMPARE(m_rig->Edit->StatusText(), u"[No Title]"_s);
    QCOMPARE(captions.takeFirst().at(0).toString(), u"Inkloom HTML Editor - [No Title]"_s);
    QVERIFY(!m_rig->Page.HasBodyTag); // of mixed case: does not count
}

void PageLoaderTest::whatCannotBeOpenedLeavesTheOldPage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QByteArray noise(100000, Qt::Uninitialized);
    QRandomGenerator random(7);
    for (char &c : noise)
        c = char(random.bounded(256));
    QTest::newRow("no such file") << QByteArray() << u"Error: File %1 does not exist."_s;
    QTest::newRow("an image") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)
                              << u"Error: File %1 is not a text file."_s;
    QTest::newRow("random bytes") << noise << u"Error: File %1 is not a text file."_s;
    QTest::newRow("a folder") << QByteArray("folder") << u"Error: File %1 could not be read."_s;
}

void PageLoaderTest::whatCannotBeOpenedLeavesTheOldPage()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString first = m_rig->Put(u"first.htm"_s, EditorRig::SmallPage);
    QVERIFY(m_rig->Load(first));
    m_rig->TypeAtStart(u"unsaved "_s);

    const QString path = m_rig->Path(u"odd"_s);
    if (bytes == "folder")
        QDir().mkpath(path);
    else if (!bytes.isEmpty())
        m_rig->Put(u"odd"_s, bytes);
    m_rig->Boxes.Expect(Answer::Ok, message.arg(path));
    QVERIFY(!m_rig->Load(path));

    QCOMPARE(m_rig->Page.CurrentFilePath, first);
    QVERIFY(m_rig->Page.BackHistory.isEmpty());
    QVERIFY(m_rig->Surface.DocumentHTML().contains("unsaved words"_L1));
    QCOMPARE(m_rig->Source.Text(), QString::fromLatin1(EditorRig::SmallPage));
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    m_rig->Boxes.Verify();
}

void PageLoaderTest::oddPagesOpen_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("inSurface");
    QTest::newRow("0 bytes") << QByteArray() << QByteArray("<BODY></BODY>");
    QTest::newRow("20 MB") << "<html><head></head><body>" +
                                  ("<p>" + QByteArray("0123456789 ").repeated(90) + "</p>\n").repeated(20000) +
                                  "<p>end</p></body></html>"
                           << QByteArray("<P>end</P>");
    QTest::newRow("nested 5,000 deep") << "<html><body>" + QByteArray("<div>").repeated(5000) + "deep" +
                                              QByteArray("</div>").repeated(5000) + "</body></html>"
                                       << QByteArray("deep");
    QByteArray noise(50000, Qt::Uninitialized);
    QRandomGenerator random(11);
    for (char &c : noise)
        c = char(random.bounded(1, 256));
    QTest::newRow("random bytes without a zero") << "needle" + noise << QByteArray("needle");
    QTest::newRow("one line end") << QByteArray("\r\n") << QByteArray("\r\n");
    QTest::newRow("frameset") << QByteArray(
                                     "<html><head></head><frameset cols=50,50><frame src=a.htm></frameset></html>")
                              << QByteArray("<FRAMESET");
}

void PageLoaderTest::oddPagesOpen()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, inSurface);
    const QString path = m_rig->Put(u"odd.htm"_s, bytes);
    QVERIFY(m_rig->Load(path));
    const QString html = m_rig->Surface.DocumentHTML();
    QVERIFY2(html.contains(QLatin1String(inSurface)), qPrintable(html.left(500)));
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Bytes(path), bytes);
    // The program lives on.
    QVERIFY(m_rig->Load(m_rig->Put(u"next.htm"_s, EditorRig::SmallPage)));
    QCOMPARE(m_rig->Edit->StatusText(), u"First"_s);
}

void PageLoaderTest::guideStyleIsOnlyInTheDesignView_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("guidesOn");
    QTest::addColumn<int>("styles");
    QTest::newRow("usual page") << EditorRig::SmallPage << true << 1;
    QTest::newRow("upper case") << EditorRig::SmallPage.toUpper() << true << 1;
    QTest::newRow("no head end tag") << QByteArray("<html><body>x</body></html>") << true << 0;
    QTest::newRow("head end tag twice") << QByteArray("<html><head></head><body>x</head></body></html>") << true << 2;
    QTest::newRow("guides off") << EditorRig::SmallPage << false << 0;
    QTest::newRow("style left behind in the file")
        << QByteArray(EditorRig::SmallPage).replace("</head>", GuideStyle::Upper().toLatin1() + "</head>") << false
        << 0;
}

void PageLoaderTest::guideStyleIsOnlyInTheDesignView()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, guidesOn);
    QFETCH(int, styles);
    m_rig->App.TableGuidesOn = guidesOn;
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, bytes)));
    QCOMPARE(m_rig->Surface.DocumentHTML().count("border-collapse: collapse"_L1), styles);
    QCOMPARE(m_rig->Bytes(m_rig->Path(u"iltb.tmp"_s)).count("border-collapse: collapse"), styles);
    QCOMPARE(m_rig->Source.Text(), QString::fromLatin1(bytes));
}

void PageLoaderTest::oldEngineGetsTheFileItself()
{
    m_rig->App.EngineVersionNew = false;
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, EditorRig::SmallPage)));
    QVERIFY(m_rig->Surface.DocumentHTML().contains("words"_L1));
    QVERIFY(!m_rig->Surface.DocumentHTML().contains("border-collapse"_L1));
    QVERIFY(!QFile::exists(m_rig->Path(u"iltb.tmp"_s)));
}

void PageLoaderTest::scratchCopyIsNotNeeded()
{
    // A name that can't be written to, whoever the user is.
    QDir(m_rig->Folder()).mkdir(u"iltb.tmp"_s);
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, EditorRig::SmallPage)));
    QVERIFY(m_rig->Surface.DocumentHTML().contains("words"_L1));
    QVERIFY(m_rig->Surface.DocumentHTML().contains("border-collapse"_L1));

    // A link somebody else laid there is not followed.
    QDir(m_rig->Folder()).rmdir(u"iltb.tmp"_s);
    const QString victim = m_rig->Put(u"victim.txt"_s, "precious");
    QFile::link(victim, m_rig->Path(u"iltb.tmp"_s));
    QVERIFY(m_rig->Load(m_rig->Path(u"a.htm"_s)));
    QCOMPARE(m_rig->Bytes(victim), QByteArray("precious"));
}

void PageLoaderTest::leavingAChangedPage_data()
{
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("saved");
    QTest::addColumn<bool>("left");
    QTest::newRow("yes") << false << Answer::Yes << true << true;
    QTest::newRow("no") << false << Answer::No << false << true;
    QTest::newRow("cancel") << false << Answer::Cancel << false << false;
    QTest::newRow("saved without asking") << true << Answer::Ok << true << true;
}

void PageLoaderTest::leavingAChangedPage()
{
    QFETCH(bool, autoSave);
    QFETCH(Answer, answer);
    QFETCH(bool, saved);
    QFETCH(bool, left);
    m_rig->App.AutoSave = autoSave;
    const QString first = m_rig->Put(u"first.htm"_s, EditorRig::SmallPage);
    const QString second = m_rig->Put(u"second.htm"_s, PageTitled("Second"));
    QVERIFY(m_rig->Load(first));
    m_rig->TypeAtStart(u"more "_s);
    if (!autoSave)
        m_rig->Boxes.Expect(answer, u"Save changes to %1?"_s.arg(first));
    QCOMPARE(m_rig->Load(second), left);

    m_rig->Boxes.Verify();
    QCOMPARE(m_rig->Bytes(first).contains("more words"), saved);
    QCOMPARE(m_rig->Page.CurrentFilePath, left ? second : first);
    QCOMPARE(m_rig->Edit->StatusText(), left ? u"Second"_s : u"First"_s);
    QCOMPARE(m_rig->Edit->HasUnsavedChanges(), !left);
    QCOMPARE(m_rig->Page.BackHistory, left ? QStringList{first} : QStringList());
    QCOMPARE(m_rig->Surface.DocumentHTML().contains("more words"_L1), !left);
    QVERIFY(m_rig->Page.LoadInProgress);
}

void PageLoaderTest::anUnnamedPageIsAskedForItsName()
{
    const QString next = m_rig->Put(u"next.htm"_s, EditorRig::SmallPage);
    m_rig->Surface.LoadText(QString::fromLatin1(EditorRig::SmallPage), {});
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_rig->TypeAtStart(u"new "_s);

    m_rig->Boxes.Expect(Answer::Yes, u"Save changes to ?"_s);
    m_rig->Dialogs.ExpectSave(std::nullopt);
    QVERIFY(!m_rig->Load(next));
    QVERIFY(m_rig->Surface.DocumentHTML().contains("new words"_L1));

    m_rig->Boxes.Expect(Answer::Yes, u"Save changes to ?"_s);
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"named"_s));
    QVERIFY(m_rig->Load(next));
    QVERIFY(m_rig->Bytes(m_rig->Path(u"named.htm"_s)).contains("new words"));
    QCOMPARE(m_rig->Page.CurrentFilePath, next);
    m_rig->Boxes.Verify();
}

void PageLoaderTest::changedSourceIsSavedBeforeLeaving()
{
    const QString first = m_rig->Put(u"first.htm"_s, EditorRig::SmallPage);
    const QString second = m_rig->Put(u"second.htm"_s, PageTitled("Second"));
    QVERIFY(m_rig->Load(first));
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    m_rig->Source.Select(m_rig->Source.Text().indexOf("words"_L1) + 1, 0);
    m_rig->TypeInSource(u"typed "_s);
    QVERIFY(m_rig->Source.IsModified());

    m_rig->Boxes.Expect(Answer::Yes, u"Save changes to %1?"_s.arg(first));
    QVERIFY(m_rig->Load(second));
    QVERIFY(m_rig->Bytes(first).contains("typed words"));
    QVERIFY(!m_rig->Bytes(first).contains("border-collapse"));
    QCOMPARE(m_rig->Source.Text(), QString::fromLatin1(PageTitled("Second")));
    QVERIFY(!m_rig->Page.LoadInProgress); // in the source view a load ends for good
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());

    m_rig->Edit->SelectTab(ViewTab::Normal);
    QCOMPARE(m_rig->Surface.DocumentTitle(), u"Second"_s);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    m_rig->Boxes.Verify();
}

void PageLoaderTest::fourPagesBackAreKept()
{
    QStringList paths;
    for (int i = 0; i < 6; ++i)
        paths.append(m_rig->Put(u"p%1.htm"_s.arg(i), PageTitled(QByteArray::number(i))));
    m_rig->Page.InitialBlankLoad = true;
    QVERIFY(m_rig->Load(paths[0]));
    m_rig->Page.InitialBlankLoad = false;
    QVERIFY(m_rig->Page.BackHistory.isEmpty());
    for (int i = 1; i < 6; ++i)
        QVERIFY(m_rig->Load(paths[i]));
    QCOMPARE(m_rig->Page.BackHistory, paths.mid(1, 4));
    QVERIFY(m_rig->Load(paths[5])); // the same page again counts too
    QCOMPARE(m_rig->Page.BackHistory, paths.mid(2, 4));
}

void PageLoaderTest::goBackOpensTheLastPage()
{
    const QString a = m_rig->Put(u"a.htm"_s, PageTitled("A"));
    const QString b = m_rig->Put(u"b.htm"_s, PageTitled("B"));
    QVERIFY(m_rig->Load(a));
    QVERIFY(m_rig->Load(b));
    QSignalSpy history(m_rig->Edit.get(), &Editor::BackHistoryChanged);
    m_rig->Edit->GoBack();
    QCOMPARE(m_rig->Edit->StatusText(), u"A"_s);
    QVERIFY(m_rig->Page.BackHistory.isEmpty());
    QCOMPARE(history.size(), 1);
    QVERIFY(!m_rig->Page.GoingBack);
    m_rig->Edit->GoBack();
    QCOMPARE(m_rig->Page.CurrentFilePath, a);
}

void PageLoaderTest::goBackKeepsThePageThatIsGone()
{
    const QString a = m_rig->Put(u"a.htm"_s, PageTitled("A"));
    QVERIFY(m_rig->Load(a));
    QVERIFY(m_rig->Load(m_rig->Put(u"b.htm"_s, PageTitled("B"))));
    QFile::remove(a);
    m_rig->Boxes.Expect(Answer::Ok, u"Error: File %1 does not exist."_s.arg(a));
    m_rig->Edit->GoBack();
    QCOMPARE(m_rig->Page.BackHistory, QStringList{a});
    QCOMPARE(m_rig->Edit->StatusText(), u"B"_s);
    m_rig->Boxes.Verify();
}

void PageLoaderTest::workingCopyOpensAsItsPage()
{
    const QString page = m_rig->Put(u"a.htm"_s, PageTitled("Page"));
    const QString copy = m_rig->Put(u"a.htm.tmp.htm"_s, PageTitled("Copy"));
    QVERIFY(m_rig->Load(copy));
    QCOMPARE(m_rig->Page.CurrentFilePath, page);
    QCOMPARE(m_rig->Page.LoadedFilePath, copy);
    QCOMPARE(m_rig->Edit->StatusText(), u"Page"_s);
    QCOMPARE(m_rig->Source.Text(), QString::fromLatin1(PageTitled("Copy")));

    QFile::remove(page); // only the copy is left: both views show it, saving makes the page
    QVERIFY(m_rig->Load(copy));
    QCOMPARE(m_rig->Edit->StatusText(), u"Copy"_s);
    m_rig->Edit->FileSave_Click();
    QVERIFY(m_rig->Bytes(page).contains("Copy"));
}

void PageLoaderTest::charsetOfThePage_data()
{
    QTest::addColumn<QByteArray>("declared");
    QTest::addColumn<bool>("fix");
    QTest::addColumn<QString>("charset");
    QTest::newRow("declared") << QByteArray("iso-8859-7") << true << u"iso-8859-7"_s;
    QTest::newRow("one character") << QByteArray("x") << true << u"ISO-8859-1"_s;
    QTest::newRow("21 characters") << QByteArray(21, 'y') << true << u"ISO-8859-1"_s;
    QTest::newRow("unicode") << QByteArray("unicode-1-1") << true << u"UTF-8"_s;
    QTest::newRow("engine without the fault") << QByteArray("iso-8859-7") << false << u"kept"_s;
}

void PageLoaderTest::charsetOfThePage()
{
    QFETCH(QByteArray, declared);
    QFETCH(bool, fix);
    QFETCH(QString, charset);
    m_rig->App.CharsetFix = fix;
    m_rig->Page.DocumentCharset = u"kept"_s;
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; "
                                               "charset=" +
                                                   declared + "\"></head><body>x</body></html>")));
    QCOMPARE(m_rig->Page.DocumentCharset, charset);
}

void PageLoaderTest::styleSheetOfThePage_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("path");
    QTest::newRow("none") << QByteArray() << u"javahelp.css"_s;
    QTest::newRow("linked") << QByteArray("<LINK rel=stylesheet href=\"css/Main.css\">") << u"css/Main.css"_s;
    QTest::newRow("link without address") << QByteArray("<link rel=stylesheet>") << QString();
}

void PageLoaderTest::styleSheetOfThePage()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, path);
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, "<html><head>" + head + "</head><body>x</body></html>")));
    QCOMPARE(m_rig->Page.StyleSheetPath, path.isEmpty() ? path : m_rig->Path(path));
}

void PageLoaderTest::anEmptyPageIsNotFilledWithTheOneBefore()
{
    QVERIFY(m_rig->Load(m_rig->Put(u"full.htm"_s, EditorRig::SmallPage)));
    m_rig->Edit->SelectTab(ViewTab::HtmlSource); // keeps the good texts of this page
    m_rig->Edit->SelectTab(ViewTab::Normal);
    const QString blank = m_rig->Put(u"blank.htm"_s, "<html><head></head><body></body></html>");
    QVERIFY(m_rig->Load(blank));
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QVERIFY(!m_rig->Surface.DocumentHTML().contains("words"_L1));
    QVERIFY(m_rig->Edit->source_blank_error(1));
    QVERIFY(m_rig->Edit->source_blank_error(2));
    m_rig->App.StartingUp = true;
    QVERIFY(!m_rig->Edit->source_blank_error(1));
}

void PageLoaderTest::errorWords_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QString>("text");
    QTest::newRow("frameset") << 0x80100001u << u"Document contains a frameset"_s;
    QTest::newRow("server script") << 0x80100002u << u"Document is primarily server side script"_s;
    QTest::newRow("unexpected") << 0x8000FFFFu << u"Unexpected error"_s;
    QTest::newRow("file") << 0x80070002u << u"File not found"_s;
    QTest::newRow("path") << 0x80070003u << u"Path not found"_s;
    QTest::newRow("argument") << 5u << u"Invalid argument"_s;
    QTest::newRow("access") << 70u << u"Access denied"_s;
    QTest::newRow("any other") << 53u << QString();
}

void PageLoaderTest::errorWords()
{
    QFETCH(quint32, code);
    QFETCH(QString, text);
    QCOMPARE(LoadErrorText(code), text);
}

QTEST_MAIN(PageLoaderTest)
#include "PageLoaderTest.moc"
