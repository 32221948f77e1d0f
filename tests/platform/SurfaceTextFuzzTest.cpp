#include "platform/surface/EngineForm.h"
#include "platform/surface/Islands.h"
#include "support/IslandPages.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

/// Random pages, always the same ones, against what must hold for every page.
class SurfaceTextFuzzTest : public QObject
{
    Q_OBJECT

private slots:
    void IslandsAtAnyOffset();
    void IslandsInAnyText();
    void EngineFormLosesNothing();
    void RestoresAnything();

private:
    QString Pick(const QStringList &from) { return from[m_random.bounded(int(from.size()))]; }
    QString AnyText(int pieces);
    void CheckRoundTrip(const QString &page);

    QRandomGenerator m_random{20240607};
};

static QString Sorted(QString text)
{
    std::sort(text.begin(), text.end());
    return text;
}

void SurfaceTextFuzzTest::CheckRoundTrip(const QString &page)
{
    const ProtectedText text = ProtectIslands(page);
    const QString restored = RestoreIslands(text.Text, text);
    if (restored == page)
        return;
    // Only islands of end tags move, and nothing gets lost.
    static const QRegularExpression inEndTag(
        u"</[a-zA-Z](?:\"[^\"]*\"|'[^']*'|[^>\"'])*(?:\"[^\"]*|'[^']*)?<([?%]|!--#)"_s);
    const bool moved = page.contains(inEndTag) && Sorted(restored) == Sorted(page);
    QVERIFY2(moved, qPrintable(u"page\n"_s + page + u"\nrestored\n"_s + restored));
}

void SurfaceTextFuzzTest::IslandsAtAnyOffset()
{
    const QStringList islands = {u"<?php echo \"<b>\"; ?>"_s,  u"<?=$a->b?>"_s,
                                 u"<% x = '-->' %>"_s,         u"<%=1%>"_s,
                                 u"<?php\r\nif ($a) { ?>"_s,   u"<?php } // \" ' ?>"_s,
                                 u"<%-- <%a%> --%>"_s,         u"<![if !IE]>"_s,
                                 u"<!--#echo var=\"A\" -->"_s, u"<?'</script></title>'?>"_s};
    QList<IslandPage> pages = IslandPages();
    QString all;
    for (const IslandPage &page : pages.first(pages.size() - 7)) // the rest has no end
        all += page.Text + u'\n';
    pages.append({"all", all});
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < 200 && timer.elapsed() < 8000; ++round) {
        for (const IslandPage &page : pages) {
            QString text = page.Text;
            for (int count = m_random.bounded(1, 8); count > 0; --count)
                text.insert(m_random.bounded(int(text.size()) + 1), Pick(islands));
            CheckRoundTrip(text);
            if (QTest::currentTestFailed())
                return;
        }
    }
}

QString SurfaceTextFuzzTest::AnyText(int pieces)
{
    static const QStringList parts = {u"<"_s,           u">"_s,
                                      u"\""_s,          u"'"_s,
                                      u"="_s,           u"/"_s,
                                      u"!"_s,           u"-"_s,
                                      u"--"_s,          u"?"_s,
                                      u"%"_s,           u" "_s,
                                      u"\n"_s,          u"a"_s,
                                      u"<p "_s,         u"</p"_s,
                                      u"<!--"_s,        u"-->"_s,
                                      u"<?"_s,          u"?>"_s,
                                      u"<%"_s,          u"%>"_s,
                                      u"<script>"_s,    u"</script"_s,
                                      u"<title"_s,      u"</title>"_s,
                                      u"<svg"_s,        u"</svg>"_s,
                                      u"<math>"_s,      u"<desc>"_s,
                                      u"</desc>"_s,     u"<![CDATA["_s,
                                      u"]]>"_s,         u"<!doctype html>"_s,
                                      u"<?php "_s,      u"href=\""_s,
                                      u"<pre>\n"_s,     u"<textarea>"_s,
                                      u"<plaintext>"_s, u"</"_s,
                                      u"<td<?a?>"_s,    u"</h<?n?>"_s,
                                      u"<h<?n?>"_s,     u"<!--[if IE]>"_s,
                                      u"--!>"_s,        u"checked=\"\""_s,
                                      u"<!"_s,          u"--%>"_s,
                                      u"<%--"_s,        u"<!--#"_s};
    QString text;
    while (pieces-- > 0)
        text += Pick(parts);
    return text;
}

void SurfaceTextFuzzTest::IslandsInAnyText()
{
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < 60000 && timer.elapsed() < 8000; ++round) {
        CheckRoundTrip(AnyText(m_random.bounded(1, 40)));
        if (QTest::currentTestFailed())
            return;
    }
}

/// What must be the same in the engine's text and in the engine form of it.
static QString Essence(const QString &text)
{
    return text.toLower().remove(u'"').remove(u'=').remove(u'\n').replace(u"&lt;"_s, u"<"_s).replace(u"&gt;"_s, u">"_s);
}

void SurfaceTextFuzzTest::EngineFormLosesNothing()
{
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < 60000 && timer.elapsed() < 8000; ++round) {
        const QString text = AnyText(m_random.bounded(1, 40));
        QVERIFY2(Essence(EngineForm(text)) == Essence(text), qPrintable(text));
    }
}

void SurfaceTextFuzzTest::RestoresAnything()
{
    const QString page = u"<?0?><?1?><p <?2?>><td<?3?>><!--<?4?>--><script><?5?></script><?php 6"_s;
    const ProtectedText text = ProtectIslands(page);
    for (int round = 0; round < 5000; ++round) {
        QString shuffled = text.Text;
        for (int count = m_random.bounded(1, 12); count > 0; --count) {
            const int at = m_random.bounded(int(shuffled.size()));
            if (m_random.bounded(2) == 0)
                shuffled.remove(at, m_random.bounded(1, 4));
            else
                shuffled.insert(at, shuffled.mid(m_random.bounded(int(shuffled.size())), m_random.bounded(1, 30)));
            if (shuffled.isEmpty())
                shuffled = text.Text;
        }
        const QString restored = RestoreIslands(shuffled, text);
        for (const IslandSpan &block : FindServerBlocks(restored))
            QVERIFY2(restored.mid(block.Start, block.Length).startsWith(u"<?"), qPrintable(restored));
        QCOMPARE(RestoreIslands(restored, text), restored);
    }
}

QTEST_APPLESS_MAIN(SurfaceTextFuzzTest)
#include "SurfaceTextFuzzTest.moc"
