#include "editing/FormCellProp.h"
#include "editing/FormTableProp.h"
#include "editing/InsertTableDlg.h"
#include "support/AccessibleWalk.h"
#include "support/EditorRig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The dialogs on tables with real pages: what they show, and the exact text of the page after OK.
class TableDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        EditorRig::StartEngine();
        m_rig = std::make_unique<EditorRig>();
        m_rig->LoadSmallPage();
    }
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s)); }
    void cleanup();
    void cleanupTestCase() { m_rig.reset(); }
    void cellShowsAndLeaves_data();
    void cellShowsAndLeaves();
    void cellChanges_data();
    void cellChanges();
    void scopes_data();
    void scopes();
    void withoutPreservation();
    void badSizes_data();
    void badSizes();
    void colorsAndPicture();
    void tableShowsAndLeaves_data();
    void tableShowsAndLeaves();
    void tableChanges_data();
    void tableChanges();
    void noTableHere();
    void selectedTableStays();
    void borders();
    void insertedTables_data();
    void insertedTables();
    void badNumbers_data();
    void badNumbers();
    void cancelled();
    void withoutMouse();

private:
    /// The page with the caret before "here".
    void Load(const QString &body)
    {
        m_rig->Surface.SetSourceCodePreservation(true);
        const QString page = u"<html><head><title>t</title></head>\n<body>%1</body></html>\n"_s;
        QVERIFY(m_rig->Load(m_rig->Put(u"t.php"_s, page.arg(body).toUtf8())));
        QVERIFY(m_rig->Surface.WaitWhileBusy());
        m_rig->Window.activateWindow();
        m_rig->Surface.InputWidget()->setFocus();
        QVERIFY(m_rig->Surface.SelectText(u"here"_s));
        m_rig->Surface.CollapseSelection();
    }
    static void Set(QWidget &form, const QString &changes);
    static QString Shown(QWidget &form);
    static void Press(QWidget &form, const char *button)
    {
        QTest::mouseClick(form.findChild<QPushButton *>(QLatin1StringView(button)), Qt::LeftButton);
    }
    /// The page has changed in one step, which undo takes back.
    void CheckOneStep(const QString &before);
    void CheckUntouched(const QString &before);

    QString Page() { return m_rig->Surface.DocumentHTML(); }

    std::unique_ptr<EditorRig> m_rig;
};

void TableDialogsTest::cleanup()
{
    m_rig->Boxes.Verify();
    m_rig->Boxes.Boxes.clear();
    m_rig->Dialogs.Verify();
    m_rig->Dialogs.Requests.clear();
    m_rig->Page.HtmlDirty = false;
    m_rig->Surface.MarkClean();
    m_rig->Selection.CellScope = 0;
}

/// "Name=value;Name=value": a text is typed, anything else is chosen or, without a value, clicked.
void TableDialogsTest::Set(QWidget &form, const QString &changes)
{
    for (const QString &change : changes.split(u';', Qt::SkipEmptyParts)) {
        const QString name = change.section(u'=', 0, 0);
        const QString value = change.section(u'=', 1);
        auto *control = form.findChild<QWidget *>(name);
        QVERIFY2(control, qPrintable(name));
        if (auto *edit = qobject_cast<QLineEdit *>(control)) {
            edit->selectAll();
            QTest::keyClick(edit, Qt::Key_Backspace);
            QTest::keyClicks(edit, value);
        } else if (auto *combo = qobject_cast<QComboBox *>(control)) {
            combo->setCurrentText(value);
        } else {
            auto *button = qobject_cast<QAbstractButton *>(control);
            QVERIFY2(button && button->isEnabled(), qPrintable(name));
            button->click();
        }
    }
}

