#include "editing/BodyAttributes.h"

#include "document/TagText.h"
#include "editing/AttributeText.h"

using namespace Qt::StringLiterals;

namespace {

const std::array<QString, BodyAttributes::ColorCount> &Names()
{
    static const std::array<QString, BodyAttributes::ColorCount> names = {u"BGCOLOR"_s, u"TEXT"_s, u"LINK"_s,
                                                                          u"VLINK"_s, u"ALINK"_s};
    return names;
}

/// 1-based; 0: there is none.
qsizetype BodyTag(const QString &html)
{
    return html.indexOf("<BODY"_L1, 0, Qt::CaseInsensitive) + 1;
}

std::optional<QString> Value(const QString &html, qsizetype tag, const QString &name)
{
    const QString value = DecodedAttribute(html, tag, name);
    return value.isEmpty() ? std::nullopt : std::optional(value);
}

QString WithAttribute(const QString &html, qsizetype tag, const QString &name, const std::optional<QString> &value)
{
    if (Value(html, tag, name) == value)
        return html;
    return WriteAttribute(html, tag, name, value ? AttributeText(*value) : QString(), TagMode::Set);
}

} // namespace

BodyAttributes ReadBodyAttributes(const QString &html)
{
    BodyAttributes attributes;
    const qsizetype tag = BodyTag(html);
    attributes.HasBody = tag > 0;
    if (!attributes.HasBody)
        return attributes;
    for (int color = 0; color < BodyAttributes::ColorCount; ++color)
        attributes.Colors[color] = Value(html, tag, Names()[color]);
    attributes.Background = Value(html, tag, u"BACKGROUND"_s);
    return attributes;
}

QString WriteBodyAttributes(QString html, const BodyAttributes &attributes)
{
    const qsizetype tag = BodyTag(html);
    if (tag == 0)
        return html;
    using B = BodyAttributes;
    for (const B::Color color : {B::BgColor, B::Text, B::Link, B::ActiveLink, B::VisitedLink})
        html = WithAttribute(html, tag, Names()[color], attributes.Colors[color]);
    return WithAttribute(html, tag, u"BACKGROUND"_s, attributes.Background);
}
