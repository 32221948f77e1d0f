// What the editor shows or does with the page beyond its content.
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/SurfacePage.h"

using namespace Qt::StringLiterals;

bool DesignSurface::SnapToGrid() const
{
    return d->Snap;
}

void DesignSurface::SetSnapToGrid(bool snap)
{
    d->Snap = snap;
    if (d->EverLoaded && !Busy())
        d->Page->CallLater(u"snapToGrid"_s, snap, [](const QVariant &) {});
}
