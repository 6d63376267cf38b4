#include "model/BlockBoxes.h"

#include "model/DXF.h"
#include "model/DXFInsert.h"
#include "model/FetchAhead.h"

#include <algorithm>
#include <array>
#include <typeinfo>
#include <utility>

namespace {

/// For the boxes of all blocks, which are read and kept in a moment. Whoever holds it enters no other lock.
const Lock& LockOfBlocks()
{
    static const Lock s_Lock;
    return s_Lock;
}

/// Tells inserts from all other entities, without a call to them: an entity of the host may do anything where
/// it writes itself. No insert is asked for its box: it would start another walk.
class InsertFinder {
public:
    const DXFInsert* InsertIn(const DXFEntity& entity)
    {
        const std::type_info& type = typeid(entity);
        if (std::find(m_Others.begin(), m_Others.end(), &type) != m_Others.end()) return nullptr;
        const auto* insert = dynamic_cast<const DXFInsert*>(&entity);
        if (!insert) m_Others[m_Next++ % m_Others.size()] = &type;
        return insert;
    }

private:
    std::array<const std::type_info*, 4> m_Others{}; ///< classes that were met last and are no inserts
    std::size_t m_Next = 0;
};

} // namespace

/// Documents that hold each other.
class BlockBoxes::Group {
public:
    /// The members are nodes, by ascending place.
    Group(const BlockBoxes& boxes, const std::vector<std::size_t>& nodes)
        : m_BlockBoxes(boxes),
          m_Nodes(nodes),
          m_Members(nodes.size()),
          m_Boxes(nodes.size()),
          m_Entered(nodes.size(), true)
    {
        for (std::size_t i = 0; i < nodes.size(); ++i) Read(DocumentOf(i), m_Members[i]);
    }

    /// The box of one member when nothing is being entered yet; its layers keep theirs.
    Box Settle(std::size_t index)
    {
        if (m_Members.size() <= MAX_GROUP) {
            m_Boxes.assign(m_Members.size(), Box());
            m_Entered.assign(m_Members.size(), false);
            m_Entered[index] = true;
        }
        Box box = m_Members[index].known;
        for (Part& part : m_Members[index].parts) {
            part.whole = BoxOf(part);
            box.Update(part.whole);
        }
        Keep(DocumentOf(index), m_Members[index]);
        return box;
    }

private:
    /// Of a layer. The inserts are copies: the document is not locked any more when they are asked.
    struct Part {
        std::size_t place;
        unsigned int id;
        Box own; ///< of all but the inserts of members
        std::vector<std::pair<DXFInsert, std::size_t>> inner;
        Box whole;
    };
    struct Member {
        Box known;
        std::vector<Part> parts;
    };

    const DXF& DocumentOf(std::size_t index) const { return *m_BlockBoxes.m_Nodes[m_Nodes[index]].document; }

    /// Place of a block's document among the members; their number for any other.
    std::size_t IndexOf(const DXFBlock& block) const
    {
        const auto node = m_BlockBoxes.m_Places.find(block.GetDXF());
        if (node == m_BlockBoxes.m_Places.end()) return m_Nodes.size();
        const auto place = std::lower_bound(m_Nodes.begin(), m_Nodes.end(), node->second);
        const bool isMember = place != m_Nodes.end() && *place == node->second;
        return isMember ? static_cast<std::size_t>(place - m_Nodes.begin()) : m_Nodes.size();
    }

    void Read(const DXF& document, Member& member) const
    {
        const LockHold hold(document.m_Lock);
        for (std::size_t i = 0; i < document.NumLayers(); ++i) {
            const DXFLayer& layer = *document.m_Layers[i];
            if (layer.m_Extents.IsValid())
                member.known.Update(layer.m_Extents);
            else
                Read(layer, member.parts.emplace_back(Part{i, layer.ModifiedID(), {}, {}, {}}));
        }
    }

    void Read(const DXFLayer& layer, Part& part) const
    {
        InsertFinder finder;
        for (const DXFEntity* entity : layer.Queue()) {
            const DXFInsert* insert = finder.InsertIn(*entity);
            if (!insert) part.own.Update(entity->Extents());
            const DXFBlock* missing = insert ? m_BlockBoxes.Widen(part.own, *insert) : nullptr;
            if (!missing) continue;
            const std::size_t inner = IndexOf(*missing);
            if (inner < m_Nodes.size())
                part.inner.emplace_back(*insert, inner);
            else // another thread has just added it
                part.own.Update(insert->ExtentsWith(missing, Box()));
        }
    }

    /// Another thread may have changed the document since it was read.
    static void Keep(const DXF& document, const Member& member)
    {
        const LockHold hold(document.m_Lock);
        for (const Part& part : member.parts) {
            if (part.place >= document.NumLayers()) continue;
            const DXFLayer& layer = *document.m_Layers[part.place];
            if (layer.ModifiedID() == part.id && !layer.m_Extents.IsValid()) layer.m_Extents = part.whole;
        }
    }

    /// A member that is being entered is empty; one that has been left keeps the box that it had then.
    Box Visit(std::size_t index)
    {
        if (m_Entered[index]) return m_Boxes[index];
        m_Entered[index] = true;
        Box box = m_Members[index].known;
        for (const Part& part : m_Members[index].parts) box.Update(BoxOf(part));
        return m_Boxes[index] = box;
    }

