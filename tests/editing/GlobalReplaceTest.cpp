#include "editing/FindTools.h"
#include "editing/PageFilter.h"
#include "editing/PageSearch.h"
#include "support/EditorRig.h"
#include "support/Files.h"
#include "support/SmallDisk.h"
#include "support/WithoutPrivileges.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

QByteArray PageOf(const QByteArray &body)
{
    return "<html><head>\n<title>t</title>\n</head>\n<body>\n" + body + "\n</body>\n</html>\n";
}

constexpr auto Question = "replace the specific text in every file in the current directory/folder.";

} // namespace

/// The dialog with real clicks, on a folder of real files.
class GlobalReplaceTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { EditorRig::StartEngine(); }
    void init()
    {
        m_rig = std::make_unique<EditorRig>();
        m_names.clear();
        m_find = std::make_unique<FindTools>(*m_rig->Edit, [this] {
            QStringList paths;
            for (const QString &name : m_names)
                paths.append(QDir(m_rig->Folder()).filePath(name));
            return paths;
        });
    }
    void cleanup()
    {
        m_find.reset();
        m_rig.reset();
    }
    void FindsAll();
    void ReplacesAll();
    void WhatCannotBeDone();
    void FullDisk();
    void FolderThatTakesNoFiles();
    void CancelledInTheMiddle();
    void TypedMeanwhile_data();
    void TypedMeanwhile();
    void TypedMeanwhileAndNotToBeSaved();
    void NothingThere();
    void OpenPageThatCannotBeSaved();
    void PassesOverNothingThatShows_data();
    void PassesOverNothingThatShows();

private:
    void Put(const QString &name, const QByteArray &bytes)
    {
        m_names.append(name);
        m_rig->Put(name, bytes);
    }
    QByteArray Bytes(const QString &name) const { return EditorRig::Bytes(m_rig->Path(name)); }
    QDialog *Dialog() const { return m_rig->Window.findChild<QDialog *>(u"DialogGlobalReplace"_s); }
    template <class T>
    T *Control(const QString &name) const
    {
        return Dialog()->findChild<T *>(name);
    }
    void Open(const QString &find, const QString &replacement = {})
    {
        m_find->GlobalReplace();
        Control<QLineEdit>(u"EditFind"_s)->clear();
        QTest::keyClicks(Control<QLineEdit>(u"EditFind"_s), find);
        Control<QLineEdit>(u"EditReplace"_s)->setText(replacement);
    }
    void Press(const QString &button) const { QTest::mouseClick(Control<QPushButton>(button), Qt::LeftButton); }
    bool Ended() const { return Control<QPushButton>(u"CommandFindAll"_s)->isEnabled(); }
    void FindAll()
    {
        Press(u"CommandFindAll"_s);
        QVERIFY(!Ended());
        QTRY_VERIFY_WITH_TIMEOUT(Ended(), 30000);
    }
    void ReplaceAll(const QString &message)
    {
        m_rig->Boxes.Expect(Answer::Yes, QString::fromLatin1(Question));
        m_rig->Boxes.Expect(Answer::Ok, message);
        Press(u"Command1"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_rig->Boxes.Boxes.last().Text, message, 30000);
    }
    QStringList Rows(const QString &list, int column = 0) const
    {
        QStringList rows;
        const auto *tree = Control<QTreeWidget>(list);
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            rows.append(tree->topLevelItem(i)->text(column));
        return rows;
    }

    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<FindTools> m_find;
    QStringList m_names;
};

