#include "platform/surface/merge/Alignment.h"

#include <algorithm>
#include <unordered_map>

namespace {

constexpr int LongestDetour = 400; ///< differences looked through one by one before a jump is tried
constexpr int GoodRun = 8;         ///< equal keys in a row that end a difference
constexpr int Breather = 16;       ///< differences after which the way so far is taken if it is a good one
constexpr int JumpRun = 6;         ///< equal keys in a row that a jump lands on
constexpr size_t JumpRange = 40000;

class Aligner
{
public:
    Aligner(std::span<const quint64> from, std::span<const quint64> to)
        : m_from(from), m_to(to), m_match(from.size(), -1)
    {}

    std::vector<qint32> Run()
    {
        // The front first: of equal things one after the other the last is the new one.
        while (m_a < m_from.size() && m_b < m_to.size() && m_from[m_a] == m_to[m_b])
            m_match[m_a++] = qint32(m_b++);
        size_t tail = 0;
        while (tail < std::min(m_from.size() - m_a, m_to.size() - m_b) &&
               m_from[m_from.size() - 1 - tail] == m_to[m_to.size() - 1 - tail])
            ++tail;
        m_endA = m_from.size() - tail;
        m_endB = m_to.size() - tail;
        while (true) {
            while (m_a < m_endA && m_b < m_endB && m_from[m_a] == m_to[m_b])
                m_match[m_a++] = qint32(m_b++);
            if (m_a >= m_endA || m_b >= m_endB || (!Detour() && !Jump()))
                break;
        }
        for (size_t i = 0; i < tail; ++i)
            m_match[m_from.size() - 1 - i] = qint32(m_to.size() - 1 - i);
        return std::move(m_match);
    }

private:
    /// The shortest way around a difference (Myers), up to where the texts run alike again. False when it is too long.
    bool Detour()
    {
        const qint64 sizeA = qint64(m_endA - m_a);
        const qint64 sizeB = qint64(m_endB - m_b);
        m_rows.clear();
        for (int d = 0; d <= LongestDetour; ++d) {
            std::vector<qint32> row(size_t(2 * d + 1), -1); // furthest place in `from` on each diagonal
            for (int k = -d; k <= d; k += 2) {
                qint64 x = Start(d, k);
                if (x < 0 || x > sizeA || x - k > sizeB)
                    continue;
                const qint64 snake = x;
                while (x < sizeA && x - k < sizeB && m_from[m_a + size_t(x)] == m_to[m_b + size_t(x - k)])
                    ++x;
                row[size_t(k + d)] = qint32(x);
                if (x - snake >= GoodRun || (x == sizeA && x - k == sizeB)) {
                    m_rows.push_back(std::move(row));
                    WalkBack(d, k, x);
                    return true;
                }
            }
            m_rows.push_back(std::move(row));
            if (d > 0 && d % Breather == 0 && TakeGoodWay(d, d == LongestDetour ? d / 4 : d))
                return true;
        }
        return false;
    }

    /// Texts that differ a little everywhere have no good run: the furthest way is taken if it has that many equals.
    bool TakeGoodWay(int d, qint64 equals)
    {
        int best = 0;
        qint64 furthest = -1;
        for (int k = -d; k <= d; k += 2) {
            const qint64 x = At(d, k);
            if (x >= 0 && 2 * x - k > furthest) {
                furthest = 2 * x - k;
                best = k;
            }
        }
        if ((furthest - d) / 2 < equals)
            return false;
        WalkBack(d, best, At(d, best));
        return true;
    }

    qint64 At(int d, int k) const
    {
        if (d < 0 || k < -d || k > d)
            return -1;
        return m_rows[size_t(d)][size_t(k + d)];
    }

    /// Where diagonal `k` begins after `d` differences: one down or one right from its neighbours.
    qint64 Start(int d, int k) const
    {
        if (d == 0)
            return 0;
        const qint64 down = At(d - 1, k + 1);
        const qint64 right = At(d - 1, k - 1);
        return std::max(down, right < 0 ? -1 : right + 1);
    }

    void WalkBack(int d, int k, qint64 x)
    {
        const size_t a = m_a;
        const size_t b = m_b;
        m_a = a + size_t(x);
        m_b = b + size_t(x - k);
        for (; d >= 0; --d) {
            const qint64 start = Start(d, k);
            for (; x > start; --x)
                m_match[a + size_t(x - 1)] = qint32(b + size_t(x - 1 - k));
            if (d == 0)
                break;
            const bool fromDown = At(d - 1, k + 1) == start;
            x = fromDown ? start : start - 1;
            k += fromDown ? 1 : -1;
        }
    }

    static quint64 RunKey(std::span<const quint64> keys, size_t at)
    {
        quint64 key = 0;
        for (size_t i = 0; i < JumpRun; ++i)
            key = (key ^ keys[at + i]) * 0x100000001B3ull;
        return key;
    }

    /// To the nearest place where both run alike for a while; what lies before it has no match.
    bool Jump()
    {
        std::unordered_map<quint64, size_t> places;
        const size_t endB = std::min(m_endB, m_b + JumpRange);
        for (size_t b = m_b; b + JumpRun <= endB; ++b)
            places.emplace(RunKey(m_to, b), b);
        const size_t endA = std::min(m_endA, m_a + JumpRange);
        for (size_t a = m_a; a + JumpRun <= endA; ++a) {
            const auto found = places.find(RunKey(m_from, a));
            if (found == places.end() || m_from[a] != m_to[found->second])
                continue;
            m_a = a;
            m_b = found->second;
            return true;
        }
        // Nothing alike far and wide: go on behind it.
        m_a = endA;
        m_b = endB;
        return m_a < m_endA && m_b < m_endB;
    }

    std::span<const quint64> m_from;
    std::span<const quint64> m_to;
    std::vector<qint32> m_match;
    std::vector<std::vector<qint32>> m_rows;
    size_t m_a = 0;
    size_t m_b = 0;
    size_t m_endA = 0;
    size_t m_endB = 0;
};

} // namespace

std::vector<qint32> AlignKeys(std::span<const quint64> from, std::span<const quint64> to)
{
    return Aligner(from, to).Run();
}
