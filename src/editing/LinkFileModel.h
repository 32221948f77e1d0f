#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>

/// The files of a folder that a link can lead to: title and path. Titles are read only for the rows that are seen, so a
/// folder of many thousand pages shows at once.
class LinkFileModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TitleColumn, PathColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Lists what may be chosen in `folder`: pages and documents, or every file; never the copies that the editor
    /// makes.
    void ShowFolder(const QString &folder, bool allTypes);
    QString PathOf(int row) const; ///< "" for a row that is none
    /// The row of this path, whatever its case; one of exactly this case goes first. -1 when there is none.
    int RowOf(const QString &path) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString TitleOf(int row) const;

    QString m_folder;
    QStringList m_names;
    mutable QHash<int, QString> m_titles; ///< read so far, by row
};
