#include "editing/ImageTag.h"

#include "document/PageOutput.h"
#include "document/PathText.h"
#include "document/ServerCode.h"
#include "document/TagText.h"
#include "editing/AttributeText.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QString AltOf(const QString &tag)
{
    QString alt = ReadAttribute(tag, 1, u"ALT"_s);
    if (alt == "<ON>"_L1)
        return {};
    alt = DecodedValue(alt.replace("&#13;&#10;"_L1, " "_L1));
    while (alt.contains("  "_L1))
        alt.replace("  "_L1, " "_L1);
    return alt;
}

struct TagPlace
{
    qsizetype Start = -1;
    qsizetype End = -1; ///< behind its ">"
};

/// Steps over quotes and server-side code, either of which may hold a ">".
TagPlace FirstImage(const QString &markup)
{
    const qsizetype start = markup.indexOf("<IMG"_L1, 0, Qt::CaseInsensitive);
    if (start < 0)
        return {};
    QChar quote;
    for (qsizetype at = start + 4; at < markup.size(); ++at) {
        if (const qsizetype behind = ServerBlockEnd(markup, at); behind > at) {
            at = behind - 1;
            continue;
        }
        const QChar c = markup[at];
        if (!quote.isNull())
            quote = c == quote ? QChar() : quote;
        else if (c == u'"' || c == u'\'')
            quote = c;
        else if (c == u'>')
            return {start, at + 1};
    }
    return {};
}

} // namespace

ImageAttributes ReadImageTag(const QString &tag)
{
    ImageAttributes attributes;
    attributes.Source = DecodedAttribute(tag, 1, u"SRC"_s);
    attributes.Alt = AltOf(tag);
    attributes.Border = DecodedAttribute(tag, 1, u"BORDER"_s);
    attributes.HSpace = DecodedAttribute(tag, 1, u"HSPACE"_s);
    attributes.VSpace = DecodedAttribute(tag, 1, u"VSPACE"_s);
    attributes.Align = DecodedAttribute(tag, 1, u"ALIGN"_s).toUpper();
    attributes.Width = DecodedAttribute(tag, 1, u"WIDTH"_s).trimmed();
    attributes.Height = DecodedAttribute(tag, 1, u"HEIGHT"_s).trimmed();
    attributes.UseMap = DecodedAttribute(tag, 1, u"USEMAP"_s);
    return attributes;
}

QString WriteImageTag(QString tag, const ImageAttributes &shown, const ImageAttributes &wanted)
{
    const auto write = [&](const QString &name, const QString &before, const QString &after,
                           QString (*form)(const QString &)) {
        if (before != after)
            tag = WriteAttribute(tag, 1, name, after.isEmpty() ? QString() : form(after), TagMode::Set);
    };
    write(u"SRC"_s, shown.Source, wanted.Source, QuotedValue);
    write(u"ALT"_s, shown.Alt, wanted.Alt, QuotedValue);
    write(u"BORDER"_s, shown.Border, wanted.Border, AttributeText);
    write(u"HSPACE"_s, shown.HSpace, wanted.HSpace, AttributeText);
    write(u"VSPACE"_s, shown.VSpace, wanted.VSpace, AttributeText);
    write(u"ALIGN"_s, shown.Align, wanted.Align, AttributeText);
    write(u"WIDTH"_s, shown.Width, wanted.Width, AttributeText);
    write(u"HEIGHT"_s, shown.Height, wanted.Height, AttributeText);
    write(u"USEMAP"_s, shown.UseMap, wanted.UseMap, AttributeText);
    return tag;
}

QString FirstImageTag(const QString &markup)
{
    const TagPlace place = FirstImage(markup);
    return place.Start < 0 ? QString() : markup.sliced(place.Start, place.End - place.Start);
}

QString WithFirstImageTag(const QString &markup, const QString &tag)
{
    const TagPlace place = FirstImage(markup);
    return place.Start < 0 ? markup : QString(markup).replace(place.Start, place.End - place.Start, tag);
}

QString LinkedMarkup(const QString &markup, const QString &address)
{
    return u"<A href ="_s + QuotedValue(address) + u'>' + markup + "</A>"_L1;
}

QString AddressOfFile(const QString &path, const QString &page)
{
    if (!IsPageName(page))
        return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    const bool isSeparator = PathStyle::Native().Separator == u'\\'; // else a letter that browsers take for "/"
    QString address = MakeRelPathRel(path, page);
    address.replace(u'%', "%25"_L1).replace(u'#', "%23"_L1).replace(u'?', "%3F"_L1);
    return address.replace(u'\\', isSeparator ? "/"_L1 : "%5C"_L1);
}
