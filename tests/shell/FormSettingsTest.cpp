#include "shell/FormSettings.h"
#include "platform/Settings.h"
#include "state/AppState.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class FormSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void ShowsWhatHolds();
    void OkTakesAndWrites();
    void CancelChangesNothing();
    void Extension_data();
    void Extension();
    void PatternGrowsWithEachOk();
    void TabGoesFromTopToBottom();

private:
    QString Written(const QString &key) const { return m_ini->GetIni(u"Settings"_s, key, u"none"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Settings> m_ini;
    AppState m_app;
};

namespace {

template <class T>
T *Child(FormSettings &dialog, const char *name)
{
    return dialog.findChild<T *>(QLatin1StringView(name));
}

void Click(FormSettings &dialog, const char *name)
{
    QAbstractButton *button = Child<QAbstractButton>(dialog, name);
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
}

void Type(FormSettings &dialog, const QString &extension)
{
    QLineEdit *edit = Child<QLineEdit>(dialog, "EditExt");
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, extension);
}

} // namespace

void FormSettingsTest::init()
{
    // The offscreen platform complains of every window that asks for a size.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support propagateSizeHints)"_s));
    m_folder = std::make_unique<QTemporaryDir>();
    m_ini = std::make_unique<Settings>(m_folder->path(), QString());
    m_app = AppState();
    m_app.FilePattern = u"*.htm"_s;
}

void FormSettingsTest::ShowsWhatHolds()
{
    m_app.AutoOpen = false;
    m_app.AutoSave = true;
    m_app.AutoLinkStyles = false;
    m_app.DefaultExtension = u".shtml"_s;
    FormSettings dialog(m_app, *m_ini);
    QVERIFY(!Child<QCheckBox>(dialog, "CheckAutoOpen")->isChecked());
    QVERIFY(Child<QCheckBox>(dialog, "CheckAutoSave")->isChecked());
    QVERIFY(!Child<QCheckBox>(dialog, "CheckAutoLinkStyles")->isChecked());
    QCOMPARE(Child<QLineEdit>(dialog, "EditExt")->text(), u".shtml"_s);
    QCOMPARE(Child<QLabel>(dialog, "LabelExt")->text(), u"Extension for new HTMLfiles:"_s);
}

void FormSettingsTest::OkTakesAndWrites()
{
    FormSettings dialog(m_app, *m_ini);
    dialog.show();
    Click(dialog, "CheckAutoOpen");
    Click(dialog, "CheckAutoSave");
    Click(dialog, "CheckAutoLinkStyles");
    Type(dialog, u".html"_s);
    QTest::keyClick(Child<QLineEdit>(dialog, "EditExt"), Qt::Key_Return);
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    QVERIFY(!m_app.AutoOpen && m_app.AutoSave && !m_app.AutoLinkStyles);
    QCOMPARE(m_app.DefaultExtension, u".html"_s);
    QCOMPARE(Written(u"autoopen"_s), u"0"_s);
    QCOMPARE(Written(u"autosave"_s), u"1"_s);
    QCOMPARE(Written(u"auto_link_style_insert"_s), u"0"_s);
    QCOMPARE(Written(u"defext"_s), u".html"_s);
}

void FormSettingsTest::CancelChangesNothing()
{
    FormSettings dialog(m_app, *m_ini);
    dialog.show();
    Click(dialog, "CheckAutoOpen");
    Type(dialog, u".php"_s);
    Click(dialog, "CancelButton");
    QVERIFY(!dialog.isVisible());
    QVERIFY(m_app.AutoOpen);
    QCOMPARE(m_app.DefaultExtension, u".htm"_s);
    QCOMPARE(m_app.FilePattern, u"*.htm"_s);
    QCOMPARE(Written(u"autoopen"_s), u"none"_s);
}

void FormSettingsTest::Extension_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    QTest::newRow("empty") << u""_s << u".htm"_s;
    QTest::newRow("one character") << u"x"_s << u".htm"_s;
    QTest::newRow("a dot") << u"."_s << u".htm"_s;
    QTest::newRow("dot missing") << u"php"_s << u".php"_s;
    QTest::newRow("with dot") << u".x"_s << u".x"_s;
}

void FormSettingsTest::Extension()
{
    QFETCH(QString, typed);
    QFETCH(QString, taken);
    FormSettings dialog(m_app, *m_ini);
    Type(dialog, typed);
    Click(dialog, "OKButton");
    QCOMPARE(m_app.DefaultExtension, taken);
    QCOMPARE(Written(u"defext"_s), taken);
    QCOMPARE(m_app.FilePattern, u"*.htm;*"_s + taken);
}

void FormSettingsTest::PatternGrowsWithEachOk()
{
    for (int i = 0; i < 2; ++i) {
        FormSettings dialog(m_app, *m_ini);
        Click(dialog, "OKButton");
    }
    QCOMPARE(m_app.FilePattern, u"*.htm;*.htm;*.htm"_s);
}

void FormSettingsTest::TabGoesFromTopToBottom()
{
    FormSettings dialog(m_app, *m_ini);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QStringList visited;
    for (int i = 0; i < 6; ++i) {
        visited.append(dialog.focusWidget()->objectName());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited, (QStringList{u"CheckAutoOpen"_s, u"CheckAutoSave"_s, u"CheckAutoLinkStyles"_s, u"EditExt"_s,
                                   u"OKButton"_s, u"CancelButton"_s}));
}

QTEST_MAIN(FormSettingsTest)
#include "FormSettingsTest.moc"
