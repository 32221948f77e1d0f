#include "editing/AttributeText.h"

#include "document/ServerCode.h"
#include "document/TagText.h"
#include "platform/surface/merge/CharacterReferences.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView NoValue("<ON>"); // ReadAttribute's answer for an attribute without "="

QString Escaped(QString value)
{
    return value.replace(u'&', "&amp;"_L1)
        .replace(u'"', "&quot;"_L1)
        .replace(u'<', "&lt;"_L1)
        .replace(u'>', "&gt;"_L1)
        .replace(QChar::Nbsp, "&nbsp;"_L1);
}

} // namespace

bool HasServerCode(const QString &value)
{
    return !ServerCodeMask(value).Filler().isNull();
}

QString DecodedValue(const QString &written)
{
    const ServerCodeMask mask(written);
    return mask.Usable() ? mask.Restore(DecodeReferences(mask.Text(), ReferencePlace::Attribute)) : written;
}

QString DecodedAttribute(const QString &text, qsizetype start, const QString &name)
{
    const QString value = ReadAttribute(text, start, name);
    return value == NoValue ? QString() : DecodedValue(value);
}

QString QuotedValue(const QString &value)
{
    const ServerCodeMask mask(value);
    return u'"' + (mask.Usable() ? mask.Restore(Escaped(mask.Text())) : value) + u'"';
}

QString AttributeText(const QString &value)
{
    const bool plain = std::all_of(value.begin(), value.end(), [](QChar c) {
        return c.isLetterOrNumber() || QStringView(u"#._-/:%+").contains(c);
    });
    return plain && !value.endsWith(u'/') ? value
                                          : QuotedValue(value); // before the tag's end a "/" would be part of it
}
