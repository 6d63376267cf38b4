#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "PlainLine.h"
#include "platform/CDC.h"

// The software device on a picture of 2000 x 1500, beside a plain loop that draws the same pixels and knows
// neither pens nor maps nor clips.
namespace {
constexpr int WIDTH = 2000;
constexpr int HEIGHT = 1500;
constexpr int COUNT = 1 << 14;

struct Scene {
    Scene()
    {
        if (!bitmap.CreateBitmap(WIDTH, HEIGHT)) std::abort();
        dc.SelectObject(&bitmap);
        dc.SetBkMode(TRANSPARENT);
    }
    CBitmap bitmap;
    CDC dc;
};

struct Segment {
    CPoint from;
    CPoint to;
};

/// Segments of one length in all directions, all inside.
std::vector<Segment> Segments(int length)
{
    constexpr double TURN = 6.283185307179586;
    std::mt19937 random(1);
    std::vector<Segment> segments(COUNT);
    for (Segment& segment : segments) {
        const double angle = std::uniform_real_distribution(0.0, TURN)(random);
        const int x = std::uniform_int_distribution(length, WIDTH - length - 1)(random);
        const int y = std::uniform_int_distribution(length, HEIGHT - length - 1)(random);
        segment = {
            {x, y},
            {x + static_cast<int>(length * std::cos(angle)), y + static_cast<int>(length * std::sin(angle))}};
    }
    return segments;
}

void PlainLines(benchmark::State& state)
{
    Scene scene;
    const std::vector<Segment> segments = Segments(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (const Segment& s : segments) PlainLine(scene.bitmap, s.from, s.to, 0x123456);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(PlainLines)->Arg(18)->Arg(434);

/// By the pen of a style and width.
void Lines(benchmark::State& state, int style, int width)
{
    Scene scene;
    CPen pen(style, width, 0x123456);
    scene.dc.SelectObject(&pen);
    const std::vector<Segment> segments = Segments(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (const Segment& s : segments) {
            scene.dc.MoveTo(s.from);
            scene.dc.LineTo(s.to);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK_CAPTURE(Lines, solid, PS_SOLID, 1)->Arg(18)->Arg(434);
BENCHMARK_CAPTURE(Lines, dashed, PS_DASH, 1)->Arg(18)->Arg(434);
BENCHMARK_CAPTURE(Lines, wide4, PS_SOLID, 4)->Arg(18)->Arg(434);

/// 64 points, 18 pixels apart.
void Polylines(benchmark::State& state)
{
    constexpr std::size_t POINTS = 64;
    Scene scene;
    std::mt19937 random(2);
    std::vector<std::array<CPoint, POINTS>> lines(256);
    for (auto& line : lines) {
        const int x = static_cast<int>(random() % (WIDTH - 800)),
                  y = static_cast<int>(random() % (HEIGHT - 40));
        for (std::size_t i = 0; i < POINTS; ++i)
            line[i] = {x + 12 * static_cast<int>(i), y + static_cast<int>(random() % 27)};
    }
    for (auto _ : state) {
        for (const auto& line : lines) scene.dc.Polyline(line.data(), POINTS);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int>(lines.size()));
}
BENCHMARK(Polylines);

/// Triangles of about 100 pixels a side without an outline.
void Triangles(benchmark::State& state)
{
    Scene scene;
    CPen none(PS_NULL, 1, 0);
    CBrush brush(0x654321);
    scene.dc.SelectObject(&none);
    scene.dc.SelectObject(&brush);
    const std::vector<Segment> segments = Segments(100);
    for (auto _ : state) {
        for (const Segment& s : segments) {
            const CPoint corners[] = {
                s.from, s.to, {s.from.x + (s.from.y - s.to.y), s.from.y + (s.to.x - s.from.x)}};
            scene.dc.Polygon(corners, 3);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(Triangles);

struct TextScene : Scene {
    explicit TextScene(int escapement)
    {
        const bool isMade = font.CreateFontW(14, 0, escapement, 0, FW_NORMAL, false, false, false,
                                             ANSI_CHARSET, OUT_TT_ONLY_PRECIS, CLIP_LH_ANGLES, PROOF_QUALITY,
                                             DEFAULT_PITCH, L"Liberation Sans");
        if (!isMade) std::abort();
        dc.SelectObject(&font);
    }
    CFont font;
};

/// Twelve characters, cell height 14, glyphs known.
void Texts(benchmark::State& state)
{
    TextScene scene(static_cast<int>(state.range(0)));
    int i = 0;
    for (auto _ : state) {
        ++i;
        scene.dc.TextOutW(100 + i % 1700, 100 + i % 1300, L"Halle 12, EG", 12);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(Texts)->Arg(0)->Arg(300);

void TextExtents(benchmark::State& state)
{
    TextScene scene(0);
    for (auto _ : state) benchmark::DoNotOptimize(scene.dc.GetTextExtent(L"Halle 12, EG", 12));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(TextExtents);

constexpr std::int64_t PICTURE_BYTES = std::int64_t{4} * WIDTH * HEIGHT;

void PlainCopy(benchmark::State& state)
{
    Scene from, to;
    for (auto _ : state) {
        std::memcpy(to.bitmap.Pixels(), from.bitmap.Pixels(), PICTURE_BYTES);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * PICTURE_BYTES);
}
BENCHMARK(PlainCopy);

void Copies(benchmark::State& state)
{
    Scene from, to;
    for (auto _ : state) {
        to.dc.BitBlt(0, 0, WIDTH, HEIGHT, &from.dc, 0, 0, SRCCOPY);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * PICTURE_BYTES);
}
BENCHMARK(Copies);
} // namespace
