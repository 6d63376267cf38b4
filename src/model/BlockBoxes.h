#pragma once

#include "support/Extents.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

class DXFBlock;

/// Computes the boxes of a block and of all blocks that it needs for that, and leaves each in its block.
///
/// Blocks hold inserts of other blocks: a graph that a drawing from a stranger may make as deep, as wide and
/// as circular as it likes. The walk keeps its path on the heap and finds groups of blocks that hold each
/// other (Tarjan's strongly connected components), innermost first. A group of one takes the box of its
/// document. In a larger group each member's box is computed by itself, with the members that are then being
/// entered counting as empty, so that the result does not depend on who was asked first.
class BlockBoxes {
public:
    /// Members of larger groups count each other as empty: the work stays in proportion to the drawing.
    static constexpr std::size_t MAX_GROUP = 64;

    void Compute(const DXFBlock& block);

private:
    using Box = GTL::Extents3D<double>;
    struct Node {
        const DXFBlock* block;
        std::vector<const DXFBlock*> used; ///< blocks that it inserts
        std::size_t next = 0;              ///< how many of them have been followed
        std::size_t low;                   ///< the earliest open node that can be reached
        bool isOpen = true;                ///< its group is not complete yet
    };
    class Group;

    void Enter(const DXFBlock& block);
    void Follow(const DXFBlock& used);
    void Leave();

    std::vector<Node> m_Nodes; ///< in the order of entering
    std::unordered_map<const DXFBlock*, std::size_t> m_Places;
    std::vector<std::size_t> m_Path;
    std::vector<std::size_t> m_Open;
};
