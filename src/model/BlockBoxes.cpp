#include "model/BlockBoxes.h"

#include "model/DXF.h"
#include "model/DXFInsert.h"
#include "model/DXFWriter.h"

#include <algorithm>

namespace {

/// Finds the block of an insert; null for any other entity.
class BlockFinder : private DXFWriter {
public:
    const DXFBlock* operator()(const DXFEntity& entity)
    {
        m_Insert = nullptr;
        entity.Write(*this);
        return m_Insert ? m_Insert->Block() : nullptr;
    }
    const DXFInsert* Insert() const { return m_Insert; }

private:
    using DXFWriter::Write;
    void Write(const DXFInsert& insert) override { m_Insert = &insert; }

    const DXFInsert* m_Insert = nullptr;
};

template <class Action>
void ForEachEntity(const DXF& document, Action action)
{
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        for (std::size_t k = 0; k < layer.NumEntities(); ++k) action(*layer[k]);
    }
}

} // namespace

/// Blocks that hold each other.
class BlockBoxes::Group {
public:
    explicit Group(const std::vector<const DXFBlock*>& blocks)
    {
        for (const DXFBlock* block : blocks) m_Places.emplace(block, m_Places.size());
        m_Members.resize(blocks.size());
        for (std::size_t i = 0; i < blocks.size(); ++i) Sort(*blocks[i], m_Members[i]);
    }

    /// The box of one member when nothing is being entered yet.
    Box BoxOf(std::size_t member)
    {
        m_Boxes.assign(m_Members.size(), Box());
        m_Entered.assign(m_Members.size(), false);
        return Visit(member);
    }

private:
    struct Member {
        Box own; ///< of all but the inserts of members
        std::vector<std::pair<const DXFInsert*, std::size_t>> inner;
    };

    void Sort(const DXFBlock& block, Member& member)
    {
        BlockFinder find;
        ForEachEntity(*block.GetDXF(), [&](const DXFEntity& entity) {
            const auto place = m_Places.find(find(entity));
            if (place == m_Places.end())
                member.own.Update(entity.Extents());
            else
                member.inner.emplace_back(find.Insert(), place->second);
        });
    }

    /// A member that is being entered is empty; one that has been left keeps the box that it had then.
    Box Visit(std::size_t index)
    {
        if (m_Entered[index]) return m_Boxes[index];
        m_Entered[index] = true;
        const Member& member = m_Members[index];
        Box box = member.own;
        for (const auto& [insert, inner] : member.inner) {
            const bool enters = m_Members.size() <= MAX_GROUP;
            box.Update(insert->ExtentsWith(insert->Block(), enters ? Visit(inner) : Box()));
        }
        return m_Boxes[index] = box;
    }

    std::unordered_map<const DXFBlock*, std::size_t> m_Places;
    std::vector<Member> m_Members;
    std::vector<Box> m_Boxes;
    std::vector<bool> m_Entered;
};

/// A block that holds an insert has a box, if only of the insertion point: what stays without one holds none,
/// and asking for it within the walk goes no deeper.
void BlockBoxes::Compute(const DXFBlock& block)
{
    Enter(block);
    while (!m_Path.empty()) {
        Node& node = m_Nodes[m_Path.back()];
        if (node.next < node.used.size())
            Follow(*node.used[node.next++]);
        else
            Leave();
    }
}

void BlockBoxes::Enter(const DXFBlock& block)
{
    const std::size_t place = m_Nodes.size();
    m_Places.emplace(&block, place);
    m_Path.push_back(place);
    m_Open.push_back(place);
    Node& node = m_Nodes.emplace_back(Node{&block, {}, 0, place});
    BlockFinder find;
    ForEachEntity(*block.GetDXF(), [&](const DXFEntity& entity) {
        const DXFBlock* used = find(entity);
        if (used && !used->m_Extents.IsValid()) node.used.push_back(used);
    });
}

void BlockBoxes::Follow(const DXFBlock& used)
{
    const auto known = m_Places.find(&used);
    if (known == m_Places.end()) {
        if (!used.m_Extents.IsValid()) Enter(used);
    } else if (m_Nodes[known->second].isOpen) {
        Node& node = m_Nodes[m_Path.back()];
        node.low = std::min(node.low, known->second);
    }
}

void BlockBoxes::Leave()
{
    const std::size_t place = m_Path.back();
    m_Path.pop_back();
    Node& node = m_Nodes[place];
    if (!m_Path.empty()) m_Nodes[m_Path.back()].low = std::min(m_Nodes[m_Path.back()].low, node.low);
    if (node.low != place) return;
    std::vector<const DXFBlock*> group;
    const auto first = std::lower_bound(m_Open.begin(), m_Open.end(), place);
    for (auto member = first; member != m_Open.end(); ++member) {
        m_Nodes[*member].isOpen = false;
        group.push_back(m_Nodes[*member].block);
    }
    m_Open.erase(first, m_Open.end());
    const bool holdsItself = std::find(node.used.begin(), node.used.end(), node.block) != node.used.end();
    Settle(group, holdsItself);
}

void BlockBoxes::Settle(const std::vector<const DXFBlock*>& group, bool holdsItself)
{
    if (group.size() == 1 && !holdsItself) {
        group[0]->m_Extents = group[0]->m_DXF->Extents();
        return;
    }
    Group members(group);
    for (std::size_t i = 0; i < group.size(); ++i) group[i]->m_Extents = members.BoxOf(i);
}
