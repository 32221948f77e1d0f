#include "support/KeyText.h"
#include "support/SurfaceRig.h"

#include <cstdio>
#include <memory>
#include <random>

using namespace Qt::StringLiterals;

/// Long sessions of random keys and block commands on real pages: nothing is lost to undo, nothing is left behind that
/// nobody asked for, and what is saved is what was on the screen.
class RandomEditTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }
    void Session_data();
    void Session();

private:
    void Step(std::mt19937 &random, QString *log);
    /// What a failure needs to be understood; too long for the log of Qt Test.
    static bool Tell(const QString &before, const QString &after, const QString &log)
    {
        std::fprintf(stderr, "before: %s\n\nafter: %s\n%s\n", qPrintable(before), qPrintable(after),
                     qPrintable(log.right(1500)));
        return false;
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

void RandomEditTest::Session_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<unsigned>("seed");
    for (const char *page : {"index.htm", "calendar.htm", "plots.htm", "rules.htm", "news.php", "committee.htm"})
        QTest::newRow(page) << QString::fromUtf8(page) << qEnvironmentVariable("INKLOOM_SEED", u"1"_s).toUInt();
}

void RandomEditTest::Step(std::mt19937 &random, QString *log)
{
    static const QStringList keys{u"Enter"_s, u"S+Enter"_s,  u"Backspace"_s,   u"Backspace"_s, u"Delete"_s,
                                  u"Tab"_s,   u"S+Tab"_s,    u"C+Backspace"_s, u"C+Delete"_s,  u"End"_s,
                                  u"Home"_s,  u"word_two"_s, u"Enter x"_s,     u"_ _"_s};
    static const QList<Decmd> commands{DECMD_JUSTIFYCENTER, DECMD_JUSTIFYLEFT, DECMD_JUSTIFYRIGHT, DECMD_ORDERLIST,
                                       DECMD_UNORDERLIST,   DECMD_INDENT,      DECMD_OUTDENT,      DECMD_DELETE};
    const auto pick = [&random](auto size) { return int(random() % unsigned(size)); };
    const int kind = pick(10);
    if (kind < 3) {
        // A caret, or a selection that is rarely long.
        const QString place = u"(() => { const t = []; const w = document.createTreeWalker(document.body, 4);"
                              "while (w.nextNode()) if (/\\S/.test(w.currentNode.data)) t.push(w.currentNode);"
                              "if (!t.length) return; const a = %1 % t.length, b = Math.min(t.length - 1, a + %2);"
                              "const at = (n, x) => x % (n.length + 1);"
                              "document.getSelection().setBaseAndExtent(t[a], at(t[a], %3), t[b], a === b && %2 === 0"
                              " ? at(t[a], %3) : at(t[b], %4)); })()"_s.arg(pick(5000))
                                  .arg(std::max(0, pick(8) - 4))
                                  .arg(pick(500))
                                  .arg(pick(500));
        *log += u"\n"_s + place;
        m_rig->Run(place);
    } else if (kind < 8) {
        const QString &key = keys[pick(keys.size())];
        *log += u"\nkeys "_s + key;
        PressKeys(*m_rig, key);
    } else if (kind == 8) {
        const Decmd command = commands[pick(commands.size())];
        *log += u"\ncommand %1"_s.arg(command);
        m_rig->Surface.ExecCommand(command);
    } else {
        const QStringList formats = m_rig->Surface.ExecCommand(DECMD_GETBLOCKFMTNAMES).toStringList();
        const QString &format = formats[pick(formats.size())];
        *log += u"\nformat "_s + format;
        m_rig->Surface.ExecCommand(DECMD_SETBLOCKFMT, ExecOption::DoDefault, format);
    }
}

void RandomEditTest::Session()
{
    QFETCH(QString, page);
    QFETCH(unsigned, seed);
    const int stepCount = qEnvironmentVariable("INKLOOM_STEPS", u"120"_s).toInt();
    QCOMPARE(m_rig->Surface.LoadDocument(QStringLiteral(INKLOOM_SOURCE_DIR "/samples/") + page),
             DesignSurface::LoadError::None);
    QVERIFY(m_rig->Surface.WaitWhileBusy(30000));
    const QString start = m_rig->PlainBody();
    // Spans and divisions that nobody asked for; emptied elements; a block in a paragraph would not parse back.
    const QString litter =
        u"[document.querySelectorAll('span').length, document.querySelectorAll('div:not([align])').length,"
        "document.querySelectorAll('font:empty,b:empty,i:empty,a:empty:not([name]):not([id]),"
        "ul:empty,ol:empty,li:empty,p:empty').length]"_s;
    const QVariantList before = m_rig->Run(litter).toList();
    QVERIFY(m_rig->ParsesBack());
    std::mt19937 random(seed);
    QString log;
    for (int i = 0; i < stepCount; ++i) {
        const QString last = m_rig->PlainBody();
        Step(random, &log);
        QVERIFY(m_rig->ParsesBack() || Tell(last, m_rig->PlainBody(), log));
        const QVariantList now = m_rig->Run(litter).toList();
        for (int k = 0; k < now.size(); ++k)
            QVERIFY(now[k].toInt() <= before[k].toInt() || Tell(last, m_rig->PlainBody(), log));
    }
    const QString end = m_rig->PlainBody();
    QVERIFY(m_rig->UndoAll() > stepCount / 4);
    QCOMPARE(m_rig->PlainBody(), start);
    m_rig->RedoAll();
    QCOMPARE(m_rig->PlainBody(), end);
}

QTEST_MAIN(RandomEditTest)
#include "RandomEditTest.moc"
