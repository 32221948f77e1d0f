#include "document/ServerCode.h"

#include <algorithm>
#include <bitset>

namespace {

constexpr char16_t FirstPrivateUse = 0xE000;
constexpr char16_t LastPrivateUse = 0xF8FF;

QChar FreePrivateUse(const QString &text)
{
    std::bitset<LastPrivateUse - FirstPrivateUse + 1> used;
    for (const QChar c : text) {
        if (c.unicode() >= FirstPrivateUse && c.unicode() <= LastPrivateUse)
            used.set(c.unicode() - FirstPrivateUse);
    }
    for (size_t i = 0; i < used.size(); ++i) {
        if (!used.test(i))
            return QChar(char16_t(FirstPrivateUse + i));
    }
    return {};
}

} // namespace

qsizetype ServerBlockEnd(QStringView text, qsizetype at)
{
    if (at < 0 || at + 1 >= text.size() || text[at] != u'<')
        return at;
    const QChar kind = text[at + 1];
    if (kind != u'?' && kind != u'%')
        return at;
    const QChar close[] = {kind, u'>'};
    const qsizetype end = text.indexOf(QStringView(close, 2), at + 2);
    return end < 0 ? text.size() : end + 2;
}

ServerCodeMask::ServerCodeMask(const QString &text) : m_source(text), m_text(text)
{
    m_blocks = FindServerCode(text);
    if (m_blocks.isEmpty())
        return;
    m_filler = FreePrivateUse(text);
    if (m_filler.isNull())
        return;
    QChar *const to = m_text.data();
    for (const IslandSpan &block : std::as_const(m_blocks))
        std::fill_n(to + block.Start, block.Length, m_filler);
}

QString ServerCodeMask::Restore(QString changed) const
{
    if (m_filler.isNull())
        return changed;
    qsizetype at = 0;
    for (const IslandSpan &block : m_blocks) {
        at = changed.indexOf(m_filler, at);
        if (at < 0 || at + block.Length > changed.size())
            break;
        std::copy_n(m_source.constBegin() + block.Start, block.Length, changed.begin() + at);
        at += block.Length;
    }
    return changed;
}
