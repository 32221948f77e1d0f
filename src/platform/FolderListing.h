#pragma once

#include "platform/TextFile.h"

#include <QStringList>

#include <functional>

/// What stands in a folder, in the order in which the system gives it.
struct FolderListing
{
    FileError Error = FileError::None; ///< else PathNotFound, AccessDenied or Unexpected, and both lists are empty
    QStringList Files;                 ///< also links to files, and links that lead nowhere; no devices or pipes
    QStringList Folders;               ///< also links to folders; neither "." nor ".."
};

/// Reads a folder's names. No file is opened, and none is asked for more than the folder itself tells, links excepted.
/// May take as long as a dead network folder takes to answer.
FolderListing ListFolder(const QString &folder);

/// Stands for ListFolder where a test has a folder of its own making.
using FolderReader = std::function<FolderListing(const QString &folder)>;
