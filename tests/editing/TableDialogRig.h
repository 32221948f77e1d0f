#pragma once

#include "support/EditorRig.h"

#include <QPushButton>

#include <memory>

/// The dialogs on tables with real pages: what they show, and the exact text of the page after OK.
class TableDialogRig : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    /// Nothing that was expected is left to come, and the page counts as saved.
    void cleanup();
    void cleanupTestCase() { m_rig.reset(); }

protected:
    /// The page with the caret before "here".
    void Load(const QString &body)
    {
        m_rig->Surface.SetSourceCodePreservation(true);
        const QString page = QStringLiteral("<html><head><title>t</title></head>\n<body>%1</body></html>\n");
        QVERIFY(m_rig->Load(m_rig->Put(QStringLiteral("t.php"), page.arg(body).toUtf8())));
        QVERIFY(m_rig->Surface.WaitWhileBusy());
        m_rig->Window.activateWindow();
        m_rig->Surface.InputWidget()->setFocus();
        QVERIFY(m_rig->Surface.SelectText(QStringLiteral("here")));
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
