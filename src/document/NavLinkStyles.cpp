#include "document/NavLinkStyles.h"

#include "document/Editor.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/ViewSwitcher.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

using namespace Qt::StringLiterals;

namespace NavLinkStyles {
namespace {

QString Rule(QLatin1StringView selector, QLatin1StringView decoration, QLatin1StringView color)
{
    return u"a.%1 { text-decoration: %2; color: %3; font-family: Verdana, Arial, sans-serif; font-size: 10px; "
           "font-weight: bold; }\r\n"_s.arg(selector, decoration, color);
}

QString Block()
{
    return "\r\n<style>\r\n"_L1 + Rule("navwhite:link"_L1, "none"_L1, "#ffffff"_L1) +
           Rule("navwhite:visited"_L1, "none"_L1, "#ffffff"_L1) +
           Rule("navwhite:hover"_L1, "underline"_L1, "#ffffff"_L1) + Rule("navblack:link"_L1, "none"_L1, "#000000"_L1) +
           Rule("navblack:visited"_L1, "none"_L1, "#000000"_L1) +
           Rule("navblack:hover"_L1, "underline"_L1, "#000000"_L1) + "</style>\r\n"_L1;
}

} // namespace

QString AddedTo(const QString &html)
{
    const QString end = u"</TITLE>"_s;
    const qsizetype title = html.indexOf(end, 0, Qt::CaseInsensitive);
    if (title < 0 || html.contains("a.navwhite"_L1) || html.contains("a.navblack"_L1))
        return html;
    return QString(html).insert(title + end.size(), Block());
}

void Add(Editor &editor, ViewSwitcher &views)
{
    if (!views.BringSurfaceUpToDate() || !editor.Surface().WaitWhileBusy())
        return;
    const QString old = GuideStyle::Remove(editor.Surface().EngineHTML());
    const QString html = AddedTo(old);
    if (html == old)
        return;
    views.GiveChanged(html);
}

} // namespace NavLinkStyles
