#include "TestPlaces.h"
#include "clip/ClipShapes.h"
#include "clip/Clipper.h"
#include "clip/DXFClipContext.h"
#include "model/DXF.h"
#include "model/DXFArc.h"
#include "model/DXFLine.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFWriter.h"

#include <set>

namespace {

using namespace clipshapes;

const std::atomic<bool> GO = true;

/// What there is of lines and polylines within a window, by small steps, and whether all else keeps to the
/// window.
class Survey : public DXFWriter {
public:
    using DXFWriter::Write;
    explicit Survey(const Window& window) : m_Window(window), m_Step(window.ExtentX() / 500) {}

    /// A line may keep an outer end.
    void Write(const DXFLine& line) override { Measure(Line({line.Start(), line.End()})); }
    void Write(const DXFPolyline& line) override
    {
        for (const P3& p : line.GetPoly().Vertices()) Look(p);
        if (line.NumPoints() > 0) Measure(line.GetPoly());
    }
    void Write(const DXFPolygon& ring) override
    {
        for (const P3& p : ring.GetPoly().Vertices()) Look(p);
    }
    void Write(const DXFSolid& solid) override
    {
        for (int corner = 0; corner < 4; ++corner) Look(solid[corner]);
    }

    /// How far apart the places are at which lines are looked at.
    double Step() const { return m_Step; }

    double length = 0;
    double slack = 0; ///< by how much length may be wrong
    int beyond = 0;   ///< vertices that lie outside

private:
    void Look(const P3& p) { beyond += GTL::Clipper<P3>(m_Window).Classify(p) == GTL::Outside; }
    void Measure(const Line& line)
    {
        const std::vector<P3> points = Flattened(line, false, 32);
        for (std::size_t i = 1; i < points.size(); ++i) {
            const GTL::Vector3D<double> whole = points[i] - points[i - 1];
            const double inPlan = std::hypot(whole.X(), whole.Y());
            if (!(inPlan < 1e4 * m_Window.ExtentX())) continue;
            const int steps = 1 + int(inPlan / m_Step);
            int inside = 0;
            for (int k = 0; k < steps; ++k)
                inside += m_Window.Classify(points[i - 1] + whole * ((k + 0.5) / steps)) == GTL::CLS::INSIDE;
            length += inPlan * inside / steps;
            if (inside > 0 && inside < steps) slack += m_Step;
        }
    }

    Window m_Window;
    double m_Step;
};

Survey SurveyOf(const DXF& drawing, const Window& window)
{
    Survey survey(window);
    const Window everything({-INFINITY, -INFINITY}, {INFINITY, INFINITY});
    for (unsigned long long i = 0; i < drawing.NumLayers(); ++i) drawing[i]->Draw(survey, everything, GO);
    return survey;
}

TEST(ClipCorpus, LineWorkOfRealDrawingsIsKeptWithinAWindowOverTheirMiddle)
{
    SKIP_WITHOUT_CORPUS();
    int cut = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TestPlaces::Corpus() / "dxf")) {
        std::wstring name = entry.path().wstring();
        DXF drawing;
        if (!entry.is_regular_file() || !drawing.Read(name, GO, true)) continue;
        const GTL::Extents3D<double> box = drawing.Extents();
        if (!box.IsValid() || !(box.MaxX() - box.MinX() < 1e12)) continue;
        const Window half({box.MinX() * 0.75 + box.MaxX() * 0.25, box.MinY() * 0.75 + box.MaxY() * 0.25},
                          {box.MinX() * 0.25 + box.MaxX() * 0.75, box.MinY() * 0.25 + box.MaxY() * 0.75});
        if (!(half.ExtentX() > 0 && half.ExtentY() > 0)) continue;
        const Survey before = SurveyOf(drawing, half);
        DXFClipContext context{half.MinX(), half.MinY(), half.MaxX(), half.MaxY()};
        drawing.Clip(context, GO);
        const Survey after = SurveyOf(drawing, half);
        // A corner of the window may lie between two places of a line that is looked at.
        const double slack = before.slack + after.slack + before.Step();
        EXPECT_NEAR(after.length, before.length, slack + 1e-6 * before.length) << entry.path();
        EXPECT_EQ(after.beyond, 0) << entry.path();
        const int entities = drawing.NumEntities();
        drawing.Clip(context, GO);
        EXPECT_EQ(drawing.NumEntities(), entities) << entry.path();
        cut += before.length > 0 && before.slack > 0;
    }
    EXPECT_GT(cut, 20) << "hardly a drawing was cut";
}

} // namespace
