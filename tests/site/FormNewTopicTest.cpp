#include "site/FormNewTopic.h"
#include "platform/Folders.h"
#include "platform/PreviewView.h"
#include "platform/Settings.h"
#include "site/SaveTemplate.h"
#include "support/EditorRig.h"
#include "support/Files.h"
#include "support/WithoutPrivileges.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

const QByteArray ArticleTemplate = "<html><head><title>x</title></head>\r\n<body><h1>[title]</h1></body></html>\r\n";

} // namespace

/// New pages and templates: real keys in the dialog, real files in real folders.
class FormNewTopicTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { EditorRig::StartEngine(); }
    void init();
    void cleanup();
    void titleMakesFileAndPage();
    void nameTypedByHandStays();
    void suggestionFollowsTheFolder();
    void withoutANameItStays();
    void existingFileIsAskedFor();
    void missingTemplateGivesTheBuiltInPage();
    void readOnlyFolderIsLogged();
    void cancelLeavesNoTrace();
    void pageInHandIsOfferedToBeSaved();
    void previewStepsThroughTheTemplates();
    void makesATemplateTheDefault();
    void usersTemplatesComeFirst();
    void copyOfThePageBecomesATemplate_data();
    void copyOfThePageBecomesATemplate();
    void failedCopyIsTold();

private:
    template <class T>
    T *Find(const QString &name) const
    {
        return m_form->findChild<T *>(name);
    }
    QString File() const { return Find<QLineEdit>(u"EditFile"_s)->text(); }
    QListWidget *Templates() const { return Find<QListWidget>(u"FileTemplate"_s); }
    void Open(const QString &folder = {}, FormNewTopic::NewFolder newFolder = {});
    void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    void Type(const QString &letters)
    {
        for (const QChar c : letters) // not keyClicks: it knows no umlauts
            QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, QString(c), {});
    }
    /// A key with Alt, as a mnemonic is pressed.
    void Mnemonic(Qt::Key key) { QTest::keyClick(m_form.get(), key, Qt::AltModifier); }

    std::unique_ptr<QTemporaryDir> m_private;
    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<FormNewTopic> m_form;
};

void FormNewTopicTest::init()
{
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
    m_private = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", m_private->filePath(u"data"_s).toUtf8());
    qputenv("XDG_STATE_HOME", m_private->filePath(u"state"_s).toUtf8());
    m_rig = std::make_unique<EditorRig>();
    m_rig->App.TemplatesDir = m_private->filePath(u"Templates"_s);
    QDir().mkpath(m_rig->App.TemplatesDir);
    QVERIFY(PutBytes(m_rig->App.TemplatesDir + u"/_blank.htm"_s, "<html><title></title><body>blank</body></html>"));
    QVERIFY(PutBytes(m_rig->App.TemplatesDir + u"/article.htm"_s, ArticleTemplate));
}

void FormNewTopicTest::cleanup()
{
    m_form.reset();
    m_rig.reset();
}

void FormNewTopicTest::Open(const QString &folder, FormNewTopic::NewFolder newFolder)
{
    m_form = std::make_unique<FormNewTopic>(*m_rig->Edit, folder.isEmpty() ? m_rig->Folder() : folder,
                                            std::move(newFolder), &m_rig->Window);
    m_form->open();
    QTRY_COMPARE(QApplication::focusWidget(), Find<QLineEdit>(u"EditTitle"_s));
}

void FormNewTopicTest::titleMakesFileAndPage()
{
    m_rig->App.DefaultTemplate = u"article.htm"_s;
    Open();
    QSignalSpy changed(m_rig->Edit.get(), &Editor::FilesChanged);
    QCOMPARE(Templates()->currentItem()->text(), u"article.htm"_s);
    Press(Qt::Key_Return);
    QVERIFY(m_form->isVisible()); // no title yet
    Type(u"Shed & garden"_s);
    QCOMPARE(File(), u"Shed___garden.htm"_s);
    Press(Qt::Key_Return);
    QVERIFY(!m_form->isVisible());
    const QString path = m_rig->Path(u"Shed___garden.htm"_s);
    QCOMPARE(BytesOf(path), "<html><head><title>Shed &amp; garden</title></head>\r\n"
                            "<body><h1>Shed &amp; garden</h1></body></html>\r\n");
    QCOMPARE(m_rig->Page.CurrentFilePath, path);
    QCOMPARE(m_rig->Surface.DocumentTitle(), u"Shed & garden"_s);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(changed.value(0).value(0).toString(), m_rig->Folder());
}

