#include "support/EditorRig.h"
#include "support/PageJudge.h"
#include "support/RunInPage.h"
#include "support/SessionPages.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QWebEngineView>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace SessionPages;

namespace {

quint32 Given(const char *name, quint32 usual)
{
    bool given = false;
    const int value = qEnvironmentVariableIntValue(name, &given);
    return given ? quint32(value) : usual;
}

} // namespace

/// Thousands of things that a person may do, in any order, on real pages: nothing is lost on the way back, nothing of
/// the engine's or of ours stays in the page.
class RandomSessionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        EditorRig::StartEngine();
        m_rig = std::make_unique<EditorRig>();
        m_judge = std::make_unique<PageJudge>();
        m_rig->Surface.setGeometry(0, 0, 800, 600);
        m_rig->Window.activateWindow();
    }
    void cleanupTestCase()
    {
        m_judge.reset();
        m_rig.reset();
    }

    void cleanup();
    void Session_data();
    void Session();

private:
    int Below(int bound) { return int(m_random.bounded(quint32(bound))); }
    QVariant Ask(const QString &script);
    QString Text() { return m_rig->Surface.EngineHTML(); }
    void Step();
    bool IsSound();
    bool IsSame(const QString &before, const QString &after, const char *what);
    bool Holds(const QString &difference, const QString &what);
    void Keys();
    void Move();
    void Command();
    void TableCommand();
    void Object();
    void Paste();
    void Source();
    QStringList Undo();
    bool Redo(const QStringList &states);
    void Say(const QString &what) { m_log.append(what); }

    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<PageJudge> m_judge;
    QRandomGenerator m_random;
    QString m_start;
    QString m_last;    ///< the body when it was found sound last
    QStringList m_log; ///< what was done, for the message of a failure
};

QVariant RandomSessionTest::Ask(const QString &script)
{
    return RunInPage(m_rig->Surface, script);
}

void RandomSessionTest::Keys()
{
    static const QList<std::pair<Qt::Key, Qt::KeyboardModifiers>> keys{
        {Qt::Key_Return, Qt::NoModifier},         {Qt::Key_Backspace, Qt::NoModifier},
        {Qt::Key_Delete, Qt::NoModifier},         {Qt::Key_Return, Qt::ShiftModifier},
        {Qt::Key_Backspace, Qt::ControlModifier}, {Qt::Key_Tab, Qt::NoModifier},
        {Qt::Key_Delete, Qt::ControlModifier}};
    if (Below(2)) {
        static const QStringList words{u"bean "_s, u"seeds and soil "_s, u"a"_s, u"  two "_s, u"(x < y) "_s};
        const QString word = words[Below(int(words.size()))];
        Say("type '"_L1 + word + u'\'');
        m_rig->Type(word);
        return;
    }
    const auto [key, modifiers] = keys[Below(int(keys.size()))];
    Say(QKeySequence(key | modifiers).toString());
    QTest::keyClick(m_rig->Surface.InputWidget(), key, modifiers);
}

/// A caret or a selection somewhere in the page.
void RandomSessionTest::Move()
{
    const int from = Below(1000);
    const int length = Below(3) ? 0 : 1 + Below(Below(8) ? 12 : 300);
    Say(u"select %1 + %2"_s.arg(from).arg(length));
    Ask(u"(() => { const w = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT), all = [];"
        "const shows = (n) => { const r = document.createRange(); r.selectNodeContents(n);"
        "  return r.getClientRects().length; };" // no caret stands in the white space between rows
        "while (w.nextNode()) if (!w.currentNode.parentNode.closest('script,style,select,textarea,button,title') &&"
        "  shows(w.currentNode))"
        "  all.push(w.currentNode);"
        "if (!all.length) return;"
        "let i = Math.floor(all.length * %1 / 1000), n = all[i], o = %1 % (n.length + 1);"
        "let left = %2, j = i, p = o;"
        "while (left > 0 && j < all.length) { const room = all[j].length - p;"
        "  if (left <= room) { p += left; left = 0; } else { left -= room; if (++j < all.length) p = 0; } }"
        "if (j >= all.length) { j = all.length - 1; p = all[j].length; }"
        "getSelection().setBaseAndExtent(n, o, all[j], p); })()"_s.arg(from)
            .arg(length));
}

