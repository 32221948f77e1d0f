#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Where an island stood, which decides how its token is taken out again.
enum class IslandPlace {
    Comment,   ///< between tags, or a whole comment: its token is a comment
    Attribute, ///< an attribute of its own: the engine writes the token with an empty value
    TagName,   ///< the same, but written without a blank behind the tag's name (`<li<?=$class?>>`)
    Inside     ///< within a name, a value, raw text or a comment
};

/// Page text whose server-side code and other markup that no HTML parser keeps stands as tokens the parser does keep.
struct ProtectedText
{
    QString Text;              ///< what goes to the engine
    QStringList Islands;       ///< the protected pieces, byte for byte as they stood, in the order of their numbers
    QList<IslandPlace> Places; ///< one for each island
    bool OpenEnded = false;    ///< the last island never closes: it took all text up to the end of the page
    qsizetype Added = 0;       ///< how many islands at the end of the list came in later, with ProtectFragment
    QChar Open;  ///< private-use characters that the page itself does not use: a token is Open + digits + Close,
    QChar Close; ///< or a comment that holds Open + digits + CommentClose
    QChar CommentClose;
    QList<QChar> Digits; ///< ten private-use characters standing for 0 to 9
};

/// Protects `<?...?>`, `<%...%>`, `<!--#...-->` (opaque wherever they stand, also inside quotes, comments and raw text)
/// and what a parser would rewrite (`<![if !IE]>`, `<!x>`, `<![CDATA[`, `</ >`, stray `<?`, a tag that never closes, a
/// doctype in the wrong place), also conditional comments, whose line ends count. Between tags an island becomes a
/// comment, anywhere else (attribute value, whole attribute, name, title, textarea, script, style, inside a comment) a
/// token of private-use characters. Linear in the text. Page text without any such code comes back as it is, with no
/// islands.
///
/// - An island inside an end tag is moved in front of the tag (behind it for the end tags of script, title and the
///   like), since any parser drops it there.
/// - A tag whose name is computed (`<h<?=$n?>>`) keeps its name with tokens, equal ones for equal code, when the page
///   has a start and an end tag so written; else the whole tag is one island.
/// - An attribute that stands a second time in a tag with server code (`<?if?> class=a <?else?> class=b`) is an island.
/// - Code and comments behind `</body>` or `</html>` are one island, blanks between them included, as long as nothing
///   else follows there; other content there is moved into the body by the engine, away from the code around it.
/// - A server-side block that never closes reaches to the end of the text, as it does on the server.
/// - The doctype stays for the engine to read, blocks in it as tokens: SourceDoctype tells how it was written.
ProtectedText ProtectIslands(const QString &pageText);

/// Puts the islands back into text that holds their tokens, each byte for byte as it stood. Tokens may stand several
/// times (the engine clones elements) or no more at all. An attribute that the engine wrote as token="" comes back as
/// the island alone. What merely looks like a token, or is one of another page, stays. Behind an open-ended island the
/// end tags that the engine added are dropped; if real content follows, the block is closed in front of it.
/// Text without tokens comes back as it is.
QString RestoreIslands(const QString &text, const ProtectedText &from);

/// Protects a piece of markup that is to go into a page that is protected already: its islands become islands of
/// `page`, in the same kind of tokens, behind those that are there. Here nothing is open-ended: server code that never
/// closes is closed, other markup that never closes is dropped, as a parser would. `used` are the token characters that
/// the page itself holds; they count while the page has no islands. Line ends come back as line feeds.
QString ProtectFragment(const QString &fragment, ProtectedText &page, const QString &used);

/// Start and length (0-based) of every `<?...?>` and `<%...%>` block of a text, in order, not overlapping.
/// A block ends at its first end mark, even inside quotes of the server's language; `<%--` ends at `--%>`. One that
/// never closes reaches to the end of the text; a "<?" that is no server code (`<?xml:namespace ... />`, `<?import >`,
/// an unclosed `<?name`) is none.
struct IslandSpan
{
    qsizetype Start;
    qsizetype Length;
};
QList<IslandSpan> FindServerBlocks(const QString &text);

/// The page's doctype exactly as it is written, "" when there is none where a parser looks for it: in front of
/// everything but blanks, comments and server code.
QString SourceDoctype(const QString &pageText);

/// Whether tokens may be made of `c`.
inline bool IsTokenCharacter(QChar c)
{
    return (c >= u'\uE000' && c <= u'\uF8FF') || (c >= u'\uFDD0' && c <= u'\uFDEF');
}

/// All that a server takes out of the page wherever it stands: those blocks, and the directives `<!--#...-->`.
QList<IslandSpan> FindServerCode(const QString &text);