void GlobalReplaceTest::FindsAll()
{
    Put(u"a.htm"_s, PageOf("<p>words</p>"));
    Put(u"b#1.htm"_s, PageOf("<p>a <b>bis</b>cuit, another Biscuit</p>"));
    Put(u"c.htm"_s, PageOf("<p title=biscuit>x</p>"));
    Put(u"d.gif"_s, QByteArray("GIF89a biscuit\0\0", 16));
    Put(u"e.htm"_s, PageOf("<p>no such thing</p>"));
    m_rig->Load(m_rig->Path(u"a.htm"_s));
    m_rig->TypeAtStart(u"biscuit "_s); // not saved yet
    QList<QByteArray> before;
    for (const QString &name : m_names.mid(1))
        before.append(Bytes(name));
    Open(u"biscuit"_s);
    QCOMPARE(Control<QLabel>(u"LabelHeading"_s)->text(), u"Find/Replace throughout the  current folder:"_s);
    QSignalSpy progress(m_find.get(), &FindTools::Progress);
    FindAll();
    QCOMPARE(Rows(u"ListTopics"_s), (QStringList{u"a.htm"_s, u"b#1.htm"_s}));
    QCOMPARE(Rows(u"ListTopics"_s, 1).last(), m_rig->Path(u"b#1.htm"_s));
    QVERIFY(Rows(u"ListFailed"_s).isEmpty());
    QVERIFY(Bytes(u"a.htm"_s).contains("biscuit words"));
    for (qsizetype i = 0; i < before.size(); ++i)
        QCOMPARE(Bytes(m_names[i + 1]), before[i]);
    QVERIFY(progress.size() >= 2);
    QCOMPARE(progress.last().first().toInt(), 0);

    auto *list = Control<QTreeWidget>(u"ListTopics"_s);
    const QPoint row = list->visualItemRect(list->topLevelItem(1)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row);
    QCOMPARE(m_rig->Page.CurrentFilePath, m_rig->Path(u"b#1.htm"_s));
    QCOMPARE(m_rig->Surface.DOM().SelectionTextRange().Text(), u"biscuit"_s);
    m_find->FindNext();
    QCOMPARE(m_rig->Surface.DOM().SelectionTextRange().Text(), u"Biscuit"_s);

    // The last page of the list does not hold the word; one that does is searched on from its first place.
    m_rig->Boxes.Expect(Answer::Ok, u"Finished searching the document"_s);
    Press(u"OKButton"_s);
    m_names.removeLast();
    m_names = {u"b#1.htm"_s};
    FindAll();
    Press(u"OKButton"_s);
    m_rig->Boxes.Expect(Answer::Ok, u"Finished searching the document"_s);
    Press(u"OKButton"_s);
}

void GlobalReplaceTest::ReplacesAll()
{
    const QByteArray latin = "<html><head>\r\n<meta charset=\"windows-1252\">\r\n</head>\r\n<body>\r\n"
                             "<P ALIGN=center>caf\xE9 old</p>\r\n<!-- old -->\r\n</body>\r\n</html>\r\n";
    Put(u"latin.htm"_s, latin);
    const QByteArray wide =
        QByteArray("\xFF\xFE", 2) +
        QByteArray(reinterpret_cast<const char *>(u"<html><body><p>ol<b>d</b> \u2013</p></body></html>"), 2 * 43);
    Put(u"wide.htm"_s, wide);
    Put(u"code.php"_s, "<?php $old = '<old>'; ?>\n" + PageOf("<p>old <?= $old ?> &mdash; old</p>"));
    Put(u"piece.inc"_s, "<p>an old piece</p>\n<?php old(); ?>\n");
    Put(u"none.htm"_s, PageOf("<P ID=OLD>x</P>"));
    const QByteArray none = Bytes(u"none.htm"_s);
    m_rig->Load(m_rig->Path(u"code.php"_s));
    Open(u"old"_s, u"neu €"_s);
    ReplaceAll(u"5 replacements made thoughout the project."_s);
    QCOMPARE(Rows(u"ListTopics"_s), (QStringList{u"latin.htm"_s, u"wide.htm"_s, u"code.php"_s, u"piece.inc"_s}));
    QByteArray expected = latin;
    expected.replace("<P ALIGN=center>caf\xE9 old", "<p align=\"center\">caf\xE9 neu \x80");
    QCOMPARE(Bytes(u"latin.htm"_s), expected);
    QVERIFY(Bytes(u"wide.htm"_s).startsWith("\xFF\xFE"));
    const QString written = QString::fromUtf16(reinterpret_cast<const char16_t *>(Bytes(u"wide.htm"_s).constData() + 2),
                                               (Bytes(u"wide.htm"_s).size() - 2) / 2);
    QVERIFY2(written.contains(u"<p>neu \u20AC \u2013</p>"_s), qPrintable(written));
    QVERIFY2(Bytes(u"code.php"_s).startsWith("<?php $old = '<old>'; ?>\n<html>"), Bytes(u"code.php"_s));
    QVERIFY2(Bytes(u"code.php"_s).contains("<p>neu \xE2\x82\xAC <?= $old ?> "), Bytes(u"code.php"_s));
    QCOMPARE(Bytes(u"piece.inc"_s), QByteArray("<p>an neu \xE2\x82\xAC piece</p>\n<?php old(); ?>\n"));
    QCOMPARE(Bytes(u"none.htm"_s), none);
    QVERIFY(m_rig->Surface.DocumentHTML().contains(u"neu"_s)); // read again
    QVERIFY(m_rig->Page.BackHistory.isEmpty());
}

