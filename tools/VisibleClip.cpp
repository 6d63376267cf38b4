#include "VisibleClip.h"

#include "clip/Clipper.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFPolyline.h"
#include "model/DXFWriter.h"

#include <memory>
#include <vector>

namespace {

using P = GTL::Point3D<double>;
using Entities = std::vector<std::unique_ptr<DXFEntity>>;

constexpr double HALF_TURN = 180;

/// Splits what runs all the way round.
class RoundSplitter : private DXFWriter {
public:
    /// Two half arcs in the place of a full turn; nothing for all else.
    Entities operator()(const DXFEntity& entity)
    {
        m_Halves.clear();
        entity.Write(*this);
        return std::move(m_Halves);
    }

private:
    using DXFWriter::Write;
    void Write(const DXFCircle& circle) override { Split(circle, circle.Center(), circle.Radius(), 0); }
    void Write(const DXFArc& arc) override
    {
        if (arc.StartAngle() == arc.EndAngle()) Split(arc, arc.Center(), arc.Radius(), arc.StartAngle());
    }

    void Split(const DXFLineBase& source, const P& center, double radius, double start)
    {
        const double middle = Angle(start + HALF_TURN).Get();
        m_Halves.push_back(std::make_unique<DXFArc>(center, radius, start, middle));
        m_Halves.push_back(std::make_unique<DXFArc>(center, radius, middle, start));
        for (const auto& half : m_Halves) {
            auto& line = static_cast<DXFLineBase&>(*half);
            line.SetStyle(source.Style());
            line.SetWidth(source.Width());
            line.SetColor(source.Color());
        }
    }

    Entities m_Halves;
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
    explicit VisibleClip(const DXFClipContext& window) : m_Context(window), m_Window(m_Context) {}

    void Clip(DXFLayer& layer, const std::atomic<bool>& keepGoing)
    {
        Entities entities = layer.Release();
        m_Context.layer = &layer;
        for (std::unique_ptr<DXFEntity>& entity : entities) {
            if (!keepGoing) break;
            Entities halves;
            if (m_Sides.ClassifyBox(entity->Extents()) == GTL::Clipped) halves = m_Splitter(*entity);
            if (halves.empty()) Cut(std::move(entity), layer);
            for (std::unique_ptr<DXFEntity>& half : halves) Cut(std::move(half), layer);
        }
        m_Context.layer = nullptr;
    }

private:
    void Cut(std::unique_ptr<DXFEntity> entity, DXFLayer& layer)
    {
        const std::size_t before = layer.NumEntities();
        const bool stays = entity->Clip(m_Context);
        for (std::size_t i = before; i < layer.NumEntities(); ++i) TakeLooks(*layer[i], *entity);
        if (stays) layer.Add(entity.release());
    }

    DXFClipContext m_Context;
    GTL::Extents2D<double> m_Window;
    GTL::Clipper<P> m_Sides{m_Window};
    RoundSplitter m_Splitter;
};

} // namespace

void ClipVisibly(DXF& document, DXFClipContext window, const std::atomic<bool>& keepGoing)
{
    VisibleClip clip(window);
    for (std::size_t i = 0; i < document.NumLayers() && keepGoing; ++i) clip.Clip(*document[i], keepGoing);
    for (std::size_t i = document.NumLayers(); i-- > 0;)
        if (document[i]->NumEntities() == 0) (void)document.RemoveLayer(*document[i]);
}
