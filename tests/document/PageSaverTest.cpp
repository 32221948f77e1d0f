#include "document/GuideStyle.h"
#include "support/EditorRig.h"
#include "support/SmallDisk.h"
#include "support/WithoutPrivileges.h"

#include <QApplication>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

const QByteArray GeneratorPage = "<html><head><meta content=\"MSHTML 6.0\" name=generator></head><body></body></html>";

QStringList TextsOf(const QSignalSpy &spy)
{
    QStringList texts;
    for (const QList<QVariant> &arguments : spy)
        texts.append(arguments.at(0).toString());
    return texts;
}

} // namespace

/// Saving real pages from the real design view.
class PageSaverTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void fileKeepsWhatTheUserDidNotChange_data();
    void fileKeepsWhatTheUserDidNotChange();
    void savedPageIsCleanedUp();
    void guideStyleIsNeverInAFile_data();
    void guideStyleIsNeverInAFile();
    void serverCodeKeepsItsLineEnds();
    void saveTellsOfItselfInTheStatusBar();
    void lostContentIsNotSaved_data();
    void lostContentIsNotSaved();
    void failedSaveLosesNothing_data();
    void failedSaveLosesNothing();
    void readOnlyFolder();
    void fullDisk();
    void setDirtyPath_data();
    void setDirtyPath();
    void setDirtySavesOnlyWhereItShould();
    void copyLeavesThePageUnsaved();
    void sideFiles();

private:
    std::unique_ptr<EditorRig> m_rig;
};

void PageSaverTest::initTestCase()
{
    EditorRig::StartEngine();
}

void PageSaverTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_rig = std::make_unique<EditorRig>();
}

void PageSaverTest::cleanup()
{
    m_rig.reset();
}

void PageSaverTest::fileKeepsWhatTheUserDidNotChange_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    // Already as a save leaves it, so that all that may change is the typed word.
    const auto page = [](const QByteArray &charset, const QByteArray &word, const QByteArray &body) {
        const QByteArray meta = charset.isEmpty() ? QByteArray() : "<meta charset=\"" + charset + "\">";
        return "<!DOCTYPE html>\n<html><head>" + meta + "<title>x</title></head>\n<body>\n<p>" + word + body +
               "</p>\n<p>second</p>\n</body></html>\n";
    };
    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << before << after;
    };
    row("UTF-8", page("utf-8", "", "caf\xC3\xA9"), page("utf-8", "new ", "caf\xC3\xA9"));
    row("UTF-8 with mark", "\xEF\xBB\xBF" + page("", "", "caf\xC3\xA9"),
        "\xEF\xBB\xBF" + page("", "new ", "caf\xC3\xA9"));
    row("windows-1252", page("windows-1252", "", "caf\xE9 \x80"), page("windows-1252", "new ", "caf\xE9 \x80"));
    row("declared nothing", page("", "", "caf\xE9"), page("", "new ", "caf\xE9"));
    row("Greek", page("iso-8859-7", "", "\xE1\xE2"), page("iso-8859-7", "new ", "\xE1\xE2"));
    const auto utf16 = [](QByteArray text) {
        QByteArray wide("\xFF\xFE");
        for (const char c : text)
            wide.append(c).append('\0');
        return wide;
    };
    row("UTF-16", utf16(page("", "", "plain")), utf16(page("", "new ", "plain")));
    const auto crlf = [](QByteArray text) { return text.replace("\n", "\r\n"); };
    row("CR LF", crlf(page("utf-8", "", "x")), crlf(page("utf-8", "new ", "x")));
    row("CR LF with mark", "\xEF\xBB\xBF" + crlf(page("", "", "x")), "\xEF\xBB\xBF" + crlf(page("", "new ", "x")));
    const auto cr = [](QByteArray text) { return text.replace("\n", "\r"); };
    row("CR", cr(page("utf-8", "", "x")), cr(page("utf-8", "new ", "x")));
    const auto mixed = [](QByteArray text) { return text.replace("<p>second</p>\n", "<p>second</p>\r\n"); };
    row("mixed", mixed(page("utf-8", "", "x")), mixed(page("utf-8", "new ", "x")));
    row("character reference", page("windows-1252", "", "x&nbsp;y"), page("windows-1252", "new ", "x&nbsp;y"));
}

void PageSaverTest::fileKeepsWhatTheUserDidNotChange()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QString path = m_rig->Put(u"a.htm"_s, before);
    QVERIFY(m_rig->Load(path));
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), before);
    m_rig->TypeAtStart(u"new "_s);
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), after);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QVERIFY(m_rig->Load(path)); // as clean for the load that follows
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), after);
}

