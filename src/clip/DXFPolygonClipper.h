#pragma once

#include "clip/PolygonClipper.h"

namespace GTL {

/// The polygon clipper of the drawing's own outlines.
class HALYARD_API DXFPolygonClipper : public PolygonClipper<Point3D<double>> {
public:
    using PolygonClipper::PolygonClipper;
};

} // namespace GTL
