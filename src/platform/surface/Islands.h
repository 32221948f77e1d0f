#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// Page text whose server-side code and other markup that no HTML parser keeps stands as tokens the parser does keep.
struct ProtectedText
{
    QString Text;        ///< what goes to the engine
    QStringList Islands; ///< the protected pieces, byte for byte as they stood, in the order of their numbers
    QChar Open;  ///< private-use characters that the page itself does not use: a token is Open + digits + Close,
    QChar Close; ///< or a comment that holds Open + digits + CommentClose
    QChar CommentClose;
    QList<QChar> Digits; ///< ten private-use characters standing for 0 to 9
};

/// Protects `<?...?>`, `<%...%>` (opaque wherever they stand, also inside quotes, comments and raw text) and what a
/// parser would rewrite (`<![if !IE]>`, `<!x>`, `<![CDATA[`, `</ >`, stray `<?`). Between tags an island becomes a
/// comment, anywhere else (attribute value, whole attribute, name, title, textarea, script, style, inside a comment) a
/// token of private-use characters. An island inside an end tag is moved in front of the tag, since any parser drops it
/// there. A server-side block that never closes reaches to the end of the text, as it does on the server. Page text
/// without any such code comes back as it is, with no islands. Linear in the text.
ProtectedText ProtectIslands(const QString &pageText);

/// Puts the islands back into text that holds their tokens, each byte for byte as it stood. Tokens may stand several
/// times (the engine clones elements) or no more at all. An attribute that the engine wrote as token="" comes back as
/// the island alone. Text without tokens comes back as it is.
QString RestoreIslands(const QString &text, const ProtectedText &from);

/// Start and length (0-based) of every `<?...?>` and `<%...%>` block of a text, in order, not overlapping.
struct IslandSpan
{
    qsizetype Start;
    qsizetype Length;
};
QList<IslandSpan> FindServerBlocks(const QString &text);
