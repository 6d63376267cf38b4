#include "dxf/ReadState.h"

#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/EntityPlacement.h"
#include "model/InsertPlacement.h"
#include "support/NumberText.h"

#include <cmath>

namespace {

// Flags of POLYLINE (70) and of its VERTEX objects (70).
constexpr int POLYLINE_CLOSED = 1;
constexpr int POLYLINE_POLYFACE = 64;
constexpr int POLYLINE_OF_SPACE =
    8 | 16 | POLYLINE_POLYFACE; ///< 3D polylines and meshes: no object coordinates
constexpr int VERTEX_MESH_POSITION = 64;
constexpr int VERTEX_POLYFACE = 128;

int IntOf(const GroupReader& groups, int code)
{
    return ParseInt(groups.First(code));
}

double NumberOf(const GroupReader& groups, int code, double absent)
{
    return groups.Has(code) ? ParseDouble(groups.First(code)) : absent;
}

/// The direction of codes 210, 220 and 230, or (0, 0, 1) unless all three are there.
GTL::Vector3D<double> ExtrusionOf(const GroupReader& groups)
{
    if (!groups.Has(210) || !groups.Has(220) || !groups.Has(230)) return {0, 0, 1};
    return {ParseDouble(groups.First(210)), ParseDouble(groups.First(220)), ParseDouble(groups.First(230))};
}

std::uint64_t NumArcs(const DXFEntity& entity)
{
    const auto* polyline = dynamic_cast<const DXFPolyline*>(&entity);
    if (!polyline) return 0;
    const bool closed = dynamic_cast<const DXFPolygon*>(polyline) != nullptr;
    return EntityPlacement::NumArcs(polyline->GetPoly().Vertices(), closed);
}

/// Walks the values of one code in file order.
class ValueList {
public:
    ValueList(const GroupReader& groups, int code)
        : m_Groups(groups), m_Code(code), m_Index(groups.IndexOf(code))
    {
    }

    bool AtEnd() const { return m_Index == GroupReader::NONE; }
    double Number() const { return AtEnd() ? 0.0 : ParseDouble(m_Groups.ValueAt(m_Index)); }
    void Next()
    {
        if (!AtEnd()) m_Index = m_Groups.NextIndexOf(m_Code, m_Index);
    }

private:
    const GroupReader& m_Groups;
    int m_Code;
    std::size_t m_Index;
};

/// Corners of SOLID and 3DFACE: bases 0 to 3.
constexpr int NUM_CORNERS = 4;

} // namespace

/// From the object coordinates of the current object to the world; none where they are the same, or are not
/// looked at.
std::optional<DXFFile::Map> DXFFile::MapToWorld() const
{
    if (!m_ExtrusionsToWorld) return std::nullopt;
    const GTL::Vector3D<double> extrusion = ExtrusionOf(*m_Reader);
    if (extrusion == GTL::Vector3D<double>(0, 0, 1)) return std::nullopt;
    return ObjectToWorld(extrusion);
}

/// The entity, or its image where there is a map. Chords in place of bulges have their limit in all.
std::unique_ptr<DXFEntity> DXFFile::Mapped(std::unique_ptr<DXFEntity> entity, const std::optional<Map>& map)
{
    if (!map) return entity;
    EntityPlacement placement;
    std::unique_ptr<DXFEntity> image = placement(*entity, *map, m_ReadState->pointsLeft);
    if (!image) {
        entity->Transform(*map);
        return entity;
    }
    m_ReadState->pointsLeft -= placement.Points();
    m_ChordedArcs += NumArcs(*entity) - NumArcs(*image);
    return image;
}

ErrorString DXFFile::ReadPoint(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    P3 position;
    if (ErrorString read = ReadPoint(position, 0); !read) return read;
    auto point = std::make_unique<DXFPoint>(position);
    ReadColor(point.get(), document);
    AddEntity(document, point.release());
    return true;
}

ErrorString DXFFile::ReadLine(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    P3 start;
    P3 end;
    if (ErrorString read = ReadPoint(start, 0); !read) return read;
    if (ErrorString read = ReadPoint(end, 1); !read) return read;
    auto line = std::make_unique<DXFLine>(start, end);
    ReadLineAttributes(line.get(), document);
    AddEntity(document, line.release());
    return true;
}

