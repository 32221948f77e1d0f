#include "document/FixupHtml.h"

#include "document/GuideStyle.h"
#include "document/ServerCode.h"
#include "document/TextReplace.h"

#include <QStringBuilder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The next place of a mark at or after a place that only moves on. Remembers the find, so that asking at every tag of
/// a text costs one walk over it, also when the mark is far away or not there at all.
class NextPlace
{
public:
    NextPlace(QStringView text, QStringView mark, Qt::CaseSensitivity cs = Qt::CaseSensitive)
        : m_text(text), m_mark(mark), m_cs(cs)
    {}

    /// -1: none.
    qsizetype From(qsizetype place)
    {
        if (m_at != None && m_at < place)
            m_at = place < m_text.size() ? m_text.indexOf(m_mark, place, m_cs) : None;
        return m_at;
    }

private:
    static constexpr qsizetype None = -1;
    static constexpr qsizetype NotAsked = -2;

    QStringView m_text;
    QStringView m_mark;
    Qt::CaseSensitivity m_cs;
    qsizetype m_at = NotAsked;
};

QChar Lowered(QChar c)
{
    if (c.unicode() < 0x80)
        return c >= u'A' && c <= u'Z' ? QChar(char16_t(c.unicode() + 0x20)) : c;
    return c.toLower();
}

bool IsConditionalComment(QStringView textFromTag)
{
    return textFromTag.startsWith(u"<!--[if", Qt::CaseInsensitive);
}

/// Lowers names and quotes values from the first tag of a text to the last. Places are 0-based in the old text unless
/// said otherwise. The rules are plain on purpose; odd markup comes out as they say, not as a parser would have it.
class TagCleaner
{
public:
    /// `filler` stands for server-side code; `caret` is a place in the text to be followed, or -1.
    TagCleaner(const QString &text, QChar filler, qsizetype caret)
        : m_text(text),
          m_filler(filler),
          m_caret(caret),
          m_tagStarts(text, u"<"),
          m_tagEnds(text, u">"),
          m_blanks(text, u" "),
          m_commentEnds(text, u"-->"),
          m_scriptEnds(text, u"</SCRIPT", Qt::CaseInsensitive)
    {
        m_out.reserve(text.size() + text.size() / 16 + 64);
    }

    QString Run()
    {
        for (qsizetype at = FirstTagFrom(0); at >= 0; at = FirstTagFrom(CleanTag(at))) {
        }
        WriteUpTo(m_text.size());
        return m_out;
    }

    qsizetype CaretShift() const { return m_caretShift; }

private:
    struct Pass
    {
        qsizetype Length; ///< how much of the tag it went over
        bool IsScript;
    };

    struct Onward
    {
        qsizetype Within; ///< the next of some overlapping tags; -1: none
        qsizetype Behind; ///< where the search goes on after them
    };

    qsizetype FirstTagFrom(qsizetype from);
    qsizetype CleanTag(qsizetype at);
    qsizetype CleanTagWithoutEnd(qsizetype at);
    qsizetype CleanOverlappingTags(qsizetype at, qsizetype end);
    Onward NextOverlapping(const QString &rest, qsizetype from, qsizetype end, bool behindScript);
    Pass CleanOne(QStringView tag);
    qsizetype WriteValue(QStringView tag, qsizetype valueStart, qsizetype delimiter, qsizetype *written);
    qsizetype BehindScript(qsizetype from);

    void WriteUpTo(qsizetype place)
    {
        if (place > m_read) {
            m_out.append(m_text.sliced(m_read, place - m_read));
            m_read = place;
        }
    }

    void WriteLowered(QStringView part)
    {
        const qsizetype from = m_out.size();
        m_out.resize(from + part.size());
        std::transform(part.begin(), part.end(), m_out.data() + from, Lowered);
    }

    QStringView m_text;
    QChar m_filler;
    qsizetype m_caret;
    qsizetype m_caretShift = 0;
    NextPlace m_tagStarts;
    NextPlace m_tagEnds;
    NextPlace m_blanks;
    NextPlace m_commentEnds;
    NextPlace m_scriptEnds;
    qsizetype m_commentEnd = -1; ///< the ">" that ends the last comment met
    qsizetype m_read = 0;        ///< the text before it is in m_out
    QString m_out;
};

