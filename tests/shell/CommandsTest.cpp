#include "support/Program.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTimer>
#include <QToolBar>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

struct Reach
{
    QString Menus;   ///< that can be dropped
    QString Rows;    ///< of these menus, that can be chosen: with the caret in a paragraph and nothing to undo
    QString Buttons; ///< of tbToolBar
    bool Formats;
};

} // namespace
Q_DECLARE_METATYPE(Reach)

/// Every command of the window: where it can be reached, and by which key.
class CommandsTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void StatesInEachView_data();
    void StatesInEachView();
    void WhatIsStillToCome();
    void LettersAndKeysAreUnique();
    void EveryKeyHasItsCommand_data();
    void EveryKeyHasItsCommand();
    void KeysOfTheViewsWorkOnce_data();
    void KeysOfTheViewsWorkOnce();
    void SavesFromEverywhere_data();
    void SavesFromEverywhere();
    void DialogsOpenOnTheSelection_data();
    void DialogsOpenOnTheSelection();

private:
    QList<QMenu *> Menus() const
    {
        QList<QMenu *> menus;
        for (const QAction *title : m_program->Window->menuBar()->actions())
            menus.append(title->menu());
        return menus;
    }
    /// Drops the menu, and those within it.
    QList<QAction *> RowsOf(const QMenu *menu) const
    {
        QList<QAction *> rows;
        emit const_cast<QMenu *>(menu)->aboutToShow();
        for (QAction *row : menu->actions()) {
            if (row->menu())
                rows += RowsOf(row->menu());
            else if (!row->isSeparator())
                rows.append(row);
        }
        return rows;
    }
    QList<QAction *> Buttons(const QString &bar) const
    {
        QList<QAction *> buttons = m_program->Find<QToolBar>(bar)->actions();
        buttons.removeIf([](const QAction *button) { return button->objectName().isEmpty(); });
        return buttons;
    }
    QString NamesOf(QList<QAction *> actions) const
    {
        actions.removeIf([](const QAction *action) { return !action->isEnabled() || !action->isVisible(); });
        QStringList names;
        for (const QAction *action : actions)
            names.append(action->objectName());
        return names.join(u' ');
    }
    /// Gives the keyboard to a place of the window; the widget that takes the keys.
    QWidget *Place(const QString &name) const
    {
        if (name == u"surface"_s)
            return m_program->Input();
        if (name == u"source"_s) {
            m_program->Menu(u"viewsource"_s);
            m_program->SourceInput()->setFocus();
            return m_program->SourceInput();
        }
        auto *widget = m_program->Find<QWidget>(name);
        widget->setFocus();
        return widget;
    }

    std::unique_ptr<Program> m_program;
};

void CommandsTest::initTestCase()
{
    StartEngine();
}

void CommandsTest::init()
{
    UsePrivateState();
    m_program = std::make_unique<Program>();
    m_program->Open(u"a.htm"_s);
}

void CommandsTest::cleanup()
{
    if (m_program->Page().HasUnsavedChanges())
        m_program->Boxes.Expect(Answer::No);
    m_program->Window->close();
    m_program.reset();
}

void CommandsTest::StatesInEachView_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<Reach>("expected");
    const QString file = u"filenew fileopen newwin filesave filesaveas saveastemplate "_s;
    const QString fileEnd = u"recent(0) fileexit / "_s;
    const QString rest = u"settings / helpcontents helptopic helpindex helpkeys helpabout"_s;
    QTest::newRow("Normal")
        << u"viewnormal"_s
        << Reach{u"file Edit view insert FormatMain formmenu table tools D2D help"_s,
                 file + u"fileprint "_s + fileEnd +
                     u"editselectall editfind editfindnext editreplace editglobalreplace snaptogrid / "
                     "viewnormal viewproperties viewsource viewpreview viewpublish viewnext "
                     "viewprevious ViewSub0 ViewSub1 ViewSub2 "
                     "hidepane nextpane previouspane / "
                     "InsertSub(0) InsertSub(1) insertboomkark horizline InsertButton InsertHTML / "
                     "formatbold formatitalic formatunderline formatfont formatcolor "
                     "formatnumbers formatbullets formatindent formatleft formatcenter formatright "
                     "FormatSub(0) FormatSub(1) FormatSub(2) FormatSub(3) FormatSub(4) "
                     "FormatSub(5) FormatSub(6) FormatSub(7) FormatSub(8) FormatSub(9) "
                     "FormatSub(10) / "
                     "tablesub(0) / "_s +
                     rest,
                 u"New Open Save Print Cut Copy Paste Find Graphic Table Link Bookmark help showhide"_s, true};
    QTest::newRow("Page Properties") << u"viewproperties"_s
                                     << Reach{u"file formmenu tools D2D help"_s, file + fileEnd + rest, u"Save"_s,
                                              false};
    QTest::newRow("HTML Source")
        << u"viewsource"_s
        << Reach{
               u"file Edit formmenu tools D2D help"_s,
               file + u"fileprint "_s + fileEnd +
                   u"editcut editcopy editpaste editselectall editfind editfindnext editreplace editglobalreplace snaptogrid / "_s +
                   rest,
               u"Open Save Print Cut Copy Paste Find Graphic Table Link Bookmark GoBack Refresh Stop help showhide"_s,
               false};
    QTest::newRow("Preview") << u"viewpreview"_s
                             << Reach{u"formmenu tools D2D help"_s, rest, u"Save GoBack Refresh Stop"_s, false};
    QTest::newRow("Publish") << u"viewpublish"_s << Reach{u"formmenu tools D2D help"_s, rest, u"Save"_s, false};
}

