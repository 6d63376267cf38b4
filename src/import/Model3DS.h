#pragma once

#include <cstdint>
#include <vector>

/// Names in a 3DS model: bytes in the code page of whoever wrote the file, at most this many with the NUL.
inline constexpr std::size_t MODEL_NAME_SIZE = 255;

/// A chunk of a 3DS file while it is read.
struct tChunk {
    std::uint16_t ID = 0;
    std::uint32_t length = 0;    ///< as the file says: header and all children included
    std::uint32_t bytesRead = 0; ///< how much of it has been consumed, header included
};

struct tMaterialInfo {
    char strName[MODEL_NAME_SIZE] = {};
    char strFile[MODEL_NAME_SIZE] = {}; ///< file of the texture map; empty without one
    unsigned char color[3] = {};        ///< diffuse colour: red, green, blue
    // For hosts; the loader leaves them 0.
    int textureId = 0;
    float uTile = 0, vTile = 0;
    float uOffset = 0, vOffset = 0;
};

struct t3DPoint {
    float x = 0, y = 0, z = 0;
};

struct t3DTexCoord {
    float u = 0, v = 0;
};

/// A triangle. Nothing promises that the vertices it names exist.
struct t3DFace {
    int vertIndex[3] = {};
    int coordIndex[3] = {}; ///< for hosts; the loader leaves them 0
};

/// One named object: a mesh in units that the file does not tell. The arrays are null when they are empty.
/// They belong to the model: copies share them, CLoad3DS::FreeModel frees them all at once.
struct t3DObject {
    std::int32_t numOfVerts = 0;
    std::int32_t numOfFaces = 0;
    std::int32_t numTexVertex = 0;
    std::int32_t materialID = -1; ///< the material named last, as an index into the model's; -1: none
    bool bHasTexture = false;     ///< that material has a texture map
    char strName[MODEL_NAME_SIZE] = {};
    t3DPoint* pVerts = nullptr;             ///< numOfVerts
    t3DPoint* pNormals = nullptr;           ///< numOfVerts: see CLoad3DS::ComputeNormals
    t3DTexCoord* pTexVerts = nullptr;       ///< numTexVertex
    std::int32_t* pFaceMaterials = nullptr; ///< numOfFaces: indexes of materials, -1 for none
    t3DFace* pFaces = nullptr;              ///< numOfFaces
};

/// What a 3DS file holds, in its order.
struct t3DModel {
    std::vector<tMaterialInfo> materials;
    std::vector<t3DObject> objects;
    std::vector<void*> memory; ///< what the arrays stand in; for CLoad3DS alone
};
