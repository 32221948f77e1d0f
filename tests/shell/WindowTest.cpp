#include "editing/FormBackground.h"
#include "editing/FormBookmark.h"
#include "editing/FormHyperLink.h"
#include "editing/FormImage.h"
#include "editing/InsertHTMLDlg.h"
#include "platform/surface/FontDialog.h"
#include "shell/FormSettings.h"
#include "shell/IconTheme.h"
#include "shell/WorkArea.h"
#include "site/FormNewFolder.h"
#include "site/FormNewTopic.h"
#include "support/AccessibleWalk.h"
#include "support/Program.h"

#include <QRegularExpression>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The whole window: its panes wired up, and what it is for somebody without a mouse, without eyes, or in the dark.
class WindowTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void paneIsHiddenAndRemembered();
    void updatePanelLeadsToItsPage();
    void savingCoversTheSource();
    void paneKeysGoRound();
    void windowIsAccessible_data();
    void windowIsAccessible();
    void dialogsAreAccessible_data();
    void dialogsAreAccessible();
    void themes_data();
    void themes();

private:
};

void WindowTest::initTestCase()
{
    StartEngine();
}

void WindowTest::init()
{
    UsePrivateState();
}

void WindowTest::paneIsHiddenAndRemembered()
{
    Program program;
    program.Open(u"a.htm"_s);
    const auto pane = [&] { return program.Find<QWidget>(u"LeftPane"_s); };
    QCOMPARE(pane()->width(), 186);
    QCOMPARE(program.Drop(u"hidepane"_s)->text(), u"&Hide Files/Form Builder Pane"_s);
    QTest::mouseClick(program.Find<QWidget>(u"CommandHide"_s), Qt::LeftButton);
    QCOMPARE(program.Drop(u"hidepane"_s)->text(), u"&Show Files/Form Builder Pane"_s);
    QCOMPARE(pane()->width(), 9);
    QVERIFY(program.Window->close());
    QCOMPARE(program.Setting(u"showpane"_s), u"0"_s);

    program.Window.reset();
    program.Open(u"a.htm"_s);
    QCOMPARE(pane()->width(), 9);
    QTest::keyClick(program.Input(), Qt::Key_F9);
    QCOMPARE(pane()->width(), 186);
    QCOMPARE(program.Drop(u"hidepane"_s)->text(), u"&Hide Files/Form Builder Pane"_s);
    QVERIFY(program.Window->close());
    QCOMPARE(program.Setting(u"showpane"_s), u"1"_s);
}

void WindowTest::updatePanelLeadsToItsPage()
{
    Program program;
    program.Open(u"a.htm"_s);
    QTest::mouseClick(program.Find<QWidget>(u"StatusBar1Update"_s), Qt::LeftButton);
    QCOMPARE(program.Browsed, QList{QUrl::fromLocalFile(program.Path(u"data/help/updates.htm"_s))});
}

void WindowTest::savingCoversTheSource()
{
    Program program;
    program.Open(u"a.htm"_s);
    const auto *cover = program.Find<QWidget>(u"PictureWhiteOut"_s);
    QStringList seen;
    connect(&program.Page(), &Editor::Saving, program.Window.get(), [&](bool on) {
        seen += (on ? u"save"_s : u"end"_s) + (cover->isVisible() ? u" covered"_s : u""_s);
        if (cover->isVisible())
            QCOMPARE(cover->size(), program.Page().Source().size());
    });
    program.Type(u"x"_s);
    program.Menu(u"filesave"_s);
    program.Menu(u"viewsource"_s);
    program.Type(u"<!-- y -->"_s);
    program.Menu(u"filesave"_s);
    QCOMPARE(seen, QStringList({u"save"_s, u"end"_s, u"save covered"_s, u"end"_s}));
    QVERIFY(program.Page().Source().isVisible());
}

