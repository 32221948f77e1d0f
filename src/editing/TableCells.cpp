#include "editing/TableCells.h"

#include "document/ServerCode.h"
#include "editing/TableAttributes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The page with blanks for all that holds no tags of it: every place stays.
QString OnlyTags(const QString &page)
{
    const ServerCodeMask mask(page);
    QString text = mask.Usable() ? mask.Text() : page;
    const auto blank = [&text](QLatin1StringView from, QLatin1StringView to) {
        for (qsizetype at = text.indexOf(from, 0, Qt::CaseInsensitive); at >= 0;
             at = text.indexOf(from, at, Qt::CaseInsensitive))
        {
            const qsizetype end = text.indexOf(to, at + from.size(), Qt::CaseInsensitive);
            if (end < 0)
                return;
            std::fill(text.begin() + at, text.begin() + end, u' ');
        }
    };
    blank("<!--"_L1, "-->"_L1);
    blank("<script"_L1, "</script"_L1);
    blank("<style"_L1, "</style"_L1);
    return text;
}

bool StartsTag(QStringView text, qsizetype at, QLatin1StringView tag)
{
    const qsizetype end = at + tag.size();
    return text.sliced(at).startsWith(tag, Qt::CaseInsensitive) &&
           (end >= text.size() || !text[end].isLetterOrNumber());
}

/// 0-based, -1: none, as all below.
qsizetype Next(const QString &text, QLatin1StringView tag, qsizetype from)
{
    return text.indexOf(tag, from, Qt::CaseInsensitive);
}

qsizetype Last(const QString &text, QLatin1StringView tag, qsizetype before)
{
    return before > 0 ? text.lastIndexOf(tag, before - 1, Qt::CaseInsensitive) : -1;
}

int Count(const QString &text, QLatin1StringView tag, qsizetype from, qsizetype to)
{
    int count = 0;
    for (qsizetype at = Next(text, tag, from); at >= 0 && at < to; at = Next(text, tag, at + 1))
        ++count;
    return count;
}

/// Where the cells of the row at `row` end, `end` at most.
qsizetype RowEnd(const QString &text, qsizetype row, qsizetype end)
{
    // Looks no further than it must: a table may have many rows.
    const auto before = [&](QLatin1StringView tag, qsizetype from, qsizetype limit) {
        const qsizetype at = QStringView(text).first(limit).indexOf(tag, from, Qt::CaseInsensitive);
        return at < 0 ? limit : at;
    };
    const qsizetype nextRow = before("<TR"_L1, row + 1, end);
    const bool nested = before("<TABLE"_L1, row, nextRow) < nextRow;
    return before("</TR"_L1, row, nested ? end : nextRow);
}

struct Table
{
    qsizetype Start;
    qsizetype End;
};

QList<qsizetype> CellsOfRow(const QString &text, const Table &table, int number)
{
    qsizetype row = table.Start;
    for (int i = 0; i < number && row >= 0; ++i)
        row = Next(text, "<TR"_L1, row + 1);
    QList<qsizetype> cells;
    if (row < 0 || number == 0)
        return cells;
    const qsizetype end = RowEnd(text, row, table.End);
    for (qsizetype at = Next(text, "<TD"_L1, row); at >= 0 && at < end; at = Next(text, "<TD"_L1, at + 1))
        cells.append(at + 1);
    return cells;
}

QList<qsizetype> CellsOfColumn(const QString &text, const Table &table, int number)
{
    QList<qsizetype> cells;
    if (number == 0)
        return cells;
    qsizetype row = Next(text, "<TR"_L1, table.Start);
    while (row >= 0 && row < table.End) {
        const qsizetype end = RowEnd(text, row, table.End);
        qsizetype cell = row;
        for (int i = 0; i < number && cell >= 0; ++i)
            cell = Next(text, "<TD"_L1, cell + 1);
        const bool found = cell >= 0 && cell < end;
        if (found)
            cells.append(cell + 1);
        row = Next(text, "<TR"_L1, (found ? cell : row) + 1);
    }
    return cells;
}

/// Each table that is open at `place`, and in front of them the page itself, with its last cell.
qsizetype InnermostCell(const QString &text, qsizetype place)
{
    QList<qsizetype> open{-1};
    for (qsizetype at = text.indexOf(u'<'); at >= 0 && at < place; at = text.indexOf(u'<', at + 1)) {
        if (StartsTag(text, at, "<TABLE"_L1))
            open.append(-1);
        else if (StartsTag(text, at, "</TABLE"_L1) && open.size() > 1)
            open.removeLast();
        else if (StartsTag(text, at, "<TD"_L1) || StartsTag(text, at, "<TH"_L1))
            open.last() = at;
    }
    return open.last();
}

} // namespace

qsizetype CellAt(const QString &page, qsizetype place)
{
    return InnermostCell(OnlyTags(page), place - 1) + 1;
}

QList<qsizetype> CellsInScope(const QString &page, qsizetype place, CellScope scope)
{
    const QString text = OnlyTags(page);
    const qsizetype here = place - 1;
    const qsizetype cell = InnermostCell(text, here);
    if (cell < 0)
        return {};
    if (scope == CellScope::Cell)
        return {cell + 1};
    const qsizetype start = Last(text, "<TABLE"_L1, here);
    if (start < 0)
        return {};
    const qsizetype end = Next(text, "</TABLE>"_L1, here);
    const Table table{start, end < 0 ? text.size() : end};
    if (scope == CellScope::Row)
        return CellsOfRow(text, table, Count(text, "<TR"_L1, start, here));
    const qsizetype row = Last(text, "<TR"_L1, here);
    return row < 0 ? QList<qsizetype>() : CellsOfColumn(text, table, Count(text, "<TD"_L1, row, here));
}

ChangedCells WriteCells(const QString &page, qsizetype position, qsizetype length, CellScope scope,
                        const CellAttributes &cell)
{
    const QList<qsizetype> tags = CellsInScope(page, position, scope);
    ChangedCells changed{QString(), position, length};
    qsizetype copied = 0;
    for (qsizetype i = 0; i < tags.size(); ++i) {
        // Each from its tag to the next one, so that the work stays linear in the page.
        const qsizetype start = tags[i] - 1;
        const qsizetype end = i + 1 < tags.size() ? tags[i + 1] - 1 : page.size();
        changed.Text += QStringView(page).sliced(copied, start - copied);
        const QString written = WriteCell(page.sliced(start, end - start), 1, cell);
        changed.Text += written;
        copied = end;
        const qsizetype longer = written.size() - (end - start);
        if (tags[i] < position)
            changed.Position += longer;
        else if (tags[i] < position + length)
            changed.Length += longer;
    }
    changed.Text += QStringView(page).sliced(copied);
    return changed;
}