void FormNewTopicTest::nameTypedByHandStays()
{
    Open();
    Type(u"Größe"_s);
    QCOMPARE(File(), u"Gr__e.htm"_s);
    Press(Qt::Key_Tab);
    Type(u"new/groesse"_s);
    Press(Qt::Key_Return);
    QVERIFY(!m_form->isVisible());
    // The template declares no encoding: only numbers are read rightly everywhere.
    QCOMPARE(BytesOf(m_rig->Path(u"new/groesse.htm"_s)),
             "<html><title>Gr&#246;&#223;e</title><body>blank</body></html>");
}

void FormNewTopicTest::suggestionFollowsTheFolder()
{
    QDir(m_rig->Folder()).mkdir(u"sub"_s);
    QString asked;
    Open(m_rig->Path(u"sub"_s), [&](QWidget *, const QString &folder) {
        asked = folder;
        QDir(folder).mkdir(u"deep"_s);
        return folder + u"/deep"_s;
    });
    Type(u"t"_s);
    QCOMPARE(File(), u"sub/t.htm"_s);
    Mnemonic(Qt::Key_W);
    QTRY_COMPARE(asked, m_rig->Path(u"sub"_s)); // a button pressed by a key clicks a moment later
    QCOMPARE(File(), u"sub/deep/t.htm"_s);
    Find<QTreeView>(u"Dir1"_s)->setFocus();
    Press(Qt::Key_Left); // to the folder above
    QTRY_COMPARE(File(), u"sub/t.htm"_s);
    Press(Qt::Key_Return);
    QCOMPARE(m_rig->Page.CurrentFilePath, m_rig->Path(u"sub/t.htm"_s));
}

void FormNewTopicTest::withoutANameItStays()
{
    Open();
    Type(u"t"_s);
    Press(Qt::Key_Tab);
    Press(Qt::Key_Delete);
    m_rig->Boxes.Expect(Answer::Ok, u"You must specify a name for your new file."_s);
    Press(Qt::Key_Return);
    QVERIFY(m_form->isVisible());
    QVERIFY(EntriesOf(m_rig->Folder()).isEmpty());
    Find<QLineEdit>(u"EditTitle"_s)->clear();
    QVERIFY(!Find<QPushButton>(u"OkCmd"_s)->isEnabled());
}

void FormNewTopicTest::existingFileIsAskedFor()
{
    const QString path = m_rig->Put(u"t.htm"_s, "precious");
    Open();
    Type(u"t"_s);
    m_rig->Boxes.Expect(Answer::Cancel,
                        u"A file named "_s + path + u" already exists. Do you want to overwrite the existing file?"_s);
    Press(Qt::Key_Return);
    QVERIFY(m_form->isVisible());
    QCOMPARE(BytesOf(path), "precious");
    m_rig->Boxes.Expect(Answer::Ok);
    Press(Qt::Key_Return);
    QVERIFY(BytesOf(path).contains("blank"));
    QCOMPARE(m_rig->Page.CurrentFilePath, path);
}

void FormNewTopicTest::missingTemplateGivesTheBuiltInPage()
{
    QVERIFY(PutBytes(m_rig->App.TemplatesDir + u"/gone.htm"_s, "x"));
    m_rig->App.DefaultTemplate = u"gone.htm"_s;
    Open();
    QVERIFY(QFile::remove(m_rig->App.TemplatesDir + u"/gone.htm"_s));
    Type(u"t"_s);
    Press(Qt::Key_Return);
    QCOMPARE(BytesOf(m_rig->Path(u"t.htm"_s)), "<HTML><TITLE>t</TITLE><BODY>[TITLE]<P></BODY></HTML>");
}

