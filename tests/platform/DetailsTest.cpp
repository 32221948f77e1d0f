#include "support/SurfaceRig.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

using namespace Qt::StringLiterals;

/// Marks and lines that the editor shows on top of a page: they are seen, and they are nowhere in it.
class DetailsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void EachThingHasAMark_data();
    void EachThingHasAMark();
    void ThePageKnowsNothingOfThem();
    void NewPagesAndRenderersHaveThem();
    void BordersOfBareTables_data();
    void BordersOfBareTables();
    void LinksHaveTheColoursOfThePage();
    void ColoursOfTheServerAreNotBlack();
    void ALateStyleSheetIsTold();

private:
    DesignSurface &Surface() { return m_rig->Surface; }
    QStringList Marks() { return m_rig->Run(u"Surface.call('shownDetails')"_s).toStringList(); }

    std::unique_ptr<SurfaceRig> m_rig;
};

void DetailsTest::EachThingHasAMark_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QStringList>("marks");
    const auto row = [](const char *name, const QString &body, const QStringList &marks) {
        QTest::newRow(name) << body << marks;
    };
    row("anchors", u"<p>a<a name=x></a>b <a href=y>c</a> <a id=z>d</a></p>"_s,
        {u"\u2693\uFE0Ex"_s, u"\u2693\uFE0Ez"_s});
    row("comments", u"<p>a</p><!-- between --><p>b</p><!-- at\nthe end -->"_s, {u"!between"_s, u"!at the end"_s});
    row("scripts and styles", u"<script>var a;</script><p>a</p><style></style>"_s, {u"JS"_s, u"CSS"_s});
    row("line break", u"<p>a<br>b</p>"_s, {u"\u21B5"_s});
    row("form", u"<form name=f><p>a<input type=HIDDEN name=n></p></form>"_s, {u"FORM f"_s, u"hidden n"_s});
    row("code of the server", u"<p>a<?php echo 1 ?></p><!-- in <?= 2 ?> s -->"_s, {u"<?"_s, u"!in <? s"_s});
    row("what is below the window", u"<p>a<br>b</p><div style='height:3000px'></div><p>c<br>d</p>"_s, {u"\u21B5"_s});
}

void DetailsTest::EachThingHasAMark()
{
    QFETCH(QString, body);
    QFETCH(QStringList, marks);
    Surface().SetShowDetails(false);
    m_rig->SetBody(body);
    QCOMPARE(Marks(), QStringList());
    Surface().SetShowDetails(true);
    QTRY_COMPARE(Marks(), marks);
    m_rig->Run(u"document.body.append(document.createComment('new'))"_s);
    QTRY_COMPARE(Marks().contains(u"!new"_s), !body.contains(u"3000"_s));
}

void DetailsTest::ThePageKnowsNothingOfThem()
{
    m_rig->SetBody(u"<p>|a<a name=\"x\"></a>b<br>c</p><!-- n --><form><p>d</p></form>"_s);
    const QString before = Surface().DocumentHTML();
    Surface().SetShowDetails(true);
    Surface().SetShowBorders(true);
    m_rig->Type(u"y"_s);
    m_rig->Key(Qt::Key_Backspace);
    QCOMPARE(Surface().DocumentHTML(), before);
    Surface().ExecCommand(DECMD_SELECTALL);
    Surface().ExecCommand(DECMD_COPY);
    const QString copied = QGuiApplication::clipboard()->text();
    QVERIFY2(copied.startsWith(u"ab"_s) && !copied.contains(u"FORM"_s), qPrintable(copied));
    m_rig->UndoAll();
    QVERIFY(!Surface().IsDirty());
    QCOMPARE(Surface().DocumentHTML(), before);
}

void DetailsTest::NewPagesAndRenderersHaveThem()
{
    const auto hasMarks = [this] { return Marks().size() == 1; };
    Surface().SetShowDetails(true);
    m_rig->SetBody(u"<p>a<br>b</p>"_s);
    QTRY_VERIFY(hasMarks());
    Surface().SetDocumentHTML(u"<html><body><p>c<br>d</p></body></html>"_s);
    QVERIFY(Surface().WaitWhileBusy());
    QTRY_VERIFY(hasMarks());
    // Another doctype starts another document of the engine.
    Surface().LoadText(u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\"><p>e<br>f</p>"_s,
                       m_rig->PagePath());
    QVERIFY(Surface().WaitWhileBusy());
    QTRY_VERIFY(hasMarks());
    Surface().SetShowDetails(false);
    QTRY_VERIFY(!hasMarks());
}

void DetailsTest::BordersOfBareTables_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<bool>("outlined");
    QTest::newRow("none") << u"<table><tr><td>a</table>"_s << true;
    QTest::newRow("zero") << u"<table border=0><tr><td>a</table>"_s << true;
    QTest::newRow("one") << u"<table border=1><tr><td>a</table>"_s << false;
    QTest::newRow("inside a bordered one") << u"<table border=1><tr><th><table><tr><td>a</table></table>"_s << true;
}