void CommandsTest::StatesInEachView()
{
    QFETCH(QString, view);
    QFETCH(Reach, expected);
    m_program->Menu(view);
    QStringList menus;
    QStringList rows;
    for (QMenu *menu : Menus()) {
        if (!menu->menuAction()->isEnabled())
            continue;
        menus.append(menu->objectName());
        rows.append(NamesOf(RowsOf(menu)));
    }
    rows.removeAll({});
    QCOMPARE(menus.join(u' '), expected.Menus);
    QCOMPARE(rows.join(u" / "_s), expected.Rows);
    QCOMPARE(NamesOf(Buttons(u"tbToolBar"_s)), expected.Buttons);
    QCOMPARE(NamesOf(Buttons(u"Toolbar1"_s)).isEmpty(), !expected.Formats);
    QCOMPARE(Buttons(u"Toolbar1"_s).size(), 11);
    for (const QAction *button : Buttons(u"Toolbar1"_s))
        QCOMPARE(button->isEnabled(), expected.Formats);
    for (const QString &box : {u"ComboStyle"_s, u"FontCombo"_s, u"FontSizeCombo"_s})
        QCOMPARE(m_program->Find<QComboBox>(box)->isEnabled(), expected.Formats);
}

/// Each of these loses its line here when its dialog comes.
void CommandsTest::WhatIsStillToCome()
{
    const QStringList expected = u"viewcurrbro "
                                 "viewbrowse "
                                 "insertexpsec insertpopup insform formval formproclog1 "
                                 "insfield instextbox instxtarea inslistbox insdrop inscheckbox insradio inshidden "
                                 "inspw insimgfield inssubmit insreset insbut inscheckgroup insradiogroup insaskwren "
                                 "klogin1 spellck spelloptions "
                                 "checklinks editstyle Spell"_s.split(u' ');
    QStringList later;
    QList<QAction *> all = Buttons(u"tbToolBar"_s) + Buttons(u"Toolbar1"_s);
    QList<QAction *> rows;
    for (const QMenu *menu : Menus())
        rows += RowsOf(menu);
    for (QAction *action : rows + all) {
        if (!action->toolTip().endsWith(u"Not available yet"_s))
            continue;
        later.append(action->objectName());
        QVERIFY2(!action->isEnabled(), qPrintable(action->objectName()));
    }
    QCOMPARE(later, expected);
}

void CommandsTest::LettersAndKeysAreUnique()
{
    static const QRegularExpression letter(u"&(\\w)"_s);
    // Menus whose captions are as they have always been.
    const QStringList old{u"Edit"_s, u"insert"_s, u"table"_s, u"formmenu"_s};
    QStringList titles;
    for (QMenu *menu : Menus()) {
        titles.append(letter.match(menu->title()).captured(1).toUpper());
        QStringList letters;
        for (const QAction *row : menu->actions())
            if (!row->isSeparator() && row->isVisible() && !old.contains(menu->objectName()))
                letters.append(letter.match(row->text()).captured(1).toUpper());
        letters.removeAll({});
        QVERIFY2(letters.removeDuplicates() == 0, qPrintable(menu->objectName()));
    }
    QVERIFY(!titles.contains(QString()));
    QCOMPARE(titles.removeDuplicates(), 0);
    QStringList keys;
    for (const QAction *action : m_program->Window->findChildren<QAction *>())
        for (const QKeySequence &key : action->shortcuts())
            keys.append(key.toString());
    QVERIFY(keys.size() > 30);
    keys.sort();
    for (qsizetype i = 1; i < keys.size(); ++i)
        QVERIFY2(keys[i] != keys[i - 1], qPrintable(keys[i]));
}

