#include "model/InsertExploder.h"

#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFWriter.h"
#include "model/InsertBlocks.h"
#include "model/InsertPlacement.h"
#include "model/TextEntity.h"

#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

using Map = EntityPlacement::Map;
using Report = InsertExploder::Report;

/// Visits of entities and cells that the limit of one entity allows: what shows nothing costs time too. More
/// than a chain of nested inserts for every entity needs is cut off.
constexpr std::uint64_t VISITS_PER_ENTITY = 8;
/// Visits that are allowed whatever the limit.
constexpr std::uint64_t FREE_VISITS = 100'000;

void AddCapped(std::uint64_t& sum, std::uint64_t more)
{
    constexpr std::uint64_t MOST = std::numeric_limits<std::uint64_t>::max();
    sum = more > MOST - sum ? MOST : sum + more;
}

std::uint64_t VisitsFor(std::uint64_t limit)
{
    if (limit > std::numeric_limits<std::uint64_t>::max() / (2 * VISITS_PER_ENTITY)) return limit;
    return limit * VISITS_PER_ENTITY + FREE_VISITS;
}

/// Whether an entity outside of blocks has to change.
class Inspection final : public DXFWriter {
public:
    using DXFWriter::Write;
    void Write(const DXFInsert& insert) override { m_Insert = &insert; }
    void Write(const DXFCircle& circle) override { Check(circle.Extrusion()); }
    void Write(const DXFArc& arc) override { Check(arc.Extrusion()); }

    const DXFInsert* m_Insert = nullptr;
    bool m_Extruded = false;

private:
    void Check(const GTL::Vector3D<double>& extrusion)
    {
        m_Extruded = !(extrusion == GTL::Vector3D<double>(0, 0, 1));
    }
};

Inspection Inspect(const DXFEntity& entity)
{
    Inspection inspection;
    entity.Write(inspection);
    return inspection;
}

/// One run over a document.
class Explosion {
public:
    Explosion(DXF& document, const std::atomic<bool>& keepGoing, std::uint64_t limit,
              std::uint64_t pointLimit)
        : m_Document(document),
          m_KeepGoing(keepGoing),
          m_Blocks(document, keepGoing),
          m_Limit(limit),
          m_PointsLeft(pointLimit),
          m_VisitsLeft(VisitsFor(limit))
    {
    }

    Report Run();

private:
    struct Made {
        std::unique_ptr<DXFEntity> entity;
        DXFLayer* layer;
    };
    /// Where a block is shown.
    struct Place {
        const Map* outer; ///< of the block that holds the insert; null outside of blocks
        DXFLayer* layer;  ///< for what the block has on layer "0"
        int depth;
    };

    bool HasWork(const DXFLayer& layer) const;
    void ExplodeLayer(DXFLayer& layer);
    void Replace(std::unique_ptr<DXFEntity> entity, DXFLayer& layer);
    bool ExplodeInsert(const DXFInsert& insert, DXFLayer& layer);
    void TakeToWorld(std::unique_ptr<DXFEntity> curve, DXFLayer& layer);
    void Show(const DXFInsert& insert, InsertBlocks::Block& block, const Place& place);
    std::uint64_t ShowCells(const InsertPlacement& placement, InsertBlocks::Block& block, const Place& place);
    void ShowContents(InsertBlocks::Block& block, const Map& map, const Place& place);
    void Make(const DXFEntity& entity, const Map& map, DXFLayer* layer);
    static void TakeAttributes(DXFEntity& entity, const DXFLayer& layer);
    DXFLayer* TargetOf(InsertBlocks::Layer& layer, DXFLayer* inherited);
    std::unique_ptr<DXFEntity> Image(const DXFEntity& entity, const Map& map);
    bool GoesOn();

    DXF& m_Document;
    const std::atomic<bool>& m_KeepGoing;
    InsertBlocks m_Blocks;
    EntityPlacement m_Placement;
    Report m_Report;
    std::vector<Made> m_Made; ///< by the insert at work; handed to the layers once it is done
    std::uint64_t m_Limit;
    std::uint64_t m_PointsLeft;
    std::uint64_t m_VisitsLeft;
    bool m_Stopped = false;
};

Report Explosion::Run()
{
    const std::size_t layers = m_Document.NumLayers();
    for (std::size_t i = 0; i < layers && !m_Stopped; ++i) {
        m_Stopped = !m_KeepGoing;
        if (!m_Stopped && HasWork(*m_Document[i])) ExplodeLayer(*m_Document[i]);
    }
    return m_Report;
}

bool Explosion::HasWork(const DXFLayer& layer) const
{
    for (std::size_t i = 0; i < layer.NumEntities(); ++i) {
        const Inspection inspection = Inspect(*layer[i]);
        if (inspection.m_Insert || inspection.m_Extruded) return true;
    }
    return false;
}

void Explosion::ExplodeLayer(DXFLayer& layer)
{
    std::vector<std::unique_ptr<DXFEntity>> entities = layer.Release();
    for (std::unique_ptr<DXFEntity>& entity : entities) {
        m_Stopped = m_Stopped || !m_KeepGoing;
        if (m_Stopped)
            layer.Add(entity.release());
        else
            Replace(std::move(entity), layer);
    }
}

void Explosion::Replace(std::unique_ptr<DXFEntity> entity, DXFLayer& layer)
{
    const Inspection inspection = Inspect(*entity);
    if (inspection.m_Extruded) return TakeToWorld(std::move(entity), layer);
    if (!inspection.m_Insert || !ExplodeInsert(*inspection.m_Insert, layer)) layer.Add(entity.release());
}

