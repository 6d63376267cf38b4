#include "model/DXFLayer.h"

#include "model/DXF.h"
#include "model/FetchAhead.h"
#include "support/LineStyle.h"

#include <algorithm>

using P3 = GTL::Point3D<double>;
using Map = GTL::Transformation<P3>;

unsigned int DXFLayer::s_NextModifiedID = 1;

DXFLayer::DXFLayer(const wchar_t* name) : DXFLayer(std::wstring(name ? name : L"")) {}

DXFLayer::DXFLayer(const std::wstring& name) : m_Name(name)
{
    Touch();
}

DXFLayer::~DXFLayer()
{
    ReleaseEntities();
}

DXFLayer& DXFLayer::operator=(const DXFLayer& other)
{
    if (this != &other) {
        SetName(other.Name());
        if (other.m_ShareCount) ++*other.m_ShareCount;
        ReleaseEntities();
        m_Entities = other.m_Entities;
        m_ShareCount = other.m_ShareCount;
    }
    m_Color = other.m_Color;
    m_Visible = other.m_Visible;
    m_Extents = other.m_Extents;
    m_Width = other.m_Width;
    m_Style = other.m_Style;
    m_Show = other.m_Show;
    Touch();
    return *this;
}

std::wstring DXFLayer::StyleStr() const
{
    return LineStyleName(m_Style);
}

DXFEntity* DXFLayer::operator[](size_t index)
{
    MakePrivate();
    return (*m_Entities)[index];
}

void DXFLayer::SetStyleStr(const std::wstring& name)
{
    m_Style = LineStyleOf(name);
}

bool DXFLayer::DecRefCount()
{
    if (m_RefCount > 0) --m_RefCount;
    return m_RefCount == 0;
}

DXFEntity* DXFLayer::Add(DXFEntity* entity)
{
    if (!entity) return nullptr;
    MakePrivate();
    m_Entities->push_back(entity);
    if (m_Extents.IsValid()) m_Extents.Update(entity->Extents());
    Touch();
    return entity;
}

bool DXFLayer::Remove(DXFEntity* entity)
{
    MakePrivate();
    const auto place = std::find(m_Entities->begin(), m_Entities->end(), entity);
    if (place == m_Entities->end()) return false;
    delete entity;
    m_Entities->erase(place);
    m_Extents.Reset();
    Touch();
    return true;
}

void DXFLayer::Clear()
{
    ReleaseEntities();
    m_Extents.Reset();
    Touch();
}

std::vector<std::unique_ptr<DXFEntity>> DXFLayer::Release()
{
    MakePrivate();
    std::vector<std::unique_ptr<DXFEntity>> released;
    released.reserve(m_Entities->size());
    for (DXFEntity* entity : *m_Entities) released.emplace_back(entity);
    m_Entities->clear();
    m_Extents.Reset();
    Touch();
    return released;
}

void DXFLayer::Draw(DXFWriter& writer, const GTL::Extents2D<double>& view,
                    const std::atomic<bool>& keepGoing) const
{
    const GTL::Extents3D<double>& box = Extents();
    const bool misses = box.MinX() > view.MaxX() || view.MinX() > box.MaxX() || box.MinY() > view.MaxY()
                        || view.MinY() > box.MaxY();
    if (!box.IsValid() || misses) return;
    const Entities& queue = Queue();
    for (std::size_t i = 0; i < queue.size() && keepGoing; ++i) {
        FetchAhead(queue, i, queue.size());
        queue[i]->Write(writer);
    }
}

const GTL::Extents3D<double>& DXFLayer::Extents() const
{
    if (m_Extents.IsValid()) return m_Extents;
    GTL::Extents3D<double> box;
    const Entities& queue = Queue();
    for (std::size_t i = 0; i < queue.size(); ++i) {
        FetchAhead(queue, i, queue.size());
        box.Update(queue[i]->Extents());
    }
    // Inserts of a block in itself may have had this box computed on their way.
    if (!m_Extents.IsValid()) m_Extents = box;
    return m_Extents;
}

