#include "editing/FormBackground.h"
#include "support/EditorRig.h"

#include <QCheckBox>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

/// The colours and the picture of the body tag: as text, and through the dialog and a real page.
class FormBackgroundTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { EditorRig::StartEngine(); }
    void init();
    void cleanup();
    void attributes_data();
    void attributes();
    void showsWhatThePageHas();
    void okWithoutAChangeLeavesThePage();
    void changesAreOneStep();
    void pageWithoutBodyTagStays();

private:
    template <class T>
    T *Find(FormBackground &form, const QString &name)
    {
        return form.findChild<T *>(name);
    }
    QString Body(const QString &attributes)
    {
        return u"<html><head></head>\n<body%1>x</body></html>\n"_s.arg(attributes);
    }
    void Open(const QString &bodyAttributes);
    QString BodyTag();

    std::unique_ptr<EditorRig> m_rig;
};

void FormBackgroundTest::init()
{
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
    m_rig = std::make_unique<EditorRig>();
}

void FormBackgroundTest::cleanup()
{
    m_rig.reset();
}

void FormBackgroundTest::Open(const QString &bodyAttributes)
{
    QVERIFY(m_rig->Load(m_rig->Put(u"a.htm"_s, Body(bodyAttributes).toUtf8())));
}

QString FormBackgroundTest::BodyTag()
{
    const QString html = m_rig->Surface.DocumentHTML();
    const qsizetype at = html.indexOf("<BODY"_L1);
    return html.sliced(at, html.indexOf(u'>', at) - at + 1);
}

void FormBackgroundTest::attributes_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("values"); // bgcolor|text|link|vlink|alink|background, "-" for none
    QTest::addColumn<QString>("after");
    QTest::newRow("added in their order") << u""_s << u"#FFFFFF|#000000|#0000FF|#800080|#FF0000|a.gif"_s
                                          << u" BGCOLOR=#FFFFFF TEXT=#000000 LINK=#0000FF ALINK=#FF0000 VLINK=#800080 "
                                             "BACKGROUND=a.gif"_s;
    QTest::newRow("unticked goes") << u" bgcolor=red text=blue"_s << u"-|blue|-|-|-|-"_s << u"  text=blue"_s;
    QTest::newRow("link is not vlink") << u" vlink=#111111"_s << u"-|-|#222222|#111111|-|-"_s
                                       << u" vlink=#111111 LINK=#222222"_s;
    QTest::newRow("text is not a class") << u" class=text"_s << u"-|-|-|-|-|-"_s << u" class=text"_s;
    QTest::newRow("picture with a blank")
        << u" background=a.gif"_s << u"-|-|-|-|-|my pic.gif"_s << u" background=\"my pic.gif\""_s;
}

void FormBackgroundTest::attributes()
{
    QFETCH(QString, before);
    QFETCH(QString, values);
    QFETCH(QString, after);
    const QStringList v = values.split(u'|');
    const auto value = [&](int i) { return v[i] == u"-"_s ? std::nullopt : std::optional(v[i]); };
    BodyAttributes wanted;
    wanted.HasBody = true;
    for (int i = 0; i < BodyAttributes::ColorCount; ++i)
        wanted.Colors[i] = value(i);
    wanted.Background = value(5);
    const QString written = WriteBodyAttributes(Body(before), wanted);
    QCOMPARE(written, Body(after));
    QVERIFY(ReadBodyAttributes(written) == wanted);
}

void FormBackgroundTest::showsWhatThePageHas()
{
    Open(u" bgcolor=\"#ffee00\" vlink=\"#010203\" background=\"pics/a b.gif\""_s);
    FormBackground form(*m_rig->Edit);
    QVERIFY(Find<QCheckBox>(form, u"CheckSetBkColor"_s)->isChecked());
    QVERIFY(!Find<QCheckBox>(form, u"CheckText"_s)->isChecked());
    QVERIFY(!Find<QCheckBox>(form, u"CheckLink"_s)->isChecked());
    QVERIFY(Find<QCheckBox>(form, u"CheckVisitedLink"_s)->isChecked());
    QVERIFY(Find<QCheckBox>(form, u"CheckUseBkImage"_s)->isChecked());
    QCOMPARE(Find<QLineEdit>(form, u"EditBkImage"_s)->text(), u"pics/a b.gif"_s);
    const auto shown = [&](const QString &name) { return Find<QFrame>(form, name)->palette().color(QPalette::Window); };
    QCOMPARE(shown(u"ShapeBkColor"_s), QColor(0xFF, 0xEE, 0));
    QCOMPARE(shown(u"ShapeVisitedLink"_s), QColor(1, 2, 3));
}

void FormBackgroundTest::okWithoutAChangeLeavesThePage()
{
    Open(u" bgcolor=\"red\" text=\"#123\""_s);
    const QString before = m_rig->Surface.DocumentHTML();
    FormBackground form(*m_rig->Edit);
    QTest::mouseClick(Find<QPushButton>(form, u"OKButton"_s), Qt::LeftButton);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void FormBackgroundTest::changesAreOneStep()
{
    Open(u" bgcolor=\"red\" text=\"blue\""_s);
    {
        FormBackground form(*m_rig->Edit);
        QTest::mouseClick(Find<QCheckBox>(form, u"CheckSetBkColor"_s), Qt::LeftButton, {}, QPoint(8, 8));
        m_rig->Dialogs.ExpectColor(QColor(0x12, 0x34, 0x56));
        QTest::mouseClick(Find<QPushButton>(form, u"Command4"_s), Qt::LeftButton);
        m_rig->Dialogs.ExpectColor(std::nullopt);
        QTest::mouseClick(Find<QPushButton>(form, u"Command6"_s), Qt::LeftButton);
        m_rig->Dialogs.ExpectOpen(m_rig->Path(u"pics/b.gif"_s));
        QTest::mouseClick(Find<QPushButton>(form, u"Command1"_s), Qt::LeftButton);
        QTest::mouseClick(Find<QPushButton>(form, u"OKButton"_s), Qt::LeftButton);
    }
    QCOMPARE(BodyTag(), u"<BODY text=blue link=#123456 background=pics/b.gif>"_s);
    QVERIFY(m_rig->Page.HtmlDirty);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(BodyTag(), u"<BODY bgcolor=red text=blue>"_s);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void FormBackgroundTest::pageWithoutBodyTagStays()
{
    const QString frames = u"<html><head></head><frameset cols=\"1,*\"><frame src=\"a.htm\"></frameset></html>\n"_s;
    QVERIFY(m_rig->Load(m_rig->Put(u"f.htm"_s, frames.toUtf8())));
    const QString before = m_rig->Surface.DocumentHTML();
    FormBackground form(*m_rig->Edit);
    Find<QCheckBox>(form, u"CheckText"_s)->setChecked(true);
    QTest::mouseClick(Find<QPushButton>(form, u"OKButton"_s), Qt::LeftButton);
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
}

QTEST_MAIN(FormBackgroundTest)
#include "FormBackgroundTest.moc"