void RandomSessionTest::Command()
{
    static const QList<Decmd> commands{DECMD_BOLD,
                                       DECMD_ITALIC,
                                       DECMD_UNDERLINE,
                                       DECMD_JUSTIFYLEFT,
                                       DECMD_JUSTIFYCENTER,
                                       DECMD_JUSTIFYRIGHT,
                                       DECMD_ORDERLIST,
                                       DECMD_UNORDERLIST,
                                       DECMD_INDENT,
                                       DECMD_OUTDENT,
                                       DECMD_UNLINK,
                                       DECMD_DELETE,
                                       DECMD_CUT,
                                       DECMD_COPY,
                                       DECMD_SETFONTNAME,
                                       DECMD_SETFONTSIZE,
                                       DECMD_SETFORECOLOR,
                                       DECMD_SETBLOCKFMT,
                                       DECMD_HYPERLINK,
                                       DECMD_IMAGE,
                                       DECMD_PASTE,
                                       DECMD_BRING_FORWARD,
                                       DECMD_SEND_BACKWARD,
                                       DECMD_BRING_ABOVE_TEXT,
                                       DECMD_SEND_BELOW_TEXT,
                                       DECMD_UNDO,
                                       DECMD_REDO,
                                       DECMD_MAKE_ABSOLUTE,
                                       DECMD_BRING_TO_FRONT,
                                       DECMD_SEND_TO_BACK,
                                       DECMD_LOCK_ELEMENT};
    const Decmd command = commands[Below(int(commands.size()))];
    QVariant argument;
    switch (command) {
    case DECMD_SETFONTNAME:
        argument = u"Arial"_s;
        break;
    case DECMD_SETFONTSIZE:
        argument = 1 + Below(7);
        break;
    case DECMD_SETFORECOLOR:
        argument = Below(2) ? u"#FF0000"_s : u"#003366"_s;
        break;
    case DECMD_SETBLOCKFMT: {
        const QStringList names = m_rig->Surface.ExecCommand(DECMD_GETBLOCKFMTNAMES).toStringList();
        argument = names[Below(int(names.size()))];
        break;
    }
    case DECMD_HYPERLINK:
        argument = u"target.htm"_s;
        break;
    case DECMD_IMAGE:
        argument = u"images/bean.png"_s;
        break;
    default:
        break;
    }
    Say(u"command %1 %2"_s.arg(command).arg(argument.toString()));
    m_rig->Surface.ExecCommand(command, ExecOption::DontPromptUser, argument);
}

void RandomSessionTest::TableCommand()
{
    static const QList<Decmd> commands{DECMD_INSERTROW,  DECMD_INSERTCOL,   DECMD_INSERTCELL, DECMD_DELETEROWS,
                                       DECMD_DELETECOLS, DECMD_DELETECELLS, DECMD_MERGECELLS, DECMD_SPLITCELL};
    if (Below(6) == 0) {
        Say(u"insert table"_s);
        const InsertTableParam table{
            1 + Below(3), 1 + Below(3), u" BORDER=1 WIDTH=80%"_s, {}, Below(2) ? u"Cap & tion"_s : QString()};
        m_rig->Surface.ExecCommand(DECMD_INSERTTABLE, ExecOption::DontPromptUser, QVariant::fromValue(table));
        return;
    }
    Say(u"caret in a cell"_s);
    Ask(u"(() => { const c = document.querySelectorAll('td,th'); if (!c.length) return;"
        "const a = c[%1 % c.length], b = c[(%1 + %2) % c.length];"
        "getSelection().setBaseAndExtent(a, 0, %2 ? b : a, 0); })()"_s.arg(Below(500))
            .arg(Below(3) ? 0 : Below(4)));
    const Decmd command = commands[Below(int(commands.size()))];
    Say(u"command %1"_s.arg(command));
    m_rig->Surface.ExecCommand(command);
}

