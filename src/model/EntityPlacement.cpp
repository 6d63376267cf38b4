#include "model/EntityPlacement.h"

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
#include <cmath>

namespace {

using P = GTL::Point3D<double>;
using Vector = GTL::Vector3D<double>;
using Map = EntityPlacement::Map;

/// What a map makes of the plane XY.
struct Plane {
    explicit Plane(const Map& map) : x(map.ApplyLinear({1, 0, 0})), y(map.ApplyLinear({0, 1, 0}))
    {
        const double xLength = x.Length();
        const double yLength = y.Length();
        const double tolerance = EntityPlacement::SIMILARITY_TOLERANCE * std::max(xLength, yLength);
        scale = xLength / 2 + yLength / 2;
        const bool uneven = std::fabs(xLength - yLength) > tolerance;
        const bool tilted = std::fabs(x.Z()) > tolerance || std::fabs(y.Z()) > tolerance;
        const bool skewed = std::fabs((x * (1 / scale)).Dot(y)) > tolerance;
        keepsAngles = !uneven && !tilted && !skewed;
        mirrors = x.X() * y.Y() - x.Y() * y.X() < 0;
    }

    /// What stands at (right, up) from a centre, given the image of the centre.
    P At(const P& center, double right, double up) const { return center + x * right + y * up; }

    Vector x; ///< images of the unit vectors
    Vector y;
    double scale;     ///< of lengths, where the map keeps angles
    bool keepsAngles; ///< the image is parallel to XY and no circle becomes an ellipse; also where nothing is
                      ///< finite
    bool mirrors;     ///< seen from above
};

/// Number of chords that stand for an arc of so many radians, at least 1. The height of an arc of the sweep a
/// above its chord is r (1 - cos a/2) = 2 r sin^2 a/4.
std::size_t Chords(double sweep)
{
    const double height = EntityPlacement::CHORD_TOLERANCE * std::min(1.0, sweep);
    const double chords = sweep / (4 * std::asin(std::sqrt(height / 2)));
    return chords > 1 ? static_cast<std::size_t>(std::ceil(chords)) : 1;
}

/// The chords of a whole circle; its quarters begin at vertices.
std::size_t CircleChords()
{
    return (Chords(MATH::TWOPI) + 3) / 4 * 4;
}

/// The part of a polyline from one vertex to the next, before the map.
struct Segment {
    Segment(const P& start, const P& end) : from(start), to(end)
    {
        const auto arc = GTL::BulgeArc(from, to, from.B());
        if (!arc || !std::isfinite(arc->Center().X()) || !std::isfinite(arc->Center().Y())) return;
        center = arc->Center();
        sweep = 4 * std::atan(from.B());
        chords = Chords(std::fabs(sweep));
    }

    /// The end of a chord that is not the last: from the start turned about the centre, z on the way to the
    /// end.
    P ChordEnd(std::size_t chord) const
    {
        const double part = static_cast<double>(chord) / static_cast<double>(chords);
        const double s = std::sin(part * sweep);
        const double c = std::cos(part * sweep);
        const double dx = from.X() - center.X();
        const double dy = from.Y() - center.Y();
        return {center.X() + c * dx - s * dy, center.Y() + s * dx + c * dy,
                from.Z() + part * (to.Z() - from.Z())};
    }

    const P& from;
    const P& to;
    P center;
    double sweep = 0; ///< radians, positive counter-clockwise
    std::size_t chords = 1;
};

/// The segment that begins at a vertex; at the end of an open chain a straight one of no length.
Segment SegmentAt(const std::vector<P>& vertices, std::size_t index, bool closed)
{
    const P& from = vertices[index];
    if (index + 1 < vertices.size()) return {from, vertices[index + 1]};
    return {from, closed ? vertices.front() : from};
}

std::size_t ChordCount(const std::vector<P>& vertices, bool closed)
{
    std::size_t chords = 0;
    for (std::size_t i = 0; i < vertices.size(); ++i) chords += SegmentAt(vertices, i, closed).chords;
    return chords;
}

std::vector<P> WithBulges(const std::vector<P>& vertices, const Map& map, bool mirrors)
{
    std::vector<P> image;
    image.reserve(vertices.size());
    for (const P& vertex : vertices) {
        image.push_back(map.Apply(vertex));
        if (mirrors) image.back().B(0 - vertex.B());
    }
    return image;
}

std::vector<P> WithChords(const std::vector<P>& vertices, const Map& map, bool closed, std::size_t count)
{
    std::vector<P> image;
    image.reserve(count);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const Segment segment = SegmentAt(vertices, i, closed);
        image.push_back(map.Apply(segment.from));
        image.back().B(0);
        for (std::size_t chord = 1; chord < segment.chords; ++chord)
            image.push_back(map.Apply(segment.ChordEnd(chord)));
    }
    return image;
}

