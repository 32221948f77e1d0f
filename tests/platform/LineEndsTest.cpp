#include "platform/LineEnds.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

class LineEndsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void Kinds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("majority");
        const auto row = [](const char *name, const char *text, LineEnds kind, LineEnds majority) {
            QTest::newRow(name) << QString::fromLatin1(text) << int(kind) << int(majority);
        };
        row("none", "abc", LineEnds::Lf, LineEnds::Lf);
        row("CR at the very end", "a\r", LineEnds::Cr, LineEnds::Cr);
        row("CR CR LF is two ends", "a\r\r\n", LineEnds::Mixed, LineEnds::CrLf);
        row("LF CR is two ends", "a\n\rb\r", LineEnds::Mixed, LineEnds::Cr);
        row("CR LF only", "a\r\n\r\nb", LineEnds::CrLf, LineEnds::CrLf);
        row("one stray LF", "a\r\nb\nc\r\n", LineEnds::Mixed, LineEnds::CrLf);
        row("one stray CR LF", "a\nb\nc\r\n", LineEnds::Mixed, LineEnds::Lf);
    }
    void Kinds()
    {
        QFETCH(QString, text);
        QTEST(int(DetectLineEnds(text)), "kind");
        QTEST(int(MajorityLineEnds(text)), "majority");
    }

    void Conversion()
    {
        const QString text = u"\ra\r\n\r\nb\n\rc"_s;
        QCOMPARE(WithLineEnds(text, LineEnds::Lf), u"\na\n\nb\n\nc"_s);
        QCOMPARE(WithLineEnds(text, LineEnds::CrLf), u"\r\na\r\n\r\nb\r\n\r\nc"_s);
        QCOMPARE(WithLineEnds(text, LineEnds::Cr), u"\ra\r\rb\r\rc"_s);
        QCOMPARE(WithLineEnds(text, LineEnds::Mixed), text);
    }

    void LikeTheOldText_data()
    {
        QTest::addColumn<QString>("old");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        const auto row = [](const char *name, const char *old, const char *text, const char *result) {
            QTest::newRow(name) << QString::fromLatin1(old) << QString::fromLatin1(text) << QString::fromLatin1(result);
        };
        row("one kind for all", "a\r\nb", "x\ny\rz", "x\r\ny\r\nz");
        row("unchanged text in LF", "a\r\nb\nc\rd\r\n", "a\nb\nc\nd\n", "a\r\nb\nc\rd\r\n");
        row("new line takes the majority", "a\r\nb\nc\r\n", "a\nnew\nb\nc\n", "a\r\nnew\r\nb\nc\r\n");
        row("removed line", "a\r\nb\nc\rd\r\n", "a\nc\nd\n", "a\r\nc\rd\r\n");
        row("moved line", "a\nb\r\nc\r\nd\r\n", "b\nc\nd\na\n", "b\r\nc\r\nd\r\na\r\n");
        row("no end is added behind the last line", "a\r\nb\nc\r\n", "a\nb\nc", "a\r\nb\nc");
        row("line that had no end", "a\r\nb\nc\r\nlast", "a\nb\nc\nlast\nmore\n", "a\r\nb\nc\r\nlast\r\nmore\r\n");
        row("repeated lines stay in step", "<td>\n\r\n<td>\r\n\n<td>\r\nend\r\n", "<td>\n\n<td>\n\nx\n<td>\nend\n",
            "<td>\n\r\n<td>\r\n\nx\r\n<td>\r\nend\r\n");
    }
    void LikeTheOldText()
    {
        QFETCH(QString, old);
        QFETCH(QString, text);
        QTEST(WithLineEndsOf(text, old), "result");
    }

    /// A big page of equal lines is the worst case of every comparison of lines.
    void BigPagesStayQuick()
    {
        QString old;
        for (int i = 0; i < 100'000; ++i)
            old += i % 3 == 0 ? u"<p>&nbsp;</p>\r\n"_s : u"<p></p>\n"_s;
        QString text = WithLineEnds(old, LineEnds::Lf);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(WithLineEndsOf(text, old), old);
        text.insert(text.size() / 2, u"<hr>\n"_s);
        QCOMPARE(WithLineEnds(WithLineEndsOf(text, old), LineEnds::Lf), text);
        QVERIFY2(timer.elapsed() < 10000, "two runs over 100,000 lines");
    }
};

QTEST_GUILESS_MAIN(LineEndsTest)
#include "LineEndsTest.moc"
