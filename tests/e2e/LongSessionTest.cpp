#include "E2eTest.h"

#include <QDateTime>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb ImageColour = 0xffd0317a; ///< the picture that is resized; no other thing on the screen has it
constexpr QSize Grown{30, 20};

/// A page of a site with a picture near its top. The session's paragraph is put behind `Behind`.
struct Site
{
    QString Folder;
    QString Page;
    QString Picture;
    QByteArray Behind;
};

const QString Samples = QStringLiteral(INKLOOM_SOURCE_DIR "/samples");
const QString Manual = u"/usr/share/doc/xfig/html"_s; // tag soup of many hands: headings in paragraphs, nothing closed
const Site TagSoup{Manual, u"panning.html"_s, u"images/xfig-title.png"_s, "border=0></a>"};

} // namespace

Q_DECLARE_METATYPE(Site)

/// A page is worked on for a while, with everything that the design view has, by mouse and keys; then all is taken
/// back and made again.
class LongSessionTest : public E2eTest
{
    Q_OBJECT

private slots:
    void everyStepComesBackAndGoes_data() { Pages(); }
    void everyStepComesBackAndGoes();
    void undoneSessionLeavesNothingToSave();

private:
    static constexpr int MostSteps = 60; ///< more than the session has, as undo counts them

    struct Deed
    {
        const char *Name;
        std::function<bool()> Do;
        QByteArray Leaves; ///< what is then in the saved page
    };

    static void Pages();
    bool PutSite(const Site &site);
    bool OpenSite();
    std::vector<Deed> Deeds();
    bool Keys(const QString &keys) { return Display->Press(keys.split(u' ')); }
    /// The key is pressed between two of the words.
    bool TypeWith(const QString &key, const QStringList &words);
    bool WriteText();
    bool FormatWords();
    bool ColourSelection(const QString &colour);
    bool ResizeImage();
    bool EditSource();
    std::optional<QByteArray> Save();
    bool StepUntil(const QString &key, const QByteArray &expected);

    QString m_path;
    QSize m_imageSize;
};

void LongSessionTest::Pages()
{
    QTest::addColumn<Site>("site");
    QTest::newRow("sample site") << Site{Samples, u"index.htm"_s, u"images/logo.png"_s, "<h2>Welcome</h2>"};
    QTest::newRow("tag soup") << TagSoup;
}

/// Everything stays as the site has it but for the marked paragraph and the picture, which gets a colour of its own.
bool LongSessionTest::PutSite(const Site &site)
{
    if (!CopyFolder(site.Folder, m_home->Folder()))
        return false;
    QImage picture(m_home->FilePath(site.Picture));
    m_imageSize = picture.size();
    picture = QImage(m_imageSize, QImage::Format_RGB32);
    picture.fill(ImageColour);
    m_path = m_home->FilePath(site.Page);
    QByteArray bytes = BytesOf(m_path);
    const qsizetype place = bytes.indexOf(site.Behind);
    if (place < 0 || !picture.save(m_home->FilePath(site.Picture)))
        return false;
    return PutBytes(m_path, bytes.insert(place + site.Behind.size(), MarkedParagraph.data()));
}

/// Pictures and style sheets come in behind the words and move them: a hand waits for that before it clicks.
bool LongSessionTest::OpenSite()
{
    m_program->Start({u"nosplash-"_s + m_path});
    QPoint before(-1, -1);
    return QTest::qWaitFor(
        [&] {
            const QPoint place = Display->Find(Mark);
            const bool still = place.x() >= 0 && place == std::exchange(before, place);
            return still && Display->Extent(ImageColour).size() == m_imageSize;
        },
        RunningProgram::Patience);
}

std::vector<LongSessionTest::Deed> LongSessionTest::Deeds()
{
    return {
        {"a heading, a paragraph, a list", [this] { return WriteText(); }, "<li>peas</li>"},
        {"bold and coloured words", [this] { return FormatWords(); }, "<b>The</b> shed is"},
        {"table",
         [this] {
             return Keys(u"alt+a i"_s) && m_program->WaitForWindow(u"Insert Table"_s) && Keys(u"alt+c 3 Return"_s) &&
                    m_program->WaitUntilGone(u"Insert Table"_s) &&
                    TypeWith(u"Tab"_s, {u"a1"_s, u"a2"_s, u"a3"_s, u"b1"_s});
         },
         ">a3</td>"},
        {"row", [this] { return Keys(u"alt+a Down Return"_s) && Display->Type(u"new"_s); }, ">new</td>"},
        {"merged cells", [this] { return Keys(u"shift+Right alt+a m"_s); }, "colspan=\"2\">new"},
        {"picture resized", [this] { return ResizeImage(); }, {}},
        {"words in the source", [this] { return EditSource(); }, "<p>Written as text</p>"},
        {"words behind the visit", [this] { return ClickAndType(u" and back"_s); }, "Click here and back</p>"},
    };
}

bool LongSessionTest::TypeWith(const QString &key, const QStringList &words)
{
    bool done = true;
    for (const QString &word : words)
        done = done && (word.isEmpty() || Display->Type(word)) && (&word == &words.last() || Keys(key));
    return done;
}

