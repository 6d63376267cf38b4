// How a drawer draws what inserts show.
#include "model/DXF.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "model/InsertPlacement.h"
#include "render/WinDXFDrawer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace {

using Map = GTL::Transformation<GTL::Point3D<double>>;

/// By the plain rules: the base point as it stands.
Map PlainPlacement(const DXFInsert& insert, const DXFBlock& block)
{
    const auto& base = block.BasePoint();
    const auto& scale = insert.Scale();
    const auto& at = insert.InsertPoint();
    const auto& extrusion = insert.Extrusion();
    Map map;
    map.Translate(base.X(), base.Y(), base.Z())
        .RotateZ(Angle(insert.Rotation()))
        .Scale(scale.X(), scale.Y(), scale.Z())
        .Translate(at.X(), at.Y(), at.Z());
    const double planar = std::hypot(extrusion.X(), extrusion.Y());
    if (planar == 0) return map;
    return map.RotateY(Angle(-std::atan2(planar, extrusion.Z()) * MATH::RTD))
        .RotateZ(Angle(std::atan2(extrusion.X(), extrusion.Y()) * MATH::RTD));
}

} // namespace

/// Draws an image of the entity that shares the drawer's other state.
template <class Entity>
void WinDXFDrawer::DrawTransformed(const Entity& entity)
{
    Entity image(entity);
    image.Transform(m_Transformation);
    m_IsTransforming = false;
    Write(image);
    m_IsTransforming = true;
}

template void WinDXFDrawer::DrawTransformed(const DXFPoint&);
template void WinDXFDrawer::DrawTransformed(const DXFLine&);
template void WinDXFDrawer::DrawTransformed(const DXFSolid&);
template void WinDXFDrawer::DrawTransformed(const DXFText&);
template void WinDXFDrawer::DrawTransformed(const DXFMText&);
template void WinDXFDrawer::DrawTransformed(const DXFImage&);

/// Kinds that hold arcs: composed placements may change them to another kind.
void WinDXFDrawer::DrawPlaced(const DXFEntity& entity)
{
    const bool wasTransforming = std::exchange(m_IsTransforming, false);
    std::unique_ptr<DXFEntity> image;
    if (m_Option.composeInserts || !wasTransforming) {
        constexpr std::uint64_t ANY = std::numeric_limits<std::uint64_t>::max();
        image = m_Placement(entity, wasTransforming ? m_Transformation : Map(), ANY);
    } else {
        image.reset(entity.Copy());
        image->Transform(m_Transformation);
    }
    if (image) image->Write(*this);
    m_IsTransforming = wasTransforming;
}

void WinDXFDrawer::Write(const DXFInsert& insert)
{
    const DXFBlock* block = insert.Block();
    if (!block) {
        ++m_Report.missingBlocks;
        return;
    }
    if (!Enter(*block)) return;
    if (m_Option.composeInserts)
        DrawComposedInsert(insert, *block);
    else
        DrawPlainInsert(insert, *block);
    m_Path.pop_back();
}

bool WinDXFDrawer::Enter(const DXFBlock& block)
{
    const bool isOpen = std::find(m_Path.begin(), m_Path.end(), &block) != m_Path.end();
    if (isOpen || m_Path.size() >= MAX_DEPTH) {
        ++m_Report.recursive;
        return false;
    }
    m_Path.push_back(&block);
    return true;
}

bool WinDXFDrawer::GoesOn()
{
    if (m_VisitsLeft == 0) m_Report.limitReached = true;
    if (m_VisitsLeft == 0 || (m_KeepGoing && !*m_KeepGoing)) return false;
    --m_VisitsLeft;
    return true;
}

void WinDXFDrawer::DrawPlainInsert(const DXFInsert& insert, const DXFBlock& block)
{
    m_IsTransforming = true;
    m_Transformation = PlainPlacement(insert, block);
    const DXF& contents = *block.GetDXF();
    for (std::size_t i = 0; i < contents.NumLayers(); ++i) {
        const DXFLayer& layer = *contents[i];
        for (std::size_t j = 0; j < layer.NumEntities() && GoesOn(); ++j) layer[j]->Write(*this);
    }
    m_IsTransforming = false;
}

void WinDXFDrawer::DrawComposedInsert(const DXFInsert& insert, const DXFBlock& block)
{
    const DrawnExtents::BlockBox& known = m_Boxes.Of(block);
    if (known.isWhole && !known.box.IsValid()) return;
    const bool wasTransforming = m_IsTransforming;
    const Map outer = m_Transformation;
    const Look outerLook = m_Look;
    if (!wasTransforming)
        m_Look = m_Layer ? Look{m_Layer->Color(), m_Layer->Style(), m_Layer->Width()}
                         : Look{insert.Color(), LineInfo::CONTINUOUS, LineInfo().Width()};
    const InsertPlacement placement(insert, block.BasePoint());
    bool goesOn = true;
    for (int row = 0; row < placement.Rows() && goesOn; ++row) {
        for (int column = 0; column < placement.Columns() && goesOn; ++column) {
            goesOn = GoesOn();
            if (!goesOn) break;
            Map map = placement.At(row, column);
            if (wasTransforming) map.Append(outer);
            GTL::Extents3D<double> box = known.box;
            box.Transform(map);
            if (!known.isWhole || !MissesView(box)) DrawCell(block, map, insert);
        }
    }
    m_Transformation = outer;
    m_IsTransforming = wasTransforming;
    m_Look = outerLook;
}

void WinDXFDrawer::DrawCell(const DXFBlock& block, const Map& map, const DXFInsert& insert)
{
    m_Transformation = map;
    m_IsTransforming = true;
    const DXF& contents = *block.GetDXF();
    for (std::size_t i = 0; i < contents.NumLayers(); ++i)
        if (contents[i]->IsVisible()) DrawLayer(*contents[i], insert);
}

/// What lies on layer "0" of a block looks as the insert does; another layer is that of the document.
void WinDXFDrawer::DrawLayer(const DXFLayer& layer, const DXFInsert& insert)
{
    const Look inherited = m_Look;
    if (layer.Name() != L"0") {
        const DXF* document = insert.DXF();
        const DXFLayer* own = document ? (*document)[layer.HashName()] : nullptr;
        if (own && !own->IsVisible()) return;
        if (!own) own = &layer;
        m_Look = {own->Color(), own->Style(), own->Width()};
    }
    for (std::size_t j = 0; j < layer.NumEntities() && GoesOn(); ++j) layer[j]->Write(*this);
    m_Look = inherited;
}
