#include "render/DrawnExtents.h"

#include "model/DXF.h"
#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "model/InsertPlacement.h"

#include <algorithm>
#include <utility>

namespace {

using Box = GTL::Extents3D<double>;
using P3 = GTL::Point3D<double>;

/// Blocks that are deeper than a drawer goes are not measured either.
constexpr int MAX_DEPTH = 64;

/// The box of a curve, by that of its whole circle when it has to be taken to the world.
Box CurveBox(const Box& level, const P3& center, double radius, const GTL::Vector3D<double>& extrusion)
{
    if (extrusion == GTL::Vector3D<double>(0, 0, 1)) return level;
    Box box;
    box.Update(center.X() - radius, center.Y() - radius, center.Z());
    box.Update(center.X() + radius, center.Y() + radius, center.Z());
    box.Transform(ObjectToWorld(extrusion));
    return box;
}

/// The box of all cells: those at the corners of the array hold the others between them.
Box ArrayBox(const InsertPlacement& placement, const Box& cell)
{
    Box box;
    for (const int row : {0, placement.Rows() - 1}) {
        for (const int column : {0, placement.Columns() - 1}) {
            Box image = cell;
            image.Transform(placement.At(row, column));
            box.Update(image);
        }
    }
    return box;
}

} // namespace

Box DrawnExtents::Of(const DXF& document)
{
    Box box;
    for (std::size_t i = 0; i < document.NumLayers(); ++i)
        if (document[i]->IsVisible()) box.Update(Of(*document[i]));
    return box;
}

Box DrawnExtents::Of(const DXFLayer& layer)
{
    const Box outer = std::exchange(m_Box, Box());
    for (std::size_t i = 0; i < layer.NumEntities(); ++i) layer[i]->Write(*this);
    return std::exchange(m_Box, outer);
}

Box DrawnExtents::Of(const DXFEntity& entity)
{
    const Box outer = std::exchange(m_Box, Box());
    entity.Write(*this);
    return std::exchange(m_Box, outer);
}

const DrawnExtents::BlockBox& DrawnExtents::Measure(const DXFBlock& block, int depth)
{
    const auto [place, isNew] = m_Blocks.try_emplace(&block);
    BlockBox& known = place->second;
    if (!isNew) return known;
    known.isOpen = true;
    const Box outerBox = std::exchange(m_Box, Box());
    const bool outerIsWhole = std::exchange(m_IsWhole, true);
    const int outerDepth = std::exchange(m_Depth, depth);
    MeasureContents(*block.GetDXF());
    m_Depth = outerDepth;
    known.isWhole = std::exchange(m_IsWhole, outerIsWhole);
    known.box = std::exchange(m_Box, outerBox);
    known.isOpen = false;
    return known;
}

void DrawnExtents::MeasureContents(const DXF& contents)
{
    for (std::size_t i = 0; i < contents.NumLayers(); ++i) {
        const DXFLayer& layer = *contents[i];
        if (!layer.IsVisible()) continue;
        for (std::size_t j = 0; j < layer.NumEntities(); ++j) layer[j]->Write(*this);
    }
}

void DrawnExtents::Write(const DXFInsert& insert)
{
    const DXFBlock* block = insert.Block();
    if (!block) return;
    const auto known = m_Blocks.find(block);
    const bool isOpen = known != m_Blocks.end() && known->second.isOpen;
    if (isOpen || m_Depth >= MAX_DEPTH) {
        m_IsWhole = false;
        return;
    }
    const BlockBox& inner = Measure(*block, m_Depth + 1);
    m_IsWhole = m_IsWhole && inner.isWhole;
    if (inner.box.IsValid()) m_Box.Update(ArrayBox(InsertPlacement(insert, block->BasePoint()), inner.box));
}

void DrawnExtents::Write(const DXFCircle& circle)
{
    m_Box.Update(CurveBox(circle.Extents(), circle.Center(), circle.Radius(), circle.Extrusion()));
}

void DrawnExtents::Write(const DXFArc& arc)
{
    m_Box.Update(CurveBox(arc.Extents(), arc.Center(), arc.Radius(), arc.Extrusion()));
}

void DrawnExtents::Write(const DXF3dFace& face)
{
    m_Box.Update(face.Extents());
}

void DrawnExtents::Write(const DXFImage& image)
{
    m_Box.Update(image.Extents());
}

void DrawnExtents::Write(const DXFMText& text)
{
    m_Box.Update(text.Extents());
}

void DrawnExtents::Write(const DXFText& text)
{
    m_Box.Update(text.Extents());
}

void DrawnExtents::Write(const DXFPolygon& polygon)
{
    m_Box.Update(polygon.Extents());
}

void DrawnExtents::Write(const DXFPolyline& polyline)
{
    m_Box.Update(polyline.Extents());
}

void DrawnExtents::Write(const DXFSolid& solid)
{
    m_Box.Update(solid.Extents());
}

void DrawnExtents::Write(const DXFPoint& point)
{
    m_Box.Update(point.Extents());
}

void DrawnExtents::Write(const DXFLine& line)
{
    m_Box.Update(line.Extents());
}
