#pragma once

#include <QByteArray>

#include <vector>

/// Finds style sheets in the text of a page and the parts that they are made of, for colouring only: what is half
/// written or wrong is taken for the next best thing. Positions and lengths are bytes of UTF-8 text, 0-based.
namespace StyleSheetScan {

struct Range
{
    qsizetype Start = 0;
    qsizetype End = 0; ///< behind the last byte
    bool operator==(const Range &) const = default;
};

/// What stands between each <style ...> and its </style> or the end of the text. Comments and scripts are not told
/// apart from the page: a style tag named in one of them counts too.
std::vector<Range> FindStyleSheets(QByteArrayView html);

enum class Kind {
    Selector, ///< in front of "{"
    AtRule,   ///< "@media"
    Property, ///< in front of ":"
    Value,
    String,
    Comment,
    Mark ///< punctuation and the "<!--" that hides a sheet from the oldest readers
};

struct Token
{
    Range Where;
    Kind What = Kind::Mark;
};

/// The parts of one style sheet in their order. Blanks and server-side code ("<? ?>", "<% %>") belong to no part.
std::vector<Token> Tokens(QByteArrayView css);

} // namespace StyleSheetScan
