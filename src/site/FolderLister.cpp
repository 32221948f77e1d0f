#include "site/FolderLister.h"

#include <QElapsedTimer>

namespace {

FolderContent Read(const FolderReader &reader, const QString &folder, const FileRules &rules)
{
    QElapsedTimer clock;
    clock.start();
    FolderListing listing = reader(folder);
    FolderContent content{.Folder = folder, .Error = listing.Error, .Rows = {}, .Folders = {}};
    content.Rows = RowsOf(listing.Files, rules);
    listing.Folders.removeIf([](const QString &name) { return name.startsWith(u'.'); });
    SortNames(listing.Folders);
    content.Folders = std::move(listing.Folders);
    content.Milliseconds = clock.elapsed();
    return content;
}

} // namespace

FolderLister::FolderLister(FolderReader reader, QObject *parent) : QObject(parent), m_reader(std::move(reader)) {}

void FolderLister::List(const QString &folder, const FileRules &rules)
{
    m_pending = folder;
    const int request = ++m_request;
    m_work.Start([this, request, reader = m_reader, folder, rules] {
        FolderContent content = Read(reader, folder, rules);
        return [this, request, content = std::move(content)] { Take(request, content); };
    });
}

bool FolderLister::Wait(int milliseconds)
{
    return m_pending.isEmpty() || m_work.Settle(milliseconds);
}

void FolderLister::Take(int request, const FolderContent &content)
{
    if (request != m_request)
        return;
    m_pending.clear();
    emit Listed(content);
}
