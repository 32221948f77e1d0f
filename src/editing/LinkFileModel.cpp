#include "editing/LinkFileModel.h"

#include "document/PageLoader.h"
#include "document/PageTitle.h"
#include "document/PreviewFile.h"
#include "platform/FolderListing.h"

#include <QDir>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QSize>
#include <QTextDocumentFragment>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView LinkedTypes("*.htm*;*.doc;*.pdf");

/// The editor's own files beside the page.
bool IsOwnCopy(const QString &name)
{
    return name == ScratchFileName || name.contains(PreviewCopyName, Qt::CaseInsensitive);
}

/// Neither has a title that could be read.
bool HasNoTitle(const QString &name)
{
    return name.endsWith(".doc"_L1, Qt::CaseInsensitive) || name.endsWith(".pdf"_L1, Qt::CaseInsensitive);
}

} // namespace

void LinkFileModel::ShowFolder(const QString &folder, bool allTypes)
{
    beginResetModel();
    m_folder = folder;
    m_titles.clear();
    m_names = ListFolder(folder).Files;
    m_names.removeIf(
        [allTypes](const QString &name) { return IsOwnCopy(name) || (!allTypes && !QDir::match(LinkedTypes, name)); });
    std::sort(m_names.begin(), m_names.end(), [](const QString &one, const QString &other) {
        const int order = one.compare(other, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : one < other;
    });
    endResetModel();
}

QString LinkFileModel::PathOf(int row) const
{
    if (row < 0 || row >= m_names.size())
        return {};
    return m_folder.endsWith(u'/') ? m_folder + m_names[row] : m_folder + u'/' + m_names[row];
}

int LinkFileModel::RowOf(const QString &path) const
{
    int found = -1;
    for (int row = 0; row < m_names.size(); ++row) {
        const QString of = PathOf(row);
        if (of == path)
            return row;
        if (found < 0 && of.compare(path, Qt::CaseInsensitive) == 0)
            found = row;
    }
    return found;
}

QString LinkFileModel::TitleOf(int row) const
{
    const QString &name = m_names[row];
    if (HasNoTitle(name))
        return name;
    auto known = m_titles.find(row);
    if (known == m_titles.end()) {
        const QString title = QTextDocumentFragment::fromHtml(TitleOfFile(PathOf(row))).toPlainText().simplified();
        known = m_titles.insert(row, title.isEmpty() ? name : title);
    }
    return *known;
}

int LinkFileModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_names.size());
}

int LinkFileModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LinkFileModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::SizeHintRole) // rows without icons come out too low for accents
        return QSize(0, QFontMetrics(QGuiApplication::font()).height() + 6);
    if (role == Qt::ToolTipRole)
        return PathOf(index.row());
    if (role != Qt::DisplayRole)
        return {};
    return index.column() == TitleColumn ? TitleOf(index.row()) : PathOf(index.row());
}

QVariant LinkFileModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == TitleColumn ? tr("Title") : tr("Location");
}
