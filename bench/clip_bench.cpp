// Clipping a document to a window, beside bare loops over the same coordinates. Rates are entities a second.
#include "clip/DXFClipContext.h"
#include "model/DXF.h"
#include "model/DXFCircle.h"
#include "model/DXFLine.h"
#include "model/DXFPolygon.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <random>

namespace {

using P3 = GTL::Point3D<double>;

constexpr double SIZE = 1000;
const std::atomic<bool> GO = true;

/// Half the drawing in each direction: a quarter of what is spread evenly.
DXFClipContext Quarter()
{
    DXFClipContext context;
    context.xmin = context.ymin = SIZE / 4;
    context.xmax = context.ymax = SIZE * 3 / 4;
    return context;
}

DXFClipContext Everything()
{
    DXFClipContext context;
    context.xmin = context.ymin = -SIZE;
    context.xmax = context.ymax = 2 * SIZE;
    return context;
}

double Uniform(std::mt19937& random, double low, double high)
{
    return low + (high - low) * double(random()) / double(std::mt19937::max());
}

/// A shape's vertices: a chain that wanders (2 % of the drawing across) or a ring around its place.
template <class Shape>
std::unique_ptr<Shape> MakeShape(std::mt19937& random, int vertices)
{
    constexpr double REACH = SIZE * 0.02;
    const double x = Uniform(random, 0, SIZE);
    const double y = Uniform(random, 0, SIZE);
    std::vector<P3> points;
    for (int i = 0; i < vertices; ++i) {
        const double angle = i * MATH::TWOPI / vertices;
        const double radius = REACH * Uniform(random, 0.3, 0.5);
        points.emplace_back(x + radius * std::cos(angle), y + radius * std::sin(angle), 0);
    }
    auto shape = std::make_unique<Shape>();
    for (const P3& p : points) shape->PushBack(p);
    return shape;
}

/// A chain that wanders through the drawing in steps of 2 % of its size: most of them cross the window.
std::unique_ptr<DXFEntity> MakeWalk(std::mt19937& random, int vertices)
{
    auto walk = std::make_unique<DXFPolyline>();
    double x = Uniform(random, 0, SIZE);
    double y = Uniform(random, 0, SIZE);
    for (int i = 0; i < vertices; ++i) {
        walk->PushBack(x, y);
        x += Uniform(random, -SIZE, SIZE) * 0.04;
        y += Uniform(random, -SIZE, SIZE) * 0.04;
    }
    return walk;
}

std::unique_ptr<DXFEntity> MakeEntity(const char* kind, std::mt19937& random)
{
    const double x = Uniform(random, 0, SIZE);
    const double y = Uniform(random, 0, SIZE);
    switch (kind[0]) {
    case 'l': {
        const double dx = Uniform(random, -SIZE, SIZE) * 0.01;
        const double dy = Uniform(random, -SIZE, SIZE) * 0.01;
        return std::make_unique<DXFLine>(P3(x, y, 0), P3(x + dx, y + dy, 0));
    }
    case 'c':
        return std::make_unique<DXFCircle>(P3(x, y, 0), SIZE * 0.01);
    case 'w':
        return MakeWalk(random, 64);
    case 'p':
        return MakeShape<DXFPolyline>(random, 64);
    default:
        return MakeShape<DXFPolygon>(random, 32);
    }
}

void Fill(DXF& drawing, const char* kind, int count)
{
    std::mt19937 random(1);
    for (int i = 0; i < count; ++i) drawing.Add(MakeEntity(kind, random).release());
}

void ClipDocument(benchmark::State& state, const char* kind, int count, const DXFClipContext& window,
                  bool boxKnown)
{
    int left = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto drawing = std::make_unique<DXF>();
        Fill(*drawing, kind, count);
        if (boxKnown) drawing->Extents();
        DXFClipContext context = window;
        state.ResumeTiming();
        drawing->Clip(context, GO);
        benchmark::DoNotOptimize(left = drawing->NumEntities());
        state.PauseTiming();
        drawing.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["left"] = left;
}

struct BareLine {
    double x0, y0, x1, y1;
};

unsigned OutCode(const DXFClipContext& w, double x, double y)
{
    return unsigned(x < w.xmin) | unsigned(x > w.xmax) << 1 | unsigned(y < w.ymin) << 2
           | unsigned(y > w.ymax) << 3;
}

/// One segment by the textbook loop over out codes.
bool CutBare(const DXFClipContext& w, BareLine& l)
{
    unsigned a = OutCode(w, l.x0, l.y0);
    unsigned b = OutCode(w, l.x1, l.y1);
    while ((a | b) != 0) {
        if ((a & b) != 0) return false;
        const unsigned out = a != 0 ? a : b;
        const double edge = out & 12 ? (out & 8 ? w.ymax : w.ymin) : (out & 2 ? w.xmax : w.xmin);
        const double t = out & 12 ? (edge - l.y0) / (l.y1 - l.y0) : (edge - l.x0) / (l.x1 - l.x0);
        const double x = out & 12 ? l.x0 + t * (l.x1 - l.x0) : edge;
        const double y = out & 12 ? edge : l.y0 + t * (l.y1 - l.y0);
        if (out == a) {
            l.x0 = x;
            l.y0 = y;
            a = OutCode(w, x, y);
        } else {
            l.x1 = x;
            l.y1 = y;
            b = OutCode(w, x, y);
        }
    }
    return true;
}

/// The same segments in one array, the surviving ones gathered in another.
void ClipBareLines(benchmark::State& state, int count)
{
    std::mt19937 random(1);
    std::vector<BareLine> lines;
    for (int i = 0; i < count; ++i) {
        const double x = Uniform(random, 0, SIZE);
        const double y = Uniform(random, 0, SIZE);
        const double dx = Uniform(random, -SIZE, SIZE) * 0.01;
        lines.push_back({x, y, x + dx, y + Uniform(random, -SIZE, SIZE) * 0.01});
    }
    const DXFClipContext window = Quarter();
    std::vector<BareLine> kept;
    for (auto _ : state) {
        kept.clear();
        for (BareLine line : lines)
            if (CutBare(window, line)) kept.push_back(line);
        benchmark::DoNotOptimize(kept.data());
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["left"] = double(kept.size());
}

/// The segments of the same chains, each by itself.
void ClipBareChains(benchmark::State& state, const char* kind, int count, int vertices)
{
    std::mt19937 random(1);
    std::vector<std::vector<P3>> chains;
    for (int i = 0; i < count; ++i) {
        const auto entity = MakeEntity(kind, random);
        chains.push_back(static_cast<const DXFPolyline&>(*entity).GetPoly().Vertices());
    }
    const DXFClipContext window = Quarter();
    std::vector<BareLine> kept;
    for (auto _ : state) {
        kept.clear();
        for (const std::vector<P3>& chain : chains) {
            for (int i = 1; i < vertices; ++i) {
                const P3& a = chain[std::size_t(i - 1)];
                const P3& b = chain[std::size_t(i)];
                BareLine line{a.X(), a.Y(), b.X(), b.Y()};
                if (CutBare(window, line)) kept.push_back(line);
            }
        }
        benchmark::DoNotOptimize(kept.data());
    }
    state.SetItemsProcessed(state.iterations() * count);
}

constexpr int MILLION = 1000000;
constexpr int TENTH = 100000;

BENCHMARK_CAPTURE(ClipDocument, lines_to_a_quarter, "lines", MILLION, Quarter(), false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipDocument, lines_boxes_known, "lines", MILLION, Quarter(), true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipDocument, lines_all_inside, "lines", MILLION, Everything(), true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipBareLines, bare, MILLION)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipDocument, polylines_to_a_quarter, "polylines", TENTH, Quarter(), false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipBareChains, bare_polylines, "polylines", TENTH, 64)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipDocument, walks_to_a_quarter, "walks", TENTH, Quarter(), false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipBareChains, bare_walks, "walks", TENTH, 64)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipDocument, polygons_to_a_quarter, "gons", TENTH, Quarter(), false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipBareChains, bare_polygons, "gons", TENTH, 32)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ClipDocument, circles_to_a_quarter, "circles", MILLION, Quarter(), false)
    ->Unit(benchmark::kMillisecond);

} // namespace