void FormNewTopicTest::readOnlyFolderIsLogged()
{
    const QString old = m_rig->LoadSmallPage();
    const QString shut = m_rig->Path(u"shut"_s);
    QVERIFY(QDir().mkdir(shut) && QFile::setPermissions(shut, QFile::ReadOwner | QFile::ExeOwner));
    for (const QString &name : {u"t"_s, u"deeper/t"_s}) {
        Open(shut);
        Type(u"t"_s);
        Press(Qt::Key_Tab);
        Type(name);
        {
            const WithoutPrivileges bound;
            Press(Qt::Key_Return);
        }
        QVERIFY(!m_form->isVisible());
        QVERIFY(EntriesOf(shut).isEmpty());
        QCOMPARE(m_rig->Page.CurrentFilePath, old);
    }
    const QList<QByteArray> log = BytesOf(Folders::State() + u"/TomeloftJavaHelp.log"_s).split('\n');
    QCOMPARE(log.size(), 3);
    QVERIFY2(log[0].startsWith("formnewtopic OkCmd_Click: 70 "), log[0]);
    QVERIFY2(log[1].startsWith("formnewtopic OkCmd_Click: 76 "), log[1]);
}

void FormNewTopicTest::cancelLeavesNoTrace()
{
    const QString old = m_rig->LoadSmallPage();
    const QStringList before = EntriesOf(m_rig->Folder());
    Open();
    Type(u"t"_s);
    Press(Qt::Key_Escape);
    QVERIFY(!m_form->isVisible());
    QCOMPARE(EntriesOf(m_rig->Folder()), before);
    QCOMPARE(m_rig->Page.CurrentFilePath, old);
    m_rig->Window.activateWindow();
    QTRY_COMPARE(QApplication::focusWidget(), m_rig->Surface.InputWidget());
}

void FormNewTopicTest::pageInHandIsOfferedToBeSaved()
{
    const QString old = m_rig->LoadSmallPage();
    m_rig->TypeAtStart(u"mine "_s);
    Open();
    Type(u"t"_s);
    m_rig->Boxes.Expect(Answer::Cancel, u"Save changes to "_s + old);
    Press(Qt::Key_Return);
    QVERIFY(QFile::exists(m_rig->Path(u"t.htm"_s)));
    QCOMPARE(m_rig->Page.CurrentFilePath, old);
    QVERIFY(m_rig->Surface.DocumentHTML().contains("mine words"_L1));
}

void FormNewTopicTest::previewStepsThroughTheTemplates()
{
    m_rig->App.DefaultTemplate = u"article.htm"_s;
    Open();
    auto *view = Find<PreviewView>(u"WebBrowser1"_s);
    QSignalSpy loaded(view, &PreviewView::Loaded);
    Mnemonic(Qt::Key_P);
    QTRY_VERIFY(Find<QWidget>(u"PicturePreview"_s)->isVisible());
    QTRY_VERIFY(!loaded.isEmpty());
    QCOMPARE(view->Url().toLocalFile(), m_rig->App.TemplatesDir + u"/article.htm"_s);
    QCOMPARE(Find<QLabel>(u"LabelTempName"_s)->text(), u"article.htm"_s);
    QVERIFY(!Find<QToolButton>(u"Command7"_s)->isEnabled());
    QTest::mouseClick(Find<QToolButton>(u"Command6"_s), Qt::LeftButton);
    QVERIFY(loaded.wait());
    QCOMPARE(view->Url().toLocalFile(), m_rig->App.TemplatesDir + u"/_blank.htm"_s);
    QCOMPARE(Find<QLabel>(u"LabelTempName"_s)->text(), u"_blank.htm"_s);
    QVERIFY(!Find<QToolButton>(u"Command6"_s)->isEnabled());
    QTest::keyClick(m_form.get(), Qt::Key_Escape);
    QVERIFY(m_form->isVisible());
    QVERIFY(!Find<QWidget>(u"PicturePreview"_s)->isVisible());
    QCOMPARE(Templates()->currentItem()->text(), u"_blank.htm"_s); // what was looked at last
}

