// What the editor shows or does with the page beyond its content.
#include "platform/surface/DesignSurfacePrivate.h"

using namespace Qt::StringLiterals;

bool DesignSurface::SnapToGrid() const
{
    return d->Snap;
}

void DesignSurface::SetSnapToGrid(bool snap)
{
    d->Snap = snap;
    d->Ask(u"snapToGrid"_s, snap); // the user's next step is made with it
}
