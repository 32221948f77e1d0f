#include "document/TagText.h"

#include "document/ServerCode.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

QString Joined(QStringView head, QStringView middle, QStringView tail)
{
    QString result;
    result.reserve(head.size() + middle.size() + tail.size());
    return result.append(head).append(middle).append(tail);
}

/// What TagValue's search found; places are 0-based in the text.
struct LooseAttribute
{
    qsizetype NameStart;
    qsizetype ValueStart; ///< behind the opening quote
    qsizetype ValueEnd;   ///< of the closing quote, blank or ">"
    bool Quoted;
};

/// The first `name` followed by a blank, else the first `name` at all. No word boundary on purpose.
qsizetype FindName(QStringView head, qsizetype from, const QString &name)
{
    const qsizetype withBlank = head.indexOf(QString(name + u' '), from, Qt::CaseInsensitive);
    return withBlank >= 0 ? withBlank : head.indexOf(name, from, Qt::CaseInsensitive);
}

/// Finds the value that belongs to the "=" at `equals` in `head`, a text that ends with the tag's ">".
LooseAttribute FindValue(QStringView head, qsizetype nameStart, qsizetype equals)
{
    qsizetype at = equals;
    while (head[at + 1] == u' ')
        ++at;
    const bool quoted = head[at + 1] == u'"';
    if (quoted)
        ++at;
    const qsizetype end = head.indexOf(quoted ? u'"' : u' ', at + 1);
    return {nameStart, at + 1, end >= 0 ? end : head.size() - 1, quoted};
}

QString AddedBefore(const QString &text, qsizetype tagEnd, const QString &attribute)
{
    const QStringView all(text);
    return Joined(all.first(tagEnd), QString(u' ' + attribute), all.sliced(tagEnd));
}

QString AddAbsent(const QString &text, qsizetype tagEnd, const QString &name, const QString &value, TagMode mode)
{
    if (mode == TagMode::Set && !value.isEmpty())
        return AddedBefore(text, tagEnd, name + u'=' + value);
    if (mode == TagMode::SetFlag && value == u"1")
        return AddedBefore(text, tagEnd, name);
    return text;
}

} // namespace

QString TagValue(const QString &text, qsizetype start, const QString &name, const QString &value, TagMode mode,
                 bool *quoted)
{
    if (quoted)
        *quoted = false;
    const QStringView all(text);
    const qsizetype from = std::max<qsizetype>(start, 1) - 1;
    const qsizetype tagEnd = from < all.size() ? all.indexOf(u'>', from) : -1;
    if (tagEnd < 0)
        return {};
    const QStringView head = all.first(tagEnd + 1);
    const qsizetype nameStart = FindName(head, from, name);
    if (nameStart < 0)
        return mode == TagMode::Read ? QString() : AddAbsent(text, tagEnd, name, value, mode);

    // The next "=" counts, even when it is that of a later attribute.
    const qsizetype equals = head.indexOf(u'=', nameStart);
    if (equals < 0) {
        if (mode != TagMode::SetFlag)
            return u"<ON>"_s;
        // What stands between the name and ">" goes, as it always did.
        return Joined(all.first(nameStart), value == u"1" ? QStringView(name) : QStringView(), all.sliced(tagEnd));
    }
    const LooseAttribute found = FindValue(head, nameStart, equals);
    if (quoted)
        *quoted = found.Quoted;
    if (mode == TagMode::Read) {
        QString result = head.sliced(found.ValueStart, found.ValueEnd - found.ValueStart).toString();
        result.remove(u'"');
        return found.Quoted ? result : result.remove(u' ');
    }
    const qsizetype behind = found.ValueEnd + (all[found.ValueEnd] == u'"' ? 1 : 0);
    if (value.isEmpty())
        return Joined(all.first(found.NameStart), {}, all.sliced(behind));
    return Joined(all.first(found.ValueStart - (found.Quoted ? 1 : 0)), value, all.sliced(behind));
}

namespace {

/// One attribute of a tag, as a parser sees it; places are 0-based in the text.
struct Attribute
{
    qsizetype NameStart = 0;
    qsizetype NameEnd = 0;
    qsizetype ValueStart = -1; ///< of the opening quote, if any; -1 for a flag attribute
    qsizetype ValueEnd = -1;   ///< behind the closing quote
    QStringView Value;         ///< without quotes
};

bool IsSpace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

bool IsAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// Walks over the attributes of the tag that starts at or after a place. Knows quotes and steps over server-side code.
class AttributeReader
{
public:
    AttributeReader(QStringView text, qsizetype from) : m_text(text), m_at(std::clamp<qsizetype>(from, 0, text.size()))
    {
        while (!AtEnd() && !(m_text[m_at] == u'<' && m_at + 1 < m_text.size() && IsAsciiLetter(m_text[m_at + 1])))
            Step();
        SkipWhile([](QChar c) { return !IsSpace(c) && c != u'>' && c != u'/'; });
    }