void CommandsTest::EveryKeyHasItsCommand_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("own"); // keys that the place itself answers
    QTest::addColumn<QString>("off"); // keys of commands that are not possible there
    const QString later = u" F7"_s;
    const QString clipboard = u"Ctrl+Z Ctrl+Y Ctrl+Shift+Z Ctrl+X Ctrl+C Ctrl+V Ctrl+A"_s;
    QTest::newRow("surface") << u"surface"_s << clipboard + u" Ctrl+B Ctrl+I Ctrl+U"_s << u"Alt+Left F5"_s + later;
    QTest::newRow("source") << u"source"_s << clipboard << u"Ctrl+B Ctrl+I Ctrl+U Ctrl+K"_s + later;
    QTest::newRow("list of fonts") << u"FontCombo"_s << QString() << u"Alt+Left F5"_s + later;
    QTest::newRow("list of files") << u"ListTopics"_s << QString() << u"Alt+Left F5"_s + later;
    QTest::newRow("tabs") << u"TabStrip2"_s << QString() << u"Alt+Left F5"_s + later;
    // A line of text has the keys of its own; the menus of what they would do are off.
    QTest::newRow("page title") << u"EditTitle"_s << clipboard
                                << u"Ctrl+F F3 Ctrl+H Ctrl+Shift+F Ctrl+B Ctrl+I Ctrl+U Ctrl+K Ctrl+P Alt+Left F5"_s +
                                       later;
}

/// The window runs the command of a key, once, unless the place that has the keyboard answers it.
void CommandsTest::EveryKeyHasItsCommand()
{
    QFETCH(QString, place);
    QFETCH(QString, own);
    QFETCH(QString, off);
    if (place == u"EditTitle"_s)
        m_program->Menu(u"viewproperties"_s);
    QWidget *focus = Place(place);
    QTRY_VERIFY(focus->isActiveWindow());
    m_program->Page().Source().SelectAll();
    QStringList run;
    QList<std::pair<QAction *, QKeySequence>> keys;
    for (QAction *action : m_program->Window->findChildren<QAction *>()) {
        for (const QKeySequence &key : action->shortcuts())
            keys.append({action, key});
        action->disconnect(SIGNAL(triggered(bool))); // what the commands do is another matter
        connect(action, &QAction::triggered, this, [&run, action] { run.append(action->objectName()); });
    }
    const QStringList answered = own.split(u' ');
    const QStringList impossible = off.split(u' ');
    for (const auto &[action, key] : keys) {
        run.clear();
        QTest::keySequence(focus, key);
        const bool quiet = answered.contains(key.toString()) || impossible.contains(key.toString());
        const QStringList expected = quiet ? QStringList() : QStringList{action->objectName()};
        QVERIFY2(run == expected, qPrintable(key.toString() + u": "_s + run.join(u' ')));
    }
}

void CommandsTest::KeysOfTheViewsWorkOnce_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text"); // what the page holds then
    QTest::newRow("bold") << u"surface"_s << u"Ctrl+A Ctrl+B"_s << u"<b>old words</b>"_s;
    QTest::newRow("italic") << u"surface"_s << u"Ctrl+A Ctrl+I"_s << u"<i>old words</i>"_s;
    QTest::newRow("underline") << u"surface"_s << u"Ctrl+A Ctrl+U"_s << u"<u>old words</u>"_s;
    QTest::newRow("undo") << u"surface"_s << u"Ctrl+A Ctrl+B Ctrl+I Ctrl+Z"_s << u"<p><b>old words</b></p>"_s;
    QTest::newRow("redo") << u"surface"_s << u"Ctrl+A Ctrl+B Ctrl+I Ctrl+Z Ctrl+Z Ctrl+Y"_s
                          << u"<p><b>old words</b></p>"_s;
    QTest::newRow("copy and paste") << u"surface"_s << u"Ctrl+A Ctrl+C Right Ctrl+V Ctrl+V"_s
                                    << u"old wordsold wordsold words"_s;
    QTest::newRow("cut and paste") << u"surface"_s << u"Ctrl+A Ctrl+X Ctrl+V Ctrl+V"_s << u"old wordsold words"_s;
    QTest::newRow("source: copy and paste") << u"source"_s << u"Ctrl+A Ctrl+C Ctrl+End Ctrl+V"_s << u"</html><html>"_s;
    QTest::newRow("source: undo") << u"source"_s << u"Ctrl+A Ctrl+X Ctrl+V Ctrl+V Ctrl+Z"_s << u"</body></html>"_s;
}

