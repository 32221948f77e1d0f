#include "editing/FormImage.h"
#include "editing/PictureFiles.h"
#include "support/EditorRig.h"
#include "support/Files.h"
#include "support/WithoutPrivileges.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The graphic dialog on real pages and real files.
class FormImageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void fragments_data();
    void fragments();
    void addresses_data();
    void addresses();
    void newPicture_data();
    void newPicture();
    void pageFolderIsReadOnly();
    void vanishedOrNoPicture();
    void typesListTheirFiles();
    void messagesKeepItOpen();
    void leadsToAPage_data();
    void leadsToAPage();
    void mapGoesInWithThePicture();
    void cancelLeavesNoTrace();
    void picksAPath();

private:
    template <class T>
    T *Find(const char *name) const
    {
        return m_form->findChild<T *>(QString::fromLatin1(name));
    }
    void PutPicture(const QString &name, QSize size) const;
    void LoadBody(const QString &body);
    void Select(const QString &part);
    void Open(FormImage::Purpose purpose = FormImage::Purpose::EditPage);
    void Click(const char *button) { QTest::mouseClick(Find<QAbstractButton>(button), Qt::LeftButton); }
    void Tick(const char *button) { Find<QAbstractButton>(button)->click(); }
    void Choose(const QString &name);
    /// OK with a change: the page is saved, and the save that asks for a name is cancelled.
    void OkAndSave();
    QString Shown() const;
    QString Body() const;

    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<FormImage> m_form;
    FormImage::Parts m_parts;
    QStringList m_files; ///< beside the page when it was loaded
};

void FormImageTest::initTestCase()
{
    EditorRig::StartEngine();
}

void FormImageTest::init()
{
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
    m_rig = std::make_unique<EditorRig>();
    QVERIFY(QDir(m_rig->Folder()).mkpath(u"site"_s));
    QVERIFY(QDir(m_rig->Folder()).mkpath(u"other"_s));
    PutPicture(u"site/a.gif"_s, {40, 20});
    PutPicture(u"site/b c.png"_s, {300, 60});
    PutPicture(u"site/d.webp"_s, {170, 90});
    PutPicture(u"other/Gr\u00fc\u00dfe 100%.png"_s, {200, 100});
    m_parts = {};
}

void FormImageTest::cleanup()
{
    m_form.reset();
    m_rig.reset();
}

void FormImageTest::PutPicture(const QString &name, QSize size) const
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(m_rig->Path(name), name.endsWith(".webp"_L1) ? "WEBP" : "PNG")); // a .gif is one by name only
}

void FormImageTest::LoadBody(const QString &body)
{
    const QString page = u"<html><head><title>t</title></head>\n<body>\n%1\n</body></html>\n"_s.arg(body);
    QVERIFY(m_rig->Load(m_rig->Put(u"site/page.htm"_s, page.toUtf8())));
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_files = EntriesOf(m_rig->Path(u"site"_s));
}

/// "" puts the caret at the start of the page. An object is found by the text around it, so there has to be some.
void FormImageTest::Select(const QString &part)
{
    const QString html = m_rig->Surface.EngineHTML();
    const qsizetype at = html.indexOf(part, html.indexOf("<BODY"_L1));
    QVERIFY2(part.isEmpty() || at >= 0, qPrintable(html));
    if (part.isEmpty())
        m_rig->Surface.CaretToPageStart();
    else
        QVERIFY(m_rig->Surface.SelectInText(html, {at + 1, part.size()}));
}

void FormImageTest::Open(FormImage::Purpose purpose)
{
    m_form = std::make_unique<FormImage>(*m_rig->Edit, m_parts, purpose);
    m_form->show();
}

void FormImageTest::Choose(const QString &name)
{
    auto *list = Find<QListWidget>("File1");
    const QList<QListWidgetItem *> items = list->findItems(name, Qt::MatchExactly);
    QCOMPARE(items.size(), 1);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(items.first()).center());
}

