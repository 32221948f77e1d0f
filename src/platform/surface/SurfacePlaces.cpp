// Where the selection stands in the text of the page, and back from there.
#include "platform/surface/DesignSurfacePrivate.h"

#include "platform/surface/SurfacePage.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

/// Words that no page holds.
QString NewMark()
{
    return u"mark"_s + QString::number(QRandomGenerator::global()->generate64(), 36);
}

QJsonArray WordsOf(const QList<SurfaceTexts::Mark> &marks)
{
    QJsonArray words;
    for (const SurfaceTexts::Mark &mark : marks)
        words.append(mark.Word);
    return words;
}

} // namespace

DesignSurface::MarkedPage DesignSurface::MarkedHTML(const QString &startWord, const QString &endWord, MarkSpan span)
{
    const QVariantList answer =
        d->Ask(u"markedText"_s,
               QJsonObject{{u"start"_s, startWord}, {u"end"_s, endWord}, {u"whole"_s, span == MarkSpan::Whole}})
            .toList();
    if (answer.size() < 6 || answer[4].toString().isEmpty())
        return {DocumentSource(), SelectionType()};
    RawPage raw{answer[0].toInt(),
                answer[1].toLongLong(),
                answer[2].toBool(),
                answer[3].toBool(),
                answer[4].toString(),
                {},
                {},
                {}};
    const QString marked = d->Texts.Compose(raw.Generation, raw.Html);
    raw.Html.remove(startWord).remove(endWord);
    raw.Text = marked;
    raw.Text.remove(startWord).remove(endWord);
    if (raw.Generation == d->Last.Generation && raw.Changes == d->Last.Changes)
        raw = d->Last; // with what was made of it already
    d->Last = raw;
    return {d->MarkedSource(d->Last, marked, {startWord, endWord}), answer[5].toString()};
}

void DesignSurface::SetDocumentHTML(const QString &text, TextSpan selection)
{
    if (!d->EverLoaded || d->Now != Private::Phase::Idle) {
        SetDocumentHTML(text);
        return;
    }
    d->FlushInput();
    d->Begin({text, true, false, d->MarksAt(selection)});
}

bool DesignSurface::SelectInText(const QString &text, TextSpan selection)
{
    const QList<SurfaceTexts::Mark> marks = d->MarksAt(selection);
    if (marks.isEmpty() || Busy() || !d->EverLoaded)
        return false;
    const SurfaceTexts::Prepared prepared = d->Texts.Add(text, SurfaceTexts::End::Apart, marks);
    const QJsonObject argument{{u"html"_s, prepared.Html}, {u"marks"_s, WordsOf(marks)}};
    const bool done = d->Do(u"selectMarked"_s, argument).toBool();
    d->Texts.Forget(prepared.Generation);
    return done;
}

void DesignSurface::SetHeadStyle(const QString &rules, bool on)
{
    d->Do(u"guides"_s, QJsonObject{{u"rules"_s, rules}, {u"on"_s, on}});
}

QList<SurfaceTexts::Mark> DesignSurface::Private::MarksAt(TextSpan span) const
{
    QList<SurfaceTexts::Mark> marks;
    if (span.Position > 0)
        marks.append({span.Position - 1, NewMark()});
    if (span.Position > 0 && span.Length > 0)
        marks.append({span.Position - 1 + span.Length, NewMark()});
    return marks;
}

QJsonArray DesignSurface::Private::MarkWords(const Load &load)
{
    return WordsOf(load.Marks);
}
