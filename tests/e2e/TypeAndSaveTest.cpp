#include "E2eTest.h"

using namespace Qt::StringLiterals;

namespace {

const QString Words = u" Größe: 5 € für <b> & \"so\"."_s;

/// The words as they stand in a page.
QByteArray WordsIn(const QByteArray &encoding)
{
    const QString text = u" Größe: 5 € für &lt;b&gt; &amp; \"so\"."_s;
    if (encoding == "utf-8")
        return text.toUtf8();
    return QString(text).replace(u'€', u'\x80').toLatin1(); // windows-1252
}

QByteArray Sample(const QString &name)
{
    return BytesOf(QStringLiteral(INKLOOM_SOURCE_DIR "/samples/") + name);
}

QByteArray WithCrLf(QByteArray bytes)
{
    return bytes.replace("\r\n", "\n").replace('\n', "\r\n");
}

enum class Ends { Lf, CrLf, Mixed };

Ends LineEndsOf(const QByteArray &bytes)
{
    const qsizetype pairs = bytes.count("\r\n");
    if (bytes.count('\r') == pairs && bytes.count('\n') == pairs)
        return Ends::CrLf;
    return bytes.contains('\r') ? Ends::Mixed : Ends::Lf;
}

} // namespace

/// The main job: a page is opened, words are typed where the mouse put the caret, the file has them.
class TypeAndSaveTest : public E2eTest
{
    Q_OBJECT

private slots:
    void wordsGoToTheClickedPlaceAndAllElseStays_data();
    void wordsGoToTheClickedPlaceAndAllElseStays();
    void saveRightBehindTheLastKeyLosesNothing();
    void undoneWordsLeaveNothingToSave();
    void redoneWordsAreSaved();
    void unsavedWordsAreAskedForOnce_data();
    void unsavedWordsAreAskedForOnce();
    void sourceAndPageAreOneText();

private:
    /// What the editor makes of the file when nobody types.
    QByteArray SavedWithoutChange(const QString &path);
};

QByteArray TypeAndSaveTest::SavedWithoutChange(const QString &path)
{
    const QFileInfo info(path);
    const QString saved = m_home->FilePath(u"untouched."_s + info.suffix());
    QProcess process;
    QProcessEnvironment environment = m_home->Environment({});
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(INKLOOM_ROUNDTRIP), {path, saved});
    if (!process.waitForFinished(RunningProgram::Patience) || process.exitCode() != 0)
        return "the page could not be saved: " + process.readAllStandardError();
    return BytesOf(saved);
}

void TypeAndSaveTest::wordsGoToTheClickedPlaceAndAllElseStays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("behind"); // the clicked paragraph is put behind the first of these
    QTest::addColumn<QByteArray>("encoding");
    QTest::newRow("UTF-8 with BOM, CR LF")
        << u"calendar.htm"_s << WithCrLf(Sample(u"calendar.htm"_s)) << QByteArray("<body>") << QByteArray("utf-8");
    QTest::newRow("declared windows-1252, CR LF")
        << u"plots.htm"_s << Sample(u"plots.htm"_s) << QByteArray("\r\n<table") << QByteArray("windows-1252");
    QTest::newRow("undeclared ISO-8859-1, LF") << u"verein.htm"_s << Sample(u"verein.htm"_s)
                                               << QByteArray("<body bgcolor=white>") << QByteArray("windows-1252");
    QTest::newRow("PHP in attributes and between tags")
        << u"news.php"_s << Sample(u"news.php"_s) << QByteArray("?></h1>") << QByteArray("utf-8");
    QTest::newRow("ASP, CR LF") << u"shop.asp"_s << Sample(u"shop.asp"_s) << QByteArray("</H1>") << QByteArray("utf-8");
    QTest::newRow("mixed line ends") << u"links.htm"_s << Sample(u"links.htm"_s) << QByteArray("</h1>")
                                     << QByteArray("utf-8");
}

void TypeAndSaveTest::wordsGoToTheClickedPlaceAndAllElseStays()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, behind);
    QFETCH(QByteArray, encoding);
    const qsizetype place = bytes.indexOf(behind);
    QVERIFY(place > 0);
    bytes.insert(place + behind.size(), MarkedParagraph.data());
    const QString path = m_home->FilePath(name);
    QVERIFY(PutBytes(path, bytes));
    const QByteArray words = WordsIn(encoding);
    QByteArray expected = SavedWithoutChange(path);
    QCOMPARE(expected.count("Click here"), 1);
    expected.replace("Click here", "Click here" + words);

    m_program->Start({u"nosplash-"_s + path});
    QVERIFY(ClickAndType(Words));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, words));

    const QByteArray saved = BytesOf(path);
    if (LineEndsOf(bytes) == Ends::Mixed) {
        // There a changed line takes the end that most lines have.
        const qsizetype lineEnd = expected.indexOf('\n', expected.indexOf(words));
        expected.replace(lineEnd, 1, "\r\n");
    }
    QCOMPARE(saved, expected);
    QCOMPARE(saved.startsWith("\xEF\xBB\xBF"), bytes.startsWith("\xEF\xBB\xBF"));
    QCOMPARE(LineEndsOf(saved), LineEndsOf(bytes));
    for (qsizetype at = 0; (at = bytes.indexOf("<?", at)) >= 0; at += 2) {
        const QByteArray block = bytes.mid(at, bytes.indexOf("?>", at) - at);
        QVERIFY2(saved.contains(block), block);
    }
    QVERIFY(Quit());
}

