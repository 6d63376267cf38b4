#include "model/InsertBlocks.h"

#include "model/DXF.h"
#include "model/DXFInsert.h"
#include "model/DXFWriter.h"

namespace {

class InsertSeeker final : public DXFWriter {
public:
    using DXFWriter::Write;
    void Write(const DXFInsert& insert) override { m_Found = &insert; }
    const DXFInsert* m_Found = nullptr;
};

/// Null for any other kind.
const DXFInsert* AsInsert(const DXFEntity& entity)
{
    InsertSeeker seeker;
    entity.Write(seeker);
    return seeker.m_Found;
}

} // namespace

InsertBlocks::InsertBlocks(const DXF& document, const std::atomic<bool>& keepGoing)
    : m_Document(document), m_KeepGoing(keepGoing)
{
    for (std::size_t i = 0; i < document.NumLayers(); ++i) m_OwnLayers.insert(document[i]);
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        for (std::size_t k = 0; k < layer.NumEntities() && keepGoing; ++k)
            if (const DXFInsert* insert = AsInsert(*layer[k])) Reach(*insert);
    }
    while (!m_Unread.empty() && keepGoing) {
        Block* block = m_Unread.back();
        m_Unread.pop_back();
        ReadBlock(*block);
    }
    MarkWhatShows();
}

InsertBlocks::Block* InsertBlocks::Find(const DXFInsert& insert) const
{
    const auto found = m_Blocks.find(insert.Block());
    return found == m_Blocks.end() ? nullptr : found->second.get();
}

InsertBlocks::Block* InsertBlocks::Reach(const DXFInsert& insert)
{
    const DXFBlock* source = insert.Block();
    if (!source) return nullptr;
    std::unique_ptr<Block>& block = m_Blocks[source];
    if (block) return block.get();
    block = std::make_unique<Block>();
    block->source = source;
    block->onPath = source->GetDXF() == &m_Document;
    if (!block->onPath) m_Unread.push_back(block.get());
    return block.get();
}

void InsertBlocks::ReadBlock(Block& block)
{
    const DXF& document = *block.source->GetDXF();
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer* layer = document[i];
        if (!layer->IsVisible() || layer->NumEntities() == 0) continue;
        if (m_OwnLayers.count(layer)) {
            m_Kept.push_back(std::make_unique<DXFLayer>(layer->Name()));
            *m_Kept.back() = *layer;
            layer = m_Kept.back().get();
        }
        ReadLayer(block, *layer);
    }
}

void InsertBlocks::ReadLayer(Block& block, const DXFLayer& layer)
{
    Layer& read = block.layers.emplace_back(Layer{&layer, nullptr, {}});
    read.items.reserve(layer.NumEntities());
    for (std::size_t i = 0; i < layer.NumEntities() && m_KeepGoing; ++i) {
        const DXFEntity& entity = *layer[i];
        const DXFInsert* insert = AsInsert(entity);
        Block* inserted = insert ? Reach(*insert) : nullptr;
        if (inserted) inserted->holders.push_back(&block);
        block.shows = block.shows || !insert;
        read.items.push_back({&entity, insert, inserted});
    }
}

void InsertBlocks::MarkWhatShows()
{
    std::vector<Block*> marked;
    for (const auto& [source, block] : m_Blocks)
        if (block->shows) marked.push_back(block.get());
    while (!marked.empty()) {
        const Block* block = marked.back();
        marked.pop_back();
        for (Block* holder : block->holders) {
            if (holder->shows) continue;
            holder->shows = true;
            marked.push_back(holder);
        }
    }
}