/// What the controls show, those left out that are at their defaults.
QString TableDialogsTest::Shown(QWidget &form)
{
    QStringList all;
    const auto ticked = [&](const char *name) {
        const auto *box = form.findChild<QCheckBox *>(QLatin1StringView(name));
        return box && box->isChecked();
    };
    const auto text = [&](const char *name) { return form.findChild<QLineEdit *>(QLatin1StringView(name))->text(); };
    const auto size = [&](const char *tick, const char *edit, const char *percent) {
        if (ticked(tick))
            all += QLatin1StringView(edit).mid(4) + u' ' + text(edit) +
                   (form.findChild<QRadioButton *>(QLatin1StringView(percent))->isChecked() ? u"%"_s : QString());
        else if (!text(edit).isEmpty())
            all += u"text without tick"_s;
    };
    const auto color = [&](const char *tick, const char *sample) {
        if (ticked(tick))
            all += QLatin1StringView(sample).mid(5) + u' ' +
                   form.findChild<QFrame *>(QLatin1StringView(sample))->palette().color(QPalette::Window).name();
    };
    size("CheckSetWidth", "EditWidth", "OptionWidthPct");
    size("CheckSetHeight", "EditHeight", "OptionHeightPct");
    color("CheckSetBkColor", "ShapeBkColor");
    color("CheckSetBorderColor", "ShapeBorderColor");
    if (ticked("CheckUseBkImage"))
        all += u"Image "_s + text("EditBkImage");
    for (const QComboBox *combo : form.findChildren<QComboBox *>())
        if (combo->currentIndex() > 0)
            all += combo->currentText();
    if (ticked("CheckNoWrap"))
        all += u"no wrap"_s;
    for (const QSpinBox *box : form.findChildren<QSpinBox *>()) {
        const int plain = box->objectName() == "UpDownPadding"_L1 ? 3 : box->objectName().endsWith("Span"_L1) ? 1 : 0;
        if (box->value() != plain)
            all += box->objectName().mid(6) + u' ' + box->text();
    }
    return all.join(u", "_s);
}

