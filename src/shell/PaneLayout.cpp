#include "shell/PaneLayout.h"

#include <algorithm>

namespace PaneLayout {

namespace {

/// The least width first, so that the most wins where both cannot be had.
double Hold(double width, const Area &area)
{
    return std::min(std::max(width, LeastWidth), area.Width - LeastWidth);
}

void Place(Box &box, double left, double width, double height)
{
    box.Left = left;
    if (width >= 0)
        box.Width = width;
    if (height >= 0)
        box.Height = height;
}

} // namespace

double HeldWidth(double paneWidth, const Area &area)
{
    return area.PaneHidden ? HiddenWidth : Hold(paneWidth, area);
}

double DraggedTo(double mouse, const Area &area)
{
    return Hold(mouse - SplitterWidth / 2, area);
}

void SizeControls(Boxes &boxes, double paneWidth, const Area &area)
{
    const double pane = HeldWidth(paneWidth, area);
    const double splitter = area.PaneHidden ? 0 : SplitterWidth;
    Place(boxes.Pane, 0, pane, area.Height);
    Place(boxes.Splitter, pane, splitter, area.Height);
    Place(boxes.Work, pane + splitter, area.Width - pane - splitter, area.Height);
}

} // namespace PaneLayout
