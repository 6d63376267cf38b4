#include "support/CRCChecksum.h"
#include "support/DXFColor.h"
#include "support/HashedString.h"
#include "support/TextRectComp.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace {

/// Bytes a second through the checksum.
void Checksum(benchmark::State& state)
{
    const std::vector<char> bytes(static_cast<std::size_t>(state.range(0)), 'x');
    CRCChecksum checksum;
    for (auto _ : state) checksum.Update(bytes.data(), bytes.size());
    benchmark::DoNotOptimize(checksum.Value());
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Checksum)->Arg(16)->Arg(256)->Arg(65536);

/// A layer's name made ready for look-ups.
void HashName(benchmark::State& state)
{
    const std::wstring name(L"LAYER_0042");
    for (auto _ : state) benchmark::DoNotOptimize(HashedString<wchar_t>(name).Hash());
}
BENCHMARK(HashName);

void HashNameOnly(benchmark::State& state)
{
    const std::wstring name(L"LAYER_0042");
    for (auto _ : state) benchmark::DoNotOptimize(HashedString<wchar_t>::HashOf(name));
}
BENCHMARK(HashNameOnly);

/// Indices of colours: one again and again (0), those of the table (1), any (2).
void ColorIndex(benchmark::State& state)
{
    std::mt19937 random(3);
    std::vector<unsigned long> colors(4096);
    for (unsigned long& color : colors) {
        color = random() & 0xFFFFFF;
        if (state.range(0) == 0) color = 0x0000FF;
        if (state.range(0) == 1) color = DXFColor(static_cast<int>(color % 256));
    }
    for (auto _ : state)
        for (const unsigned long color : colors) benchmark::DoNotOptimize(DXFColor(color).Index());
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(colors.size()));
}
BENCHMARK(ColorIndex)->DenseRange(0, 2);

TextInfo Annotation()
{
    TextInfo info;
    info.SetFont(L"ARIAL|B0|I0|C0|P34");
    info.SetSize(2.5F);
    return info;
}

void MeasureText(benchmark::State& state)
{
    const TextInfo info = Annotation();
    const std::wstring text(L"fire door EI60 %%c16");
    for (auto _ : state) benchmark::DoNotOptimize(TextRectComp()(info, text).Width());
}
BENCHMARK(MeasureText);

void MeasureMText(benchmark::State& state)
{
    const TextInfo info = Annotation();
    const std::wstring text(
        L"{\\fArial|b0|i0;valve pump DN50 level +12.50\\Proom 104} steel column axis \\S1/2; see detail");
    for (auto _ : state) benchmark::DoNotOptimize(TextRectComp()(info, text, 40.0).Width());
}
BENCHMARK(MeasureMText);

} // namespace