void FormImageTest::OkAndSave()
{
    m_rig->Dialogs.ExpectSave(std::nullopt);
    Click("Command1");
    QCOMPARE(m_form->result(), int(QDialog::Accepted));
    m_rig->Dialogs.Verify();
}

/// file|alternate text|align|border,hspace,vspace|width|height; a size without a tick is "-".
QString FormImageTest::Shown() const
{
    const auto size = [this](const char *tick, const char *box, const char *percent) {
        const QString unit = Find<QRadioButton>(percent)->isChecked() ? u"%"_s : QString();
        return Find<QCheckBox>(tick)->isChecked() ? Find<QLineEdit>(box)->text() + unit : u"-"_s;
    };
    const QList<QListWidgetItem *> files = Find<QListWidget>("File1")->selectedItems();
    return QStringList{files.isEmpty() ? QString() : files.first()->text(),
                       Find<QPlainTextEdit>("EditAltText")->toPlainText(),
                       Find<QComboBox>("ComboAlign")->currentText(),
                       Find<QLineEdit>("EditBorder")->text() + u',' + Find<QLineEdit>("EditHSpace")->text() + u',' +
                           Find<QLineEdit>("EditVSpace")->text(),
                       size("CheckSetWidth", "EditWidth", "OptionWidthPercent"),
                       size("CheckSetHeight", "EditHeight", "OptionHeightPercent")}
        .join(u'|');
}

/// What stands behind the body is as the page's author wrote it.
QString FormImageTest::Body() const
{
    const QString html = m_rig->Surface.EngineHTML();
    const qsizetype start = html.indexOf(u'>', html.indexOf("<BODY"_L1)) + 1;
    return html.sliced(start, html.indexOf("</body>"_L1, start, Qt::CaseInsensitive) - start).trimmed();
}