void WindowTest::paneKeysGoRound()
{
    Program program;
    program.Open(u"a.htm"_s);
    QVERIFY(QTest::qWaitForWindowActive(program.Window.get()));
    program.Input();
    const auto where = [&] {
        const QWidget *focus = program.Window->focusWidget();
        for (const QString &area :
             {u"Toolbar1"_s, u"LeftPane"_s, u"DHTMLEdit1"_s, u"Source1"_s, u"PictureLinks"_s, u"StatusBar1"_s})
        {
            if (program.Find<QWidget>(area)->isAncestorOf(focus))
                return area;
        }
        return u"nowhere"_s;
    };
    const auto round = [&](int steps, Qt::KeyboardModifiers modifiers = {}) {
        QStringList areas;
        for (int i = 0; i < steps; ++i) {
            QTest::keyClick(program.Window->focusWidget(), Qt::Key_F6, modifiers);
            areas += where();
        }
        return areas.join(u' ');
    };
    QCOMPARE(round(4), u"StatusBar1 Toolbar1 LeftPane DHTMLEdit1"_s);
    QCOMPARE(round(4, Qt::ShiftModifier), u"LeftPane Toolbar1 StatusBar1 DHTMLEdit1"_s);
    program.Menu(u"viewsource"_s);
    QCOMPARE(round(3), u"StatusBar1 LeftPane Source1"_s); // the format boxes are off
    program.Find<QWidget>(u"PictureLinks"_s)->show();
    QCOMPARE(round(4), u"PictureLinks StatusBar1 LeftPane Source1"_s);
    QTest::keyClick(program.Window->focusWidget(), Qt::Key_F9);
    QCOMPARE(where(), u"Source1"_s);
}

void WindowTest::windowIsAccessible_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("leftPage");
    QTest::newRow("Normal") << u"viewnormal"_s << 0;
    QTest::newRow("Page Properties, Form Builder") << u"viewproperties"_s << 1;
    QTest::newRow("HTML Source") << u"viewsource"_s << 0;
    QTest::newRow("Preview") << u"viewpreview"_s << 0;
    QTest::newRow("Publish") << u"viewpublish"_s << 0;
}

void WindowTest::windowIsAccessible()
{
    QFETCH(QString, view);
    QFETCH(int, leftPage);
    Program program;
    program.Open(u"a.htm"_s);
    QVERIFY(QTest::qWaitForWindowActive(program.Window.get()));
    program.Menu(view);
    program.Find<QTabBar>(u"TabStrip1"_s)->setCurrentIndex(leftPage);
    program.Find<QWidget>(u"PictureLinks"_s)->show();
    QCOMPARE(AccessibleWalk::Nameless(program.Window.get()).join(u"; "_s), QString());
    QCOMPARE(AccessibleWalk::DoubledMnemonics(program.Window.get()).join(u"; "_s), QString());
    QCOMPARE(AccessibleWalk::FocusUnseen(program.Find<QWidget>(u"LeftPane"_s)).join(u"; "_s), QString());
    if (view == u"viewproperties")
        QCOMPARE(AccessibleWalk::NotReachedByTab(program.Window.get()).join(u"; "_s), QString());
    for (QToolButton *button : program.Window->findChildren<QToolButton *>()) {
        if (button->isVisible())
            QVERIFY2(!QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name).isEmpty(),
                     qPrintable(AccessibleWalk::NameOf(button)));
    }
}

