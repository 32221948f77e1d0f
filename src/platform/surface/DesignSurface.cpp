#include "platform/surface/DesignSurface.h"

class DesignSurface::Private
{};
