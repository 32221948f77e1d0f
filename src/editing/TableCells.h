#pragma once

#include <QList>
#include <QString>

struct CellAttributes;

/// Where the cells of a table stand in the text of a page. Places are 1-based; 0: there is none. What stands in
/// comments, scripts, styles and server-side code is no tag.

/// The order is that of SurfaceState::CellScope.
enum class CellScope { Cell, Row, Column };

/// The tag of the cell that a place stands in.
qsizetype CellAt(const QString &page, qsizetype place);

/// The tags of the cells to change, in their order. Rows and columns are counted by their tags, flatly: what stands in
/// a table within the row or column counts with it, spans do not, and header cells (TH) are not of them. This is how it
/// has always been. A row ends with its end tag, or where the next row or the end of the table comes before one; a row
/// that is too short has no cell in the column.
QList<qsizetype> CellsInScope(const QString &page, qsizetype place, CellScope scope);

/// A page in which cells were changed, and where what stood at a place and on so far stands now.
struct ChangedCells
{
    QString Text;
    qsizetype Position = 0;
    qsizetype Length = 0;
};
ChangedCells WriteCells(const QString &page, qsizetype position, qsizetype length, CellScope scope,
                        const CellAttributes &cell);