void DetailsTest::BordersOfBareTables()
{
    QFETCH(QString, table);
    m_rig->SetBody(table);
    const auto outlines = [this](const QString &selector) {
        return m_rig
            ->Run(u"[...document.querySelectorAll('%1')].map((e) => getComputedStyle(e).outlineStyle)"
                  ".filter((s) => s === 'dotted').length"_s.arg(selector))
            .toInt();
    };
    Surface().SetShowBorders(true);
    QTEST(outlines(u"table"_s) == 1, "outlined");
    QTEST(outlines(u"td"_s) == 1, "outlined");
    QCOMPARE(outlines(u"th"_s), 0);
    Surface().SetShowBorders(false);
    QCOMPARE(outlines(u"*"_s), 0);
}

void DetailsTest::LinksHaveTheColoursOfThePage()
{
    const auto colour = [this] {
        return m_rig->Run(u"getComputedStyle(document.querySelector('a')).color"_s).toString();
    };
    const QString plain = u"<html><head></head><body><p><a href=\"x.htm\">x</a></p></body></html>"_s;
    const QString green = QString(plain).replace(u"<body>"_s, u"<body link=\"#112233\" text=\"#445566\">"_s);
    Surface().LoadText(green, m_rig->PagePath());
    QVERIFY(Surface().WaitWhileBusy());
    QCOMPARE(colour(), u"rgb(17, 34, 51)"_s);
    QVERIFY(!Surface().IsDirty());
    Surface().SetDocumentHTML(plain);
    QVERIFY(Surface().WaitWhileBusy());
    QVERIFY2(colour() != u"rgb(17, 34, 51)"_s, qPrintable(colour()));
    Surface().ExecCommand(DECMD_UNDO);
    QCOMPARE(colour(), u"rgb(17, 34, 51)"_s);
    QVERIFY2(Surface().DocumentHTML().contains(u"<BODY link=#112233 text=#445566>"_s),
             qPrintable(Surface().DocumentHTML()));
}

void DetailsTest::ColoursOfTheServerAreNotBlack()
{
    const auto look = [this](const QString &selector, const QString &property) {
        return m_rig->Run(u"getComputedStyle(document.querySelector('%1')).%2"_s.arg(selector, property)).toString();
    };
    const QString clear = u"rgba(0, 0, 0, 0)"_s;
    Surface().LoadText(u"<html><head><style>.own { background: #010203 }</style></head><body bgcolor=<?= $b ?>>"
                       "<table><tr bgcolor=\"#<?= $r ?>\"><td class=own bgcolor=<?= $c ?>>a</td></tr></table>"
                       "<div style=\"color:#040506\"><font color=\"<?= $f ?>\">b</font></div></body></html>"_s,
                       m_rig->PagePath());
    QVERIFY(Surface().WaitWhileBusy());
    QCOMPARE(look(u"body"_s, u"backgroundColor"_s), clear);
    QCOMPARE(look(u"tr"_s, u"backgroundColor"_s), clear);
    QCOMPARE(look(u"td"_s, u"backgroundColor"_s), u"rgb(1, 2, 3)"_s);
    QCOMPARE(look(u"font"_s, u"color"_s), u"rgb(4, 5, 6)"_s);
    m_rig->SetBody(u"<table><tr><td bgcolor=#070809>a</table>"_s);
    QCOMPARE(look(u"td"_s, u"backgroundColor"_s), u"rgb(7, 8, 9)"_s);
}

/// What toolbars show is asked for when the display has changed, and at no other time.
void DetailsTest::ALateStyleSheetIsTold()
{
    constexpr int detours = 40; // each of them takes the engine a while
    for (int i = 0; i <= detours; ++i) {
        QFile file(m_rig->Path(u"%1.css"_s.arg(i)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(i < detours ? "@import '" + QByteArray::number(i + 1) + ".css';"
                               : QByteArray("body { font-family: 'Some Face' }"));
    }
    QString shown;
    connect(&Surface(), &DesignSurface::DisplayChanged, this,
            [&] { shown = Surface().ExecCommand(DECMD_GETFONTNAME).toString(); });
    m_rig->SetBody(u"<p>|a</p>"_s);
    QTRY_VERIFY(!shown.isEmpty());
    m_rig->Run(u"document.head.append(Object.assign(document.createElement('link'),"
               "{ rel: 'stylesheet', href: '0.css' }))"_s);
    QTRY_COMPARE(shown, u"Some Face"_s);
    disconnect(&Surface(), &DesignSurface::DisplayChanged, this, nullptr);
}

QTEST_MAIN(DetailsTest)
#include "DetailsTest.moc"
