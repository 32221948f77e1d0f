#include "editing/PageFilter.h"

#include <QByteArrayList>
#include <QList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool IsAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
}

/// Without regard to case, the letters k and s are also what the Kelvin sign and the long s are taken for.
bool HasOtherForms(char c, Qt::CaseSensitivity sensitivity)
{
    return sensitivity == Qt::CaseInsensitive && (Lower(c) == 'k' || Lower(c) == 's');
}

/// The runs of plain letters and digits in the text, the longest first: it is the surest to be missing.
QByteArrayList RunsOf(const QString &text, Qt::CaseSensitivity sensitivity)
{
    QByteArrayList runs{QByteArray()};
    for (const QChar c : text) {
        const char byte = c.unicode() < 128 ? char(c.unicode()) : '\0';
        if ((IsAsciiLetter(byte) || IsDigit(byte)) && !HasOtherForms(byte, sensitivity))
            runs.last() += sensitivity == Qt::CaseInsensitive ? Lower(byte) : byte;
        else if (!runs.last().isEmpty())
            runs.append(QByteArray());
    }
    runs.removeAll(QByteArray());
    std::sort(runs.begin(), runs.end(),
              [](const QByteArray &one, const QByteArray &other) { return one.size() > other.size(); });
    return runs;
}

/// Start and end tags that a word may go through, if only in the eyes of a search.
bool WordGoesThrough(QByteArrayView name)
{
    static const QList<QByteArray> names = QByteArray("/a /abbr /acronym /address /b /big /blockquote /body /caption "
                                                      "/center /cite /code /dd /del /dfn /div /dl /dt /em /font /form "
                                                      "/h1 /h2 /h3 /h4 /h5 /h6 /html /i /ins /kbd /li /nobr /ol /p "
                                                      "/pre /q /small /span /strong /sub /sup /td /th /tt /u /ul a "
                                                      "abbr b big br center code div em font h1 h2 h3 h4 h5 h6 hr i "
                                                      "img kbd li nobr ol p small span strong sub sup tt u ul wbr")
                                               .split(' ');
    return std::binary_search(names.begin(), names.end(), name,
                              [](QByteArrayView one, QByteArrayView other) { return one < other; });
}

/// In these every "<" is text, or text is put elsewhere.
bool HidesTags(QByteArrayView name)
{
    return name == "xmp" || name == "plaintext" || name == "noembed" || name == "noframes";
}

/// Follows the run through the text of a page.
class RunMatcher
{
public:
    RunMatcher(const QByteArray &run, Qt::CaseSensitivity sensitivity) : m_run(run), m_sensitivity(sensitivity)
    {
        m_back.fill(0, run.size());
        for (qsizetype i = 1, length = 0; i < run.size(); ++i) {
            while (length > 0 && run[i] != run[length])
                length = m_back[length - 1];
            length += run[i] == run[length] ? 1 : 0;
            m_back[i] = length;
        }
    }

    /// True when the run is complete.
    bool Feed(char c)
    {
        if (m_sensitivity == Qt::CaseInsensitive)
            c = Lower(c);
        while (m_matched > 0 && c != m_run[m_matched])
            m_matched = m_back[m_matched - 1];
        m_matched += c == m_run[m_matched] ? 1 : 0;
        return m_matched == m_run.size();
    }
    /// A part of the run has been seen and may go on.
    bool InWord() const { return m_matched > 0; }
    void Reset() { m_matched = 0; }

private:
    QByteArray m_run;
    Qt::CaseSensitivity m_sensitivity;
    QList<qsizetype> m_back;
    qsizetype m_matched = 0;
};

class PageScan
{
public:
    PageScan(QByteArrayView page, RunMatcher matcher) : m_page(page), m_matcher(std::move(matcher)) {}

    bool MayShow()
    {
        while (m_at < m_page.size()) {
            const char c = m_page[m_at];
            if (c == '\0' || c == '\x1b')
                return true; // UTF-16, or an encoding that changes its meaning on the way
            const bool found = c == '<' ? Tag() : c == '&' ? Reference() : m_matcher.Feed(m_page[m_at++]);
            if (found)
                return true;
        }
        return false;
    }

private:
    char At(qsizetype at) const { return at < m_page.size() ? m_page[at] : '\0'; }

    /// Steps over a tag. What a parser takes for markup and this does not is searched as if it were text; that what is
    /// stepped over could be text is ruled out: it ends at the first ">", where text starts at the earliest.
    bool Tag()
    {
        const char next = At(m_at + 1);
        const bool odd = next == '!' || next == '?' || next == '%';
        if (!odd && next != '/' && !IsAsciiLetter(next))
            return m_matcher.Feed(m_page[m_at++]);
        const qsizetype end = m_page.indexOf('>', m_at);
        QByteArray name;
        for (qsizetype i = m_at + 1; i < m_page.size() && (IsAsciiLetter(At(i)) || IsDigit(At(i)) || At(i) == '/'); ++i)
        {
            if (At(i) == '/' && !name.isEmpty())
                break;
            name += Lower(At(i));
        }
        if (HidesTags(name) || m_page.sliced(m_at).startsWith("<![C") || m_page.sliced(m_at).startsWith("<![c"))
            return true;
        if (m_matcher.InWord() && (odd || end < 0 || !WordGoesThrough(name) || !IsPlainTag(m_at, end)))
            return true;
        m_at = end < 0 ? m_page.size() : end + 1;
        return false;
    }

    /// The tag ends at `end`: no quoted value reaches beyond.
    bool IsPlainTag(qsizetype start, qsizetype end) const
    {
        char quote = '\0';
        char before = '\0'; // that is no blank
        for (qsizetype i = start + 1; i < end; ++i) {
            const char c = m_page[i];
            if (quote != '\0') {
                quote = c == quote ? '\0' : quote;
            } else if (c == '"' || c == '\'') {
                if (before != '=')
                    return false;
                quote = c;
            } else if (c == '<') {
                return false;
            }
            before = IsBlank(c) ? before : c;
        }
        return quote == '\0';
    }

    /// "&#119;" is a w; no named one is a plain letter, but for one that is two.
    bool Reference()
    {
        if (m_page.sliced(m_at).startsWith("&fjlig"))
            return true;
        if (At(m_at + 1) != '#')
            return m_matcher.Feed(m_page[m_at++]);
        const bool hex = Lower(At(m_at + 2)) == 'x';
        qsizetype i = m_at + (hex ? 3 : 2);
        unsigned value = 0;
        for (; i < m_page.size(); ++i) {
            const char c = Lower(At(i));
            if (!IsDigit(c) && !(hex && c >= 'a' && c <= 'f'))
                break;
            value = std::min(value * (hex ? 16U : 10U) + unsigned(IsDigit(c) ? c - '0' : c - 'a' + 10), 0x110000U);
        }
        m_at = At(i) == ';' ? i + 1 : i;
        return m_matcher.Feed(value > 0 && value < 128 ? char(value) : '\x7f');
    }

    QByteArrayView m_page;
    RunMatcher m_matcher;
    qsizetype m_at = 0;
};

} // namespace

bool MayShow(QByteArrayView page, const QString &text, Qt::CaseSensitivity sensitivity)
{
    const QByteArrayList runs = RunsOf(text, sensitivity);
    return std::all_of(runs.begin(), runs.end(),
                       [&](const QByteArray &run) { return PageScan(page, RunMatcher(run, sensitivity)).MayShow(); });
}
