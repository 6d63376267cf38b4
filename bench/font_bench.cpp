#include <benchmark/benchmark.h>

#include <string>

#include "platform/Font.h"

/// Fifteen characters of one face, all advances known.
static void MeasureText(benchmark::State& state)
{
    const FontFace& face = FindFont(L"Arial", false, false);
    const std::wstring text = L"Halle 12, EG \u00D8 4";
    for (auto _ : state) benchmark::DoNotOptimize(face.Width(text));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(MeasureText);

/// The same font again and again, as in a run of texts of one style.
static void FindSameFont(benchmark::State& state)
{
    const std::wstring name = L"ARIAL|B0|I0|C0|P34";
    for (auto _ : state) benchmark::DoNotOptimize(&FindFont(name, false, false));
}
BENCHMARK(FindSameFont);

/// Two fonts in turn: the look-up by hash.
static void FindFontsInTurn(benchmark::State& state)
{
    const std::wstring names[] = {L"ARIAL|B0|I0|C0|P34", L"txt.shx"};
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(&FindFont(names[++i & 1], false, false));
}
BENCHMARK(FindFontsInTurn);

/// A name never seen before: fontconfig's own search.
static void FindUnknownFont(benchmark::State& state)
{
    int i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(&FindFont(L"no such font " + std::to_wstring(++i), false, false));
}
BENCHMARK(FindUnknownFont);