/// A click on an object, and perhaps a drag of its corner, an arrow key or Delete.
void RandomSessionTest::Object()
{
    const QVariantList rect =
        Ask(u"(() => { const all = document.querySelectorAll('img,input,select,hr,textarea,button'); if (!all.length) "
            u"return [];"
            "const e = all[%1 % all.length]; e.scrollIntoView({ block: 'center' });"
            "const r = e.getBoundingClientRect(); return [r.left, r.top, r.width, r.height]; })()"_s.arg(Below(500)))
            .toList();
    if (rect.size() != 4)
        return;
    const QRect place(rect[0].toInt(), rect[1].toInt(), rect[2].toInt(), rect[3].toInt());
    if (!m_rig->Surface.rect().contains(place.center()))
        return;
    Say(u"click object"_s);
    QWidget *input = m_rig->Surface.InputWidget();
    QTest::mouseClick(input, Qt::LeftButton, Qt::NoModifier, place.center());
    const auto drag = [&](QPoint from) {
        QTest::mousePress(input, Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(input, from + QPoint(5, 5));
        QTest::mouseMove(input, from + QPoint(3 + Below(40), 3 + Below(30)));
        QTest::mouseRelease(input, Qt::LeftButton, Qt::NoModifier, from + QPoint(20, 12));
    };
    switch (Below(5)) {
    case 0:
        Say(u"drag its corner"_s);
        drag(place.bottomRight() + QPoint(1, 1));
        break;
    case 3:
        Say(u"drag it"_s);
        if (Below(2))
            m_rig->Surface.ExecCommand(DECMD_MAKE_ABSOLUTE);
        drag(place.center());
        break;
    case 1:
        Say(u"Delete"_s);
        QTest::keyClick(input, Below(2) ? Qt::Key_Delete : Qt::Key_Backspace);
        break;
    case 2:
        Say(u"absolute, moved"_s);
        m_rig->Surface.ExecCommand(DECMD_MAKE_ABSOLUTE);
        QTest::keyClick(input, Qt::Key_Right);
        QTest::keyClick(input, Qt::Key_Down);
        break;
    default:
        break;
    }
}

void RandomSessionTest::Paste()
{
    static const QStringList real = RealFragments();
    const QStringList &fragments = Below(2) ? Fragments() : real;
    const QString html = fragments[Below(int(fragments.size()))];
    Say("paste "_L1 + html.simplified().left(200));
    if (Below(3) == 0) {
        m_rig->Surface.DOM().PasteHTML(html);
        return;
    }
    auto *data = new QMimeData;
    if (Below(8) == 0)
        data->setText(u"plain words\nover two lines\n\nand a paragraph"_s);
    else
        data->setHtml(html);
    QGuiApplication::clipboard()->setMimeData(data);
    QTest::keyClick(m_rig->Surface.InputWidget(), Qt::Key_V, Qt::ControlModifier);
}

void RandomSessionTest::Source()
{
    Say(u"to the source"_s);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QCOMPARE(m_rig->Page.ActiveTab, ViewTab::HtmlSource);
    const QString text = m_rig->Source.Text();
    if (Below(3) == 0) {
        Say(u"a paragraph there"_s);
        m_rig->Source.Select(text.indexOf("</body>"_L1, 0, Qt::CaseInsensitive) + 1, 0);
        m_rig->TypeInSource(u"<p>From the source.</p>"_s);
    } else if (Below(2)) {
        const qsizetype body = text.indexOf("<body"_L1, 0, Qt::CaseInsensitive);
        const qsizetype at = text.indexOf(u'>', body + Below(int(text.size() - body)));
        Say(u"a word there at %1"_s.arg(at));
        m_rig->Source.Select(at + 2, 0);
        m_rig->TypeInSource(u"word "_s);
    }
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_rig->Surface.InputWidget()->setFocus();
}

void RandomSessionTest::Step()
{
    const int kind = Below(100);
    if (kind < 30)
        Keys();
    else if (kind < 55)
        Move();
    else if (kind < 75)
        Command();
    else if (kind < 85)
        TableCommand();
    else if (kind < 92)
        Object();
    else if (kind < 98)
        Paste();
    else
        Source();
}

/// Undoes all there is; gives the page's text behind every step, the last first.
QStringList RandomSessionTest::Undo()
{
    QStringList states{Text()};
    while (m_rig->Surface.QueryStatus(DECMD_UNDO) >= DECMDF_ENABLED && states.size() < 20000) {
        m_rig->Surface.ExecCommand(DECMD_UNDO);
        states.append(Text());
    }
    return states;
}

/// Does all again, by the same states.
bool RandomSessionTest::Redo(const QStringList &states)
{
    qsizetype at = states.size() - 1;
    for (; at > 0 && m_rig->Surface.QueryStatus(DECMD_REDO) >= DECMDF_ENABLED; --at) {
        m_rig->Surface.ExecCommand(DECMD_REDO);
        const QString now = Text();
        if (now != states[at - 1] && !IsSame(states[at - 1], now, "done again it is another page"))
            return Holds(states[at] + u"\nwas to become\n"_s + states[at - 1],
                         u"step %1 of %2"_s.arg(states.size() - at).arg(states.size() - 1));
    }
    // There may be more, which was undone when the session ended.
    return Holds(at ? u"steps are lost"_s : QString(), u"step %1 of %2"_s.arg(states.size() - at).arg(states.size()));
}

/// Says what was done before a failure; too long for the log of Qt Test.
bool RandomSessionTest::Holds(const QString &difference, const QString &what)
{
    if (!difference.isEmpty())
        std::fprintf(stderr, "%s: %s\nafter %d:\n%s\n\n%s\n", qPrintable(what), qPrintable(difference),
                     int(m_log.size()), qPrintable(m_log.mid(std::max<qsizetype>(0, m_log.size() - 12)).join(u'\n')),
                     qPrintable(m_last));
    return difference.isEmpty();
}

bool RandomSessionTest::IsSame(const QString &before, const QString &after, const char *what)
{
    // A browser would take the quotes and brackets in code for those of the page.
    static const QRegularExpression code(u"<\\?.*?\\?>|<%.*?%>"_s, QRegularExpression::DotMatchesEverythingOption);
    const auto codeOf = [](const QString &text) {
        QStringList found;
        for (auto each = code.globalMatch(text); each.hasNext();)
            found.append(each.next().captured());
        return found;
    };
    const auto without = [](QString text) { return text.remove(code); };
    return Holds(codeOf(before) == codeOf(after) ? QString() : u"other code"_s, QString::fromLatin1(what)) &&
           Holds(m_judge->FirstDifference(without(before), without(after)), QString::fromLatin1(what));
}

/// The document is what a parser makes of its own text, and nothing stands in it that nobody put there.
bool RandomSessionTest::IsSound()
{
    const QString difference = Ask(QString::fromUtf8(ParsesBack)).toString();
    if (!Holds(difference, u"read again the page is another"_s))
        return false;
    const QString now = Text();
    for (const QString &pattern : Litter()) {
        const QRegularExpression litter(pattern);
        if (now.count(litter) > m_start.count(litter))
            return Holds(litter.match(now, std::max<qsizetype>(0, now.lastIndexOf(litter))).captured() + u" in "_s +
                             now.mid(now.lastIndexOf(litter), 200),
                         u"litter"_s);
    }
    m_last = Ask(u"document.body ? document.body.innerHTML : ''"_s).toString();
    return true;
}

/// A failed row leaves nothing unsaved to the next.
void RandomSessionTest::cleanup()
{
    m_rig->Edit->SelectTab(ViewTab::Normal);
    m_rig->Surface.WaitWhileBusy();
    m_rig->Surface.MarkClean();
    m_rig->Page.HtmlDirty = false;
}

void RandomSessionTest::Session_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("preserved");
    bool preserved = false;
    for (const Found &page : Pages()) {
        QTest::newRow(qPrintable(page.Name)) << page.Page << preserved;
        preserved = !preserved;
    }
}