void PageSaverTest::savedPageIsCleanedUp()
{
    const QString path =
        m_rig->Put(u"a.htm"_s, "<HTML><HEAD></HEAD><BODY><P ALIGN=center><A HREF=\"file://" + m_rig->Folder().toUtf8() +
                                   "/sub/b.htm\">link</A><?php echo $A; ?></P></BODY></HTML>");
    QVERIFY(m_rig->Load(path));
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path),
             QByteArray("<html><head></head><body><p align=\"center\"><a href=\"sub/b.htm\">link</a>"
                        "<?php echo $A; ?></p></body></html>"));
    QCOMPARE(m_rig->Source.Text().toUtf8(), m_rig->Bytes(path));
    QVERIFY(!m_rig->Source.IsModified());
}

void PageSaverTest::guideStyleIsNeverInAFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("usual") << EditorRig::SmallPage;
    QTest::newRow("upper case") << EditorRig::SmallPage.toUpper();
    QTest::newRow("head end tag twice") << QByteArray("<html><head></head><body>x</head></body></html>");
    QTest::newRow("end tag in an attribute")
        << QByteArray("<html><head></head><body title=\"</head>\">x</body></html>");
    QTest::newRow("end tag in a script") << QByteArray(
        "<html><head><script>s = '</head>';</script></head><body>x</body></html>");
}

void PageSaverTest::guideStyleIsNeverInAFile()
{
    QFETCH(QByteArray, bytes);
    const QString path = m_rig->Put(u"a.htm"_s, bytes);
    QVERIFY(m_rig->Load(path));
    QVERIFY(m_rig->Surface.DocumentHTML().contains("border-collapse"_L1));
    m_rig->TypeAtStart(u"y"_s);
    m_rig->Edit->FileSave_Click();
    QVERIFY(!m_rig->Bytes(path).contains("border-collapse"));
    QVERIFY(m_rig->Bytes(path).contains('y'));

    m_rig->App.UseExternalEditor = true; // the page goes out as the surface has it
    m_rig->TypeAtStart(u"z"_s);
    m_rig->Edit->FileSave_Click();
    QVERIFY(m_rig->Bytes(path).contains("zy"));
    QVERIFY(!m_rig->Bytes(path).contains("border-collapse"));
}

void PageSaverTest::serverCodeKeepsItsLineEnds()
{
    const QByteArray bytes = "<?php\n one();\r\n two();\n?>\r\n<html><head></head><body>\r\n<p>x</p>\n<p>y</p>\r\n"
                             "<? a;\n\r\nb; ?></body></html>\r\n";
    const QString path = m_rig->Put(u"a.php"_s, bytes);
    QVERIFY(m_rig->Load(path));
    m_rig->Edit->FileSave_Click();
    QCOMPARE(m_rig->Bytes(path), bytes);
}

void PageSaverTest::saveTellsOfItselfInTheStatusBar()
{
    m_rig->LoadSmallPage();
    QSignalSpy texts(m_rig->Edit.get(), &Editor::StatusTextChanged);
    QSignalSpy cursor(m_rig->Edit.get(), &Editor::WaitCursor);
    m_rig->Edit->FileSave_Click();
    QCOMPARE(TextsOf(texts), (QStringList{u"Saving Page..."_s, u"Page Saved."_s, u"First"_s}));
    QCOMPARE(cursor.last().at(0).toBool(), false);
}

void PageSaverTest::lostContentIsNotSaved_data()
{
    QTest::addColumn<QByteArray>("replacement");
    QTest::newRow("only the engine's own page is left") << GeneratorPage;
    QTest::newRow("the body is gone") << QByteArray("<html><head></head><frameset cols=50,50></frameset></html>");
}

void PageSaverTest::lostContentIsNotSaved()
{
    QFETCH(QByteArray, replacement);
    const QString path = m_rig->LoadSmallPage();
    m_rig->Surface.SetDocumentHTML(QString::fromLatin1(replacement));
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_rig->Page.HtmlDirty = true;

    QSignalSpy texts(m_rig->Edit.get(), &Editor::StatusTextChanged);
    QSignalSpy cursor(m_rig->Edit.get(), &Editor::WaitCursor);
    m_rig->Edit->FileSave_Click();
    QCOMPARE(TextsOf(texts), (QStringList{u"Saving Page..."_s, u"First"_s})); // no claim, no box
    QCOMPARE(cursor.last().at(0).toBool(), true);                             // until the next load
    QVERIFY(!m_rig->Edit->SaveHTML(path));
    QCOMPARE(m_rig->Edit->LastSaveError, FileError::None);
    QCOMPARE(m_rig->Bytes(path), EditorRig::SmallPage);
    QVERIFY(m_rig->Page.HtmlDirty);
}

