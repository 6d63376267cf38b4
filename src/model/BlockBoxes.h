#pragma once

#include "support/Extents.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

class DXF;
class DXFBlock;
class DXFInsert;
class DXFLayer;

/// Computes the box of a document and of all blocks that it needs for that. Boxes of layers, inserts and
/// blocks that are known are taken as they are; those that become known are kept.
///
/// Blocks hold inserts of other blocks: a graph that a drawing from a stranger may make as deep, as wide and
/// as circular as it likes. The walk keeps its path on the heap and finds groups of documents that hold each
/// other (Tarjan's strongly connected components), innermost first. In a group each member's box is computed
/// by itself, with the members that are then being entered counting as empty, so that the result does not
/// depend on who was asked first.
///
/// A document's lock is held while the document is read, and only one at a time: threads that start in
/// different documents of a ring do not wait for each other. Where they meet in the ring, one may take what
/// the other has found for a member by itself, a box that is larger than within the ring.
class BlockBoxes {
public:
    /// Members of larger groups count each other as empty: the work stays in proportion to the drawing.
    static constexpr std::size_t MAX_GROUP = 64;

    using Box = GTL::Extents3D<double>;

    Box Compute(const DXF& document);

    /// The box that the block has; invalid while it is not known.
    static Box KnownBox(const DXFBlock& block);
    /// A box that is known already stays.
    static void Keep(const DXFBlock& block, const Box& box);

private:
    struct Node {
        const DXF* document;
        const DXFBlock* block; ///< that holds the document, where it was come upon
        std::size_t low;       ///< the earliest open node that can be reached
        bool usesItself = false;
        bool isOpen = true; ///< its group is not complete yet
        Box box;
        // How far it has been read. The ids tell whether another thread has changed it since.
        std::size_t numLayers = 0;
        unsigned int documentId = 0;
        std::size_t layer = 0;
        unsigned int layerId = 0;
        std::size_t entity = 0;
        bool isLayerWhole = true; ///< no insert of an open node stands in it
        Box layerBox;
    };
    class Group;

    void Enter(const DXF& document, const DXFBlock* block);
    /// Reads on. Gives a block that is missing and to be entered first, or null at the end.
    const DXFBlock* Read(std::size_t place);
    const DXFBlock* ReadLayer(std::size_t place, const DXFLayer& layer);
    void Leave();
    /// For the open nodes from that place on, which form a group.
    void Settle(std::size_t place);
    /// Widens a box by that of an insert. Otherwise gives the block whose box is still to be found for that.
    const DXFBlock* Widen(Box& box, const DXFInsert& insert) const;
    /// Gives the block's box, which may be invalid, unless it is still to be found.
    bool IsSettled(const DXFBlock& block, Box& box) const;

    std::vector<Node> m_Nodes; ///< in the order of entering
    std::unordered_map<const DXF*, std::size_t> m_Places;
    std::vector<std::size_t> m_Path;
    std::vector<std::size_t> m_Open; ///< ascending
};
