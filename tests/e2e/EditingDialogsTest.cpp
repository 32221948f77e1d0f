#include "E2eTest.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb PictureColour = 0xffd0317a; ///< no other thing on the screen has it
constexpr QSize PictureSize{46, 30};

const QByteArray Heading = "<H1>Rules</H1>\n";

} // namespace

/// Tables, pictures and links of the sample site are made and changed with their dialogs, by mouse and keys. What each
/// dialog does is in the saved file, and one step back takes all of it away.
class EditingDialogsTest : public E2eTest
{
    Q_OBJECT

private slots:
    void tableItsCellsRowsAndColumns();
    void pictureFromElsewhere();
    void linkToABookmarkOfAnotherPage();

private:
    bool OpenSite();
    bool Keys(const QString &keys) { return Display->Press(keys.split(u' ')); }
    /// Opens a dialog with these keys.
    bool Opens(const QString &keys, const QString &title) { return Keys(keys) && m_program->WaitForWindow(title); }
    /// Accepts the dialog on top.
    bool Accept(const QString &title) { return Keys(u"Return"_s) && m_program->WaitUntilGone(title); }
    /// With the key of the tick beside it, and the button behind that.
    bool ChooseColour(const QString &tickKey, const QString &colour);
    /// The row of the Table menu, counted from its last one, which stands for 1.
    bool OpenFromTableMenu(int fromLast, const QString &title);
    bool ChoosePictureFile(const QString &path);
    /// The name that is asked for behind each change of a picture is left alone: the page has been saved already.
    bool DeclineOtherName();
    bool SelectMarkedWords();
    QByteArray Paragraph() const;
    /// Saves until the page's text holds this.
    bool SavesTo(const QByteArray &words);
    bool OneStepBackTo(const QByteArray &bytes);

    QString m_page;
};

bool EditingDialogsTest::OpenSite()
{
    const QString site = m_home->FilePath(u"site"_s);
    m_page = site + "/rules.htm"_L1;
    if (!CopyFolder(QStringLiteral(INKLOOM_SOURCE_DIR "/samples"), site))
        return false;
    QByteArray bytes = BytesOf(m_page);
    if (!bytes.contains(Heading) || !PutBytes(m_page, bytes.replace(Heading, Heading + MarkedParagraph.data())))
        return false;
    m_program->Start({u"nosplash-"_s + m_page});
    return QTest::qWaitFor([this] { return Display->Find(Mark).x() >= 0; }, RunningProgram::Patience);
}

bool EditingDialogsTest::ChooseColour(const QString &tickKey, const QString &colour)
{
    const QString title = u"Select Color"_s;
    return Keys(tickKey + u" Tab space"_s) && m_program->WaitForWindow(title) && Keys(u"alt+h ctrl+a"_s) &&
           Display->Type(colour) && Accept(title);
}

bool EditingDialogsTest::OpenFromTableMenu(int fromLast, const QString &title)
{
    QStringList keys{u"alt+a"_s};
    keys += QStringList(fromLast, u"Up"_s);
    return Display->Press(keys + QStringList{u"Return"_s}) && m_program->WaitForWindow(title);
}

bool EditingDialogsTest::SavesTo(const QByteArray &words)
{
    return QTest::qWaitFor([&] { return Keys(u"ctrl+s"_s) && BytesOf(m_page).contains(words); }, 5000);
}

bool EditingDialogsTest::OneStepBackTo(const QByteArray &bytes)
{
    if (!Keys(u"ctrl+z"_s))
        return false;
    const bool back = QTest::qWaitFor([&] { return Keys(u"ctrl+s"_s) && BytesOf(m_page) == bytes; }, 5000);
    if (!back)
        qWarning().noquote() << "Not come back:\n" << Paragraph();
    return back;
}

/// The part of the page that the tests change.
QByteArray EditingDialogsTest::Paragraph() const
{
    const QByteArray bytes = BytesOf(m_page);
    return bytes.mid(bytes.indexOf("Click here") - 200, 700);
}

