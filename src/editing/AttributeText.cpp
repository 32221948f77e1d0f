#include "editing/AttributeText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString AttributeText(const QString &value)
{
    const bool plain = std::all_of(value.begin(), value.end(), [](QChar c) {
        return c.isLetterOrNumber() || QStringView(u"#._-/:%+").contains(c);
    });
    if (plain && !value.endsWith(u'/'))
        return value;
    QString inside = value;
    if (!value.contains(u'<'))
        inside.replace(u'"', u"&quot;"_s);
    return u'"' + inside + u'"';
}
