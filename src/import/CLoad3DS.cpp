#include "import/CLoad3DS.h"

#include "import/ChunkFile.h"
#include "import/ModelMemory.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

static_assert(std::endian::native == std::endian::little,
              "3DS files hold little-endian numbers, read as they are");
static_assert(sizeof(t3DPoint) == 12 && sizeof(t3DTexCoord) == 8, "read as they stand in the file");

namespace {

enum CHUNK : std::uint16_t {
    VERSION = 0x0002,
    COLOR_FLOAT = 0x0010,
    COLOR_LINEAR_FLOAT = 0x0013,
    EDITOR = 0x3D3D,
    OBJECT = 0x4000,
    MESH = 0x4100,
    VERTICES = 0x4110,
    FACES = 0x4120,
    FACE_MATERIAL = 0x4130,
    TEXTURE_VERTICES = 0x4140,
    MAIN = 0x4D4D,
    MATERIAL_NAME = 0xA000,
    MATERIAL_DIFFUSE = 0xA020,
    MATERIAL_TEXTURE = 0xA200,
    MATERIAL_FILE = 0xA300,
    MATERIAL = 0xAFFF,
};

constexpr std::uint32_t HEADER_SIZE = 6;
/// Meshes in meshes and textures in textures; real files have none.
constexpr int MAX_DEPTH = 32;
/// A short file can announce far more than it holds. This much memory is spent on announcements, in bytes;
/// beyond it counts are cut down to what is there.
constexpr std::size_t MAX_ANNOUNCED = std::size_t{64} << 20;
constexpr std::size_t FACE_SIZE_IN_FILE = 8;

std::uint32_t U16(const unsigned char* bytes)
{
    return bytes[0] | std::uint32_t{bytes[1]} << 8;
}

unsigned char ColorByte(float part)
{
    // What is not a number is no light.
    if (!(part > 0)) return 0;
    return static_cast<unsigned char>(std::lround(std::min(part, 1.0F) * 255.0F));
}

} // namespace

bool CLoad3DS::Import3DS(t3DModel* model, const wchar_t* fileName, bool swapAxes)
{
    if (!model || !fileName) return false;
    model->materials.clear();
    model->objects.clear();
    model->memory.clear();
    m_SwapAxes = swapAxes;
    CleanUp();
    try {
        return Import(*model, fileName);
    } catch (const std::exception&) {
        FreeModel(model);
        CleanUp();
        return false;
    }
}

bool CLoad3DS::Import(t3DModel& model, const wchar_t* fileName)
{
    m_CurrentChunk = std::make_shared<tChunk>();
    m_TempChunk = std::make_shared<tChunk>();
    m_Memory = std::make_shared<ModelMemory>(model);
    m_File = std::make_shared<ChunkFile>();
    if (!m_File->Open(fileName)) {
        CleanUp();
        return false;
    }
    ReadChunk(*m_CurrentChunk);
    if (m_CurrentChunk->ID != MAIN) return false;
    ProcessNextChunk(model, *m_CurrentChunk);
    if (!ComputeNormals(&model)) throw std::bad_alloc();
    CleanUp();
    return true;
}

void CLoad3DS::CleanUp()
{
    m_File.reset();
    m_Memory.reset();
    m_CurrentChunk.reset();
    m_TempChunk.reset();
    m_FirstOfName.clear();
    m_Announced = 0;
}

void CLoad3DS::FreeModel(t3DModel* model)
{
    if (!model) return;
    for (void* block : model->memory) std::free(block);
    model->memory.clear();
    model->objects.clear();
    model->materials.clear();
}

void CLoad3DS::ProcessNextChunk(t3DModel& model, tChunk& parent)
{
    tChunk child;
    while (NextChild(parent, child)) {
        switch (child.ID) {
        case EDITOR:
        case MESH:
            break; // what stands in them is read as if it stood here
        case OBJECT:
            ReadObject(model, child);
            break;
        case MATERIAL:
            ReadMaterial(model, child);
            break;
        case VERSION:
        default:
            SkipRest(child);
        }
        parent.bytesRead += child.bytesRead;
    }
}

void CLoad3DS::ProcessNextObjectChunk(t3DModel& model, t3DObject& object, tChunk& parent, int depth)
{
    tChunk child;
    while (NextChild(parent, child)) {
        switch (child.ID) {
        case MESH:
            if (depth < MAX_DEPTH) ProcessNextObjectChunk(model, object, child, depth + 1);
            SkipRest(child);
            break;
        case VERTICES:
            ReadVertices(object, child);
            break;
        case FACES:
            ReadVertexIndices(object, child);
            break;
        case FACE_MATERIAL:
            ReadObjectMaterial(model, object, child);
            break;
        case TEXTURE_VERTICES:
            ReadUVCoordinates(object, child);
            break;
        default:
            SkipRest(child);
        }
        parent.bytesRead += child.bytesRead;
    }
}