/// The next tag that is no declaration. A comment is skipped as a declaration, so that the tags in it are found;
/// a conditional comment is passed over whole.
qsizetype TagCleaner::FirstTagFrom(qsizetype from)
{
    qsizetype at = m_tagStarts.From(from);
    while (at >= 0 && m_text.sliced(at).startsWith(u"<!")) {
        qsizetype next = at + 1;
        if (m_text.sliced(at).startsWith(u"<!--")) {
            const qsizetype end = m_commentEnds.From(at + 2);
            m_commentEnd = end < 0 ? -1 : end + 2;
            if (end >= 0 && IsConditionalComment(m_text.sliced(at)))
                next = end + 3;
        }
        at = m_tagStarts.From(next);
    }
    return at;
}

/// Answers where the search for the next tag goes on.
qsizetype TagCleaner::CleanTag(qsizetype at)
{
    const qsizetype end = m_tagEnds.From(at);
    if (end < 0)
        return CleanTagWithoutEnd(at);
    // A quote put in front of the ">" of "-->" would let the comment run on over the page.
    if (at < m_commentEnd && end >= m_commentEnd)
        return at + 1;
    WriteUpTo(at);
    const qsizetype inner = m_tagStarts.From(at + 1);
    if (inner >= 0 && inner < end)
        return CleanOverlappingTags(at, end);
    const Pass pass = CleanOne(m_text.sliced(at, end - at + 1));
    m_read = at + pass.Length;
    return pass.IsScript ? BehindScript(at + 1) : at + 1;
}

/// No ">" follows in the whole text: only the name is lowered, up to the next blank.
qsizetype TagCleaner::CleanTagWithoutEnd(qsizetype at)
{
    const qsizetype nameEnd = m_blanks.From(at);
    if (nameEnd < 0)
        return at + 1;
    WriteUpTo(at);
    if (nameEnd > m_read) {
        WriteLowered(m_text.sliced(m_read, nameEnd - m_read));
        m_read = nameEnd;
    }
    const QStringView name = m_text.sliced(at, nameEnd - at);
    return name.compare(u"<script", Qt::CaseInsensitive) == 0 ? BehindScript(at + 1) : at + 1;
}

/// The body of a script is left as it is: the next tag is the script's end.
qsizetype TagCleaner::BehindScript(qsizetype from)
{
    const qsizetype end = m_scriptEnds.From(from);
    return end < 0 ? from : end;
}

/// Several "<" before one ">": each counts as a tag and is cleaned up to that ">", over what the ones before made.
qsizetype TagCleaner::CleanOverlappingTags(qsizetype at, qsizetype end)
{
    m_read = end + 1;
    QString rest = m_text.sliced(at, end - at + 1).toString();
    qsizetype from = 0; // of the tag in hand within rest
    // Megabytes without a ">" would take the square of their length. What is left of them when this runs out stays as
    // it is.
    qsizetype budget = 50 * rest.size() + 10000;
    Onward next = {0, end + 1};
    while (next.Within >= 0 && budget > 0) {
        const qsizetype outStart = m_out.size();
        const QStringView tag = QStringView(rest).sliced(from);
        const Pass pass = CleanOne(tag);
        budget -= pass.Length + (pass.IsScript ? tag.size() : 0);
        qsizetype searchFrom = from + 1;
        const qsizetype inner = tag.indexOf(u'<', 1);
        if (inner < 0 || inner >= pass.Length) {
            from += pass.Length;
            searchFrom = from;
        } else {
            // It went over the next tags, which are cleaned from what it made of them.
            const QStringView cleaned = QStringView(m_out).sliced(outStart);
            if (cleaned != tag.first(pass.Length)) {
                budget -= tag.size();
                rest = cleaned % tag.sliced(pass.Length);
                from = 0;
                searchFrom = 1;
            }
            m_out.truncate(outStart);
        }
        next = NextOverlapping(rest, searchFrom, end, pass.IsScript);
        const qsizetype done = next.Within < 0 ? rest.size() : next.Within;
        m_out.append(QStringView(rest).sliced(from, done - from));
        from = done;
    }
    m_out.append(QStringView(rest).sliced(from));
    return next.Behind;
}