void CommandsTest::KeysOfTheViewsWorkOnce()
{
    QFETCH(QString, place);
    QFETCH(QString, keys);
    QFETCH(QString, text);
    QWidget *focus = Place(place);
    QTRY_VERIFY(focus->isActiveWindow());
    for (const QString &key : keys.split(u' '))
        QTest::keySequence(focus, QKeySequence(key));
    m_program->Menu(u"viewsource"_s);
    const QString source = m_program->Page().Source().Text();
    QVERIFY2(source.contains(text), qPrintable(source));
    QCOMPARE(source.count(u"</html>"_s), text.startsWith(u"</html>"_s) ? 2 : 1);
    QVERIFY2(source.count(u"old words"_s) <= qMax(1, int(text.count(u"old words"_s))) + source.count(u"</html>"_s) - 1,
             qPrintable(source));
}

void CommandsTest::SavesFromEverywhere_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("place");
    QTest::newRow("surface") << u"viewnormal"_s << u"surface"_s;
    QTest::newRow("source") << u"viewsource"_s << u"source"_s;
    QTest::newRow("list of formats") << u"viewnormal"_s << u"ComboStyle"_s;
    QTest::newRow("list of files") << u"viewnormal"_s << u"ListTopics"_s;
    QTest::newRow("list of folders") << u"viewnormal"_s << u"Dir1"_s;
    QTest::newRow("title") << u"viewproperties"_s << u"EditTitle"_s;
    QTest::newRow("tabs") << u"viewpreview"_s << u"TabStrip2"_s;
    QTest::newRow("preview") << u"viewpreview"_s << u"WebBrowser1"_s;
    QTest::newRow("publishing") << u"viewpublish"_s << u"TabStrip2"_s;
}

void CommandsTest::SavesFromEverywhere()
{
    QFETCH(QString, view);
    QFETCH(QString, place);
    m_program->Type(u"fresh "_s);
    m_program->Menu(view);
    Place(place);
    QTRY_VERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY2(m_program->Read(u"a.htm"_s).contains(u"fresh old words"_s), qPrintable(m_program->Read(u"a.htm"_s)));
    QVERIFY(!m_program->Page().HasUnsavedChanges());
    QVERIFY(!m_program->Read(u"a.htm"_s).contains(u"fresh fresh"_s));
}

void CommandsTest::DialogsOpenOnTheSelection_data()
{
    QTest::addColumn<QString>("way"); // a key, the name of a row or button, or "" for a double click
    QTest::addColumn<QString>("dialog");
    QTest::newRow("link: key") << u"Ctrl+K"_s << u"FormHyperLink"_s;
    QTest::newRow("link: menu") << u"InsertSub(1)"_s << u"FormHyperLink"_s;
    QTest::newRow("link: button") << u"Link"_s << u"FormHyperLink"_s;
    QTest::newRow("link: double click") << QString() << u"FormHyperLink"_s;
    QTest::newRow("bookmark: menu") << u"insertboomkark"_s << u"FormBookmark"_s;
    QTest::newRow("bookmark: button") << u"Bookmark"_s << u"FormBookmark"_s;
}

void CommandsTest::DialogsOpenOnTheSelection()
{
    QFETCH(QString, way);
    QFETCH(QString, dialog);
    DesignSurface &surface = m_program->Page().Surface();
    QVERIFY(surface.SelectText(u"old"_s));
    QString opened;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&opened] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            opened += box->objectName();
            box->close();
        }
    });
    look.start(10);
    if (way.isEmpty()) {
        surface.ExecCommand(DECMD_HYPERLINK, ExecOption::DontPromptUser, u"b.htm"_s);
        emit surface.ondblclick();
    } else if (way.contains(u'+')) {
        QTest::keySequence(m_program->Input(), QKeySequence(way));
    } else {
        m_program->Find<QAction>(way)->trigger();
    }
    QTRY_COMPARE(opened, dialog);
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    CommandsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "CommandsTest.moc"