void TableDialogsTest::CheckOneStep(const QString &before)
{
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Page(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void TableDialogsTest::CheckUntouched(const QString &before)
{
    QCOMPARE(Page(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

// ---- cells ----

void TableDialogsTest::cellShowsAndLeaves_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *attributes, const char *shown) {
        QTest::newRow(attributes) << QString::fromUtf8(attributes) << QString::fromUtf8(shown);
    };
    row("", "");
    row(" width=50", "Width 50");
    row(" WIDTH=\"33%\" height='12'", "Width 33%, Height 12");
    row("  height = 40%   width\n=\"10\" ", "Width 10, Height 40%");
    row(" bgcolor=#ffee00 BorderColor=\"#010203\"", "BkColor #ffee00, BorderColor #010203");
    row(" bordercolor=#112233", "BorderColor #112233");
    row(" bgcolor=red", "BkColor #dd0e00");
    row(" background=\"pics/a b.gif\"", "Image pics/a b.gif");
    row(" align=MIDDLE valign=center", "Center, Middle");
    row(" ALIGN=\"right\" VALIGN=\"baseline\"", "Right, Baseline");
    row(" valign=BOTTOM", "Bottom");
    row(" align=justify", "");
    row(" nowrap", "no wrap");
    row(" nowrap=\"nowrap\" title=\"width=3\"", "no wrap");
    row(" colspan=2 rowspan=\"3\"", "RowSpan 3, ColSpan 2");
    row(" rowspan=0 colspan=x", "");
    row(" class=\"a>b\" width=7", "Width 7");
    row(" <?php if ($a > 1) echo 'width=9' ?> height=8", "Height 8");
    row(" width=\"<?= $w ?>\" bgcolor=#0000ff", "Width <?= $w ?>, BkColor #0000ff");
    row(" width=\"<%= w %>\" nowrap", "Width <%= w %>, no wrap");
    row(" width=wide height=3px style=\"width: 5px\"", "Width wide, Height 3px");
    row(" data-width=4 width=\"5\"", "Width 5");
}

void TableDialogsTest::cellShowsAndLeaves()
{
    QFETCH(QString, attributes);
    Load(u"<p>a</p><table border=1><tr><td%1>here</td><td width=1>b</table>"_s.arg(attributes));
    const QString before = Page();
    FormCellProp form(*m_rig->Edit);
    QTEST(Shown(form), "shown");
    QCOMPARE(form.windowTitle(), u"Cell Properties"_s);
    Press(form, "OKButton");
    QCOMPARE(form.result(), int(QDialog::Accepted));
    CheckUntouched(before);
}

void TableDialogsTest::cellChanges_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *before, const char *changes, const char *after) {
        QTest::addRow("%s %s", before, changes)
            << QString::fromUtf8(before) << QString::fromUtf8(changes) << QString::fromUtf8(after);
    };
    row("<td>", "EditWidth=60;OptionWidthPix", "<td width=\"60\">");
    row("<td width=\"50\">", "EditWidth=150;OptionWidthPct", "<td width=\"100%\">");
    row("<td width=150%>", "", "<td width=100%>");
    row("<TD HEIGHT='5' WIDTH=\"50\">", "CheckSetWidth", "<TD HEIGHT='5'>");
    row("<td height=5 class=x>", "EditHeight=", "<td class=x>");
    row("<td nowrap align=left>", "CheckNoWrap;ComboHoriz=Center", "<td align=Center>");
    row("<td align=left>", "ComboHoriz=Default;ComboVert=Baseline;CheckNoWrap", "<td valign=\"Baseline\" nowrap>");
    row("<td colspan=2>", "EditRowSpan=2;EditColSpan=1", "<td rowspan=\"2\">");
    row("<td bgcolor=red bordercolor=#000000>", "CheckSetBkColor", "<td bordercolor=#000000>");
    row("<td title='x'>", "CheckSetBkColor", "<td title='x' bgcolor=\"#FFFFFF\">");
    row("<td>", "EditBkImage=my pic.gif", "<td background=\"my pic.gif\">");
    row("<td background=a.gif>", "EditBkImage=b\".gif", "<td background=\"b&quot;.gif\">");
    row("<td <?php echo $x ?> width=5>", "EditWidth=6", "<td <?php echo $x ?> width=6>");
    row("<td bgcolor=\"<?= $c ?>\" width=5>", "ComboVert=Top", "<td bgcolor=\"<?= $c ?>\" width=5 valign=\"Top\">");
    row("<td vALIGN=top>", "ComboHoriz=Right", "<td vALIGN=top align=\"Right\">");
    row("<th width=10%>", "EditWidth=20", "<th width=20%>");
}

void TableDialogsTest::cellChanges()
{
    QFETCH(QString, before);
    QFETCH(QString, changes);
    QFETCH(QString, after);
    const QString body = u"<p>a</p><table border=1><tr><td width=1>b</td>%1here</table>"_s;
    Load(body.arg(before));
    const QString page = Page();
    {
        FormCellProp form(*m_rig->Edit);
        Set(form, changes);
        Press(form, "OKButton");
    }
    QVERIFY2(Page() == QString(page).replace(before, after), qPrintable(Page().section(u"<body>"_s, 1)));
    m_rig->Type(u"x"_s); // the caret is where it was
    QVERIFY2(Page().contains(u">xhere"_s), qPrintable(Page()));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    CheckOneStep(page);
}

void TableDialogsTest::scopes_data()
{
    QTest::addColumn<int>("scope");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("disabled");
    QTest::addColumn<QString>("after");
    QTest::newRow("row")
        << 1 << u"Row Properties"_s << u"CheckSetWidth UpDownRowSpan EditRowSpan"_s
        << u"<tr><td>a</td><td>b</td></tr>\n"
           "<tr><td height=9 bgcolor=\"#123456\">here</td><td height=9 bgcolor=\"#123456\">d</td></tr>\n"
           "<tr><td>e</td></tr>"_s;
    QTest::newRow("column") << 2 << u"Column Properties"_s << u"CheckSetHeight UpDownColSpan EditColSpan"_s
                            << u"<tr><td width=\"30%\" bgcolor=\"#123456\" rowspan=\"2\">a</td><td>b</td></tr>\n"
                               "<tr><td width=30% rowspan=2 bgcolor=\"#123456\">here</td><td height=9>d</td></tr>\n"
                               "<tr><td width=\"30%\" bgcolor=\"#123456\" rowspan=\"2\">e</td></tr>"_s;
}

/// The attributes of the cell go to all of its row or column, but for those that make no sense there.
void TableDialogsTest::scopes()
{
    QFETCH(int, scope);
    QFETCH(QString, disabled);
    QFETCH(QString, after);
    Load(u"<table border=1>\n<tr><td>a</td><td>b</td></tr>\n<tr><td width=30% height=9 rowspan=2>here</td>"
         "<td height=9>d</td></tr>\n<tr><td>e</td></tr></table>"_s);
    const QString page = Page();
    m_rig->Selection.CellScope = scope;
    m_rig->Dialogs.ExpectColor(QColor(0x12, 0x34, 0x56));
    {
        FormCellProp form(*m_rig->Edit);
        QTEST(form.windowTitle(), "title");
        for (const QString &name : {u"CheckSetWidth"_s, u"CheckSetHeight"_s, u"UpDownRowSpan"_s, u"UpDownColSpan"_s,
                                    u"EditRowSpan"_s, u"EditColSpan"_s, u"CheckNoWrap"_s, u"ComboVert"_s})
            QCOMPARE(form.findChild<QWidget *>(name)->isEnabled(), !disabled.split(u' ').contains(name));
        Press(form, "Command2");
        Press(form, "OKButton");
    }
    const QString rows = Page().section(u"<table border=1>\n"_s, 1).section(u"</table>"_s, 0, 0);
    QCOMPARE(rows, after);
    CheckOneStep(page);
}

/// Without the page's own source, what is written stands in the engine's form; a selected object stays selected.
void TableDialogsTest::withoutPreservation()
{
    Load(u"<table><tr><td width=5 nowrap>here<img width=20 height=20><td>b</table>"_s);
    m_rig->Surface.SetSourceCodePreservation(false);
    const QString before = Page();
    const qsizetype at = before.indexOf(u"<IMG"_s) + 1;
    QVERIFY(m_rig->Surface.SelectInText(before, {at, before.indexOf(u'>', at) + 2 - at}));
    {
        FormCellProp form(*m_rig->Edit);
        QCOMPARE(Shown(form), u"Width 5, no wrap"_s);
        Set(form, u"ComboHoriz=Right;EditHeight=9;CheckSetWidth"_s);
        Press(form, "OKButton");
    }
    QVERIFY2(Page().contains(u"<TD nowrap height=9% align=Right>here<IMG"_s), qPrintable(Page()));
    QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    CheckOneStep(before);
}

void TableDialogsTest::badSizes_data()
{
    QTest::addColumn<bool>("ofCell");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    const auto row = [](const char *name, bool ofCell, const QString &changes, const QString &message) {
        QTest::newRow(name) << ofCell << changes << message
                            << (message.contains(u"width"_s) ? u"EditWidth"_s : u"EditHeight"_s);
    };
    const QString width = u"You must specify a valid width for the table"_s;
    const QString height = u"You must specify a valid height for the table"_s;
    row("no width", true, u"CheckSetWidth"_s, width + u" cell."_s);
    row("width below zero", true, u"EditWidth=-1"_s, width + u" cell."_s);
    row("no height", true, u"EditWidth=0;CheckSetHeight"_s, height + u" cell."_s);
    row("table: no width", false, u"CheckSetWidth"_s, width + u'.');
    row("table: no height", false, u"EditWidth=5;CheckSetHeight"_s, height + u'.');
}

void TableDialogsTest::badSizes()
{
    QFETCH(bool, ofCell);
    QFETCH(QString, changes);
    QFETCH(QString, message);
    Load(u"<table><tr><td>here</table>"_s);
    const QString before = Page();
    std::unique_ptr<QDialog> form;
    if (ofCell)
        form = std::make_unique<FormCellProp>(*m_rig->Edit);
    else
        form = std::make_unique<FormTableProp>(*m_rig->Edit);
    form->show();
    Set(*form, changes);
    m_rig->Boxes.Expect(Answer::Ok);
    Press(*form, "OKButton");
    QCOMPARE(m_rig->Boxes.Boxes.value(0).Text, message);
    QVERIFY(form->isVisible());
    QTEST(form->focusWidget()->objectName(), "focus");
    CheckUntouched(before);
}

void TableDialogsTest::colorsAndPicture()
{
    Load(u"<table><tr><td bgcolor=#102030>here</table>"_s);
    FormCellProp form(*m_rig->Edit);
    m_rig->Dialogs.StartColors.clear();
    m_rig->Dialogs.ExpectColor(std::nullopt);
    Press(form, "Command2");
    m_rig->Dialogs.ExpectColor(QColor(1, 2, 3));
    Press(form, "Command3");
    m_rig->Dialogs.ExpectOpen(m_rig->Path(u"pics/b.gif"_s));
    Press(form, "Command1");
    QCOMPARE(m_rig->Dialogs.StartColors.value(0), QColor(0x10, 0x20, 0x30));
    QCOMPARE(m_rig->Dialogs.Requests.value(0).Title, u"Set Background Image"_s);
    QCOMPARE(m_rig->Dialogs.Requests.value(0).Filter, u"Graphics Files |*.gif;*.jpg;*.pgn"_s);
    QCOMPARE(Shown(form), u"BkColor #102030, BorderColor #010203, Image "_s + m_rig->Path(u"pics/b.gif"_s));
    Press(form, "OKButton");
    QVERIFY2(Page().contains(u"<td bgcolor=#102030 bordercolor=\"#010203\" background=\"pics/b.gif\">here"_s),
             qPrintable(Page()));
    FormTableProp table(*m_rig->Edit);
    m_rig->Dialogs.ExpectOpen(std::nullopt);
    Press(table, "Command1");
    QCOMPARE(m_rig->Dialogs.Requests.value(1).Filter, u"Graphics Files |*.gif;*.jpg;*.png"_s);
    QCOMPARE(Shown(table), QString());
}

// ---- tables ----

void TableDialogsTest::tableShowsAndLeaves_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *attributes, const char *shown) {
        QTest::newRow(attributes) << QString::fromUtf8(attributes) << QString::fromUtf8(shown);
    };
    row("", "");
    row(" border", "Border 1");
    row(" border=0 cellpadding=3 cellspacing=0", "");
    row(" CELLSPACING='2' CELLPADDING=\"0\" BORDER=4", "Border 4, Padding 0, Spacing 2");
    row(" cellpadding=5% border=thick", "Padding 5");
    row(" width=\"100%\" height=20", "Width 100%, Height 20");
    row(" height = 50% Width=500", "Width 500, Height 50%");
    row(" align=middle", "Center");
    row(" ALIGN=\"LEFT\"", "Left");
    row(" bgcolor='#FFEE00' bordercolor=#abcdef", "BkColor #ffee00, BorderColor #abcdef");
    row(" bordercolor=#112233 border=1", "BorderColor #112233, Border 1");
    row(" background=\"a&amp;b.gif\"", "Image a&b.gif");
    row(" style=\"border: 0\" title='cellpadding=9'", "");
    row(" width=\"<?php echo $w ?>\" border=1", "Width <?php echo $w ?>, Border 1");
    row(" class=\"a > b\" width=8", "Width 8");
    row(" bgcolor=navy", "BkColor #000000");
}

