#pragma once

#include "platform/surface/MarkupText.h"

#include <QString>

#include <vector>

/// Page text cut into the pieces that two writings of the same page have in common.
struct MarkupToken
{
    enum Kind : quint8 {
        Space,    ///< a run of white space in text
        Word,     ///< a run of other characters in text
        StartTag, ///< with all its attributes
        EndTag,
        Other ///< comment, doctype, server-side block: equal only when spelt the same
    };

    qsizetype Start = 0;
    qsizetype Length = 0;
    /// Equal for what a parser reads as the same: references decoded, line ends as LF, names in any case, attributes
    /// in any order, quotes or none.
    quint64 Key = 0;
    quint32 Name = 0; ///< of a tag's lower-case name
    Kind Is = Space;
    bool Raw = false;     ///< text of an element whose content is no markup and has no references (script, style, ...)
    bool Foreign = false; ///< within or at a tag of SVG or MathML

    bool IsText() const { return Is == Space || Is == Word; }
    bool IsTag() const { return Is == StartTag || Is == EndTag; }
    qsizetype End() const { return Start + Length; }
};
using MarkupTokens = std::vector<MarkupToken>;

struct TokenizedMarkup
{
    MarkupTokens Tokens; ///< one behind the other, from the text's start to its end
    bool Plain = true;   ///< the text ends outside raw text and foreign elements, in no unfinished tag or comment
};

/// What is wanted of a text: all of it, or its tags alone. Then text between two of them is one word (in raw text with
/// the server-side blocks in it), and nothing has a key; several times as quick.
enum class TokenDetail { All, TagsOnly };

/// Any text; linear in it.
TokenizedMarkup TokenizeMarkup(const QString &text, TokenDetail detail = TokenDetail::All);

/// One attribute of a start tag, as it is written. Positions are those of the text.
struct WrittenAttribute
{
    TextRange Name;  ///< empty for a server-side block that stands as an attribute: then Value is the block
    TextRange Value; ///< without quotes; empty at the name's end for an attribute without value
    QChar Quote;     ///< null: none
    qsizetype End = 0;

    bool HasValue() const { return Quote != QChar() || Value.End > Value.Start; }
};

struct WrittenTag
{
    TextRange Name;
    std::vector<WrittenAttribute> Attributes;
    qsizetype End = 0; ///< behind its ">"
    bool SelfClosing = false;
    bool Closed = false; ///< there is a ">"
};

/// Reads the tag whose "<" stands at `start` (of an end tag too); `tag` is written anew, its memory used again.
void ReadTag(const MarkupSource &source, qsizetype start, WrittenTag &tag);

/// A number for a name in any case, as in MarkupToken::Name.
quint32 TagNameKey(QStringView name);
