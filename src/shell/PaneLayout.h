#pragma once

/// Where the panes of the main window lie. All numbers are twips, seen from the corner of the area between toolbars and
/// status bar. No control is touched here.
namespace PaneLayout {

inline constexpr double StartWidth = 2800;  ///< of the left pane, at start-up and when it is shown again
inline constexpr double LeastWidth = 1500;  ///< of the left pane, and of what is left beside it
inline constexpr double HiddenWidth = 135;  ///< of the strip that stays of a collapsed left pane
inline constexpr double SplitterWidth = 90; ///< between left pane and work area; a collapsed pane has none

struct Box
{
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
};

struct Boxes
{
    Box Pane;     ///< `TabStrip1` and its lists, or the strip
    Box Splitter; ///< `imgSplitter`
    Box Work;     ///< `TabStrip2` with the work controls under it
};

/// The area to be divided.
struct Area
{
    double Width = 0;
    double Height = 0;
    bool PaneHidden = false;
};

/// The pane width that is taken when `paneWidth` is asked for. The least width of the pane is held first, that of the
/// work area after it: in an area narrower than both together the pane gets what is left, which may be less than
/// nothing.
double HeldWidth(double paneWidth, const Area &area);

/// Left edge of `picSplitter` while the mouse is at `mouse`, within the same bounds.
double DraggedTo(double mouse, const Area &area);

/// Divides the area. A width or height that would be less than nothing leaves that number of the box as it was, as in
/// a window that is minimised.
void SizeControls(Boxes &boxes, double paneWidth, const Area &area);

} // namespace PaneLayout
