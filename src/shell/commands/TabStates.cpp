#include "shell/commands/TabStates.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

enum class Buttons { Only, AllBut };

struct Row
{
    ViewTab View;
    QStringList MenusOff;
    Buttons Listed;
    QStringList Keys;
    bool Formats;
};

const Row &RowOf(ViewTab view)
{
    static const Row rows[]{
        {ViewTab::Normal, {}, Buttons::AllBut, {u"Refresh"_s, u"Stop"_s}, true},
        {ViewTab::PageProperties,
         {u"Edit"_s, u"view"_s, u"insert"_s, u"FormatMain"_s, u"table"_s},
         Buttons::Only,
         {u"Save"_s},
         false},
        {ViewTab::HtmlSource,
         {u"view"_s, u"insert"_s, u"FormatMain"_s, u"table"_s},
         Buttons::AllBut,
         {u"New"_s},
         false},
        {ViewTab::Preview,
         {u"file"_s, u"Edit"_s, u"view"_s, u"insert"_s, u"FormatMain"_s, u"table"_s},
         Buttons::Only,
         {u"Save"_s, u"GoBack"_s, u"Refresh"_s, u"Stop"_s},
         false},
        {ViewTab::Publish,
         {u"file"_s, u"Edit"_s, u"view"_s, u"insert"_s, u"FormatMain"_s, u"table"_s},
         Buttons::Only,
         {u"Save"_s},
         false},
    };
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const Row &row) { return row.View == view; });
    return found == std::end(rows) ? rows[0] : *found;
}

} // namespace

bool IsMenuOn(const QString &menu, ViewTab view)
{
    return !RowOf(view).MenusOff.contains(menu);
}

bool IsButtonOn(const QString &key, ViewTab view)
{
    const Row &row = RowOf(view);
    return row.Keys.contains(key) == (row.Listed == Buttons::Only);
}

bool AreFormatsOn(ViewTab view)
{
    return RowOf(view).Formats;
}
