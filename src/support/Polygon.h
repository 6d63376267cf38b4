#pragma once

#include "support/Polyline.h"

namespace GTL {

/// A closed ring of vertices: the last one is joined to the first, which is not repeated.
template <class P>
class Polygon : public Polyline<P> {
public:
    Polygon() = default;
    explicit Polygon(std::vector<P> vertices) : Polyline<P>(std::move(vertices)) {}
    explicit Polygon(const Polyline<P>& ring) : Polyline<P>(ring) {}
};

} // namespace GTL
