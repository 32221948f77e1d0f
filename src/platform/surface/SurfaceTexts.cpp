#include "platform/surface/SurfaceTexts.h"

#include "platform/surface/EngineForm.h"

using namespace Qt::StringLiterals;

namespace {

QString WithEngineLineEnds(QString html, LineEnds ends)
{
    // A CR in the document came from a character reference; written as itself it would read as a line end.
    if (html.contains(u'\r'))
        html.replace(u'\r', "&#13;"_L1);
    return ends == LineEnds::Lf ? html : WithLineEnds(html, ends);
}

} // namespace

SurfaceTexts::Prepared SurfaceTexts::Add(const QString &pageText)
{
    Source source;
    source.Parts = SplitPage(pageText);
    source.Islands = ProtectIslands(source.Parts.Page);
    source.Ends = MajorityLineEnds(pageText);
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

void SurfaceTexts::TailIsInPage(int generation, Tail what)
{
    const auto found = m_sources.find(generation);
    if (found == m_sources.end())
        return;
    QString &tail = found->Parts.Tail;
    tail = what == Tail::AllInPage ? QString() : TailWithoutSpace(tail);
}

void SurfaceTexts::ForgetBefore(int generation)
{
    while (!m_sources.isEmpty() && m_sources.firstKey() < generation)
        m_sources.erase(m_sources.begin());
}
