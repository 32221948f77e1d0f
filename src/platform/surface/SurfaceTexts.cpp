#include "platform/surface/SurfaceTexts.h"

#include "platform/surface/EngineForm.h"
#include "platform/surface/MarkPlace.h"

using namespace Qt::StringLiterals;

namespace {

QString WithEngineLineEnds(QString html, LineEnds ends)
{
    // A CR in the document came from a character reference; written as itself it would read as a line end.
    if (html.contains(u'\r'))
        html.replace(u'\r', "&#13;"_L1);
    return ends == LineEnds::Lf ? html : WithLineEnds(html, ends);
}

/// The page with the marks in it. They come in the order of the text.
QString WithMarks(const PageParts &parts, const QList<SurfaceTexts::Mark> &marks)
{
    QString page = parts.Page;
    for (qsizetype i = marks.size() - 1; i >= 0; --i) {
        const qsizetype at = PlaceForComment(parts.Page, marks[i].Position - parts.Head.size());
        page.insert(at, u"<!--"_s + marks[i].Word + u"-->"_s);
    }
    return page;
}

/// Each character of the text that tokens might be made of, once.
QString TokenCharactersIn(const QString &text)
{
    QString found;
    for (const QChar c : text)
        if (IsTokenCharacter(c) && !found.contains(c))
            found += c;
    return found;
}

} // namespace

SurfaceTexts::Prepared SurfaceTexts::Add(const QString &pageText, End end, const QList<Mark> &marks)
{
    Source source;
    source.Parts = SplitPage(pageText);
    if (end == End::InPage)
        source.Parts.Page += std::exchange(source.Parts.Tail, {});
    source.Islands = ProtectIslands(marks.isEmpty() ? source.Parts.Page : WithMarks(source.Parts, marks));
    if (source.Islands.Islands.isEmpty())
        source.TokenCharacters = TokenCharactersIn(pageText);
    source.Ends = MajorityLineEnds(pageText);
    // As the parser reads it; so a CR at the end does not merge with what is put behind it.
    if (source.Islands.Text.contains(u'\r'))
        source.Islands.Text = WithLineEnds(source.Islands.Text, LineEnds::Lf);
    const Prepared prepared{++m_last, source.Parts.Doctype, source.Parts.Doctype + source.Islands.Text,
                            source.Parts.Tail, SpaceOfTail(source.Parts.Tail)};
    source.Islands.Text.clear();
    if (!source.Parts.Page.isEmpty())
        source.Parts.Page = u"-"_s; // only whether there was one matters from here on
    m_sources.insert(prepared.Generation, source);
    return prepared;
}

QString SurfaceTexts::Compose(int generation, const QString &outerHtml) const
{
    const auto found = m_sources.constFind(generation);
    if (found == m_sources.constEnd())
        return EngineForm(outerHtml);
    const QString html = WithEngineLineEnds(EngineForm(outerHtml), found->Ends);
    return JoinPage(found->Parts, RestoreIslands(html, found->Islands));
}

QString SurfaceTexts::WithIslands(int generation, const QString &text) const
{
    const auto found = m_sources.constFind(generation);
    return found == m_sources.constEnd() ? text : RestoreIslands(text, found->Islands);
}

QString SurfaceTexts::ComposeFragment(int generation, const QString &html) const
{
    const auto found = m_sources.constFind(generation);
    if (found == m_sources.constEnd())
        return EngineForm(html);
    return RestoreIslands(WithEngineLineEnds(EngineForm(html), found->Ends), found->Islands);
}

QString SurfaceTexts::ProtectFragment(int generation, const QString &html)
{
    const auto found = m_sources.find(generation);
    return found == m_sources.end() ? html : ::ProtectFragment(html, found->Islands, found->TokenCharacters);
}

void SurfaceTexts::TailSpaceIsInPage(int generation)
{
    const auto found = m_sources.find(generation);
    if (found != m_sources.end())
        found->Parts.Tail = TailWithoutSpace(found->Parts.Tail);
}

void SurfaceTexts::ForgetBefore(int generation)
{
    while (!m_sources.isEmpty() && m_sources.firstKey() < generation)
        m_sources.erase(m_sources.begin());
}
