// What clipping does to each kind of entity, to a layer and to a drawing.
#include "clip/ArcClipper.h"
#include "clip/CircleClipper.h"
#include "clip/DXFClipContext.h"
#include "clip/DXFPolygonClipper.h"
#include "clip/LineClipper.h"
#include "clip/PolylineClipper.h"
#include "model/DXF.h"
#include "model/DXF3dFace.h"
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
#include "model/FetchAhead.h"

#include <algorithm>
#include <memory>

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;
using Window = GTL::Extents2D<double>;
using Pieces = std::vector<GTL::Polyline<P3>>;

namespace {

/// Without a layer in the context the piece has no place and goes.
void AddPiece(DXFClipContext& context, std::unique_ptr<DXFEntity> piece)
{
    if (context.layer) context.layer->Add(piece.release());
}

bool HoldsBox(const Window& window, const TextRectComp::Rect& box)
{
    const GTL::Clipper<P2> clipper(window);
    for (std::size_t corner = 0; corner < 4; ++corner)
        if (clipper.Classify(box[corner]) == GTL::Outside) return false;
    return true;
}

/// Appends what remains of a triangle, the whole of it when it lies inside.
GTL::ClipResult CutTriangle(const Window& window, const P3& a, const P3& b, const P3& c, Pieces& pieces)
{
    GTL::Polyline<P3> triangle;
    for (const P3& corner : {a, b, c}) triangle.PushBack(P3(corner.X(), corner.Y(), corner.Z()));
    const GTL::Clipper<P3> clipper(window);
    if (clipper.Classify(a) == GTL::Inside && clipper.Classify(b) == GTL::Inside
        && clipper.Classify(c) == GTL::Inside) {
        pieces.push_back(std::move(triangle));
        return GTL::Inside;
    }
    Pieces found;
    const GTL::ClipResult result = GTL::PolygonClipper<P3>(window).Clip(triangle, found);
    std::move(found.begin(), found.end(), std::back_inserter(pieces));
    return result;
}

} // namespace

bool DXFPoint::Clip(DXFClipContext& context)
{
    return context.xmin < X() && X() < context.xmax && context.ymin < Y() && Y() < context.ymax;
}

bool DXFLine::Clip(DXFClipContext& context)
{
    const Window window = context;
    GTL::Line<P3> cut;
    const GTL::ClipResult result = GTL::LineClipper<P3>(window).Clip(m_Line, cut);
    if (result == GTL::Clipped) Set(cut.Start(), cut.End());
    return result != GTL::Outside;
}

bool DXFPolyline::Clip(DXFClipContext& context)
{
    const Window window = context;
    Pieces pieces;
    const GTL::ClipResult result = GTL::PolylineClipper<P3>(window).Clip(m_Polyline, pieces);
    if (result == GTL::Inside) return true;
    if (pieces.empty()) return false;
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        auto piece = std::make_unique<DXFPolyline>(std::move(pieces[i]));
        piece->SetLWPolyLine(m_Lightweight);
        piece->SetElevation(m_Elevation);
        piece->SetStyle(Style());
        piece->SetWidth(Width());
        piece->SetColor(Color());
        AddPiece(context, std::move(piece));
    }
    SetPoly(std::move(pieces.front()));
    return true;
}

bool DXFPolygon::Clip(DXFClipContext& context)
{
    const Window window = context;
    Pieces pieces;
    const GTL::ClipResult result = GTL::DXFPolygonClipper(window).Clip(GetPoly(), pieces);
    if (result == GTL::Inside) return true;
    if (pieces.empty()) return false;
    for (std::size_t i = 1; i < pieces.size(); ++i)
        AddPiece(context, std::make_unique<DXFPolygon>(GTL::Polygon<P3>(pieces[i])));
    SetPoly(std::move(pieces.front()));
    return true;
}

bool DXFCircle::Clip(DXFClipContext& context)
{
    const Window window = context;
    std::vector<GTL::Arc<P3>> arcs;
    const GTL::ClipResult result = GTL::CircleClipper<P3>(window).Clip(m_Circle, arcs);
    for (const GTL::Arc<P3>& arc : arcs) AddPiece(context, std::make_unique<DXFArc>(arc));
    return result == GTL::Inside;
}

bool DXFArc::Clip(DXFClipContext& context)
{
    const Window window = context;
    std::vector<GTL::Arc<P3>> arcs;
    const GTL::ClipResult result = GTL::ArcClipper<P3>(window).Clip(m_Arc, arcs);
    if (result == GTL::Inside) return true;
    if (arcs.empty()) return false;
    for (std::size_t i = 1; i < arcs.size(); ++i) AddPiece(context, std::make_unique<DXFArc>(arcs[i]));
    m_Arc = arcs.front();
    m_Extents.Reset();
    return true;
}

