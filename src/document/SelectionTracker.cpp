#include "document/SelectionTracker.h"

#include "document/Editor.h"
#include "document/ServerCode.h"
#include "platform/surface/DesignSurface.h"

#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView Marker("QZKSEL28");
constexpr int FarBack = -5000000; ///< characters: more than any page has

/// Length of the tag that starts at `start` (0-based); quotes and server-side code in it may hold ">".
qsizetype TagLength(QStringView text, qsizetype start)
{
    QChar quote;
    for (qsizetype at = start; at < text.size(); ++at) {
        if (const qsizetype blockEnd = at > start ? ServerBlockEnd(text, at) : at; blockEnd > at) {
            at = blockEnd - 1;
            continue;
        }
        const QChar c = text[at];
        if (!quote.isNull())
            quote = c == quote ? QChar() : quote;
        else if (c == u'"')
            quote = c;
        else if (c == u'>')
            return at + 1 - start;
    }
    return 0;
}

} // namespace

void SelectionTracker::SaveSelection()
{
    SurfaceState &selection = m_editor.Selection();
    const DomDocument dom = m_editor.Surface().DOM();
    selection.SavedCaretChars = 0;
    if (dom.SelectionType() == "Control"_L1)
        return;
    DomTextRange range = dom.SelectionTextRange();
    selection.SavedCaretChars = std::abs(range.Move(u"character"_s, FarBack));
}

void SelectionTracker::RestoreSelection()
{
    DomTextRange range = m_editor.Surface().DOM().BodyTextRange();
    range.collapse();
    range.Move(u"character"_s, FarBack);
    range.Move(u"character"_s, m_editor.Selection().SavedCaretChars);
    range.scrollIntoView();
    range.Select();
}

void SelectionTracker::GetSelection()
{
    MarkedPage();
}

MergedText SelectionTracker::MarkedPage()
{
    SurfaceState &selection = m_editor.Selection();
    // No page holds these: each mark is a word of its own kind.
    const QString key = Marker + QString::number(QRandomGenerator::global()->generate64(), 36);
    m_start = key + u's';
    m_end = key + u'e';
    const DesignSurface::MarkedPage marked = m_editor.Surface().MarkedHTML(
        m_start, m_end,
        selection.MarkingForSource ? DesignSurface::MarkSpan::OneBlock : DesignSurface::MarkSpan::Whole);
    selection.PendingHtml = marked.Page.Text;
    const Place place = Strip(selection.PendingHtml);
    selection.SelectionIsControl = marked.Type == "Control"_L1;
    selection.SelectionOffset = place.Position;
    selection.SelectionLength = place.Length;
    selection.SelectedHtml =
        place.Position > 0 ? selection.PendingHtml.mid(place.Position - 1, place.Length) : QString();
    selection.SelectionShift = 0;
    return marked.Page;
}

SelectionTracker::Place SelectionTracker::TakeMarksOut(QString &text) const
{
    Place place = Strip(text);
    if (place.Position > 0 && m_editor.Selection().SelectionIsControl)
        place.Length = TagLength(text, place.Position - 1);
    return place;
}

SelectionTracker::Place SelectionTracker::Strip(QString &text) const
{
    Place place;
    qsizetype end = -1;
    if (const qsizetype start = text.indexOf(m_start); start >= 0) {
        text.remove(start, m_start.size());
        end = text.indexOf(m_end, start);
        if (end >= 0)
            text.remove(end, m_end.size());
        place.Position = start + 1;
        place.Length = std::max<qsizetype>(end - start, 0);
    }
    // The page's own ones, from behind, so that the places before them stay true.
    for (qsizetype at = text.lastIndexOf(Marker); at >= 0; at = at > 0 ? text.lastIndexOf(Marker, at - 1) : -1) {
        text.remove(at, Marker.size());
        place.LostWord = true;
        if (place.Position > 0 && at < place.Position - 1)
            place.Position = std::max(place.Position - Marker.size(), at + 1);
        else if (place.Position > 0 && at < place.Position - 1 + place.Length)
            place.Length = std::max<qsizetype>(place.Length - Marker.size(), 0);
    }
    return place;
}