/// The next tag in `rest`, the text before the ">" at `end`, or where to look behind that ">".
TagCleaner::Onward TagCleaner::NextOverlapping(const QString &rest, qsizetype from, qsizetype end, bool behindScript)
{
    const QStringView text(rest);
    qsizetype next = text.indexOf(u'<', from);
    if (behindScript) {
        const qsizetype scriptEnd = text.indexOf(u"</SCRIPT", from, Qt::CaseInsensitive);
        if (scriptEnd < 0 && m_scriptEnds.From(end + 1) >= 0)
            return {-1, m_scriptEnds.From(end + 1)};
        next = scriptEnd < 0 ? next : scriptEnd;
    }
    for (; next >= 0 && text.sliced(next).startsWith(u"<!"); next = text.indexOf(u'<', next + 1)) {
        if (!text.sliced(next).startsWith(u"<!--"))
            continue;
        const bool endsHere = text.endsWith(u"-->") && text.size() - 3 >= next + 2;
        const qsizetype dashes = endsHere ? end - 2 : m_commentEnds.From(end - 1);
        m_commentEnd = dashes < 0 ? -1 : dashes + 2;
        if (endsHere || (dashes >= 0 && IsConditionalComment(text.sliced(next))))
            return {-1, m_commentEnd + 1};
    }
    return {next, end + 1};
}

/// Writes the tag's name and attributes as far as they are looked at. `tag` goes from "<" to its ">".
TagCleaner::Pass TagCleaner::CleanOne(QStringView tag)
{
    const qsizetype end = tag.size() - 1;
    const qsizetype blank = tag.indexOf(u' '); // a line end is no end of a name
    const qsizetype nameEnd = blank < 0 ? end : blank;
    WriteLowered(tag.first(nameEnd));
    const bool isScript = tag.first(nameEnd).compare(u"<script", Qt::CaseInsensitive) == 0;

    qsizetype written = nameEnd;
    qsizetype delimiter = -1; // the next blank, line end or the tag's end
    for (qsizetype at = nameEnd + 1; at < end;) {
        if (delimiter < at) {
            delimiter = at;
            while (delimiter < end && tag[delimiter] != u' ' &&
                   !(tag[delimiter] == u'\r' && tag[delimiter + 1] == u'\n'))
                ++delimiter;
        }
        // An attribute without "=", or a second blank, ends the clean-up of the tag.
        const qsizetype equals = tag.first(delimiter).indexOf(u'=', at);
        if (equals < 0)
            break;
        m_out.append(tag.sliced(written, at - written));
        WriteLowered(tag.sliced(at, equals + 1 - at));
        written = equals + 1;
        at = WriteValue(tag, equals + 1, delimiter, &written) + 1;
    }
    return {written, isScript};
}

/// Quotes the value at `valueStart` unless it is quoted. Answers the place behind it; `written` is moved up to it when
/// it was written.
qsizetype TagCleaner::WriteValue(QStringView tag, qsizetype valueStart, qsizetype delimiter, qsizetype *written)
{
    const QChar first = tag[valueStart];
    if (first == u'"') {
        const qsizetype close = tag.indexOf(u'"', valueStart + 1);
        return close < 0 ? delimiter : close + 1;
    }
    if (first == u'\'' && !m_filler.isNull()) {
        // Server-side code may print double quotes of its own, so single quotes around it stay.
        const qsizetype close = tag.indexOf(u'\'', valueStart + 1);
        if (close >= 0 && tag.sliced(valueStart, close - valueStart).contains(m_filler))
            return close + 1;
    }
    m_out.append(u'"').append(tag.sliced(valueStart, delimiter - valueStart)).append(u'"');
    *written = delimiter;
    if (m_caret >= 0 && m_caret + m_caretShift >= m_out.size() - 2)
        m_caretShift += 2;
    return delimiter;
}

} // namespace

QString FixupHTML(const QString &text, FixupContext &context)
{
    // The caret's place is that of the text as it came; it is followed through each step.
    qsizetype caret = context.SelectionOffset > 0 ? std::min(context.SelectionOffset - 1, text.size()) : -1;
    const QString bare = GuideStyle::Remove(text);
    if (caret >= 0 && bare.size() != text.size())
        caret = GuideStyle::Remove(text.first(caret)).size();

    const ServerCodeMask mask(bare);
    if (!mask.Usable())
        return bare;
    QString page = mask.Text();
    if (context.CharsetFix) {
        const QString unicode = u"charset=unicode"_s;
        const QString declared = u"charset="_s + context.DocumentCharset;
        if (caret >= 0)
            caret = ReplaceAll(page.first(caret), unicode, declared).size();
        page = ReplaceAll(page, unicode, declared);
    }
    TagCleaner cleaner(page, mask.Filler(), caret);
    const QString cleaned = cleaner.Run();
    context.SelectionShift += cleaner.CaretShift();
    return mask.Restore(cleaned);
}

QString FixupHTML(const QString &text)
{
    FixupContext context;
    return FixupHTML(text, context);
}