void TableDialogsTest::tableShowsAndLeaves()
{
    QFETCH(QString, attributes);
    Load(u"<p>a</p><table%1><tr><td align=right>here</td><td>b</table>"_s.arg(attributes));
    const QString before = Page();
    FormTableProp form(*m_rig->Edit);
    QTEST(Shown(form), "shown");
    Press(form, "OKButton");
    QCOMPARE(form.result(), int(QDialog::Accepted));
    CheckUntouched(before);
}

void TableDialogsTest::tableChanges_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *before, const char *changes, const char *after) {
        QTest::addRow("%s %s", before, changes)
            << QString::fromUtf8(before) << QString::fromUtf8(changes) << QString::fromUtf8(after);
    };
    row("<table>", "EditBorder=1", "<table border=\"1\" cellpadding=\"3\" cellspacing=\"0\">");
    row("<table border>", "EditWidth=80", "<table border width=\"80%\" cellpadding=\"3\" cellspacing=\"0\">");
    row("<TABLE WIDTH=\"150%\" BORDER=1 CELLPADDING=2 CELLSPACING=2>", "",
        "<TABLE WIDTH=\"100%\" BORDER=1 CELLPADDING=2 CELLSPACING=2>");
    row("<table border=1 cellpadding='2' cellspacing=2 align=middle>", "EditPadding=4",
        "<table border=1 cellpadding='4' cellspacing=2 align=middle>");
    row("<table align=left cellspacing=1 cellpadding=1 border=1>", "ComboHoriz=Default",
        "<table cellspacing=1 cellpadding=1 border=1>");
    row("<table cellspacing=1 cellpadding=1 border=1 bgcolor=red>", "EditHeight=5;OptionHeightPix;EditSpacing=0",
        "<table cellspacing=0 cellpadding=1 border=1 bgcolor=red height=\"5\">");
    row("<table border=<?= $b ?> cellpadding=1 cellspacing=1>", "EditBkImage=a.gif",
        "<table border=<?= $b ?> cellpadding=1 cellspacing=1 background=\"a.gif\">");
}

