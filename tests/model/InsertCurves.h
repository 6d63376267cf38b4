#pragma once

#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFLine.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFWriter.h"
#include "model/InsertMatrix.h"

#include <algorithm>
#include <vector>

/// A stretch of an entity in space: a straight one, or an arc parallel to XY with mathematical angles in
/// radians.
struct Stretch {
    using P = GTL::Point3D<double>;

    P from, to;
    P center;
    double radius = 0;
    double start = 0;
    double sweep = 0; ///< positive counter-clockwise; 0 for a straight stretch

    P At(double t) const
    {
        const double z = from.Z() + t * (to.Z() - from.Z());
        if (sweep == 0) return {from.X() + t * (to.X() - from.X()), from.Y() + t * (to.Y() - from.Y()), z};
        return {center.X() + radius * std::cos(start + t * sweep),
                center.Y() + radius * std::sin(start + t * sweep), z};
    }

    double Distance(const P& p) const
    {
        if (sweep == 0) return DistanceOfChord(p);
        const double turn = 2 * std::acos(-1.0);
        double along = std::fmod(
            (std::atan2(p.Y() - center.Y(), p.X() - center.X()) - start) * (sweep < 0 ? -1 : 1), turn);
        if (along < 0) along += turn;
        const double t = along / std::abs(sweep);
        if (t <= 1) return (p - At(t)).Length();
        return std::min((p - At(0)).Length(), (p - At(1)).Length());
    }

private:
    double DistanceOfChord(const P& p) const
    {
        const GTL::Vector3D<double> chord = to - from;
        const double square = chord.Dot(chord);
        const double t = square > 0 ? std::clamp((p - from).Dot(chord) / square, 0.0, 1.0) : 0.0;
        return (p - At(t)).Length();
    }
};

/// What an entity is made of, in its own coordinates (those of its extrusion for circles and arcs).
class Stretches : public DXFWriter {
public:
    using P = Stretch::P;
    using DXFWriter::Write;

    explicit Stretches(const DXFEntity& entity) { entity.Write(*this); }

    void Write(const DXFPoint& e) override { Straight(e.Point(), e.Point()); }
    void Write(const DXFLine& e) override { Straight(e.Start(), e.End()); }
    void Write(const DXFSolid& e) override { Corners(e); }
    void Write(const DXF3dFace& e) override { Corners(e); }
    void Write(const DXFCircle& e) override { Round(e.Center(), e.Radius(), 90, 360, e.Extrusion()); }
    void Write(const DXFArc& e) override
    {
        const double turn = e.EndAngle() - e.StartAngle();
        Round(e.Center(), e.Radius(), e.StartAngle(), turn > 0 ? turn : turn + 360, e.Extrusion());
    }
    void Write(const DXFPolyline& e) override
    {
        for (int i = 0; i + 1 < e.NumPoints(); ++i) Bent(e[i], e[i + 1]);
    }
    void Write(const DXFPolygon& e) override
    {
        for (int i = 0; i < e.NumPoints(); ++i) Bent(e[i], e[(i + 1) % e.NumPoints()]);
    }

    double Distance(const P& p) const
    {
        double least = INFINITY;
        for (const Stretch& s : m_All) least = std::min(least, s.Distance(p));
        return least;
    }

    std::vector<Stretch> m_All;
    GTL::Vector3D<double> m_Extrusion{0, 0, 1};

private:
    void Straight(const P& from, const P& to) { m_All.push_back({from, to, {}}); }
    template <class Kind>
    void Corners(const Kind& e)
    {
        for (int i = 0; i < 4; ++i) Straight(e[i], e[(i + 1) % 4]);
    }
    void Round(const P& center, double radius, double bearing, double turn,
               const GTL::Vector3D<double>& extrusion)
    {
        const double degree = std::acos(-1.0) / 180;
        m_All.push_back({center, center, center, radius, (90 - bearing) * degree, -turn * degree});
        m_Extrusion = extrusion;
    }
    /// With half the included angle a = 2 atan b, the radius is chord / (2 sin a), and the centre lies at the
    /// distance radius cos a from the chord's middle, to its left for a positive bulge.
    void Bent(const P& from, const P& to)
    {
        if (from.B() == 0) return Straight(from, to);
        const double dx = to.X() - from.X();
        const double dy = to.Y() - from.Y();
        const double half = 2 * std::atan(from.B());
        const double chord = std::hypot(dx, dy);
        const double radius = chord / (2 * std::sin(half));
        const P center((from.X() + to.X()) / 2 - dy / chord * radius * std::cos(half),
                       (from.Y() + to.Y()) / 2 + dx / chord * radius * std::cos(half), from.Z());
        m_All.push_back({from, to, center, std::abs(radius),
                         std::atan2(from.Y() - center.Y(), from.X() - center.X()), 2 * half});
    }
};
