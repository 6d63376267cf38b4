#pragma once

#include "model/DXFEntity.h"
#include "platform/Lock.h"
#include "support/ErrorString.h"
#include "support/HashedString.h"
#include "support/LineInfo.h"

#include <atomic>
#include <deque>
#include <memory>
#include <string>
#include <vector>

class DXF;
class NewWinDXF;

/// The entities of one layer in drawing order, with the layer's display attributes, a box kept on demand and
/// an id that changes with the contents. Layers assigned from one another share their entities until one of
/// them changes. No operation takes the layer's lock; callers that share a layer between threads use Lock and
/// Unlock.
class HALYARD_API DXFLayer {
public:
    /// Attributes of layer "0" of a block whose entities, where they have none of their own, take those of
    /// the layer that the block is inserted on: values that no drawing can hold. InsertExploder puts the real
    /// ones in their place.
    static constexpr unsigned long COLOR_OF_INSERT = 0x1FFFFFF;
    static constexpr float WIDTH_OF_INSERT = -1;
    static constexpr int STYLE_OF_INSERT = -1;

    /// The name is not checked.
    explicit DXFLayer(const wchar_t* name);
    explicit DXFLayer(const std::wstring& name);
    DXFLayer(const DXFLayer&) = delete;
    ~DXFLayer();
    /// Takes name, attributes and box, and shares the entities. The id is new; reference count and owner's id
    /// stay.
    DXFLayer& operator=(const DXFLayer& other);

    const std::wstring& Name() const { return m_Name.Text(); }
    const HashedString<wchar_t>& HashName() const { return m_Name; }
    /// Device colour word 0x00BBGGRR.
    const unsigned long& Color() const { return m_Color; }
    float Width() const { return m_Width; }
    int Style() const { return m_Style; }
    std::wstring StyleStr() const;
    bool IsVisible() const { return m_Visible; }
    unsigned int ModifiedID() const { return m_ModifiedID; }
    size_t NumEntities() const { return m_Entities ? m_Entities->size() : 0; }
    /// Index not checked. The second form makes the entities private to this layer first.
    DXFEntity* operator[](size_t index) const { return (*m_Entities)[index]; }
    DXFEntity* operator[](size_t index);

    /// Setters leave the id as it is.
    void SetColor(unsigned long color) { m_Color = color; }
    void SetColor(DXFColor color) { m_Color = color; }
    void SetWidth(float width) { m_Width = width; }
    void SetStyle(LineInfo::LINESTYLE style) { m_Style = style; }
    /// By name, without regard to case; an unknown name is dashed.
    void SetStyleStr(const std::wstring& name);
    void SetVisible(bool visible) { m_Visible = visible; }

    /// For the host's bookkeeping; the library calls neither. DecRefCount is true when the count was 0 or has
    /// become 0.
    void IncRefCount() { ++m_RefCount; }
    bool DecRefCount();

    /// Appends an entity and takes ownership; returns it. Null is returned for null. A box that is known
    /// grows; one that is not stays so, here and in all that adds entities, and the entity's is not asked
    /// for.
    DXFEntity* Add(DXFEntity* entity);
    /// Destroys an entity of this layer. False when it is not here (or was shared: take the pointer from the
    /// non-const operator[]).
    bool Remove(DXFEntity* entity);
    void Clear();
    /// Hands all entities over, in order; the layer is empty afterwards.
    std::vector<std::unique_ptr<DXFEntity>> Release();
    /// Visits the entities in order while the flag reads true, unless the layer's box misses the view
    /// (touching counts as in view).
    void Draw(DXFWriter& writer, const GTL::Extents2D<double>& view,
              const std::atomic<bool>& keepGoing) const;
    /// Box of all entities; invalid when none has one. Computed when it is not known.
    const GTL::Extents3D<double>& Extents() const;

    void Move(double dx, double dy, double dz);
    /// About the vertical axis through the centre; degrees, counter-clockwise.
    void Rotate(const GTL::Point3D<double>& center, double angleDegrees);
    void Scale(const GTL::Point3D<double>& center, double factor);
    void Transform(const GTL::Transformation<GTL::Point3D<double>>& t, const std::atomic<bool>& keepGoing);
    /// Cuts the entities down to the context's rectangle; false when nothing remains.
    bool Clip(DXFClipContext& context, const std::atomic<bool>& keepGoing);

    /// Moves all entities of the source behind those of this layer. A layer moved into itself stays as it is.
    DXFLayer& operator<<(DXFLayer& source);
    /// Moves all entities of this layer into the target; returns this layer.
    DXFLayer& operator>>(DXFLayer& target);
    /// Appends copies of the source's entities. The id stays.
    void InsertCopy(const DXFLayer& source);

    /// A name must not contain any of < > / \ " : ; ? , = `
    static ErrorString IsValidName(const std::wstring& name);

    /// Re-entrant; always true.
    bool Lock() const;
    void Unlock() const;

protected:
    friend class NewWinDXF;
    /// The id that the owner noted, and its own display flag; the layer never reads them.
    unsigned int GetModId() const { return m_StoredModId; }
    void SetModId(unsigned int id) { m_StoredModId = id; }
    bool GetShow() const { return m_Show; }
    void SetShow(bool show) { m_Show = show; }

private:
    friend class BlockBoxes;
    friend class DXF;
    friend class DXFSolid;
    using Entities = std::deque<DXFEntity*>;

    void SetName(const std::wstring& name);
    const Entities& Queue() const;
    /// Afterwards there is a queue, and it is this layer's own.
    void MakePrivate();
    void ReleaseEntities();
    void Touch();
    void TransformAll(const GTL::Transformation<GTL::Point3D<double>>& t, const std::atomic<bool>* keepGoing);

    ::Lock m_Lock;
    HashedString<wchar_t> m_Name;
    unsigned long m_Color = 0xFFFFFF;
    int m_Style = LineInfo::CONTINUOUS;
    float m_Width = 0.1F;
    bool m_Visible = true;
    bool m_Show = true;
    unsigned int m_ModifiedID;
    unsigned int m_StoredModId = 0;
    mutable GTL::Extents3D<double> m_Extents; ///< invalid: not known
    Entities* m_Entities = nullptr;           ///< owned jointly with the layers that share it; null: none yet
    unsigned int* m_ShareCount = nullptr;
    unsigned int m_RefCount = 0;
    std::vector<DXF*> m_Holders; ///< documents that have the layer; the last one to let go destroys it

    static unsigned int s_NextModifiedID;
};
