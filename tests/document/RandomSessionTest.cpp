#include "platform/TextFile.h"
#include "support/EditorRig.h"
#include "support/PageJudge.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QWebEngineView>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

struct Found
{
    QString Name;
    QString Page;
};

/// Ten pages as people keep them, each with a script that would leave its mark if it ran.
QList<Found> Pages()
{
    QList<Found> pages;
    for (const char *name : {"index.htm", "calendar.htm", "gallery.htm", "history.htm", "join.htm", "newsletter.htm",
                             "plots.htm", "news.php", "shop.asp", "rules.htm"})
        pages.append(
            {QString::fromLatin1(name), QStringLiteral(INKLOOM_SOURCE_DIR "/samples/") + QLatin1StringView(name)});
    return pages;
}

/// What the engine or an overlay of ours would leave behind. None of it stands in the pages or in what is pasted.
const QStringList &Litter()
{
    static const QStringList patterns{
        u"<SPAN"_s,
        u"(?i)<DIV(?! ALIGN=)"_s, // the line of a list item has no other way to be aligned
        u"-webkit-"_s,
        u"Apple-"_s,
        u"text-align"_s,
        u"font-family:"_s,
        u"white-space"_s,
        u"caret-color"_s,
        u"<P[^>]*><(UL|OL|TABLE|P|H[1-6])\\b"_s,
        u"<(UL|OL)[^>]*>\\s*<(UL|OL)\\b"_s,
        u"<(B|I|U|FONT)\\b[^>]*></\\1>"_s,
        u"(?i)<inkloom"_s,
        u"(?i)\\bran\\b"_s};
    return patterns;
}

const QStringList &Fragments()
{
    static const QStringList fragments{
        u"<p>One <b>bold</b> and one <i>slanted</i> word.</p><p>A second.</p>"_s,
        u"just <a href=\"links.htm\">a link</a> in the line"_s,
        u"<ul><li>first</li><li>second<ol><li>nested</li></ol></li></ul>"_s,
        u"<table border=1><tr><td>a</td><td rowspan=2>b</td></tr><tr><td>c</td></tr></table>"_s,
        u"<h2 align=center>A heading</h2>"_s,
        u"<img src=\"images/bean.png\" width=40 height=30 alt=x>"_s,
        u"<form action=x.cgi><input type=hidden name=h value=1><input name=q><select><option>1</select></form>"_s,
        u"<hr><!-- a note --><a name=here></a>"_s,
        u"<?php echo 'here'; ?> and <% = there %>"_s,
    };
    return fragments;
}

quint32 Given(const char *name, quint32 usual)
{
    bool given = false;
    const int value = qEnvironmentVariableIntValue(name, &given);
    return given ? quint32(value) : usual;
}

// Where the tree on screen and the one that a parser makes of its text part; "" if nowhere. A parser drops a line end
// at the start of some elements; the host writes it twice.
constexpr const char *ParsesBack = R"js((() => {
  const flat = (root) => {
    const out = [];
    const walk = (node) => {
      for (let child = node.firstChild; child; child = child.nextSibling) {
        if (child.nodeType === Node.TEXT_NODE) {
          if (out.length && out[out.length - 1].startsWith("T:")) out[out.length - 1] += child.data;
          else if (child.data) out.push("T:" + child.data);
        } else if (child.nodeType === Node.COMMENT_NODE) {
          out.push("C:" + child.data);
        } else if (child.localName !== "inkloom-overlay") {
          out.push("<" + child.localName + [...child.attributes].map((x) => " " + x.name + "=" + x.value).join("") + ">");
          walk(child.content || child);
          out.push("</>");
        }
      }
    };
    walk(root);
    return out;
  };
  const html = document.documentElement.outerHTML.replace("<inkloom-overlay></inkloom-overlay>", "")
    .replace(/<(pre|listing|textarea)([^>]*)>\n/g, "<$1$2>\n\n");
  const doctype = document.compatMode === "CSS1Compat" ? "<!DOCTYPE html>" : "";
  const x = flat(document.documentElement);
  const y = flat(new DOMParser().parseFromString(doctype + html, "text/html").documentElement);
  for (let i = 0; i < Math.max(x.length, y.length); ++i)
    if (x[i] !== y[i])
      return JSON.stringify(x.slice(Math.max(0, i - 3), i + 3)) + " became " + JSON.stringify(y.slice(Math.max(0, i - 3), i + 3));
  return "";
})())js";

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
    QStringList m_states; ///< texts of the page on the way, and where in the log that was
    QList<int> m_lines;
    QString m_last;    ///< the body when it was found sound last
    QStringList m_log; ///< what was done, for the message of a failure
};

