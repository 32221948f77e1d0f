#pragma once

#include <QString>

/// A page text cut into what the engine is given and what it could not keep in place.
/// Head + Page + Tail is the text, byte for byte.
struct PageParts
{
    QString Head; ///< all before the first tag or text: doctype, comments, server blocks, white space
    QString Page; ///< what the engine parses
    QString Tail; ///< from the last "</body>" or "</html>" on, when only white space, comments and server blocks follow
    QString Doctype; ///< the doctype in Head as written; "" when there is none. The engine's mode depends on it
};

PageParts SplitPage(const QString &text);

/// Puts the parts around `html`, the engine form of the page's root element: Head in front, and Tail in place of the
/// closing tags that it has itself. A root that was empty and still is does not show up between Head and Tail.
QString JoinPage(const PageParts &parts, const QString &html);

/// The white space of a tail, outside its tags, comments and server blocks, with line feeds as line ends.
QString SpaceOfTail(const QString &tail);
QString TailWithoutSpace(const QString &tail);
