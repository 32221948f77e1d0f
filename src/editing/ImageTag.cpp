#include "editing/ImageTag.h"

#include "document/PageOutput.h"
#include "document/PathText.h"
#include "document/ServerCode.h"
#include "document/TagText.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Entity
{
    QLatin1StringView Name;
    QChar Letter;
};
/// Those that page text in engine form has; "&" last when reading, so that nothing is read twice.
constexpr Entity Entities[] = {{"&lt;"_L1, u'<'},   {"&gt;"_L1, u'>'},          {"&quot;"_L1, u'"'},
                               {"&#39;"_L1, u'\''}, {"&nbsp;"_L1, QChar(0xA0)}, {"&amp;"_L1, u'&'}};

QString WithoutEntities(QString text)
{
    for (const Entity &entity : Entities)
        text.replace(entity.Name, QString(entity.Letter), Qt::CaseInsensitive);
    return text;
}

QString AltOf(const QString &tag)
{
    QString alt = ReadAttribute(tag, 1, u"ALT"_s);
    if (alt == "<ON>"_L1)
        return {};
    alt = WithoutEntities(alt.replace("&#13;&#10;"_L1, " "_L1));
    while (alt.contains("  "_L1))
        alt.replace("  "_L1, " "_L1);
    return alt;
}

QString Written(const QString &value)
{
    const bool plain = std::all_of(value.begin(), value.end(),
                                   [](QChar c) { return c.isLetterOrNumber() || QStringView(u"#._-%+").contains(c); });
    return plain ? value : QuotedValue(value);
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

QString DecodedAttribute(const QString &tag, const QString &name)
{
    const QString value = ReadAttribute(tag, 1, name);
    return value == "<ON>"_L1 ? QString() : WithoutEntities(value);
}

ImageAttributes ReadImageTag(const QString &tag)
{
    ImageAttributes attributes;
    attributes.Source = DecodedAttribute(tag, u"SRC"_s);
    attributes.Alt = AltOf(tag);
    attributes.Border = DecodedAttribute(tag, u"BORDER"_s);
    attributes.HSpace = DecodedAttribute(tag, u"HSPACE"_s);
    attributes.VSpace = DecodedAttribute(tag, u"VSPACE"_s);
    attributes.Align = DecodedAttribute(tag, u"ALIGN"_s).toUpper();
    attributes.Width = DecodedAttribute(tag, u"WIDTH"_s).trimmed();
    attributes.Height = DecodedAttribute(tag, u"HEIGHT"_s).trimmed();
    attributes.UseMap = DecodedAttribute(tag, u"USEMAP"_s);
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
    write(u"BORDER"_s, shown.Border, wanted.Border, Written);
    write(u"HSPACE"_s, shown.HSpace, wanted.HSpace, Written);
    write(u"VSPACE"_s, shown.VSpace, wanted.VSpace, Written);
    write(u"ALIGN"_s, shown.Align, wanted.Align, Written);
    write(u"WIDTH"_s, shown.Width, wanted.Width, Written);
    write(u"HEIGHT"_s, shown.Height, wanted.Height, Written);
    write(u"USEMAP"_s, shown.UseMap, wanted.UseMap, Written);
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

QString QuotedValue(const QString &text)
{
    QString value(u'"');
    for (qsizetype at = 0; at < text.size();) {
        if (const qsizetype behind = ServerBlockEnd(text, at); behind > at) {
            value += QStringView(text).sliced(at, behind - at);
            at = behind;
            continue;
        }
        const QChar c = text[at++];
        const Entity *entity = std::find_if(std::begin(Entities), std::end(Entities),
                                            [&](const Entity &known) { return known.Letter == c && c != u'\''; });
        if (entity == std::end(Entities))
            value += c;
        else
            value += entity->Name;
    }
    return value + u'"';
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
