#include "platform/surface/merge/MergeSource.h"

#include "platform/surface/merge/Alignment.h"
#include "platform/surface/merge/MergeRun.h"

namespace {

std::vector<quint64> KeysOf(const MarkupTokens &tokens)
{
    std::vector<quint64> keys;
    keys.reserve(tokens.size());
    for (const MarkupToken &token : tokens)
        keys.push_back(token.Key);
    return keys;
}

} // namespace

SourceMerger::SourceMerger(QString written, QString base) : m_written(std::move(written)), m_base(std::move(base)) {}

SourceMerger::~SourceMerger() = default;

void SourceMerger::Prepare()
{
    if (std::exchange(m_prepared, true))
        return;
    m_writtenTokens = TokenizeMarkup(m_written);
    m_baseTokens = TokenizeMarkup(m_base);
    m_places = AlignKeys(KeysOf(m_baseTokens.Tokens), KeysOf(m_writtenTokens.Tokens));
}

SourceMerger::Result SourceMerger::Merge(const QString &now, Reach reach)
{
    if (now == m_base)
        return {{m_written, {}}, 0};
    Prepare();
    if (reach == Reach::Everything || m_writtenTokens.Tokens.empty())
        return {{now, {{0, now.size(), MergedText::Part::Inserted}}}, 1};
    return MergeRun(*this, now, reach).Run();
}
