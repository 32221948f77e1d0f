#include "support/SurfaceRig.h"
#include "support/TableReference.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// The commands by the number that the test draws.
const QList<std::pair<QString, void (TableReference::*)(int, int)>> &Commands()
{
    static const QList<std::pair<QString, void (TableReference::*)(int, int)>> commands{
        {u"insertRow"_s, &TableReference::InsertRow},         {u"insertColumn"_s, &TableReference::InsertColumn},
        {u"insertCell"_s, &TableReference::InsertCell},       {u"deleteRows"_s, &TableReference::DeleteRows},
        {u"deleteColumns"_s, &TableReference::DeleteColumns}, {u"deleteCells"_s, &TableReference::DeleteCells},
        {u"mergeCells"_s, &TableReference::MergeCells},       {u"splitCell"_s, &TableReference::SplitCell},
    };
    return commands;
}

} // namespace

/// Generated tables under random commands, against a grid of names that knows nothing of markup.
class TableGridTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void GeneratedTables_data()
    {
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= 30; ++seed)
            QTest::addRow("%d", seed) << seed;
    }
    void GeneratedTables();

private:
    static constexpr int TablesPerPage = 20;

    /// Selects from one cell of a table to another, runs a command and tells what the table then is.
    QJsonObject Act(int table, int from, int to, const QString &command)
    {
        const QVariant answer = m_rig->Run(QString::fromUtf8(Script) +
                                           u"act(%1, %2, %3, '%4')"_s.arg(table).arg(from).arg(to).arg(command));
        return QJsonDocument::fromJson(answer.toString().toUtf8()).object();
    }
    /// Random commands on one of the page's tables; empty when the page and the reference agree after each.
    QString Work(TableReference reference, int table, QRandomGenerator &random);

    static constexpr const char *Script = R"js(
      var tableOf = (n) => document.querySelector('#t' + n + ' > table');
      var rowsOf = (t) => {
        const sections = [...t.children].filter((e) => ['THEAD', 'TBODY', 'TFOOT'].includes(e.nodeName));
        const ordered = [...sections.filter((e) => e.nodeName !== 'TFOOT'), ...sections.filter((e) => e.nodeName === 'TFOOT')];
        return ordered.map((s) => [...s.children].filter((e) => e.nodeName === 'TR'));
      };
      var cellsOf = (t) => rowsOf(t).flat().flatMap((r) => [...r.children]);
      var act = (n, from, to, command) => {
        const cells = cellsOf(tableOf(n));
        document.getSelection().setBaseAndExtent(cells[from], 0, cells[to], cells[to].childNodes.length);
        Surface.call('run', { name: command });
        const t = tableOf(n);
        if (!t) return '{}';
        const caret = document.getSelection().anchorNode;
        const cell = caret && (caret.nodeType === 1 ? caret : caret.parentNode).closest('td,th');
        return JSON.stringify({
          sections: rowsOf(t).map((rows) => rows.map((r) => [...r.children].map((c) =>
            [(c.textContent.match(/[an]\d+/g) || []).join(' '), c.rowSpan, c.colSpan]))),
          columns: [...t.querySelectorAll(':scope > colgroup > col')].reduce((sum, c) => sum + c.span, 0),
          comments: t.innerHTML.split('<!--').length - 1,
          caret: !!cell && t.contains(cell),
          stable: new DOMParser().parseFromString(t.outerHTML, 'text/html').body.firstChild.isEqualNode(t) });
      };
    )js";

    std::unique_ptr<SurfaceRig> m_rig;
};

QString TableGridTest::Work(TableReference reference, int table, QRandomGenerator &random)
{
    QStringList done;
    for (int step = 0; step < 5; ++step) {
        const QList<int> cells = reference.Cells();
        if (cells.isEmpty())
            break;
        const int from = random.bounded(int(cells.size()));
        const int to = random.bounded(2) ? from : random.bounded(from, int(cells.size()));
        const auto &[name, change] = Commands()[random.bounded(int(Commands().size()))];
        done.append(u"%1 from %2 to %3 of\n%4"_s.arg(name).arg(from).arg(to).arg(reference.Picture()));
        (reference.*change)(cells[from], cells[to]);
        const QString fault = reference.Mismatch(Act(table, from, to, name));
        if (!fault.isEmpty())
            return done.join(u'\n') + u'\n' + fault;
    }
    return {};
}

void TableGridTest::GeneratedTables()
{
    QFETCH(int, seed);
    QRandomGenerator random(seed);
    QList<TableReference> tables;
    QString html;
    for (int i = 0; i < TablesPerPage; ++i) {
        tables.append(TableReference::Generate(random));
        html += u"<div id=\"t%1\">"_s.arg(i) + tables.last().Html(random) + u"</div>"_s;
    }
    m_rig->SetBody(html);
    const QString before = m_rig->PlainBody();
    QCOMPARE(before, html);
    for (int i = 0; i < TablesPerPage; ++i) {
        const QString fault = Work(tables[i], i, random);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    const QString after = m_rig->PlainBody();
    m_rig->Run(u"while (Surface.call('undo')) {}"_s);
    QCOMPARE(m_rig->PlainBody(), before);
    m_rig->Run(u"while (Surface.call('redo')) {}"_s);
    QCOMPARE(m_rig->PlainBody(), after);
}

QTEST_MAIN(TableGridTest)
#include "TableGridTest.moc"
