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

/// `path` below `projectDir`, unless it is absolute. "" stays "".
QString MakeFullPath(const QString &path, const QString &projectDir, const PathStyle &style = PathStyle::Native());

/// `path` as seen from the folder of `base`; each ".." in it takes one part off that folder. "" stays ""; an absolute
/// path only has its slashes turned.
QString MakeFullPathRel(const QString &path, const QString &base, const PathStyle &style = PathStyle::Native());

/// `path` written relative to the folder of `base`, with ".." parts; unchanged (slashes turned) when they have no
/// common root. "" stays "".
QString MakeRelPathRel(const QString &path, const QString &base, const PathStyle &style = PathStyle::Native());

/// An address out of a page as a path of this platform: "file://", "file:///C|/x" and "file://localhost/x" lose their
/// scheme, %XX is decoded when no file of the undecoded name exists.
QString PathFromPageText(const QString &address, const QString &baseFile, const PathStyle &style = PathStyle::Native());