void EditingDialogsTest::tableItsCellsRowsAndColumns()
{
    QVERIFY(OpenSite());
    QVERIFY(m_program->ClickBehind(Mark));
    QVERIFY(Opens(u"alt+a i"_s, u"Insert Table"_s));
    QVERIFY(Display->Type(u"3"_s) && Keys(u"alt+t"_s) && Display->Type(u"Crops"_s));
    QVERIFY(ChooseColour(u"alt+b"_s, u"#fff0d0"_s) && ChooseColour(u"alt+o"_s, u"#804020"_s));
    QVERIFY(Accept(u"Insert Table"_s));
    QVERIFY(Display->Type(u"beans"_s));
    QVERIFY2(SavesTo(">beans</td>"), Paragraph());
    const QByteArray made = "<table width=\"100%\" align=\"CENTER\" border=\"0\" cellpadding=\"3\" cellspacing=\"0\" "
                            "bgcolor=\"#FFF0D0\" bordercolor=\"#804020\"><caption>Crops</caption>";
    const qsizetype table = BytesOf(m_page).indexOf(made);
    QVERIFY2(table > 0, Paragraph());
    const QByteArray text = BytesOf(m_page).mid(table);
    QCOMPARE(text.left(text.indexOf("</table>")).count("<tr>"), 3);

    struct Change
    {
        const char *Title;
        int FromLast;
        QStringList Keys;
        QByteArray Leaves;
    };
    const Change changes[] = {
        {"Cell Properties", 4, {u"alt+s"_s, u"2"_s}, "rowspan=\"2\">beans"},
        {"Row Properties", 3, {u"alt+z"_s, u"r"_s}, "align=\"Right\">beans"},
        {"Column Properties", 2, {u"alt+v"_s, u"m"_s}, "valign=\"Middle\">beans"},
        {"Table Properties", 1, {u"alt+d"_s, u"2"_s}, "border=\"2\""},
    };
    for (const Change &change : changes) {
        const QByteArray before = BytesOf(m_page);
        const QString title = QString::fromLatin1(change.Title);
        QVERIFY2(OpenFromTableMenu(change.FromLast, title), change.Title);
        QVERIFY(Display->Press(change.Keys) && Accept(title));
        QVERIFY2(SavesTo(change.Leaves), change.Title + ("\n" + Paragraph()));
        QVERIFY2(OneStepBackTo(before) && Keys(u"ctrl+y"_s), change.Title);
        QVERIFY2(SavesTo(change.Leaves), change.Title);
    }
    QVERIFY(Quit());
}

bool EditingDialogsTest::ChoosePictureFile(const QString &path)
{
    const qsizetype windows = Display->Windows(m_program->Pid()).size();
    const auto showing = [this](qsizetype count) {
        return QTest::qWaitFor([&] { return Display->Windows(m_program->Pid()).size() == count; },
                               RunningProgram::Patience);
    };
    return Keys(u"alt+o"_s) && showing(windows + 1) && Display->Type(path) && Keys(u"Return"_s) && showing(windows);
}

bool EditingDialogsTest::DeclineOtherName()
{
    const QString title = u"Save As"_s;
    return m_program->WaitForWindow(title) && Keys(u"Escape"_s) && m_program->WaitUntilGone(title);
}

