#include "model/DXFBlock.h"

#include "model/BlockBoxes.h"
#include "model/DXF.h"

unsigned int DXFBlock::s_NextModifiedID = 1;

DXFBlock::DXFBlock(const wchar_t* name) : DXFBlock(std::wstring(name ? name : L"")) {}

DXFBlock::DXFBlock(const std::wstring& name)
    : m_Name(name), m_ModifiedID(s_NextModifiedID++), m_DXF(std::make_unique<DXF>())
{
}

DXFBlock::~DXFBlock() = default;

void DXFBlock::SetLayerName(const std::wstring& name)
{
    m_LayerName = HashedString<wchar_t>(name);
}

void DXFBlock::Clear()
{
    m_DXF->Clear();
    m_Extents.Reset();
    m_ModifiedID = s_NextModifiedID++;
}

const GTL::Extents3D<double>& DXFBlock::Extents() const
{
    if (!BlockBoxes::KnownBox(*this).IsValid()) BlockBoxes::Keep(*this, m_DXF->Extents());
    return m_Extents;
}

bool DXFBlock::DecRefCount()
{
    if (m_RefCount > 0) --m_RefCount;
    return m_RefCount == 0;
}

ErrorString DXFBlock::IsValidBlockName(const std::wstring& name)
{
    return DXFLayer::IsValidName(name);
}

bool DXFBlock::Lock() const
{
    m_Lock.Enter();
    return true;
}

void DXFBlock::Unlock() const
{
    m_Lock.Leave();
}
