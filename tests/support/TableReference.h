#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QRandomGenerator>
#include <QSet>
#include <QString>
#include <QStringList>

#include <algorithm>

/// What table commands are to do, told on a grid of numbers: each place holds the number of its cell, or Hole. It knows
/// markup only to write the table it starts as and to read what a page made of it.
class TableReference
{
public:
    static constexpr int Hole = -1;

    static TableReference Generate(QRandomGenerator &random)
    {
        TableReference table;
        const int width = random.bounded(1, 7);
        int section = 0;
        const auto addSection = [&](QChar kind, int rows) {
            const int first = int(table.m_grid.size());
            for (int i = 0; i < rows; ++i) {
                table.m_grid.append(QList<int>(width, Hole));
                table.m_sections.append(section);
            }
            table.m_kinds[section++] = kind;
            for (int y = first; y < first + rows; ++y)
                table.FillRow(y, first + rows, width, random);
        };
        if (random.bounded(3) == 0)
            addSection(u'h', random.bounded(1, 3));
        addSection(u'b', random.bounded(1, 6));
        if (random.bounded(4) == 0)
            addSection(u'b', random.bounded(1, 4));
        if (random.bounded(3) == 0)
            addSection(u'f', random.bounded(1, 3));
        table.m_columns = random.bounded(2) ? random.bounded(1, width + 2) : 0;
        table.m_comments = random.bounded(2) ? int(table.m_grid.size()) * 2 : 0;
        if (table.Cells().isEmpty())
            return Generate(random);
        return table;
    }

    QString Html(QRandomGenerator &random) const
    {
        QString html = QStringLiteral("<table>");
        if (random.bounded(3) == 0)
            html += QStringLiteral("<caption>k</caption>");
        if (m_columns) {
            html += QStringLiteral("<colgroup>");
            for (int left = m_columns; left > 0;) {
                const int span = random.bounded(1, left + 1);
                html += span > 1 ? QStringLiteral("<col span=\"%1\">").arg(span) : QStringLiteral("<col width=\"9\">");
                left -= span;
            }
            html += QStringLiteral("</colgroup>");
        }
        const QString space = random.bounded(2) ? QStringLiteral("\n") : QString();
        QString head, body, footer;
        for (int y = 0; y < m_grid.size(); ++y) {
            const QString tag = m_kinds[m_sections[y]] == u'h'   ? QStringLiteral("thead")
                                : m_kinds[m_sections[y]] == u'f' ? QStringLiteral("tfoot")
                                                                 : QStringLiteral("tbody");
            QString &out = tag == u"tfoot" ? footer : tag == u"thead" ? head : body;
            if (y == 0 || m_sections[y - 1] != m_sections[y])
                out += u'<' + tag + u'>' + space;
            out += RowHtml(y, space, random);
            if (End(y) == y + 1)
                out += QStringLiteral("</%1>").arg(tag) + space;
        }
        // Footers may stand in front of what they stand below.
        return html + space + head + (random.bounded(2) ? footer + body : body + footer) + QStringLiteral("</table>");
    }

    /// Cells in their order in the table.
    QList<int> Cells() const
    {
        QList<int> cells;
        QSet<int> seen;
        for (const QList<int> &row : m_grid)
            for (const int id : row)
                if (id != Hole && !seen.contains(id)) {
                    seen.insert(id);
                    cells.append(id);
                }
        return cells;
    }

    void InsertRow(int from, int to)
    {
        const Area a = AreaOf(from, to);
        const int count = from == to ? 1 : a.Bottom - a.Top;
        const QList<int> above = m_grid[a.Bottom - 1];
        const QList<int> below = End(a.Bottom - 1) > a.Bottom ? m_grid[a.Bottom] : QList<int>(above.size(), Hole);
        const int section = m_sections[a.Bottom - 1];
        int end = int(above.size());
        while (end && above[end - 1] == Hole)
            --end;
        for (int i = 0; i < count; ++i) {
            QList<int> row(above.size(), Hole);
            for (int x = 0; x < end; ++x) {
                const int id = above[x];
                const bool atEnd = End(a.Bottom - 1 + i) == a.Bottom + i;
                if (id != Hole && (below[x] == id || (atEnd && m_open.contains(id))))
                    row[x] = id;
                else
                    row[x] = x && id != Hole && above[x - 1] == id ? row[x - 1] : NewCell();
            }
            m_grid.insert(a.Bottom + i, row);
            m_sections.insert(a.Bottom + i, section);
        }
    }

