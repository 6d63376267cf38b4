#pragma once

#include "clip/Clipper.h"
#include "support/Polyline.h"

#include <vector>

namespace GTL {

/// Cuts a ring to the outlines of its inside within a window (see PolygonClipper), for a ring whose box
/// settled nothing; the vertices that are finite count.
ClipResult CutOutline(const Extents2D<double>& window, const std::vector<Point3D<double>>& ring,
                      std::vector<Polyline<Point3D<double>>>& pieces);

} // namespace GTL
