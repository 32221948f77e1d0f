#include "E2eTest.h"

#include <QSettings>

using namespace Qt::StringLiterals;

/// Words looked for and replaced, in the page and in all pages of a folder, with the keys of the dialogs.
class FindTest : public E2eTest
{
    Q_OBJECT

private slots:
    void downAndUp();
    void oneThenAllThenBack();
    void inTheSource();
    void throughTheFolder();

private:
    static constexpr QLatin1StringView Roses{"<p>Rose one</p><p>A prim<b>rose</b>, two</p><p>Rose three</p>"};

    /// Opens a page of these words, with the caret in front of them.
    bool OpenPage(const QByteArray &more)
    {
        m_path = PutPage(u"alpha.htm"_s, more);
        return m_program->Open(m_path, u"alpha"_s) && m_program->ClickBehind(Mark);
    }
    bool Save() const { return Display->Press({u"ctrl+s"_s}); }
    /// The dialog goes, and the keys go where it was opened from.
    bool Leave(const QString &page) const
    {
        return Display->Press({u"Escape"_s}) && m_program->WaitForWindow(RunningProgram::PageTitle(page));
    }
    bool TellsAndTakes(const QString &text, const QString &key = u"Return"_s)
    {
        return m_program->WaitForBox(text) && m_program->AnswerBox(key);
    }
    /// Middle of the selected row in the window that has the keys.
    QPoint SelectedRow() const;

    QString m_path;
};

void FindTest::downAndUp()
{
    QVERIFY(OpenPage(Roses.data()));
    QVERIFY(Display->Press({u"ctrl+f"_s}) && m_program->WaitForWindow(u"Find"_s));
    QVERIFY(Display->Type(u"rose"_s) && Display->Press({u"Return"_s, u"Return"_s, u"Return"_s, u"Return"_s}));
    QVERIFY(TellsAndTakes(u"Finished searching the document"_s));
    QVERIFY(m_program->WaitForWindow(u"Find"_s));
    QVERIFY(Display->Press({u"Tab"_s, u"Tab"_s, u"Tab"_s, u"Down"_s, u"Return"_s})); // the way up
    QVERIFY(Leave(u"alpha"_s));
    QVERIFY(Display->Type(u"lily"_s) && Save());
    QVERIFY2(WaitForBytes(m_path, "prim<b>lily</b>, two"), BytesOf(m_path));
    QVERIFY2(BytesOf(m_path).contains("Rose one</p>") && BytesOf(m_path).contains("Rose three</p>"), BytesOf(m_path));
    QVERIFY(Display->Press({u"F3"_s})); // up, as the last time
    QVERIFY(Display->Type(u"Tulip"_s) && Save());
    QVERIFY(WaitForBytes(m_path, "Tulip one"));
    QVERIFY(Quit());
}

void FindTest::oneThenAllThenBack()
{
    QVERIFY(OpenPage(Roses.data()));
    const QByteArray before = BytesOf(m_path);
    QVERIFY(Display->Press({u"ctrl+h"_s}) && m_program->WaitForWindow(u"Replace"_s));
    QVERIFY(Display->Type(u"rose"_s) && Display->Press({u"alt+p"_s}) && Display->Type(u"lily"_s));
    QVERIFY(Display->Press({u"alt+r"_s})); // takes effect when the button has been seen to go down
    QVERIFY(Leave(u"alpha"_s));
    QVERIFY(
        QTest::qWaitFor([this] { return Save() && BytesOf(m_path).contains("lily one"); }, RunningProgram::Patience));
    const QByteArray one = BytesOf(m_path);
    QVERIFY2(one.contains("prim<b>rose</b>") && one.contains("Rose three"), one);

    QVERIFY(Display->Press({u"ctrl+Home"_s, u"ctrl+h"_s}) && m_program->WaitForWindow(u"Replace"_s));
    QVERIFY(Display->Press({u"alt+a"_s}));
    QVERIFY(TellsAndTakes(u"2 replacements made."_s));
    QVERIFY(m_program->WaitForWindow(u"Replace"_s) && Leave(u"alpha"_s) && Save());
    QVERIFY(WaitForBytes(m_path, "lily three"));
    QVERIFY2(!BytesOf(m_path).toLower().contains("rose"), BytesOf(m_path));
    QVERIFY(Display->Press({u"ctrl+z"_s}) && Save());
    QTRY_COMPARE_WITH_TIMEOUT(BytesOf(m_path), one, RunningProgram::Patience);
    QVERIFY(Display->Press({u"ctrl+z"_s}) && Save());
    QTRY_VERIFY_WITH_TIMEOUT(BytesOf(m_path).contains("Rose one"), RunningProgram::Patience);
    QCOMPARE(BytesOf(m_path).count('\n'), before.count('\n'));
    QVERIFY(Quit());
}