    void InsertColumn(int from, int to)
    {
        const Area a = AreaOf(from, to);
        const int count = from == to ? 1 : a.Right - a.Left;
        const QList<QList<int>> old = m_grid;
        for (int i = 0; i < count; ++i)
            for (int y = 0; y < old.size(); ++y) {
                const int left = old[y][a.Right - 1];
                const int right = a.Right < old[y].size() ? old[y][a.Right] : Hole;
                const bool goesOn = y && left != Hole && old[y - 1][a.Right - 1] == left;
                m_grid[y].insert(a.Right + i, left == Hole || left == right ? left
                                              : goesOn                      ? m_grid[y - 1][a.Right + i]
                                                                            : NewCell());
            }
        if (a.Right <= m_columns)
            m_columns += count;
    }

    void InsertCell(int from, int to)
    {
        const Area a = AreaOf(from, to);
        QList<QList<Cell>> rows = Rows();
        for (QList<Cell> &row : rows) {
            int count = 0;
            qsizetype last = 0;
            for (qsizetype i = 0; i < row.size(); ++i)
                if (a.Ids.contains(row[i].Id)) {
                    ++count;
                    last = i;
                }
            for (int i = 0; i < count; ++i)
                row.insert(last + 1, Cell{NewCell(), 1, 1});
        }
        Place(rows);
    }

    void DeleteRows(int from, int to)
    {
        const Area a = AreaOf(from, to);
        m_grid.remove(a.Top, a.Bottom - a.Top);
        m_sections.remove(a.Top, a.Bottom - a.Top);
        FillGaps();
    }

    void DeleteColumns(int from, int to)
    {
        const Area a = AreaOf(from, to);
        const QList<bool> held = Held();
        for (QList<int> &row : m_grid)
            row.remove(a.Left, a.Right - a.Left);
        DropColumns(a.Left, a.Right - a.Left);
        DropBare(held);
        FillGaps();
    }

    void DeleteCells(int from, int to)
    {
        const Area a = AreaOf(from, to);
        const QList<bool> held = Held();
        QList<QList<Cell>> rows = Rows();
        for (QList<Cell> &row : rows)
            row.removeIf([&](const Cell &cell) { return a.Ids.contains(cell.Id); });
        Place(rows);
        DropBare(held);
    }

    void MergeCells(int from, int to)
    {
        const QList<int> order = Cells();
        if (from == to || SectionOf(from) != SectionOf(to))
            return;
        const Area a = AreaOf(from, to);
        QStringList names;
        int first = Hole;
        for (const int id : order)
            if (a.Ids.contains(id)) {
                first = first == Hole ? id : first;
                if (!m_names.value(id).isEmpty())
                    names.append(m_names.value(id));
            }
        const auto startsBefore = std::make_pair(Starts(true), Starts(false));
        for (int y = a.Top; y < a.Bottom; ++y)
            for (int x = a.Left; x < a.Right; ++x)
                m_grid[y][x] = first;
        m_names[first] = names.join(u' ');
        const auto starts = std::make_pair(Starts(true), Starts(false));
        for (int y = a.Bottom - 1; y > a.Top; --y)
            if (startsBefore.first.contains(y) && !starts.first.contains(y)) {
                m_grid.remove(y);
                m_sections.remove(y);
            }
        for (int x = a.Right - 1; x > a.Left; --x)
            if (startsBefore.second.contains(x) && !starts.second.contains(x)) {
                for (QList<int> &row : m_grid)
                    row.remove(x);
                DropColumns(x, 1);
            }
        FillGaps();
    }

