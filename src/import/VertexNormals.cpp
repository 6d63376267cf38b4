#include "import/CLoad3DS.h"

#include "import/ModelMemory.h"

#include <cmath>
#include <exception>

namespace {

/// The sum of the normals of the faces around a vertex, and their number.
struct FaceSum {
    float x = 0, y = 0, z = 0;
    float faces = 0;
};

t3DPoint Minus(const t3DPoint& a, const t3DPoint& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

t3DPoint FaceNormal(const t3DPoint& p0, const t3DPoint& p1, const t3DPoint& p2)
{
    const t3DPoint a = Minus(p0, p2);
    const t3DPoint b = Minus(p2, p1);
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

void Add(FaceSum& sum, const t3DPoint& normal)
{
    sum.x += normal.x;
    sum.y += normal.y;
    sum.z += normal.z;
    sum.faces += 1;
}

/// Where floats do not hold the square of the length, or not well.
t3DPoint CarefulUnit(const t3DPoint& v)
{
    const double x = v.x, y = v.y, z = v.z;
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0) return v;
    return {static_cast<float>(x / length), static_cast<float>(y / length), static_cast<float>(z / length)};
}

t3DPoint VertexNormal(const FaceSum& sum)
{
    constexpr float SMALLEST = 1e-30F;
    constexpr float LARGEST = 1e30F;
    const float divisor = -sum.faces;
    const t3DPoint n{sum.x / divisor, sum.y / divisor, sum.z / divisor};
    const float square = n.x * n.x + n.y * n.y + n.z * n.z;
    if (!(square > SMALLEST && square < LARGEST)) return CarefulUnit(n);
    const float length = std::sqrt(square);
    return {n.x / length, n.y / length, n.z / length};
}

void SumFaces(const t3DObject& object, std::vector<FaceSum>& sums)
{
    const auto numVerts = static_cast<unsigned>(object.numOfVerts);
    sums.assign(numVerts, FaceSum());
    for (const t3DFace *face = object.pFaces, *end = face + object.numOfFaces; face != end; ++face) {
        const auto v0 = static_cast<unsigned>(face->vertIndex[0]);
        const auto v1 = static_cast<unsigned>(face->vertIndex[1]);
        const auto v2 = static_cast<unsigned>(face->vertIndex[2]);
        if (v0 >= numVerts || v1 >= numVerts || v2 >= numVerts) continue;
        const t3DPoint normal = FaceNormal(object.pVerts[v0], object.pVerts[v1], object.pVerts[v2]);
        // A face counts once at a vertex that it names twice.
        Add(sums[v0], normal);
        if (v1 != v0) Add(sums[v1], normal);
        if (v2 != v0 && v2 != v1) Add(sums[v2], normal);
    }
}

} // namespace

bool CLoad3DS::ComputeNormals(t3DModel* model)
try {
    if (!model) return true;
    std::vector<FaceSum> sums;
    ModelMemory memory(*model);
    for (t3DObject& object : model->objects) {
        if (object.numOfVerts <= 0 || !object.pVerts) continue;
        SumFaces(object, sums);
        if (!object.pNormals) object.pNormals = memory.Allocate<t3DPoint>(sums.size());
        for (std::size_t i = 0; i < sums.size(); ++i) object.pNormals[i] = VertexNormal(sums[i]);
    }
    return true;
} catch (const std::exception&) {
    return false;
}