void WindowTest::dialogsAreAccessible_data()
{
    QTest::addColumn<QString>("dialog");
    for (const char *name :
         {"FormSettings", "FormBackground", "InsertHTMLDlg", "FontDialog", "FormNewTopic", "FormNewFolder",
          "FormHyperLink", "FormBookmark", "FormImage", "editfind", "editreplace", "editglobalreplace"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void WindowTest::dialogsAreAccessible()
{
    QFETCH(QString, dialog);
    Program program;
    QVERIFY(QDir().mkpath(program.Path(u"data/Templates"_s))); // an empty list shows no place of the keyboard
    program.Write(u"data/Templates/article.htm"_s, PageText);
    program.Write(u"picture.gif"_s, u"as good as any"_s);
    program.Open(u"a.htm"_s);
    Editor &page = program.Page();
    QWidget *parent = program.Window.get();
    std::unique_ptr<QDialog> window;
    if (dialog == u"FormSettings")
        window = std::make_unique<FormSettings>(page.App(), program.Ini, parent);
    else if (dialog == u"FormBackground")
        window = std::make_unique<FormBackground>(page, parent);
    else if (dialog == u"FormHyperLink")
        window = std::make_unique<FormHyperLink>(page, parent);
    else if (dialog == u"FormBookmark")
        window = std::make_unique<FormBookmark>(page.Surface(), parent);
    else if (dialog == u"FormImage")
        window = std::make_unique<FormImage>(page, FormImage::Parts(), FormImage::Purpose::EditPage, parent);
    else if (dialog == u"InsertHTMLDlg")
        window = std::make_unique<InsertHTMLDlg>(page.Surface(), parent);
    else if (dialog == u"FontDialog")
        window = std::make_unique<FontDialog>(CharacterFormat(), parent);
    else if (dialog == u"FormNewTopic")
        window = std::make_unique<FormNewTopic>(page, program.Path(QString()), FormNewTopic::NewFolder(), parent);
    else if (dialog == u"FormNewFolder")
        window = std::make_unique<FormNewFolder>(program.Path(QString()), parent);
    QDialog *shown = window.get();
    if (shown) {
        shown->show();
    } else {
        program.Menu(dialog);
        shown = parent->findChild<QDialog *>();
    }
    QVERIFY(shown);
    shown->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(shown));
    QVERIFY(!shown->windowTitle().isEmpty());
    QVERIFY(!AccessibleWalk::Controls(shown).isEmpty());
    QCOMPARE(AccessibleWalk::Nameless(shown).join(u"; "_s), QString());
    QCOMPARE(AccessibleWalk::DoubledMnemonics(shown).join(u"; "_s), QString());
    QCOMPARE(AccessibleWalk::NotReachedByTab(shown).join(u"; "_s), QString());
    QCOMPARE(AccessibleWalk::FocusUnseen(shown).join(u"; "_s), QString());
    QTest::keyClick(shown, Qt::Key_Escape);
    QVERIFY(!shown->isVisible());
}

void WindowTest::themes_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QColor>("text");
    QTest::newRow("light") << QColor(u"#efefef"_s) << QColor(u"#ffffff"_s) << QColor(u"#000000"_s);
    QTest::newRow("dark") << QColor(u"#31363b"_s) << QColor(u"#232629"_s) << QColor(u"#eff0f1"_s);
}

/// Every button of the toolbars can be told from what it lies on, and nothing but text and lines is far from the
/// theme's background.
void WindowTest::themes()
{
    QFETCH(QColor, window);
    QFETCH(QColor, base);
    QFETCH(QColor, text);
    const QPalette before = QApplication::palette();
    QPalette palette(window, window);
    palette.setColor(QPalette::Base, base);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, text);
    QApplication::setPalette(palette);
    UseIconTheme();
    UseDimmedIcons();
    const auto difference = [&](QRgb pixel) { return qAbs(qGray(pixel) - qGray(window.rgb())); };
    const auto ink = [&](const QImage &icon) { // how far its strongest pixel is from the background
        int strongest = 0;
        for (int i = 0; i < icon.width() * icon.height(); ++i) {
            const QRgb pixel = icon.pixel(i % icon.width(), i / icon.width());
            strongest = qMax(strongest, difference(pixel) * qAlpha(pixel) / 255);
        }
        return strongest;
    };

    Program program;
    program.Open(u"a.htm"_s);
    program.Find<QTabBar>(u"TabStrip1"_s)->setCurrentIndex(1);
    for (const QToolBar *bar : program.Window->findChildren<QToolBar *>()) {
        for (const QAction *action : bar->actions()) {
            if (action->icon().isNull())
                continue;
            const int strength = ink(action->icon().pixmap(22).toImage());
            QVERIFY2(strength > 90, qPrintable(action->objectName() + u": too close to its background"_s));
            const int disabled = ink(action->icon().pixmap(22, QIcon::Disabled).toImage());
            QVERIFY2(disabled * 3 < strength * 2, qPrintable(action->objectName() + u": looks enabled"_s));
        }
    }
    for (const QString &part : {u"LeftPane"_s, u"tbToolBar"_s, u"Toolbar1"_s, u"StatusBar1"_s, u"TabStrip2"_s}) {
        const QImage image = program.Find<QWidget>(part)->grab().toImage();
        int far = 0;
        for (int i = 0; i < image.width() * image.height(); ++i)
            far += difference(image.pixel(i % image.width(), i / image.width())) > 90;
        QVERIFY2(far > 0 && far * 6 < image.width() * image.height(), qPrintable(part));
    }
    program.Window.reset();
    QApplication::setPalette(before);
    UseIconTheme();
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    WindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "WindowTest.moc"
