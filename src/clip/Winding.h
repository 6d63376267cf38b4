#pragma once

#include "clip/BulgeSegment.h"

#include <vector>

namespace GTL {

/// How often a ring of straight and arc segments winds counter-clockwise around the place just inside the
/// border of a window at a coordinate along one of its sides (see BorderPlace::along). Counts the segments
/// that a ray from there straight out of the window meets; those that lie on the border itself count as
/// beyond the place.
int WindingInsideBorder(const std::vector<Point3D<double>>& ring, const Extents2D<double>& window, Side side,
                        double along);

} // namespace GTL
