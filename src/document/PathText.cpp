#include "document/PathText.h"

#include "document/TextReplace.h"

#include <QFileInfo>
#include <QStringDecoder>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool IsAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// Behind the ":" of "http:", "mailto:" and the like; 0 when there is none. One letter is a drive.
qsizetype SchemeLength(QStringView text)
{
    qsizetype at = 0;
    while (at < text.size() &&
           (IsAsciiLetter(text[at]) || (at > 0 && QStringView(u"0123456789+-.").contains(text[at]))))
        ++at;
    return at > 1 && at < text.size() && text[at] == u':' ? at + 1 : 0;
}

bool IsAbsolute(QStringView path, const PathStyle &style)
{
    if (style.DriveLetters)
        return path.contains(u':');
    return path.startsWith(style.Separator) || SchemeLength(path) > 0;
}

QString WithSeparators(QString path, const PathStyle &style)
{
    return style.Separator == u'/' ? path : path.replace(u'/', style.Separator);
}

/// Doubled separators become single, once, from the place `from` on.
QString Reduced(const QString &path, const PathStyle &style, qsizetype from = 0)
{
    const QString single(style.Separator);
    return path.first(from) + ReplaceAll(path.sliced(from), QString(single + single), single);
}

bool IsShare(QStringView path, const PathStyle &style)
{
    return style.DriveLetters && path.size() > 1 && path[0] == style.Separator && path[1] == style.Separator;
}

/// `path` below `folder`. The pair of separators that leads a network share stays.
QString Joined(const QString &folder, const QString &path, const PathStyle &style)
{
    return Reduced(folder + style.Separator + path, style, IsShare(folder, style) ? 1 : 0);
}

QString FolderOf(const QString &base, const PathStyle &style)
{
    const qsizetype last = base.lastIndexOf(style.Separator);
    return last < 0 ? base : base.first(last);
}

/// A file without a name has no folder. Where a separator in front means the root of the disk, nothing is put there.
bool HasNoFolder(const QString &base, const PathStyle &style)
{
    return base.isEmpty() && !style.DriveLetters;
}

/// Removes each "../" of `path`, also one that only forms by such a removal, and tells how many there were.
qsizetype TakeOutParents(QString &path, const PathStyle &style)
{
    qsizetype count = 0;
    qsizetype to = 0;
    QChar *const data = path.data();
    for (qsizetype from = 0; from < path.size(); ++from) {
        data[to++] = data[from];
        if (to >= 3 && data[to - 1] == style.Separator && data[to - 2] == u'.' && data[to - 3] == u'.') {
            to -= 3;
            ++count;
        }
    }
    path.truncate(to);
    return count;
}

/// Where `folder` followed by a separator stands in `path`, or -1.
qsizetype FindFolder(const QString &path, const QString &folder, const PathStyle &style)
{
    const QString sought = folder + style.Separator;
    if (!style.DriveLetters)
        return path.startsWith(sought, style.CaseSensitivity) ? 0 : -1;
    return folder.isEmpty() ? -1 : path.indexOf(sought, 0, style.CaseSensitivity);
}

