#include <benchmark/benchmark.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "SampleEntities.h"
#include "dxf/DXFFile.h"
#include "model/DXF.h"
#include "model/DXFArc.h"
#include "model/DXFMText.h"
#include "model/DXFText.h"
#include "support/NumberText.h"

// Writing drawings of one kind of entity, as bytes of the file a second, beside a loop that formats the
// numbers of the lines alone, into a buffer that never leaves the cache.

namespace {

using namespace SampleEntities;
using P3 = GTL::Point3D<double>;

constexpr int NUM_ENTITIES = 200'000;

DXFEntity* NewArc(int i)
{
    return new DXFArc(Place(i), 10 + i % 100, i % 360, i * 7 % 360);
}

DXF MakeDrawing(DXFEntity* (*make)(int))
{
    DXF drawing;
    for (int i = 0; i < NUM_ENTITIES; ++i) {
        DXFEntity* entity = make(i);
        entity->SetColor(DXFColor(i / 10 % 8));
        drawing.Add(L"LAYER_" + std::to_wstring(i / 1000 % 16), entity, true);
    }
    return drawing;
}

void WriteDrawing(benchmark::State& state, DXFEntity* (*make)(int))
{
    DXF drawing = MakeDrawing(make);
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "halyard_bench.dxf";
    const std::atomic<bool> keepGoing = true;
    for (auto _ : state)
        if (!drawing.Write(file.wstring(), keepGoing, 0)) state.SkipWithError("cannot write");
    std::error_code unwritten;
    const auto size = static_cast<std::int64_t>(std::filesystem::file_size(file, unwritten));
    state.SetBytesProcessed(unwritten ? 0 : state.iterations() * size);
    state.SetItemsProcessed(state.iterations() * NUM_ENTITIES);
    std::filesystem::remove(file, unwritten);
}
BENCHMARK_CAPTURE(WriteDrawing, lines, NewLine)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteDrawing, arcs, NewArc)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteDrawing, polylines, NewPolyline)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteDrawing, texts, NewText<DXFText>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteDrawing, mtexts, NewText<DXFMText>)->Unit(benchmark::kMillisecond);

/// The seven numbers of each line and its handle, nothing else.
void FormatNumbersOfLines(benchmark::State& state)
{
    std::vector<double> numbers;
    for (int i = 0; i < NUM_ENTITIES; ++i)
        for (const P3& point : {Place(i), Place(i + 1)})
            numbers.insert(numbers.end(), {point.X(), point.Y(), point.Z()});
    std::vector<char> buffer(1 << 16);
    for (auto _ : state) {
        for (std::size_t i = 0; i < numbers.size(); i += 6) {
            char* out = FormatInt(buffer.data(), static_cast<long long>(i));
            out = FormatFixed6(out, 0);
            for (std::size_t k = i; k < i + 6; ++k) out = FormatFixed6(out, numbers[k]);
            benchmark::DoNotOptimize(out);
        }
    }
    state.SetItemsProcessed(state.iterations() * NUM_ENTITIES);
}
BENCHMARK(FormatNumbersOfLines)->Unit(benchmark::kMillisecond);

} // namespace
