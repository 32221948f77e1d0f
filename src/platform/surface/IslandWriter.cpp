#include "platform/surface/IslandWriter.h"

#include <utility>
#include <vector>

namespace {

constexpr qsizetype tokenCharacters = 13;

/// Characters that the text does not use; fewer than asked for when it uses nearly all there are.
QList<QChar> FreeCharacters(const QString &text)
{
    std::vector<bool> used(0x10000);
    for (const QChar c : text)
        used[c.unicode()] = true;
    QList<QChar> result;
    // Icon fonts fill the start of the private-use area, vendors its end. The last range is for texts made to be nasty.
    for (const auto &[first, last] :
         {std::pair{0xEA00, 0xEFFF}, {0xE000, 0xE9FF}, {0xF000, 0xF8FF}, {0xFDD0, 0xFDEF}, {0x3400, 0xD7A3}})
        for (int c = first; c <= last && result.size() < tokenCharacters; ++c)
            if (!used[size_t(c)])
                result.append(QChar(c));
    return result;
}

} // namespace

void IslandWriter::CopyTo(qsizetype end)
{
    m_result.Text += m_source.Text().sliced(m_copied, end - m_copied);
    m_copied = end;
}

void IslandWriter::CopyToWithoutBlocks(qsizetype end)
{
    for (const TextRange &block : m_source.BlocksIn({m_copied, end})) {
        CopyTo(block.Start);
        m_copied = block.End;
    }
    CopyTo(end);
}

qsizetype IslandWriter::Keep(TextRange range, IslandPlace place, bool openEnded)
{
    if (m_result.Islands.isEmpty())
        ChooseTokenCharacters();
    m_result.Islands.append(m_source.Text().sliced(range.Start, range.End - range.Start).toString());
    m_result.Places.append(place);
    m_result.OpenEnded |= openEnded || IsOpenEnded(range);
    return LastNumber();
}

/// Whether the page's end cuts off a server-side block that stands in the range.
bool IslandWriter::IsOpenEnded(TextRange range) const
{
    const QStringView text = m_source.Text();
    if (range.End != text.size() || m_source.Blocks().isEmpty())
        return false;
    const IslandSpan &block = m_source.Blocks().last();
    if (block.Start < range.Start || block.Start + block.Length != text.size())
        return false;
    const QChar kind = text[block.Start + 1]; // "?" or "%"; directives are closed always
    const bool closed = kind == u'!' || (block.Length >= 4 && text.back() == u'>' && text[text.size() - 2] == kind);
    return !closed;
}

void IslandWriter::ChooseTokenCharacters()
{
    const QList<QChar> free = FreeCharacters(m_page);
    m_noTokens = free.size() < tokenCharacters;
    m_result.Open = free.value(0);
    m_result.Close = free.value(1);
    m_result.CommentClose = free.value(2);
    for (qsizetype digit = 0; digit < 10; ++digit)
        m_result.Digits.append(free.value(3 + digit));
}

void IslandWriter::PutNumber(qsizetype number, QChar close)
{
    m_result.Text += m_result.Open;
    for (const QChar digit : QString::number(number))
        m_result.Text += m_result.Digits[digit.unicode() - u'0'];
    m_result.Text += close;
}

void IslandWriter::Comment(TextRange range, bool openEnded)
{
    CopyTo(range.Start);
    const qsizetype number = Keep(range, IslandPlace::Comment, openEnded);
    m_result.Text += u"<!--";
    PutNumber(number, m_result.CommentClose);
    m_result.Text += u"-->";
    m_copied = range.End;
}

void IslandWriter::Token(TextRange range, IslandPlace place, bool openEnded)
{
    CopyTo(range.Start);
    const qsizetype number = Keep(range, place, openEnded);
    if (place == IslandPlace::TagName)
        m_result.Text += u' ';
    PutNumber(number, m_result.Close);
    m_copied = range.End;
}

void IslandWriter::Again(TextRange range, qsizetype number)
{
    CopyTo(range.Start);
    PutNumber(number, m_result.Close);
    m_copied = range.End;
}

void IslandWriter::TokensIn(TextRange range)
{
    for (const TextRange &block : m_source.BlocksIn(range))
        Token(block, IslandPlace::Inside);
}

void IslandWriter::CommentsHere(TextRange range)
{
    for (const TextRange &block : m_source.BlocksIn(range)) {
        m_copied = block.Start;
        Comment(block);
    }
}

ProtectedText IslandWriter::Finish()
{
    if (!m_result.Islands.isEmpty() && !m_noTokens) {
        m_result.Text += m_source.Text().sliced(m_copied);
        return std::move(m_result);
    }
    ProtectedText unchanged;
    unchanged.Text = m_page;
    return unchanged;
}