void PageSaverTest::failedSaveLosesNothing_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("words");
    QTest::newRow("read-only file") << u"file"_s << u"Access denied"_s;
    QTest::newRow("folder is gone") << u"gone"_s << u"Path not found"_s;
}

void PageSaverTest::failedSaveLosesNothing()
{
    QFETCH(QString, fault);
    QFETCH(QString, words);
    const QString folder = m_rig->Path(u"site"_s);
    QDir().mkdir(folder);
    const QString path = m_rig->Put(u"site/a.htm"_s, EditorRig::SmallPage);
    QVERIFY(m_rig->Load(path));
    m_rig->TypeAtStart(u"new "_s);
    if (fault == "file"_L1)
        QFile::setPermissions(path, QFileDevice::ReadOwner);
    else
        QDir().rename(folder, folder + u'2');

    QSignalSpy texts(m_rig->Edit.get(), &Editor::StatusTextChanged);
    {
        const WithoutPrivileges ordinaryUser;
        m_rig->Boxes.Expect(Answer::Ok, u"Error occurred while saving document: %1."_s.arg(words));
        m_rig->Edit->FileSave_Click();
        m_rig->Boxes.Verify();
        QCOMPARE(m_rig->Boxes.Boxes.last().Sign, MessageBoxes::Icon::Stop);
        QCOMPARE(TextsOf(texts), (QStringList{u"Saving Page..."_s, u"First"_s}));
        QVERIFY(m_rig->Page.HtmlDirty);
        QVERIFY(m_rig->Surface.DocumentHTML().contains("new words"_L1));
        // Leaving the page is off as well: the words would be gone.
        m_rig->Boxes.Expect(Answer::Yes, u"Save changes to"_s);
        m_rig->Boxes.Expect(Answer::Ok, words);
        QVERIFY(!m_rig->Load(m_rig->Put(u"other.htm"_s, EditorRig::SmallPage)));
        QCOMPARE(m_rig->Page.CurrentFilePath, path);
    }
    QCOMPARE(m_rig->Bytes(fault == "gone"_L1 ? folder + "2/a.htm"_L1 : path), EditorRig::SmallPage);
}

void PageSaverTest::readOnlyFolder()
{
    const QString folder = m_rig->Path(u"site"_s);
    QDir().mkdir(folder);
    const QString path = m_rig->Put(u"site/a.htm"_s, EditorRig::SmallPage);
    const QFileDevice::Permissions readOnly = QFileDevice::ReadOwner | QFileDevice::ExeOwner;
    QFile::setPermissions(folder, readOnly);
    {
        const WithoutPrivileges ordinaryUser;
        QVERIFY(m_rig->Load(path)); // without a scratch copy
        QVERIFY(m_rig->Surface.DocumentHTML().contains("border-collapse"_L1));
        m_rig->TypeAtStart(u"new "_s);
        m_rig->Edit->FileSave_Click(); // the file itself may be written
        QCOMPARE(m_rig->Bytes(path), QByteArray(EditorRig::SmallPage).replace("words", "new words"));
        m_rig->Dialogs.ExpectSave(folder + "/b.htm"_L1);
        m_rig->Boxes.Expect(Answer::Ok, u"Error occurred while saving document: Access denied."_s);
        m_rig->Edit->FileSaveAs_Click();
        m_rig->Boxes.Verify();
        QCOMPARE(m_rig->Page.CurrentFilePath, path);
    }
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{u"a.htm"_s});
    QFile::setPermissions(folder, readOnly | QFileDevice::WriteOwner);
}

