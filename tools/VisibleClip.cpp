#include "VisibleClip.h"

#include "clip/CircleCrossings.h"
#include "clip/PolylineClipper.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFLine.h"
#include "model/DXFPolyline.h"
#include "model/DXFWriter.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using P = GTL::Point3D<double>;
using Window = GTL::Extents2D<double>;
using Entities = std::vector<std::unique_ptr<DXFEntity>>;

constexpr double HALF_TURN = 180;
/// Degrees. Files hold six decimals of an angle, and equal ends are a full turn.
constexpr double SMALLEST_SWEEP = 1e-6;

/// Cuts what the library's rules cut with losses: lines, circles and arcs. Pieces keep all attributes.
class LosslessCut : private DXFWriter {
public:
    explicit LosslessCut(const Window& window) : m_Window(window), m_Sides(window) {}

    /// False for entities of other kinds. Otherwise the pieces are what is left of the entity, unless it
    /// stays whole.
    bool Cut(const DXFEntity& entity)
    {
        m_Applies = m_StaysWhole = false;
        m_Pieces.clear();
        entity.Write(*this);
        return m_Applies;
    }
    bool StaysWhole() const { return m_StaysWhole; }
    Entities& Pieces() { return m_Pieces; }

private:
    /// A stretch of an arc, in degrees from its start.
    struct Stretch {
        double from;
        double to;
    };

    using DXFWriter::Write;

    /// As a chain of one segment, for which no corner of the window is special.
    void Write(const DXFLine& line) override
    {
        m_Applies = true;
        std::vector<GTL::Polyline<P>> runs;
        const P ends[] = {P(line.Start(), line.Start().Z(), 0), P(line.End(), line.End().Z(), 0)};
        const GTL::Polyline<P> chain(std::vector<P>(std::begin(ends), std::end(ends)));
        m_StaysWhole = GTL::PolylineClipper<P>(m_Window).Clip(chain, runs) == GTL::Inside;
        for (const GTL::Polyline<P>& run : runs) {
            auto piece = std::make_unique<DXFLine>(line);
            piece->Set(run.Front(), run.Back());
            m_Pieces.push_back(std::move(piece));
        }
    }

    void Write(const DXFCircle& circle) override
    {
        if (!Settle(circle, circle.Radius())) return;
        for (const double start : {0.0, HALF_TURN}) {
            DXFArc half(circle.Center(), circle.Radius(), start, start + HALF_TURN, circle.Extrusion());
            half.SetStyle(circle.Style());
            half.SetWidth(circle.Width());
            half.SetColor(circle.Color());
            TakeVisible(half);
        }
    }

    void Write(const DXFArc& arc) override
    {
        if (Settle(arc, arc.Radius())) TakeVisible(arc);
    }

    /// True when a circle or an arc has to be looked at more closely than by its box. Those that are too
    /// small are left to the library.
    bool Settle(const DXFEntity& entity, double radius)
    {
        if (!(radius >= GTL::SMALLEST_RADIUS)) return false;
        m_Applies = true;
        const GTL::ClipResult place = m_Sides.ClassifyBox(entity.Extents());
        m_StaysWhole = place == GTL::Inside;
        return place == GTL::Clipped;
    }

    void TakeVisible(const DXFArc& arc)
    {
        const double sweep = arc.GetArc().Sweep();
        for (const Stretch& stretch : VisibleStretches(arc.GetArc())) {
            const bool whole = stretch.from == 0 && stretch.to == sweep;
            if (!whole && stretch.to - stretch.from <= SMALLEST_SWEEP) continue;
            auto piece = std::make_unique<DXFArc>(arc);
            if (stretch.from > 0) piece->SetStartAngle(arc.StartAngle() + stretch.from);
            if (stretch.to < sweep) piece->SetEndAngle(arc.StartAngle() + stretch.to);
            m_Pieces.push_back(std::move(piece));
        }
    }