QVariant RandomSessionTest::Ask(const QString &script)
{
    m_rig->Surface.IsDirty(); // waits for what was typed
    QVariant answer;
    QEventLoop loop;
    m_rig->Surface.findChild<QWebEngineView *>()->page()->runJavaScript(script, QWebEngineScript::ApplicationWorld,
                                                                        [&](const QVariant &value) {
                                                                            answer = value;
                                                                            loop.quit();
                                                                        });
    loop.exec();
    return answer;
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
    static const QList<Decmd> commands{
        DECMD_BOLD,         DECMD_ITALIC,       DECMD_UNDERLINE,     DECMD_JUSTIFYLEFT,    DECMD_JUSTIFYCENTER,
        DECMD_JUSTIFYRIGHT, DECMD_ORDERLIST,    DECMD_UNORDERLIST,   DECMD_INDENT,         DECMD_OUTDENT,
        DECMD_UNLINK,       DECMD_DELETE,       DECMD_CUT,           DECMD_COPY,           DECMD_SETFONTNAME,
        DECMD_SETFONTSIZE,  DECMD_SETFORECOLOR, DECMD_SETBLOCKFMT,   DECMD_HYPERLINK,      DECMD_IMAGE,
        DECMD_UNDO,         DECMD_REDO,         DECMD_MAKE_ABSOLUTE, DECMD_BRING_TO_FRONT, DECMD_SEND_TO_BACK,
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
    switch (Below(4)) {
    case 0: {
        Say(u"drag its corner"_s);
        const QPoint corner = place.bottomRight() + QPoint(1, 1);
        QTest::mousePress(input, Qt::LeftButton, Qt::NoModifier, corner);
        QTest::mouseMove(input, corner + QPoint(5, 5));
        QTest::mouseMove(input, corner + QPoint(3 + Below(40), 3 + Below(30)));
        QTest::mouseRelease(input, Qt::LeftButton, Qt::NoModifier, corner + QPoint(20, 12));
        break;
    }
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
    const QString html = Fragments()[Below(int(Fragments().size()))];
    Say("paste "_L1 + html);
    if (Below(3) == 0) {
        m_rig->Surface.DOM().PasteHTML(html);
        return;
    }
    auto *data = new QMimeData;
    if (Below(4) == 0)
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
    if (Below(2)) {
        Say(u"changed there"_s);
        m_rig->Source.Select(m_rig->Source.Text().indexOf("</body>"_L1) + 1, 0);
        m_rig->TypeInSource(u"<p>From the source.</p>"_s);
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
    while (m_rig->Surface.QueryStatus(DECMD_REDO) >= DECMDF_ENABLED && at > 0) {
        m_rig->Surface.ExecCommand(DECMD_REDO);
        const QString now = Text();
        if (now != states[--at] && !IsSame(states[at], now, "done again it is another page")) {
            const qsizetype line = m_states.indexOf(states[at + 1]);
            std::fprintf(stderr, "step %lld, behind line %lld of the log:\n%s\nwas to become\n%s\n",
                         qlonglong(states.size() - at), qlonglong(line < 0 ? -1 : m_lines[line]),
                         qPrintable(states[at + 1]), qPrintable(states[at]));
            if (line >= 0)
                std::fprintf(stderr, "LINES\n%s\n",
                             qPrintable(m_log.mid(std::max(0, m_lines[line] - 3), 8).join(u'\n')));
            return false;
        }
    }
    return at == 0 && m_rig->Surface.QueryStatus(DECMD_REDO) < DECMDF_ENABLED;
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
    if (!Holds(difference, u"read again the page is another"_s)) {
        std::fprintf(stderr, "NOW\n%s\n", qPrintable(Ask(u"document.documentElement.outerHTML"_s).toString()));
        return false;
    }
    const QString now = Text();
    m_states.append(now);
    m_lines.append(int(m_log.size()));
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
    m_states.clear();
    m_lines.clear();
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