void TableDialogsTest::tableChanges()
{
    QFETCH(QString, before);
    QFETCH(QString, changes);
    QFETCH(QString, after);
    Load(u"<table border=9><tr><td>x</table><p>a</p>%1<tr><td width=1>b</td><td><p><b>here</b></table>"_s.arg(before));
    const QString page = Page();
    {
        FormTableProp form(*m_rig->Edit);
        Set(form, changes);
        Press(form, "OKButton");
    }
    QVERIFY2(Page() == QString(page).replace(before, after), qPrintable(Page().section(u"<body>"_s, 1)));
    m_rig->Type(u"x"_s);
    QVERIFY2(Page().contains(u">xhere"_s), qPrintable(Page()));
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    CheckOneStep(page);
}

/// Outside of any table the dialogs show their defaults and change nothing, even where one stands close.
void TableDialogsTest::noTableHere()
{
    Load(u"<table width=5><tr><td width=5>a</table><p>here</p>"_s);
    const QString before = Page();
    FormTableProp table(*m_rig->Edit);
    QCOMPARE(Shown(table), QString());
    Set(table, u"EditBorder=4"_s);
    Press(table, "OKButton");
    FormCellProp cell(*m_rig->Edit);
    QCOMPARE(Shown(cell), QString());
    Set(cell, u"EditWidth=4;OptionRow"_s);
    Press(cell, "OKButton");
    CheckUntouched(before);
}

