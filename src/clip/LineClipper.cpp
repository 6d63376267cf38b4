#include "clip/LineClipper.h"

namespace GTL {
namespace {

using Point = Point3D<double>;

/// The two points of the output while they are being found.
struct Found {
    const Point* from;
    const Point* to;
    Point points[2];
    unsigned count;

    void Take(const Point& p) { points[count++] = p; }
};

/// Where the segment meets x = at, counted when minY <= y < maxY.
void MeetVertical(Found& found, double at, double minY, double maxY)
{
    const Point& a = *found.from;
    const Point& b = *found.to;
    if ((a.X() > at && b.X() > at) || (a.X() < at && b.X() < at)) return;
    const double t = (at - a.X()) / (b.X() - a.X());
    if (t < 0 || t > 1) return;
    const double y = a.Y() + t * (b.Y() - a.Y());
    if (y >= minY && y < maxY) found.Take({at, y, a.Z() + t * (b.Z() - a.Z()), a.B()});
}

/// Where the segment meets y = at, counted when minX <= x < maxX.
void MeetHorizontal(Found& found, double at, double minX, double maxX)
{
    const Point& a = *found.from;
    const Point& b = *found.to;
    if ((a.Y() > at && b.Y() > at) || (a.Y() < at && b.Y() < at)) return;
    const double t = (at - a.Y()) / (b.Y() - a.Y());
    if (t < 0 || t > 1) return;
    const double x = a.X() + t * (b.X() - a.X());
    if (x >= minX && x < maxX) found.Take({x, at, a.Z() + t * (b.Z() - a.Z()), a.B()});
}

/// An angle above 90 degrees between the segment and what was found of it.
bool RunsBackwards(const Found& found)
{
    const double along = (found.to->X() - found.from->X()) * (found.points[1].X() - found.points[0].X());
    const double across = (found.to->Y() - found.from->Y()) * (found.points[1].Y() - found.points[0].Y());
    return along + across < 0;
}

} // namespace

template <class P>
ClipResult LineClipper<P>::Clip(const Line<P>& input, Line<P>& output) const
{
    const Extents2D<double>& window = this->Window();
    if (!window.IsValid()) return Outside;
    const bool startInside = this->Classify(input.Start()) == Inside;
    if (startInside && this->Classify(input.End()) == Inside) return Inside;

    Found found{&input.Start(), &input.End(), {input.Start(), input.End()}, startInside ? 1U : 0U};
    MeetHorizontal(found, window.MinY(), window.MinX(), window.MaxX());
    if (found.count < 2) MeetVertical(found, window.MaxX(), window.MinY(), window.MaxY());
    if (found.count < 2) MeetHorizontal(found, window.MaxY(), window.MinX(), window.MaxX());
    if (found.count < 2) MeetVertical(found, window.MinX(), window.MinY(), window.MaxY());
    if (found.count == 0) return Outside;

    const bool swap = RunsBackwards(found);
    output.Start() = found.points[swap ? 1 : 0];
    output.End() = found.points[swap ? 0 : 1];
    return Clipped;
}

template class LineClipper<Point3D<double>>;

} // namespace GTL