    void SplitCell(int from, int to)
    {
        const Area a = AreaOf(from, to);
        bool spanned = false;
        QSet<int> seen;
        for (int y = a.Top; y < a.Bottom; ++y)
            for (int x = a.Left; x < a.Right; ++x) {
                int &id = m_grid[y][x];
                if (id == Hole)
                    continue;
                if (seen.contains(id)) {
                    m_open.remove(id);
                    id = NewCell();
                    spanned = true;
                } else {
                    seen.insert(id);
                }
            }
        for (int x = a.Right - 1; !spanned && x >= a.Left; --x) {
            for (int y = 0; y < m_grid.size(); ++y) {
                const int id = m_grid[y][x];
                m_grid[y].insert(x + 1, a.Ids.contains(id) && y >= a.Top && y < a.Bottom ? NewCell() : id);
            }
            m_columns += x < m_columns ? 1 : 0;
        }
        FillGaps();
    }

    /// In what the page differs; empty when it is this table.
    QString Mismatch(const QJsonObject &page) const
    {
        if (m_grid.isEmpty() || Cells().isEmpty())
            return page.isEmpty() ? QString() : QStringLiteral("the table should be gone");
        if (page.isEmpty())
            return QStringLiteral("the table is gone");
        if (page[QStringLiteral("columns")].toInt() != m_columns)
            return QStringLiteral("%1 col places, not %2").arg(page[QStringLiteral("columns")].toInt()).arg(m_columns);
        if (page[QStringLiteral("comments")].toInt() != m_comments)
            return QStringLiteral("lost comments");
        if (!page[QStringLiteral("caret")].toBool())
            return QStringLiteral("no caret");
        if (!page[QStringLiteral("stable")].toBool())
            return QStringLiteral("parses as another table");
        TableReference found;
        const QString fault = found.Read(page[QStringLiteral("sections")].toArray());
        if (!fault.isEmpty() || found.Picture() == Picture())
            return fault;
        return QStringLiteral("found\n%1\nwanted\n%2").arg(found.Picture(), Picture());
    }

    /// One line a row; cells by number in their order, with their names.
    QString Picture() const
    {
        QMap<int, int> numbers;
        QString picture;
        for (int y = 0; y < m_grid.size(); ++y) {
            QString line;
            for (const int id : m_grid[y]) {
                if (id != Hole && !numbers.contains(id))
                    numbers.insert(id, int(numbers.size()));
                line += id == Hole ? QStringLiteral("[]")
                                   : QStringLiteral("[%1 %2]").arg(numbers.value(id)).arg(m_names.value(id));
            }
            while (line.endsWith(u"[]"))
                line.chop(2);
            picture += line + (End(y) == y + 1 ? QStringLiteral("\n--\n") : QStringLiteral("\n"));
        }
        return picture;
    }

private:
    struct Cell
    {
        int Id;
        int Rowspan;
        int Colspan;
    };
    struct Area
    {
        int Top, Left, Bottom, Right;
        QSet<int> Ids{};
    };

    int NewCell() { return m_next++; }

    void FillRow(int y, int end, int width, QRandomGenerator &random)
    {
        for (int x = 0; x < width; ++x) {
            if (m_grid[y][x] != Hole)
                continue;
            if (random.bounded(12) == 0)
                return; // a short row
            int room = 1;
            while (x + room < width && m_grid[y][x + room] == Hole)
                ++room;
            const int colspan = random.bounded(3) ? 1 : random.bounded(1, room + 1);
            const int rowspan = random.bounded(3) ? 1 : random.bounded(1, end - y + 1);
            const int id = NewCell();
            for (int i = 0; i < rowspan; ++i)
                std::fill_n(m_grid[y + i].begin() + x, colspan, id);
            if (random.bounded(5))
                m_names[id] = QStringLiteral("a%1").arg(id);
            if (y + rowspan == end && random.bounded(5) == 0)
                m_open.insert(id);
        }
    }

