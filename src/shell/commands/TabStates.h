#pragma once

#include "state/PageState.h"

#include <QString>

/// What each view of the page leaves on of menus, buttons and boxes.

/// By a menu's object name; one that is not named here is on in every view.
bool IsMenuOn(const QString &menu, ViewTab view);
/// By the key of a button of `tbToolBar`.
bool IsButtonOn(const QString &key, ViewTab view);
/// All of `Toolbar1` with the boxes of style, font and size.
bool AreFormatsOn(ViewTab view);
