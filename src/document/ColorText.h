#pragma once

#include <QString>

/// Colours as numbers 0xBBGGRR (the order of the platform's colour dialog) and as page text "#RRGGBB".

/// A number above 0xFFFFFF (a system colour) takes its digits by the same positions.
QString FormatRGBString(quint32 color);

/// Reads "#RRGGBB". Reading stops at the first character that is no hexadecimal digit of the reordered form, so that a
/// short or named colour gives a partial number, never a failure ("red" gives 0xEDD).
qint32 RevFormatRGBString(const QString &text);
