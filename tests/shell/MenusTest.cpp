#include "support/Program.h"

#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QWindow>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;
using Property = bool (DesignSurface::*)() const;
Q_DECLARE_METATYPE(Property)

/// The menus over the design view: what stands in them, when it can be chosen, and what it does to the page.
class MenusTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void Captions_data();
    void Captions();
    void StatesFollowSelection();
    void NewPageByKeys_data();
    void NewPageByKeys();
    void InsertsMarkup_data();
    void InsertsMarkup();
    void HTMLCode_data();
    void HTMLCode();
    void PositionCaptionTurns();
    void BlockFormatsAreTicked();
    void SwitchesAreTicked_data();
    void SwitchesAreTicked();
    void KeysBehindAChoiceReachThePage();

private:
    /// A page of this body with the caret at its start.
    void Open(const QString &body)
    {
        m_program->Write(u"p.htm"_s, u"<html><head><title>t</title></head><body>"_s + body + u"</body></html>"_s);
        m_program->Open(u"p.htm"_s);
        Surface().CaretToPageStart();
    }
    DesignSurface &Surface() const { return m_program->Page().Surface(); }
    bool IsEnabled(const QString &name) const { return m_program->Drop(name)->isEnabled(); }
    /// Clicks the object at this place of the page.
    void Click(QPoint place) const
    {
        QTest::mouseClick(m_program->Input(), Qt::LeftButton, Qt::NoModifier, place);
        QTRY_COMPARE(Surface().SelectionType(), u"Control"_s);
    }

    std::unique_ptr<Program> m_program;
};

void MenusTest::initTestCase()
{
    StartEngine();
}

void MenusTest::init()
{
    UsePrivateState();
    m_program = std::make_unique<Program>();
}

void MenusTest::cleanup()
{
    m_program->Close();
    m_program.reset();
}

void MenusTest::Captions_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QStringList>("captions"); // "" for a line
    QTest::newRow("Edit") << u"Edit"_s
                          << u"&Undo|&Redo||Cu&t|&Copy|&Paste|Select &All||&Find|Find &Next|&Replace...|"
                             "&Global Find/Replace...||&Snap To Grid"_s.split(u'|');
    QTest::newRow("Insert") << u"insert"_s
                            << u"&Graphic...|&Hyperlink...|&Bookmark...||Horizontal &Line|B&utton|&HTML Code...||"
                               "&Expanding/Contracting Section...|&Pop-up/Secondary Window Link..."_s.split(u'|');
    QTest::newRow("Table") << u"table"_s
                           << u"&Insert Table...||Insert &Row|Insert &Column|Insert C&ell||&Delete Row|De&lete Column|"
                              "Dele&te Cells||&Merge Cells|&Split Cell||&Cell Properties|&Row Properties|"
                              "C&olumn Properties|&Table Properties"_s.split(u'|');
    QTest::newRow("Position") << u"D2D"_s
                              << u"Set Position Attribute To Absolute|Bring To Front|Send To Back|Bring Forward|"
                                 "Send Back|Bring Above Text|Send Below Text||Lock Element"_s.split(u'|');
}

void MenusTest::Captions()
{
    QFETCH(QString, menu);
    Open(u"<p>a</p>"_s);
    QStringList captions;
    for (const QAction *action : m_program->Find<QMenu>(menu)->actions())
        captions.append(action->isSeparator() ? QString() : action->text());
    QTEST(captions, "captions");
}

void MenusTest::StatesFollowSelection()
{
    Open(u"<p>a</p><table border=1><tr><td>c</td></tr></table>"
         "<hr style=\"position:absolute;left:300px;top:300px;width:100px;height:40px\">"_s);
    QVERIFY(IsEnabled(u"tablesub(0)"_s));
    QVERIFY(!IsEnabled(u"tablesub(2)"_s));
    QVERIFY(!IsEnabled(u"D2DSub(1)"_s));
    QVERIFY(IsEnabled(u"InsertButton"_s));
    QVERIFY(IsEnabled(u"formatfont"_s));
    Click({340, 320});
    QVERIFY(IsEnabled(u"D2DSub(1)"_s));
    QVERIFY(!IsEnabled(u"InsertButton"_s));
    QVERIFY(!IsEnabled(u"InsertHTML"_s));
    QVERIFY(IsEnabled(u"horizline"_s));
    QVERIFY(!m_program->Drop(u"D2DSub(8)"_s)->isChecked());
    m_program->Menu(u"D2DSub(8)"_s);
    QVERIFY(m_program->Drop(u"D2DSub(8)"_s)->isChecked());
    m_program->Menu(u"viewsource"_s);
    for (const QString &name : {u"horizline"_s, u"InsertHTML"_s, u"tablesub(0)"_s, u"D2DSub(1)"_s, u"FormatSub(0)"_s})
        QVERIFY2(!IsEnabled(name), qPrintable(name));
}

void MenusTest::NewPageByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Ctrl+N") << int(Qt::Key_N) << int(Qt::ControlModifier);
    QTest::newRow("F2") << int(Qt::Key_F2) << int(Qt::NoModifier);
}

