#include "support/SurfaceRig.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

/// The font dialog as a person uses it: what it shows of the selection, and what its OK changes.
class FontDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void ShowsWhatHolds();
    void OKChangesWhatWasTouched_data();
    void OKChangesWhatWasTouched();
    void CancelLeavesNoTrace();

private:
    /// Opens the dialog on the selection and does `work` in it.
    void Open(const std::function<void(QDialog &)> &work)
    {
        bool opened = false;
        QTimer poll; // the surface asks the page first
        connect(&poll, &QTimer::timeout, this, [&] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog || !dialog->focusWidget() || opened)
                return;
            opened = true;
            work(*dialog);
            dialog->close();
        });
        poll.start(10);
        m_rig->Surface.ExecCommand(DECMD_FONT, ExecOption::PromptUser);
        QVERIFY(opened);
    }
    /// A box that is switched that way shows itself pressed for a moment.
    static void Mnemonic(QDialog &dialog, QChar key)
    {
        QTest::keyClick(&dialog, key.toLatin1(), Qt::AltModifier);
        for (const QCheckBox *box : dialog.findChildren<QCheckBox *>())
            QTRY_VERIFY(!box->isDown());
    }
    static void Press(QDialog &dialog, QDialogButtonBox::StandardButton button)
    {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(button), Qt::LeftButton);
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

void FontDialogTest::ShowsWhatHolds()
{
    m_rig->SetBody(u"<p><b>[a<font face='Courier New' size=5 color=red><i>b</i>]</font></b></p>"_s);
    Open([](QDialog &dialog) {
        QCOMPARE(dialog.findChild<QCheckBox *>(u"CheckBold"_s)->checkState(), Qt::Checked);
        QCOMPARE(dialog.findChild<QCheckBox *>(u"CheckItalic"_s)->checkState(), Qt::PartiallyChecked);
        QCOMPARE(dialog.findChild<QCheckBox *>(u"CheckUnderline"_s)->checkState(), Qt::Unchecked);
        QCOMPARE(dialog.findChild<QComboBox *>(u"ComboFamily"_s)->currentText(), QString());
        QCOMPARE(dialog.findChild<QComboBox *>(u"ComboSize"_s)->currentIndex(), -1);
        Press(dialog, QDialogButtonBox::Ok); // nothing was touched
    });
    QCOMPARE(m_rig->UndoAll(), 0);
    m_rig->SetBody(u"<p><font face='Courier New' size=5 color=red>[b]</font></p>"_s);
    Open([](QDialog &dialog) {
        QCOMPARE(dialog.findChild<QComboBox *>(u"ComboFamily"_s)->currentText(), u"Courier New"_s);
        QCOMPARE(dialog.findChild<QComboBox *>(u"ComboSize"_s)->currentIndex(), 4);
        QCOMPARE(dialog.findChild<QPushButton *>(u"ButtonColor"_s)->text(), u"#FF0000"_s);
    });
}

void FontDialogTest::OKChangesWhatWasTouched_data()
{
    QTest::addColumn<QString>("keys"); // pressed with Alt, or typed where the focus went
    QTest::addColumn<QString>("after");
    QTest::newRow("style of a part") << u"&i"_s << u"<p><b>a</b> <i><b>[b</b> c]</i></p>"_s;
    QTest::newRow("two at once") << u"&u&b"_s << u"<p><b>a</b> <b><u>[b c]</u></b></p>"_s;
    QTest::newRow("a font by name") << u"&fNo Such Face"_s
                                    << u"<p><b>a</b> <font face=\"No Such Face\"><b>[b</b> c]</font></p>"_s;
    QTest::newRow("size by its number") << u"&s6"_s << u"<p><b>a</b> <font size=\"6\"><b>[b</b> c]</font></p>"_s;
}

void FontDialogTest::OKChangesWhatWasTouched()
{
    QFETCH(QString, keys);
    const QString before = u"<p><b>a</b> <b>[b</b> c]</p>"_s;
    m_rig->SetBody(before);
    Open([&keys](QDialog &dialog) {
        for (qsizetype i = 0; i < keys.size(); ++i) {
            if (keys[i] == u'&')
                Mnemonic(dialog, keys[++i]);
            else
                QTest::keyClick(dialog.focusWidget(), keys[i].toLatin1());
        }
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
    });
    QTEST(m_rig->Body(), "after");
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), before);
}

void FontDialogTest::CancelLeavesNoTrace()
{
    m_rig->SetBody(u"<p>[b]</p>"_s);
    Open([](QDialog &dialog) {
        Mnemonic(dialog, u'b');
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QCOMPARE(m_rig->Body(), u"<p>[b]</p>"_s);
    QVERIFY(!m_rig->Surface.IsDirty());
}

QTEST_MAIN(FontDialogTest)
#include "FontDialogTest.moc"
