#pragma once

#include <QString>

class DomElement;
class Editor;

/// The markup of the link around the selection's text: of its element, or of one of the two elements above, the first
/// that holds a link at all, if the link stands in its first `reach` - 1 characters. "" otherwise; the text starts at
/// "<A ".
QString LinkAround(Editor &editor, int reach);

/// Loads the page that a link leads to, or tells why not. Does nothing for a link to the page in hand.
void FollowLink(Editor &editor, const QString &linkMarkup);