void FormImageTest::fragments_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("tag");   // what is selected, as the engine writes it
    QTest::addColumn<QString>("shown"); // see Shown
    QTest::addColumn<QString>("after"); // of the tag: alternate text "New", border 3, width 50 percent
    const auto row = [](const char *name, const char *body, const char *tag, const char *shown, const char *after) {
        QTest::newRow(name) << QString::fromUtf8(body) << QString::fromUtf8(tag) << QString::fromUtf8(shown)
                            << QString::fromUtf8(after);
    };
    row("bare", "<img src=a.gif>", "<IMG src=a.gif>", "a.gif||Default|,,|-|-",
        "<IMG src=a.gif alt=New border=3 width=50%>");
    row("all, quoted",
        "<img src=\"a.gif\" alt=\"Old words\" border=\"1\" hspace=\"2\" vspace=\"4\" width=\"40\" height=\"20\">",
        "<IMG src=a.gif alt=\"Old words\" border=1 hspace=2 vspace=4 width=40 height=20>",
        "a.gif|Old words|Default|1,2,4|40|20",
        "<IMG src=a.gif alt=New border=3 hspace=2 vspace=4 width=50% height=20>");
    row("odd order", "<img height=20 border=0 class=x src=a.gif id=i align=left>",
        "<IMG height=20 border=0 class=x src=a.gif id=i align=left>", "a.gif||left|0,,|-|20",
        "<IMG height=20 border=3 class=x src=a.gif id=i align=left alt=New width=50%>");
    row("upper case", "<IMG SRC='a.gif' ALIGN=ABSMIDDLE WIDTH=40>", "<IMG src=a.gif align=ABSMIDDLE width=40>",
        "a.gif||absmiddle|,,|40|-", "<IMG src=a.gif align=ABSMIDDLE width=50% alt=New border=3>");
    row("unknown alignment", "<img align=floor src=a.gif>", "<IMG align=floor src=a.gif>", "a.gif||Default|,,|-|-",
        "<IMG align=floor src=a.gif alt=New border=3 width=50%>");
    row("percent sizes", "<img src=a.gif width=\"80%\" height=\"25%\">", "<IMG src=a.gif width=80% height=25%>",
        "a.gif||Default|,,|80%|25%", "<IMG src=a.gif width=50% height=25% alt=New border=3>");
    row("already so", "<img width=50% border=3 alt=New src=a.gif>", "<IMG width=50% border=3 alt=New src=a.gif>",
        "a.gif|New|Default|3,,|50%|-", "<IMG width=50% border=3 alt=New src=a.gif>");
    row("size of another kind", "<img src=a.gif width=4em height=\"\">", "<IMG src=a.gif width=4em height=\"\">",
        "a.gif||Default|,,|4em|-", "<IMG src=a.gif width=50% height=\"\" alt=New border=3>");
    row("empty alternate text", "<img src=a.gif alt=\"\">", "<IMG src=a.gif alt=\"\">", "a.gif||Default|,,|-|-",
        "<IMG src=a.gif alt=New border=3 width=50%>");
    row("entities and lines", "<img src=a.gif alt=\"a &lt;b&gt; &amp; &quot;c&quot;   d\">",
        "<IMG src=a.gif alt=\"a &lt;b&gt; &amp; &quot;c&quot;   d\">", "a.gif|a <b> & \"c\" d|Default|,,|-|-",
        "<IMG src=a.gif alt=New border=3 width=50%>");
    row("looks like another", "<img lowsrc=x.gif data-src=y.gif src=a.gif bordercolor=red>",
        "<IMG lowsrc=x.gif data-src=y.gif src=a.gif bordercolor=red>", "a.gif||Default|,,|-|-",
        "<IMG lowsrc=x.gif data-src=y.gif src=a.gif bordercolor=red alt=New border=3 width=50%>");
    row("blank in the name", "<img src=\"b%20c.png\">", "<IMG src=b%20c.png>", "b c.png||Default|,,|-|-",
        "<IMG src=b%20c.png alt=New border=3 width=50%>");
    row("from above", "<img src=\"../other/x.gif\">", "<IMG src=../other/x.gif>", "||Default|,,|-|-",
        "<IMG src=../other/x.gif alt=New border=3 width=50%>");
    row("of the web", "<img src=\"http://example.org/a.gif?x=1&amp;y\">",
        "<IMG src=\"http://example.org/a.gif?x=1&amp;y\">", "||Default|,,|-|-",
        "<IMG src=\"http://example.org/a.gif?x=1&amp;y\" alt=New border=3 width=50%>");
    row("in a link", "<p>x <a href=\"b.htm\"><b><img src=a.gif border=0></b></a> y</p>", "<IMG src=a.gif border=0>",
        "a.gif||Default|0,,|-|-", "<IMG src=a.gif border=3 alt=New width=50%>");
    row("server code in the tag", "<img src=a.gif <?php echo $size > 1 ? 'width=\"7\"' : '' ?> vspace=1>",
        "<IMG src=a.gif <?php echo $size > 1 ? 'width=\"7\"' : '' ?> vspace=1>", "a.gif||Default|,,1|-|-",
        "<IMG src=a.gif <?php echo $size > 1 ? 'width=\"7\"' : '' ?> vspace=1 alt=New border=3 width=50%>");
    row("server code in values", "<img src=\"<%= pic %>\" alt=\"<% a %>\" width=\"<?= $w ?>\">",
        "<IMG src=\"<%= pic %>\" alt=\"<% a %>\" width=\"<?= $w ?>\">", "|<% a %>|Default|,,|<?= $w ?>|-",
        "<IMG src=\"<%= pic %>\" alt=New width=50% border=3>");
    row("in a table", "<table><tr><td>q <img src=a.gif vspace=2></td></tr></table>", "<IMG src=a.gif vspace=2>",
        "a.gif||Default|,,2|-|-", "<IMG src=a.gif vspace=2 alt=New border=3 width=50%>");
}