void CLoad3DS::ProcessNextMaterialChunk(tMaterialInfo& material, tChunk& parent, int depth)
{
    tChunk child;
    while (NextChild(parent, child)) {
        switch (child.ID) {
        case MATERIAL_NAME:
            ReadName(material.strName, child);
            break;
        case MATERIAL_DIFFUSE:
            ReadColorChunk(material, child);
            break;
        case MATERIAL_TEXTURE:
            if (depth < MAX_DEPTH) ProcessNextMaterialChunk(material, child, depth + 1);
            SkipRest(child);
            break;
        case MATERIAL_FILE:
            ReadName(material.strFile, child);
            break;
        default:
            SkipRest(child);
        }
        parent.bytesRead += child.bytesRead;
    }
}

/// The header of the parent's next child; false, with the parent consumed, when there is none that makes
/// sense.
bool CLoad3DS::NextChild(tChunk& parent, tChunk& child)
{
    // A length below that of the header leaves nothing.
    if (parent.length <= parent.bytesRead) return false;
    const std::uint32_t left = parent.length - parent.bytesRead;
    if (left >= HEADER_SIZE && ReadChunk(child) == HEADER_SIZE) {
        if (child.length >= HEADER_SIZE && child.length <= left) return true;
        parent.bytesRead += HEADER_SIZE;
    }
    SkipRest(parent);
    return false;
}

std::uint32_t CLoad3DS::ReadChunk(tChunk& chunk)
{
    unsigned char header[HEADER_SIZE] = {};
    chunk.bytesRead = static_cast<std::uint32_t>(m_File->Read(header, HEADER_SIZE));
    chunk.ID = static_cast<std::uint16_t>(U16(header));
    chunk.length = U16(header + 2) | U16(header + 4) << 16;
    return chunk.bytesRead;
}

void CLoad3DS::SkipRest(tChunk& chunk)
{
    m_File->Skip(chunk.length - chunk.bytesRead);
    chunk.bytesRead = chunk.length;
}

/// Never beyond the chunk. Counts what there was to read.
std::uint32_t CLoad3DS::ReadBytes(void* bytes, std::uint32_t count, tChunk& chunk)
{
    const std::uint32_t wanted = std::min(count, chunk.length - chunk.bytesRead);
    const auto done = static_cast<std::uint32_t>(m_File->Read(bytes, wanted));
    chunk.bytesRead += done;
    return done;
}

std::uint32_t CLoad3DS::ReadCount(tChunk& chunk)
{
    unsigned char count[2] = {};
    ReadBytes(count, sizeof count, chunk);
    return U16(count);
}

std::uint32_t CLoad3DS::GetString(char (&buffer)[MODEL_NAME_SIZE], const tChunk& chunk)
{
    const std::uint32_t left = chunk.length - chunk.bytesRead;
    std::uint32_t consumed = 0;
    std::memset(buffer, 0, sizeof buffer);
    for (std::size_t length = 0; consumed < left;) {
        char c = 0;
        if (m_File->Read(&c, 1) == 0) break;
        ++consumed;
        if (c == 0) break;
        if (length < MODEL_NAME_SIZE - 1) buffer[length++] = c;
    }
    return consumed;
}

void CLoad3DS::ReadName(char (&buffer)[MODEL_NAME_SIZE], tChunk& chunk)
{
    std::memset(buffer, 0, sizeof buffer);
    ReadBytes(buffer, MODEL_NAME_SIZE - 1, chunk);
    SkipRest(chunk);
}

void CLoad3DS::ReadObject(t3DModel& model, tChunk& chunk)
{
    t3DObject& object = model.objects.emplace_back();
    chunk.bytesRead += GetString(object.strName, chunk);
    ProcessNextObjectChunk(model, object, chunk, 0);
}

void CLoad3DS::ReadMaterial(t3DModel& model, tChunk& chunk)
{
    tMaterialInfo& material = model.materials.emplace_back();
    ProcessNextMaterialChunk(material, chunk, 0);
    m_FirstOfName.emplace(material.strName, static_cast<std::int32_t>(model.materials.size() - 1));
}

void CLoad3DS::ReadColorChunk(tMaterialInfo& material, tChunk& chunk)
{
    tChunk& color = *m_TempChunk;
    if (!NextChild(chunk, color)) return;
    if (color.ID == COLOR_FLOAT || color.ID == COLOR_LINEAR_FLOAT) {
        float parts[3] = {};
        ReadBytes(parts, sizeof parts, color);
        for (std::size_t i = 0; i < 3; ++i) material.color[i] = ColorByte(parts[i]);
    } else {
        ReadBytes(material.color, sizeof material.color, color);
    }
    SkipRest(color);
    chunk.bytesRead += color.bytesRead;
}

