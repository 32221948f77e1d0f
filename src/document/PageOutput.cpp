#include "document/PageOutput.h"

#include "platform/LineEnds.h"
#include "platform/PageEncoding.h"
#include "platform/surface/Islands.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// `aligned` is `text` with other line ends: the same blocks stand in both, in the same order.
QString WithBlocksOf(const QString &aligned, const QString &text)
{
    const QList<IslandSpan> original = FindServerBlocks(text);
    if (original.isEmpty())
        return aligned;
    const QList<IslandSpan> moved = FindServerBlocks(aligned);
    if (moved.size() != original.size())
        return text;
    QString result;
    result.reserve(aligned.size() + text.size() / 8);
    qsizetype done = 0;
    for (qsizetype i = 0; i < moved.size(); ++i) {
        result += QStringView(aligned).mid(done, moved[i].Start - done);
        result += QStringView(text).mid(original[i].Start, original[i].Length);
        done = moved[i].Start + moved[i].Length;
    }
    result += QStringView(aligned).mid(done);
    return result;
}

/// What a page says about its encoding stands near its start.
QByteArrayList DeclaredIn(const QString &text)
{
    constexpr qsizetype SearchedUnits = 4096;
    return DeclaredEncodings(text.left(SearchedUnits).toUtf8());
}

} // namespace

QString WithPageLineEnds(const QString &text, const QString &old)
{
    const LineEnds wanted = DetectLineEnds(old);
    if (wanted != LineEnds::Mixed && DetectLineEnds(text) == wanted)
        return text;
    return WithBlocksOf(WithLineEndsOf(text, old), text);
}

TextEncoding PageEncodingFor(const QString &text, const QString &old, const TextEncoding &ofOld)
{
    if (ofOld.ByteOrderMark)
        return ofOld;
    const QByteArrayList declared = DeclaredIn(text);
    if (declared.isEmpty() || declared == DeclaredIn(old) || !EncodeText({}, declared.first()))
        return ofOld;
    return {declared.first(), false};
}

bool HasPageExtension(const QString &path, const QString &textExtensions)
{
    if (path.contains(".htm"_L1, Qt::CaseInsensitive))
        return true;
    const QString name = QFileInfo(path).fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot < 0)
        return false;
    const QStringView extension = QStringView(name).mid(dot);
    const QStringList known = textExtensions.split(u',', Qt::SkipEmptyParts);
    return std::any_of(known.begin(), known.end(),
                       [&](const QString &one) { return extension.startsWith(one, Qt::CaseInsensitive); });
}

QString WithoutWorkingSuffix(const QString &path)
{
    const qsizetype at = path.indexOf(WorkingSuffix);
    return at < 0 ? path : path.left(at);
}

bool IsPageName(const QString &path)
{
    return !path.isEmpty() && path != NewPageName;
}

QString SideFileName(const QString &pagePath)
{
    QString name = pagePath.left(pagePath.lastIndexOf(u'.'));
    name.replace(u'\\', u'/');
    return name.mid(name.lastIndexOf(u'/') + 1) + ".prj"_L1;
}