void FormImageTest::fragments()
{
    QFETCH(QString, body);
    QFETCH(QString, tag);
    QFETCH(QString, shown);
    QFETCH(QString, after);
    LoadBody(u"<div>x "_s + body + u" y</div>"_s);
    const QString before = Body();
    Select(tag);
    QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    Open();
    QCOMPARE(Shown(), shown);
    Click("Command1");
    QCOMPARE(m_form->result(), int(QDialog::Accepted));
    QCOMPARE(Body(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);

    Open();
    Find<QPlainTextEdit>("EditAltText")->setPlainText(u"New"_s);
    Find<QLineEdit>("EditBorder")->setText(u"3"_s);
    Find<QCheckBox>("CheckSetWidth")->setChecked(true);
    Find<QLineEdit>("EditWidth")->setText(u"50"_s);
    Find<QRadioButton>("OptionWidthPercent")->setChecked(true);
    if (tag == after) {
        Click("Command1");
        return;
    }
    OkAndSave();
    QCOMPARE(Body(), QString(before).replace(tag, after));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Body(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void FormImageTest::addresses_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("address");
    const QString page = u"/home/ann/site/sub/page.htm"_s;
    QTest::newRow("letters with a meaning") << u"/home/ann/site/sub/50% #1?.gif"_s << page << u"50%25 %231%3F.gif"_s;
    QTest::newRow("no separator") << u"/home/ann/site/sub/a\\b.gif"_s << page << u"a%5Cb.gif"_s;
    QTest::newRow("far away") << u"/mnt/stick/a.gif"_s << page << u"../../../../mnt/stick/a.gif"_s;
    QTest::newRow("page without a name") << u"/home/ann/a b.gif"_s << QString() << u"file:///home/ann/a%20b.gif"_s;
    QTest::newRow("page never saved") << u"/home/ann/a.gif"_s << u"NEW PAGE"_s << u"file:///home/ann/a.gif"_s;
}

void FormImageTest::addresses()
{
    QFETCH(QString, path);
    QFETCH(QString, page);
    QTEST(AddressOfFile(path, page), "address");
}

void FormImageTest::newPicture_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QString>("after");
    const QString plain = u"<html><body><p>words</p><hr></body></html>"_s;
    const QString other = u"other/Gr\u00fc\u00dfe 100%.png"_s;
    const QString copied =
        u"<IMG src=\"Gr\u00fc\u00dfe 100%25.png\" border=0 hspace=0 vspace=0 width=200 height=100>"_s;
    QTest::newRow("at the caret, from another folder")
        << plain << QString() << other << u"<P>"_s + copied + u"words</P><HR>"_s;
    QTest::newRow("page without an end") << u"<p>words"_s << QString() << other << u"<P>"_s + copied + u"words</P>"_s;
    QTest::newRow("in place of an object") << plain << u"<HR>"_s << other << u"<P>words</P>"_s + copied;
    QTest::newRow("beside a picture")
        << u"<html><body><p>words <img src=a.gif></p></body></html>"_s << QString() << u"site/b c.png"_s
        << u"<P><IMG src=\"b c.png\" border=0 hspace=0 vspace=0 width=300 height=60>words <IMG src=a.gif></P>"_s;
    QTest::newRow("of the newer kind")
        << plain << QString() << u"site/d.webp"_s
        << u"<P><IMG src=d.webp border=0 hspace=0 vspace=0 width=170 height=90>words</P><HR>"_s;
}

void FormImageTest::newPicture()
{
    QFETCH(QString, page);
    QFETCH(QString, selected);
    QFETCH(QString, picture);
    QFETCH(QString, after);
    const QString path = m_rig->Put(u"site/page.htm"_s, page.toUtf8());
    QVERIFY(m_rig->Load(path));
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    const QString before = Body();
    Select(selected);
    Open();
    QCOMPARE(Shown(), u"||Default|0,0,0|-|-"_s);
    m_rig->Dialogs.ExpectOpen(m_rig->Path(picture));
    Click("CommandBrowse");
    QCOMPARE(Find<QStackedWidget>("PictureBox")->currentWidget()->objectName(), u"Image2"_s);
    OkAndSave();
    QCOMPARE(Body(), after);
    QCOMPARE(BytesOf(m_rig->Path(u"site/"_s + QFileInfo(picture).fileName())), BytesOf(m_rig->Path(picture)));
    QVERIFY(BytesOf(path).contains("<img src="));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Body(), before);
}

