#include "support/SurfaceRig.h"

#include <memory>

using namespace Qt::StringLiterals;

/// Bold and its like at words, carets and across elements: the markup they leave, and their status.
class CharacterFormatsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Command_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("after");
        QTest::newRow("word") << u"<p>a [word] b</p>"_s << int(DECMD_BOLD) << u"<p>a <b>[word]</b> b</p>"_s;
        QTest::newRow("taken off") << u"<p>a <i>[word]</i> b</p>"_s << int(DECMD_ITALIC) << u"<p>a [word] b</p>"_s;
    }
    void Command()
    {
        QFETCH(QString, before);
        QFETCH(int, command);
        QFETCH(QString, after);
        m_rig->SetBody(before);
        m_rig->Surface.ExecCommand(Decmd(command));
        QCOMPARE(m_rig->Body(), after);
        m_rig->Surface.ExecCommand(DECMD_UNDO);
        QCOMPARE(m_rig->Body(), before);
    }

private:
    std::unique_ptr<SurfaceRig> m_rig;
};

QTEST_MAIN(CharacterFormatsTest)
#include "CharacterFormatsTest.moc"
