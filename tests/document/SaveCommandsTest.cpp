#include "support/EditorRig.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// What the commands that save ask and tell, and where they stop.
class SaveCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void fileChangedBySomebodyElse_data();
    void fileChangedBySomebodyElse();
    void vanishedFileIsWrittenAnew();
    void saveAsTakesTheNewName_data();
    void saveAsTakesTheNewName();
    void saveAsThatFailsKeepsTheOldName();
    void saveAsDoesNotHitAFileUnasked();
    void promptAnswers_data();
    void promptAnswers();
    void promptBeforeAFailedSaveStops();
    void unnamedPageGetsAName();
    void surfaceSaveAsksForAName();

private:
    std::unique_ptr<EditorRig> m_rig;
};

void SaveCommandsTest::initTestCase()
{
    EditorRig::StartEngine();
}

void SaveCommandsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_rig = std::make_unique<EditorRig>();
}

void SaveCommandsTest::cleanup()
{
    m_rig.reset();
}

void SaveCommandsTest::fileChangedBySomebodyElse_data()
{
    QTest::addColumn<QString>("by");
    QTest::addColumn<bool>("overwrite");
    for (const QString &by : {u"save"_s, u"SetDirty"_s, u"leaving"_s, u"prompt"_s}) {
        QTest::addRow("%s, yes", qPrintable(by)) << by << true;
        QTest::addRow("%s, no", qPrintable(by)) << by << false;
    }
}

void SaveCommandsTest::fileChangedBySomebodyElse()
{
    QFETCH(QString, by);
    QFETCH(bool, overwrite);
    const QString path = m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    const QByteArray theirs = QByteArray(EditorRig::SmallPage).replace("words", "their words");
    m_rig->Put(u"a.htm"_s, theirs);
    const QString next = m_rig->Put(u"next.htm"_s, EditorRig::SmallPage);

    if (by == "leaving"_L1 || by == "prompt"_L1)
        m_rig->Boxes.Expect(Answer::Yes, u"Save changes to"_s);
    m_rig->Boxes.Expect(overwrite ? Answer::Yes : Answer::No,
                        u"The file %1 has been changed on disk since it was opened. "
                        "Overwrite it with the page in the editor?"_s.arg(path));
    if (by == "save"_L1)
        m_rig->Edit->FileSave_Click();
    else if (by == "SetDirty"_L1)
        m_rig->Edit->SetDirty();
    else if (by == "leaving"_L1)
        QCOMPARE(m_rig->Load(next), overwrite);
    else
        QCOMPARE(m_rig->Edit->PromptSaveChanges(), overwrite ? Editor::Prompted::Yes : Editor::Prompted::Cancel);
    m_rig->Boxes.Verify();

    if (overwrite) {
        QVERIFY(m_rig->Bytes(path).contains("new words"));
        QVERIFY(!m_rig->Edit->HasUnsavedChanges());
        return;
    }
    QCOMPARE(m_rig->Bytes(path), theirs);
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Page.CurrentFilePath, path);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("new words"_L1));
}

void SaveCommandsTest::vanishedFileIsWrittenAnew()
{
    const QString path = m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    QVERIFY(QFile::remove(path));
    m_rig->Edit->FileSave_Click();
    QVERIFY(m_rig->Bytes(path).contains("new words"));
}

void SaveCommandsTest::saveAsTakesTheNewName_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("saved");
    QTest::newRow("with extension") << u"b.html"_s << u"b.html"_s;
    QTest::newRow("without") << u"b"_s << u"b.xhtml"_s;
    QTest::newRow("in a folder with a dot") << u"v1.0/b"_s << u"v1.0/b.xhtml"_s;
    QTest::newRow("cancelled") << u""_s << u""_s;
}

void SaveCommandsTest::saveAsTakesTheNewName()
{
    QFETCH(QString, chosen);
    QFETCH(QString, saved);
    m_rig->App.DefaultExtension = u".xhtml"_s;
    QDir(m_rig->Folder()).mkdir(u"v1.0"_s);
    const QByteArray latin =
        QByteArray(EditorRig::SmallPage).replace("<title>", "<meta charset=\"windows-1252\"><title>\xE9 ");
    const QString old = m_rig->Put(u"a.htm"_s, latin);
    QVERIFY(m_rig->Load(old));
    m_rig->TypeAtStart(u"new "_s);
    m_rig->Dialogs.ExpectSave(chosen.isEmpty() ? std::nullopt : std::optional(m_rig->Path(chosen)));
    QSignalSpy files(m_rig->Edit.get(), &Editor::FilesChanged);
    m_rig->Edit->FileSaveAs_Click();

    QCOMPARE(m_rig->Dialogs.Requests.last().Title, u"Save As"_s);
    QCOMPARE(m_rig->Dialogs.Requests.last().Filter, u"HTML Files (*.htm*)|*.htm*"_s);
    QCOMPARE(m_rig->Dialogs.Requests.last().DefaultExtension, u"xhtml"_s);
    QCOMPARE(m_rig->Bytes(old), latin);
    if (chosen.isEmpty()) {
        QCOMPARE(m_rig->Page.CurrentFilePath, old);
        QVERIFY(m_rig->Edit->HasUnsavedChanges());
        return;
    }
    const QString path = m_rig->Path(saved);
    QCOMPARE(m_rig->Bytes(path), QByteArray(latin).replace("words", "new words"));
    QCOMPARE(m_rig->Page.CurrentFilePath, path);
    QCOMPARE(m_rig->Edit->StatusPath(), path);
    QCOMPARE(m_rig->Edit->StatusText(), u"\u00e9 First"_s);
    QCOMPARE(m_rig->Page.BackHistory, QStringList{old});
    QCOMPARE(files.size(), 1);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QVERIFY(!m_rig->Page.SkipSavePrompt);
}