void MenusTest::NewPageByKeys()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    Open(u"<p>a</p>"_s);
    QTimer::singleShot(0, m_program->Window.get(), [] {
        QWidget *dialog = QApplication::activeModalWidget();
        QVERIFY(dialog);
        auto *title = dialog->findChild<QLineEdit *>(u"EditTitle"_s);
        QTest::keyClicks(title, u"Spring fair"_s);
        QTest::keyClick(title, Qt::Key_Return);
    });
    QTest::keyClick(m_program->Input(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTRY_COMPARE(m_program->Panel(2), m_program->Path(u"Spring_fair.htm"_s)); // beside the page in hand
    QCOMPARE(m_program->Panel(1), u"Spring fair"_s);
    QVERIFY(!m_program->Page().HasUnsavedChanges());
}

void MenusTest::InsertsMarkup_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("markup");
    QTest::newRow("line") << u"horizline"_s << u"<HR>"_s;
    QTest::newRow("button") << u"InsertButton"_s << u"<BUTTON title=Button>Button!</BUTTON>"_s;
    QTest::newRow("table") << u"tablesub(0)"_s << u"<TABLE border=1 width=100%>"_s;
}

void MenusTest::InsertsMarkup()
{
    QFETCH(QString, command);
    QFETCH(QString, markup);
    Open(u"<p>a</p>"_s);
    m_program->Menu(command);
    QVERIFY2(Surface().DocumentHTML().contains(markup), qPrintable(Surface().DocumentHTML()));
    m_program->Menu(u"editundo"_s);
    QVERIFY(!Surface().DocumentHTML().contains(markup));
}

void MenusTest::HTMLCode_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("pasted");
    QTest::newRow("OK") << u"cmdOK"_s << true;
    QTest::newRow("Cancel") << u"cmdCancel"_s << false;
}

void MenusTest::HTMLCode()
{
    QFETCH(QString, button);
    QFETCH(bool, pasted);
    Open(u"<p>a</p>"_s);
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&button] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->focusWidget())
            return;
        QCOMPARE(dialog->focusWidget()->objectName(), u"HTMLText"_s);
        QTest::keyClicks(dialog->focusWidget(), u"<i onclick=go()>x</i>"_s);
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
        QTest::keyClicks(dialog->focusWidget(), u"<?php y ?>"_s);
        QTest::mouseClick(dialog->findChild<QPushButton *>(button), Qt::LeftButton);
    });
    poll.start(10);
    m_program->Menu(u"InsertHTML"_s);
    const QString html = Surface().DocumentHTML();
    QVERIFY2(html.contains(QRegularExpression(u"<I onclick=\"?go\\(\\)\"?>x</I>\\s<\\?php y \\?>"_s)) == pasted,
             qPrintable(html));
    QCOMPARE(Surface().IsDirty(), pasted);
}

void MenusTest::PositionCaptionTurns()
{
    Open(u"<hr style=\"width:100px;height:40px;margin:0\">"_s);
    Click({30, 25});
    QCOMPARE(m_program->Drop(u"D2DSub(0)"_s)->text(), u"Set Position Attribute To Absolute"_s);
    m_program->Menu(u"D2DSub(0)"_s);
    QVERIFY(Surface().DocumentHTML().contains(u"absolute"_s));
    QTRY_COMPARE(m_program->Drop(u"D2DSub(0)"_s)->text(), u"Set Position Attribute To 1D"_s);
    QVERIFY(m_program->Find<QAction>(u"D2DSub(0)"_s)->isEnabled());
}

void MenusTest::BlockFormatsAreTicked()
{
    Open(u"<h2>a</h2>"_s);
    QList<QAction *> ticked;
    m_program->Drop(u"FormatSub(0)"_s);
    for (QAction *action : m_program->Find<QMenu>(u"FormatSub"_s)->actions())
        if (action->isChecked())
            ticked.append(action);
    QCOMPARE(ticked.size(), 1);
    QCOMPARE(ticked.first()->text(), u"Heading 2"_s);
    m_program->Menu(u"FormatSub(0)"_s);
    QVERIFY(!Surface().DocumentHTML().contains(u"<H2>"_s));
}

void MenusTest::SwitchesAreTicked_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Property>("read");
    QTest::newRow("grid") << u"snaptogrid"_s << &DesignSurface::SnapToGrid;
    QTest::newRow("details") << u"ViewSub1"_s << &DesignSurface::ShowDetails;
}

void MenusTest::SwitchesAreTicked()
{
    QFETCH(QString, name);
    QFETCH(Property, read);
    Open(u"<p>a</p>"_s);
    const bool before = (Surface().*read)();
    QCOMPARE(m_program->Drop(name)->isChecked(), before);
    m_program->Menu(name);
    QCOMPARE((Surface().*read)(), !before);
    QCOMPARE(m_program->Drop(name)->isChecked(), !before);
}

/// While a menu stands open the display sends keys to its window, and the next few as well.
void MenusTest::KeysBehindAChoiceReachThePage()
{
    Open(u"<p>a</p>"_s);
    m_program->Window->activateWindow();
    m_program->Input();
    auto *menu = m_program->Find<QMenu>(u"insert"_s);
    menu->popup(m_program->Window->mapToGlobal(QPoint(100, 20)));
    QVERIFY(QTest::qWaitForWindowExposed(menu));
    QWindow *display = menu->windowHandle();
    for (const char key : {'l', 'l', 'u', 'c', 'k'}) // the first is the choice: a line
        QTest::keyClick(display, key);
    QVERIFY(!menu->isVisible());
    QTRY_VERIFY2(Surface().DocumentHTML().contains(QRegularExpression(u"<HR>\\s*(<P>)?luck"_s)),
                 qPrintable(Surface().DocumentHTML()));
    QCOMPARE(Surface().DocumentHTML().count(u"<HR>"_s), 1);
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    MenusTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MenusTest.moc"