void GlobalReplaceTest::WhatCannotBeDone()
{
    const WithoutPrivileges bound;
    for (const QString &name : {u"a.htm"_s, u"readonly.htm"_s, u"secret.htm"_s, u"gone.htm"_s, u"z.htm"_s})
        Put(name, PageOf("<p>old</p>"));
    const QByteArray before = Bytes(u"a.htm"_s);
    QFile(m_rig->Path(u"readonly.htm"_s)).setPermissions(QFile::ReadOwner);
    QFile(m_rig->Path(u"secret.htm"_s)).setPermissions({});
    QFile::remove(m_rig->Path(u"gone.htm"_s));
    Open(u"old"_s, u"new"_s);
    ReplaceAll(u"2 replacements made thoughout the project."_s);
    QCOMPARE(Rows(u"ListTopics"_s), (QStringList{u"a.htm"_s, u"z.htm"_s}));
    QCOMPARE(Rows(u"ListFailed"_s), (QStringList{u"readonly.htm"_s, u"secret.htm"_s, u"gone.htm"_s}));
    QCOMPARE(Rows(u"ListFailed"_s, 1),
             (QStringList{u"Access denied"_s, u"Access denied"_s, u"The file is not there any more"_s}));
    QVERIFY(Control<QWidget>(u"ListFailed"_s)->isVisible());
    QCOMPARE(Bytes(u"readonly.htm"_s), before);
    QCOMPARE(QDir(m_rig->Folder()).entryList(QDir::Files | QDir::Hidden).size(), 4); // nothing left over
}

void GlobalReplaceTest::FullDisk()
{
    const SmallDisk disk(64);
    if (!disk.IsMounted())
        QSKIP("This system lets nobody mount a small disk");
    Put(u"a.htm"_s, PageOf("<p>old</p>"));
    const QByteArray before = PageOf("<p>old</p><p>" + QByteArray(5000, 'x') + "</p>");
    m_names.append(disk.FilePath(u"full.htm"_s));
    QVERIFY(PutBytes(m_names.last(), before));
    Put(u"z.htm"_s, PageOf("<p>old</p>"));
    QFile filler(disk.FilePath(u"filler"_s));
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(1024, 'x')) == 1024) {
    }
    Open(u"old"_s, u"brand new"_s);
    ReplaceAll(u"2 replacements made thoughout the project."_s);
    QCOMPARE(Rows(u"ListTopics"_s), (QStringList{u"a.htm"_s, u"z.htm"_s}));
    QCOMPARE(Rows(u"ListFailed"_s), QStringList(u"full.htm"_s));
    QCOMPARE(Rows(u"ListFailed"_s, 1), QStringList(u"Disk is full"_s));
    QCOMPARE(BytesOf(disk.FilePath(u"full.htm"_s)), before);
    QCOMPARE(EntriesOf(disk.Path()), (QStringList{u"filler"_s, u"full.htm"_s}));
}

/// The files in it may be written all the same.
void GlobalReplaceTest::FolderThatTakesNoFiles()
{
    const WithoutPrivileges bound;
    Put(u"a.htm"_s, PageOf("<p>old</p>"));
    Put(u"b.htm"_s, PageOf("<p>old</p>"));
    QFile(m_rig->Path(u"b.htm"_s)).setPermissions(QFile::ReadOwner);
    QFile(m_rig->Folder()).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    Open(u"old"_s, u"new"_s);
    ReplaceAll(u"1 replacements made thoughout the project."_s);
    QFile(m_rig->Folder()).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(Rows(u"ListFailed"_s), QStringList(u"b.htm"_s));
    QCOMPARE(Rows(u"ListFailed"_s, 1), QStringList(u"Access denied"_s));
    QCOMPARE(Bytes(u"a.htm"_s), PageOf("<p>new</p>"));
    QCOMPARE(EntriesOf(m_rig->Folder()), (QStringList{u"a.htm"_s, u"b.htm"_s}));
}

