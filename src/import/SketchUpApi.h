#pragma once

#include "platform/SharedLibrary.h"

#include <cstddef>
#include <string>

// What is used of the C interface by which the vendor of SketchUp lets others read its files, by its
// published signatures. It is loaded at run time by name and never linked.

enum SUResult : int { SU_SUCCESS = 0 };
/// Tells of a file of a newer release; not looked at.
enum SUModelLoadStatus : int {};

struct SUModelRef {
    void* ptr;
};
struct SUEntitiesRef {
    void* ptr;
};
struct SUAxesRef {
    void* ptr;
};
struct SUComponentInstanceRef {
    void* ptr;
};
struct SUComponentDefinitionRef {
    void* ptr;
};
struct SUGroupRef {
    void* ptr;
};
struct SUDrawingElementRef {
    void* ptr;
};
struct SUMaterialRef {
    void* ptr;
};
struct SUFaceRef {
    void* ptr;
};
struct SULoopRef {
    void* ptr;
};
struct SUVertexRef {
    void* ptr;
};

/// Inches.
struct SUPoint3D {
    double x, y, z;
};
struct SUVector3D {
    double x, y, z;
};
/// A 4 x 4 matrix for column vectors (x, y, z, 1), column by column.
struct SUTransformation {
    double values[16];
};
struct SUColor {
    unsigned char red, green, blue, alpha;
};

/// F(result, name, parameters) for each function.
#define SKETCHUP_FUNCTIONS(F)                                                                                \
    F(void, SUInitialize, ())                                                                                \
    F(void, SUTerminate, ())                                                                                 \
    F(SUResult, SUModelCreateFromFileWithStatus, (SUModelRef*, const char*, SUModelLoadStatus*))             \
    F(SUResult, SUModelRelease, (SUModelRef*))                                                               \
    F(SUResult, SUModelGetEntities, (SUModelRef, SUEntitiesRef*))                                            \
    F(SUResult, SUModelGetAxes, (SUModelRef, SUAxesRef*))                                                    \
    F(SUResult, SUAxesGetOrigin, (SUAxesRef, SUPoint3D*))                                                    \
    F(SUResult, SUEntitiesGetNumInstances, (SUEntitiesRef, std::size_t*))                                    \
    F(SUResult, SUEntitiesGetInstances, (SUEntitiesRef, std::size_t, SUComponentInstanceRef*, std::size_t*)) \
    F(SUResult, SUComponentInstanceGetTransform, (SUComponentInstanceRef, SUTransformation*))                \
    F(SUResult, SUComponentInstanceGetDefinition, (SUComponentInstanceRef, SUComponentDefinitionRef*))       \
    F(SUResult, SUComponentDefinitionGetEntities, (SUComponentDefinitionRef, SUEntitiesRef*))                \
    F(SUResult, SUEntitiesGetNumGroups, (SUEntitiesRef, std::size_t*))                                       \
    F(SUResult, SUEntitiesGetGroups, (SUEntitiesRef, std::size_t, SUGroupRef*, std::size_t*))                \
    F(SUDrawingElementRef, SUGroupToDrawingElement, (SUGroupRef))                                            \
    F(SUResult, SUDrawingElementGetMaterial, (SUDrawingElementRef, SUMaterialRef*))                          \
    F(SUResult, SUMaterialGetColor, (SUMaterialRef, SUColor*))                                               \
    F(SUResult, SUGroupGetEntities, (SUGroupRef, SUEntitiesRef*))                                            \
    F(SUResult, SUGroupGetTransform, (SUGroupRef, SUTransformation*))                                        \
    F(SUResult, SUEntitiesGetNumFaces, (SUEntitiesRef, std::size_t*))                                        \
    F(SUResult, SUEntitiesGetFaces, (SUEntitiesRef, std::size_t, SUFaceRef*, std::size_t*))                  \
    F(SUResult, SUFaceGetOuterLoop, (SUFaceRef, SULoopRef*))                                                 \
    F(SUResult, SUFaceGetNumInnerLoops, (SUFaceRef, std::size_t*))                                           \
    F(SUResult, SUFaceGetInnerLoops, (SUFaceRef, std::size_t, SULoopRef*, std::size_t*))                     \
    F(SUResult, SULoopGetNumVertices, (SULoopRef, std::size_t*))                                             \
    F(SUResult, SULoopGetVertices, (SULoopRef, std::size_t, SUVertexRef*, std::size_t*))                     \
    F(SUResult, SUVertexGetPosition, (SUVertexRef, SUPoint3D*))                                              \
    F(SUResult, SUFaceGetNormal, (SUFaceRef, SUVector3D*))                                                   \
    F(SUResult, SUFaceGetFrontMaterial, (SUFaceRef, SUMaterialRef*))

/// The vendor's functions, each under its own name.
class SketchUpApi {
public:
    /// Loads the library that the environment variable HALYARD_SKETCHUP_API names, or else the one that the
    /// system finds under the vendor's name, and looks up every function. False with the reason: one clause.
    /// The library stays in the process from then on, since not every library bears to be unloaded. One
    /// thread at a time.
    [[nodiscard]] bool Open(std::wstring& reason);

#define SKETCHUP_MEMBER(result, name, parameters) result(*name) parameters = nullptr;
    SKETCHUP_FUNCTIONS(SKETCHUP_MEMBER)
#undef SKETCHUP_MEMBER
};