void DXFLayer::Move(double dx, double dy, double dz)
{
    TransformAll(Map().Translate(dx, dy, dz), nullptr);
}

void DXFLayer::Rotate(const P3& center, double angleDegrees)
{
    TransformAll(Map()
                     .Translate(-center.X(), -center.Y(), -center.Z())
                     .RotateZ(Angle(angleDegrees))
                     .Translate(center.X(), center.Y(), center.Z()),
                 nullptr);
}

void DXFLayer::Scale(const P3& center, double factor)
{
    TransformAll(Map()
                     .Translate(-center.X(), -center.Y(), -center.Z())
                     .Scale(factor, factor, factor)
                     .Translate(center.X(), center.Y(), center.Z()),
                 nullptr);
}

void DXFLayer::Transform(const Map& t, const std::atomic<bool>& keepGoing)
{
    TransformAll(t, &keepGoing);
}

DXFLayer& DXFLayer::operator<<(DXFLayer& source)
{
    if (&source == this) return *this;
    MakePrivate();
    source.MakePrivate();
    if (source.m_Extents.IsValid()) {
        if (m_Extents.IsValid()) m_Extents.Update(source.m_Extents);
    } else if (source.NumEntities() > 0) {
        m_Extents.Reset();
    }
    m_Entities->insert(m_Entities->end(), source.m_Entities->begin(), source.m_Entities->end());
    Touch();
    source.m_Entities->clear();
    source.Clear();
    return *this;
}

DXFLayer& DXFLayer::operator>>(DXFLayer& target)
{
    target << *this;
    return *this;
}

void DXFLayer::InsertCopy(const DXFLayer& source)
{
    MakePrivate();
    if (m_Extents.IsValid()) m_Extents.Update(source.Extents());
    const size_t count = source.NumEntities();
    for (size_t i = 0; i < count; ++i) m_Entities->push_back(source[i]->Copy());
}

ErrorString DXFLayer::IsValidName(const std::wstring& name)
{
    if (name.find_first_of(L"<>/\\\":;?,=`") == std::wstring::npos) return true;
    return ErrorString(name) << Message::InvalidLayerName;
}

bool DXFLayer::Lock() const
{
    m_Lock.Enter();
    return true;
}

void DXFLayer::Unlock() const
{
    m_Lock.Leave();
}

void DXFLayer::SetName(const std::wstring& name)
{
    for (DXF* document : m_Holders) document->Unindex(*this);
    m_Name = HashedString<wchar_t>(name);
    for (DXF* document : m_Holders) document->Index(*this);
}

const DXFLayer::Entities& DXFLayer::Queue() const
{
    static const Entities NONE;
    return m_Entities ? *m_Entities : NONE;
}

void DXFLayer::MakePrivate()
{
    if (m_ShareCount && *m_ShareCount < 2) return;
    auto* copies = new Entities;
    const Entities& queue = Queue();
    for (std::size_t i = 0; i < queue.size(); ++i) {
        FetchAhead(queue, i, queue.size());
        copies->push_back(queue[i]->Copy());
    }
    ReleaseEntities();
    m_Entities = copies;
    m_ShareCount = new unsigned int(1);
}

void DXFLayer::ReleaseEntities()
{
    if (m_ShareCount && --*m_ShareCount == 0) {
        for (std::size_t i = 0; i < m_Entities->size(); ++i) {
            FetchAhead(*m_Entities, i, m_Entities->size());
            delete (*m_Entities)[i];
        }
        delete m_Entities;
        delete m_ShareCount;
    }
    m_Entities = nullptr;
    m_ShareCount = nullptr;
}

void DXFLayer::Touch()
{
    m_ModifiedID = s_NextModifiedID++;
}

void DXFLayer::TransformAll(const Map& t, const std::atomic<bool>* keepGoing)
{
    MakePrivate();
    for (std::size_t i = 0; i < m_Entities->size() && (!keepGoing || *keepGoing); ++i) {
        FetchAhead(*m_Entities, i, m_Entities->size());
        (*m_Entities)[i]->Transform(t);
    }
    m_Extents.Transform(t);
    Touch();
}
