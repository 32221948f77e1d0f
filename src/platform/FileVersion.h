#pragma once

#include <QString>

/// Product version of a file with a version resource, as "a.b.c.d" (major, minor, build, revision, each a signed
/// 16-bit number); "" for a file without version data or no file at all. The layout read is that of the Windows
/// VS_FIXEDFILEINFO structure.
QString ReadVersion(const QString &path);