bool IsLevel(const std::vector<P>& vertices)
{
    return std::all_of(vertices.begin(), vertices.end(),
                       [&](const P& p) { return MATH::equal(p.Z(), vertices.front().Z()); });
}

template <class Kind>
std::unique_ptr<Kind> LookingLike(std::unique_ptr<Kind> image, const DXFLineBase& source)
{
    image->SetStyle(source.Style());
    image->SetWidth(source.Width());
    image->SetColor(source.Color());
    return image;
}

/// Of a text whose image is mirrored: it covers the same area, but reads from left to right, or upwards. One
/// that would read the other way is turned round and justified from its other end, others hang from the other
/// side of their line.
void KeepReadable(TextEntity& text)
{
    using T = TextInfo;
    static constexpr std::array FROM_OTHER_END = {T::BOTTOM_RIGHT,   T::BOTTOM_CENTER,   T::BOTTOM_LEFT,
                                                  T::MIDDLE_LEFT,    T::TOP_LEFT,        T::TOP_CENTER,
                                                  T::TOP_RIGHT,      T::MIDDLE_RIGHT,    T::MIDDLE_CENTER,
                                                  T::BASELINE_RIGHT, T::BASELINE_CENTER, T::BASELINE_LEFT};
    static constexpr std::array FROM_OTHER_SIDE = {
        T::TOP_LEFT,    T::TOP_CENTER,  T::TOP_RIGHT,     T::MIDDLE_RIGHT, T::BOTTOM_RIGHT, T::BOTTOM_CENTER,
        T::BOTTOM_LEFT, T::MIDDLE_LEFT, T::MIDDLE_CENTER, T::TOP_LEFT,     T::TOP_CENTER,   T::TOP_RIGHT};
    constexpr double UPRIGHT = 1e-9;
    TextInfo info = text.GetTextInfo();
    const auto justification = static_cast<std::size_t>(info.Justification());
    if (justification >= FROM_OTHER_END.size()) return;
    const double right = info.Rotation().Cos();
    const bool readsBack = right < -UPRIGHT || (right <= UPRIGHT && info.Rotation().Sin() > 0);
    if (readsBack) info.SetRotation(info.Rotation() + Angle(180));
    info.SetJustification((readsBack ? FROM_OTHER_END : FROM_OTHER_SIDE)[justification]);
    text.SetTextInfo(info);
}

/// The arc's image under a map that keeps angles: bearings turn with the image of +y.
GTL::Arc<P> ArcImage(const GTL::Arc<P>& arc, const P& center, const Plane& plane)
{
    const Angle north(std::atan2(plane.y.X(), plane.y.Y()) * MATH::RTD);
    const double radius = arc.Radius() * plane.scale;
    if (plane.mirrors) return {center, radius, north - arc.EndAngle(), north - arc.StartAngle()};
    return {center, radius, north + arc.StartAngle(), north + arc.EndAngle()};
}

std::vector<P> ArcChords(const GTL::Arc<P>& arc, const P& center, const Plane& plane)
{
    const double sweep = arc.Sweep();
    const std::size_t chords = Chords(sweep * MATH::DTR);
    std::vector<P> image;
    image.reserve(chords + 1);
    for (std::size_t i = 0; i <= chords; ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(chords);
        const Angle bearing = i == chords ? arc.EndAngle() : Angle(arc.StartAngle().Get() + part * sweep);
        image.push_back(plane.At(center, arc.Radius() * bearing.Sin(), arc.Radius() * bearing.Cos()));
    }
    return image;
}

/// The vertices of a circle of radius 1 about the origin.
const std::vector<P>& UnitRing()
{
    static const std::vector<P> ring = [] {
        std::vector<P> vertices;
        const std::size_t chords = CircleChords();
        for (std::size_t i = 0; i < chords; ++i) {
            const Angle turned(360.0 * static_cast<double>(i) / static_cast<double>(chords));
            vertices.emplace_back(turned.Cos(), turned.Sin(), 0);
        }
        return vertices;
    }();
    return ring;
}

std::vector<P> CircleRing(const P& center, double radius, const Plane& plane)
{
    std::vector<P> image;
    image.reserve(UnitRing().size());
    for (const P& p : UnitRing()) image.push_back(plane.At(center, radius * p.X(), radius * p.Y()));
    return image;
}

} // namespace

std::unique_ptr<DXFEntity> EntityPlacement::operator()(const DXFEntity& entity, const Map& map,
                                                       std::uint64_t room)
{
    m_Map = map;
    m_Room = room;
    m_Points = 0;
    m_LackedRoom = false;
    m_Image.reset();
    entity.Write(*this);
    return std::move(m_Image);
}

std::vector<P> EntityPlacement::Chorded(const std::vector<P>& vertices, bool closed)
{
    return WithChords(vertices, Map(), closed, ChordCount(vertices, closed));
}