/// A table selected as an object is shown, and stays as it is on purpose.
void TableDialogsTest::selectedTableStays()
{
    Load(u"<p>here</p><table width=70 border=2><tr><td><img width=30 height=30></table>"_s);
    const QString before = Page();
    const qsizetype at = before.indexOf(u"<img"_s) + 1;
    QVERIFY(m_rig->Surface.SelectInText(before, {at, before.indexOf(u'>', at) + 2 - at}));
    QCOMPARE(m_rig->Surface.SelectionType(), u"Control"_s);
    FormTableProp form(*m_rig->Edit);
    QCOMPARE(Shown(form), u"Width 70, Border 2"_s);
    Set(form, u"EditBorder=4"_s);
    Press(form, "OKButton");
    CheckUntouched(before);
}

void TableDialogsTest::borders()
{
    Load(u"<table><tr><td>here</table>"_s);
    const QString before = Page();
    const auto press = [&](bool shown) {
        FormTableProp form(*m_rig->Edit);
        QCOMPARE(form.findChild<QCheckBox *>(u"CheckShowBorder"_s)->isChecked(), shown);
        Set(form, u"CheckShowBorder"_s);
        Press(form, "OKButton");
    };
    press(false);
    QVERIFY(m_rig->Surface.ShowBorders() && m_rig->App.TableGuidesOn);
    press(true);
    QVERIFY(!m_rig->Surface.ShowBorders() && !m_rig->App.TableGuidesOn);
    press(false);
    QVERIFY(m_rig->Surface.ShowBorders() && m_rig->App.TableGuidesOn);
    m_rig->Surface.SetShowBorders(false);
    CheckUntouched(before);
}

