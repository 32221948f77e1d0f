#include "platform/FolderTree.h"

#include <QDir>
#include <QFileSystemModel>
#include <QTreeView>

void ShowFolderTree(QTreeView &tree, QFileSystemModel &folders)
{
    folders.setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
    folders.setOption(QFileSystemModel::DontUseCustomDirectoryIcons);
    folders.setRootPath(QDir::rootPath());
    tree.setModel(&folders);
    for (int column = 1; column < folders.columnCount(); ++column)
        tree.hideColumn(column);
    const auto follow = [&tree] {
        if (!tree.hasFocus())
            tree.scrollTo(tree.currentIndex());
    };
    QObject::connect(&folders, &QFileSystemModel::directoryLoaded, &tree, follow);
    QObject::connect(&folders, &QFileSystemModel::layoutChanged, &tree, follow);
}
