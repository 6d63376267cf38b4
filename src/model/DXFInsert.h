#pragma once

#include "model/DXFEntity.h"

#include <string>

class DXF;
class DXFBlock;

/// A reference to a block of a document, placed by point, scale, rotation and extrusion, repeated in rows and
/// columns.
class HALYARD_API DXFInsert : public DXFEntity {
public:
    DXFInsert() = default;
    /// Rotation in degrees, counter-clockwise.
    DXFInsert(const std::wstring& blockName, const GTL::Point3D<double>& insertPoint, double rotation);

    /// Case-sensitive key in the document's block map.
    const std::wstring& BlockName() const { return m_BlockName; }
    void SetBlockName(const std::wstring& name);
    const GTL::Point3D<double>& InsertPoint() const { return m_InsertPoint; }
    void SetInsertPoint(const GTL::Point3D<double>& point);
    /// Degrees, counter-clockwise, as given.
    double Rotation() const { return m_Rotation; }
    void SetRotation(double degrees);
    const GTL::Point3D<double>& Scale() const { return m_Scale; }
    void SetScale(const GTL::Point3D<double>& scale);
    const GTL::Point3D<double>& Extrusion() const { return m_Extrusion; }
    void SetExtrusion(const GTL::Point3D<double>& extrusion);
    int GetRowCount() const { return m_RowCount; }
    void SetRowCount(int count) { m_RowCount = count; }
    int GetColumnCount() const { return m_ColumnCount; }
    void SetColumnCount(int count) { m_ColumnCount = count; }
    double GetRowSpacing() const { return m_RowSpacing; }
    void SetRowSpacing(double spacing) { m_RowSpacing = spacing; }
    double GetColumnSpacing() const { return m_ColumnSpacing; }
    void SetColumnSpacing(double spacing) { m_ColumnSpacing = spacing; }
    /// The document whose blocks resolve the name; not owned, may be null, must outlive its use.
    ::DXF* DXF() const { return m_DXF; }
    void SetDXF(::DXF* document);
    /// The block in the document, or null.
    const DXFBlock* Block() const;

    DXFInsert* Copy() const override;
    const wchar_t* Name() const override;
    void Write(DXFWriter& writer) const override;
    /// The rotation follows the mapped x axis; scales and spacings are multiplied by the lengths of the
    /// mapped axes, and a map that mirrors negates those along y. The map is taken in the object coordinates
    /// of the extrusion, which stays: what would tilt that plane is dropped.
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t) override;
    /// The insertion point, and the block's box moved by the base point (as it stands), turned, scaled and
    /// moved to the insertion point. Rows and columns do not enter. A block that inserts itself, directly or
    /// through others, counts itself as empty at the second visit.
    const GTL::Extents3D<double>& Extents() const override;
    /// Always false: inserts do not survive clipping.
    bool Clip(DXFClipContext& context) override;

private:
    friend class BlockBoxes;

    /// The insert's box when its block's box is the one given.
    GTL::Extents3D<double> ExtentsWith(const DXFBlock* block, GTL::Extents3D<double> blockBox) const;

    mutable GTL::Extents3D<double> m_Extents;
    GTL::Point3D<double> m_InsertPoint;
    GTL::Point3D<double> m_Extrusion{0, 0, 1};
    GTL::Point3D<double> m_Scale{1, 1, 1};
    std::wstring m_BlockName;
    double m_Rotation = 0;
    ::DXF* m_DXF = nullptr;
    int m_RowCount = 1;
    int m_ColumnCount = 1;
    double m_RowSpacing = 0;
    double m_ColumnSpacing = 0;
};