// ---- new tables ----

void TableDialogsTest::insertedTables_data()
{
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("cells");
    const auto row = [](const char *name, const char *changes, const char *tag, int rows, int cells) {
        QTest::newRow(name) << QString::fromUtf8(changes) << QString::fromUtf8(tag) << rows << cells;
    };
    row("defaults", "", "<TABLE width=100% align=CENTER border=0 cellPadding=3 cellSpacing=0>", 2, 4);
    row("pixels, no alignment", "OptionWidthPix;EditWidth=300;ComboHoriz=Default",
        "<TABLE width=300 border=0 cellPadding=3 cellSpacing=0>", 2, 4);
    row("no width", "EditWidth=;ComboHoriz=Left;EditBorder=2;EditPadding=0;EditSpacing=5",
        "<TABLE align=LEFT border=2 cellPadding=0 cellSpacing=5>", 2, 4);
    row("fraction", "Rows=2.5;Cols=3.5;CheckSetWidth", "<TABLE align=CENTER border=0 cellPadding=3 cellSpacing=0>", 2,
        8);
    row("caption", "Rows=1;Cols=1;TableCaption=1 < 2",
        "<TABLE width=100% align=CENTER border=0 cellPadding=3 cellSpacing=0><CAPTION>1 &lt; 2</CAPTION>", 1, 1);
    row("10,000 rows", "Rows=10000;Cols=1", "<TABLE width=100% align=CENTER border=0 cellPadding=3 cellSpacing=0>",
        10000, 10000);
    row("colors", "Command2;Command3;ComboHoriz=Right",
        "<TABLE width=100% align=RIGHT border=0 cellPadding=3 cellSpacing=0 bgColor=#0A0B0C borderColor=#00FF00>", 2,
        4);
}

void TableDialogsTest::insertedTables()
{
    QFETCH(QString, changes);
    QFETCH(QString, tag);
    Load(u"<p>here</p>"_s);
    const QString before = Page();
    if (changes.contains(u"Command"_s)) {
        m_rig->Dialogs.ExpectColor(QColor(10, 11, 12));
        m_rig->Dialogs.ExpectColor(QColor(0, 255, 0));
    }
    m_rig->Surface.SetShowBorders(true);
    {
        InsertTableDlg form(*m_rig->Edit);
        QVERIFY(form.findChild<QCheckBox *>(u"CheckShowBorder"_s)->isChecked());
        form.show();
        Set(form, changes + u";CheckShowBorder"_s);
        QTest::keyClick(form.findChild<QLineEdit *>(u"Rows"_s), Qt::Key_Return);
        QCOMPARE(form.result(), int(QDialog::Accepted));
    }
    QVERIFY(!m_rig->Surface.ShowBorders());
    const QString after = m_rig->Surface.EngineHTML();
    QVERIFY2(after.contains(tag, Qt::CaseInsensitive), qPrintable(after.left(600)));
    QTEST(int(after.count(u"<TR>"_s)), "rows");
    QTEST(int(after.count(u"<TD>"_s)), "cells");
    CheckOneStep(before);
}

