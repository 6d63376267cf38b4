#pragma once

#include "import/SketchUpApi.h"
#include "import/SketchUpModel.h"

/// Walks a model through the vendor's interface and gathers its faces. Every step is false when a call
/// failed or a list is shorter than announced; memory that runs out throws.
class SketchUpModel::Loader {
public:
    Loader(const SketchUpApi& api, std::vector<Face>& faces) : m_Api(api), m_Faces(faces) {}

    bool LoadFile(const std::string& fileName, double metresPerUnit);

private:
    using Map = GTL::Transformation3D<GTL::Point3D<double>>;

    bool LoadModel(SUModelRef model, double metresPerUnit);
    bool StartMap(SUModelRef model, double metresPerUnit, Map& map) const;
    /// Components, then groups, then faces of one list. The colour is that of faces without a material.
    bool LoadEntities(SUEntitiesRef entities, const Map& map, unsigned long color);
    bool LoadInstances(SUEntitiesRef entities, const Map& map, unsigned long color);
    bool LoadGroups(SUEntitiesRef entities, const Map& map, unsigned long color);
    bool LoadFaces(SUEntitiesRef entities, const Map& map, unsigned long color);
    bool LoadFace(SUFaceRef face, const Map& map, unsigned long color);
    bool LoadRing(SULoopRef loop, const Map& map, Ring& ring);

    const SketchUpApi& m_Api;
    std::vector<Face>& m_Faces;
    std::vector<SUVertexRef> m_Vertices; ///< of the ring at hand
    int m_Depth = 0;
    std::size_t m_ListsVisited = 0;
};
