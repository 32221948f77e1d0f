#pragma once

#include "platform/surface/Dom.h"

class DesignSurface;
struct LinkAttributes;

/// The anchor around the start of the selection: the character behind that decides, else the element that holds all of
/// the selection. With an object selected, the anchor around it. Null when there is none.
DomElement SelectedAnchor(DesignSurface &surface);

/// A blank at the end of the selected text is left out of the selection, so that a link does not reach over it.
void LeaveOutTrailingBlank(DesignSurface &surface);

/// Makes the selection a link, or changes the one of SelectedAnchor, which has the attributes `was`. Nothing that is
/// the same in both is touched, and a link never loses its address.
void ChangeLink(DesignSurface &surface, const LinkAttributes &was, const LinkAttributes &now);

/// Takes the links of the selection away, or the one of SelectedAnchor. One step for undo.
void RemoveLink(DesignSurface &surface);