    /// The crossings split the arc into stretches that are inside or outside; neighbours inside are one.
    std::vector<Stretch> VisibleStretches(const GTL::Arc<P>& arc) const
    {
        const double start = arc.StartAngle().Get();
        std::vector<double> bounds{0, arc.Sweep()};
        const GTL::CircleCrossings crossings(m_Window, arc.Center(), arc.Radius() * arc.Radius());
        for (std::size_t i = 0; i < crossings.Count(); ++i) {
            const double turned = TrimAngle(crossings[i] - start);
            if (turned < arc.Sweep()) bounds.push_back(turned);
        }
        std::sort(bounds.begin(), bounds.end());

        std::vector<Stretch> visible;
        for (std::size_t i = 1; i < bounds.size(); ++i) {
            if (!IsInside(arc, bounds[i - 1], bounds[i])) continue;
            if (!visible.empty() && visible.back().to == bounds[i - 1])
                visible.back().to = bounds[i];
            else
                visible.push_back({bounds[i - 1], bounds[i]});
        }
        return visible;
    }

    /// Of a stretch without crossings. One that is outside may touch the window, but not in two places.
    bool IsInside(const GTL::Arc<P>& arc, double from, double to) const
    {
        const double start = arc.StartAngle().Get();
        const double third = (to - from) / 3;
        return m_Sides.Classify(arc.PointAt(Angle(start + from + third))) == GTL::Inside
               && m_Sides.Classify(arc.PointAt(Angle(start + to - third))) == GTL::Inside;
    }

    Window m_Window;
    GTL::Clipper<P> m_Sides;
    bool m_Applies = false;
    bool m_StaysWhole = false;
    Entities m_Pieces;
};

void TakeLooks(DXFEntity& piece, const DXFEntity& source)
{
    piece.SetColor(source.Color());
    auto* line = dynamic_cast<DXFLineBase*>(&piece);
    const auto* sourceLine = dynamic_cast<const DXFLineBase*>(&source);
    if (!line || !sourceLine) return;
    line->SetStyle(sourceLine->Style());
    line->SetWidth(sourceLine->Width());
    auto* polyline = dynamic_cast<DXFPolyline*>(line);
    const auto* sourcePolyline = dynamic_cast<const DXFPolyline*>(sourceLine);
    if (!polyline || !sourcePolyline) return;
    polyline->SetLWPolyLine(sourcePolyline->GetLWPolyLine());
    polyline->SetElevation(sourcePolyline->GetElevation());
}

class VisibleClip {
public:
    explicit VisibleClip(const DXFClipContext& window) : m_Context(window), m_Lossless(window) {}

    void Clip(DXFLayer& layer, const std::atomic<bool>& keepGoing)
    {
        Entities entities = layer.Release();
        m_Context.layer = &layer;
        for (std::unique_ptr<DXFEntity>& entity : entities) {
            if (!keepGoing) break;
            if (!m_Lossless.Cut(*entity)) {
                CutByRules(std::move(entity), layer);
                continue;
            }
            for (std::unique_ptr<DXFEntity>& piece : m_Lossless.Pieces()) layer.Add(piece.release());
            if (m_Lossless.StaysWhole()) layer.Add(entity.release());
        }
        m_Context.layer = nullptr;
    }

private:
    void CutByRules(std::unique_ptr<DXFEntity> entity, DXFLayer& layer)
    {
        const std::size_t before = layer.NumEntities();
        const bool stays = entity->Clip(m_Context);
        for (std::size_t i = before; i < layer.NumEntities(); ++i) TakeLooks(*layer[i], *entity);
        if (stays) layer.Add(entity.release());
    }

    DXFClipContext m_Context;
    LosslessCut m_Lossless;
};

} // namespace

void ClipVisibly(DXF& document, DXFClipContext window, const std::atomic<bool>& keepGoing)
{
    VisibleClip clip(window);
    for (std::size_t i = 0; i < document.NumLayers() && keepGoing; ++i) clip.Clip(*document[i], keepGoing);
    for (std::size_t i = document.NumLayers(); i-- > 0;)
        if (document[i]->NumEntities() == 0) (void)document.RemoveLayer(*document[i]);
}
