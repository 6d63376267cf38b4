#include "model/DXF.h"

#include "model/DXFInsert.h"
#include "model/DXFWriter.h"

#include <algorithm>
#include <cstdlib>

namespace {

/// Collects the inserts of what it is handed.
class InsertCollector : public DXFWriter {
public:
    std::vector<DXFInsert*> found;

    void Write(const DXFInsert& insert) override { found.push_back(const_cast<DXFInsert*>(&insert)); }
    using DXFWriter::Write;
};

/// Blocks that are to be destroyed in this thread. A block holds a document, which holds blocks: destroying
/// the inner ones only after the outer one is gone keeps the stack flat however deep they nest. Null while
/// nothing is destroyed.
thread_local std::vector<DXFBlock*>* t_Doomed = nullptr;

void Destroy(DXFBlock* block)
{
    if (t_Doomed) {
        t_Doomed->push_back(block);
        return;
    }
    std::vector<DXFBlock*> doomed{block};
    t_Doomed = &doomed;
    while (!doomed.empty()) {
        const DXFBlock* next = doomed.back();
        doomed.pop_back();
        delete next;
    }
    t_Doomed = nullptr;
}

/// Removes one mention of the document.
void LetGo(std::vector<DXF*>& holders, const DXF* document)
{
    const auto place = std::find(holders.rbegin(), holders.rend(), document);
    if (place == holders.rend()) return;
    *place = holders.back();
    holders.pop_back();
}

} // namespace

/// What a document holds.
struct DXF::Contents {
    Layers layers;
    std::vector<DXFBlock*> blocks;
};

DXF::DXF() : m_ModifiedID(static_cast<unsigned int>(std::rand()))
{
    m_ActiveLayer = AppendLayer(L"0");
}

DXF::DXF(const DXF& other)
{
    Share(other);
}

DXF& DXF::operator=(const DXF& other)
{
    if (this == &other) return *this;
    Contents former = TakeContents();
    Share(other);
    Release(std::move(former));
    return *this;
}

DXF::~DXF()
{
    Release(TakeContents());
}

void DXF::Clear()
{
    Release(TakeContents());
    m_ActiveLayer = AppendLayer(L"0");
    ++m_ModifiedID;
}

DXF::Contents DXF::TakeContents()
{
    Contents contents;
    contents.layers.swap(m_Layers);
    contents.blocks.swap(m_ReplacedBlocks);
    for (const auto& [name, block] : m_Blocks) contents.blocks.push_back(block);
    m_Blocks.clear();
    m_LayersByName.clear();
    m_ActiveLayer = nullptr;
    m_LastNamedLayer = nullptr;
    return contents;
}

void DXF::Share(const DXF& other)
{
    m_Layers = other.m_Layers;
    m_LayersByName = other.m_LayersByName;
    m_Blocks = other.m_Blocks;
    m_ActiveLayer = other.m_ActiveLayer;
    m_LastNamedLayer = other.m_LastNamedLayer;
    m_ModifiedID = other.m_ModifiedID;
    m_Flag = other.m_Flag;
    for (DXFLayer* layer : m_Layers) layer->m_Holders.push_back(this);
    for (const auto& [name, block] : m_Blocks) block->m_Holders.push_back(this);
}

void DXF::Release(Contents contents)
{
    for (DXFLayer* layer : contents.layers) Release(layer);
    for (DXFBlock* block : contents.blocks) Release(block);
}

void DXF::Release(DXFLayer* layer)
{
    LetGo(layer->m_Holders, this);
    if (layer->m_Holders.empty())
        delete layer;
    else if (std::find(layer->m_Holders.begin(), layer->m_Holders.end(), this) == layer->m_Holders.end())
        TurnInserts(*layer, layer->m_Holders.front());
}

void DXF::Release(DXFBlock* block)
{
    LetGo(block->m_Holders, this);
    if (block->m_Holders.empty()) {
        Destroy(block);
        return;
    }
    if (std::find(block->m_Holders.begin(), block->m_Holders.end(), this) != block->m_Holders.end()) return;
    DXF* heir = block->m_Holders.front();
    std::vector<const DXF*> documents{block->GetDXF()};
    std::set<const DXF*> seen{block->GetDXF()};
    while (m_ResolvesInserts && !documents.empty()) {
        const DXF* document = documents.back();
        documents.pop_back();
        for (DXFLayer* layer : document->m_Layers) TurnInserts(*layer, heir);
        for (const auto& [name, inner] : document->m_Blocks)
            if (seen.insert(inner->GetDXF()).second) documents.push_back(inner->GetDXF());
    }
}

void DXF::TurnInserts(DXFLayer& layer, DXF* heir)
{
    if (!m_ResolvesInserts) return;
    InsertCollector inserts;
    for (const DXFEntity* entity : layer.Queue()) entity->Write(inserts);
    for (DXFInsert* insert : inserts.found)
        if (insert->DXF() == this) insert->SetDXF(heir);
}

void DXF::Forget(DXFLayer* layer)
{
    if (m_ActiveLayer == layer) m_ActiveLayer = nullptr;
    if (m_LastNamedLayer == layer) m_LastNamedLayer = nullptr;
    Unindex(*layer);
    Release(layer);
}

DXFBlock* DXF::AddBlock(const wchar_t* name)
{
    return name ? AddBlock(std::wstring(name)) : nullptr;
}

DXFBlock* DXF::AddBlock(const std::wstring& name)
{
    auto* block = new DXFBlock(name);
    block->m_Holders.push_back(this);
    DXFBlock*& place = m_Blocks[name];
    if (place) m_ReplacedBlocks.push_back(place);
    return place = block;
}

bool DXF::HasBlock(const wchar_t* name) const
{
    return GetBlock(name) != nullptr;
}

bool DXF::HasBlock(const std::wstring& name) const
{
    return m_Blocks.contains(name);
}

DXFBlock* DXF::GetBlock(const wchar_t* name)
{
    return name ? GetBlock(std::wstring(name)) : nullptr;
}

DXFBlock* DXF::GetBlock(const wchar_t* name) const
{
    return name ? GetBlock(std::wstring(name)) : nullptr;
}

DXFBlock* DXF::GetBlock(const std::wstring& name)
{
    const auto found = m_Blocks.find(name);
    return found == m_Blocks.end() ? nullptr : found->second;
}

DXFBlock* DXF::GetBlock(const std::wstring& name) const
{
    const auto found = m_Blocks.find(name);
    return found == m_Blocks.end() ? nullptr : found->second;
}

bool DXF::GetFirstBlock(BlockMap::const_iterator& block) const
{
    block = m_Blocks.begin();
    return block != m_Blocks.end();
}

bool DXF::GetFNextBlock(BlockMap::const_iterator& block) const
{
    return block != m_Blocks.end() && ++block != m_Blocks.end();
}

bool DXF::IsLayerUsedInBlock(const std::wstring& layerName) const
{
    const HashedString<wchar_t> name(layerName);
    return std::any_of(m_Blocks.begin(), m_Blocks.end(), [&name](const BlockMap::value_type& entry) {
        const DXFLayer* layer = entry.second->GetDXF()->Find(name);
        return layer && layer->NumEntities() > 0;
    });
}
