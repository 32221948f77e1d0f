#include "platform/StyleSheetScan.h"

#include <cstring>

namespace StyleSheetScan {
namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f';
}

bool StartsWithWord(QByteArrayView text, qsizetype at, QByteArrayView word)
{
    const qsizetype size = word.size();
    return text.size() - at >= size && text.sliced(at, size).compare(word, Qt::CaseInsensitive) == 0;
}

/// `from` or the first place behind it where `what` stands; the end of the text when it does not.
qsizetype Find(QByteArrayView text, QByteArrayView what, qsizetype from)
{
    const qsizetype found = text.indexOf(what, from);
    return found < 0 ? text.size() : found;
}

/// Where a closing mark ends, or the end of the text.
qsizetype FindBehind(QByteArrayView text, QByteArrayView what, qsizetype from)
{
    return qMin(text.size(), Find(text, what, from) + what.size());
}

qsizetype FindTag(QByteArrayView html, QByteArrayView tag, qsizetype from)
{
    for (qsizetype at = Find(html, "<", from); at < html.size(); at = Find(html, "<", at + 1)) {
        const qsizetype behind = at + tag.size();
        if (StartsWithWord(html, at, tag) &&
            (behind == html.size() || IsBlank(html[behind]) || html[behind] == '>' || html[behind] == '/'))
            return at;
    }
    return html.size();
}

/// Behind the quoted text at `at`. A line end closes it too, or one lost quote would colour the rest of the sheet.
qsizetype BehindString(QByteArrayView css, qsizetype at)
{
    const char quote = css[at++];
    for (; at < css.size() && css[at] != '\n' && css[at] != '\r'; ++at) {
        if (css[at] == quote)
            return at + 1;
        if (css[at] == '\\')
            ++at;
    }
    return qMin(at, css.size());
}

class Scanner
{
public:
    explicit Scanner(QByteArrayView css) : m_css(css) {}

    std::vector<Token> Run()
    {
        while (m_at < m_css.size())
            Step();
        return std::move(m_tokens);
    }

private:
    void Take(qsizetype end, Kind kind)
    {
        m_tokens.push_back({{m_at, end}, kind});
        m_at = end;
    }

    void Step()
    {
        const char c = m_css[m_at];
        if (IsBlank(c))
            ++m_at;
        else if (StartsWithWord(m_css, m_at, "/*"))
            Take(FindBehind(m_css, "*/", m_at + 2), Kind::Comment);
        else if (StartsWithWord(m_css, m_at, "<?"))
            m_at = FindBehind(m_css, "?>", m_at);
        else if (StartsWithWord(m_css, m_at, "<%"))
            m_at = FindBehind(m_css, "%>", m_at);
        else if (StartsWithWord(m_css, m_at, "<!--"))
            Take(m_at + 4, Kind::Mark);
        else if (StartsWithWord(m_css, m_at, "-->"))
            Take(m_at + 3, Kind::Mark);
        else if (c == '"' || c == '\'')
            Take(BehindString(m_css, m_at), Kind::String);
        else if (c == '{' || c == '}' || c == ';')
            StatementMark(c);
        else if (c == ':' && m_inDeclarations && !m_inValue) {
            m_inValue = true;
            Take(m_at + 1, Kind::Mark);
        } else if (c == ',' || c == '(' || c == ')')
            Take(m_at + 1, Kind::Mark);
        else
            Word(c);
    }

    void StatementMark(char c)
    {
        // Rules stand directly inside @media and its like, declarations inside everything else.
        if (c != ';')
            m_inDeclarations = c == '{' && !m_groupingRule;
        m_groupingRule = false;
        m_inValue = false;
        Take(m_at + 1, Kind::Mark);
    }

    void Word(char first)
    {
        qsizetype end = m_at + 1;
        while (end < m_css.size() && !EndsWord(end))
            ++end;
        if (first == '@') {
            const QByteArrayView name = m_css.sliced(m_at, end - m_at);
            for (QByteArrayView grouping : {"@media", "@supports", "@layer", "@container", "@keyframes"})
                m_groupingRule = m_groupingRule || name.compare(grouping, Qt::CaseInsensitive) == 0;
            Take(end, Kind::AtRule);
        } else if (m_inDeclarations) {
            Take(end, m_inValue ? Kind::Value : Kind::Property);
        } else {
            Take(end, Kind::Selector);
        }
    }

    bool EndsWord(qsizetype at) const
    {
        const char c = m_css[at];
        return IsBlank(c) || std::strchr("{};,()\"'", c) || (c == ':' && m_inDeclarations && !m_inValue) ||
               StartsWithWord(m_css, at, "/*") || StartsWithWord(m_css, at, "<?") || StartsWithWord(m_css, at, "<%") ||
               StartsWithWord(m_css, at, "-->");
    }

    QByteArrayView m_css;
    qsizetype m_at = 0;
    std::vector<Token> m_tokens;
    bool m_inDeclarations = false;
    bool m_inValue = false;
    bool m_groupingRule = false;
};

} // namespace

std::vector<Range> FindStyleSheets(QByteArrayView html)
{
    std::vector<Range> sheets;
    for (qsizetype tag = FindTag(html, "<style", 0); tag < html.size();) {
        const qsizetype start = FindBehind(html, ">", tag);
        const qsizetype end = FindTag(html, "</style", start);
        sheets.push_back({start, end});
        tag = FindTag(html, "<style", end);
    }
    return sheets;
}

std::vector<Token> Tokens(QByteArrayView css)
{
    return Scanner(css).Run();
}

} // namespace StyleSheetScan
