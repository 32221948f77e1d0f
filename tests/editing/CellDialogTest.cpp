#include "editing/FormCellProp.h"
#include "editing/FormTableProp.h"
#include "TableDialogRig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The look of cells, rows and columns.
class CellDialogTest : public TableDialogRig
{
    Q_OBJECT

private slots:
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
};

void CellDialogTest::cellShowsAndLeaves_data()
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

void CellDialogTest::cellShowsAndLeaves()
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

void CellDialogTest::cellChanges_data()
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

void CellDialogTest::cellChanges()
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

void CellDialogTest::scopes_data()
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
void CellDialogTest::scopes()
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
void CellDialogTest::withoutPreservation()
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

void CellDialogTest::badSizes_data()
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

void CellDialogTest::badSizes()
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

void CellDialogTest::colorsAndPicture()
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

QTEST_MAIN(CellDialogTest)
#include "CellDialogTest.moc"
