#pragma once

/// Layout numbers of this program are twips: 1/1440 inch, 15 to a pixel of the unscaled desktop.
inline constexpr double TwipsPerPixel = 15.0;

inline int PixelsFromTwips(double twips)
{
    return static_cast<int>(twips / TwipsPerPixel);
}

inline double TwipsFromPixels(int pixels)
{
    return pixels * TwipsPerPixel;
}
