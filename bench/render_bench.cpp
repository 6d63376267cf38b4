#include <benchmark/benchmark.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "PlainLine.h"
#include "model/DXF.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFLine.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "platform/CDC.h"
#include "render/NewWinDXF.h"
#include "render/WinDXFDrawer.h"

// Drawings through the drawer into a picture of 2000 x 1500, and the plain loop that draws the same lines.
namespace {
constexpr int WIDTH = 2000;
constexpr int HEIGHT = 1500;
constexpr int LINES = 1'000'000;
constexpr double TURN = 6.283185307179586;
const std::atomic<bool> GO{true};
const CRect RECT(0, 0, WIDTH, HEIGHT);
const GTL::Extents2D<double> ALL({0, 0}, {WIDTH, HEIGHT});

using Random = std::mt19937;

double Between(Random& random, double low, double high)
{
    return std::uniform_real_distribution(low, high)(random);
}

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

/// 2 % of the extent long, in all directions, inside.
DXFLine* ShortLine(Random& random, double left, double right)
{
    constexpr double LENGTH = 0.02 * 1000;
    const double angle = Between(random, 0, TURN);
    const double x = Between(random, left + LENGTH, right - LENGTH);
    const double y = Between(random, LENGTH, HEIGHT - LENGTH);
    auto* line = new DXFLine({x, y, 0}, {x + LENGTH * std::cos(angle), y + LENGTH * std::sin(angle), 0});
    line->SetColor(0xFFFFFFUL);
    return line;
}

DXF& LineDrawing()
{
    static DXF drawing;
    if (drawing.NumEntities() == 0) {
        Random random(1);
        for (int i = 0; i < LINES; ++i) drawing.Add(ShortLine(random, 0, WIDTH));
        (void)drawing.Extents();
    }
    return drawing;
}

void PlainLines(benchmark::State& state)
{
    Scene scene;
    std::vector<std::pair<CPoint, CPoint>> lines;
    const DXFLayer& layer = *LineDrawing()[0ULL];
    for (std::size_t i = 0; i < layer.NumEntities(); ++i) {
        const auto& line = dynamic_cast<const DXFLine&>(*layer[i]);
        lines.emplace_back(CPoint(int(line.Start().X()), HEIGHT - 1 - int(line.Start().Y())),
                           CPoint(int(line.End().X()), HEIGHT - 1 - int(line.End().Y())));
    }
    for (auto _ : state) {
        for (const auto& [from, to] : lines) PlainLine(scene.bitmap, from, to, 0xFFFFFF);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * LINES);
}
BENCHMARK(PlainLines)->Unit(benchmark::kMillisecond);

void DrawPass(Scene& scene, DXF& drawing, const DrawingOption& option, const GTL::Extents2D<double>& view)
{
    WinDXFDrawer drawer(option);
    if (!drawer.Init(&scene.dc, view, RECT)) std::abort();
    drawing.Draw(drawer, view, GO);
}

void DrawLines(benchmark::State& state)
{
    Scene scene;
    const DrawingOption option = state.range(0) == 0 ? DrawingOption() : DrawingOption::All(0);
    for (auto _ : state) DrawPass(scene, LineDrawing(), option, ALL);
    state.SetItemsProcessed(state.iterations() * LINES);
}
BENCHMARK(DrawLines)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

DXFEntity* MixedEntity(Random& random, int kind)
{
    const GTL::Point3D<double> at(Between(random, 40, WIDTH - 40), Between(random, 40, HEIGHT - 40), 0);
    const auto near = [&] {
        return GTL::Point3D<double>(at.X() + Between(random, -20, 20), at.Y() + Between(random, -20, 20), 0);
    };
    switch (kind) {
    case 0:
        return new DXFCircle(at, Between(random, 2, 10));
    case 1:
        return new DXFArc(at, Between(random, 2, 10), Between(random, 0, 360), Between(random, 0, 360));
    case 2: {
        auto* polyline = new DXFPolyline;
        for (int i = 0; i < 5; ++i) polyline->PushBack(near());
        return polyline;
    }
    case 3: {
        auto* solid = new DXFSolid;
        for (int i = 0; i < 4; ++i) (*solid)[i] = near();
        return solid;
    }
    case 4: {
        auto* text = new DXFText;
        text->SetText(L"Hall 12");
        text->SetPosition(at);
        TextInfo info;
        info.SetSize(8);
        info.SetColor(0xFF00FF);
        text->SetTextInfo(info);
        return text;
    }
    default:
        return new DXFLine(at, near());
    }
}

/// Half lines, the rest in equal parts of circles, arcs, polylines, solids and texts.
void DrawMixed(benchmark::State& state)
{
    constexpr int COUNT = 100'000;
    static DXF drawing;
    Random random(2);
    for (int i = drawing.NumEntities(); i < COUNT; ++i) drawing.Add(MixedEntity(random, i % 10));
    (void)drawing.Extents();
    Scene scene;
    const DrawingOption option = state.range(0) == 0 ? DrawingOption() : DrawingOption::All(0);
    for (auto _ : state) DrawPass(scene, drawing, option, ALL);
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(DrawMixed)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void DrawTexts(benchmark::State& state)
{
    constexpr int COUNT = 20'000;
    static DXF drawing;
    Random random(3);
    for (int i = drawing.NumEntities(); i < COUNT; ++i) drawing.Add(MixedEntity(random, 4));
    (void)drawing.Extents();
    Scene scene;
    for (auto _ : state) DrawPass(scene, drawing, DrawingOption(), ALL);
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(DrawTexts)->Unit(benchmark::kMillisecond);

/// 1,000 layers of 1,000 lines side by side; the view holds so many of the layers.
void DrawPart(benchmark::State& state)
{
    constexpr int LAYERS = 1000;
    constexpr int EACH = 1000;
    constexpr double STRIP = 50;
    static DXF drawing;
    Random random(4);
    for (int i = static_cast<int>(drawing.NumLayers()) - 1; i < LAYERS; ++i) {
        const std::wstring name = L"L" + std::to_wstring(i);
        for (int j = 0; j < EACH; ++j) drawing.Add(name, ShortLine(random, i * STRIP, (i + 1) * STRIP), true);
    }
    (void)drawing.Extents();
    const GTL::Extents2D<double> view({STRIP / 2, 0},
                                      {STRIP / 2 + STRIP * static_cast<double>(state.range(0) - 1), HEIGHT});
    Scene scene;
    for (auto _ : state) DrawPass(scene, drawing, DrawingOption(), view);
    state.SetItemsProcessed(state.iterations() * state.range(0) * EACH);
}
BENCHMARK(DrawPart)->Arg(10)->Arg(1000)->Unit(benchmark::kMillisecond);

constexpr std::int64_t PICTURE_BYTES = std::int64_t{4} * WIDTH * HEIGHT;

void PlainPictureCopy(benchmark::State& state)
{
    Scene from, to;
    for (auto _ : state) {
        std::memcpy(to.bitmap.Pixels(), from.bitmap.Pixels(), PICTURE_BYTES);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * PICTURE_BYTES);
}
BENCHMARK(PlainPictureCopy);

/// A paint of a view in which nothing has changed.
void Repaint(benchmark::State& state)
{
    Scene scene;
    NewWinDXF view(&LineDrawing());
    view.Draw(&scene.dc, ALL, RECT);
    for (auto _ : state) view.Draw(&scene.dc, ALL, RECT);
    state.SetBytesProcessed(state.iterations() * PICTURE_BYTES);
}
BENCHMARK(Repaint);
} // namespace