    Box BoxOf(const Part& part)
    {
        Box box = part.own;
        for (const auto& [insert, inner] : part.inner)
            box.Update(insert.ExtentsWith(m_BlockBoxes.m_Nodes[m_Nodes[inner]].block, Visit(inner)));
        return box;
    }

    const BlockBoxes& m_BlockBoxes;
    const std::vector<std::size_t>& m_Nodes;
    std::vector<Member> m_Members;
    std::vector<Box> m_Boxes;
    std::vector<bool> m_Entered;
};

BlockBoxes::Box BlockBoxes::Compute(const DXF& document)
{
    Enter(document, nullptr);
    while (!m_Path.empty()) {
        if (const DXFBlock* missing = Read(m_Path.back()))
            Enter(*missing->GetDXF(), missing);
        else
            Leave();
    }
    return m_Nodes.front().box;
}

void BlockBoxes::Enter(const DXF& document, const DXFBlock* block)
{
    const std::size_t place = m_Nodes.size();
    m_Places.emplace(&document, place);
    m_Path.push_back(place);
    m_Open.push_back(place);
    m_Nodes.emplace_back(
        Node{.document = &document, .block = block, .low = place, .box = {}, .layerBox = {}});
}

const DXFBlock* BlockBoxes::Read(std::size_t place)
{
    Node& node = m_Nodes[place];
    const LockHold hold(node.document->m_Lock);
    const auto& layers = node.document->m_Layers;
    if (node.numLayers != layers.size() || node.documentId != node.document->ModifiedID()) {
        node.numLayers = layers.size();
        node.documentId = node.document->ModifiedID();
        node.layer = 0;
    }
    for (; node.layer < layers.size(); ++node.layer) {
        const DXFLayer& layer = *layers[node.layer];
        if (layer.m_Extents.IsValid()) continue;
        if (const DXFBlock* missing = ReadLayer(place, layer)) return missing;
    }
    for (const DXFLayer* layer : layers) node.box.Update(layer->m_Extents);
    return nullptr;
}

const DXFBlock* BlockBoxes::ReadLayer(std::size_t place, const DXFLayer& layer)
{
    Node& node = m_Nodes[place];
    if (node.layerId != layer.ModifiedID()) {
        node.layerId = layer.ModifiedID();
        node.entity = 0;
        node.isLayerWhole = true;
        node.layerBox.Reset();
    }
    InsertFinder finder;
    const DXFLayer::Entities& queue = layer.Queue();
    for (; node.entity < queue.size(); ++node.entity) {
        FetchAhead(queue, node.entity, queue.size());
        const DXFEntity& entity = *queue[node.entity];
        const DXFInsert* insert = finder.InsertIn(entity);
        if (!insert && node.isLayerWhole) node.layerBox.Update(entity.Extents());
        const DXFBlock* missing = insert ? Widen(node.layerBox, *insert) : nullptr;
        if (!missing) continue;
        const auto known = m_Places.find(missing->GetDXF());
        if (known == m_Places.end()) return missing;
        m_Nodes[known->second].block = missing;
        node.low = std::min(node.low, known->second);
        node.usesItself = node.usesItself || known->second == place;
        node.isLayerWhole = false;
    }
    if (node.isLayerWhole) layer.m_Extents = node.layerBox;
    return nullptr;
}

void BlockBoxes::Leave()
{
    const std::size_t place = m_Path.back();
    const Node& node = m_Nodes[place];
    m_Path.pop_back();
    if (!m_Path.empty()) m_Nodes[m_Path.back()].low = std::min(m_Nodes[m_Path.back()].low, node.low);
    if (node.low == place) Settle(place);
}

void BlockBoxes::Settle(std::size_t place)
{
    const auto first = std::lower_bound(m_Open.begin(), m_Open.end(), place);
    const std::vector<std::size_t> places(first, m_Open.end());
    m_Open.erase(first, m_Open.end());
    if (places.size() > 1 || m_Nodes[place].usesItself) {
        Group group(*this, places);
        for (std::size_t i = 0; i < places.size(); ++i) m_Nodes[places[i]].box = group.Settle(i);
    }
    for (const std::size_t settled : places) {
        Node& node = m_Nodes[settled];
        node.isOpen = false;
        if (node.block) Keep(*node.block, node.box);
    }
}

const DXFBlock* BlockBoxes::Widen(Box& box, const DXFInsert& insert) const
{
    if (!insert.m_Extents.IsValid()) {
        const DXFBlock* block = insert.Block();
        Box inner;
        if (block && !IsSettled(*block, inner)) return block;
        insert.m_Extents = insert.ExtentsWith(block, inner);
    }
    box.Update(insert.m_Extents);
    return nullptr;
}

bool BlockBoxes::IsSettled(const DXFBlock& block, Box& box) const
{
    box = KnownBox(block);
    if (box.IsValid()) return true;
    const auto known = m_Places.find(block.GetDXF());
    if (known == m_Places.end() || m_Nodes[known->second].isOpen) return false;
    box = m_Nodes[known->second].box;
    return true;
}

BlockBoxes::Box BlockBoxes::KnownBox(const DXFBlock& block)
{
    const LockHold hold(LockOfBlocks());
    return block.m_Extents;
}

void BlockBoxes::Keep(const DXFBlock& block, const Box& box)
{
    const LockHold hold(LockOfBlocks());
    if (!block.m_Extents.IsValid()) block.m_Extents = box;
}
