#include "platform/PreviewView.h"
#include "shell/IconTheme.h"
#include "support/Program.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

const QStringList PageTips = u"New Page|Open Page|Save Page|Print|Cut|Copy|Paste|Find|Insert/Edit Graphic|Insert Table|"
                             "Insert/Edit Hyperlink|Insert Bookmark|Spelling Check|Go Back|Refresh|Stop|Inkloom Help|"
                             "Show/Hide Details"_s.split(u'|');
const QStringList PageKeys = u"New|Open|Save|Print|Cut|Copy|Paste|Find|Graphic|Table|Link|Bookmark|Spell|GoBack|"
                             "Refresh|Stop|help|showhide"_s.split(u'|');
const QStringList FormatTips = u"bold|Italic|Underline|Text Color|Justify Left|Center|Justify Right|Numbering|"
                               "Bullet Points|Decrease Indent|Increase Indent"_s.split(u'|');
const QStringList FormatKeys = u"Bold|Italic|Underline|Color|LeftJustify|Center|RightJustify|Numbers|Bullets|Outdent|"
                               "Indent"_s.split(u'|');

} // namespace

/// The toolbars and the format boxes, with the mouse and the keyboard.
class ToolBarsTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void ButtonsInOrder();
    void FormatButtons_data();
    void FormatButtons();
    void FollowTheSelection();
    void FollowWithoutWaiting();
    void TextColor();
    void BoxesSend_data();
    void BoxesSend();
    void SameRowTwice();
    void BoxesWaitForTheirPage();
    void WheelChangesNothing();
    void ClipboardOfTheViewThatShows();
    void OneWindowToFind_data();
    void OneWindowToFind();
    void GoBackAlongTheHistory();
    void PreviewButtons();
    void ShowHideDetails();
    void TableButtonInTheSource();
    void Print_data();
    void Print();

private:
    void Open(const QString &body)
    {
        m_program->Write(u"p.htm"_s, u"<html><head><title>t</title></head><body>"_s + body + u"</body></html>"_s);
        m_program->Open(u"p.htm"_s);
        Surface().CaretToPageStart();
    }
    DesignSurface &Surface() const { return m_program->Page().Surface(); }
    QComboBox *Box(const QString &name) const { return m_program->Find<QComboBox>(name); }
    QToolButton *Button(const QString &key) const
    {
        for (const QString &bar : {u"tbToolBar"_s, u"Toolbar1"_s}) {
            auto *tools = m_program->Find<QToolBar>(bar);
            for (QAction *action : tools->actions())
                if (action->objectName() == key)
                    return qobject_cast<QToolButton *>(tools->widgetForAction(action));
        }
        return nullptr;
    }
    void Press(const QString &key) const { QTest::mouseClick(Button(key), Qt::LeftButton); }
    /// Drops the list of a box and clicks the row there.
    void Choose(const QString &box, int row) const
    {
        QComboBox *combo = Box(box);
        QTest::mouseClick(combo, Qt::LeftButton);
        QTRY_VERIFY(combo->view()->isVisible());
        const QRect place =
            combo->view()->visualRect(combo->model()->index(row, 0)) & combo->view()->viewport()->rect();
        QTest::mouseMove(combo->view()->viewport(), place.center());
        // The list takes no click within a moment of its being dropped: that one only ends the press that dropped it.
        QTRY_VERIFY((QTest::mouseClick(combo->view()->viewport(), Qt::LeftButton, {}, place.center()),
                     !combo->view()->isVisible()));
    }
    QString Html() const { return Surface().DocumentHTML(); }

    std::unique_ptr<Program> m_program;
};

void ToolBarsTest::initTestCase()
{
    StartEngine();
}

void ToolBarsTest::init()
{
    UsePrivateState();
    m_program = std::make_unique<Program>();
}

void ToolBarsTest::cleanup()
{
    m_program->Close();
    m_program.reset();
}