void FormImageTest::pageFolderIsReadOnly()
{
    LoadBody(u"<p>words</p>"_s);
    Select({});
    QFile site(m_rig->Path(u"site"_s));
    QVERIFY(site.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    {
        const WithoutPrivileges plainUser;
        Open();
        m_rig->Dialogs.ExpectOpen(m_rig->Path(u"other/Gr\u00fc\u00dfe 100%.png"_s));
        Click("CommandBrowse");
        m_rig->Boxes.Expect(Answer::Ok, u"could not be copied into the folder of the page: access denied."_s);
        OkAndSave();
    }
    QVERIFY(site.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(Body(), u"<P><IMG src=\"../other/Gr\u00fc\u00dfe 100%25.png\" border=0 hspace=0 vspace=0 width=200 "
                     "height=100>words</P>"_s);
}

void FormImageTest::vanishedOrNoPicture()
{
    m_rig->Put(u"site/text.gif"_s, "no picture");
    LoadBody(u"<p>words <img src=gone.gif width=7></p>"_s);
    Select(u"<IMG src=gone.gif width=7>"_s);
    Open();
    QCOMPARE(Find<QLabel>("Image1")->text(), u"The picture is not there"_s);
    Choose(u"a.gif"_s);
    QCOMPARE(Find<QStackedWidget>("PictureBox")->currentWidget()->objectName(), u"Image1"_s);
    QCOMPARE(Shown(), u"a.gif||Default|,,|40|20"_s);
    Choose(u"text.gif"_s);
    QCOMPARE(Find<QLabel>("Image1")->text(), u"No preview of this file"_s);
    QCOMPARE(Shown(), u"text.gif||Default|,,|-|-"_s);
    OkAndSave();
    QCOMPARE(Body(), u"<P>words <IMG src=text.gif></P>"_s);
}

void FormImageTest::typesListTheirFiles()
{
    QStringList all{u"a.GIF"_s, u"b.jpg"_s, u"c.jpeg"_s, u"d.bmp"_s, u"e.wmf"_s,
                    u"f.wmg"_s, u"g.png"_s, u"h.webp"_s, u"i.svg"_s, u"noext"_s};
    for (const QString &name : all)
        m_rig->Put(u"other/"_s + name, "x");
    all << u"Gr\u00fc\u00dfe 100%.png"_s;
    const QStringList expected{
        u"All Files (*.*): a.GIF b.jpg c.jpeg d.bmp e.wmf f.wmg g.png Gr\u00fc\u00dfe 100%.png h.webp i.svg noext"_s,
        u"GIF and JPEG (*.gif, *jpg, *.jpeg): a.GIF b.jpg c.jpeg"_s,
        u"Windows Bitmaps (*.bmp): d.bmp"_s,
        u"Windows MetaFiles (*.wmg): e.wmf"_s,
        u"PNG Files (*.png): g.png Gr\u00fc\u00dfe 100%.png"_s,
        u"Web Pictures (*.png, *.gif, *.jpg, *.jpeg, *.webp, *.svg, *.avif): a.GIF b.jpg c.jpeg g.png "
        "Gr\u00fc\u00dfe 100%.png h.webp i.svg"_s};
    m_rig->App.ProjectDir = m_rig->Path(u"other"_s);
    Open(FormImage::Purpose::PickPath);
    auto *types = Find<QComboBox>("ComboType");
    QCOMPARE(types->currentIndex(), 1);
    QStringList listed;
    for (int type = 0; type < types->count(); ++type) {
        types->setCurrentIndex(type);
        QStringList names;
        const auto *list = Find<QListWidget>("File1");
        for (int row = 0; row < list->count(); ++row)
            names.append(list->item(row)->text());
        listed.append(types->currentText() + u": "_s + names.join(u' '));
    }
    QCOMPARE(listed, expected);
}

void FormImageTest::messagesKeepItOpen()
{
    LoadBody(u"<p>words</p>"_s);
    Select({});
    const QString before = Body();
    Open();
    const auto refused = [&](const QString &message) {
        m_rig->Boxes.Expect(Answer::Ok);
        Click("Command1");
        QCOMPARE(m_rig->Boxes.Boxes.last().Text, message);
        QVERIFY(m_form->isVisible());
    };
    refused(u"Please select an image to insert or press Cancel,"_s);
    Tick("optImageMap");
    QVERIFY(!Find<QPushButton>("cmdMapEdit")->isEnabled());
    QCOMPARE(Find<QPushButton>("cmdMapEdit")->toolTip(), u"Not available yet"_s);
    refused(u"Please set the image map attributes, or if you don't want to use an image map, choose Regular Image at "
            "the bottom left of the dialog"_s);
    Tick("optImageJump");
    Choose(u"a.gif"_s);
    refused(u"Please select a topic to jump to"_s);
    Find<QLineEdit>("EditHeight")->clear();
    refused(u"You must specify a valid height for the image."_s);
    QCOMPARE(m_form->focusWidget(), Find<QLineEdit>("EditHeight"));
    Find<QLineEdit>("EditWidth")->setText(u"wide"_s);
    refused(u"You must specify a valid width for the image."_s);
    QCOMPARE(Body(), before);

    // OK runs once, also when the list is clicked twice while a message is up.
    Tick("optImage");
    m_rig->Boxes.Boxes.clear();
    auto *list = Find<QListWidget>("File1");
    m_rig->Boxes.Expect(Answer::Ok);
    m_rig->Boxes.WhileAsking = [&] { emit list->itemDoubleClicked(list->item(0)); };
    Click("Command1");
    m_rig->Boxes.WhileAsking = nullptr;
    QCOMPARE(m_rig->Boxes.Boxes.size(), 1);
    Find<QLineEdit>("EditWidth")->setText(u"250"_s);
    Find<QRadioButton>("OptionWidthPercent")->setChecked(true);
    Find<QCheckBox>("CheckSetHeight")->setChecked(false);
    m_rig->Dialogs.ExpectSave(std::nullopt);
    emit list->itemDoubleClicked(list->item(0));
    QCOMPARE(Body(), u"<P><IMG src=a.gif border=0 hspace=0 vspace=0 width=100%>words</P>"_s);
}

void FormImageTest::leadsToAPage_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("typed"); // or the first page of the list
    QTest::addColumn<QString>("after");
    QTest::newRow("of the list") << u"<p>x<img src=a.gif></p>"_s << QString()
                                 << u"<P>x<A href=\"sub/two words.htm\"><IMG src=a.gif></A></P>"_s;
    QTest::newRow("typed") << u"<p>x<img src=a.gif></p>"_s << u"http://example.org/?a&b"_s
                           << u"<P>x<A href=\"http://example.org/?a&amp;b\"><IMG src=a.gif></A></P>"_s;
    QTest::newRow("a link already") << u"<p>x<a class=x href=\"old.htm\"><i><img src=a.gif></i></a></p>"_s << QString()
                                    << u"<P>x<A class=x href=\"sub/two words.htm\"><I><IMG src=a.gif></I></A></P>"_s;
}

void FormImageTest::leadsToAPage()
{
    QFETCH(QString, body);
    QFETCH(QString, typed);
    QFETCH(QString, after);
    m_parts.Pages = [this] {
        return QList<FormImage::SitePage>{{u"A > B"_s, m_rig->Path(u"site/sub/two words.htm"_s)}};
    };
    LoadBody(body);
    const QString before = Body();
    Select(u"<IMG src=a.gif>"_s);
    Open();
    QVERIFY(Find<QRadioButton>("optImage")->isChecked());
    Tick("optImageJump");
    auto *pages = Find<QComboBox>("cboImageHref");
    QCOMPARE(pages->currentText(), body.contains(u"old.htm"_s) ? u"old.htm"_s : QString());
    QCOMPARE(pages->itemText(0), u"A > B"_s + QString(50, u' ') + u'>' + m_rig->Path(u"site/sub/two words.htm"_s));
    if (typed.isEmpty())
        pages->setCurrentIndex(0);
    else
        pages->setEditText(typed);
    OkAndSave();
    QCOMPARE(Body(), after);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Body(), before);
}