void TypeAndSaveTest::saveRightBehindTheLastKeyLosesNothing()
{
    const QString path = PutPage(u"fast.htm"_s);
    QVERIFY(m_program->Open(path, u"fast"_s));
    QVERIFY(m_program->ClickBehind(Mark));
    QString words;
    for (int word = 100; word < 130; ++word)
        words += u" w%1"_s.arg(word);
    const QByteArray before = BytesOf(path);
    QVERIFY(Display->Type(words, VirtualDisplay::Speed::Machine));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QTRY_VERIFY_WITH_TIMEOUT(BytesOf(path) != before, RunningProgram::Patience);
    QVERIFY2(BytesOf(path).contains(("Click here" + words + "</p>").toUtf8()), BytesOf(path));
    QVERIFY(Quit());
}

void TypeAndSaveTest::undoneWordsLeaveNothingToSave()
{
    const QString path = PutPage(u"undo.htm"_s);
    const QByteArray before = BytesOf(path);
    QVERIFY(m_program->Open(path, u"undo"_s));
    QVERIFY(ClickAndType(u" one"_s));
    QVERIFY(Display->Press({u"Return"_s}));
    QVERIFY(Display->Type(u"two"_s));
    QVERIFY(Display->Press(QStringList(12, u"ctrl+z"_s)));
    QVERIFY(Quit());
    QCOMPARE(BytesOf(path), before);
}

void TypeAndSaveTest::redoneWordsAreSaved()
{
    const QString path = PutPage(u"redo.htm"_s);
    QVERIFY(m_program->Open(path, u"redo"_s));
    QVERIFY(ClickAndType(u" one"_s));
    QVERIFY(Display->Press({u"Return"_s}));
    QVERIFY(Display->Type(u"two"_s));
    QVERIFY(Display->Press(QStringList(12, u"ctrl+z"_s) + QStringList(12, u"ctrl+y"_s) + QStringList(u"ctrl+s"_s)));
    QVERIFY(WaitForBytes(path, "Click here one</p>"));
    QVERIFY(BytesOf(path).contains(">two</p>"));
    // Back before the save: that is a change again.
    QVERIFY(Display->Press(QStringList(12, u"ctrl+z"_s) + QStringList(u"ctrl+s"_s)));
    QVERIFY(WaitForBytes(path, "Click here</p>"));
    QVERIFY(!BytesOf(path).contains("two"));
    QVERIFY(Quit());
}

void TypeAndSaveTest::unsavedWordsAreAskedForOnce_data()
{
    QTest::addColumn<QString>("way"); // "": the button of the frame
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("ends");
    QTest::addColumn<bool>("saves");
    QTest::newRow("Alt+F4, Cancel") << u"alt+F4"_s << u"Escape"_s << false << false;
    QTest::newRow("Ctrl+Q, No") << u"ctrl+q"_s << u"n"_s << true << false;
    QTest::newRow("Alt+F4, No") << u"alt+F4"_s << u"alt+n"_s << true << false;
    QTest::newRow("menu, Yes") << u"alt+f x"_s << u"Return"_s << true << true;
    QTest::newRow("frame, Yes") << QString() << u"Return"_s << true << true;
}

void TypeAndSaveTest::unsavedWordsAreAskedForOnce()
{
    QFETCH(QString, way);
    QFETCH(QString, answer);
    QFETCH(bool, ends);
    QFETCH(bool, saves);
    const QString path = PutPage(u"close.htm"_s);
    const QByteArray before = BytesOf(path);
    QVERIFY(m_program->Open(path, u"close"_s));
    QVERIFY(ClickAndType(u" and more"_s));
    if (way.isEmpty())
        QVERIFY(Display->Click(m_program->MainWindow().topRight() + QPoint(-9, -11)));
    else
        QVERIFY(Display->Press(way.split(u' ')));

    QVERIFY(m_program->WaitForBox(u"Save changes to "_s + path + u'?'));
    QVERIFY(m_program->AnswerBox(answer));
    if (ends) {
        QVERIFY(m_program->WaitForEnd());
        QVERIFY(m_program->EndedWell());
        QCOMPARE(BytesOf(path).contains("Click here and more</p>"), saves);
        QCOMPARE(BytesOf(path) == before, !saves);
        QCOMPARE(EntriesOf(m_home->RecoveryFolder()), QStringList());
        return;
    }
    QVERIFY(m_program->WaitForWindow(RunningProgram::PageTitle(u"close"_s)));
    QCOMPARE(BytesOf(path), before);
    QVERIFY(Display->Type(u" still"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "Click here and more still</p>"));
    QVERIFY(Quit());
}

void TypeAndSaveTest::sourceAndPageAreOneText()
{
    constexpr QRgb fromSource = 0xff9e12ab;
    const QString path = PutPage(u"source.htm"_s);
    QVERIFY(m_program->Open(path, u"source"_s));
    QVERIFY(ClickAndType(u" first"_s));
    QVERIFY(m_program->ShowSource(Mark));
    QVERIFY(Display->Press({u"ctrl+Home"_s, u"Down"_s, u"Down"_s, u"End"_s}));
    QVERIFY(Display->Type(u"<p style=\"background:#9e12ab\">Written as text</p>"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "Click here first</p><p style=\"background:#9e12ab\">Written as text</p>\n<p>Second"));

    QVERIFY(m_program->ShowNormal(fromSource));
    QVERIFY(m_program->ClickBehind(fromSource));
    QVERIFY(Display->Type(u" and as seen"_s));
    QVERIFY(Display->Press({u"ctrl+s"_s}));
    QVERIFY(WaitForBytes(path, "Written as text and as seen</p>"));
    QVERIFY(BytesOf(path).contains("Click here first</p>"));
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<TypeAndSaveTest>(argc, argv);
}

#include "TypeAndSaveTest.moc"
