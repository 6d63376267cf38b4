#pragma once

#include "platform/Export.h"

class DXF3dFace;
class DXFArc;
class DXFCircle;
class DXFImage;
class DXFInsert;
class DXFLine;
class DXFMText;
class DXFPoint;
class DXFPolygon;
class DXFPolyline;
class DXFSolid;
class DXFText;

/// Visitor of entities: file writers, drawers and importers derive from it and override the kinds that they
/// handle. Every Write of this class does nothing. A polygon comes as a polygon, never as a polyline.
class HALYARD_API DXFWriter {
public:
    DXFWriter() = default;
    DXFWriter(const DXFWriter&) = default;
    DXFWriter& operator=(const DXFWriter&) = default;
    virtual ~DXFWriter() = default;
    virtual void Write(const DXFInsert&) {}
    virtual void Write(const DXF3dFace&) {}
    virtual void Write(const DXFImage&) {}
    virtual void Write(const DXFMText&) {}
    virtual void Write(const DXFText&) {}
    virtual void Write(const DXFArc&) {}
    virtual void Write(const DXFCircle&) {}
    virtual void Write(const DXFPolygon&) {}
    virtual void Write(const DXFPolyline&) {}
    virtual void Write(const DXFSolid&) {}
    virtual void Write(const DXFPoint&) {}
    virtual void Write(const DXFLine&) {}
};