void PageSaverTest::fullDisk()
{
    const SmallDisk disk(64);
    if (!disk.IsMounted())
        QSKIP("the system lets us mount nothing");
    const QString path = disk.FilePath(u"a.htm"_s);
    const QByteArray page = QByteArray(EditorRig::SmallPage).replace("words", QByteArray("words ").repeated(1500));
    QVERIFY(QFile(path).open(QIODevice::NewOnly));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(page) == page.size());
    }
    QVERIFY(m_rig->Load(path));
    m_rig->TypeAtStart(u"new "_s);
    {
        QFile filler(disk.FilePath(u"filler"_s));
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(1024, 'x')) > 0) {
        }
    }
    m_rig->Boxes.Expect(Answer::Ok, u"Error occurred while saving document: Disk is full."_s);
    m_rig->Edit->FileSave_Click();
    m_rig->Boxes.Verify();
    QCOMPARE(m_rig->Bytes(path), page);
    QCOMPARE(m_rig->Edit->StatusText(), u"First"_s);
    QVERIFY(m_rig->Page.HtmlDirty);
    QVERIFY(!m_rig->Edit->SaveHTML(path)); // says nothing itself
    QCOMPARE(m_rig->Edit->LastSaveError, FileError::DiskFull);
    m_rig->Edit->RecoveryCopies().Update();
    QVERIFY(QFile::remove(disk.FilePath(u"filler"_s)));
    m_rig->Edit->FileSave_Click();
    QVERIFY(m_rig->Bytes(path).contains("new words"));
}

void PageSaverTest::setDirtyPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("saved");
    QTest::newRow("page") << u"a.htm"_s << u"a.htm"_s;
    QTest::newRow("upper case") << u"A.HTML"_s << u"A.HTML"_s;
    QTest::newRow("php") << u"a.php"_s << u"a.php"_s;
    QTest::newRow("shtml") << u"a.shtml"_s << u"a.shtml"_s;
    QTest::newRow("no extension") << u"readme"_s << u"readme.htm"_s;
    QTest::newRow("unknown extension") << u"a.inc"_s << u"a.inc.htm"_s;
}

void PageSaverTest::setDirtyPath()
{
    QFETCH(QString, name);
    QFETCH(QString, saved);
    QVERIFY(m_rig->Load(m_rig->Put(name, EditorRig::SmallPage)));
    m_rig->TypeAtStart(u"new "_s);
    m_rig->Edit->SetDirty();
    QVERIFY(m_rig->Bytes(m_rig->Path(saved)).contains("new words"));
    QCOMPARE(m_rig->Page.LoadedFilePath, m_rig->Path(saved));
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QVERIFY(!m_rig->Page.BusySaving);
}

void PageSaverTest::setDirtySavesOnlyWhereItShould()
{
    const QString path = m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    m_rig->App.UseExternalEditor = true;
    m_rig->Edit->SetDirty();
    QCOMPARE(m_rig->Bytes(path), EditorRig::SmallPage);
    m_rig->App.UseExternalEditor = false;
    m_rig->Page.SuppressSave = true;
    m_rig->Edit->SetDirty();
    QCOMPARE(m_rig->Bytes(path), EditorRig::SmallPage);
    m_rig->Page.SuppressSave = false;

    m_rig->Page.CurrentFilePath.clear();
    m_rig->Edit->SetDirty();
    QVERIFY(m_rig->Page.BusySaving); // stays set for a page without a name
    QVERIFY(m_rig->Edit->HasUnsavedChanges());

    m_rig->Page.CurrentFilePath = path;
    m_rig->App.SaveImmediately = false;
    m_rig->Edit->SetDirty();
    QVERIFY(m_rig->Bytes(path).contains("new words"));
    QVERIFY(m_rig->Page.HtmlDirty);
}

void PageSaverTest::copyLeavesThePageUnsaved()
{
    const QString path = m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    const QString copy = m_rig->Path(u"_copy.htm"_s);
    QVERIFY(m_rig->Edit->SaveHTML(copy));
    QVERIFY(m_rig->Bytes(copy).contains("new words"));
    QCOMPARE(m_rig->Bytes(path), EditorRig::SmallPage);
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    QVERIFY(!m_rig->Edit->SaveHTML({}));
    QVERIFY(m_rig->Edit->SaveHTML(path));
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
}

void PageSaverTest::sideFiles()
{
    const QString path = m_rig->LoadSmallPage();
    QCOMPARE(m_rig->Edit->GetProjFile(), u"a.prj"_s);
    m_rig->Page.MapCount = 3;
    QVERIFY(m_rig->Edit->SaveHTML(path));
    m_rig->Page.MapCount = 0;
    m_rig->Edit->ReadImageMapCount();
    QCOMPARE(m_rig->Page.MapCount, 3);
    m_rig->Edit->SetProj(u"S"_s, u"K"_s, u"v"_s);
    QCOMPARE(m_rig->Edit->GetProj(u"S"_s, u"K"_s, {}), u"v"_s);
    QVERIFY(QFile::exists(m_rig->Edit->Ini().Folder() + "/.prj"_L1));
}

int main(int argc, char **argv)
{
    SmallDisk::Prepare();
    QApplication app(argc, argv);
    PageSaverTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PageSaverTest.moc"
