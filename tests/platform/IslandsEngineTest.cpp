#include "platform/surface/EngineForm.h"
#include "platform/surface/Islands.h"
#include "support/IslandPages.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

/// Protected pages through the real parser and serialiser: the code is there once, in order, byte for byte.
class IslandsEngineTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Survives_data();
    void Survives();
    void SurvivesInRandomPages();
    void FinishesNothingBehindAnOpenEnd_data();
    void FinishesNothingBehindAnOpenEnd();
    void EngineFormIsStable();

private:
    QString ThroughEngine(const QString &text);
    QString Saved(const ProtectedText &text) { return RestoreIslands(EngineForm(ThroughEngine(text.Text)), text); }
    void CheckIslands(const QString &page);

    std::unique_ptr<QWebEnginePage> m_page;
};

void IslandsEngineTest::initTestCase()
{
    m_page = std::make_unique<QWebEnginePage>();
    m_page->settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    QSignalSpy loaded(m_page.get(), &QWebEnginePage::loadFinished);
    m_page->setHtml(u"<html></html>"_s);
    QVERIFY(loaded.wait(20000));
}

/// The text as the engine writes it after reading it, with what stands outside <html>, without the doctype.
QString IslandsEngineTest::ThroughEngine(const QString &text)
{
    const QString script = u"((list) => { let out = '';"
                           "for (const node of new DOMParser().parseFromString(list[0], 'text/html').childNodes)"
                           "  out += node.nodeType == 8 ? '<!--' + node.data + '-->' : node.outerHTML || '';"
                           "return out; })"_s;
    const QString arguments = QString::fromUtf8(QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact));
    QString result;
    bool done = false;
    m_page->runJavaScript(script + u'(' + arguments + u')', QWebEngineScript::ApplicationWorld,
                          [&](const QVariant &answer) {
                              result = answer.toString();
                              done = true;
                          });
    if (!QTest::qWaitFor([&] { return done; }, 20000))
        qFatal("the engine does not answer");
    return result;
}

void IslandsEngineTest::CheckIslands(const QString &page)
{
    const ProtectedText text = ProtectIslands(page);
    const QString saved = Saved(text);
    const QByteArray report = (u"page\n"_s + page + u"\nsaved\n"_s + saved).toUtf8();
    QVERIFY2(!saved.contains(text.Open) && !saved.contains(text.Close) && !saved.contains(text.CommentClose),
             report.constData());
    qsizetype position = 0;
    for (const QString &island : text.Islands) {
        const qsizetype found = saved.indexOf(island, position);
        QVERIFY2(found >= 0, (island.toUtf8() + " is missing or out of order in\n" + report).constData());
        QVERIFY2(saved.count(island) == page.count(island),
                 (island.toUtf8() + " has copies in\n" + report).constData());
        position = found + island.size();
    }
}

void IslandsEngineTest::Survives_data()
{
    QTest::addColumn<QString>("page");
    for (const IslandPage &page : IslandPages())
        QTest::newRow(page.Name) << page.Text;
}

void IslandsEngineTest::Survives()
{
    QFETCH(QString, page);
    CheckIslands(page);
}

/// Makes well-formed pages with islands in every kind of place.
class PageMaker
{
public:
    explicit PageMaker(quint32 seed) : m_random(seed) {}

    QString Make()
    {
        return Island() + u"\n<!DOCTYPE html>"_s + Island() + u"<html"_s + Attribute() + u"><head>"_s + Island() +
               u"<title>a"_s + Island() + u"</title><script"_s + Attribute() + u">if (a < b) x = \"</b>"_s + Island() +
               u"\";</script><style>p > b {"_s + Island() + u"}</style>"_s + Island() + u"</head><body"_s +
               Attribute() + u'>' + Blocks(3) + u"</body></html>"_s + Island();
    }

private:
    bool Maybe() { return m_random.bounded(3) == 0; }

    QString Island()
    {
        if (!Maybe())
            return {};
        const QStringList forms = {u"<?php echo \"<%1>\" ?>"_s, u"<?=%1?>"_s, u"<%=%1 > 1%>"_s, u"<%\r\n'%1'\r\n%>"_s};
        return forms[m_random.bounded(4)].arg(++m_number);
    }

