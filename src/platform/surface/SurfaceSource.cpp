// The text of the page: as the engine writes it, and as its author wrote it but for what changed.
#include "platform/surface/DesignSurfacePrivate.h"

#include "platform/surface/MarkupText.h"
#include "platform/surface/SurfacePage.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

MergedText AllNew(const QString &text)
{
    MergedText page{text, {}};
    if (!text.isEmpty())
        page.New.append({0, text.size(), MergedText::Part::Inserted});
    return page;
}

/// Without the white space between the last text and the end of the body, in front of end tags too: whether it stands
/// before or behind a closing tag shows nowhere.
QString WithoutSpaceAtEnd(const QString &page)
{
    const qsizetype bodyEnd = page.lastIndexOf("</body"_L1, -1, Qt::CaseInsensitive);
    qsizetype at = bodyEnd < 0 ? page.size() : bodyEnd;
    QString end;
    while (at > 0) {
        if (IsMarkupSpace(page[at - 1])) {
            --at;
            continue;
        }
        const qsizetype tag = page[at - 1] == u'>' ? page.lastIndexOf(u'<', at - 1) : -1;
        if (tag < 0 || page[tag + 1] != u'/')
            break;
        end.prepend(page.sliced(tag, at - tag));
        at = tag;
    }
    return page.first(at) + end + (bodyEnd < 0 ? QString() : page.sliced(bodyEnd).trimmed());
}

} // namespace

QString DesignSurface::DocumentHTML()
{
    return d->Preserve ? DocumentSource().Text : EngineHTML();
}

QString DesignSurface::EngineHTML()
{
    d->Keep(d->Ask(u"text"_s, d->Last.Changes));
    return d->Last.Html.isEmpty() ? d->LoadedText : d->TextOf(d->Last);
}

MergedText DesignSurface::DocumentSource()
{
    if (!d->Preserve)
        return AllNew(EngineHTML());
    const bool haveText = d->Last.Changes >= 0;
    const QVariant answer = d->Ask(u"text"_s, haveText ? d->Last.Changes : d->Loaded.Changes);
    // Nothing came: the page is as when we asked last, or as it was loaded.
    if (!d->Keep(answer) && !haveText && answer.isValid())
        if (const auto written = d->Written.Of(d->Loaded.Generation))
            return {written->Text(), {}};
    return d->Last.Html.isEmpty() ? MergedText{d->LoadedText, {}} : d->SourceOf(d->Last);
}

bool DesignSurface::SourceCodePreservation() const
{
    return d->Preserve;
}

void DesignSurface::SetSourceCodePreservation(bool preserve)
{
    d->Preserve = preserve;
}

const MergedText &DesignSurface::Private::SourceOf(RawPage &raw)
{
    if (raw.Source)
        return *raw.Source;
    const QString &wanted = TextOf(raw);
    const std::shared_ptr<WrittenPage> written = Written.Of(raw.Generation);
    raw.Reach = SourceMerger::Reach::Everything;
    if (written && raw.Generation == Loaded.Generation && raw.Changes == Loaded.Changes && !written->Merger())
        written->SetBase(wanted);
    if (!written || !KnowsBase(*written)) {
        raw.Source = AllNew(wanted);
        return *raw.Source;
    }
    for (const auto reach : {SourceMerger::Reach::Smallest, SourceMerger::Reach::Element, SourceMerger::Reach::Around})
    {
        SourceMerger::Result result = written->Merger()->Merge(wanted, reach);
        const bool proven = result.Doubt == 0 || written->Proven.contains(result.Doubt);
        if (!proven && !IsWanted(result.Page.Text, wanted))
            continue;
        if (result.Doubt != 0)
            written->Proven.insert(result.Doubt);
        raw.Source = std::move(result.Page);
        raw.Reach = reach;
        return *raw.Source;
    }
    raw.Source = AllNew(wanted);
    return *raw.Source;
}

/// `marked` is the page with these words put in somewhere: they come to stand at the same places of its source.
MergedText DesignSurface::Private::MarkedSource(RawPage &raw, const QString &marked, const QStringList &words)
{
    if (!Preserve)
        return AllNew(marked);
    MergedText page = SourceOf(raw);
    if (raw.Reach == SourceMerger::Reach::Everything)
        return AllNew(marked);
    const auto holds = [&](QString text) {
        for (const QString &word : words)
            text.remove(word);
        return text == page.Text;
    };
    const std::shared_ptr<WrittenPage> written = Written.Of(raw.Generation);
    QString text = written->Merger()->Merge(marked, raw.Reach).Page.Text;
    if (!holds(text))
        text = SourceMerger(page.Text, TextOf(raw)).Merge(marked).Page.Text;
    if (!holds(text))
        return page;
    for (const QString &word : words) {
        const qsizetype at = text.indexOf(word);
        for (MergedText::Range &range : page.New) {
            if (at >= 0 && range.Start >= at)
                range.Start += word.size();
            else if (range.Start + range.Length > at && at >= 0)
                range.Length += word.size();
        }
    }
    page.Text = text;
    return page;
}

bool DesignSurface::Private::IsWanted(const QString &merged, const QString &wanted)
{
    const QString read = ReadAgain(merged);
    return read == wanted || WithoutSpaceAtEnd(read) == WithoutSpaceAtEnd(wanted);
}

bool DesignSurface::Private::KnowsBase(WrittenPage &page)
{
    if (page.Merger())
        return true;
    const QString base = ReadAgain(page.Text());
    if (!base.isEmpty())
        page.SetBase(base);
    return !base.isEmpty();
}

/// A page that nobody has changed yet tells how the engine writes it, while there is time: otherwise the first save or
/// look at the source has to parse it again. All that a merge needs is made ready then.
void DesignSurface::Private::ReadBaseLater()
{
    const std::shared_ptr<WrittenPage> page = Written.Of(Loaded.Generation);
    if (Now != Phase::Idle || !page || page->Merger())
        return;
    Page->CallLater(u"text"_s, -1, [this, page, number = LoadNumber](const QVariant &answer) {
        const QVariantList list = answer.toList();
        if (number != LoadNumber || list.size() < 5 || list[1].toLongLong() != Loaded.Changes || page->Merger())
            return;
        page->SetBase(Texts.Compose(Loaded.Generation, list[4].toString()));
        page->Merger()->Prepare();
    });
}

/// How the engine would write this text right after loading it; "" when it does not answer.
QString DesignSurface::Private::ReadAgain(const QString &text)
{
    SurfaceTexts texts;
    for (const auto end : {SurfaceTexts::End::Apart, SurfaceTexts::End::InPage}) {
        const SurfaceTexts::Prepared prepared = texts.Add(text, end);
        const QVariantMap answer = Ask(u"reparse"_s, QJsonObject{{u"html"_s, prepared.Html},
                                                                 {u"tail"_s, prepared.Tail},
                                                                 {u"tailSpace"_s, prepared.TailSpace}})
                                       .toMap();
        const QString how = answer.value(u"end"_s).toString();
        if (how == "swallowed"_L1)
            continue;
        if (how == "open"_L1)
            texts.TailSpaceIsInPage(prepared.Generation);
        return how.isEmpty() ? QString() : texts.Compose(prepared.Generation, answer.value(u"html"_s).toString());
    }
    return {};
}
