#include "platform/surface/EngineForm.h"

#include "platform/surface/MarkupText.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// ASCII characters that may stand in a value without quotes.
constexpr std::array<bool, 128> SafeTable()
{
    std::array<bool, 128> table{};
    for (int c = 'a'; c <= 'z'; ++c)
        table[c] = table[c - 'a' + 'A'] = true;
    for (int c = '0'; c <= '9'; ++c)
        table[c] = true;
    for (const char c : {'.', '_', '#', '/', ':', '%', '+', '-'})
        table[c] = true;
    return table;
}
constexpr std::array<bool, 128> safeCharacters = SafeTable();

bool NeedsQuotes(QStringView value)
{
    // An unquoted "dir/" in front of ">" looks like the end of a self-closing tag to many tools; file addresses are
    // looked for with their quote when a page is saved.
    return value.isEmpty() || value.back() == u'/' || value.startsWith("file:"_L1) ||
           std::any_of(value.begin(), value.end(),
                       [](QChar c) { return c.unicode() >= 128 || !safeCharacters[c.unicode()]; });
}

bool IsBooleanAttribute(QStringView name)
{
    static constexpr std::array<QStringView, 28> names = {
        u"allowfullscreen", u"async",   u"autofocus", u"autoplay", u"checked",        u"compact",  u"controls",
        u"declare",         u"default", u"defer",     u"disabled", u"formnovalidate", u"hidden",   u"ismap",
        u"itemscope",       u"loop",    u"multiple",  u"muted",    u"nohref",         u"noresize", u"noshade",
        u"novalidate",      u"nowrap",  u"open",      u"readonly", u"required",       u"reversed", u"selected"};
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Tokens of protected islands are made of such characters.
bool HoldsToken(QStringView name)
{
    return std::any_of(name.begin(), name.end(), [](QChar c) { return IsTokenCharacter(c); });
}

class EngineFormWriter
{
public:
    explicit EngineFormWriter(const QString &html) : m_text(html), m_source(html, {}) {}

    QString Write()
    {
        // Each "<" and ">" grows by three characters at most, and each tag may bring a line feed.
        const qsizetype brackets =
            std::count_if(m_text.begin(), m_text.end(), [](QChar c) { return c == u'<' || c == u'>'; });
        QString result(m_text.size() + 4 * brackets, Qt::Uninitialized);
        QChar *const start = result.data();
        m_out = start;
        while (m_position < m_text.size()) {
            const qsizetype less = m_text.indexOf(u'<', m_position);
            CopyTo(less < 0 ? m_text.size() : less);
            if (less >= 0)
                Markup();
        }
        result.resize(m_out - start);
        return result;
    }

private:
    QChar Peek(qsizetype ahead) const
    {
        return m_position + ahead < m_text.size() ? m_text[m_position + ahead] : QChar();
    }

    void Put(QStringView text)
    {
        std::copy(text.begin(), text.end(), m_out);
        m_out += text.size();
    }

    void CopyTo(qsizetype end)
    {
        Put(m_text.sliced(m_position, end - m_position));
        m_position = end;
    }

    void CopyBehind(qsizetype found) { CopyTo(found < 0 ? m_text.size() : found + 1); }

    void Markup()
    {
        if (IsAsciiLetter(Peek(1)))
            StartTag();
        else if (Peek(1) == u'/' && IsAsciiLetter(Peek(2)))
            EndTag();
        else if (m_source.StartsWith(m_position, u"<!--")) {
            const qsizetype end = m_source.CommentEnd(m_position);
            CopyTo(end < 0 ? m_text.size() : end);
        } else if (Peek(1) == u'!' || Peek(1) == u'?')
            CopyBehind(m_text.indexOf(u'>', m_position));
        else
            CopyTo(m_position + 1);
    }

    qsizetype NameEnd(qsizetype position) const
    {
        while (position < m_text.size() && !IsMarkupSpace(m_text[position]) && m_text[position] != u'>' &&
               m_text[position] != u'/')
            ++position;
        return position;
    }

    void PutUpper(QStringView name)
    {
        for (const QChar c : name)
            *m_out++ = c >= u'a' && c <= u'z' ? QChar(c.unicode() - 0x20) : c;
    }

    void PutName(QStringView name, bool foreign)
    {
        if (foreign)
            Put(name);
        else
            PutUpper(name);
        m_position += name.size();
    }

    void EndTag()
    {
        CopyTo(m_position + 2);
        const QStringView name = m_text.sliced(m_position, NameEnd(m_position) - m_position);
        PutName(name, m_foreign.Close(name));
        CopyBehind(m_text.indexOf(u'>', m_position));
    }

    void StartTag()
    {
        CopyTo(m_position + 1);
        const QStringView name = m_text.sliced(m_position, NameEnd(m_position) - m_position);
        const bool foreign = m_foreign.Open(name, false);
        PutName(name, foreign);
        if (Attributes(foreign) && !foreign)
            Content(name);
    }

    /// Writes up to and with the tag's ">"; false when the text ended before.
    bool Attributes(bool foreign)
    {
        while (m_position < m_text.size()) {
            const QChar c = m_text[m_position];
            if (c == u'>') {
                CopyTo(m_position + 1);
                return true;
            }
            if (IsMarkupSpace(c) || c == u'/')
                CopyTo(m_position + 1);
            else
                Attribute(foreign);
        }
        return false;
    }

    void Attribute(bool foreign)
    {
        const qsizetype start = m_position;
        qsizetype end = start + 1; // a name may start with "="
        while (end < m_text.size() && m_text[end] != u'=' && m_text[end] != u'>' && m_text[end] != u'/' &&
               !IsMarkupSpace(m_text[end]))
            ++end;
        CopyTo(end);
        if (Peek(0) != u'=')
            return;
        if (Peek(1) != u'"') { // not written by an engine
            CopyTo(std::max(NameEnd(m_position), m_position + 1));
            return;
        }
        const qsizetype close = m_text.indexOf(u'"', end + 2);
        if (close < 0) {
            CopyTo(m_text.size());
            return;
        }
        Value(m_text.sliced(start, end - start), m_text.sliced(end + 2, close - end - 2), foreign);
        m_position = close + 1;
    }

    void Value(QStringView name, QStringView value, bool foreign)
    {
        if (value.isEmpty() && (HoldsToken(name) || (!foreign && IsBooleanAttribute(name))))
            return;
        *m_out++ = u'=';
        if (!NeedsQuotes(value)) {
            Put(value);
            return;
        }
        *m_out++ = u'"';
        for (const QChar c : value) {
            if (c == u'<')
                Put(u"&lt;");
            else if (c == u'>')
                Put(u"&gt;");
            else
                *m_out++ = c;
        }
        *m_out++ = u'"';
    }

    /// What follows the start tag of an element with a content of its own kind.
    void Content(QStringView name)
    {
        if (IsRawTextElement(name))
            CopyTo(m_source.TextContentEnd(m_position, name));
        else if (EqualsName(name, u"plaintext")) {
            // Nothing ends it: closing tags, written behind it, would be text of it when read again.
            const qsizetype end = m_text.lastIndexOf(u"</plaintext>"_s);
            CopyTo(end < m_position ? m_text.size() : end);
            m_position = m_text.size();
        } else if (Peek(0) == u'\n' &&
                   (EqualsName(name, u"pre") || EqualsName(name, u"textarea") || EqualsName(name, u"listing")))
            *m_out++ = u'\n'; // a parser takes the first line feed away, so two stand for one
    }

    QStringView m_text;
    MarkupSource m_source;
    ForeignScopes m_foreign;
    qsizetype m_position = 0;
    QChar *m_out = nullptr;
};

} // namespace

QString EngineForm(const QString &outerHtml)
{
    return EngineFormWriter(outerHtml).Write();
}