void FormImageTest::mapGoesInWithThePicture()
{
    const QString old = u"<MAP name=plots><AREA href=x.htm></MAP>"_s;
    ImageMapHandOver given;
    m_parts.EditMap = [&](QWidget *, ImageMapHandOver &map) {
        given = map;
        map.MapSource = u"#plots"_s;
        map.MapText = u"<MAP name=plots><AREA href=new.htm></MAP>"_s;
        return true;
    };
    for (const bool hasMap : {true, false}) {
        m_rig->Page.HtmlDirty = false;
        m_rig->Surface.MarkClean();
        LoadBody(hasMap ? u"<p>x<img src=a.gif usemap=\"#plots\"></p>\n"_s + old : u"<p>x<img src=a.gif></p>"_s);
        const QString before = Body();
        Select(hasMap ? u"<IMG src=a.gif usemap=#plots>"_s : u"<IMG src=a.gif>"_s);
        Open();
        QCOMPARE(Find<QRadioButton>("optImageMap")->isChecked(), hasMap);
        if (!hasMap)
            Tick("optImageMap");
        Click("cmdMapEdit");
        QCOMPARE(given.MapName, hasMap ? u"plots"_s : u"USEFILE"_s);
        QCOMPARE(given.MapText, hasMap ? old : QString());
        QCOMPARE(given.PictureFile, m_rig->Path(u"site/a.gif"_s));
        OkAndSave();
        QVERIFY2(Body().startsWith(u"<P>x<IMG src=a.gif usemap=#plots></P>"_s), qPrintable(Body()));
        QCOMPARE(Body().count(u"<MAP"_s), 1);
        QVERIFY(Body().contains(u"<MAP name=plots><AREA href=new.htm></MAP>"_s));
        m_rig->Surface.ExecCommand(DECMD_UNDO);
        QVERIFY(m_rig->Surface.WaitWhileBusy());
        QCOMPARE(Body(), before);
        QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
    }
}

