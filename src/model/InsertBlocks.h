#pragma once

#include "model/DXFEntity.h"

#include <atomic>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class DXF;
class DXFBlock;
class DXFInsert;
class DXFLayer;

/// What the inserts of a document can reach: each block read once, in drawing order, however often it is
/// shown. Valid while the blocks stay as they are; the layers of the document itself may change meanwhile.
class InsertBlocks {
public:
    struct Block;

    struct Item {
        const DXFEntity* entity;
        const DXFInsert* insert; ///< the same entity as an insert; null for any other kind
        Block* block;            ///< of an insert; null when its document has no such block
    };

    /// A layer of a block that is visible and holds something.
    struct Layer {
        const DXFLayer* source;
        DXFLayer* target; ///< for the user to note where the entities go; null at first
        std::vector<Item> items;
    };

    struct Block {
        const DXFBlock* source;
        std::vector<Layer> layers;
        std::vector<Block*> holders; ///< one for each insert of this block within a block
        bool shows = false;          ///< anything but an insert can be reached from here
        bool onPath = false;  ///< for the user to note that it is being visited; true of the document itself
        bool visited = false; ///< for the user's notes
    };

    /// Reads all that the document's inserts reach, in time linear in its size. Ends early when the flag
    /// reads false.
    InsertBlocks(const DXF& document, const std::atomic<bool>& keepGoing);

    /// The block of one of the document's inserts, or null when there is none.
    Block* Find(const DXFInsert& insert) const;

private:
    Block* Reach(const DXFInsert& insert);
    void ReadBlock(Block& block);
    void ReadLayer(Block& block, const DXFLayer& layer);
    void MarkWhatShows();

    const DXF& m_Document;
    const std::atomic<bool>& m_KeepGoing;
    std::unordered_set<const DXFLayer*> m_OwnLayers;
    std::vector<std::unique_ptr<DXFLayer>> m_Kept; ///< hold the entities of layers that a block shares
    std::unordered_map<const DXFBlock*, std::unique_ptr<Block>> m_Blocks;
    std::vector<Block*> m_Unread;
};
