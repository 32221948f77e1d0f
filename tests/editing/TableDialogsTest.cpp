#include "editing/FormCellProp.h"
#include "editing/FormTableProp.h"
#include "editing/InsertTableDlg.h"
#include "support/AccessibleWalk.h"
#include "TableDialogRig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The look of tables, and new ones.
class TableDialogsTest : public TableDialogRig
{
    Q_OBJECT

private slots:
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
};

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
