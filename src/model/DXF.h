#pragma once

#include "model/DXFBlock.h"
#include "model/DXFLayer.h"

#include <concepts>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

class DXFFile;

/// A drawing: named layers in drawing order (the first is drawn first), named blocks, an active layer. A new
/// document has one layer, "0", which is active.
///
/// Names of layers are compared without regard to case, names of blocks with it. Copies of a document share
/// its layers and blocks; the last document that holds one frees it. Extents, BringToFront, MoveToBack and
/// SetLayerOrder take the document's lock; around everything else callers in several threads bracket with
/// Lock and Unlock. Extents also takes the locks of the blocks' documents that it needs, none within another.
///
/// Long operations take a flag owned by the caller, which another thread may clear: they go on while it reads
/// true.
class HALYARD_API DXF {
public:
    using BlockMap = std::map<std::wstring, DXFBlock*>;

    DXF();
    /// Shares the layers and blocks of the source. Inserts in them go on resolving their blocks in the
    /// source; when a document lets go of a layer or block that another one has too, inserts there that
    /// resolved in it turn to the other.
    DXF(const DXF& other);
    DXF& operator=(const DXF& other);
    virtual ~DXF();
    /// Back to one empty layer "0" and no blocks.
    void Clear();

    /// A new layer on top of all others; null when the name is null, empty, not valid or taken.
    DXFLayer* AddLayer(const wchar_t* name);
    DXFLayer* AddLayer(const std::wstring& name);
    /// Layer "0" cannot be removed. An active or last named layer that is removed leaves its place empty.
    ErrorString RemoveLayer(const wchar_t* name);
    ErrorString RemoveLayer(const std::wstring& name);
    ErrorString RemoveLayer(DXFLayer*& layer);
    ErrorString RemoveLayer(DXFLayer& layer);
    /// By the name in its stored case; without one there is no active layer afterwards.
    ErrorString SetActiveLayer(const wchar_t* name);
    ErrorString SetActiveLayer(const std::wstring& name);
    /// The renamed layer becomes the topmost. The new name is not checked for its characters.
    ErrorString RenameLayer(const wchar_t* oldName, const wchar_t* newName);
    bool HasLayer(const HashedString<wchar_t>& name) const;
    bool HasLayer(const wchar_t* name) const;
    bool HasLayer(const std::wstring& name) const;
    /// By name: only in its stored case, otherwise null. By hashed name: in any case. By position: null for a
    /// negative one, otherwise not checked.
    DXFLayer* operator[](const wchar_t* name);
    DXFLayer* operator[](const wchar_t* name) const;
    DXFLayer* operator[](const std::wstring& name);
    DXFLayer* operator[](const std::wstring& name) const;
    DXFLayer* operator[](unsigned long long position) { return m_Layers[position]; }
    DXFLayer* operator[](unsigned long long position) const { return m_Layers[position]; }
    template <std::integral T>
    DXFLayer* operator[](T position)
    {
        return std::as_const(*this)[position];
    }
    template <std::integral T>
    DXFLayer* operator[](T position) const
    {
        if constexpr (std::is_signed_v<T>)
            if (position < 0) return nullptr;
        return (*this)[static_cast<unsigned long long>(position)];
    }
    DXFLayer* operator[](const HashedString<wchar_t>& name);
    DXFLayer* operator[](const HashedString<wchar_t>& name) const;

    size_t NumLayers() const { return m_Layers.size(); }
    size_t NumBlocks() const { return m_Blocks.size(); }
    /// Changes when the set of layers, a layer's name or their order changes.
    unsigned int ModifiedID() const { return m_ModifiedID; }
    /// Of all layers; blocks are not counted.
    int NumEntities() const;

    /// Drawing order; names in their stored case. Unknown names and layers that are in place change nothing.
    void BringToFront(const std::wstring& name);
    void MoveToBack(const std::wstring& name);
    /// Brings each name to the front in turn: the last named ends topmost.
    void SetLayerOrder(const std::vector<std::wstring>& names);
    std::vector<std::wstring> GetLayerOrder() const;

    /// Takes ownership and returns the entity; without an active layer deletes it and returns null.
    DXFEntity* Add(DXFEntity* entity);
    /// To the layer of that name ("" is "0"). A layer that is missing is made when createLayer is set; when
    /// it cannot be made the entity goes to the last named layer. Otherwise the entity is deleted and null
    /// returned.
    DXFEntity* Add(const wchar_t* layerName, DXFEntity* entity, bool createLayer);
    DXFEntity* Add(const std::wstring& layerName, DXFEntity* entity, bool createLayer);