void GlobalReplaceTest::CancelledInTheMiddle()
{
    for (int i = 0; i < 40; ++i)
        Put(u"page%1.htm"_s.arg(i, 2, 10, QChar(u'0')), PageOf("<p>old</p>"));
    const QByteArray before = Bytes(m_names.last());
    Open(u"old"_s, u"new"_s);
    QObject::connect(m_find.get(), &FindTools::Progress, Dialog(), [this](int done) {
        if (done == 5)
            Press(u"CancelButton"_s);
    });
    ReplaceAll(u"5 replacements made thoughout the project."_s);
    QVERIFY(Dialog()->isVisible());
    QCOMPARE(Rows(u"ListTopics"_s).size(), 5);
    QCOMPARE(Control<QLabel>(u"LabelProgress"_s)->text(), u"Stopped after 5 of 40 files."_s);
    for (int i = 0; i < 40; ++i)
        QVERIFY2((Bytes(m_names[i]) == before) == (i >= 5), qPrintable(m_names[i]));
    Press(u"CancelButton"_s);
    QVERIFY(!Dialog()->isVisible());
}

void GlobalReplaceTest::TypedMeanwhile_data()
{
    QTest::addColumn<int>("when");
    QTest::addColumn<bool>("inSource");
    QTest::addColumn<bool>("unsaved"); // what was typed is, in the end
    QTest::newRow("before its turn") << 2 << false << false;
    QTest::newRow("behind its turn") << 8 << false << true;
    QTest::newRow("before its turn, in the source") << 2 << true << false;
    QTest::newRow("behind its turn, in the source") << 8 << true << true;
}

/// The open page can be edited while the run lasts: what is typed and what is replaced there both stay.
void GlobalReplaceTest::TypedMeanwhile()
{
    QFETCH(int, when);
    QFETCH(bool, inSource);
    QFETCH(bool, unsaved);
    for (int i = 0; i < 10; ++i)
        Put(u"page%1.htm"_s.arg(i), PageOf("<p>old</p>"));
    const QString page = m_rig->Path(u"page5.htm"_s);
    m_rig->Load(page);
    if (inSource)
        m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    Open(u"old"_s, u"new"_s);
    QObject::connect(m_find.get(), &FindTools::Progress, Dialog(), [&](int done) {
        if (done != when)
            return;
        m_rig->Window.activateWindow();
        if (inSource) {
            m_rig->Source.Select(m_rig->Source.Text().indexOf(u"<p>"_s) + 4, 0);
            m_rig->TypeInSource(u"typed "_s);
        } else {
            m_rig->TypeAtStart(u"typed "_s);
        }
    });
    ReplaceAll(u"10 replacements made thoughout the project."_s);
    QCOMPARE(m_rig->Edit->HasUnsavedChanges(), unsaved);
    QVERIFY2(Bytes(u"page5.htm"_s).contains(unsaved ? "<p>new</p>" : "<p>typed new</p>"), Bytes(u"page5.htm"_s));
    m_rig->Edit->FileSave_Click(); // nobody is asked: the file is ours
    QVERIFY2(Bytes(u"page5.htm"_s).contains("<p>typed new</p>"), Bytes(u"page5.htm"_s));
    QCOMPARE(m_rig->Boxes.Boxes.size(), 2);
}

void GlobalReplaceTest::TypedMeanwhileAndNotToBeSaved()
{
    for (int i = 0; i < 4; ++i)
        Put(u"page%1.htm"_s.arg(i), PageOf("<p>old</p>"));
    m_rig->Load(m_rig->Path(u"page2.htm"_s));
    Open(u"old"_s, u"new"_s);
    const QByteArray others = PageOf("<p>old words of others</p>");
    QObject::connect(m_find.get(), &FindTools::Progress, Dialog(), [&](int done) {
        if (done != 1)
            return;
        m_rig->TypeAtStart(u"typed "_s);
        m_rig->Put(u"page2.htm"_s, others);
    });
    ReplaceAll(u"3 replacements made thoughout the project."_s);
    QCOMPARE(Rows(u"ListFailed"_s), QStringList(u"page2.htm"_s));
    QVERIFY(Rows(u"ListFailed"_s, 1).first().endsWith(u"Another program has changed the file meanwhile"_s));
    QCOMPARE(Bytes(u"page2.htm"_s), others);
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    QVERIFY(m_rig->Surface.DocumentHTML().contains(u"typed old"_s));
}