    QString Attribute()
    {
        const int number = ++m_number;
        switch (m_random.bounded(9)) {
        case 0:
            return Island() + u" b="_s + Island() + u"x"_s;
        case 1:
            return u" a%1=\"x "_s.arg(number) + Island() + u"\""_s + Island();
        case 2:
            return u" a%1='"_s.arg(number) + Island() + u"' "_s + Island() + u" checked"_s;
        case 3:
            return u" a%1-"_s.arg(number) + Island() + u"-c=1 "_s + Island() + Island();
        default:
            return {};
        }
    }

    QString Element(const QString &name, const QString &content)
    {
        return u'<' + name + Attribute() + u'>' + content + u"</"_s + name + u'>';
    }

    QString Inline()
    {
        const QStringList texts = {u"text &amp; "_s, u"<br>"_s, u"<!-- c "_s + Island() + u"-->"_s, u" a &lt; b "_s};
        QString result = Island() + texts[m_random.bounded(4)] + Island();
        if (Maybe())
            result +=
                Element(QStringList{u"b"_s, u"a"_s, u"span"_s, u"code"_s}[m_random.bounded(4)], u"x"_s + Island());
        return result;
    }

    QString Blocks(int depth)
    {
        QString result;
        for (int count = m_random.bounded(1, 4); count > 0; --count)
            result += Island() + Block(depth) + Island();
        return result;
    }

    QString Block(int depth)
    {
        const QString inner = depth > 0 ? Blocks(depth - 1) : Inline();
        switch (m_random.bounded(8)) {
        case 0:
            return Element(u"table"_s,
                           Island() + Element(u"tr"_s, Island() + Element(u"td"_s, inner) + Island()) + Island());
        case 1:
            return Element(u"ul"_s, Island() + Element(u"li"_s, inner) + Island());
        case 2:
            return Element(u"select"_s, Island() + Element(u"option"_s, u"x"_s + Island()) + Island());
        case 3:
            return Element(u"textarea"_s, u"\n\nx <b> "_s + Island());
        case 4:
            return Element(u"svg"_s, Island() + Element(u"linearGradient"_s, Island()) + Element(u"title"_s, Island()));
        case 5:
            return Element(u"div"_s, inner);
        case 6:
            return Element(u"pre"_s, u"\n\n"_s + Inline());
        default:
            return Element(u"p"_s, Inline() + Inline());
        }
    }

    QRandomGenerator m_random;
    int m_number = 0;
};

void IslandsEngineTest::SurvivesInRandomPages()
{
    for (quint32 seed = 1; seed <= 300; ++seed) {
        CheckIslands(PageMaker(seed).Make());
        if (QTest::currentTestFailed()) {
            qInfo("seed %u", seed);
            return;
        }
    }
}

void IslandsEngineTest::FinishesNothingBehindAnOpenEnd_data()
{
    QTest::addColumn<QString>("page");
    for (const QString &page : {u"<p>a</p>\n<?php\nfoo('<b>');\n"_s, u"<?php\nif ($a->b > 1) echo '<html>';\n"_s,
                                u"<p>a</p><a href=\"<?php foo()"_s, u"<script>x <% y"_s, u"<p>a<!-- <?=b"_s,
                                u"<table><tr><td><?php x"_s, u"<title>a <?php x"_s, u"<p>a<a href=\"b.htm>c</a>"_s})
        QTest::newRow(qPrintable(page.simplified())) << page;
}

void IslandsEngineTest::FinishesNothingBehindAnOpenEnd()
{
    QFETCH(QString, page);
    const ProtectedText text = ProtectIslands(page);
    QVERIFY(text.OpenEnded);
    QVERIFY2(Saved(text).endsWith(text.Islands.last()), qPrintable(Saved(text)));
}

/// What the engine reads from the engine form is the page that was written.
void IslandsEngineTest::EngineFormIsStable()
{
    for (quint32 seed = 1; seed <= 100; ++seed) {
        const QString first = ThroughEngine(ProtectIslands(PageMaker(seed).Make()).Text);
        QCOMPARE(ThroughEngine(EngineForm(first)), first);
    }
}

int main(int argc, char **argv)
{
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // the sandbox refuses to start as root, where builds often run
    QApplication application(argc, argv);
    IslandsEngineTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "IslandsEngineTest.moc"