/// %XX as the characters they stand for; bytes that are no UTF-8 are read as Latin-1.
QString Decoded(const QString &path)
{
    const QByteArray source = path.toUtf8();
    QByteArray bytes;
    for (qsizetype at = 0; at < source.size(); ++at) {
        const QByteArray digits = source[at] == '%' ? source.mid(at + 1, 2) : QByteArray();
        const QByteArray byte = QByteArray::fromHex(digits);
        const bool isEscape = byte.size() == 1 && byte.toHex() == digits.toLower() && byte[0] != '\0';
        bytes.append(isEscape ? byte[0] : source[at]);
        at += isEscape ? 2 : 0;
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

/// The path within a "file:" address, whose scheme is already gone.
QString PathOfFileUrl(QString rest, const PathStyle &style)
{
    if (rest.startsWith(u"//")) {
        const QString behind = rest.sliced(2);
        const bool isLocal = behind.startsWith(u"localhost/", Qt::CaseInsensitive);
        // Three slashes: no host. Two: a host of its own, or a drive where the host should be.
        if (isLocal)
            rest = behind.sliced(9);
        else if (behind.isEmpty() || behind.startsWith(u'/') ||
                 (behind.size() > 1 && (behind[1] == u'|' || behind[1] == u':')))
            rest = behind;
    }
    if (style.DriveLetters) {
        const qsizetype drive = rest.startsWith(u'/') ? 1 : 0;
        if (rest.size() > drive + 1 && IsAsciiLetter(rest[drive]) &&
            (rest[drive + 1] == u'|' || rest[drive + 1] == u':'))
            rest = rest[drive] + u":"_s + rest.sliced(drive + 2);
    }
    return WithSeparators(rest, style);
}

} // namespace

PathStyle PathStyle::Windows()
{
    return {u'\\', true, Qt::CaseInsensitive};
}

PathStyle PathStyle::Posix()
{
    return {u'/', false, Qt::CaseSensitive};
}

PathStyle PathStyle::Native()
{
#ifdef Q_OS_WIN
    return Windows();
#else
    return Posix();
#endif
}

QString GetRelativePath(const QString &path, const QString &currentFile, const PathStyle &style)
{
    if (currentFile.isEmpty())
        return {};
    const QString bare = ReplaceAll(path, u"file://", {});
    const QString folder = currentFile.first(currentFile.lastIndexOf(style.Separator) + 1);
    return bare.startsWith(folder) ? bare.sliced(folder.size()) : bare;
}

QString MakeFullPath(const QString &path, const QString &projectDir, const PathStyle &style)
{
    if (path.isEmpty())
        return {};
    const QString turned = WithSeparators(path, style);
    if (IsAbsolute(path, style) || HasNoFolder(projectDir, style))
        return turned;
    return Joined(projectDir, turned, style);
}

QString MakeFullPathRel(const QString &path, const QString &base, const PathStyle &style)
{
    if (path.isEmpty())
        return {};
    QString turned = WithSeparators(path, style);
    if (IsAbsolute(path, style) || HasNoFolder(base, style))
        return turned;
    QString folder = FolderOf(base, style);
    for (qsizetype parents = TakeOutParents(turned, style); parents > 0 && folder.contains(style.Separator); --parents)
        folder = FolderOf(folder, style);
    return Joined(folder, turned, style);
}

QString MakeRelPathRel(const QString &path, const QString &base, const PathStyle &style)
{
    if (path.isEmpty())
        return {};
    const QString turned = WithSeparators(path, style);
    if (base.isEmpty())
        return turned;
    const QString parent = u".."_s + style.Separator;
    QString folder = FolderOf(base, style);
    QString up;
    while (true) {
        const qsizetype at = FindFolder(turned, folder, style);
        if (at >= 0)
            return Reduced(up + turned.sliced(at + folder.size() + 1), style);
        if (!folder.contains(style.Separator))
            return turned;
        folder = FolderOf(folder, style);
        up += parent;
    }
}

QString PathFromPageText(const QString &address, const QString &baseFile, const PathStyle &style)
{
    QString path;
    if (address.startsWith(u"file:", Qt::CaseInsensitive)) {
        path = PathOfFileUrl(address.sliced(5), style);
        if (!IsAbsolute(path, style) && !IsShare(path, style))
            path = MakeFullPathRel(path, baseFile, style);
    } else if (SchemeLength(address) > 0) {
        return address;
    } else {
        qsizetype slashes = 0;
        while (slashes < address.size() && address[slashes] == u'/')
            ++slashes;
        // A leading slash means the site, and the site is what lies at and below the page: never the root of the disk.
        path = MakeFullPathRel(style.DriveLetters ? address : address.sliced(slashes), baseFile, style);
    }
    if (!path.contains(u'%') || path.contains(QChar(u'\0')) || QFileInfo::exists(path))
        return path;
    return Decoded(path);
}
