#pragma once

#include "platform/surface/Islands.h"

#include <QList>
#include <QString>
#include <QStringView>

/// Facts of HTML's tokenizer for the routines here that read page text without a parser. Names are compared by ASCII
/// case only, as a parser does. Positions are 0-based UTF-16 units.

inline bool IsMarkupSpace(QChar c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r' || c == u'\f';
}

inline bool IsAsciiLetter(QChar c)
{
    const char16_t lower = c.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}

/// Characters of names that people give to tags; a parser takes nearly all others as well.
inline bool IsTagNameCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'-' || c == u':';
}

/// Whether `text` is `lowerName`, which is written in lower case.
bool EqualsName(QStringView text, QStringView lowerName);

/// Elements whose content is text to the matching end tag, entities not read: script, style, xmp, iframe, noembed,
/// noframes. (plaintext never ends and is no member.)
bool IsRawTextElement(QStringView name);

/// Elements whose content is text to the matching end tag, entities read: title, textarea.
bool IsEscapableTextElement(QStringView name);

/// Elements of HTML (old ones too) and the usual ones of SVG and MathML.
bool IsKnownElement(QStringView name);

struct TextRange
{
    qsizetype Start = 0;
    qsizetype End = 0;
};

/// Page text together with its server-side blocks: what stands in a block is invisible to every search.
class MarkupSource
{
public:
    MarkupSource(QStringView text, QList<IslandSpan> blocks) : m_text(text), m_blocks(std::move(blocks)) {}

    QStringView Text() const { return m_text; }
    qsizetype Size() const { return m_text.size(); }
    const QList<IslandSpan> &Blocks() const { return m_blocks; }

    /// The end of the block that starts at `position`; -1 when none starts there.
    qsizetype BlockEnd(qsizetype position) const;
    /// Index of the first block at or after `position`.
    qsizetype FirstBlock(qsizetype position) const;
    /// The blocks that start in the range.
    QList<TextRange> BlocksIn(TextRange range) const;
    bool HasBlock(qsizetype start, qsizetype end) const;
    /// The first `c` at or after `from` outside blocks, -1 when there is none.
    qsizetype Find(QChar c, qsizetype from) const;
    bool StartsWith(qsizetype position, QStringView lowerText) const;

    /// Behind the comment that starts with "<!--" at `start`; -1 when it never ends.
    qsizetype CommentEnd(qsizetype start) const;
    /// Where the text content that starts at `from` ends: at the "<" of the end tag of `name`, else at the text's end.
    /// Knows that a script holds "<script>...</script>" inside "<!-- -->".
    qsizetype TextContentEnd(qsizetype from, QStringView name) const;

private:
    bool TagNameAt(qsizetype position, QStringView lowerName) const;

    QStringView m_text;
    QList<IslandSpan> m_blocks;
};

/// Follows start and end tags to know where HTML's rules give way to those of SVG and MathML.
class ForeignScopes
{
public:
    /// Whether an element opened here would be one of SVG or MathML.
    bool InForeign() const { return !m_scopes.isEmpty() && m_scopes.last().Foreign; }
    /// Takes a start tag, tells whether its element is a foreign one.
    bool Open(QStringView name, bool selfClosing);
    /// Takes an end tag, tells whether its element is a foreign one.
    bool Close(QStringView name);

private:
    struct Scope
    {
        QString Name;
        bool Foreign; ///< else HTML inside a foreign element such as foreignObject
        int Depth;    ///< open elements of that name within the scope
    };
    QList<Scope> m_scopes;
};
