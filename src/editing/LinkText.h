#pragma once

#include <QString>
#include <QStringList>

/// What the dialogs on links and bookmarks read from page text and write into it. No widgets and no surface here.

/// The attributes of a link that the dialog knows of, as plain text.
struct LinkAttributes
{
    QString Address; ///< HREF, bookmark included
    QString Target;
    QString Class;
    bool operator==(const LinkAttributes &) const = default;
};

/// From the tag that `markup` starts with. Character references are read, server-side code stays as it stands.
LinkAttributes ReadLink(const QString &markup);
/// The same tag with those attributes changed that differ between `was` and `now`; an empty value removes one.
QString WriteLink(QString markup, const LinkAttributes &was, const LinkAttributes &now);

/// "page.htm#top" as "page.htm" and "top".
struct SplitAddress
{
    explicit SplitAddress(const QString &address);
    QString File;
    QString Bookmark;
};

/// An address as the user reads and types it: blanks and letters beyond ASCII as they are. What else is encoded stays
/// encoded, since decoded it would mean something else ("%23", "%26").
QString ShownAddress(const QString &address);
/// The way back: blanks and letters beyond ASCII percent-encoded, but for the name of a host, for scripts and for
/// server-side code.
QString WrittenAddress(const QString &typed);
/// What the user typed as an address, as the page `currentFile` writes it: a path of this disk becomes relative,
/// backslashes become slashes.
QString AddressTyped(const QString &typed, const QString &currentFile);

/// The names of the anchors in a text, in order. Only anchors whose tag starts with the name count, as always.
QStringList BookmarksInText(const QString &text);
/// The same for a file, read line by line with the lines of one tag joined. The working copy beside the file (see
/// WorkingSuffix) is read in its place if there is one.
QStringList BookmarksInFile(const QString &path);

/// A named anchor, open and without quotes on purpose: a name is not checked, and the parser cuts it at a blank.
QString BookmarkMarkup(const QString &name);
