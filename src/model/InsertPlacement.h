#pragma once

#include "model/DXFInsert.h"

/// The map from the object coordinates of an extrusion direction to the world: the arbitrary axis rule of the
/// published DXF reference. With N of unit length and Wy = (0, 1, 0), Wz = (0, 0, 1): if |Nx| < 1/64 and
/// |Ny| < 1/64 then Ax = Wy x N, otherwise Ax = Wz x N; Ay = N x Ax; all of unit length. The identity for
/// (0, 0, 1) and for a direction of no or no finite length.
HALYARD_API GTL::Transformation<GTL::Point3D<double>> ObjectToWorld(const GTL::Vector3D<double>& extrusion);

/// Where an insert truly puts its block, as the published DXF reference has it. A point of the block is moved
/// by the negative of the base point, scaled, offset by the cell of its row and column, turned
/// counter-clockwise by the rotation, moved by the insertion point, and taken from the extrusion's object
/// coordinates to those of whatever holds the insert. Drawing and exploding share it.
class HALYARD_API InsertPlacement {
public:
    using Map = GTL::Transformation<GTL::Point3D<double>>;

    /// The base point is that of the insert's block; the origin when there is no block.
    explicit InsertPlacement(const DXFInsert& insert);
    /// For those who have looked the block up already.
    InsertPlacement(const DXFInsert& insert, const GTL::Point3D<double>& basePoint);

    /// At least 1 each; a count below 1 counts as 1.
    int Rows() const { return m_Rows; }
    int Columns() const { return m_Columns; }
    /// Block coordinates to those of whatever holds the insert, for one cell, counted from 0: rows lie along
    /// the insert's y axis, columns along its x axis, both turned with the insert, not scaled.
    Map At(int row, int column) const;

private:
    Map m_Local;  ///< base point, scale
    Map m_Turned; ///< rotation, insertion point, extrusion
    double m_RowSpacing;
    double m_ColumnSpacing;
    int m_Rows;
    int m_Columns;
};
