#include "editing/PageSearch.h"

#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 WholeWords = 2;
constexpr quint16 MatchCase = 4;

/// A selected object holds no words: the search goes on where it stands.
DomTextRange SelectionOf(DesignSurface &surface)
{
    if (surface.SelectionType() == "Control"_L1)
        surface.CollapseSelection();
    return surface.DOM().SelectionTextRange();
}

QRegularExpression PatternOf(const FindStep &step)
{
    QString pattern = step.Pattern ? step.Text : QRegularExpression::escape(step.Text);
    if (step.Flags & WholeWords)
        pattern = u"(?<![\\w])(?:"_s + pattern + u")(?![\\w])"_s;
    QRegularExpression::PatternOptions options =
        QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::MultilineOption;
    options.setFlag(QRegularExpression::CaseInsensitiveOption, !(step.Flags & MatchCase));
    return QRegularExpression(pattern, options);
}

using Match = QRegularExpressionMatch;

/// The places in `text`, from the selection on, one behind the other; all of them, or only the first that a search
/// comes to. A place of no length is none: there would be nothing to select.
QList<Match> PlacesIn(const SourceEditor &source, const QString &text, const FindStep &step, qsizetype most)
{
    const qsizetype start = source.SelectionStart() - 1;
    const qsizetype from = step.Back() ? 0 : start + source.SelectionLength();
    const qsizetype to = step.Back() ? start : text.size();
    QList<Match> places;
    QRegularExpressionMatchIterator all = PatternOf(step).globalMatch(text, from);
    while (all.hasNext() && (step.Back() || places.size() < most)) {
        const Match match = all.next();
        if (match.capturedEnd() > to)
            break;
        if (match.capturedLength() > 0)
            places.append(match);
    }
    return step.Back() && places.size() > most ? places.last(most) : places;
}

QString Expanded(const Match &match, const FindStep &step, const QString &text)
{
    if (!step.Pattern || !text.contains(u'\\'))
        return text;
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar next = i + 1 < text.size() ? text[i + 1] : QChar();
        if (text[i] != u'\\' || (next != u'\\' && !(next >= u'0' && next <= u'9'))) {
            result += text[i];
            continue;
        }
        result += next == u'\\' ? QString(next) : match.captured(next.digitValue());
        ++i;
    }
    return result;
}

} // namespace

quint16 FindFlagsOf(bool wholeWords, bool matchCase)
{
    quint16 flags = 0;
    if (wholeWords)
        flags = WholeWords;
    if (matchCase)
        flags = MatchCase; // not |=, on purpose
    return flags;
}

bool FindIn(DesignSurface &surface, const FindStep &step)
{
    DomTextRange range = SelectionOf(surface);
    range.collapse(step.Back());
    if (!range.findText(step.Text, step.Span, step.Flags))
        return false;
    range.Select();
    range.scrollIntoView();
    return true;
}

bool FindIn(SourceEditor &source, const FindStep &step)
{
    const QList<Match> places = PlacesIn(source, source.Text(), step, 1);
    if (places.isEmpty())
        return false;
    source.Select(places.first().capturedStart() + 1, places.first().capturedLength());
    return true;
}

void ReplaceIn(DesignSurface &surface, const QString &html)
{
    surface.DOM().PasteHTML(html);
}

void ReplaceIn(SourceEditor &source, const FindStep &step, const QString &text)
{
    const qsizetype start = source.SelectionStart();
    const qsizetype length = source.SelectionLength();
    const Match match = PatternOf(step).match(source.Text(), start - 1, QRegularExpression::NormalMatch,
                                              QRegularExpression::AnchorAtOffsetMatchOption);
    source.ReplaceText(start, length, Expanded(match, step, text));
}

int ReplaceAllIn(DesignSurface &surface, const FindStep &step, const QString &html)
{
    return surface.DOM().ReplaceEach(step.Text, html, step.Span, step.Flags);
}

int ReplaceAllIn(SourceEditor &source, const FindStep &step, const QString &text)
{
    const QString whole = source.Text();
    const QList<Match> places = PlacesIn(source, whole, step, whole.size());
    if (places.isEmpty())
        return 0;
    const qsizetype start = places.first().capturedStart();
    qsizetype done = start;
    QString changed;
    qsizetype firstEnd = 0;
    for (const Match &match : places) {
        changed += QStringView(whole).sliced(done, match.capturedStart() - done);
        changed += Expanded(match, step, text);
        done = match.capturedEnd();
        if (firstEnd == 0)
            firstEnd = changed.size();
    }
    source.ReplaceText(start + 1, done - start, changed);
    if (step.Back())
        source.Select(start + 1 + firstEnd, 0);
    return int(places.size());
}

QString PatternFault(const FindStep &step)
{
    const QRegularExpression pattern = PatternOf(step);
    return pattern.isValid() ? QString() : pattern.errorString();
}