template <class Entity>
ErrorString DXFFile::ReadCorners(DXF& document, const std::optional<Map>& toWorld)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    auto entity = std::make_unique<Entity>();
    for (int corner = 0; corner < NUM_CORNERS; ++corner)
        if (ErrorString read = ReadPoint((*entity)[corner], corner); !read) return read;
    if (toWorld) entity->Transform(*toWorld);
    ReadColor(entity.get(), document);
    AddEntity(document, entity.release());
    return true;
}

ErrorString DXFFile::ReadSolid(DXF& document)
{
    return ReadCorners<DXFSolid>(document, MapToWorld());
}

ErrorString DXFFile::Read3dFace(DXF& document)
{
    return ReadCorners<DXF3dFace>(document, std::nullopt);
}

ErrorString DXFFile::ReadCircle(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8, 40}); !verified) return verified;
    P3 center;
    if (ErrorString read = ReadPoint(center, 0); !read) return read;
    auto circle =
        std::make_unique<DXFCircle>(center, ParseDouble(m_Reader->First(40)), ExtrusionOf(*m_Reader));
    ReadLineAttributes(circle.get(), document);
    AddEntity(document, circle.release());
    return true;
}

/// The file's angles run counter-clockwise from +x, the model's clockwise from +y: the ends change places.
ErrorString DXFFile::ReadArc(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8, 40}); !verified) return verified;
    P3 center;
    if (ErrorString read = ReadPoint(center, 0); !read) return read;
    const double start = TrimAngle(90 - ParseDouble(m_Reader->First(51)));
    const double end = TrimAngle(90 - ParseDouble(m_Reader->First(50)));
    auto arc = std::make_unique<DXFArc>(center, ParseDouble(m_Reader->First(40)), start, end,
                                        ExtrusionOf(*m_Reader));
    ReadLineAttributes(arc.get(), document);
    AddEntity(document, arc.release());
    return true;
}

void DXFFile::ReadLineAttributes(DXFLineBase* entity, DXF& document)
{
    ReadColor(entity, document);
    ReadLineStyle(entity, document);
    ReadLineWidth(entity, document);
}

ErrorString DXFFile::ReadLWPolyline(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    const double elevation = NumberOf(*m_Reader, 38, 0);
    ValueList x(*m_Reader, 10);
    ValueList y(*m_Reader, 20);
    ValueList bulge(*m_Reader, 42);
    std::vector<P3> vertices;
    vertices.reserve(m_Reader->NumGroups() / 3);
    for (; !x.AtEnd() && !y.AtEnd(); x.Next(), y.Next(), bulge.Next())
        vertices.emplace_back(x.Number(), y.Number(), elevation, bulge.Number());
    vertices.shrink_to_fit();
    const bool closed = IntOf(*m_Reader, 70) & POLYLINE_CLOSED;
    auto entity = closed ? std::make_unique<DXFPolygon>() : std::make_unique<DXFPolyline>();
    entity->SetPoly(GTL::Polyline<P3>(std::move(vertices)));
    entity->SetLWPolyLine(true);
    entity->SetElevation(elevation);
    ReadLineAttributes(entity.get(), document);
    AddEntity(document, Mapped(std::move(entity), MapToWorld()).release());
    return true;
}

/// Collects the vertices of one POLYLINE: a chain or ring of its own, or the faces of a polyface mesh.
class DXFFile::PolylineBuilder {
public:
    explicit PolylineBuilder(std::unique_ptr<DXFPolyline> entity) : m_Entity(std::move(entity)) {}

    /// Entities complete so far, in order; the caller takes them.
    std::vector<std::unique_ptr<DXFPolyline>>& Complete() { return m_Complete; }

    void AddVertex(const P3& position) { m_Vertices.push_back(position); }
    void AddMeshPosition(const P3& position) { m_Mesh.push_back(position); }

    /// A face of at most three corners; corners that name no position are left out, and so is a face of less
    /// than two.
    void AddFace(const GroupReader& groups)
    {
        StartFace();
        for (const int code : {71, 72, 73}) {
            if (!groups.Has(code)) break;
            const long long index = std::abs(static_cast<long long>(IntOf(groups, code))) - 1;
            if (index >= 0 && index < static_cast<long long>(m_Mesh.size()))
                m_Vertices.push_back(m_Mesh[static_cast<std::size_t>(index)]);
        }
        if (m_Vertices.size() < 2) m_Vertices.clear();
    }

