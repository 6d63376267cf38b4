#pragma once

#include "platform/Export.h"

class DXF3dFace;
class DXFArc;
class DXFCircle;
class DXFInsert;
class DXFLayer;
class DXFLine;
class DXFPoint;
class DXFPolyline;
class DXFSolid;
class DXFText;

/// Base of a host's own transformers of whole layers: one operation for each kind that has geometry of its
/// own (a polygon counts as a polyline, a multi-line text and an image are the host's to leave alone). The
/// library calls none of them.
class HALYARD_API DXFTransformer {
public:
    virtual ~DXFTransformer() = default;
    /// Names the layer about to be transformed; does nothing here.
    virtual void SetLayer(DXFLayer&) {}

    virtual void Transform(DXFPoint& point) = 0;
    virtual void Transform(DXFLine& line) = 0;
    virtual void Transform(DXFSolid& solid) = 0;
    virtual void Transform(DXF3dFace& face) = 0;
    virtual void Transform(DXFPolyline& polyline) = 0;
    virtual void Transform(DXFCircle& circle) = 0;
    virtual void Transform(DXFArc& arc) = 0;
    virtual void Transform(DXFText& text) = 0;
    virtual void Transform(DXFInsert& insert) = 0;
    virtual void TransformPoint(double& x, double& y, double& z) = 0;
};
