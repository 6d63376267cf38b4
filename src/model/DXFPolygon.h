#pragma once

#include "model/DXFPolyline.h"
#include "support/Polygon.h"

/// A closed ring: as a polyline, with its last vertex joined to the first.
class HALYARD_API DXFPolygon : public DXFPolyline {
public:
    DXFPolygon() = default;
    explicit DXFPolygon(const GTL::Polygon<GTL::Point3D<double>>& polygon) : DXFPolyline(polygon) {}

    DXFPolygon* Copy() const override;
    void Write(DXFWriter& writer) const override;
    bool Clip(DXFClipContext& context) override;
};