    /// Nothing at the end of the tag or of the text.
    std::optional<Attribute> Next()
    {
        SkipWhile([](QChar c) { return IsSpace(c) || c == u'/'; });
        if (AtEnd() || m_text[m_at] == u'>')
            return std::nullopt;
        Attribute found;
        found.NameStart = m_at;
        Step(); // a "=" in the first place belongs to the name
        SkipWhile([](QChar c) { return !IsSpace(c) && c != u'>' && c != u'/' && c != u'='; });
        found.NameEnd = m_at;
        SkipWhile(IsSpace);
        if (AtEnd() || m_text[m_at] != u'=') {
            m_at = found.NameEnd;
            return found;
        }
        ++m_at;
        SkipWhile(IsSpace);
        ReadValue(found);
        return found;
    }

    /// The place of the tag's ">", or -1 when it has none or none was left by Next.
    qsizetype TagEnd() const { return !AtEnd() && m_text[m_at] == u'>' ? m_at : -1; }

private:
    bool AtEnd() const { return m_at >= m_text.size(); }
    void Step() { m_at = std::max(m_at + 1, ServerBlockEnd(m_text, m_at)); }

    template <typename Test>
    void SkipWhile(Test test)
    {
        while (!AtEnd() && (ServerBlockEnd(m_text, m_at) == m_at ? test(m_text[m_at]) : test(u'x')))
            Step();
    }

    void ReadValue(Attribute &found)
    {
        found.ValueStart = m_at;
        const QChar quote = AtEnd() ? QChar() : m_text[m_at];
        if (quote == u'"' || quote == u'\'') {
            ++m_at;
            SkipWhile([quote](QChar c) { return c != quote; });
            if (!AtEnd()) {
                found.Value = m_text.sliced(found.ValueStart + 1, m_at - found.ValueStart - 1);
                found.ValueEnd = ++m_at;
                return;
            }
            // A quote that never closes must not swallow the page: the value ends with the tag.
            m_at = found.ValueStart + 1;
            SkipWhile([](QChar c) { return c != u'>'; });
            found.Value = m_text.sliced(found.ValueStart + 1, m_at - found.ValueStart - 1);
        } else {
            SkipWhile([](QChar c) { return !IsSpace(c) && c != u'>'; });
            found.Value = m_text.sliced(found.ValueStart, m_at - found.ValueStart);
        }
        found.ValueEnd = m_at;
    }

    QStringView m_text;
    qsizetype m_at;
};

struct FoundAttribute
{
    std::optional<Attribute> Found;
    qsizetype TagEnd; ///< -1: there is no tag
};

FoundAttribute FindAttribute(QStringView text, qsizetype start, const QString &name)
{
    AttributeReader reader(text, std::max<qsizetype>(start, 1) - 1);
    std::optional<Attribute> found;
    while (const std::optional<Attribute> next = reader.Next()) {
        const QStringView nextName = text.sliced(next->NameStart, next->NameEnd - next->NameStart);
        if (!found && nextName.compare(name, Qt::CaseInsensitive) == 0)
            found = next; // of two with one name the first counts
    }
    return {found, reader.TagEnd()};
}

} // namespace

QString ReadAttribute(const QString &text, qsizetype start, const QString &name)
{
    const FoundAttribute tag = FindAttribute(text, start, name);
    if (tag.TagEnd < 0 || !tag.Found)
        return {};
    return tag.Found->ValueStart < 0 ? u"<ON>"_s : tag.Found->Value.toString();
}

QString WriteAttribute(const QString &text, qsizetype start, const QString &name, const QString &value, TagMode mode)
{
    const FoundAttribute tag = FindAttribute(text, start, name);
    if (tag.TagEnd < 0 || mode == TagMode::Read)
        return text;
    if (!tag.Found)
        return AddAbsent(text, tag.TagEnd, name, value, mode);

    const QStringView all(text);
    const Attribute &found = *tag.Found;
    const bool isFlag = found.ValueStart < 0;
    const qsizetype behind = isFlag ? found.NameEnd : found.ValueEnd;
    const bool remove = mode == TagMode::SetFlag ? value != u"1" : value.isEmpty();
    if (remove)
        return Joined(all.first(found.NameStart), {}, all.sliced(behind));
    if (mode == TagMode::SetFlag)
        return text;
    if (isFlag)
        return Joined(all.first(behind), QString(u'=' + value), all.sliced(behind));
    return Joined(all.first(found.ValueStart), value, all.sliced(behind));
}
