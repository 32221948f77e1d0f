#include "site/FileListModel.h"

#include "document/PathText.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace {

QString ThemeName(FileIcon icon)
{
    switch (icon) {
    case FileIcon::Page:
        return u"text-html"_s;
    case FileIcon::Text:
        return u"text-plain"_s;
    case FileIcon::Document:
        return u"x-office-document"_s;
    case FileIcon::Pdf:
        return u"application-pdf"_s;
    case FileIcon::Other:
        break;
    }
    return u"unknown"_s;
}

/// On a selected row in the colour of its words: the themes' own would be blue on blue.
QIcon ReadableWhenSelected(const QIcon &icon)
{
    constexpr QSize size{16, 16};
    QIcon both;
    if (icon.isNull()) // a desktop without a theme
        return both;
    for (const qreal scale : {1.0, 2.0, 3.0}) {
        QPixmap picture = icon.pixmap(size, scale);
        if (picture.isNull())
            continue; // a theme without it
        both.addPixmap(picture);
        QPainter painter(&picture);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRect({}, size), QGuiApplication::palette().highlightedText());
        painter.end();
        both.addPixmap(picture, QIcon::Selected);
    }
    return both;
}

} // namespace

FileListModel::FileListModel(QObject *parent) : QAbstractTableModel(parent) {}

void FileListModel::SetRows(const QString &folder, const QList<FileRow> &rows)
{
    beginResetModel();
    m_folder = folder;
    m_rows = rows;
    endResetModel();
}

void FileListModel::RemoveRow(int row)
{
    if (row < 0 || row >= m_rows.size())
        return;
    beginRemoveRows({}, row, row);
    m_rows.removeAt(row);
    endRemoveRows();
}

QString FileListModel::NameOf(int row) const
{
    return m_rows.value(row).Name;
}

QString FileListModel::PathOf(int row) const
{
    return row < 0 || row >= m_rows.size() ? QString() : PathIn(m_folder, m_rows.at(row).Name);
}

QStringList FileListModel::Paths() const
{
    QStringList paths;
    for (int row = 0; row < m_rows.size(); ++row)
        paths.append(PathOf(row));
    return paths;
}

int FileListModel::RowOf(const QString &path) const
{
    const Qt::CaseSensitivity rule = PathStyle::Native().CaseSensitivity;
    const QFileInfo info(QDir::cleanPath(path));
    if (path.isEmpty() || info.path().compare(m_folder, rule) != 0)
        return -1;
    const QString name = info.fileName();
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).Name.compare(name, rule) == 0)
            return row;
    }
    return -1;
}

int FileListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int FileListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FileListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const FileRow &row = m_rows.at(index.row());
    if (role == Qt::DisplayRole && index.column() == NameColumn)
        return ShownName(row.Name);
    if (role == Qt::DisplayRole && index.column() == PathColumn)
        return PathOf(index.row());
    if (role == Qt::DecorationRole && index.column() == NameColumn)
        return IconFor(row.Icon);
    if (role == Qt::ToolTipRole && index.column() == NameColumn)
        return ShownName(row.Name).toHtmlEscaped();
    return {};
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case 0:
        return tr("Title"); // above the file names, on purpose
    case 1:
        return tr("MapID");
    case 2:
        return tr("Location");
    default:
        return QString();
    }
}

Qt::ItemFlags FileListModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

QIcon FileListModel::IconFor(FileIcon icon) const
{
    QIcon &known = m_icons[icon]; // a look into the theme for each row would be felt
    if (known.isNull())
        known = ReadableWhenSelected(QIcon::fromTheme(ThemeName(icon)));
    return known;
}
