#include "PlotForm.h"

#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPolygon.h"
#include "model/DXFText.h"
#include "model/EntityPlacement.h"
#include "model/InsertExploder.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace {

using P3 = GTL::Point3D<double>;

/// What the entities of a block take from the layer of an insert.
struct Look {
    unsigned long color;
    int style;
    float width;

    explicit Look(const DXFLayer& layer) : color(layer.Color()), style(layer.Style()), width(layer.Width()) {}
    bool operator==(const Look&) const = default;
};

/// The layer of a block from which its entities take the look of the insert.
bool IsOfInsert(const DXFLayer& layer)
{
    return layer.Color() == DXFLayer::COLOR_OF_INSERT;
}

/// Finds for each block the look that its first insert gives it, the inserts of layers in drawing order
/// before those of blocks.
class BlockLooks : public DXFWriter {
public:
    explicit BlockLooks(const DXF& document)
    {
        VisitInserts(document, Look(DXFLayer(L"0")));
        for (std::size_t i = 0; i < m_Found.size(); ++i)
            VisitInserts(*m_Found[i]->GetDXF(), m_Looks.at(m_Found[i]).look);
    }

    Look Of(const DXFBlock& block) const
    {
        const auto found = m_Looks.find(&block);
        return found == m_Looks.end() ? Look(DXFLayer(L"0")) : found->second.look;
    }
    /// Inserts that give the block another look than its first one does.
    std::uint64_t NumOthers(const DXFBlock& block) const
    {
        const auto found = m_Looks.find(&block);
        return found == m_Looks.end() ? 0 : found->second.others;
    }

    void Write(const DXFInsert& insert) override
    {
        const DXFBlock* block = insert.Block();
        if (!block) return;
        const auto [place, isNew] = m_Looks.try_emplace(block, Entry{*m_Current, 0});
        if (isNew)
            m_Found.push_back(block);
        else if (place->second.look != *m_Current)
            ++place->second.others;
    }
    using DXFWriter::Write;

private:
    struct Entry {
        Look look;
        std::uint64_t others;
    };

    void VisitInserts(const DXF& drawing, const Look& outer)
    {
        const Look ofInsert = outer;
        for (std::size_t i = 0; i < drawing.NumLayers(); ++i) {
            const DXFLayer& layer = *drawing[i];
            const Look own(layer);
            m_Current = IsOfInsert(layer) ? &ofInsert : &own;
            for (std::size_t k = 0; k < layer.NumEntities(); ++k) layer[k]->Write(*this);
        }
    }

    const Look* m_Current = nullptr;
    std::map<const DXFBlock*, Entry> m_Looks;
    std::vector<const DXFBlock*> m_Found;
};

/// Brings entities to the form. A visitor takes them const; those that it is handed here are the document's
/// own.
class PlotSettler : public DXFWriter {
public:
    const PlotForm& Form() const { return m_Form; }

    /// What follows takes this look where it takes one from an insert.
    void SetLook(const Look& look) { m_Look = look; }
    void AddOtherLooks(std::uint64_t inserts) { m_Form.otherLooks += inserts; }

    void Settle(DXFEntity& entity)
    {
        if (entity.Color() == DXFLayer::COLOR_OF_INSERT) {
            entity.SetColor(m_Look.color);
            m_HasTaken = true;
        }
        entity.Write(*this);
    }
    /// True when an entity took the look of an insert since the last call.
    bool HasTaken() { return std::exchange(m_HasTaken, false); }

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

    void SettleLine(DXFLineBase& e)
    {
        const bool takesStyle = e.Style() == DXFLayer::STYLE_OF_INSERT;
        const bool takesWidth = e.Width() == DXFLayer::WIDTH_OF_INSERT;
        if (takesStyle) e.SetStyle(m_Look.style);
        if (takesWidth) e.SetWidth(m_Look.width);
        m_HasTaken = m_HasTaken || takesStyle || takesWidth;
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
        const std::size_t arcs = EntityPlacement::NumArcs(vertices, closed);
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
    Look m_Look{DXFLayer(L"0")};
    bool m_HasTaken = false;
};

void SettleLayers(PlotSettler& settler, DXF& drawing, const Look& look, const std::atomic<bool>& keepGoing)
{
    settler.SetLook(look);
    for (unsigned long long i = 0; i < drawing.NumLayers(); ++i) {
        DXFLayer& layer = *drawing[i];
        if (IsOfInsert(layer)) layer.SetColor(look.color);
        for (std::size_t k = 0; k < layer.NumEntities() && keepGoing.load(std::memory_order_relaxed); ++k)
            settler.Settle(*layer[k]);
    }
}

} // namespace

PlotForm BringToPlotForm(DXF& document, const std::atomic<bool>& keepGoing)
{
    const BlockLooks looks(document);
    PlotSettler settler;
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block)) {
        SettleLayers(settler, *block->second->GetDXF(), looks.Of(*block->second), keepGoing);
        if (settler.HasTaken()) settler.AddOtherLooks(looks.NumOthers(*block->second));
    }
    SettleLayers(settler, document, Look(DXFLayer(L"0")), keepGoing);
    return settler.Form();
}
