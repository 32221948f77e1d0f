#pragma once

#include <QString>

/// The page scripts of the design surface, joined in the order in which they build on each other.
QString SurfaceScripts();
