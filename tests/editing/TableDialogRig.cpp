#include "TableDialogRig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>

using namespace Qt::StringLiterals;

void TableDialogRig::initTestCase()
{
    EditorRig::StartEngine();
    m_rig = std::make_unique<EditorRig>();
    m_rig->LoadSmallPage();
}

void TableDialogRig::init()
{
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
}

void TableDialogRig::cleanup()
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
void TableDialogRig::Set(QWidget &form, const QString &changes)
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
QString TableDialogRig::Shown(QWidget &form)
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

void TableDialogRig::CheckOneStep(const QString &before)
{
    QVERIFY(m_rig->Edit->HasUnsavedChanges());
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Page(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void TableDialogRig::CheckUntouched(const QString &before)
{
    QCOMPARE(Page(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}
