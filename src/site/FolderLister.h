#pragma once

#include "platform/BackgroundWork.h"
#include "platform/FolderListing.h"
#include "site/FileRules.h"

/// A folder as the file pane shows it.
struct FolderContent
{
    QString Folder;
    FileError Error = FileError::None;
    QList<FileRow> Rows;
    QStringList Folders; ///< by name, without the hidden ones
    qint64 Milliseconds = 0;
};

/// Lists folders without holding up the window, however slow they are. Only the folder asked for last counts.
class FolderLister : public QObject
{
    Q_OBJECT

public:
    explicit FolderLister(FolderReader reader, QObject *parent = nullptr);

    /// Forgets what was asked for before.
    void List(const QString &folder, const FileRules &rules);
    /// Waits for the folder asked for last; Listed has been raised when the answer is true.
    bool Wait(int milliseconds);
    bool IsBusy() const { return !m_pending.isEmpty(); }
    /// The folder asked for, until it has come.
    QString Pending() const { return m_pending; }

signals:
    void Listed(const FolderContent &content);

private:
    void Take(int request, const FolderContent &content);

    FolderReader m_reader;
    BackgroundWork m_work;
    QString m_pending;
    int m_request = 0;
};
