#include "document/ColorText.h"
#include "document/FixupHtml.h"
#include "document/GuideStyle.h"
#include "document/PageText.h"
#include "document/PathText.h"
#include "document/TagText.h"
#include "platform/surface/Islands.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Page =
    u"<?php session_start(); if ($a > 1) { echo \"<P>\"; } ?>\r\n<!DOCTYPE "
    u"html>\r\n<HTML><HEAD><TITLE>Caf\u00e9</TITLE>"
    "<META content=\"text/html; charset=unicode\"><SCRIPT type=text/javascript>if (a<b && c>d) x=\"</b>\";</SCRIPT>\r\n"
    "</HEAD><BODY bgColor=#ffffff><!-- <B ID=x> --><!--[if IE]><P A=b><![endif]-->\r\n<TABLE border=1 width=100%><TR>"
    "<TD noWrap width=<%= w > 1 %>><A href=\"file:///home/ann/a%20b.htm\" title='x "
    "\"y\"'>\U0001F600</A></TD></TR></TABLE>"
    "<IMG alt=\"\" src=\"<?= $img[\"a b\"] ?>\"><INPUT type=checkbox CHECKED name=n></BODY></HTML>"_s;

const QStringList Pieces{u"<"_s,      u">"_s,        u" "_s,        u"="_s,         u"\""_s,          u"'"_s,
                         u"\r\n"_s,   u"\n"_s,       u"<A "_s,      u"HREF=\""_s,   u" SRC = "_s,     u"x"_s,
                         u"é"_s,      u"<?"_s,       u"?>"_s,       u"<%"_s,        u"%>"_s,          u"<!--"_s,
                         u"-->"_s,    u"<!"_s,       u"<SCRIPT "_s, u"</SCRIPT>"_s, u"=\"file:///"_s, u"/../"_s,
                         u"%41"_s,    u"\\"_s,       u"/>"_s,       u"<body"_s,     u"</body>"_s,     u"\uE000"_s,
                         u"\xD83D"_s, u"charset="_s, u"<TITLE>"_s};

class Texts
{
public:
    explicit Texts(quint32 seed) : m_random(seed) {}

    int Below(int bound) { return m_random.bounded(bound); }

    QString Next()
    {
        switch (Below(4)) {
        case 0:
            return Noise(Below(200));
        case 1:
            return Page.left(Below(int(Page.size())));
        case 2:
            return Page.mid(Below(int(Page.size()))).insert(0, Soup(5));
        default:
            return Soup(Below(60));
        }
    }

    QString Soup(int length)
    {
        QString text;
        for (int i = 0; i < length; ++i)
            text += Pieces.at(Below(int(Pieces.size())));
        return text;
    }

private:
    QString Noise(int length)
    {
        QString text;
        for (int i = 0; i < length; ++i)
            text += QChar(char16_t(Below(4) == 0 ? Below(0x10000) : Below(0x80)));
        return text;
    }

    QRandomGenerator m_random;
};

QStringList ServerBlocks(const QString &text)
{
    QStringList blocks;
    for (const IslandSpan &block : FindServerCode(text))
        blocks += text.sliced(block.Start, block.Length);
    return blocks;
}

#ifdef __SANITIZE_ADDRESS__
constexpr int HostileSize = 20000;
#else
constexpr int HostileSize = 400000;
#endif

/// A text of a kind that makes naive searches start over again and again.
QString Repeated(const QString &unit, int size, const QString &end = {})
{
    return unit.repeated(size / int(unit.size())) + end;
}

} // namespace

class TextFuzzTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void TagsSurviveAnything()
    {
        Texts texts(1);
        const QStringList names{u"HREF"_s, u"SRC"_s, u"A"_s, u""_s, u"NOWRAP"_s};
        for (int i = 0; i < 20000; ++i) {
            const QString text = texts.Next();
            const qsizetype start = texts.Below(int(text.size()) + 10) - 4;
            const QString &name = names.at(texts.Below(int(names.size())));
            const auto mode = TagMode(texts.Below(3));
            const QString value = texts.Below(2) ? u"1"_s : QString();
            const bool hasTag = text.indexOf(u'>', qMax<qsizetype>(start, 1) - 1) >= 0 && start <= text.size();
            const QString changed = TagValue(text, start, name, value, mode);
            QVERIFY(hasTag || changed.isEmpty());
            const QString written = WriteAttribute(text, start, name, value, mode);
            if (!hasTag)
                QCOMPARE(written, text);
            // A quote that never closes would take what is added behind it for its own.
            const bool isPlain = !text.contains(u'"') && !text.contains(u'\'') && !name.isEmpty();
            if (mode == TagMode::Set && isPlain && written != text)
                QCOMPARE(ReadAttribute(written, start, name), value);
            ReadAttribute(text, start, name);
        }
    }

    void CleanUpKeepsServerCodeAndText()
    {
        Texts texts(2);
        for (int i = 0; i < 20000; ++i) {
            const QString text = texts.Next();
            FixupContext context;
            context.SelectionOffset = texts.Below(int(text.size()) + 20) - 5;
            context.CharsetFix = texts.Below(2) == 0;
            context.DocumentCharset = u"unicode"_s;
            const QString cleaned = FixupHTML(text, context);
            qsizetype at = 0; // every block, in its order; broken tags may make up a new one
            for (const QString &block : ServerBlocks(text)) {
                at = cleaned.indexOf(block, at);
                QVERIFY2(at >= 0, qPrintable(text));
                at += block.size();
            }
            // Only quotes come in and only capitals go.
            QCOMPARE(QString(cleaned).remove(u'"').compare(QString(text).remove(u'"'), Qt::CaseInsensitive), 0);
            QCOMPARE_GE(context.SelectionShift, 0);
            QCOMPARE_LE(context.SelectionShift, cleaned.size() - text.size());
        }
    }

    void PagesSurviveAnything()
    {
        Texts texts(3);
        for (int i = 0; i < 20000; ++i) {
            const QString text = texts.Next();
            const QString other = texts.Soup(texts.Below(6));
            const PathStyle style = texts.Below(2) ? PathStyle::Windows() : PathStyle::Posix();
            QCOMPARE(ServerBlocks(WithRelativeFileLinks(text, other, PathStyle::Posix())), ServerBlocks(text));
            WithRelativeFileLinks(text, other, style);
            QCOMPARE(GuideStyle::Remove(GuideStyle::Insert(text)), QString(text).replace(u"</HEAD>"_s, u"</head>"_s));
            const bool hasBody = HasBodyTagIn(text);
            RefuseSave(text, hasBody);
            IsBlankPage(text, hasBody);
            QVERIFY(!DeclaredCharset(text).isEmpty());
            WithTitle(text, other);
            RevFormatRGBString(text);
            for (const QString &path : {text, other}) {
                GetRelativePath(path, other, style);
                MakeFullPath(path, other, style);
                QVERIFY(path.isEmpty() || !MakeFullPathRel(path, other, style).isNull());
                MakeRelPathRel(path, other, style);
                PathFromPageText(path, other, style);
            }
        }
    }

    void HostileTextsTakeNoSquare_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("only <") << Repeated(u"<"_s, HostileSize);
        QTest::newRow("< and one >") << Repeated(u"<"_s, HostileSize, u" >"_s);
        QTest::newRow("names without ends") << Repeated(u"<A "_s, HostileSize);
        QTest::newRow("names before one >") << Repeated(u"<A "_s, HostileSize, u">"_s);
        QTest::newRow("attributes before one >") << Repeated(u"<A=1 "_s, HostileSize, u">"_s);
        QTest::newRow("quoted attributes before one >") << Repeated(u"<A=\"1\" "_s, HostileSize, u">"_s);
        QTest::newRow("attributes in one tag") << u"<A "_s + Repeated(u"B=c "_s, HostileSize, u">"_s);
        QTest::newRow("no blanks in one tag") << u"<A "_s + Repeated(u"B=\"c\""_s, HostileSize, u">"_s);
        QTest::newRow("quotes in one tag") << u"<A "_s + Repeated(u"B=\"c='d "_s, HostileSize, u">"_s);
        QTest::newRow("tags without blanks") << Repeated(u"<A>"_s, HostileSize);
        QTest::newRow("scripts without ends") << Repeated(u"<SCRIPT>"_s, HostileSize);
        QTest::newRow("scripts before one >") << Repeated(u"<SCRIPT "_s, HostileSize, u">"_s);
        QTest::newRow("attributes without = before one >") << Repeated(u"<A B "_s, HostileSize, u">"_s);
        QTest::newRow("comments without ends") << Repeated(u"<!--"_s, HostileSize);
        QTest::newRow("comments in one end") << Repeated(u"<!-- <B A=c "_s, HostileSize, u"-->"_s);
        QTest::newRow("conditional comments without ends") << Repeated(u"<!--[if"_s, HostileSize);
        QTest::newRow("server code without ends") << Repeated(u"<?"_s, HostileSize);
        QTest::newRow("server code") << Repeated(u"<A B=<?x?> C='<%%> '>"_s, HostileSize);
        QTest::newRow("file links without ends") << Repeated(u"=\"file://"_s, HostileSize);
        QTest::newRow("file links in one tag") << Repeated(u"=\"file:///a\\\""_s, HostileSize, u">"_s);
        QTest::newRow("charsets") << Repeated(u"charset=unicode"_s, HostileSize);
        QTest::newRow("heads") << Repeated(u"</head>"_s, HostileSize / 10);
    }

    /// A square of the size would be minutes.
    void HostileTextsTakeNoSquare()
    {
        QFETCH(QString, text);
        QElapsedTimer timer;
        timer.start();
        FixupContext context;
        context.CharsetFix = true;
        FixupHTML(text, context);
        QVERIFY(text.isEmpty() || !FixupHTML(GuideStyle::Insert(text)).isEmpty());
        WithRelativeFileLinks(text, u"/home/ann/b.htm"_s);
        WithRelativeFileLinks(text, u"C:\\web\\b.htm"_s, PathStyle::Windows());
        TagValue(text, 1, u"SRC"_s, u"1"_s, TagMode::Set);
        WriteAttribute(text, 1, u"SRC"_s, u"1"_s, TagMode::Set);
        MakeFullPathRel(text, u"/home/ann/b.htm"_s);
        MakeRelPathRel(text, u"C:\\a\\b\\c.htm"_s, PathStyle::Windows());
        IsBlankPage(text, true);
        QCOMPARE_LT(timer.elapsed(), 5000);
    }
};

QTEST_GUILESS_MAIN(TextFuzzTest)
#include "TextFuzzTest.moc"
