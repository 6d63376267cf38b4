// Reads any bytes as a 3DS file, with either order of axes, and looks at every array that the model says it
// has.
#include "import/CLoad3DS.h"
#include "platform/Utf8.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

const std::filesystem::path& Scratch()
{
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("model3ds_fuzz_" + std::to_string(std::random_device()()));
    return path;
}

void Require(bool holds)
{
    if (!holds) std::abort();
}

void CheckName(const char (&name)[MODEL_NAME_SIZE])
{
    Require(std::memchr(name, 0, sizeof name) != nullptr);
}

void CheckObject(const t3DObject& object, int numMaterials)
{
    CheckName(object.strName);
    Require(object.numOfVerts >= 0 && object.numOfFaces >= 0 && object.numTexVertex >= 0);
    Require(object.materialID >= -1 && object.materialID < numMaterials);
    double sum = 0;
    for (int i = 0; i < object.numOfVerts; ++i) {
        const t3DPoint& n = object.pNormals[i];
        const double length = std::sqrt(double(n.x) * n.x + double(n.y) * n.y + double(n.z) * n.z);
        Require(!std::isfinite(length) || length == 0 || std::abs(length - 1) < 1e-3);
        sum += object.pVerts[i].x;
    }
    for (int i = 0; i < object.numTexVertex; ++i) sum += object.pTexVerts[i].u;
    for (int i = 0; i < object.numOfFaces; ++i) {
        const int material = object.pFaceMaterials[i];
        Require(material >= -1 && material < numMaterials);
        for (const int vertex : object.pFaces[i].vertIndex) Require(vertex >= 0 && vertex <= 65535);
    }
    volatile double seen = sum;
    (void)seen;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    std::ofstream(Scratch(), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    for (const bool swapAxes : {false, true}) {
        CLoad3DS loader;
        t3DModel model;
        const bool success = loader.Import3DS(&model, FromUtf8(Scratch().string()).c_str(), swapAxes);
        Require(success || (model.objects.empty() && model.materials.empty()));
        for (const tMaterialInfo& material : model.materials)
            CheckName(material.strName), CheckName(material.strFile);
        for (const t3DObject& object : model.objects)
            CheckObject(object, static_cast<int>(model.materials.size()));
        CLoad3DS::FreeModel(&model);
    }
    std::filesystem::remove(Scratch());
    return 0;
}