void GlobalReplaceTest::NothingThere()
{
    Put(u"a.htm"_s, PageOf("<P CLASS=old>words</P>"));
    const QByteArray before = Bytes(u"a.htm"_s);
    m_rig->Load(m_rig->Path(u"a.htm"_s));
    Open(u"old"_s, u"new"_s);
    m_rig->Boxes.Expect(Answer::No, QString::fromLatin1(Question));
    Press(u"Command1"_s);
    QVERIFY(Ended());
    ReplaceAll(u"0 replacements made thoughout the project."_s);
    QCOMPARE(Bytes(u"a.htm"_s), before);
    QVERIFY(Rows(u"ListTopics"_s).isEmpty());
}

void GlobalReplaceTest::OpenPageThatCannotBeSaved()
{
    const WithoutPrivileges bound;
    Put(u"a.htm"_s, PageOf("<p>old</p>"));
    Put(u"b.htm"_s, PageOf("<p>old</p>"));
    const QByteArray before = Bytes(u"b.htm"_s);
    m_rig->Load(m_rig->Path(u"a.htm"_s));
    m_rig->TypeAtStart(u"x"_s);
    QFile(m_rig->Path(u"a.htm"_s)).setPermissions(QFile::ReadOwner);
    Open(u"old"_s, u"new"_s);
    m_rig->Boxes.Expect(Answer::Yes, QString::fromLatin1(Question));
    m_rig->Boxes.Expect(Answer::Ok, u"could not be saved: Access denied. Nothing was searched."_s);
    Press(u"Command1"_s);
    QVERIFY(Ended());
    QCOMPARE(Bytes(u"b.htm"_s), before);
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
}

void GlobalReplaceTest::PassesOverNothingThatShows_data()
{
    QTest::addColumn<QString>("body");
    for (const char *body : {"<p>word",
                             "<p>w<b>or</b>d",
                             "<p>wo<!-- x > y -->rd",
                             "<p>wo<!-->rd",
                             "<p>wo<script>a<b</script>rd",
                             "<p>&#119;&#x6F;rd",
                             "<p>w&#111rd",
                             "<p>wo<?php if ($a > 1) ?>rd",
                             "<p>wo<b title='a>\"'>rd",
                             "<p>wo<b title=\"a>b>\">rd",
                             "<p>wo<b title=x\"y alt=\"z>w\">rd",
                             "<table>wo<tr><td>x</td></tr>rd</table>",
                             "<table><tr><td>x</td>wo</tr>rd</table>",
                             "<xmp><word></xmp>",
                             "<p>wo<wbr>rd",
                             "<p>wo<x-y z=\">\">rd</x-y>",
                             "<svg><text><![CDATA[a>word]]></text></svg><p>word",
                             "<p>a<b <i>word",
                             "<p>a <3 word",
                             "<p>&ampword",
                             "<p>&notaword;",
                             "<style>a>b</style><p>word",
                             "<title>x</title>wo</body>rd",
                             "<p>wo</ x>rd",
                             "<p>wo<%= x %>rd",
                             "<textarea>wo</textarea><p>rd",
                             "<p>wo<template>x</template>rd",
                             "<p>w<span\n>o</span\t>rd",
                             "<p>wo<\nb>rd"})
        QTest::newRow(body) << QString::fromLatin1(body);
}

/// Whatever the engine finds in a page, the look at its bytes must not rule out.
void GlobalReplaceTest::PassesOverNothingThatShows()
{
    QFETCH(QString, body);
    const QString page = u"<html><body>"_s + body + u"</body></html>"_s;
    m_rig->Surface.LoadText(page, m_rig->Path(u"x.htm"_s));
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    const bool found = FindIn(m_rig->Surface, {.Text = u"word"_s});
    QVERIFY2(!found || MayShow(page.toUtf8(), u"word"_s, Qt::CaseInsensitive), qPrintable(body));
}

int main(int argc, char **argv)
{
    SmallDisk::Prepare();
    QApplication application(argc, argv);
    GlobalReplaceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "GlobalReplaceTest.moc"
