#include "PlotForm.h"

#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPolygon.h"
#include "model/DXFText.h"
#include "model/EntityPlacement.h"
#include "model/InsertExploder.h"

#include <algorithm>

namespace {

using P3 = GTL::Point3D<double>;

/// Brings entities to the form. A visitor takes them const; those that it is handed here are the document's
/// own.
class PlotSettler : public DXFWriter {
public:
    const PlotForm& Form() const { return m_Form; }

    void Settle(DXFEntity& entity)
    {
        if (entity.Color() == DXFLayer::COLOR_OF_INSERT) entity.SetColor(m_Defaults.Color());
        entity.Write(*this);
    }

    void Write(const DXFLine& e) override { SettleLine(Own(e)); }
    void Write(const DXFCircle& e) override { SettleLine(Own(e)); }
    void Write(const DXFArc& e) override { SettleLine(Own(e)); }
    void Write(const DXFPolyline& e) override { SettleChain(Own(e), false); }
    void Write(const DXFPolygon& e) override { SettleChain(Own(e), true); }
    void Write(const DXFText& e) override { SettleText(Own(e)); }
    void Write(const DXFMText& e) override { SettleText(Own(e)); }
    using DXFWriter::Write;

private:
    template <class Entity>
    static Entity& Own(const Entity& entity)
    {
        return const_cast<Entity&>(entity);
    }

    void SettleLine(DXFLineBase& e) const
    {
        if (e.Style() == DXFLayer::STYLE_OF_INSERT) e.SetStyle(m_Defaults.Style());
        if (e.Width() == DXFLayer::WIDTH_OF_INSERT) e.SetWidth(m_Defaults.Width());
    }

    void SettleText(TextEntity& e) const
    {
        if (e.GetTextInfo().Color() == e.Color()) return;
        TextInfo info = e.GetTextInfo();
        info.SetColor(e.Color());
        e.SetTextInfo(info);
    }

    void SettleChain(DXFPolyline& e, bool closed)
    {
        SettleLine(e);
        if (!e.GetPoly().HasBulges()) return;
        const std::vector<P3>& vertices = e.GetPoly().Vertices();
        const auto end = vertices.end() - (closed ? 0 : 1);
        const auto arcs = static_cast<std::uint64_t>(
            std::count_if(vertices.begin(), end, [](const P3& vertex) { return vertex.B() != 0; }));
        const std::size_t size = EntityPlacement::ChordedSize(vertices, closed);
        std::vector<P3> chorded;
        if (size <= m_Room) {
            m_Room -= size;
            m_Form.arcs += arcs;
            chorded = EntityPlacement::Chorded(vertices, closed);
        } else {
            m_Form.flattened += arcs;
            chorded = vertices;
            for (P3& vertex : chorded) vertex.B(0);
        }
        e.SetPoly(GTL::Polyline<P3>(std::move(chorded)));
    }

    PlotForm m_Form;
    std::uint64_t m_Room = InsertExploder::DEFAULT_POINT_LIMIT;
    const DXFLayer m_Defaults{L"0"};
};

void SettleLayers(PlotSettler& settler, DXF& drawing, const std::atomic<bool>& keepGoing)
{
    for (unsigned long long i = 0; i < drawing.NumLayers(); ++i) {
        DXFLayer& layer = *drawing[i];
        if (layer.Color() == DXFLayer::COLOR_OF_INSERT) layer.SetColor(DXFLayer(L"0").Color());
        for (std::size_t k = 0; k < layer.NumEntities() && keepGoing.load(std::memory_order_relaxed); ++k)
            settler.Settle(*layer[k]);
    }
}

} // namespace

PlotForm BringToPlotForm(DXF& document, const std::atomic<bool>& keepGoing)
{
    PlotSettler settler;
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        SettleLayers(settler, *block->second->GetDXF(), keepGoing);
    SettleLayers(settler, document, keepGoing);
    return settler.Form();
}
