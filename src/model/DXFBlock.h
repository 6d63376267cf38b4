#pragma once

#include "platform/Lock.h"
#include "support/ErrorString.h"
#include "support/Extents.h"
#include "support/HashedString.h"

#include <memory>
#include <string>
#include <vector>

class DXF;

/// A named block: a base point, a few attributes of the DXF format, and a document of its own that holds its
/// entities.
class HALYARD_API DXFBlock {
public:
    /// The name is not checked; it is case-sensitive.
    explicit DXFBlock(const wchar_t* name);
    explicit DXFBlock(const std::wstring& name);
    DXFBlock(const DXFBlock&) = delete;
    DXFBlock& operator=(const DXFBlock&) = delete;
    ~DXFBlock();

    const std::wstring& Name() const { return m_Name; }
    const GTL::Point3D<double>& BasePoint() const { return m_BasePoint; }
    void SetBasePoint(const GTL::Point3D<double>& point) { m_BasePoint = point; }
    /// Path of an external reference; empty for none.
    const std::wstring& Xref() const { return m_Xref; }
    void SetXref(const std::wstring& path) { m_Xref = path; }
    /// The layer that the definition itself is on.
    const std::wstring& LayerName() const { return m_LayerName.Text(); }
    const HashedString<wchar_t>& HashLayerName() const { return m_LayerName; }
    void SetLayerName(const std::wstring& name);
    /// The flags of the DXF format, kept as they are.
    int BlockTypeFlag() const { return m_BlockTypeFlag; }
    void SetBlockTypeFlag(int flag) { m_BlockTypeFlag = flag; }
    unsigned int ModifiedID() const { return m_ModifiedID; }
    /// The block's own document; owned by the block, never null.
    DXF* GetDXF() const { return m_DXF.get(); }
    DXF* GetDXF() { return m_DXF.get(); }

    void Clear();
    /// Box of the block's document (DXF::Extents), kept once it is known: fill a block before asking. A block
    /// that holds inserts of itself, directly or through others, is empty inside itself.
    const GTL::Extents3D<double>& Extents() const;

    /// For the host's bookkeeping; the library calls neither. DecRefCount is true when the count was 0 or has
    /// become 0.
    void IncRefCount() { ++m_RefCount; }
    bool DecRefCount();

    /// The rule and the text of layer names.
    static ErrorString IsValidBlockName(const std::wstring& name);

    /// Re-entrant; always true.
    bool Lock() const;
    void Unlock() const;

protected:
    unsigned int GetModId() const { return m_StoredModId; }
    void SetModId(unsigned int id) { m_StoredModId = id; }

private:
    friend class DXF;
    friend class BlockBoxes;

    ::Lock m_Lock;
    GTL::Point3D<double> m_BasePoint;
    std::wstring m_Name;
    std::wstring m_Xref;
    HashedString<wchar_t> m_LayerName;
    int m_BlockTypeFlag = 0;
    unsigned int m_ModifiedID;
    unsigned int m_StoredModId = 0;
    mutable GTL::Extents3D<double> m_Extents;
    std::unique_ptr<DXF> m_DXF;
    unsigned int m_RefCount = 0;
    std::vector<DXF*> m_Holders; ///< documents that have the block; the last one to let go destroys it

    static unsigned int s_NextModifiedID;
};