void TableDialogsTest::badNumbers_data()
{
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("message");
    const QString rows = u"Please specify a positive integer for the number of table rows."_s;
    const QString columns = u"Please specify a positive integer for the number of table columns."_s;
    QTest::newRow("no rows") << u"Rows=;Cols=x"_s << rows;
    QTest::newRow("zero rows") << u"Rows=0"_s << rows;
    QTest::newRow("rows below zero") << u"Rows=-3"_s << rows;
    QTest::newRow("rows are no number") << u"Rows=two"_s << rows;
    QTest::newRow("infinite rows") << u"Rows=inf"_s << rows;
    QTest::newRow("no columns") << u"Cols="_s << columns;
    QTest::newRow("columns are no number") << u"Cols=1,5"_s << columns;
    QTest::newRow("too many cells") << u"Rows=10000;Cols=10000"_s
                                    << u"A new table can have 100,000 cells at most. Please specify fewer rows or "
                                       "columns."_s;
}

void TableDialogsTest::badNumbers()
{
    QFETCH(QString, changes);
    QFETCH(QString, message);
    Load(u"<p>here</p>"_s);
    const QString before = Page();
    InsertTableDlg form(*m_rig->Edit);
    form.show();
    Set(form, changes);
    m_rig->Boxes.Expect(Answer::Ok);
    Press(form, "OkCmd");
    QCOMPARE(m_rig->Boxes.Boxes.value(0).Text, message);
    QCOMPARE(m_rig->Boxes.Boxes.value(0).Sign, MessageBoxes::Icon::Stop);
    QVERIFY(form.isVisible());
    CheckUntouched(before);
}

void TableDialogsTest::cancelled()
{
    Load(u"<table><tr><td>here</table>"_s);
    const QString before = Page();
    FormCellProp cell(*m_rig->Edit);
    Set(cell, u"EditWidth=5;CheckNoWrap"_s);
    Press(cell, "CancelButton");
    FormTableProp table(*m_rig->Edit);
    Set(table, u"EditWidth=5;CheckShowBorder"_s);
    QTest::keyClick(&table, Qt::Key_Escape);
    InsertTableDlg insert(*m_rig->Edit);
    Press(insert, "CancelCmd");
    QVERIFY(!cell.isVisible() && !m_rig->Surface.ShowBorders());
    CheckUntouched(before);
}

/// Every control has a name, a key of its own and a place in the order of Tab.
void TableDialogsTest::withoutMouse()
{
    Load(u"<table><tr><td>here</table>"_s);
    FormCellProp cell(*m_rig->Edit);
    FormTableProp table(*m_rig->Edit);
    InsertTableDlg insert(*m_rig->Edit);
    for (QDialog *form : std::initializer_list<QDialog *>{&cell, &table, &insert}) {
        form->show();
        QApplication::setActiveWindow(form);
        QCOMPARE(AccessibleWalk::Nameless(form), QStringList());
        QCOMPARE(AccessibleWalk::DoubledMnemonics(form), QStringList());
        QCOMPARE(AccessibleWalk::NotReachedByTab(form).join(u" "_s), QString());
        form->hide();
    }
}

QTEST_MAIN(TableDialogsTest)
#include "TableDialogsTest.moc"
