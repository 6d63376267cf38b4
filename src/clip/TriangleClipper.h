#pragma once

#include "clip/Clipper.h"

#include <array>
#include <vector>

namespace GTL {

/// Cuts a triangle. Bulges of the corners count for nothing.
template <class P>
class HALYARD_API TriangleClipper : public Clipper<P> {
public:
    explicit TriangleClipper(const Extents2D<double>& window) : Clipper<P>(window) {}

    /// The output is the outline of what the triangle has in common with the window, convex, running the way
    /// the corners run, its first vertex not repeated. Inside, when all corners are, leaves it empty.
    ClipResult Clip(const std::array<P, 3>& corners, std::vector<P>& output) const;
};

extern template class HALYARD_API_TEMPLATE TriangleClipper<Point3D<double>>;

} // namespace GTL
