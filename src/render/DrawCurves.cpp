// How a drawer draws arcs, circles, polylines and polygons.
#include "clip/CircleClipper.h"
#include "clip/CircleCrossings.h"
#include "clip/PolygonClipper.h"
#include "clip/PolylineClipper.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFPolygon.h"
#include "render/VisibleArcs.h"
#include "render/WinDXFDrawer.h"
#include "support/CPointMimic.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace {

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;
using V2 = GTL::Vector2D<double>;

/// Drawing units that chords may leave their arc by, and the smallest radius that is drawn.
constexpr double DEVIATION = 0.05;
/// The same in pixels, for arcs by pixel.
constexpr double PIXEL_DEVIATION = 0.125;
/// Radians of a chord at most, for arcs by pixel: an eighth of a turn.
constexpr double LONGEST_CHORD = MATH::TWOPI / 8;

const GTL::Vector3D<double> UP(0, 0, 1);

/// Whole steps of at most that size, in a range that needs no trust in either number.
int Steps(double count)
{
    if (!(count < WinDXFDrawer::MAX_ARC_STEPS)) return WinDXFDrawer::MAX_ARC_STEPS;
    return count > 1 ? static_cast<int>(count) : 1;
}

/// From the centre of a circle to a place on it; bearing in radians.
V2 SpokeAt(double radius, double bearing)
{
    return {radius * std::sin(bearing), radius * std::cos(bearing)};
}

/// `by` is the spoke of radius 1 at the bearing to turn by.
V2 Turned(const V2& spoke, const V2& by)
{
    return {spoke.X() * by.Y() + spoke.Y() * by.X(), spoke.Y() * by.Y() - spoke.X() * by.X()};
}

/// Vertices that are turned from one that was worked out by itself, that one included: a bit each.
constexpr int CHAIN = 64;

/// Pixels that a vertex within a chain may be off by. In units of 2^-53 radii, a turn adds less than 2.9 for
/// its products and sums and 1.6 for the sine and cosine that it turns by; angles of up to three turns of the
/// circle, at both ends of the chain, 40; so that the last of 64 is off by less than 2^9 of them. The same
/// part of the coordinates on the way to the pixel is more than their roundings.
double Drift(const GTL::Mapper2D<double, double>& mapper, const P2& center, double radius)
{
    constexpr double PART = 0x1p-44;
    const auto reach = [](const P2& p) {
        return std::fabs(p.X()) + std::fabs(p.Y());
    };
    const double units = std::fabs(radius) + reach(center) + reach(mapper.SourceCenter());
    return PART * (units * std::max(mapper.ScaleX(), mapper.ScaleY()) + reach(mapper.TargetCenter()));
}

/// Of a coordinate from the next whole number, by what truncation has left of it. What lies beyond the range
/// of pixels has the distance from that.
double DistanceFromWhole(double rest)
{
    return std::fabs(std::fabs(std::fabs(rest) - 0.5) - 0.5);
}

GTL::Polyline<P3> ClosedPath(const std::vector<P3>& ring)
{
    std::vector<P3> path;
    path.reserve(ring.size() + 1);
    path = ring;
    path.push_back(ring.front());
    return GTL::Polyline<P3>(std::move(path));
}

} // namespace

void WinDXFDrawer::Flush()
{
    if (m_Points.size() >= 2) m_DC->Polyline(m_Points.data(), static_cast<int>(m_Points.size()));
    m_Points.clear();
}

void WinDXFDrawer::DrawArc(P2 center, double radius, double start, double end)
{
    m_Points.clear();
    AppendArc(center, radius, start, end);
    Flush();
}

void WinDXFDrawer::AppendArc(const P2& center, double radius, double start, double end)
{
    if (!IsFinite(center) || !std::isfinite(radius)) return;
    if (m_Option.arcsByPixel) return AppendArcByPixel(center, radius, start, end);
    if (radius < DEVIATION) return;
    const double a0 = start * MATH::DTR;
    double a1 = end * MATH::DTR;
    if (a0 >= a1) a1 += MATH::TWOPI;
    const double widest = std::acos((radius - DEVIATION) / (radius + DEVIATION));
    const int steps = Steps((a1 - a0) / widest + 1);
    const double step = (a1 - a0) / steps;
    AppendVertices(center, radius, a0, step, 1);
    AppendVertices(center, radius, a0 + step / 2, step, steps);
    AppendVertices(center, radius, a1, step, 1);
}