void RandomSessionTest::Session()
{
    QFETCH(QString, path);
    QFETCH(bool, preserved);
    m_random.seed(Given("INKLOOM_SEED", 20) * 1000 + qHash(QFileInfo(path).fileName(), 0) % 1000);
    m_log.clear();
    const int steps = Given("INKLOOM_STEPS", 300);
    const int every = Given("INKLOOM_EVERY", 10); // 1 shows which step did it
    m_rig->Surface.SetSourceCodePreservation(preserved);

    QByteArray page = EditorRig::Bytes(path);
    const qsizetype bodyEnd = page.toLower().lastIndexOf("</body>");
    page.insert(bodyEnd < 0 ? page.size() : bodyEnd, "<script>document.body.innerHTML = 'ran'</script>");
    QVERIFY(m_rig->Load(m_rig->Put(QFileInfo(path).fileName(), page)));
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    m_rig->Surface.InputWidget()->setFocus();
    const qint64 renderer = m_rig->Surface.RendererProcessId();
    const QString start = m_start = Text();
    for (int i = 0; i < steps; ++i) {
        Step();
        QVERIFY(!QTest::currentTestFailed());
        QVERIFY(i % every || IsSound());
    }
    QVERIFY(IsSound());
    QCOMPARE(m_rig->Surface.RendererProcessId(), renderer);

    const QString end = Text();
    QVERIFY(IsSame(end, m_rig->Surface.DocumentHTML(), "saved it is another page"));
    const QStringList states = Undo();
    QVERIFY(IsSame(start, Text(), "undone it is not the opened page"));
    QVERIFY(m_rig->Surface.IsAsSaved());
    QVERIFY(Redo(states));
    QVERIFY(IsSame(end, Text(), "done again it is another page"));
}

QTEST_MAIN(RandomSessionTest)
#include "RandomSessionTest.moc"
