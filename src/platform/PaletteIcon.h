#pragma once

#include <QIcon>
#include <QString>

/// An icon of ours, one ink only, in the text colour of the desktop's palette: readable in light and dark themes, and
/// it follows when the theme changes. `file` is an SVG that draws with "currentColor".
QIcon PaletteIcon(const QString &file);
