#include "model/BlockBoxes.h"

#include "model/DXF.h"
#include "model/DXFInsert.h"
#include "model/DXFWriter.h"

#include <algorithm>

namespace {

/// Hands the inserts of a document to one action and all other entities to another.
template <class OnInsert, class OnOther>
class Sorter : private DXFWriter {
public:
    Sorter(OnInsert onInsert, OnOther onOther) : m_OnInsert(onInsert), m_OnOther(onOther) {}

    void Sort(const DXF& document)
    {
        for (std::size_t i = 0; i < document.NumLayers(); ++i) Sort(*document[i]);
    }

private:
    void Sort(const DXFLayer& layer)
    {
        for (std::size_t i = 0; i < layer.NumEntities(); ++i) {
            m_IsInsert = false;
            layer[i]->Write(*this);
            if (!m_IsInsert) m_OnOther(*layer[i]);
        }
    }
    using DXFWriter::Write;
    void Write(const DXFInsert& insert) override
    {
        m_IsInsert = true;
        m_OnInsert(insert);
    }

    OnInsert m_OnInsert;
    OnOther m_OnOther;
    bool m_IsInsert = false;
};

} // namespace

/// Blocks that hold each other.
class BlockBoxes::Group {
public:
    explicit Group(const std::vector<const DXFBlock*>& blocks) : m_Blocks(blocks)
    {
        for (const DXFBlock* block : blocks) m_Places.emplace(block, m_Places.size());
        m_Members.resize(blocks.size());
        for (std::size_t i = 0; i < blocks.size(); ++i) Sort(*blocks[i], m_Members[i]);
    }

    /// The box of one member when nothing is being entered yet.
    Box BoxOf(std::size_t member)
    {
        if (m_Members.size() > MAX_GROUP) return Union(member, [](std::size_t) { return Box(); });
        m_Boxes.assign(m_Members.size(), Box());
        m_Entered.assign(m_Members.size(), false);
        return Visit(member);
    }

private:
    struct Member {
        Box own; ///< of all but the inserts of members
        std::vector<std::pair<const DXFInsert*, std::size_t>> inner;
    };

    /// The boxes of blocks outside the group are settled. No insert is asked for its box: it would start
    /// another walk.
    void Sort(const DXFBlock& block, Member& member)
    {
        const auto onInsert = [&](const DXFInsert& insert) {
            const DXFBlock* used = insert.Block();
            const auto place = m_Places.find(used);
            if (place != m_Places.end())
                member.inner.emplace_back(&insert, place->second);
            else
                member.own.Update(insert.ExtentsWith(used, used ? used->m_Extents : Box()));
        };
        const auto onOther = [&](const DXFEntity& entity) {
            member.own.Update(entity.Extents());
        };
        Sorter(onInsert, onOther).Sort(*block.GetDXF());
    }

    /// A member that is being entered is empty; one that has been left keeps the box that it had then.
    Box Visit(std::size_t index)
    {
        if (m_Entered[index]) return m_Boxes[index];
        m_Entered[index] = true;
        const Box box = Union(index, [this](std::size_t inner) { return Visit(inner); });
        return m_Boxes[index] = box;
    }

    template <class BoxWithin>
    Box Union(std::size_t index, BoxWithin boxWithin)
    {
        Box box = m_Members[index].own;
        for (const auto& [insert, inner] : m_Members[index].inner)
            box.Update(insert->ExtentsWith(m_Blocks[inner], boxWithin(inner)));
        return box;
    }

    const std::vector<const DXFBlock*>& m_Blocks;
    std::unordered_map<const DXFBlock*, std::size_t> m_Places;
    std::vector<Member> m_Members;
    std::vector<Box> m_Boxes;
    std::vector<bool> m_Entered;
};

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
    const auto onInsert = [&node](const DXFInsert& insert) {
        const DXFBlock* used = insert.Block();
        if (used && !used->m_Extents.IsValid()) node.used.push_back(used);
    };
    Sorter(onInsert, [](const DXFEntity&) {}).Sort(*block.GetDXF());
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
    Group members(group);
    for (std::size_t i = 0; i < group.size(); ++i) group[i]->m_Extents = members.BoxOf(i);
}
