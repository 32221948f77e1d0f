#include "site/NewPageText.h"

#include "document/PageText.h"
#include "platform/PageEncoding.h"

#include <QDir>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView TitleMark("[title]");

bool StaysInFileName(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'_';
}

/// `folder` below `root` with a separator at its end; "" for the root itself. Nothing when it lies elsewhere.
std::optional<QString> PartBelow(const QString &folder, const QString &root)
{
    const QString inside = QDir::cleanPath(folder) + u'/';
    QString outside = QDir::cleanPath(root);
    if (!outside.endsWith(u'/'))
        outside += u'/';
    if (!inside.startsWith(outside))
        return std::nullopt;
    return inside.sliced(outside.size());
}

/// True when `position` lies between a "<" and its ">".
bool IsInsideTag(const QString &text, qsizetype position)
{
    while (position-- > 0) {
        if (text[position] == u'>')
            return false;
        if (text[position] == u'<')
            return true;
    }
    return false;
}

/// Each "[title]" by the title. In an attribute value its quotes would end the value.
QString WithTitleMarks(const QString &text, const QString &escapedTitle)
{
    QString out;
    qsizetype read = 0;
    for (qsizetype at = text.indexOf(TitleMark); at >= 0; at = text.indexOf(TitleMark, read)) {
        out += QStringView(text).sliced(read, at - read);
        out += IsInsideTag(text, at) ? QString(escapedTitle).replace(u'"', u"&quot;"_s) : escapedTitle;
        read = at + TitleMark.size();
    }
    return out.append(QStringView(text).sliced(read));
}

} // namespace

QString FileNameFromTitle(const QString &title, const QString &extension)
{
    QString name = title;
    std::replace_if(
        name.begin(), name.end(), [](QChar c) { return !StaysInFileName(c); }, QChar(u'_'));
    return name + extension;
}

QString SuggestedFile(const QString &name, const QString &folder, const QString &siteRoot)
{
    if (siteRoot.isEmpty())
        return name;
    if (const std::optional<QString> part = PartBelow(folder, siteRoot))
        return QDir::toNativeSeparators(*part + name);
    return QDir::toNativeSeparators(QDir::cleanPath(folder + u'/' + name));
}

QString NewPagePath(const QString &typed, const QString &folder, const QString &siteRoot)
{
    QString file = QDir::fromNativeSeparators(typed.trimmed());
    if (file.isEmpty() || file.endsWith(u'/'))
        return {};
    if (!QStringView(file).sliced(file.lastIndexOf(u'/') + 1).contains(u'.'))
        file += u".htm"_s;
    QString base = folder;
    if (QDir::isAbsolutePath(file))
        base.clear();
    else if (!siteRoot.isEmpty() && file.startsWith(PartBelow(folder, siteRoot).value_or(u"/"_s)))
        base = siteRoot;
    QString path = base.isEmpty() ? file : base + u'/' + file;
    while (path.contains("//"_L1))
        path.replace("//"_L1, "/"_L1);
    return QDir::toNativeSeparators(path);
}

QString NewPageText(const QString &templateText, const QString &title)
{
    QString escaped = title;
    escaped.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s);
    return WithTitle(WithTitleMarks(templateText, escaped), escaped);
}

TextEncoding NewPageEncoding(const QString &templateText, const TextEncoding &ofTemplate)
{
    const bool ascii = std::all_of(templateText.begin(), templateText.end(), [](QChar c) { return c < u'\x80'; });
    if (!ascii || ofTemplate.ByteOrderMark || !DeclaredEncodings(templateText.toLatin1()).isEmpty())
        return ofTemplate;
    return {.Name = "US-ASCII", .ByteOrderMark = false};
}
