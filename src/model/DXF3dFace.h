#pragma once

#include "model/DXFEntity.h"

#include <array>

/// A face in space with three or four corners, in the order of its outline; a triangle has corners 2 and 3 in
/// one place.
class HALYARD_API DXF3dFace : public DXFEntity {
public:
    /// All corners at the origin.
    DXF3dFace() = default;
    DXF3dFace(const DXF3dFace&) = default;
    DXF3dFace(DXF3dFace&&) = default;
    DXF3dFace& operator=(const DXF3dFace&) = default;
    DXF3dFace& operator=(DXF3dFace&&) = default;

    /// Corner 0 to 3, not checked. Writing through the second form does not make the box anew: set corners
    /// before the first Extents().
    const GTL::Point3D<double>& operator[](int corner) const
    {
        return m_Corners[static_cast<std::size_t>(corner)];
    }
    GTL::Point3D<double>& operator[](int corner) { return m_Corners[static_cast<std::size_t>(corner)]; }

    DXF3dFace* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    const GTL::Extents3D<double>& Extents() const override;
    bool Clip(DXFClipContext& context) override;

private:
    std::array<GTL::Point3D<double>, 4> m_Corners;
    mutable GTL::Extents3D<double> m_Extents;
};