/// Vertices from a bearing on, each a turn of so many radians after the one before: number i is what
/// SpokeAt(radius, first + i * turn) gives, to the pixel. Most are turned from the one before; where the
/// drift of that could matter, at coordinates next to whole pixels, a vertex is worked out by itself.
void WinDXFDrawer::AppendVertices(const P2& center, double radius, double first, double turn, int count)
{
    const std::size_t before = m_Points.size();
    m_Points.resize(before + static_cast<std::size_t>(count));
    CPoint* const points = m_Points.data() + before;
    if (count == 1) {
        *points = ToPixel(center + SpokeAt(radius, first));
        return;
    }
    const V2 step = SpokeAt(1, turn);
    const double doubt = Drift(m_Mapper, center, radius);
    for (int anchor = 0; anchor < count; anchor += CHAIN) {
        V2 spoke = SpokeAt(radius, first + anchor * turn);
        const int length = std::min(CHAIN, count - anchor);
        std::uint64_t doubtful = 0;
        for (int i = 0; i < length; ++i, spoke = Turned(spoke, step)) {
            const P2 place = m_Mapper.Map(center + spoke);
            const CPoint pixel = CPointMimic(place);
            points[anchor + i] = pixel;
            const bool isDoubtful =
                std::min(DistanceFromWhole(place.X() - pixel.x), DistanceFromWhole(place.Y() - pixel.y))
                <= doubt;
            doubtful |= std::uint64_t{isDoubtful} << i;
        }
        for (; doubtful != 0; doubtful &= doubtful - 1) {
            const int i = anchor + std::countr_zero(doubtful);
            points[i] = ToPixel(center + SpokeAt(radius, first + i * turn));
        }
    }
}

/// By the angle between two vertices, 2 acos(1 - d / r) for a deviation d, which is nearly 2 sqrt(2 d / r).
void WinDXFDrawer::AppendArcByPixel(const P2& center, double radius, double start, double end)
{
    const double a0 = start * MATH::DTR;
    double sweep = (end - start) * MATH::DTR;
    if (sweep <= 0) sweep += MATH::TWOPI;
    const double pixels = std::fabs(radius) * std::max(m_Mapper.ScaleX(), m_Mapper.ScaleY());
    const double widest = std::min(2 * std::sqrt(2 * PIXEL_DEVIATION / pixels), LONGEST_CHORD);
    const int steps = Steps(std::ceil(sweep / widest));
    AppendVertices(center, radius, a0, sweep / steps, steps + 1);
}

void WinDXFDrawer::DrawVisibleArc(const P2& center, double radius, double start, double sweep)
{
    if (!IsFinite(center) || !std::isfinite(radius)) return;
    const double margin = m_PenWidth / 2.0 + 2;
    const double dx = m_Mapper.UnmapX(margin);
    const double dy = m_Mapper.UnmapY(margin);
    const Window window({m_Visible.MinX() - dx, m_Visible.MinY() - dy},
                        {m_Visible.MaxX() + dx, m_Visible.MaxY() + dy});
    for (const VisibleArcs::Piece& piece : VisibleArcs(window, center, radius, start, sweep))
        DrawArc(center, radius, piece.start, piece.end);
}

void WinDXFDrawer::Write(const DXFCircle& circle)
{
    if (m_IsTransforming) return DrawPlaced(circle);
    if (m_Option.extrusions && !(circle.Extrusion() == UP)) return DrawPlaced(circle);
    if (m_Option.visibleParts) {
        CreatePen(circle);
        return DrawVisibleArc(circle.Center(), circle.Radius(), 0, 360);
    }
    std::vector<GTL::Arc<P3>> arcs;
    const GTL::ClipResult result = GTL::CircleClipper<P3>(m_Visible).Clip(circle.GetCircle(), arcs);
    if (result == GTL::Outside) return;
    CreatePen(circle);
    if (result == GTL::Inside) return DrawArc(circle.Center(), circle.Radius(), 0, 360);
    for (const GTL::Arc<P3>& arc : arcs)
        DrawArc(arc.Center(), arc.Radius(), arc.StartAngle().Get(), arc.EndAngle().Get());
}