    void Finish()
    {
        if (m_IsFace && m_Vertices.empty()) return;
        m_Entity->SetPoly(GTL::Polyline<P3>(std::move(m_Vertices)));
        m_Complete.push_back(std::move(m_Entity));
    }

private:
    void StartFace()
    {
        auto face = std::make_unique<DXFPolygon>();
        face->SetInfo(m_Entity->GetInfo());
        face->SetStyle(m_Entity->Style());
        if (!m_Vertices.empty()) {
            m_Entity->SetPoly(GTL::Polyline<P3>(std::move(m_Vertices)));
            m_Complete.push_back(std::move(m_Entity));
            m_Vertices.clear();
        }
        m_Entity = std::move(face);
        m_IsFace = true;
    }

    std::unique_ptr<DXFPolyline> m_Entity;
    std::vector<P3> m_Vertices;
    std::vector<P3> m_Mesh;
    std::vector<std::unique_ptr<DXFPolyline>> m_Complete;
    bool m_IsFace = false;
};

ErrorString DXFFile::ReadPolyline(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    const int flags = IntOf(*m_Reader, 70);
    const bool ring = (flags & POLYLINE_CLOSED) && !(flags & POLYLINE_POLYFACE);
    auto entity = ring ? std::make_unique<DXFPolygon>() : std::make_unique<DXFPolyline>();
    ReadLineAttributes(entity.get(), document);
    const auto toWorld = flags & POLYLINE_OF_SPACE ? std::nullopt : MapToWorld();
    DXFLayer* layer = CurrentLayer(document);
    const std::wstring layerName = layer ? std::wstring() : Widen(m_Reader->First(8));

    PolylineBuilder builder(std::move(entity));
    ErrorString result = ReadVertices(builder);
    if (!result) return result;
    builder.Finish();
    for (auto& complete : builder.Complete()) {
        DXFEntity* const placed = Mapped(std::move(complete), toWorld).release();
        if (layer)
            document.AddTo(*layer, placed);
        else
            document.Add(layerName, placed, true);
    }
    return true;
}

/// Reads VERTEX objects up to the first object of another name, which is consumed.
ErrorString DXFFile::ReadVertices(PolylineBuilder& builder)
{
    for (;;) {
        if (!ReadNextGroup()) return true;
        if (m_Reader->Name() != "VERTEX") break;
        P3 position;
        if (!ReadPoint(position, 0)) return ErrorString(Message::PolylineVertices);
        position.B(NumberOf(*m_Reader, 42, 0));
        const int flags = IntOf(*m_Reader, 70);
        if (!(flags & VERTEX_POLYFACE))
            builder.AddVertex(position);
        else if (flags & VERTEX_MESH_POSITION)
            builder.AddMeshPosition(position);
        else
            builder.AddFace(*m_Reader);
    }
    NoteSection();
    CountSkipped(m_Reader->Name());
    return true;
}

/// The form without block name and point is what the writer leaves of an insert: nothing to read.
ErrorString DXFFile::ReadInsert(DXF& document)
{
    if (m_Reader->First(2).empty() && !m_Reader->Has(10) && !m_Reader->Has(20)) {
        CountSkipped(m_Reader->Name());
        return true;
    }
    if (ErrorString verified = VerifyGroupData({8}); !verified) return verified;
    P3 position;
    if (ErrorString read = ReadPoint(position, 0); !read) return read;
    auto insert =
        std::make_unique<DXFInsert>(Widen(m_Reader->First(2)), position, NumberOf(*m_Reader, 50, 0));
    const auto extrusion = ExtrusionOf(*m_Reader);
    insert->SetExtrusion({extrusion.X(), extrusion.Y(), extrusion.Z()});
    insert->SetScale({NumberOf(*m_Reader, 41, 1), NumberOf(*m_Reader, 42, 1), NumberOf(*m_Reader, 43, 1)});
    if (m_Reader->Has(70)) insert->SetRowCount(IntOf(*m_Reader, 70));
    if (m_Reader->Has(44)) insert->SetRowSpacing(NumberOf(*m_Reader, 44, 0));
    if (m_Reader->Has(71)) insert->SetColumnCount(IntOf(*m_Reader, 71));
    if (m_Reader->Has(45)) insert->SetColumnSpacing(NumberOf(*m_Reader, 45, 0));
    insert->SetDXF(m_ReadState->document);
    ReadColor(insert.get(), document);
    AddEntity(document, insert.release());
    return true;
}
