#include <benchmark/benchmark.h>

#include "import/CLoad3DS.h"
#include "platform/Utf8.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

std::string Chunk(unsigned id, const std::string& content)
{
    const auto length = static_cast<std::uint32_t>(content.size() + 6);
    std::string chunk;
    for (const unsigned byte : {id, id >> 8, length, length >> 8, length >> 16, length >> 24})
        chunk += static_cast<char>(byte & 0xFF);
    return chunk + content;
}

template <class T>
void Append(std::string& bytes, T value)
{
    char raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes.append(raw, sizeof raw);
}

constexpr std::uint16_t SIDE = 173; ///< 29929 vertices and about twice as many faces an object

std::string Vertices(std::minstd_rand& random)
{
    std::string bytes;
    Append(bytes, static_cast<std::uint16_t>(SIDE * SIDE));
    for (int i = 0; i < SIDE * SIDE; ++i)
        for (const float value : {float(i % SIDE), float(i / SIDE), float(random() % 1000) / 300})
            Append(bytes, value);
    return Chunk(0x4110, bytes);
}

std::string Faces()
{
    std::string bytes;
    Append(bytes, static_cast<std::uint16_t>(2 * (SIDE - 1) * (SIDE - 1)));
    for (int i = 0; i < SIDE * (SIDE - 1); ++i) {
        if (i % SIDE == SIDE - 1) continue;
        for (const int corner : {i, i + 1, i + SIDE + 1, 7, i, i + SIDE + 1, i + SIDE, 7})
            Append(bytes, static_cast<std::uint16_t>(corner));
    }
    return Chunk(0x4120, bytes);
}

/// A file of hilly grids, about 50 MB.
class Terrain {
public:
    Terrain()
    {
        std::minstd_rand random;
        std::string objects;
        const std::string faces = Faces();
        while (objects.size() < 50'000'000)
            objects += Chunk(0x4000, std::string("hill\0", 5) + Chunk(0x4100, Vertices(random) + faces));
        const std::string bytes = Chunk(0x4D4D, Chunk(0x3D3D, objects));
        std::ofstream(m_Path, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        m_Size = static_cast<std::int64_t>(bytes.size());
    }
    ~Terrain() { std::filesystem::remove(m_Path); }
    Terrain(const Terrain&) = delete;
    Terrain& operator=(const Terrain&) = delete;
    std::wstring Name() const { return FromUtf8(m_Path.string()); }
    std::int64_t Size() const { return m_Size; }

private:
    std::filesystem::path m_Path = std::filesystem::temp_directory_path()
                                   / ("model3ds_bench_" + std::to_string(std::random_device()()) + ".3ds");
    std::int64_t m_Size = 0;
};

/// From the file (in the system's cache) to the model with its normals.
void ReadModel(benchmark::State& state)
{
    const Terrain terrain;
    for (auto _ : state) {
        CLoad3DS loader;
        t3DModel model;
        if (!loader.Import3DS(&model, terrain.Name().c_str(), false)) state.SkipWithError("not read");
        state.PauseTiming();
        CLoad3DS::FreeModel(&model);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * terrain.Size());
}
BENCHMARK(ReadModel)->Unit(benchmark::kMillisecond);

} // namespace