void FindTest::inTheSource()
{
    QVERIFY(OpenPage("<p title=\"one rose\">Rose</p>"));
    QVERIFY(m_program->ShowSource(Mark));
    QVERIFY(Display->Press({u"ctrl+Home"_s, u"ctrl+f"_s}) && m_program->WaitForWindow(u"Find"_s));
    QVERIFY(Display->Press({u"alt+x"_s, u"alt+n"_s}));
    QVERIFY(Display->Type(u"one r[aeiou]se"_s) && Display->Press({u"Return"_s}));
    QVERIFY(Leave(u"alpha"_s));
    QVERIFY(Display->Type(u"no lily"_s) && Save());
    QVERIFY(WaitForBytes(m_path, "<p title=\"no lily\">Rose</p>"));
    QVERIFY(Quit());
}

QPoint FindTest::SelectedRow() const
{
    const QRect window = Display->Geometry(Display->WindowWithFocus());
    const QImage picture = Display->Picture();
    const int x = window.left() + 160; // right of the names
    const auto isBlue = [](QRgb colour) { return qBlue(colour) > 170 && qRed(colour) < 80; };
    int top = window.top() + window.height() / 2; // below the boxes
    while (top < window.bottom() && !isBlue(picture.pixel(x, top)))
        ++top;
    return top < window.bottom() ? QPoint(x, top + 6) : QPoint();
}

/// A site with pages of every kind: each keeps its bytes but for the word.
void FindTest::throughTheFolder()
{
    const QString samples = QStringLiteral(INKLOOM_SOURCE_DIR "/samples");
    const QString site = m_home->FilePath(u"site"_s);
    QVERIFY(CopyFolder(samples, site));
    const QByteArray messy = "<HTML><TITLE>Dora</TITLE>\r\n<BODY BGCOLOR=white>\r\n<!-- Dora -->\r\n"
                             "<P TITLE=Dora>A<I>sk\r\n<UL><LI>Dora<LI>Ted</UL>\r\n<?php $dora = '<p>Dora'; ?>\r\n";
    QVERIFY(PutBytes(site + "/messy.htm"_L1, messy));
    {
        QDir().mkpath(m_home->ConfigFolder());
        QSettings settings(m_home->ConfigFolder() + "/inkloom.ini"_L1, QSettings::IniFormat);
        settings.setValue(u"Settings/preserveHTML"_s, 1);
        settings.setValue(u"Settings/exactsource"_s, 1);
    }
    QVERIFY(m_program->Open(site + "/index.htm"_L1, u"Hollowmere Allotment Society"_s));
    QVERIFY(Display->Press({u"ctrl+shift+f"_s}) && m_program->WaitForWindow(u"Global Find/Replace"_s));
    QVERIFY(Display->Type(u"Dora"_s) && Display->Press({u"alt+p"_s}) && Display->Type(u"Nora"_s));
    QVERIFY(Display->Press({u"alt+a"_s}));
    QVERIFY(TellsAndTakes(u"This command will replace the specific text in every file in the current directory/folder. "
                          "Are you sure you want to continue?"_s));

    int count = 1; // in the messy page
    QList<std::pair<QString, QByteArray>> expected;
    QDirIterator files(samples, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (files.fileName() == "iltb.tmp"_L1) // of somebody who looked at the samples in place
            continue;
        QByteArray bytes = BytesOf(path);
        count += int(bytes.count("Dora"));
        expected.append({site + path.sliced(samples.size()), bytes.replace("Dora", "Nora")});
    }
    QVERIFY(TellsAndTakes(u"%1 replacements made thoughout the project."_s.arg(count)));
    for (const auto &[path, bytes] : expected)
        QVERIFY2(BytesOf(path) == bytes, qPrintable(path));
    QCOMPARE(BytesOf(site + "/messy.htm"_L1), QByteArray(messy).replace("<LI>Dora", "<LI>Nora"));

    const QString page = site + "/committee.htm"_L1;
    QVERIFY(m_program->WaitForWindow(u"Global Find/Replace"_s));
    QVERIFY(Display->Press({u"alt+n"_s}) && Display->Type(u"nora"_s) && Display->Press({u"alt+f"_s}));
    QVERIFY(QTest::qWaitFor(
        [this] { // the list takes the keys as soon as it has rows
            return Display->Press({u"alt+n"_s, u"shift+Tab"_s, u"Home"_s, u"Down"_s}) && !SelectedRow().isNull();
        },
        RunningProgram::Patience));
    QVERIFY(Display->Click(SelectedRow(), 2));
    QTRY_VERIFY_WITH_TIMEOUT(m_program->Titles().contains(RunningProgram::PageTitle(u"The Committee"_s)),
                             RunningProgram::Patience);
    QVERIFY(m_program->WaitForWindow(u"Global Find/Replace"_s) && Leave(u"The Committee"_s));
    QVERIFY(Display->Type(u"Flora"_s) && Save());
    QVERIFY(WaitForBytes(page, "<TR><TD>Chair<TD>Flora Pennyfeather"));
    QCOMPARE(BytesOf(page).replace("Flora", "Dora"), BytesOf(samples + "/committee.htm"_L1));
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<FindTest>(argc, argv);
}

#include "FindTest.moc"
