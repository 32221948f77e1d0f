#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>

/// The list of folders: those above the one shown, from its place down, it itself, and the folders in it.
class FolderListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { LevelRole = Qt::UserRole, PathRole };

    explicit FolderListModel(QObject *parent = nullptr);

    /// `open` are paths, the last of them the folder shown; `inside` are names. The first one is called `rootName`.
    void SetFolders(const QStringList &open, const QString &rootName, const QStringList &inside);
    QString PathOf(int row) const;
    /// Row of the folder shown.
    int ShownRow() const { return int(m_open.size()) - 1; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    bool IsOpen(int row) const { return row < m_open.size(); }
    QString NameOf(int row) const;

    QStringList m_open;
    QStringList m_inside;
    QString m_rootName;
};

/// Draws each folder a step further to the right than the one it lies in.
class FolderListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
