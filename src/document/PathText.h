#pragma once

#include <QString>

/// How paths are written on a platform. The routines below take one, so that both are tested on one machine.
struct PathStyle
{
    QChar Separator;
    bool DriveLetters;                   ///< a path is absolute when it holds ":", else when it starts with a separator
    Qt::CaseSensitivity CaseSensitivity; ///< of comparisons where the routine says "ignoring case"

    static PathStyle Windows();
    static PathStyle Posix();
    static PathStyle Native();
};

/// `path` relative to the folder of `currentFile` when it begins with it (compared with case), else `path` whole;
/// "file://" is removed. "" when `currentFile` is empty.
QString GetRelativePath(const QString &path, const QString &currentFile, const PathStyle &style = PathStyle::Native());

/// `path` below `projectDir`, unless it is absolute. "" stays "". Without drive letters an address with a scheme
/// ("http:...") is absolute too, and an empty `projectDir` leaves the path relative instead of putting it in the root.
QString MakeFullPath(const QString &path, const QString &projectDir, const PathStyle &style = PathStyle::Native());

/// `path` as seen from the folder of `base`; each ".." in it, wherever it stands, takes one part off that folder. ""
/// stays ""; an absolute path only has its slashes turned. What is absolute and what an empty `base` means: see
/// MakeFullPath. Doubled separators are reduced once, but for the pair that leads a network share.
QString MakeFullPathRel(const QString &path, const QString &base, const PathStyle &style = PathStyle::Native());

/// `path` written relative to the folder of `base`, with ".." parts; unchanged (slashes turned) when they have no
/// common root or `base` is "". "" stays "". With drive letters the folder may stand anywhere in `path` ("\C:\web\a");
/// without them the root is common to all absolute paths.
QString MakeRelPathRel(const QString &path, const QString &base, const PathStyle &style = PathStyle::Native());

/// An address out of a page as a path of this platform, seen from the folder of `baseFile`: "file://", "file:///C|/x"
/// and "file://localhost/x" lose their scheme, %XX is decoded when no file of the undecoded name exists. A leading "/"
/// that is not that of a file address is taken below the page's folder. Any other scheme: the address as it is.
QString PathFromPageText(const QString &address, const QString &baseFile, const PathStyle &style = PathStyle::Native());
