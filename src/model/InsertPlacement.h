#pragma once

#include "model/DXFInsert.h"

/// The map from the object coordinates of an extrusion direction to the world: the arbitrary axis rule of the published
/// DXF reference. With Wx = (1, 0, 0), Wy, Wz: if |Nx| < 1/64 and |Ny| < 1/64 then Ax = Wy x N, otherwise Ax = Wz x N;
/// Ay = N x Ax; all of unit length. The identity for (0, 0, 1) and for a direction of no or no finite length.
HALYARD_API GTL::Transformation<GTL::Point3D<double>> ObjectToWorld(const GTL::Vector3D<double>& extrusion);

/// Where an insert truly puts its block: the base point on the insertion point, then scale, rotation, the cell of the row
/// and column, and the extrusion, as the published DXF reference has it. Drawing and exploding share it.
class HALYARD_API InsertPlacement {
public:
    explicit InsertPlacement(const DXFInsert& insert);

    /// At least 1 each; a count below 1 counts as 1.
    int Rows() const { return m_Rows; }
    int Columns() const { return m_Columns; }
    /// Block coordinates to those of whatever holds the insert, for one cell: rows along the insert's y axis, columns
    /// along its x axis, both turned with the insert, not scaled.
    GTL::Transformation<GTL::Point3D<double>> At(int row, int column) const;

private:
    GTL::Transformation<GTL::Point3D<double>> m_Local;  ///< base point, scale
    GTL::Transformation<GTL::Point3D<double>> m_Turned; ///< rotation, insertion point, extrusion
    double m_RowSpacing;
    double m_ColumnSpacing;
    int m_Rows;
    int m_Columns;
};
