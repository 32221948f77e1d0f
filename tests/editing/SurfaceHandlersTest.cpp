#include "editing/SurfaceHandlers.h"
#include "editing/EditingDialogs.h"
#include "editing/ImageMapCut.h"
#include "support/EditorRig.h"

#include <QClipboard>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

namespace {

/// An editor whose surface has its handlers, with dialogs that only write down that they were opened.
class HandlersRig : public EditorRig
{
public:
    HandlersRig()
    {
        const auto note = [this](const QString &name) { return [this, name] { Opened.append(name); }; };
        EditingForms = {.OpenImage = note(u"image"_s),
                        .OpenHyperlink = note(u"link"_s),
                        .OpenField = note(u"field"_s),
                        .OpenJavaPopup = note(u"popup"_s),
                        .OpenCellProperties = note(u"cell"_s),
                        .OpenTableProperties = note(u"table"_s),
                        .PlaceFormElement = [this](const QString &kind) { Opened.append(u"form "_s + kind); }};
        Handlers = std::make_unique<SurfaceHandlers>(*Edit, EditingForms);
    }

    /// As if just made, but for the page.
    void Reset()
    {
        Boxes.Verify();
        Boxes.Boxes.clear();
        Dialogs.Verify();
        for (QMenu *menu : Surface.findChildren<QMenu *>(u"ContextMenu"_s))
            delete menu;
        Opened.clear();
        Selection = {};
        Page.ActiveTab = ViewTab::Normal;
        Page.HtmlDirty = false;
        Surface.MarkClean();
        Source.hide();
    }

    /// The page "page.htm"; what is first in the body lies at the surface's top left corner.
    void LoadBody(const QString &body)
    {
        const QString page = u"<html><head><title>t</title></head><body style=\"margin:0\">%1</body></html>"_s;
        QVERIFY(Load(Put(u"page.htm"_s, page.arg(body).toUtf8())));
        QVERIFY(Surface.WaitWhileBusy());
        Surface.InputWidget()->setFocus();
    }
    void Click(QPoint place = {12, 10}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(Surface.InputWidget(), button, Qt::NoModifier, place);
        Surface.IsDirty(); // the click has arrived in the page
    }
    void AltClick()
    {
        QTest::keyPress(Surface.InputWidget(), Qt::Key_Alt, Qt::AltModifier);
        QTRY_VERIFY(Selection.AltDown);
        QSignalSpy clicked(&Surface, &DesignSurface::onclick);
        QTest::mouseClick(Surface.InputWidget(), Qt::LeftButton, Qt::AltModifier, {12, 10});
        QTRY_COMPARE(clicked.size(), 1);
        QTest::keyRelease(Surface.InputWidget(), Qt::Key_Alt);
    }
    void DoubleClick(QPoint place = {12, 10})
    {
        QWidget *target = Surface.InputWidget();
        const QPointF global = target->mapToGlobal(place);
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
                                QEvent::MouseButtonRelease})
        {
            const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
            QMouseEvent event(type, place, global, Qt::LeftButton, buttons, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &event);
        }
    }
    /// The menu that a right click brings up.
    QMenu *RightClick(QPoint place = {12, 10})
    {
        QSignalSpy asked(&Surface, &DesignSurface::ShowContextMenu);
        Click(place, Qt::RightButton);
        if (asked.isEmpty() && !asked.wait(3000))
            return nullptr;
        return Menu();
    }
    QMenu *Menu() const
    {
        const QList<QMenu *> menus = Surface.findChildren<QMenu *>(u"ContextMenu"_s);
        return menus.isEmpty() ? nullptr : menus.last();
    }
    static QString Items(const QMenu *menu)
    {
        QStringList items;
        for (const QAction *action : menu->actions())
            items.append(action->isSeparator() ? u"-"_s
                         : action->isEnabled() ? action->text()
                                               : u'(' + action->text() + u')');
        return items.join(u',');
    }
    /// A right click on the object at that place makes it the selection.
    void SelectObject(QPoint place = {12, 10})
    {
        QMenu *menu = RightClick(place);
        QVERIFY(menu);
        menu->close();
        QCOMPARE(Surface.SelectionType(), u"Control"_s);
    }

    QStringList Opened;
    EditingDialogs EditingForms;
    std::unique_ptr<SurfaceHandlers> Handlers;
};

} // namespace

class SurfaceHandlersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        EditorRig::StartEngine();
        m_rig = std::make_unique<HandlersRig>();
    }
    void cleanupTestCase() { m_rig.reset(); }
    void init() { m_rig->Reset(); }
    void cleanup() { m_rig->Reset(); }

    // ---- context menu ----

    void MenuItems_data()
    {
        QTest::addColumn<bool>("position");
        QTest::addColumn<bool>("positioned");
        QTest::addColumn<bool>("table");
        QTest::addColumn<QString>("behind"); // the fixed block
        const QString table = u",-,Insert Row,Insert Column,-,Delete Row,Delete Column,-,Cell Properties,"
                              "Row Properties,Column Properties,Table Properties"_s;
        QTest::newRow("all that was ever there") << true << true << true << u",-,Make 1D"_s + table;
        QTest::newRow("table only") << false << false << true << table;
        QTest::newRow("position only") << true << false << false << u",-,Make 2D"_s;
    }
    /// What a menu once offered, it offers everywhere from then on.
    void MenuItems()
    {
        QFETCH(bool, position);
        QFETCH(bool, positioned);
        QFETCH(bool, table);
        QFETCH(QString, behind);
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<p>words</p>"_s);
        SurfaceState &state = rig.Selection;
        const bool hasPosition = rig.Surface.QueryStatus(DECMD_MAKE_ABSOLUTE) >= DECMDF_ENABLED;
        state.ContextHasPosition = position;
        state.ContextIsPositioned = positioned;
        state.ContextHasTable = table;
        QMenu *menu = rig.RightClick();
        QVERIFY(menu);
        if (hasPosition == position || position)
            QVERIFY2(rig.Items(menu).endsWith(behind), qPrintable(rig.Items(menu)));
        QCOMPARE(state.ContextBaseCount, 6);
        QCOMPARE(state.ContextPositionCount, state.ContextHasPosition ? 2 : 0);
        QCOMPARE(state.ContextTableCount, table ? 11 : 0);
        menu->close();
    }

    void MenuLearnsWhatIsThere()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<table width=300 height=40><tr><td>cell</td></tr></table><p>words</p>"_s);
        QMenu *menu = rig.RightClick({20, 20});
        QVERIFY(menu);
        QCOMPARE(rig.Selection.ContextHasTable, rig.Surface.QueryStatus(DECMD_INSERTROW) >= DECMDF_ENABLED);
        const bool table = rig.Selection.ContextHasTable;
        QCOMPARE(rig.Items(menu).contains(u"Insert Row"_s), table);
        menu->close();
        QTRY_VERIFY(!rig.Menu());
        menu = rig.RightClick({20, 70});
        QVERIFY(menu);
        QCOMPARE(rig.Items(menu).contains(u"Insert Row"_s), table); // out of the table, too
        menu->close();
    }

    void MenuGreysWhatCannotBe()
    {
        HandlersRig &rig = *m_rig;
        QGuiApplication::clipboard()->clear();
        rig.LoadBody(u"<p>words</p>"_s);
        QMenu *menu = rig.RightClick();
        QVERIFY(menu);
        QVERIFY2(rig.Items(menu).startsWith(u"(Cut),(Copy),(Paste),-,Select All,-,"_s), qPrintable(rig.Items(menu)));
        menu->actions().at(4)->trigger();
        menu->close();
        QTRY_COMPARE(rig.Surface.SelectionType(), u"Text"_s);
        QTRY_VERIFY(!rig.Menu());
        // Within what is selected, a right click leaves it so.
        menu = rig.RightClick();
        QVERIFY(menu);
        QVERIFY2(rig.Items(menu).startsWith(u"Cut,Copy,(Paste),-"_s), qPrintable(rig.Items(menu)));
        menu->actions().at(0)->trigger();
        menu->close();
        QTRY_COMPARE(QGuiApplication::clipboard()->text().trimmed(), u"words"_s);
    }

    void MenuMovesTheCaret()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<p>first</p><p id=second>second</p>"_s);
        rig.Surface.CaretToPageStart();
        QMenu *menu = rig.RightClick({40, 55});
        QVERIFY(menu);
        menu->close();
        QCOMPARE(rig.Surface.SelectionType(), u"None"_s);
        QCOMPARE(rig.Edit->GetSelectedElement().outerHTML(), u"<P id=second>second</P>"_s);
        // The menu key brings it up beside the caret and leaves that where it is.
        QTRY_VERIFY(!rig.Menu());
        QTest::keyClick(rig.Surface.InputWidget(), Qt::Key_Menu);
        QTRY_VERIFY(rig.Menu());
        QCOMPARE(rig.Edit->GetSelectedElement().outerHTML(), u"<P id=second>second</P>"_s);
        rig.Menu()->close();
    }

    void MenuActions_data()
    {
        QTest::addColumn<bool>("position");
        QTest::addColumn<int>("item"); // counted behind the fixed block, and the block on position if there is one
        QTest::addColumn<int>("pending");
        QTest::addColumn<int>("scope");
        QTest::addColumn<QString>("opened");
        for (const bool position : {false, true}) {
            const auto row = [&](const char *name, int item, int pending, int scope, const QString &opened) {
                QTest::addRow("%s%s", name, position ? ", with position" : "")
                    << position << item << pending << scope << opened;
            };
            row("cell", 8, 1, 0, u"cell"_s);
            row("row", 9, 1, 1, u"cell"_s);
            row("column", 10, 1, 2, u"cell"_s);
            row("table", 11, 2, 7, u"table"_s);
            row("separator", 7, 0, 7, QString());
        }
    }
    /// The dialogs open a moment after the event of the menu, once.
    void MenuActions()
    {
        QFETCH(bool, position);
        QFETCH(int, item);
        HandlersRig &rig = *m_rig;
        rig.LoadSmallPage();
        SurfaceState &state = rig.Selection;
        state.ContextHasTable = true;
        state.ContextHasPosition = position;
        state.ContextPositionCount = position ? 2 : 0;
        state.CellScope = 7;
        rig.Page.LastGoodHtml.clear();
        emit rig.Surface.ContextMenuAction(6 + (position ? 2 : 0) + item);
        QTEST(state.PendingDialog, "pending");
        QTEST(state.CellScope, "scope");
        QVERIFY(!rig.Page.LastGoodHtml.isEmpty()); // the text from before the change is kept
        QVERIFY(rig.Opened.isEmpty());
        QFETCH(QString, opened);
        QTRY_COMPARE(rig.Opened.join(u','), opened);
        QCOMPARE(state.PendingDialog, 0);
        QVERIFY(!rig.Handlers->findChild<QTimer *>(u"Timer1"_s) ||
                !rig.Handlers->findChild<QTimer *>(u"Timer1"_s)->isActive());
    }

    // ---- clicks ----

    void AltClick_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("message"); // %1: the page's folder
        QTest::addColumn<QString>("loaded");
        const auto row = [](const char *name, const QString &body, const QString &message, const QString &loaded = {}) {
            QTest::newRow(name) << body << message << loaded;
        };
        const auto link = [](const QString &target) { return u"<a href=\"%1\">some words</a>"_s.arg(target); };
        const QString preview = u" and cannot be loaded into the editor. You can test this link in the Preview tab."_s;
        row("http", link(u"http://x/?a=1&amp;b"_s), u"This is an external URL (http://x/?a=1&b)"_s + preview);
        row("https in capitals", link(u"HTTPS://x/"_s), u"This is an external URL (HTTPS://x/)"_s + preview);
        row("ftp", link(u"ftp://x/"_s), u"This is an external URL (ftp://x/)"_s + preview);
        row("mail", link(u"mailto:a@b"_s), u"This is a MailTo URL (mailto:a@b)"_s + preview);
        row("script", link(u"javascript:go()"_s), u"This is a Javascript function (javascript:go())"_s + preview);
        row("address in an address", link(u"mailto:a@b?body=http://x"_s),
            u"This is an external URL (mailto:a@b?body=http://x)"_s + preview);
        row("bookmark", link(u"#top"_s),
            u"This is a link to the bookmark \"#top\" in the current document. You can test this link in the Preview "
            "tab."_s);
        row("the page itself", link(u"PAGE.htm#top"_s), QString());
        row("no such file", link(u"sub/none.htm#x"_s), u"The file %1/sub/none.htm does not exist."_s);
        row("another page", link(u"other%20page.htm"_s), QString(), u"other page.htm"_s);
        row("the file of a bookmark", link(u"other page.htm#here"_s), QString(), u"other page.htm"_s);
        row("from a format in the link", u"<p><a href=\"#b\"><b><i>some words</i></b></a></p>"_s,
            u"This is a link to the bookmark \"#b\" in the current document. You can test this link in the Preview "
            "tab."_s);
        row("four elements up", u"<p><a href=\"#b\"><b><i><u>some words</u></i></b></a></p>"_s, QString());
        row("no link", u"<p>some words</p>"_s, QString());
        row("link far into its element", u"<p><b>%1</b><a href=\"#b\">x</a></p>"_s.arg(u"w "_s.repeated(20)),
            QString());
        row("anchor without target", u"<a name=x>some words</a>"_s, QString());
    }
    void AltClick()
    {
        QFETCH(QString, body);
        QFETCH(QString, message);
        QFETCH(QString, loaded);
        HandlersRig &rig = *m_rig;
        rig.Put(u"other page.htm"_s, EditorRig::SmallPage);
        rig.LoadBody(body);
        if (!message.isEmpty())
            rig.Boxes.Expect(Answer::Ok);
        rig.AltClick();
        QVERIFY(!rig.Selection.AltDown);
        QCOMPARE(rig.Boxes.Boxes.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty())
            QCOMPARE(rig.Boxes.Boxes[0].Text, message.contains(u"%1/"_s) ? message.arg(rig.Folder()) : message);
        QCOMPARE(rig.Page.CurrentFilePath, rig.Path(loaded.isEmpty() ? u"page.htm"_s : loaded));
    }

    void OneLinkForOnePress()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<a href=\"#top\">some words</a>"_s);
        rig.Boxes.Expect(Answer::Ok);
        rig.AltClick();
        rig.Click();
        QCOMPARE(rig.Boxes.Boxes.size(), 1);
        // Not on an object.
        rig.LoadBody(u"<a href=\"#top\"><img width=40 height=40></a>"_s);
        rig.SelectObject();
        rig.Selection.AltDown = true;
        emit rig.Surface.onclick();
        QVERIFY(!rig.Selection.AltDown);
        QCOMPARE(rig.Boxes.Boxes.size(), 1);
    }

    void DoubleClick_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<bool>("object");
        QTest::addColumn<QString>("opened");
        const auto row = [](const char *name, const QString &body, bool object, const QString &opened) {
            QTest::newRow(name) << body << object << opened;
        };
        row("picture", u"<img width=40 height=40>"_s, true, u"image"_s);
        row("picture in a link", u"<a href=x><img width=40 height=40></a>"_s, true, u"image"_s);
        row("field", u"<input type=button value=wide>"_s, true, u"field"_s);
        row("drop-down list", u"<select style=\"width:90px\"><option>a</select>"_s, true, u"field"_s);
        row("text area", u"<textarea>a</textarea>"_s, true, u"field"_s);
        row("pop-up object with a picture in it",
            u"<object width=60 height=60 classid=\"java:JHSecondaryViewer\"><img src=a></object>"_s, true,
            u"popup,image"_s);
        row("link", u"<a href=\"x\">some words</a>"_s, false, u"link"_s);
        row("format in a link", u"<a href=\"x\"><b>some words</b></a>"_s, false, u"link"_s);
        row("link inside its element", u"<p><i>some</i> <a href=\"x\">words</a></p>"_s, false, QString());
        row("plain words", u"<p>some words</p>"_s, false, QString());
    }
    void DoubleClick()
    {
        QFETCH(QString, body);
        QFETCH(bool, object);
        HandlersRig &rig = *m_rig;
        rig.LoadBody(body);
        rig.Selection.ImageDialogEditing = 1;
        if (object) {
            rig.SelectObject();
            emit rig.Surface.ondblclick();
        } else {
            QSignalSpy doubled(&rig.Surface, &DesignSurface::ondblclick);
            rig.DoubleClick();
            QTRY_COMPARE(doubled.size(), 1);
        }
        QFETCH(QString, opened);
        QCOMPARE(rig.Opened.join(u','), opened);
        QCOMPARE(rig.Selection.ImageDialogEditing, opened.contains(u"image"_s) ? 0 : 1);
    }

    // ---- keys ----

    void Keys()
    {
        HandlersRig &rig = *m_rig;
        const QString path = rig.LoadSmallPage();
        SurfaceState &state = rig.Selection;
        QWidget *input = rig.Surface.InputWidget();
        input->setFocus();
        QTest::keyPress(input, Qt::Key_Shift, Qt::ShiftModifier);
        QTest::keyPress(input, Qt::Key_Control, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(state.ShiftDown && state.CtrlDown && !state.AltDown);
        QCOMPARE(rig.Surface.DOM().EventKeyCode(), 0); // only while the event is handled
        QTest::keyRelease(input, Qt::Key_Shift, Qt::ControlModifier);
        QTRY_VERIFY(!state.ShiftDown && !state.CtrlDown); // whichever key rose
        QTest::keyRelease(input, Qt::Key_Control);

        // Equal keys in one go are told one by one.
        QSignalSpy down(&rig.Surface, &DesignSurface::onkeydown);
        rig.TypeAtStart(u"sss"_s);
        QTRY_COMPARE(down.size(), 3);
        QCOMPARE(EditorRig::Bytes(path), EditorRig::SmallPage); // no Ctrl, no save
        QTest::keyPress(input, Qt::Key_Control, Qt::ControlModifier);
        QTest::keyClick(input, Qt::Key_S, Qt::ControlModifier);
        QTest::keyRelease(input, Qt::Key_Control);
        QTRY_VERIFY(EditorRig::Bytes(path).contains("sss"));

        // A key that is still down when the focus goes does not stay so.
        QTest::keyPress(input, Qt::Key_Control, Qt::ControlModifier);
        QTRY_VERIFY(state.CtrlDown);
        rig.Source.show();
        rig.Source.setFocus();
        QTRY_VERIFY(!state.CtrlDown);
    }

    // ---- Edit > Cut ----

    void CutOfText()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<p>one two</p>"_s);
        QGuiApplication::clipboard()->setText(u"kept"_s);
        QVERIFY(rig.Surface.SelectText(u"one "_s));
        DeleteImageMapTag(*rig.Edit);
        QVERIFY(rig.Surface.DocumentHTML().contains(u"<P>two</P>"_s));
        rig.Selection.LastCutMarkup = u"<IMG src=x.gif>"_s;
        QVERIFY(rig.Surface.SelectText(u"two"_s));
        DeleteImageMapTag(*rig.Edit);
        QVERIFY(rig.Surface.DocumentHTML().contains(u"<P><IMG src=x.gif></P>"_s));
        QCOMPARE(QGuiApplication::clipboard()->text(), u"kept"_s);
    }

    void CutOfObjectWithoutMap()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<p><img src=\"x.gif\" width=40 height=40>a</p>"_s);
        rig.SelectObject();
        const QString before = rig.Surface.DocumentHTML();
        DeleteImageMapTag(*rig.Edit);
        QCOMPARE(rig.Selection.LastCutMarkup, u"<IMG src=x.gif width=40 height=40>"_s);
        QCOMPARE(rig.Surface.DocumentHTML(), before);
    }

    void CutOfObjectWithMap()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<p><img src=\"x.gif\" width=40 height=40 usemap=\"#m\">a</p><map name=\"m\"><area></map>"
                     "<map name=n></map>"_s);
        rig.SelectObject();
        rig.Dialogs.ExpectSave({}); // the surface's own save asks for a name: no
        DeleteImageMapTag(*rig.Edit);
        const QByteArray saved = EditorRig::Bytes(rig.Path(u"page.htm"_s));
        QVERIFY2(!saved.contains("<img") && !saved.contains("\"m\"") && saved.contains("\"n\""), saved.constData());
        QVERIFY(saved.contains("a</p>"));
        QCOMPARE(rig.Page.CurrentFilePath, rig.Path(u"page.htm"_s));
        QVERIFY(!rig.Edit->HasUnsavedChanges());
    }

    // ---- after a drag ----

    void Drop()
    {
        HandlersRig &rig = *m_rig;
        rig.LoadBody(u"<p>ab</p>"_s);
        rig.Surface.CaretToPageStart();
        SurfaceState &state = rig.Selection;
        QSignalSpy updated(rig.Handlers.get(), &SurfaceHandlers::ToolbarsOutOfDate);
        state.DropMarkup = u"<b>x</b>"_s;
        state.DragState = 1;
        emit rig.Surface.DisplayChanged();
        QVERIFY(state.DropArmed);
        state.DragState = -1;
        emit rig.Surface.DisplayChanged();
        QVERIFY(!state.DropArmed);
        emit rig.Surface.DisplayChanged();
        QVERIFY(rig.Surface.DocumentHTML().contains(u"<P><B>x</B>ab</P>"_s)); // once
        QVERIFY(updated.size() >= 3);

        state.DropMarkup = u"exform"_s;
        state.DropKind = u"Text Box"_s;
        state.DropArmed = true;
        emit rig.Surface.DisplayChanged();
        QCOMPARE(rig.Opened, QStringList{u"form Text Box"_s});
        QVERIFY(state.DropMarkup.isEmpty());
    }

    void DisplayChangedRests_data()
    {
        QTest::addColumn<bool>("busy");
        QTest::addColumn<int>("tab");
        QTest::newRow("during a load") << true << int(ViewTab::Normal);
        QTest::newRow("in another view") << false << int(ViewTab::HtmlSource);
    }
    void DisplayChangedRests()
    {
        QFETCH(bool, busy);
        QFETCH(int, tab);
        HandlersRig &rig = *m_rig;
        rig.LoadSmallPage();
        rig.Selection.DisplayChangedBusy = busy;
        rig.Page.ActiveTab = ViewTab(tab);
        rig.Selection.DragState = 1;
        QSignalSpy updated(rig.Handlers.get(), &SurfaceHandlers::ToolbarsOutOfDate);
        emit rig.Surface.DisplayChanged();
        QVERIFY(!rig.Selection.DropArmed);
        QVERIFY(updated.isEmpty());
    }

private:
    std::unique_ptr<HandlersRig> m_rig;
};

QTEST_MAIN(SurfaceHandlersTest)
#include "SurfaceHandlersTest.moc"