void ToolBarsTest::ButtonsInOrder()
{
    Open(u"<p>a</p>"_s);
    const auto listed = [&](const QString &bar, const auto &read) {
        QStringList list;
        for (const QAction *action : m_program->Find<QToolBar>(bar)->actions())
            if (!action->objectName().isEmpty())
                list.append(read(*action));
        return list;
    };
    const auto key = [](const QAction &action) { return action.objectName(); };
    const auto tip = [](const QAction &action) { return action.toolTip().section(u'\n', 0, 0); };
    QCOMPARE(listed(u"tbToolBar"_s, key), PageKeys);
    QCOMPARE(listed(u"tbToolBar"_s, tip), PageTips);
    QCOMPARE(listed(u"Toolbar1"_s, key), FormatKeys);
    QCOMPARE(listed(u"Toolbar1"_s, tip), FormatTips);
    for (const QString &each : PageKeys + FormatKeys)
        QVERIFY2(!Button(each)->icon().isNull(), qPrintable(each));
}

void ToolBarsTest::FormatButtons_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("html");
    QTest::newRow("Bold") << u"Bold"_s << u"<P><B>word</B></P>"_s;
    QTest::newRow("Italic") << u"Italic"_s << u"<P><I>word</I></P>"_s;
    QTest::newRow("Underline") << u"Underline"_s << u"<P><U>word</U></P>"_s;
    QTest::newRow("Center") << u"Center"_s << u"<P align=center>word</P>"_s;
    QTest::newRow("RightJustify") << u"RightJustify"_s << u"<P align=right>word</P>"_s;
    QTest::newRow("Numbers") << u"Numbers"_s << u"<OL>\n<LI>word"_s;
    QTest::newRow("Bullets") << u"Bullets"_s << u"<UL>\n<LI>word"_s;
    QTest::newRow("Indent") << u"Indent"_s << u"<BLOCKQUOTE"_s;
}