void FormNewTopicTest::makesATemplateTheDefault()
{
    Open();
    Templates()->setFocus();
    Press(Qt::Key_Down);
    Mnemonic(Qt::Key_M);
    QTRY_COMPARE(m_rig->Edit->Ini().GetIni(u"Settings"_s, u"def_template"_s, {}), u"article.htm"_s);
    Press(Qt::Key_Escape);
    Open();
    QCOMPARE(Templates()->currentItem()->text(), u"article.htm"_s);
}

void FormNewTopicTest::usersTemplatesComeFirst()
{
    const QString own = Folders::Data() + u"/Templates"_s;
    QDir().mkpath(own);
    QVERIFY(PutBytes(own + u"/article.htm"_s, "<title></title>my own"));
    QVERIFY(PutBytes(own + u"/Club.htm"_s, "club"));
    m_rig->App.DefaultTemplate = u"article.htm"_s;
    Open();
    QStringList names;
    for (int row = 0; row < Templates()->count(); ++row)
        names += Templates()->item(row)->text();
    QCOMPARE(names, QStringList({u"_blank.htm"_s, u"article.htm"_s, u"Club.htm"_s}));
    Type(u"t"_s);
    Press(Qt::Key_Return);
    QCOMPARE(BytesOf(m_rig->Path(u"t.htm"_s)), "<title>t</title>my own");
}

void FormNewTopicTest::copyOfThePageBecomesATemplate_data()
{
    QTest::addColumn<bool>("installed"); // nobody may write to the program's folder
    QTest::addColumn<QString>("chosen");
    QTest::newRow("program's folder") << false << u"mine.htm"_s;
    QTest::newRow("extension is added") << false << u"mine"_s;
    QTest::newRow("user's folder") << true << u"mine.htm"_s;
    QTest::newRow("cancelled") << false << u""_s;
}

void FormNewTopicTest::copyOfThePageBecomesATemplate()
{
    QFETCH(bool, installed);
    QFETCH(QString, chosen);
    const QString page = m_rig->LoadSmallPage();
    const QByteArray before = BytesOf(page);
    m_rig->TypeAtStart(u"my "_s);
    const QString programs = m_rig->App.TemplatesDir;
    const QString folder = installed ? Folders::Data() + u"/Templates"_s : programs;
    if (installed)
        QVERIFY(QFile::setPermissions(programs, QFile::ReadOwner | QFile::ExeOwner));
    m_rig->Dialogs.ExpectSave(chosen.isEmpty() ? std::nullopt : std::optional(folder + u'/' + chosen));
    if (!chosen.isEmpty())
        m_rig->Boxes.Expect(Answer::Ok, u"A copy of this page has been saved to "_s + folder + u"/mine.htm"_s);
    {
        const WithoutPrivileges bound;
        SaveCopyAsTemplate(*m_rig->Edit);
    }
    const FileDialogs::Request asked = m_rig->Dialogs.Requests.value(0);
    QCOMPARE(asked.Title, u"Save Copy as Template"_s);
    QCOMPARE(asked.Folder, folder);
    QCOMPARE(asked.FileName, u"a.htm"_s);
    QCOMPARE(BytesOf(folder + u"/mine.htm"_s).contains("<p>my words</p>"), !chosen.isEmpty());
    QCOMPARE(m_rig->Page.CurrentFilePath, page);
    QCOMPARE(BytesOf(page), before);
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
}

void FormNewTopicTest::failedCopyIsTold()
{
    m_rig->LoadSmallPage();
    m_rig->Dialogs.ExpectSave(m_private->filePath(u"no/such/folder/mine.htm"_s));
    m_rig->Boxes.Expect(Answer::Ok, u"Error occurred while saving document: Path not found."_s);
    SaveCopyAsTemplate(*m_rig->Edit);
}

QTEST_MAIN(FormNewTopicTest)
#include "FormNewTopicTest.moc"
