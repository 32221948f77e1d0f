#include "site/FolderListModel.h"

#include "site/FileRules.h"

#include <QFileInfo>
#include <QFont>
#include <QIcon>
#include <QPainter>

using namespace Qt::StringLiterals;

FolderListModel::FolderListModel(QObject *parent) : QAbstractListModel(parent) {}

void FolderListModel::SetFolders(const QStringList &open, const QString &rootName, const QStringList &inside)
{
    if (open == m_open && inside == m_inside && rootName == m_rootName)
        return;
    beginResetModel();
    m_open = open;
    m_rootName = rootName;
    m_inside = inside;
    endResetModel();
}

QString FolderListModel::PathOf(int row) const
{
    if (row < 0 || row >= rowCount())
        return {};
    return IsOpen(row) ? m_open.at(row) : PathIn(m_open.last(), m_inside.at(row - m_open.size()));
}

QString FolderListModel::NameOf(int row) const
{
    if (row == 0)
        return m_rootName;
    return ShownName(IsOpen(row) ? QFileInfo(m_open.at(row)).fileName() : m_inside.at(row - m_open.size()));
}

int FolderListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_open.isEmpty() ? 0 : int(m_open.size() + m_inside.size());
}

QVariant FolderListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return NameOf(row);
    case Qt::AccessibleTextRole:
        return row == ShownRow() ? tr("%1, shown").arg(NameOf(row)) : NameOf(row);
    case Qt::ToolTipRole:
        return ShownName(PathOf(row)).toHtmlEscaped();
    case Qt::DecorationRole:
        return QIcon::fromTheme(IsOpen(row) ? u"folder-open"_s : u"folder"_s);
    case Qt::FontRole: {
        QFont font;
        font.setBold(row == ShownRow());
        return font;
    }
    case LevelRole:
        return IsOpen(row) ? row : int(m_open.size());
    case PathRole:
        return PathOf(row);
    default:
        return {};
    }
}

void FolderListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem indented = option;
    // Deep folders must not leave the list: names stay readable.
    const int step = option.fontMetrics.averageCharWidth();
    const int indent = qMin(index.data(FolderListModel::LevelRole).toInt() * step, option.rect.width() / 3);
    if (option.direction == Qt::RightToLeft)
        indented.rect.setRight(option.rect.right() - indent);
    else
        indented.rect.setLeft(option.rect.left() + indent);
    QStyledItemDelegate::paint(painter, indented, index);
}