bool DXFSolid::Clip(DXFClipContext& context)
{
    const Window window = context;
    const auto& [first, second, third, fourth] = m_Corners;
    Pieces pieces;
    const GTL::ClipResult resultA = CutTriangle(window, first, second, third, pieces);
    const GTL::ClipResult resultB =
        third == fourth ? resultA : CutTriangle(window, fourth, second, third, pieces);
    if (resultA == GTL::Inside && resultB == GTL::Inside) return true;
    for (const GTL::Polyline<P3>& piece : pieces) {
        for (std::size_t i = 2; i < piece.NumPoints(); ++i) {
            auto triangle = std::make_unique<DXFSolid>();
            triangle->m_Corners = {piece[0], piece[i - 1], piece[i], piece[i]};
            triangle->SetColor(Color());
            AddPiece(context, std::move(triangle));
        }
    }
    return false;
}

bool DXF3dFace::Clip(DXFClipContext& context)
{
    DXFSolid solid;
    solid[0] = m_Corners[0];
    solid[1] = m_Corners[1];
    solid[2] = m_Corners[3];
    solid[3] = m_Corners[2];
    solid.SetColor(Color());
    return solid.Clip(context);
}

bool DXFText::Clip(DXFClipContext& context)
{
    const Window window = context;
    const P2& position = Position();
    return window.Classify(position) != GTL::CLS::OUTSIDE && HoldsBox(window, PlacedRectangle());
}

bool DXFMText::Clip(DXFClipContext& context)
{
    return HoldsBox(context, PlacedRectangle());
}

bool DXFImage::Clip(DXFClipContext& context)
{
    const Window window = context;
    Pieces pieces;
    const GTL::Polyline<P3> outline(Outline());
    const GTL::ClipResult result = GTL::DXFPolygonClipper(window).Clip(outline, pieces);
    if (result == GTL::Inside) return true;
    const double lengthU = std::hypot(m_UVector.X(), m_UVector.Y());
    const double lengthV = std::hypot(m_VVector.X(), m_VVector.Y());
    if (pieces.empty() || pieces.front().NumPoints() < 3 || !(lengthU > 0 && lengthV > 0)) return false;

    // The inverse of insertion + u U + v V for vectors that stand at right angles.
    std::vector<P2> boundary;
    for (const P3& vertex : pieces.front().Vertices()) {
        const double dx = vertex.X() - m_InsertPoint.X();
        const double dy = vertex.Y() - m_InsertPoint.Y();
        boundary.emplace_back(
            dx * m_UVector.X() / (lengthU * lengthU) - dy * m_VVector.X() / (lengthU * lengthV),
            dy * m_VVector.Y() / (lengthV * lengthV) - dx * m_UVector.Y() / (lengthU * lengthV));
    }
    SetClipBoundary(CLIP_POLYGON, std::move(boundary));
    return true;
}

bool DXFInsert::Clip(DXFClipContext&)
{
    return false;
}

bool DXFLayer::Clip(DXFClipContext& context, const std::atomic<bool>& keepGoing)
{
    // A box that is not known settles nothing, and finding it would cost as much as the walk.
    const Window window = context;
    if (m_Extents.IsValid() && window.Classify(Window(m_Extents)) == GTL::CLS::OUTSIDE) {
        Clear();
        return false;
    }
    MakePrivate();
    Entities pending;
    pending.swap(*m_Entities);
    context.layer = this;
    bool run = true;
    for (std::size_t i = 0; i < pending.size(); ++i) {
        FetchAhead(pending, i, pending.size());
        // Entities that a cleared flag leaves unvisited are dropped.
        std::unique_ptr<DXFEntity> entity(pending[i]);
        run = run && keepGoing;
        if (run && entity->Clip(context)) m_Entities->push_back(entity.release());
    }
    context.layer = nullptr;
    m_Extents.Reset();
    Touch();
    return !m_Entities->empty();
}

void DXF::Clip(DXFClipContext& context, const std::atomic<bool>& keepGoing)
{
    std::size_t kept = 0;
    std::size_t reached = 0;
    for (; reached < m_Layers.size() && keepGoing; ++reached) {
        DXFLayer* layer = m_Layers[reached];
        if (layer->Clip(context, keepGoing))
            m_Layers[kept++] = layer;
        else
            Forget(layer);
    }
    const auto place = [this](std::size_t i) {
        return m_Layers.begin() + static_cast<std::ptrdiff_t>(i);
    };
    m_Layers.erase(place(kept), place(reached));
}
