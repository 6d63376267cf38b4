#include "import/SketchUpLoader.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double METRES_PER_INCH = 0.0254;
constexpr unsigned long WHITE = 0xFFFFFF;
constexpr int MAX_DEPTH = 100;
/// A few definitions that hold each other twice and twice again stand for more than any machine holds.
constexpr std::size_t MOST = 10'000'000;

template <class Owner, class Ref>
bool GetList(Owner owner, SUResult (*getNumber)(Owner, std::size_t*),
             SUResult (*getList)(Owner, std::size_t, Ref*, std::size_t*), std::vector<Ref>& list)
{
    list.clear();
    std::size_t number = 0;
    if (getNumber(owner, &number) != SU_SUCCESS || number > MOST) return false;
    if (number == 0) return true;
    list.resize(number, Ref{nullptr});
    // A library that leaves the count alone gave what it announced.
    std::size_t given = number;
    return getList(owner, number, list.data(), &given) == SU_SUCCESS && given >= number;
}

unsigned long ColorWord(const SUColor& color)
{
    return color.red | static_cast<unsigned long>(color.green) << 8
           | static_cast<unsigned long>(color.blue) << 16;
}

/// The colour of a material, where there is one: a call that failed to give it means that there is none.
bool TakeColor(const SketchUpApi& api, SUResult gotMaterial, SUMaterialRef material, unsigned long& color)
{
    if (gotMaterial != SU_SUCCESS || !material.ptr) return true;
    SUColor found = {};
    if (api.SUMaterialGetColor(material, &found) != SU_SUCCESS) return false;
    color = ColorWord(found);
    return true;
}

/// Row-major, with the last element of the matrix, by which even scales may be given, divided out.
bool FromColumns(const SUTransformation& matrix, GTL::Transformation3D<GTL::Point3D<double>>& map)
{
    const double w = matrix.values[15];
    if (w == 0 || !std::isfinite(w)) return false;
    GTL::Transformation3D<GTL::Point3D<double>>::Rows rows;
    for (std::size_t r = 0; r < 3; ++r)
        for (std::size_t c = 0; c < 4; ++c) rows[r][c] = matrix.values[c * 4 + r] / w;
    map = GTL::Transformation3D<GTL::Point3D<double>>(rows);
    return true;
}

/// Releases the model once: when asked to, or else at the end of the scope.
class ModelHold {
public:
    ModelHold(const SketchUpApi& api, SUModelRef model) : m_Api(api), m_Model(model) {}
    ~ModelHold()
    {
        try {
            (void)Release();
        } catch (...) {
            // The load has failed already.
        }
    }
    ModelHold(const ModelHold&) = delete;
    ModelHold& operator=(const ModelHold&) = delete;

    /// False when the library failed to.
    bool Release()
    {
        if (!m_IsHeld) return true;
        m_IsHeld = false;
        return m_Api.SUModelRelease(&m_Model) == SU_SUCCESS;
    }

private:
    const SketchUpApi& m_Api;
    SUModelRef m_Model;
    bool m_IsHeld = true;
};

} // namespace

bool SketchUpModel::Loader::LoadFile(const std::string& fileName, double metresPerUnit)
{
    SUModelRef model = {nullptr};
    SUModelLoadStatus status = {};
    if (m_Api.SUModelCreateFromFileWithStatus(&model, fileName.c_str(), &status) != SU_SUCCESS) return false;
    ModelHold hold(m_Api, model);
    return LoadModel(model, metresPerUnit) && hold.Release();
}

bool SketchUpModel::Loader::LoadModel(SUModelRef model, double metresPerUnit)
{
    SUEntitiesRef entities = {nullptr};
    Map map;
    return m_Api.SUModelGetEntities(model, &entities) == SU_SUCCESS && StartMap(model, metresPerUnit, map)
           && LoadEntities(entities, map, WHITE);
}

/// From inches to the caller's units, the origin of the model's axes to (0, 0, 0).
bool SketchUpModel::Loader::StartMap(SUModelRef model, double metresPerUnit, Map& map) const
{
    const double scale = METRES_PER_INCH / metresPerUnit;
    map.Scale(scale, scale, scale);
    SUAxesRef axes = {nullptr};
    SUPoint3D inches = {};
    if (m_Api.SUModelGetAxes(model, &axes) != SU_SUCCESS
        || m_Api.SUAxesGetOrigin(axes, &inches) != SU_SUCCESS)
        return false;
    if (inches.x == 0 && inches.y == 0 && inches.z == 0) return true;
    const GTL::Point3D<double> origin = map.Apply(GTL::Point3D<double>(inches.x, inches.y, inches.z));
    map.Translate(-origin.X(), -origin.Y(), -origin.Z());
    return true;
}

bool SketchUpModel::Loader::LoadEntities(SUEntitiesRef entities, const Map& map, unsigned long color)
{
    if (m_Depth >= MAX_DEPTH || ++m_ListsVisited > MOST) return false;
    ++m_Depth;
    const bool done = LoadInstances(entities, map, color) && LoadGroups(entities, map, color)
                      && LoadFaces(entities, map, color);
    --m_Depth;
    return done;
}

