#include "document/GuideStyle.h"

#include "document/TextReplace.h"

using namespace Qt::StringLiterals;

namespace GuideStyle {
namespace {

const QString Rules =
    u" table, td, th { border-color: #cccccc; border-style: solid; } table { border-width: 0 0 1px 1px; "
    "border-spacing: 0px; border-collapse: collapse; } td { border-width: 1px; } th { border-width: 1px; } "_s;

} // namespace

QString Lower()
{
    return u"<style>"_s + Rules + u"</style>"_s;
}

QString Upper()
{
    return u"<STYLE>"_s + Rules + u"</STYLE>"_s;
}

QString Content()
{
    return Rules;
}

QString Remove(QString text)
{
    if (!text.contains(Rules))
        return text;
    text = ReplaceAll(text, Lower(), {});
    text = ReplaceAll(text, Upper(), {});
    text = ReplaceAll(text, QString(u"&lt;style&gt;"_s + Rules + u"&lt;/style&gt;"_s), {});
    return ReplaceAll(text, QString(u"&lt;STYLE&gt;"_s + Rules + u"&lt;/STYLE&gt;"_s), {});
}

QString Insert(QString text)
{
    const QString styled = Lower() + u"</head>"_s;
    text = ReplaceAll(text, u"</head>", styled);
    return ReplaceAll(text, u"</HEAD>", styled);
}

QString InsertOnly(QString text)
{
    text = ReplaceAll(text, u"</head>"_s, QString(Lower() + u"</head>"_s));
    return ReplaceAll(text, u"</HEAD>"_s, QString(Lower() + u"</HEAD>"_s));
}

} // namespace GuideStyle