void SaveCommandsTest::saveAsThatFailsKeepsTheOldName()
{
    const QString old = m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"new "_s);
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"no such folder/b.htm"_s));
    m_rig->Boxes.Expect(Answer::Ok, u"Error occurred while saving document: Path not found."_s);
    m_rig->Edit->FileSaveAs_Click();
    m_rig->Boxes.Verify();
    QCOMPARE(m_rig->Page.CurrentFilePath, old);
    QVERIFY(m_rig->Page.HtmlDirty);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("new words"_L1));
    QVERIFY(m_rig->Page.BackHistory.isEmpty());
}

void SaveCommandsTest::saveAsDoesNotHitAFileUnasked()
{
    m_rig->LoadSmallPage();
    const QString other = m_rig->Put(u"other.htm"_s, "precious");
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"other"_s)); // the dialog asked about this name, not the longer one
    m_rig->Boxes.Expect(Answer::No, u"The file %1 already exists."_s.arg(other));
    m_rig->Edit->FileSaveAs_Click();
    m_rig->Boxes.Verify();
    QCOMPARE(m_rig->Bytes(other), QByteArray("precious"));
}

void SaveCommandsTest::promptAnswers_data()
{
    QTest::addColumn<bool>("changed");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<Editor::Prompted>("result");
    QTest::newRow("nothing to save") << false << Answer::Ok << Editor::Prompted::Nothing;
    QTest::newRow("yes") << true << Answer::Yes << Editor::Prompted::Yes;
    QTest::newRow("no") << true << Answer::No << Editor::Prompted::No;
    QTest::newRow("cancel") << true << Answer::Cancel << Editor::Prompted::Cancel;
}

void SaveCommandsTest::promptAnswers()
{
    QFETCH(bool, changed);
    QFETCH(Answer, answer);
    QFETCH(Editor::Prompted, result);
    const QString path = m_rig->LoadSmallPage();
    if (changed) {
        m_rig->TypeAtStart(u"new "_s);
        m_rig->Boxes.Expect(answer, u"Save changes to %1?"_s.arg(path));
    }
    QCOMPARE(m_rig->Edit->PromptSaveChanges(), result);
    m_rig->Boxes.Verify();
    QCOMPARE(m_rig->Bytes(path).contains("new words"), result == Editor::Prompted::Yes);
    QCOMPARE(m_rig->Edit->HasUnsavedChanges(), changed && result != Editor::Prompted::Yes);
    if (changed) {
        QCOMPARE(m_rig->Boxes.Boxes.last().Offered, MessageBoxes::Buttons::YesNoCancel);
        QCOMPARE(m_rig->Boxes.Boxes.last().Sign, MessageBoxes::Icon::Exclamation);
    }
}

void SaveCommandsTest::promptBeforeAFailedSaveStops()
{
    QDir().mkdir(m_rig->Path(u"site"_s));
    QVERIFY(m_rig->Load(m_rig->Put(u"site/a.htm"_s, EditorRig::SmallPage)));
    m_rig->TypeAtStart(u"new "_s);
    QDir().rename(m_rig->Path(u"site"_s), m_rig->Path(u"away"_s));
    m_rig->Boxes.Expect(Answer::Yes, u"Save changes to"_s);
    m_rig->Boxes.Expect(Answer::Ok, u"Path not found"_s);
    QCOMPARE(m_rig->Edit->PromptSaveChanges(), Editor::Prompted::Cancel);
    m_rig->Boxes.Verify();
}

void SaveCommandsTest::unnamedPageGetsAName()
{
    m_rig->Surface.LoadText(QString::fromLatin1(EditorRig::SmallPage), {});
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_rig->TypeAtStart(u"new "_s);
    // Cancelled in the choice of a name, the answer is Yes all the same.
    m_rig->Boxes.Expect(Answer::Yes, u"Save changes to NEW PAGE?"_s);
    m_rig->Dialogs.ExpectSave(std::nullopt);
    QCOMPARE(m_rig->Edit->PromptSaveChanges(), Editor::Prompted::Yes);
    QCOMPARE(m_rig->Page.CurrentFilePath, QString());

    m_rig->Boxes.Expect(Answer::Cancel, u"Save changes to NEW PAGE?"_s);
    QCOMPARE(m_rig->Edit->PromptSaveChanges(), Editor::Prompted::Cancel);
    QCOMPARE(m_rig->Page.CurrentFilePath, u"NEW PAGE"_s);
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"b.htm"_s));
    m_rig->Edit->FileSave_Click();
    QVERIFY(m_rig->Bytes(m_rig->Path(u"b.htm"_s)).contains("new words"));
    QCOMPARE(m_rig->Page.CurrentFilePath, m_rig->Path(u"b.htm"_s));
    QVERIFY(m_rig->Page.BackHistory.isEmpty());
}

void SaveCommandsTest::surfaceSaveAsksForAName()
{
    m_rig->LoadSmallPage();
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"raw.htm"_s));
    m_rig->Edit->SaveDocument();
    QVERIFY(m_rig->Bytes(m_rig->Path(u"raw.htm"_s)).contains("<P>words</P>"));
    QVERIFY(!m_rig->Bytes(m_rig->Path(u"raw.htm"_s)).contains("border-collapse"));
    m_rig->Dialogs.ExpectSave(m_rig->Path(u"nowhere/raw.htm"_s));
    m_rig->Boxes.Expect(Answer::Ok, u"Error occurred while saving document: Path not found."_s);
    m_rig->Edit->SaveDocument();
    m_rig->Boxes.Verify();
}

QTEST_MAIN(SaveCommandsTest)
#include "SaveCommandsTest.moc"