void ToolBarsTest::FormatButtons()
{
    QFETCH(QString, key);
    QFETCH(QString, html);
    Open(u"<p>word</p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    Press(key);
    const auto squeezed = [](QString text) { return text.remove(u'\n').remove(u'\r'); };
    QVERIFY2(squeezed(Html()).contains(squeezed(html)), qPrintable(Html()));
    const QHash<QString, QString> back{{u"Indent"_s, u"Outdent"_s}, {u"Center"_s, u"LeftJustify"_s}};
    if (back.contains(key)) {
        Press(back.value(key));
        QVERIFY2(!squeezed(Html()).contains(squeezed(html)), qPrintable(Html()));
    }
}

void ToolBarsTest::FollowTheSelection()
{
    Open(u"<p>plain</p><h2 align=center><font face=Courier size=5>head <b>fat</b></font></h2>"
         "<p><font face=Georgia>serif</font></p>"_s);
    const auto pressed = [&](const QString &key) { return m_program->Find<QAction>(key)->isChecked(); };
    QVERIFY(Surface().SelectText(u"fat"_s));
    QTRY_COMPARE(Box(u"ComboStyle"_s)->currentText(), u"Heading 2"_s);
    QCOMPARE(Box(u"FontCombo"_s)->currentText(), u"Courier"_s);
    QCOMPARE(Box(u"FontSizeCombo"_s)->currentIndex(), 4);
    QVERIFY(pressed(u"Bold"_s) && pressed(u"Center"_s) && !pressed(u"Italic"_s) && !pressed(u"Bullets"_s));
    QVERIFY(Surface().SelectText(u"head fat"_s)); // bold in a part of it only
    QTRY_VERIFY(!pressed(u"Bold"_s));
    QVERIFY(pressed(u"Center"_s));
    QVERIFY(Surface().SelectText(u"serif"_s));
    QTRY_COMPARE(Box(u"ComboStyle"_s)->currentText(), u"Normal"_s);
    QCOMPARE(Box(u"FontCombo"_s)->currentIndex(), -1); // none of the rows, and its name all the same
    QCOMPARE(Box(u"FontCombo"_s)->placeholderText(), u"Georgia"_s);
    Press(u"Bold"_s);
    QTRY_VERIFY(pressed(u"Bold"_s));
    QVERIFY(!Html().contains(u"face=Courier size=5>serif"_s)); // a box that follows chooses nothing
}

/// What runs at every move of the caret neither asks the page nor waits for keys that are on their way to it.
void ToolBarsTest::FollowWithoutWaiting()
{
    Open(u"<p>a</p>"_s);
    constexpr int Rounds = 20;
    QElapsedTimer clock;
    qint64 spent = 0;
    for (int i = 0; i < Rounds; ++i) {
        m_program->Type(u"x"_s);
        clock.start();
        emit Surface().DisplayChanged();
        spent += clock.nsecsElapsed();
    }
    QVERIFY2(spent / Rounds < 5'000'000, qPrintable(u"%1 us"_s.arg(spent / Rounds / 1000)));
    QTRY_VERIFY(Html().contains(QString(Rounds, u'x')));
}

void ToolBarsTest::TextColor()
{
    Open(u"<p><font color=#123456>word</font></p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    const QString before = Html();
    m_program->Dialogs.ExpectColor({});
    Press(u"Color"_s);
    QCOMPARE(Html(), before);
    m_program->Dialogs.ExpectColor(QColor(0xab, 0xcd, 0xef));
    Press(u"Color"_s);
    QCOMPARE(m_program->Dialogs.StartColors, (QList<QColor>{QColor(0x12, 0x34, 0x56), QColor(0x12, 0x34, 0x56)}));
    QVERIFY2(Html().contains(u"<FONT color=#ABCDEF>word</FONT>"_s), qPrintable(Html()));
}

void ToolBarsTest::BoxesSend_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("html");
    QTest::newRow("first size") << u"FontSizeCombo"_s << 0 << u"<P><FONT size=1>word</FONT></P>"_s;
    QTest::newRow("last size") << u"FontSizeCombo"_s << 6 << u"<P><FONT size=7>word</FONT></P>"_s;
    QTest::newRow("first font") << u"FontCombo"_s << 0 << u"<P><FONT face=\"Times New Roman\">word</FONT></P>"_s;
    QTest::newRow("last font") << u"FontCombo"_s << 5 << u"<P><FONT face=Wingdings>word</FONT></P>"_s;
    QTest::newRow("heading") << u"ComboStyle"_s << 2 << u"<H2>word</H2>"_s;
    QTest::newRow("format of the surface's own") << u"ComboStyle"_s << 8 << u"<ADDRESS>word</ADDRESS>"_s;
}

void ToolBarsTest::BoxesSend()
{
    QFETCH(QString, box);
    QFETCH(int, row);
    QFETCH(QString, html);
    Open(u"<p>word</p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    Choose(box, row);
    QVERIFY2(Html().contains(html), qPrintable(Html()));
    QTRY_COMPARE(QApplication::focusWidget(), Surface().InputWidget());
    QTRY_COMPARE(Box(box)->currentIndex(), row);
}

void ToolBarsTest::SameRowTwice()
{
    Open(u"<p>word</p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    Choose(u"FontCombo"_s, 1);
    QVERIFY(Html().contains(u"face=Arial"_s));
    m_program->Page().Selection().DisplayChangedBusy = true; // the box stays at the row
    m_program->Menu(u"editundo"_s);
    QVERIFY(!Html().contains(u"face=Arial"_s));
    QCOMPARE(Box(u"FontCombo"_s)->currentIndex(), 1);
    Choose(u"FontCombo"_s, 1);
    QVERIFY(Html().contains(u"face=Arial"_s));
}

void ToolBarsTest::BoxesWaitForTheirPage()
{
    Open(u"<p>word</p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    const QString before = Html();
    m_program->Page().Page().FormatBoxesReady = false;
    Choose(u"FontCombo"_s, 1);
    QTRY_COMPARE(QApplication::focusWidget(), Surface().InputWidget()); // all the same
    Choose(u"FontSizeCombo"_s, 6);
    QCOMPARE(Html(), before);
}

void ToolBarsTest::WheelChangesNothing()
{
    Open(u"<p>word</p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    QComboBox *box = Box(u"FontSizeCombo"_s);
    QTRY_COMPARE(box->currentIndex(), 2);
    QWheelEvent wheel(box->rect().center(), box->mapToGlobal(box->rect().center()), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(box, &wheel);
    QCOMPARE(box->currentIndex(), 2);
    QVERIFY(!Surface().IsDirty());
}

void ToolBarsTest::ClipboardOfTheViewThatShows()
{
    Open(u"<p>word other</p>"_s);
    QVERIFY(Surface().SelectText(u"word"_s));
    Press(u"Cut"_s);
    QVERIFY2(!Html().contains(u"word"_s), qPrintable(Html())); // not what the menu's Cut does
    Press(u"Paste"_s);
    QVERIFY2(Html().contains(u"word"_s), qPrintable(Html()));
    QVERIFY(Surface().SelectText(u"other"_s));
    Press(u"Copy"_s);

    m_program->Menu(u"viewsource"_s);
    SourceEditor &source = m_program->Page().Source();
    source.Select(source.Text().size() + 1, 0);
    Press(u"Paste"_s);
    QVERIFY2(source.Text().endsWith(u"other"_s), qPrintable(source.Text()));
    source.Select(source.Text().indexOf(u"<title>"_s) + 1, 7);
    Press(u"Copy"_s);
    source.Select(source.Text().size() + 1, 0);
    Press(u"Paste"_s);
    QVERIFY2(source.Text().endsWith(u"other<title>"_s), qPrintable(source.Text()));
    source.Select(source.Text().size() - 6, 7);
    Press(u"Cut"_s);
    QVERIFY2(source.Text().endsWith(u"other"_s), qPrintable(source.Text()));
}

void ToolBarsTest::OneWindowToFind_data()
{
    QTest::addColumn<bool>("inSource");
    QTest::newRow("page") << false;
    QTest::newRow("source") << true;
}

/// The button, the menu and the key: whatever was typed there last is there.
void ToolBarsTest::OneWindowToFind()
{
    QFETCH(bool, inSource);
    Open(u"<p>one two</p>"_s);
    SourceEditor &source = m_program->Page().Source();
    if (inSource)
        m_program->Menu(u"viewsource"_s);
    source.Select(1, 0);
    Press(u"Find"_s);
    QList<QDialog *> windows = m_program->Window->findChildren<QDialog *>(u"FormReplace"_s);
    QCOMPARE(windows.size(), 1);
    auto *words = windows.first()->findChild<QLineEdit *>(u"EditFind"_s);
    QTest::keyClicks(words, u"two"_s);
    QTest::keyClick(words, Qt::Key_Return);
    QCOMPARE(inSource ? source.Text().mid(source.SelectionStart() - 1, source.SelectionLength())
                      : Surface().DOM().SelectionTextRange().Text(),
             u"two"_s);
    for (const bool menu : {true, false}) {
        QTest::keyClick(words, Qt::Key_Escape);
        QVERIFY(!words->isVisible());
        if (menu)
            m_program->Menu(u"editfind"_s);
        else
            Surface().ExecCommand(DECMD_FINDTEXT);
        QVERIFY(words->isVisible());
        QCOMPARE(words->text(), u"two"_s);
    }
    QCOMPARE(m_program->Window->findChildren<QDialog *>(u"FormReplace"_s), windows);
}

void ToolBarsTest::GoBackAlongTheHistory()
{
    m_program->Open(u"a.htm"_s);
    QVERIFY(!Button(u"GoBack"_s)->isEnabled());
    m_program->Page().Page().FileToLoad = m_program->Path(u"b.htm"_s);
    QVERIFY(m_program->Page().LoadFile());
    QVERIFY(Button(u"GoBack"_s)->isEnabled());
    Press(u"GoBack"_s);
    QCOMPARE(m_program->Page().Page().CurrentFilePath, m_program->Path(u"a.htm"_s));
    QVERIFY(!Button(u"GoBack"_s)->isEnabled()); // the page that was left is not put down again
}

void ToolBarsTest::PreviewButtons()
{
    m_program->Write(u"next.htm"_s, u"<html><head><title>n</title></head><body>next</body></html>"_s);
    Open(u"<p><a href=next.htm style=\"display:block;height:400px\">next</a></p>"_s);
    auto *preview = m_program->Find<PreviewView>(u"WebBrowser1"_s);
    QSignalSpy loaded(preview, &PreviewView::Loaded);
    m_program->Menu(u"viewpreview"_s);
    QTRY_COMPARE(loaded.size(), 1);
    const QUrl first = preview->Url();
    Press(u"Refresh"_s);
    QTRY_COMPARE(loaded.size(), 2);
    QWidget *page = preview->focusProxy();
    QTRY_VERIFY((QTest::mouseClick(page->focusProxy() ? page->focusProxy() : page, Qt::LeftButton, {}, {60, 60}),
                 preview->Url() != first));
    QVERIFY(preview->Url().fileName() == u"next.htm"_s);
    Press(u"Stop"_s);
    Press(u"GoBack"_s);
    QTRY_COMPARE(preview->Url(), first);
    QCOMPARE(m_program->Page().Page().CurrentFilePath, m_program->Path(u"p.htm"_s)); // the page being edited stays
}

void ToolBarsTest::ShowHideDetails()
{
    Open(u"<p>a</p>"_s);
    const auto pressed = [&] { return m_program->Find<QAction>(u"showhide"_s)->isChecked(); };
    for (const bool shown : {true, false}) {
        Press(u"showhide"_s);
        QCOMPARE(Surface().ShowDetails(), shown);
        QCOMPARE(Surface().ShowBorders(), shown);
        QCOMPARE(m_program->Drop(u"ViewSub1"_s)->isChecked(), shown);
        QTRY_COMPARE(pressed(), shown);
    }
    m_program->Menu(u"ViewSub1"_s);
    QTRY_VERIFY(pressed());
}

/// The button is on there, but a table that the source does not know of would be lost with it.
void ToolBarsTest::TableButtonInTheSource()
{
    Open(u"<p>a</p>"_s);
    m_program->Menu(u"viewsource"_s);
    QVERIFY(Button(u"Table"_s)->isEnabled());
    Press(u"Table"_s);
    QVERIFY(!Surface().IsDirty());
    m_program->Menu(u"viewnormal"_s);
    QTimer accept;
    connect(&accept, &QTimer::timeout, this, [] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            dialog->findChild<QPushButton *>(u"OkCmd"_s)->click();
    });
    accept.start(20);
    Press(u"Table"_s);
    QVERIFY(Html().contains(u"<TABLE"_s));
}

void ToolBarsTest::Print_data()
{
    QTest::addColumn<QString>("view");
    QTest::newRow("design view") << u"viewnormal"_s;
    QTest::newRow("source") << u"viewsource"_s;
}

void ToolBarsTest::Print()
{
    QFETCH(QString, view);
    Open(u"<p>a line of the page</p>\r\n"_s.repeated(150));
    m_program->Menu(view);
    const QString file = m_program->Path(u"paper.pdf"_s);
    const auto pages = [&] {
        QFile pdf(file);
        return pdf.open(QIODevice::ReadOnly) ? pdf.readAll().count("/Type /Page\n") : -1;
    };
    m_program->Dialogs.ExpectPrint({});
    Press(u"Print"_s);
    m_program->Dialogs.ExpectPrint(file);
    Press(u"Print"_s);
    QTRY_VERIFY2_WITH_TIMEOUT(pages() > 1 && pages() < 12, qPrintable(QString::number(pages())), 30000);
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QIcon::setThemeSearchPaths({u"/usr/share/icons"_s}); // a platform without a desktop knows of none
    UseIconTheme();
    ToolBarsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ToolBarsTest.moc"
