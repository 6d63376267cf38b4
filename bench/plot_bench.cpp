#include <benchmark/benchmark.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "SampleEntities.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFText.h"
#include "plot/PlotFile.h"
#include "support/CRCChecksum.h"

// Writing and reading plot files of a million entities, as bytes of the file a second, beside copying those
// bytes in memory and beside their checksum, without which no plot file goes.

namespace {

using namespace SampleEntities;

constexpr int NUM_ENTITIES = 1'000'000;

/// In the shares of drawings of buildings.
DXFEntity* NewMixed(int i)
{
    const int share = i % 20;
    if (share < 12) return NewLine(i);
    if (share < 15) return NewPolyline(i);
    if (share < 17) return NewText<DXFText>(i);
    if (share < 19) return new DXFArc(Place(i), 10 + i % 100, i % 360, i * 7 % 360);
    return new DXFCircle(Place(i), 10 + i % 100);
}

void Fill(DXF& drawing, DXFEntity* (*make)(int))
{
    for (int i = 0; i < NUM_ENTITIES; ++i) {
        DXFEntity* entity = make(i);
        entity->SetColor(DXFColor(i / 10 % 8));
        drawing.Add(L"LAYER_" + std::to_wstring(i / 1000 % 16), entity, true);
    }
}

const std::filesystem::path& File()
{
    static const std::filesystem::path file = std::filesystem::temp_directory_path() / "halyard_bench.plot";
    return file;
}

void Finish(benchmark::State& state)
{
    std::error_code unwritten;
    const auto size = static_cast<std::int64_t>(std::filesystem::file_size(File(), unwritten));
    state.SetBytesProcessed(unwritten ? 0 : state.iterations() * size);
    state.SetItemsProcessed(state.iterations() * NUM_ENTITIES);
    std::filesystem::remove(File(), unwritten);
}

void WritePlot(benchmark::State& state, DXFEntity* (*make)(int))
{
    DXF drawing;
    Fill(drawing, make);
    for (auto _ : state)
        if (!PlotFile().Write(File().wstring(), &drawing)) state.SkipWithError("cannot write");
    Finish(state);
}

void ReadPlot(benchmark::State& state, DXFEntity* (*make)(int))
{
    {
        DXF drawing;
        Fill(drawing, make);
        if (!PlotFile().Write(File().wstring(), &drawing)) state.SkipWithError("cannot write");
    }
    DXF drawing;
    for (auto _ : state) {
        if (!PlotFile().Read(File().wstring(), &drawing)) state.SkipWithError("cannot read");
        state.PauseTiming();
        if (drawing.NumEntities() != NUM_ENTITIES) state.SkipWithError("entities are missing");
        drawing.Clear();
        state.ResumeTiming();
    }
    Finish(state);
}

std::vector<char> BytesOf(DXFEntity* (*make)(int))
{
    DXF drawing;
    Fill(drawing, make);
    if (!PlotFile().Write(File().wstring(), &drawing)) return {};
    std::vector<char> bytes(std::filesystem::file_size(File()));
    std::ifstream(File(), std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

void CopyInMemory(benchmark::State& state, DXFEntity* (*make)(int))
{
    const std::vector<char> bytes = BytesOf(make);
    std::vector<char> copy(bytes.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    Finish(state);
}

void ChecksumAlone(benchmark::State& state, DXFEntity* (*make)(int))
{
    const std::vector<char> bytes = BytesOf(make);
    for (auto _ : state) {
        CRCChecksum checksum;
        checksum.Update(bytes.data(), bytes.size());
        benchmark::DoNotOptimize(checksum.Value());
    }
    Finish(state);
}

BENCHMARK_CAPTURE(CopyInMemory, lines, NewLine)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ChecksumAlone, lines, NewLine)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(WritePlot, lines, NewLine)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(WritePlot, polylines, NewPolyline)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(WritePlot, texts, NewText<DXFText>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(WritePlot, mixed, NewMixed)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ReadPlot, lines, NewLine)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ReadPlot, polylines, NewPolyline)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ReadPlot, texts, NewText<DXFText>)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ReadPlot, mixed, NewMixed)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
