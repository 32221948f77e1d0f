#pragma once

class QFileSystemModel;
class QTreeView;

/// Shows the folders of the machine in the tree by their names. While the tree does not have the keyboard, the current
/// one stays in sight: the folders beside it come in later and would push it out.
void ShowFolderTree(QTreeView &tree, QFileSystemModel &folders);