    /// A new block under the name, owned by the document. A block that had the name before is found no more,
    /// but lives on until the document goes.
    DXFBlock* AddBlock(const wchar_t* name);
    DXFBlock* AddBlock(const std::wstring& name);
    bool HasBlock(const wchar_t* name) const;
    bool HasBlock(const std::wstring& name) const;
    DXFBlock* GetBlock(const wchar_t* name);
    DXFBlock* GetBlock(const wchar_t* name) const;
    DXFBlock* GetBlock(const std::wstring& name);
    DXFBlock* GetBlock(const std::wstring& name) const;
    /// Iteration in the order of names; false at the end.
    bool GetFirstBlock(BlockMap::const_iterator& block) const;
    bool GetFNextBlock(BlockMap::const_iterator& block) const;
    /// True when a block holds entities on a layer of that name.
    bool IsLayerUsedInBlock(const std::wstring& layerName) const;

    /// Hands the entities of all visible layers whose box meets the view to the writer, in drawing order.
    void Draw(DXFWriter& writer, const GTL::Extents2D<double>& view,
              const std::atomic<bool>& keepGoing) const;
    /// Box of all layers; invalid when none has one.
    GTL::Extents3D<double> Extents();
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t, const std::atomic<bool>& keepGoing);
    /// Cuts all layers down to the context's rectangle; layers left empty are removed, "0" too.
    void Clip(DXFClipContext& context, const std::atomic<bool>& keepGoing);
    /// Replaces the contents by those of a DXF file. With clearAll the whole document is cleared first (and
    /// after a failure), otherwise only the contents of its layers.
    ErrorString Read(const std::wstring& fileName, const std::atomic<bool>& keepGoing, bool clearAll);
    /// Writes a DXF file; an export mode above 0 adds true colours.
    ErrorString Write(const std::wstring& fileName, const std::atomic<bool>& keepGoing, int exportMode);

    /// Re-entrant; always true.
    bool Lock() const;
    void Unlock() const;

private:
    friend class BlockBoxes;
    friend class DXFFile;
    friend class DXFInsert;
    friend class DXFLayer;
    using Layers = std::deque<DXFLayer*>;
    /// The hash stands beside the layer so that a search seldom has to look into one.
    struct NamedLayer {
        unsigned int hash;
        DXFLayer* layer;
    };
    /// By hash, then by text without regard to case: no choice of names makes a look-up slow.
    struct ByName {
        using is_transparent = void;
        using Name = HashedString<wchar_t>;
        bool operator()(const NamedLayer& a, const NamedLayer& b) const;
        bool operator()(const NamedLayer& a, const Name& b) const;
        bool operator()(const Name& a, const NamedLayer& b) const;
    };

    Layers::iterator LayerIterator(const HashedString<wchar_t>& name);
    Layers::const_iterator LayerIterator(const HashedString<wchar_t>& name) const;
    DXFLayer* Find(const HashedString<wchar_t>& name) const;
    /// Adds to a layer of this document and makes it the last named one.
    DXFEntity* AddTo(DXFLayer& layer, DXFEntity* entity);
    /// Puts the layer into the look-up or takes it out. While it is in, its name must not change.
    void Index(DXFLayer& layer);
    void Unindex(DXFLayer& layer);
    DXFLayer* AppendLayer(const std::wstring& name);
    /// Puts a layer on top of all others.
    void MoveToEnd(Layers::iterator place);
    /// For a layer that has just left the queue: empties the places that name it and destroys it, unless
    /// another document has it too.
    void Forget(DXFLayer* layer);
    struct Contents;
    /// Leaves the document without layers and blocks.
    Contents TakeContents();
    void Share(const DXF& other);
    void Release(Contents contents);
    void Release(DXFLayer* layer);
    void Release(DXFBlock* block);
    /// Inserts of the layer that resolve in this document turn to another.
    void TurnInserts(DXFLayer& layer, DXF* heir);

    ::Lock m_Lock;
    Layers m_Layers;
    DXFLayer* m_ActiveLayer = nullptr;
    BlockMap m_Blocks;
    std::vector<DXFBlock*> m_ReplacedBlocks;
    DXFLayer* m_LastNamedLayer = nullptr;
    unsigned int m_ModifiedID;
    int m_Flag = 1;
    std::multiset<NamedLayer, ByName> m_LayersByName; ///< the layers of the queue, for the look-up by name
    bool m_ResolvesInserts = false;                   ///< an insert has been given this document
};
