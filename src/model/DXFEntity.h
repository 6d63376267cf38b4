#pragma once

#include "platform/Export.h"
#include "support/DXFColor.h"
#include "support/Extents.h"
#include "support/Transformation.h"

struct DXFClipContext;
class DXFWriter;

/// Everything that can be drawn and lives in a layer. Coordinates are drawing units, x to the right, y up.
/// Entities are values: a copy shares nothing with its source. Not safe for use from several threads at once:
/// even Extents() fills a cache.
class HALYARD_API DXFEntity {
public:
    virtual ~DXFEntity() = default;
    /// A new copy of the same class, owned by the caller.
    virtual DXFEntity* Copy() const = 0;
    /// A constant text for each class: "LINE", "POLYLINE" (polygons and lightweight polylines too), ...
    virtual const wchar_t* Name() const = 0;
    /// Calls the writer's overload for this class.
    virtual void Write(DXFWriter& writer) const = 0;
    /// Maps the geometry in place.
    virtual void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) = 0;
    /// The box of the entity, computed on first use after a change; invalid when it has no geometry.
    virtual const GTL::Extents3D<double>& Extents() const = 0;
    /// Cuts the entity down to the context's rectangle; pieces beyond the first are added to the context's
    /// layer. False means that nothing of the entity itself remains and the caller destroys it.
    virtual bool Clip(DXFClipContext& context) = 0;

    /// Device colour word 0x00BBGGRR.
    const unsigned long& Color() const { return m_Color; }
    void SetColor(const unsigned long& color) { m_Color = color; }
    void SetColor(const DXFColor& color) { m_Color = color; }

protected:
    DXFEntity() = default;
    explicit DXFEntity(const unsigned long& color) : m_Color(color) {}
    DXFEntity(const DXFEntity&) = default;
    DXFEntity& operator=(const DXFEntity&) = default;

private:
    unsigned long m_Color = 0;
};