bool LongSessionTest::WriteText()
{
    return m_program->ClickBehind(Mark) && Keys(u"Return alt+o a Down Down Return"_s) &&
           TypeWith(u"Return"_s, {u"Spring"_s, u"The shed is red"_s, {}}) && Keys(u"alt+o l"_s) &&
           TypeWith(u"Return"_s, {u"beans"_s, u"peas"_s, {}, u"End"_s});
}

/// From the line behind the list: the first word of the paragraph before it, and the last.
bool LongSessionTest::FormatWords()
{
    return Keys(u"Up Up Up Home shift+Right shift+Right shift+Right ctrl+b"_s) &&
           Keys(u"End shift+Left shift+Left shift+Left"_s) && ColourSelection(u"#b22222"_s) &&
           Keys(u"Down Down Down End"_s);
}

bool LongSessionTest::ColourSelection(const QString &colour)
{
    return Keys(u"alt+o f"_s) && m_program->WaitForWindow(u"Font"_s) && Keys(u"alt+c"_s) &&
           m_program->WaitForWindow(u"Text Color"_s) && Keys(u"alt+h ctrl+a"_s) && Display->Type(colour) &&
           Keys(u"Return"_s) && m_program->WaitUntilGone(u"Text Color"_s) && m_program->WaitForWindow(u"Font"_s) &&
           Keys(u"Return"_s) && m_program->WaitUntilGone(u"Font"_s);
}

bool LongSessionTest::ResizeImage()
{
    Keys(u"ctrl+Home"_s);
    QRect image;
    const auto stands = [&](QSize size) {
        return QTest::qWaitFor(
            [&] {
                image = Display->Extent(ImageColour);
                return (image.size() - size).isNull() || QRect({}, image.size()).contains(QRect({}, size));
            },
            RunningProgram::Patience);
    };
    if (!stands(m_imageSize) || !Display->Click(image.center()))
        return false;
    const QPoint handle(image.right() + 1, image.bottom() + 1);
    return Display->Drag(handle, handle + QPoint(Grown.width(), Grown.height())) && stands(m_imageSize + Grown / 2);
}

/// The source view shows the line that the caret is in.
bool LongSessionTest::EditSource()
{
    return m_program->ClickBehind(Mark) && m_program->ShowSource(Mark) && Keys(u"End"_s) &&
           Display->Type(u"<p>Written as text</p>"_s) && m_program->ShowNormal(Mark);
}

/// Nothing when the file was not written.
std::optional<QByteArray> LongSessionTest::Save()
{
    const auto stamp = [this] { return QFileInfo(m_path).lastModified(); };
    const QDateTime before = stamp();
    Display->Press({u"ctrl+s"_s});
    if (!QTest::qWaitFor([&] { return stamp() != before; }, RunningProgram::Patience))
        return {};
    return BytesOf(m_path);
}

/// One step after the other until the page is as it was at that time.
bool LongSessionTest::StepUntil(const QString &key, const QByteArray &expected)
{
    std::optional<QByteArray> bytes;
    for (int step = 0; step < MostSteps; ++step) {
        Keys(key);
        bytes = Save();
        if (!bytes || *bytes == expected)
            return bytes.has_value();
    }
    qWarning().noquote() << "Not come back:\n" << expected << "\nbut\n" << *bytes;
    return false;
}

void LongSessionTest::everyStepComesBackAndGoes()
{
    QFETCH(Site, site);
    QVERIFY(PutSite(site));
    QVERIFY(OpenSite());
    std::vector<QByteArray> states;
    states.push_back(Save().value_or(""));
    for (const Deed &deed : Deeds()) {
        QVERIFY2(deed.Do(), deed.Name);
        states.push_back(Save().value_or(""));
        QVERIFY2(states.back() != states[states.size() - 2], deed.Name);
        QVERIFY2(states.back().contains(deed.Leaves),
                 deed.Name + (":\n" + states.back().mid(states.back().indexOf("Click here") - 200, 700)));
    }
    for (size_t state = states.size() - 1; state-- > 0;)
        QVERIFY2(StepUntil(u"ctrl+z"_s, states[state]), Deeds()[state].Name);
    for (size_t state = 1; state < states.size(); ++state)
        QVERIFY2(StepUntil(u"ctrl+y"_s, states[state]), Deeds()[state - 1].Name);
    QVERIFY(Quit());
}

void LongSessionTest::undoneSessionLeavesNothingToSave()
{
    QVERIFY(PutSite(TagSoup));
    const QByteArray opened = BytesOf(m_path);
    QVERIFY(OpenSite());
    for (const Deed &deed : Deeds())
        QVERIFY2(deed.Do(), deed.Name);
    QVERIFY(Display->Press(QStringList(MostSteps, u"ctrl+z"_s)));
    QVERIFY(Quit());
    QCOMPARE(BytesOf(m_path), opened);
}

int main(int argc, char **argv)
{
    return RunE2eTest<LongSessionTest>(argc, argv);
}

#include "LongSessionTest.moc"
