// A stand-in for the vendor's library, loaded by tests as the real one is. SceneLibrary.h
// tells what its files look like.
#include "SceneLibrary.h"
#include "import/SketchUpApi.h"

#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct List;

struct Vertex {
    SUPoint3D position;
};
struct Loop {
    std::vector<Vertex> vertices;
};
struct Paint {
    SUColor color;
};
struct Face {
    Paint* paint = nullptr;
    std::vector<Loop> loops;
    SUVector3D normal = {0, 0, 1};
};
/// A component instance or a group.
struct Use {
    Paint* paint = nullptr;
    List* list = nullptr;
    SUTransformation matrix = {};
};
struct List {
    std::vector<Use> instances;
    std::vector<Use> groups;
    std::vector<Face> faces;
};
struct Model {
    std::map<std::string, List> lists;
    std::vector<std::unique_ptr<Paint>> paints;
    SUPoint3D origin = {};
};

SceneState g_State;
std::map<std::string, int> g_Failures; ///< by function: what it gives from now on
/// How a function misbehaves otherwise, and its name.
std::set<std::pair<std::string, std::string>> g_Oddities;

/// What a call gives: a failure that the scene asks for, or one outside of a session.
SUResult Result(const char* function)
{
    ++g_State.calls;
    if (g_Oddities.contains({"throw", function})) throw 7;
    if (g_State.sessions < 1) return SUResult(2);
    const auto failure = g_Failures.find(function);
    return failure == g_Failures.end() ? SU_SUCCESS : SUResult(failure->second);
}

Paint* ReadPaint(Model& scene, std::istringstream& words)
{
    std::string color;
    words >> color;
    if (color == "-") return nullptr;
    const unsigned long rgb = std::stoul(color, nullptr, 16);
    const auto part = [rgb](int shift) {
        return static_cast<unsigned char>(rgb >> shift & 0xFF);
    };
    scene.paints.push_back(std::make_unique<Paint>(Paint{{part(16), part(8), part(0), 128}}));
    return scene.paints.back().get();
}

Loop ReadLoop(std::istringstream& words)
{
    Loop loop;
    for (SUPoint3D p; words >> p.x >> p.y >> p.z;) loop.vertices.push_back({p});
    return loop;
}

Use ReadUse(Model& scene, std::istringstream& words)
{
    Use use;
    std::string name;
    words >> name;
    use.list = &scene.lists[name];
    use.paint = ReadPaint(scene, words);
    for (double& value : use.matrix.values) words >> value;
    return use;
}

/// False when the line is not understood.
bool ReadLine(Model& scene, List*& list, std::istringstream& words)
{
    std::string kind;
    words >> kind;
    if (kind.empty()) return true;
    if (kind == "list") {
        std::string name;
        words >> name;
        list = &scene.lists[name];
    } else if (kind == "axes") {
        words >> scene.origin.x >> scene.origin.y >> scene.origin.z;
    } else if (kind == "fail") {
        std::string function;
        words >> function;
        words >> g_Failures[function];
    } else if (kind == "throw" || kind == "lose" || kind == "mute") {
        std::string function;
        words >> function;
        g_Oddities.emplace(kind, function);
    } else if (kind == "instance") {
        list->instances.push_back(ReadUse(scene, words));
    } else if (kind == "group") {
        list->groups.push_back(ReadUse(scene, words));
    } else if (kind == "face") {
        Face& face = list->faces.emplace_back();
        face.paint = ReadPaint(scene, words);
        face.loops.push_back(ReadLoop(words));
    } else if (kind == "hole") {
        list->faces.back().loops.push_back(ReadLoop(words));
    } else if (kind == "normal") {
        SUVector3D& n = list->faces.back().normal;
        words >> n.x >> n.y >> n.z;
    } else {
        return false;
    }
    return true;
}

template <class T, class Ref>
T& Of(Ref ref)
{
    return *static_cast<T*>(ref.ptr);
}

template <class T, class Ref>
void Give(const char* function, std::vector<T>& from, std::size_t first, std::size_t length, Ref* to,
          std::size_t* number)
{
    const std::size_t end = from.size() - (g_Oddities.contains({"lose", function}) ? 1 : 0);
    std::size_t given = 0;
    for (; given < length && first + given < end; ++given) to[given].ptr = &from[first + given];
    if (!g_Oddities.contains({"mute", function})) *number = given;
}

} // namespace

// The functions of the real library are C functions whose names it exports.
#define VENDOR extern "C" [[gnu::visibility("default")]]
#define GIVE_UP_IF_ASKED()                                                                                   \
    if (const SUResult result = Result(__func__); result != SU_SUCCESS) return result

VENDOR SceneState* GetSceneState()
{
    return &g_State;
}

VENDOR void SUInitialize()
{
    ++g_State.sessions;
}

VENDOR void SUTerminate()
{
    --g_State.sessions;
    (void)Result(__func__);
}

VENDOR SUResult SUModelCreateFromFileWithStatus(SUModelRef* model, const char* name, SUModelLoadStatus*)
{
    g_Failures.clear();
    g_Oddities.clear();
    GIVE_UP_IF_ASKED();
    std::ifstream file(name);
    std::string mark;
    if (!std::getline(file, mark)) return SUResult(6);
    auto scene = std::make_unique<Model>();
    List* list = &scene->lists["model"];
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        if (!ReadLine(*scene, list, words)) return SUResult(7);
    }
    GIVE_UP_IF_ASKED();
    model->ptr = scene.release();
    ++g_State.models;
    return SU_SUCCESS;
}