void EditingDialogsTest::pictureFromElsewhere()
{
    QVERIFY(OpenSite());
    QImage picture(PictureSize, QImage::Format_RGB32);
    picture.fill(PictureColour);
    const QString elsewhere = m_home->FilePath(u"other place/seed bag.png"_s);
    QVERIFY(QDir().mkpath(QFileInfo(elsewhere).path()) && picture.save(elsewhere));
    const QString copy = QFileInfo(m_page).path() + "/seed bag.png"_L1;
    const auto shown = [this] {
        return QTest::qWaitFor([this] { return Display->Extent(PictureColour).size() == PictureSize; },
                               RunningProgram::Patience);
    };

    QVERIFY(m_program->ClickBehind(Mark));
    QVERIFY(SavesTo("Click here"));
    const QByteArray before = BytesOf(m_page);
    QVERIFY(Opens(u"alt+i g"_s, u"Graphic"_s) && ChoosePictureFile(elsewhere) && Accept(u"Graphic"_s));
    QVERIFY(DeclineOtherName());
    QCOMPARE(BytesOf(copy), BytesOf(elsewhere));
    const QByteArray image =
        "<img src=\"seed bag.png\" border=\"0\" hspace=\"0\" vspace=\"0\" width=\"46\" height=\"30\">";
    QVERIFY2(SavesTo(image), Paragraph());
    QVERIFY(OneStepBackTo(before) && Keys(u"ctrl+y"_s) && SavesTo(image) && shown());

    QVERIFY(Display->Click(Display->Extent(PictureColour).center(), 2)); // edited by a double click
    QVERIFY(m_program->WaitForWindow(u"Graphic"_s));
    QVERIFY(Keys(u"alt+a"_s) && Display->Type(u"Seed \"bag\""_s) && Keys(u"alt+b"_s) && Display->Type(u"3"_s));
    QVERIFY(Accept(u"Graphic"_s) && DeclineOtherName());
    const QByteArray edited = "<img src=\"seed bag.png\" border=\"3\" hspace=\"0\" vspace=\"0\" width=\"46\" "
                              "height=\"30\" alt=\"Seed &quot;bag&quot;\">";
    QVERIFY2(SavesTo(edited), Paragraph());

    const QByteArray unlinked = BytesOf(m_page);
    QVERIFY(shown() && Display->Click(Display->Extent(PictureColour).center()));
    QVERIFY(Opens(u"ctrl+k"_s, u"Hyperlink"_s) && Keys(u"alt+e Tab ctrl+a"_s) && Display->Type(u"join.htm"_s));
    QVERIFY(Accept(u"Hyperlink"_s));
    QVERIFY2(SavesTo("<a href=\"join.htm\">" + edited + "</a>"), Paragraph());
    QVERIFY(OneStepBackTo(unlinked));
    QVERIFY(Quit());
}

bool EditingDialogsTest::SelectMarkedWords()
{
    return m_program->ClickBehind(Mark) && Keys(u"Home shift+End"_s);
}

void EditingDialogsTest::linkToABookmarkOfAnotherPage()
{
    QVERIFY(OpenSite());
    QVERIFY(m_program->ClickBehind(Mark) && SavesTo("Click here"));
    const QByteArray before = BytesOf(m_page);
    QVERIFY(SelectMarkedWords() && Opens(u"ctrl+k"_s, u"Hyperlink"_s));
    QVERIFY(Keys(u"alt+l Tab Tab Tab"_s) && Display->Type(u"chron"_s)); // the row whose title begins so
    QVERIFY(Keys(u"alt+b alt+Down Down Return"_s));                     // of the list of bookmarks
    QVERIFY(Accept(u"Hyperlink"_s));
    QVERIFY2(SavesTo("<a href=\"chronicle.htm#y1920\">Click here</a>"), Paragraph());
    QVERIFY(OneStepBackTo(before) && Keys(u"ctrl+y"_s) && SavesTo("<a href=\"chronicle.htm#y1920\">Click here</a>"));

    const QByteArray linked = BytesOf(m_page);
    QVERIFY(m_program->ClickBehind(Mark) && Keys(u"Left Left"_s)); // within the link, nothing selected
    QVERIFY(Opens(u"ctrl+k"_s, u"Hyperlink"_s) && Keys(u"alt+b ctrl+a"_s) && Display->Type(u"y1925"_s));
    QVERIFY(Keys(u"alt+t"_s) && Display->Type(u"_blank"_s) && Accept(u"Hyperlink"_s));
    QVERIFY2(SavesTo("<a href=\"chronicle.htm#y1925\" target=\"_blank\">Click here</a>"), Paragraph());
    QVERIFY(OneStepBackTo(linked) && Keys(u"ctrl+y"_s) && SavesTo("y1925"));

    const QByteArray changed = BytesOf(m_page);
    QVERIFY(m_program->ClickBehind(Mark) && Keys(u"Left Left"_s));
    QVERIFY(Opens(u"ctrl+k"_s, u"Hyperlink"_s) && Keys(u"alt+r"_s) && m_program->WaitUntilGone(u"Hyperlink"_s));
    QVERIFY2(SavesTo(">Click here</p>"), Paragraph());
    QCOMPARE(BytesOf(m_page), before);
    QVERIFY(OneStepBackTo(changed));
    QVERIFY(Quit());
}

int main(int argc, char **argv)
{
    return RunE2eTest<EditingDialogsTest>(argc, argv);
}

#include "EditingDialogsTest.moc"