bool SketchUpModel::Loader::LoadInstances(SUEntitiesRef entities, const Map& map, unsigned long color)
{
    std::vector<SUComponentInstanceRef> instances;
    if (!GetList(entities, m_Api.SUEntitiesGetNumInstances, m_Api.SUEntitiesGetInstances, instances))
        return false;
    for (const SUComponentInstanceRef instance : instances) {
        SUTransformation matrix = {};
        SUComponentDefinitionRef definition = {nullptr};
        SUEntitiesRef inside = {nullptr};
        Map place;
        if (m_Api.SUComponentInstanceGetTransform(instance, &matrix) != SU_SUCCESS
            || !FromColumns(matrix, place)
            || m_Api.SUComponentInstanceGetDefinition(instance, &definition) != SU_SUCCESS
            || m_Api.SUComponentDefinitionGetEntities(definition, &inside) != SU_SUCCESS)
            return false;
        if (!LoadEntities(inside, place.Append(map), color)) return false;
    }
    return true;
}

bool SketchUpModel::Loader::LoadGroups(SUEntitiesRef entities, const Map& map, unsigned long color)
{
    std::vector<SUGroupRef> groups;
    if (!GetList(entities, m_Api.SUEntitiesGetNumGroups, m_Api.SUEntitiesGetGroups, groups)) return false;
    for (const SUGroupRef group : groups) {
        SUMaterialRef material = {nullptr};
        const SUResult gotMaterial =
            m_Api.SUDrawingElementGetMaterial(m_Api.SUGroupToDrawingElement(group), &material);
        unsigned long inherited = color;
        SUEntitiesRef inside = {nullptr};
        SUTransformation matrix = {};
        Map place;
        if (!TakeColor(m_Api, gotMaterial, material, inherited)
            || m_Api.SUGroupGetEntities(group, &inside) != SU_SUCCESS
            || m_Api.SUGroupGetTransform(group, &matrix) != SU_SUCCESS || !FromColumns(matrix, place))
            return false;
        if (!LoadEntities(inside, place.Append(map), inherited)) return false;
    }
    return true;
}

bool SketchUpModel::Loader::LoadFaces(SUEntitiesRef entities, const Map& map, unsigned long color)
{
    std::vector<SUFaceRef> faces;
    if (!GetList(entities, m_Api.SUEntitiesGetNumFaces, m_Api.SUEntitiesGetFaces, faces)) return false;
    if (faces.size() > MOST - m_Faces.size()) return false;
    return std::all_of(faces.begin(), faces.end(),
                       [&](SUFaceRef face) { return LoadFace(face, map, color); });
}

bool SketchUpModel::Loader::LoadFace(SUFaceRef face, const Map& map, unsigned long color)
{
    Face loaded;
    SULoopRef outer = {nullptr};
    if (m_Api.SUFaceGetOuterLoop(face, &outer) != SU_SUCCESS || !LoadRing(outer, map, loaded.outer))
        return false;

    std::vector<SULoopRef> loops;
    if (!GetList(face, m_Api.SUFaceGetNumInnerLoops, m_Api.SUFaceGetInnerLoops, loops)) return false;
    for (const SULoopRef loop : loops)
        if (!LoadRing(loop, map, loaded.inner.emplace_back())) return false;

    SUVector3D normal = {};
    if (m_Api.SUFaceGetNormal(face, &normal) != SU_SUCCESS) return false;
    const GTL::Vector3D<double> image = map.ApplyLinear({normal.x, normal.y, normal.z});
    loaded.normal = {image.X(), image.Y(), image.Z()};

    SUMaterialRef material = {nullptr};
    const SUResult gotMaterial = m_Api.SUFaceGetFrontMaterial(face, &material);
    loaded.color = color;
    if (!TakeColor(m_Api, gotMaterial, material, loaded.color)) return false;
    loaded.outer->SetColor(loaded.color);
    m_Faces.push_back(std::move(loaded));
    return true;
}

bool SketchUpModel::Loader::LoadRing(SULoopRef loop, const Map& map, Ring& ring)
{
    if (!GetList(loop, m_Api.SULoopGetNumVertices, m_Api.SULoopGetVertices, m_Vertices)) return false;
    GTL::Polyline<GTL::Point3D<double>> points;
    points.Reserve(m_Vertices.size() + 1);
    for (const SUVertexRef vertex : m_Vertices) {
        SUPoint3D position = {};
        if (m_Api.SUVertexGetPosition(vertex, &position) != SU_SUCCESS) return false;
        points.PushBack(map.Apply(GTL::Point3D<double>(position.x, position.y, position.z)));
    }
    if (!points.IsEmpty() && points.Front() != points.Back())
        points.PushBack(GTL::Point3D<double>(points.Front()));
    ring = std::make_unique<DXFPolyline>(std::move(points));
    return true;
}