VENDOR SUResult SUModelRelease(SUModelRef* model)
{
    delete &Of<Model>(*model);
    model->ptr = nullptr;
    --g_State.models;
    GIVE_UP_IF_ASKED();
    return SU_SUCCESS;
}

VENDOR SUResult SUModelGetEntities(SUModelRef model, SUEntitiesRef* entities)
{
    GIVE_UP_IF_ASKED();
    entities->ptr = &Of<Model>(model).lists["model"];
    return SU_SUCCESS;
}

VENDOR SUResult SUModelGetAxes(SUModelRef model, SUAxesRef* axes)
{
    GIVE_UP_IF_ASKED();
    axes->ptr = &Of<Model>(model).origin;
    return SU_SUCCESS;
}

VENDOR SUResult SUAxesGetOrigin(SUAxesRef axes, SUPoint3D* origin)
{
    GIVE_UP_IF_ASKED();
    *origin = Of<SUPoint3D>(axes);
    return SU_SUCCESS;
}

#define LIST_FUNCTIONS(OwnerRef, Owner, Ref, getNumber, getList, member, first)                              \
    VENDOR SUResult getNumber(OwnerRef owner, std::size_t* number)                                           \
    {                                                                                                        \
        GIVE_UP_IF_ASKED();                                                                                  \
        *number = Of<Owner>(owner).member.size() - first;                                                    \
        return SU_SUCCESS;                                                                                   \
    }                                                                                                        \
    VENDOR SUResult getList(OwnerRef owner, std::size_t length, Ref* list, std::size_t* number)              \
    {                                                                                                        \
        GIVE_UP_IF_ASKED();                                                                                  \
        Give(__func__, Of<Owner>(owner).member, first, length, list, number);                                \
        return SU_SUCCESS;                                                                                   \
    }
LIST_FUNCTIONS(SUEntitiesRef, List, SUComponentInstanceRef, SUEntitiesGetNumInstances, SUEntitiesGetInstances,
               instances, 0)
LIST_FUNCTIONS(SUEntitiesRef, List, SUGroupRef, SUEntitiesGetNumGroups, SUEntitiesGetGroups, groups, 0)
LIST_FUNCTIONS(SUEntitiesRef, List, SUFaceRef, SUEntitiesGetNumFaces, SUEntitiesGetFaces, faces, 0)
LIST_FUNCTIONS(SUFaceRef, Face, SULoopRef, SUFaceGetNumInnerLoops, SUFaceGetInnerLoops, loops, 1)
LIST_FUNCTIONS(SULoopRef, Loop, SUVertexRef, SULoopGetNumVertices, SULoopGetVertices, vertices, 0)

VENDOR SUResult SUComponentInstanceGetTransform(SUComponentInstanceRef instance, SUTransformation* matrix)
{
    GIVE_UP_IF_ASKED();
    *matrix = Of<Use>(instance).matrix;
    return SU_SUCCESS;
}

VENDOR SUResult SUComponentInstanceGetDefinition(SUComponentInstanceRef instance,
                                                 SUComponentDefinitionRef* definition)
{
    GIVE_UP_IF_ASKED();
    definition->ptr = Of<Use>(instance).list;
    return SU_SUCCESS;
}

VENDOR SUResult SUComponentDefinitionGetEntities(SUComponentDefinitionRef definition, SUEntitiesRef* entities)
{
    GIVE_UP_IF_ASKED();
    entities->ptr = definition.ptr;
    return SU_SUCCESS;
}

VENDOR SUDrawingElementRef SUGroupToDrawingElement(SUGroupRef group)
{
    return {Result(__func__) == SU_SUCCESS ? group.ptr : nullptr};
}

VENDOR SUResult SUDrawingElementGetMaterial(SUDrawingElementRef element, SUMaterialRef* material)
{
    GIVE_UP_IF_ASKED();
    if (!element.ptr) return SUResult(2);
    material->ptr = Of<Use>(element).paint;
    return material->ptr ? SU_SUCCESS : SUResult(9);
}

VENDOR SUResult SUMaterialGetColor(SUMaterialRef material, SUColor* color)
{
    GIVE_UP_IF_ASKED();
    *color = Of<Paint>(material).color;
    return SU_SUCCESS;
}

VENDOR SUResult SUGroupGetEntities(SUGroupRef group, SUEntitiesRef* entities)
{
    GIVE_UP_IF_ASKED();
    entities->ptr = Of<Use>(group).list;
    return SU_SUCCESS;
}

VENDOR SUResult SUGroupGetTransform(SUGroupRef group, SUTransformation* matrix)
{
    GIVE_UP_IF_ASKED();
    *matrix = Of<Use>(group).matrix;
    return SU_SUCCESS;
}

VENDOR SUResult SUFaceGetOuterLoop(SUFaceRef face, SULoopRef* loop)
{
    GIVE_UP_IF_ASKED();
    loop->ptr = &Of<Face>(face).loops.front();
    return SU_SUCCESS;
}

VENDOR SUResult SUVertexGetPosition(SUVertexRef vertex, SUPoint3D* position)
{
    GIVE_UP_IF_ASKED();
    *position = Of<Vertex>(vertex).position;
    return SU_SUCCESS;
}

VENDOR SUResult SUFaceGetNormal(SUFaceRef face, SUVector3D* normal)
{
    GIVE_UP_IF_ASKED();
    *normal = Of<Face>(face).normal;
    return SU_SUCCESS;
}

VENDOR SUResult SUFaceGetFrontMaterial(SUFaceRef face, SUMaterialRef* material)
{
    GIVE_UP_IF_ASKED();
    material->ptr = Of<Face>(face).paint;
    return material->ptr ? SU_SUCCESS : SUResult(9);
}
