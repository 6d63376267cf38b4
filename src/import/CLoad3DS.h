#pragma once

#include "import/Model3DS.h"
#include "platform/Export.h"

#include <map>
#include <memory>
#include <string>

class ChunkFile;
class ModelMemory;

/// Reads binary 3DS files into plain records and computes normals of the vertices.
///
/// Damaged and hostile files are read as far as they make sense: data beyond what a count announces is passed
/// over and what is missing stays 0, a chunk that is shorter than its header or longer than what is left of
/// its parent ends the parent, the end of the file ends everything. Copies of a loader share its open file.
class HALYARD_API CLoad3DS {
public:
    /// Empties the model and reads a file into it. The arrays of the model's old objects are not freed: call
    /// FreeModel first where no copy of the model needs them. With swapAxes each vertex (x, y, z) becomes (x,
    /// z, -y), which turns a model whose z points up into one whose y does.
    ///
    /// False, and an empty model, when the file cannot be opened or does not start as a 3DS file (such a file
    /// stays open until CleanUp or the next import), or memory runs out. A file that is cut short is read.
    [[nodiscard]] bool Import3DS(t3DModel* model, const wchar_t* fileName, bool swapAxes);

    /// Closes the file and frees the chunk headers.
    void CleanUp();

    /// Gives every vertex of every object a normal of length 1 in pNormals. It points against the sum of the
    /// normals of the faces that use the vertex, each as long as twice the area of its face and turned such
    /// that (p0 - p2) x (p2 - p1). Where that sum is zero the normal is zero; a vertex that no face uses gets
    /// what 0 / 0 is. Faces that name a vertex that is not there take no part. False when memory runs out.
    static bool ComputeNormals(t3DModel* model);

    /// Frees all arrays that Import3DS and ComputeNormals allocated for the model, and empties it: the one
    /// way to free them.
    static void FreeModel(t3DModel* model);

private:
    bool Import(t3DModel& model, const wchar_t* fileName);

    void ProcessNextChunk(t3DModel& model, tChunk& parent);
    void ProcessNextObjectChunk(t3DModel& model, t3DObject& object, tChunk& parent, int depth);
    void ProcessNextMaterialChunk(tMaterialInfo& material, tChunk& parent, int depth);

    bool NextChild(tChunk& parent, tChunk& child);
    std::uint32_t ReadChunk(tChunk& chunk);
    /// Up to and including the NUL, but not beyond the chunk; the part that does not fit is dropped. Returns
    /// the bytes consumed.
    std::uint32_t GetString(char (&buffer)[MODEL_NAME_SIZE], const tChunk& chunk);
    /// The rest of the chunk as a name.
    void ReadName(char (&buffer)[MODEL_NAME_SIZE], tChunk& chunk);
    void ReadObject(t3DModel& model, tChunk& chunk);
    void ReadMaterial(t3DModel& model, tChunk& chunk);
    void ReadColorChunk(tMaterialInfo& material, tChunk& chunk);
    void ReadVertices(t3DObject& object, tChunk& chunk);
    void ReadVertexIndices(t3DObject& object, tChunk& chunk);
    void ReadUVCoordinates(t3DObject& object, tChunk& chunk);
    void ReadObjectMaterial(const t3DModel& model, t3DObject& object, tChunk& chunk);

    std::uint32_t ReadBytes(void* bytes, std::uint32_t count, tChunk& chunk);
    std::uint32_t ReadCount(tChunk& chunk);
    void SkipRest(tChunk& chunk);
    /// Calls take(const unsigned char*) for each record of a run; less often where the chunk or the file
    /// ends.
    template <std::size_t Size, class Take>
    void ForEachRecord(std::uint32_t count, tChunk& chunk, Take take);
    template <class T>
    void ReadArray(T*& array, std::int32_t& number, tChunk& chunk);
    std::uint32_t Believed(std::uint32_t count, std::size_t inFile, std::size_t inMemory,
                           const tChunk& chunk);

    std::shared_ptr<ChunkFile> m_File;
    std::shared_ptr<ModelMemory> m_Memory;
    std::shared_ptr<tChunk> m_CurrentChunk; ///< the main chunk
    std::shared_ptr<tChunk> m_TempChunk;    ///< the colour within a material's colour
    bool m_SwapAxes = false;
    std::map<std::string, std::int32_t> m_FirstOfName; ///< the first material of each name
    std::size_t m_Announced = 0; ///< bytes taken for what was announced and is not in the file
};
