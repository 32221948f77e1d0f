#pragma once

#include "site/FileRules.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

/// The rows of the file list, which are the site as all tools know it: the bare name in the first column, the full path
/// in the eighth, which does not show. The other columns are empty.
class FileListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn = 0, PathColumn = 7, ColumnCount = 9 };
    /// Of the columns; 0: does not show.
    static constexpr int WidthsInTwips[ColumnCount] = {3500, 2500, 4000, 20000, 0, 0, 0, 0, 0};

    explicit FileListModel(QObject *parent = nullptr);

    void SetRows(const QString &folder, const QList<FileRow> &rows);
    const QList<FileRow> &Rows() const { return m_rows; }
    QString Folder() const { return m_folder; }
    void RemoveRow(int row);

    /// "" for a row that is none.
    QString NameOf(int row) const;
    QString PathOf(int row) const;
    QStringList Paths() const; ///< of all rows, first to last
    /// -1 when the path has no row. Case counts where file names differ by it.
    int RowOf(const QString &path) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QIcon IconFor(FileIcon icon) const;

    QString m_folder;
    QList<FileRow> m_rows;
    mutable QHash<FileIcon, QIcon> m_icons;
};