std::size_t EntityPlacement::NumArcs(const std::vector<P>& vertices, bool closed)
{
    const auto end = closed || vertices.empty() ? vertices.end() : vertices.end() - 1;
    return static_cast<std::size_t>(
        std::count_if(vertices.begin(), end, [](const P& vertex) { return vertex.B() != 0; }));
}

std::size_t EntityPlacement::ChordedSize(const std::vector<P>& vertices, bool closed)
{
    return ChordCount(vertices, closed);
}

bool EntityPlacement::TakeRoom(std::uint64_t points)
{
    m_LackedRoom = points > m_Room;
    if (!m_LackedRoom) m_Points = points;
    return !m_LackedRoom;
}

template <class Kind>
void EntityPlacement::Transformed(const Kind& entity, std::uint64_t points)
{
    if (!TakeRoom(points)) return;
    m_Image.reset(entity.Copy());
    m_Image->Transform(m_Map);
}

void EntityPlacement::Write(const DXFPoint& point)
{
    Transformed(point, 0);
}

void EntityPlacement::Write(const DXFLine& line)
{
    Transformed(line, 0);
}

void EntityPlacement::Write(const DXFSolid& solid)
{
    Transformed(solid, 0);
}

void EntityPlacement::Write(const DXF3dFace& face)
{
    Transformed(face, 0);
}

/// A text has no mark for being mirrored.
void EntityPlacement::PlaceText(const TextEntity& text)
{
    Transformed(text, text.Text().size() / CHARACTERS_PER_POINT);
    if (m_Image && Plane(m_Map).mirrors) KeepReadable(static_cast<TextEntity&>(*m_Image));
}

void EntityPlacement::Write(const DXFText& text)
{
    PlaceText(text);
}

void EntityPlacement::Write(const DXFMText& text)
{
    PlaceText(text);
}

void EntityPlacement::Write(const DXFImage& image)
{
    Transformed(image, image.ClipBoundary().size());
}

void EntityPlacement::Write(const DXFCircle& circle)
{
    const Map map = ObjectToWorld(circle.Extrusion()).Append(m_Map);
    const Plane plane(map);
    const P center = map.Apply(circle.Center());
    if (plane.keepsAngles) {
        const double squaredRadius = circle.GetCircle().SquaredRadius() * plane.scale * plane.scale;
        m_Image = LookingLike(std::make_unique<DXFCircle>(GTL::Circle<P>(center, squaredRadius)), circle);
        return;
    }
    if (!TakeRoom(UnitRing().size())) return;
    GTL::Polygon<P> ring(CircleRing(center, circle.Radius(), plane));
    auto polygon = LookingLike(std::make_unique<DXFPolygon>(), circle);
    polygon->SetPoly(std::move(ring));
    m_Image = std::move(polygon);
}

void EntityPlacement::Write(const DXFArc& arc)
{
    const Map map = ObjectToWorld(arc.Extrusion()).Append(m_Map);
    const Plane plane(map);
    const P center = map.Apply(arc.Center());
    const GTL::Arc<P> image = ArcImage(arc.GetArc(), center, plane);
    const bool wasWhole = arc.GetArc().StartAngle() == arc.GetArc().EndAngle();
    const bool isWhole = image.StartAngle() == image.EndAngle();
    if (plane.keepsAngles && wasWhole == isWhole) {
        m_Image = LookingLike(std::make_unique<DXFArc>(image), arc);
        return;
    }
    std::vector<P> chords = ArcChords(arc.GetArc(), center, plane);
    if (!TakeRoom(chords.size())) return;
    m_Image = LookingLike(std::make_unique<DXFPolyline>(GTL::Polyline<P>(std::move(chords))), arc);
}

template <class Kind>
void EntityPlacement::PlacePolyline(const Kind& source, bool closed)
{
    const std::vector<P>& vertices = source.GetPoly().Vertices();
    const Plane plane(m_Map);
    const std::size_t count = plane.keepsAngles ? vertices.size() : ChordCount(vertices, closed);
    if (!TakeRoom(count)) return;
    std::vector<P> mapped = plane.keepsAngles ? WithBulges(vertices, m_Map, plane.mirrors)
                                              : WithChords(vertices, m_Map, closed, count);
    const P base = vertices.empty() ? P() : vertices.front();
    auto image = LookingLike(std::make_unique<Kind>(), source);
    image->SetElevation(m_Map.Apply(P(base.X(), base.Y(), source.GetElevation())).Z());
    image->SetLWPolyLine(source.GetLWPolyLine() && IsLevel(mapped));
    image->SetPoly(GTL::Polyline<P>(std::move(mapped)));
    m_Image = std::move(image);
}

void EntityPlacement::Write(const DXFPolyline& polyline)
{
    PlacePolyline(polyline, false);
}

void EntityPlacement::Write(const DXFPolygon& polygon)
{
    PlacePolyline(polygon, true);
}