    QString RowHtml(int y, const QString &space, QRandomGenerator &random) const
    {
        QString row = m_comments ? QStringLiteral("<!--each--><tr>") : QStringLiteral("<tr>");
        const QList<Cell> cells = Rows()[y];
        for (const Cell &cell : cells) {
            const QString tag = random.bounded(5) ? QStringLiteral("td") : QStringLiteral("th");
            row += u'<' + tag;
            const bool toEnd = y + cell.Rowspan == End(y);
            if (m_open.contains(cell.Id))
                row += QStringLiteral(" rowspan=\"0\"");
            else if (cell.Rowspan > 1 || (toEnd && random.bounded(8) == 0))
                row += QStringLiteral(" rowspan=\"%1\"").arg(toEnd && random.bounded(4) == 0 ? 40 : cell.Rowspan);
            if (cell.Colspan > 1)
                row += QStringLiteral(" colspan=\"%1\"").arg(cell.Colspan);
            const QString name = m_names.value(cell.Id);
            const int kind = random.bounded(6);
            row += u'>';
            row += name.isEmpty() ? (kind & 1 ? QStringLiteral("<br>") : QStringLiteral("&nbsp;"))
                   : kind == 0    ? QStringLiteral("<table><tbody><tr><td>%1</td></tr></tbody></table>").arg(name)
                   : kind == 1    ? QStringLiteral("<p>%1</p>").arg(name)
                                  : name;
            row += QStringLiteral("</%1>").arg(tag) + space;
        }
        return row + (m_comments ? QStringLiteral("<!--end--></tr>") : QStringLiteral("</tr>")) + space;
    }

    /// One past the last row of the section of row y.
    int End(int y) const
    {
        const int section = m_sections[y];
        while (y < m_sections.size() && m_sections[y] == section)
            ++y;
        return y;
    }

    int SectionOf(int id) const
    {
        for (int y = 0; y < m_grid.size(); ++y)
            if (m_grid[y].contains(id))
                return m_sections[y];
        return -1;
    }

    Area AreaOf(int from, int to) const
    {
        Area a{int(m_grid.size()), int(m_grid[0].size()), 0, 0};
        QSet<int> ids{from, to};
        for (qsizetype before = -1; before != ids.size();) {
            before = ids.size();
            for (int y = 0; y < m_grid.size(); ++y)
                for (int x = 0; x < m_grid[y].size(); ++x)
                    if (ids.contains(m_grid[y][x]))
                        a = {std::min(a.Top, y), std::min(a.Left, x), std::max(a.Bottom, y + 1),
                             std::max(a.Right, x + 1)};
            for (int y = a.Top; y < a.Bottom; ++y)
                for (int x = a.Left; x < a.Right; ++x)
                    if (m_grid[y][x] != Hole)
                        ids.insert(m_grid[y][x]);
        }
        a.Ids = ids;
        return a;
    }

    /// The cells that begin in each row.
    QList<QList<Cell>> Rows() const
    {
        QList<QList<Cell>> rows(m_grid.size());
        QSet<int> seen;
        for (int y = 0; y < m_grid.size(); ++y)
            for (int x = 0; x < m_grid[y].size(); ++x) {
                const int id = m_grid[y][x];
                if (id == Hole || seen.contains(id))
                    continue;
                seen.insert(id);
                Cell cell{id, 0, 0};
                while (y + cell.Rowspan < m_grid.size() && m_grid[y + cell.Rowspan][x] == id)
                    ++cell.Rowspan;
                while (x + cell.Colspan < m_grid[y].size() && m_grid[y][x + cell.Colspan] == id)
                    ++cell.Colspan;
                rows[y].append(cell);
            }
        return rows;
    }

