#pragma once

#include <QString>

class Editor;
class ViewSwitcher;

/// The style rules of the two classes for links in a bar of navigation, white and black.
namespace NavLinkStyles {

/// `html` with the rules behind its title; unchanged when it holds the name of one of the classes, or has no title.
QString AddedTo(const QString &html);

/// Into the page in hand, as one step for undo.
void Add(Editor &editor, ViewSwitcher &views);

} // namespace NavLinkStyles