/// The announced count, or less when too much was announced already that was not there.
std::uint32_t CLoad3DS::Believed(std::uint32_t count, std::size_t inFile, std::size_t inMemory,
                                 const tChunk& chunk)
{
    const std::uint64_t left = std::min<std::uint64_t>(chunk.length - chunk.bytesRead, m_File->Left());
    const auto there = static_cast<std::uint32_t>(std::min<std::uint64_t>(count, left / inFile));
    const std::size_t missing = (count - there) * inMemory;
    if (m_Announced + missing > MAX_ANNOUNCED) return there;
    m_Announced += missing;
    return count;
}

template <class T>
void CLoad3DS::ReadArray(T*& array, std::int32_t& number, tChunk& chunk)
{
    const std::uint32_t count = Believed(ReadCount(chunk), sizeof(T), sizeof(T), chunk);
    array = m_Memory->Allocate<T>(count);
    number = static_cast<std::int32_t>(count);
    const auto size = static_cast<std::uint32_t>(count * sizeof(T));
    const std::uint32_t done = ReadBytes(array, size, chunk);
    if (done < size) std::memset(reinterpret_cast<unsigned char*>(array) + done, 0, size - done);
    SkipRest(chunk);
}

void CLoad3DS::ReadVertices(t3DObject& object, tChunk& chunk)
{
    ReadArray(object.pVerts, object.numOfVerts, chunk);
    if (!m_SwapAxes) return;
    for (t3DPoint *p = object.pVerts, *end = p + object.numOfVerts; p != end; ++p) *p = {p->x, p->z, -p->y};
}

void CLoad3DS::ReadUVCoordinates(t3DObject& object, tChunk& chunk)
{
    ReadArray(object.pTexVerts, object.numTexVertex, chunk);
}

template <std::size_t Size, class Take>
void CLoad3DS::ForEachRecord(std::uint32_t count, tChunk& chunk, Take take)
{
    std::uint32_t left = std::min(count, (chunk.length - chunk.bytesRead) / static_cast<std::uint32_t>(Size));
    while (left > 0) {
        const std::span<const unsigned char> bytes = m_File->Peek(Size);
        const auto block = static_cast<std::uint32_t>(std::min<std::size_t>(left, bytes.size() / Size));
        if (block == 0) return;
        for (std::uint32_t i = 0; i < block; ++i) take(bytes.data() + i * Size);
        m_File->Skip(block * Size);
        chunk.bytesRead += static_cast<std::uint32_t>(block * Size);
        left -= block;
    }
}

/// The chunks within a face list follow its faces. They are left to the loop over the object's chunks.
void CLoad3DS::ReadVertexIndices(t3DObject& object, tChunk& chunk)
{
    const std::uint32_t count =
        Believed(ReadCount(chunk), FACE_SIZE_IN_FILE, sizeof(t3DFace) + sizeof(std::int32_t), chunk);
    object.pFaces = m_Memory->Allocate<t3DFace>(count);
    object.pFaceMaterials = m_Memory->Allocate<std::int32_t>(count);
    object.numOfFaces = static_cast<std::int32_t>(count);
    std::fill_n(object.pFaceMaterials, count, -1);
    t3DFace* face = object.pFaces;
    ForEachRecord<FACE_SIZE_IN_FILE>(count, chunk, [&face](const unsigned char* record) {
        const auto corner = [record](int i) {
            return static_cast<int>(U16(record + i * 2));
        };
        *face++ = {{corner(0), corner(1), corner(2)}, {}};
    });
    std::fill(face, object.pFaces + count, t3DFace{});
}

void CLoad3DS::ReadObjectMaterial(const t3DModel& model, t3DObject& object, tChunk& chunk)
{
    char name[MODEL_NAME_SIZE];
    chunk.bytesRead += GetString(name, chunk);
    const auto material = m_FirstOfName.find(name);
    object.materialID = material == m_FirstOfName.end() ? -1 : material->second;
    object.bHasTexture = object.materialID >= 0
                         && model.materials[static_cast<std::size_t>(object.materialID)].strFile[0] != 0;
    ForEachRecord<2>(ReadCount(chunk), chunk, [&object](const unsigned char* record) {
        const auto face = static_cast<std::int32_t>(U16(record));
        if (face < object.numOfFaces) object.pFaceMaterials[face] = object.materialID;
    });
    SkipRest(chunk);
}