    /// Each cell goes to the first place of its row, behind the one before it, where it fits.
    void Place(const QList<QList<Cell>> &rows)
    {
        qsizetype width = 0;
        for (const QList<Cell> &row : rows)
            for (const Cell &cell : row)
                width += cell.Colspan;
        width += m_grid[0].size();
        for (QList<int> &row : m_grid)
            row = QList<int>(width * 2, Hole);
        for (int y = 0; y < rows.size(); ++y) {
            int x = 0;
            for (const Cell &cell : rows[y]) {
                const auto fits = [&] {
                    return std::all_of(m_grid[y].begin() + x, m_grid[y].begin() + x + cell.Colspan,
                                       [](int id) { return id == Hole; });
                };
                while (!fits())
                    ++x;
                for (int i = 0; i < cell.Rowspan; ++i)
                    std::fill_n(m_grid[y + i].begin() + x, cell.Colspan, cell.Id);
                x += cell.Colspan;
            }
        }
        FillGaps();
    }

    /// A parser puts cells into the first free place: so a gap in front of one needs a cell.
    void FillGaps()
    {
        const QList<QList<Cell>> rows = Rows();
        for (int y = 0; y < m_grid.size(); ++y) {
            const qsizetype last = rows[y].isEmpty() ? 0 : m_grid[y].indexOf(rows[y].last().Id);
            for (qsizetype x = 0; x < last; ++x)
                if (m_grid[y][x] == Hole)
                    for (const int id = NewCell(); m_grid[y][x] == Hole; ++x)
                        m_grid[y][x] = id;
        }
    }

    QList<bool> Held() const
    {
        QList<bool> held;
        for (const QList<int> &row : m_grid)
            held.append(row.count(Hole) != row.size());
        return held;
    }
    void DropBare(const QList<bool> &before)
    {
        const QList<bool> held = Held();
        for (int y = int(m_grid.size()) - 1; y >= 0; --y)
            if (before[y] && !held[y]) {
                m_grid.remove(y);
                m_sections.remove(y);
            }
    }
    void DropColumns(int at, int count) { m_columns -= std::max(0, std::min(at + count, m_columns) - at); }

    /// Rows, or columns, in which a cell begins.
    QSet<int> Starts(bool rows) const
    {
        QSet<int> starts, seen;
        for (int y = 0; y < m_grid.size(); ++y)
            for (int x = 0; x < m_grid[y].size(); ++x)
                if (m_grid[y][x] != Hole && !seen.contains(m_grid[y][x])) {
                    seen.insert(m_grid[y][x]);
                    starts.insert(rows ? y : x);
                }
        return starts;
    }

    /// Lays out what the page holds, by the rules of the HTML standard.
    QString Read(const QJsonArray &sections)
    {
        for (const QJsonValue &section : sections) {
            const int first = int(m_grid.size());
            const QJsonArray rows = section.toArray();
            for (qsizetype y = 0; y < rows.size(); ++y) {
                m_grid.append(QList<int>());
                m_sections.append(first);
            }
            for (int y = first; y < m_grid.size(); ++y) {
                int x = 0;
                for (const QJsonValue &value : rows[y - first].toArray()) {
                    const QJsonArray cell = value.toArray();
                    const int left = int(m_grid.size()) - y;
                    const int rowspan = cell[1].toInt() ? std::min(cell[1].toInt(), left) : left;
                    const int id = NewCell();
                    m_names[id] = cell[0].toString();
                    while (x < m_grid[y].size() && m_grid[y][x] != Hole)
                        ++x;
                    for (int i = 0; i < rowspan; ++i)
                        for (int j = x; j < x + cell[2].toInt(); ++j) {
                            QList<int> &row = m_grid[y + i];
                            while (row.size() <= j)
                                row.append(Hole);
                            if (row[j] != Hole)
                                return QStringLiteral("cells overlap in row %1, column %2").arg(y + i).arg(j);
                            row[j] = id;
                        }
                    x += cell[2].toInt();
                }
            }
        }
        return {};
    }

    QList<QList<int>> m_grid;
    QList<int> m_sections;      ///< by row
    QMap<int, QChar> m_kinds;   ///< of sections: h, b or f
    QMap<int, QString> m_names; ///< what cells hold
    QSet<int> m_open;           ///< cells that reach their section's end, whatever comes
    int m_columns = 0;          ///< that have a col element
    int m_comments = 0;
    int m_next = 0;
};