void Explosion::TakeToWorld(std::unique_ptr<DXFEntity> curve, DXFLayer& layer)
{
    std::unique_ptr<DXFEntity> image = Image(*curve, Map());
    if (image) ++m_Report.curves;
    layer.Add(image ? image.release() : curve.release());
}

/// False when the flag stopped it: the insert is to stay.
bool Explosion::ExplodeInsert(const DXFInsert& insert, DXFLayer& layer)
{
    if (m_Report.limitReached) return true;
    const Report before = m_Report;
    m_Made.clear();
    if (InsertBlocks::Block* block = m_Blocks.Find(insert))
        Show(insert, *block, {nullptr, &layer, 1});
    else
        ++m_Report.missingBlocks;
    if (m_Stopped) {
        m_Report = before;
        return false;
    }
    for (Made& made : m_Made) made.layer->Add(made.entity.release());
    return true;
}

void Explosion::Show(const DXFInsert& insert, InsertBlocks::Block& block, const Place& place)
{
    if (block.onPath || place.depth > InsertExploder::MAX_DEPTH) {
        ++m_Report.recursive;
        return;
    }
    const InsertPlacement placement(insert, block.source->BasePoint());
    block.onPath = true;
    AddCapped(m_Report.inserts, ShowCells(placement, block, place));
    block.onPath = false;
}

/// The number of cells that are done with. All cells show the same, so where one shows nothing none does; and
/// what never shows anything is visited once at all, for the sake of the counts.
std::uint64_t Explosion::ShowCells(const InsertPlacement& placement, InsertBlocks::Block& block,
                                   const Place& place)
{
    const auto rows = static_cast<std::uint64_t>(placement.Rows());
    const auto columns = static_cast<std::uint64_t>(placement.Columns());
    if (!block.shows && block.visited) return rows * columns;
    std::uint64_t done = 0;
    for (int row = 0; row < placement.Rows(); ++row) {
        for (int column = 0; column < placement.Columns(); ++column) {
            const std::size_t before = m_Made.size();
            Map map = placement.At(row, column);
            if (place.outer) map.Append(*place.outer);
            ShowContents(block, map, place);
            ++done;
            block.visited = true;
            if (!GoesOn()) return done;
            if (m_Made.size() == before) return rows * columns;
        }
    }
    return done;
}

void Explosion::ShowContents(InsertBlocks::Block& block, const Map& map, const Place& place)
{
    for (InsertBlocks::Layer& layer : block.layers) {
        DXFLayer* target = TargetOf(layer, place.layer);
        for (const InsertBlocks::Item& item : layer.items) {
            if (!GoesOn()) return;
            if (!item.insert)
                Make(*item.entity, map, target);
            else if (item.block)
                Show(*item.insert, *item.block, {&map, target, place.depth + 1});
            else if (!block.visited)
                ++m_Report.missingBlocks;
        }
    }
}

void Explosion::Make(const DXFEntity& entity, const Map& map, DXFLayer* layer)
{
    if (m_Report.entities >= m_Limit) {
        m_Report.limitReached = true;
        return;
    }
    std::unique_ptr<DXFEntity> image = Image(entity, map);
    if (!image) return;
    TakeAttributes(*image, *layer);
    m_Made.push_back({std::move(image), layer});
    ++m_Report.entities;
}

/// Gives an entity what it leaves to the layer that it is shown on.
void Explosion::TakeAttributes(DXFEntity& entity, const DXFLayer& layer)
{
    if (entity.Color() == DXFLayer::COLOR_OF_INSERT) {
        entity.SetColor(layer.Color());
        if (auto* text = dynamic_cast<TextEntity*>(&entity)) {
            TextInfo info = text->GetTextInfo();
            info.SetColor(layer.Color());
            text->SetTextInfo(info);
        }
    }
    if (auto* picture = dynamic_cast<DXFImage*>(&entity)) picture->SetLayerName(layer.Name());
    auto* line = dynamic_cast<DXFLineBase*>(&entity);
    if (!line) return;
    if (line->Style() == DXFLayer::STYLE_OF_INSERT) line->SetStyle(layer.Style());
    if (line->Width() == DXFLayer::WIDTH_OF_INSERT) line->SetWidth(layer.Width());
}

std::unique_ptr<DXFEntity> Explosion::Image(const DXFEntity& entity, const Map& map)
{
    std::unique_ptr<DXFEntity> image = m_Placement(entity, map, m_PointsLeft);
    if (m_Placement.LackedRoom()) m_Report.limitReached = true;
    m_PointsLeft -= m_Placement.Points();
    return image;
}

DXFLayer* Explosion::TargetOf(InsertBlocks::Layer& layer, DXFLayer* inherited)
{
    if (layer.target) return layer.target;
    const DXFLayer& source = *layer.source;
    if (source.Name() == L"0") return inherited;
    layer.target = m_Document[source.HashName()];
    if (layer.target) return layer.target;
    layer.target = m_Document.AddLayer(source.Name());
    if (!layer.target) return inherited;
    layer.target->SetColor(source.Color());
    layer.target->SetWidth(source.Width());
    layer.target->SetStyleStr(source.StyleStr());
    return layer.target;
}

bool Explosion::GoesOn()
{
    m_Stopped = m_Stopped || !m_KeepGoing;
    if (m_VisitsLeft == 0) m_Report.limitReached = true;
    if (m_Stopped || m_Report.limitReached) return false;
    --m_VisitsLeft;
    return true;
}

} // namespace

Report InsertExploder::Explode(DXF& document, const std::atomic<bool>& keepGoing) const
{
    return Explosion(document, keepGoing, m_Limit, m_PointLimit).Run();
}