void WinDXFDrawer::Write(const DXFArc& arc)
{
    if (m_IsTransforming) return DrawPlaced(arc);
    if (m_Option.extrusions && !(arc.Extrusion() == UP)) return DrawPlaced(arc);
    CreatePen(arc);
    if (m_Option.visibleParts)
        DrawVisibleArc(arc.Center(), arc.Radius(), arc.StartAngle(), arc.GetArc().Sweep());
    else
        DrawArc(arc.Center(), arc.Radius(), arc.StartAngle(), arc.EndAngle());
}

void WinDXFDrawer::Write(const DXFPolyline& polyline)
{
    if (m_IsTransforming) return DrawPlaced(polyline);
    if (polyline.NumPoints() > 1) DrawPieces(polyline.GetPoly(), polyline);
}

void WinDXFDrawer::DrawPieces(const GTL::Polyline<P3>& path, const DXFLineBase& entity)
{
    const Window& window = m_Option.visibleParts ? m_Around : m_Visible;
    if (m_Option.visibleParts && !path.HasBulges() && MissesView(path.VertexBox())) return;
    const GTL::ClipResult result = GTL::PolylineClipper<P3>(window).Clip(path, m_Pieces);
    if (result == GTL::Outside) return;
    CreatePen(entity);
    if (result == GTL::Inside) return DrawPath(path);
    for (const GTL::Polyline<P3>& piece : m_Pieces) DrawPath(piece);
}

void WinDXFDrawer::DrawPath(const GTL::Polyline<P3>& path)
{
    m_Points.clear();
    const std::vector<P3>& vertices = path.Vertices();
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const P3& vertex = vertices[i];
        if (!IsFinite(vertex)) {
            Flush();
            continue;
        }
        m_Points.push_back(ToPixel(vertex));
        if (vertex.B() != 0 && i + 1 < vertices.size())
            AppendBulge(vertex, vertices[i + 1], m_Option.arcsByPixel);
    }
    Flush();
}

/// An arc is a line of its own, or goes on with the line that is being put together.
void WinDXFDrawer::AppendBulge(const P3& from, const P3& to, bool joined)
{
    const auto arc = GTL::BulgeArc(from, to, from.B());
    if (!arc) return;
    const double start = arc->StartAngle().Get();
    const double end = arc->EndAngle().Get();
    if (!joined) {
        Flush();
        return DrawArc(arc->Center(), arc->Radius(), start, end);
    }
    const auto begin = static_cast<std::ptrdiff_t>(m_Points.size());
    AppendArc(arc->Center(), arc->Radius(), start, end);
    if (from.B() > 0) std::reverse(m_Points.begin() + begin, m_Points.end());
}

void WinDXFDrawer::Write(const DXFPolygon& polygon)
{
    if (m_IsTransforming) return DrawPlaced(polygon);
    if (polygon.NumPoints() < 2) return;
    if (m_Option.polygonBulges) return DrawPieces(ClosedPath(polygon.GetPoly().Vertices()), polygon);
    const GTL::Polyline<P3>& ring = polygon.GetPoly();
    const GTL::ClipResult result = GTL::PolygonClipper<P3>(m_Visible).Clip(ring, m_Pieces);
    if (result == GTL::Outside) return;
    CreatePen(polygon);
    if (result == GTL::Inside) return DrawClosed(polygon);
    for (const GTL::Polyline<P3>& piece : m_Pieces) {
        m_Points.clear();
        for (const P3& vertex : piece.Vertices()) m_Points.push_back(ToPixel(vertex));
        if (m_Points.size() >= 3) Flush();
    }
    m_Points.clear();
}

void WinDXFDrawer::DrawClosed(const DXFPolygon& polygon)
{
    m_Points.clear();
    for (const P3& vertex : polygon.GetPoly().Vertices())
        if (IsFinite(vertex)) m_Points.push_back(ToPixel(vertex));
    if (!m_Points.empty()) m_Points.push_back(m_Points.front());
    Flush();
}
