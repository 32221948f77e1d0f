#include "site/FileListView.h"

#include "platform/Twips.h"
#include "site/FileListModel.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>

namespace {

bool IsOpenKey(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

} // namespace

FileListView::FileListView(QWidget *parent) : QTreeView(parent)
{
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true); // or each of thousands of rows is measured
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setDragDropMode(DragOnly); // rows take nothing
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideMiddle); // the ending tells pages from the rest
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
}

void FileListView::SetColumnWidths()
{
    for (int column = 0; column < FileListModel::ColumnCount; ++column) {
        const int twips = FileListModel::WidthsInTwips[column];
        if (twips > 0)
            header()->resizeSection(column, PixelsFromTwips(twips));
        header()->setSectionHidden(column, twips == 0);
    }
}

int FileListView::SelectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void FileListView::SelectRow(int row)
{
    const QModelIndex index = model()->index(row, FileListModel::NameColumn);
    if (index.isValid())
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else
        selectionModel()->clear();
}

void FileListView::ShowSelectedRow()
{
    const int row = SelectedRow();
    if (row >= 0)
        scrollTo(model()->index(row, FileListModel::NameColumn));
}

void FileListView::SetHint(const QString &hint)
{
    m_hint = hint;
    setAccessibleDescription(hint);
    viewport()->update();
}

bool FileListView::event(QEvent *event)
{
    // The keys that act on a row are ours while we have the focus, whatever menu knows them too.
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (IsOpenKey(key) || (key->key() == Qt::Key_Delete && key->modifiers() == Qt::NoModifier)) {
            key->accept();
            return true;
        }
    }
    return QTreeView::event(event);
}

void FileListView::keyPressEvent(QKeyEvent *event)
{
    const int row = SelectedRow();
    if (IsOpenKey(event) && row >= 0) {
        if (event->modifiers() & Qt::ControlModifier)
            emit NewWindowWanted(row);
        else
            emit OpenWanted(row);
    } else if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
        emit DeleteWanted();
    } else {
        QTreeView::keyPressEvent(event);
    }
}

void FileListView::mouseReleaseEvent(QMouseEvent *event)
{
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) {
        emit MenuWanted(event->globalPosition().toPoint());
    } else if (event->button() == Qt::MiddleButton) {
        const QModelIndex index = indexAt(event->position().toPoint());
        if (index.isValid() && index.row() == SelectedRow()) // where it was pressed
            emit NewWindowWanted(index.row());
    }
}

void FileListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid()) {
        QTreeView::mouseDoubleClickEvent(event);
        return;
    }
    event->accept();
    SelectRow(index.row()); // the first click, with Ctrl, may have taken the selection off
    if (event->modifiers() & Qt::ControlModifier)
        emit NewWindowWanted(index.row());
    else
        emit OpenWanted(index.row());
}

void FileListView::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    if (event->reason() == QContextMenuEvent::Mouse)
        return; // its release opens the menu
    const QRect row = visualRect(model()->index(SelectedRow(), FileListModel::NameColumn));
    emit MenuWanted(viewport()->mapToGlobal(row.isValid() ? row.bottomLeft() + QPoint(row.height(), 0) : QPoint()));
}

void FileListView::startDrag(Qt::DropActions)
{
    const int row = SelectedRow();
    if (row >= 0)
        emit DragWanted(row);
}

void FileListView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (m_hint.isEmpty() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
    const int margin = fontMetrics().height();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_hint);
}