void FormImageTest::cancelLeavesNoTrace()
{
    LoadBody(u"<p>x<img src=a.gif></p>"_s);
    const QString before = Body();
    Select(u"<IMG src=a.gif>"_s);
    Open();
    m_rig->Dialogs.ExpectOpen(m_rig->Path(u"other/Gr\u00fc\u00dfe 100%.png"_s));
    Click("CommandBrowse");
    Tick("CheckPreview");
    QTest::keyClick(m_form.get(), Qt::Key_Escape);
    QVERIFY(!m_form->isVisible());
    QCOMPARE(Body(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(EntriesOf(m_rig->Path(u"site"_s)), m_files);
    QCOMPARE(m_rig->Edit->GetProj(u"Settings"_s, u"preview"_s, u"1"_s), u"0"_s);

    // Without a preview a file is chosen without its size.
    Open();
    Choose(u"a.gif"_s);
    QCOMPARE(Shown(), u"a.gif||Default|,,|-|-"_s);
}

void FormImageTest::picksAPath()
{
    LoadBody(u"<p>x<img src=a.gif></p>"_s);
    Select(u"<IMG src=a.gif>"_s);
    const QString before = Body();
    const QString picture = m_rig->Path(u"other/Gr\u00fc\u00dfe 100%.png"_s);
    Open(FormImage::Purpose::PickPath);
    QVERIFY(!Find<QWidget>("GroupSize")->isVisible());
    m_rig->Boxes.Expect(Answer::Ok, u"Please select an image"_s);
    Click("Command1");
    m_rig->Dialogs.ExpectOpen(picture);
    Click("CommandBrowse");
    Click("Command1");
    QCOMPARE(m_form->result(), int(QDialog::Accepted));
    QCOMPARE(m_form->PickedPath(), picture);
    QCOMPARE(Body(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(EntriesOf(m_rig->Path(u"site"_s)), m_files);
}

QTEST_MAIN(FormImageTest)
#include "FormImageTest.moc"
