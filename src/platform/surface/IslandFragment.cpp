// Server-side code that comes into a page later, with markup that is put into it.
#include "platform/LineEnds.h"
#include "platform/surface/Islands.h"

using namespace Qt::StringLiterals;

namespace {

/// The last island of a piece that ends before the island does.
QString Closed(const QString &island)
{
    if (island.endsWith("?>"_L1) || island.endsWith("%>"_L1))
        return island;
    if (island.startsWith("<?"_L1))
        return island + " ?>"_L1;
    if (island.startsWith("<%"_L1))
        return island + " %>"_L1;
    return {};
}

/// Writes the tokens of `from` as those of `page`, whose islands those of `from` will be behind.
QString Renumbered(const ProtectedText &from, const ProtectedText &page)
{
    QString text;
    text.reserve(from.Text.size());
    for (qsizetype i = 0; i < from.Text.size(); ++i) {
        if (from.Text[i] != from.Open) {
            text += from.Text[i];
            continue;
        }
        qsizetype number = 0;
        for (++i; i < from.Text.size() && from.Digits.contains(from.Text[i]); ++i)
            number = number * 10 + from.Digits.indexOf(from.Text[i]);
        text += page.Open;
        for (const QChar digit : QString::number(number + page.Islands.size()))
            text += page.Digits[digit.unicode() - u'0'];
        text += i < from.Text.size() && from.Text[i] == from.CommentClose ? page.CommentClose : page.Close;
    }
    return text;
}

} // namespace

QString ProtectFragment(const QString &fragment, ProtectedText &page, const QString &used)
{
    // What is not allowed to be a token stands in front, where it is taken off again.
    const QString text = fragment.contains(u'\r') ? WithLineEnds(fragment, LineEnds::Lf) : fragment;
    const QString avoided = page.Islands.isEmpty() ? used : QString();
    ProtectedText own = ProtectIslands(avoided + text);
    if (own.Islands.isEmpty())
        return text;
    own.Text.remove(0, avoided.size());
    if (own.OpenEnded)
        own.Islands.last() = Closed(own.Islands.last());
    if (page.Islands.isEmpty()) {
        page.Open = own.Open;
        page.Close = own.Close;
        page.CommentClose = own.CommentClose;
        page.Digits = own.Digits;
    }
    const QString result = Renumbered(own, page);
    page.Islands += own.Islands;
    page.Places += own.Places;
    page.Added += own.Islands.size();
    return result;
}
