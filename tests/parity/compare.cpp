// Compares what two devices made of the same scenes:  parity_compare REFERENCE OTHER [FOLDER]
//
// The reference is GDI. One line a scene tells how many of its pixels are drawn, how many differ, by how much
// at most (the largest step of red, green or blue) and where the first one lies. Fails when a scene differs
// by more than its rule allows, when one is missing, when one shows nothing, and when a fault planted
// into a scene would not be seen. With a folder, pictures of
// what differs are left there: black where equal, red where only the reference drew, green where only the
// other did, white elsewhere.
#include "Record.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {
/// What may differ, by rule: at most so many of a million drawn pixels are wrong. Wrong are
/// - equal: pixels that differ;
/// - wide pens: pixels that differ and whose colour, of either side, is at none of the eight pixels around on
/// the
///   other side: the border may lie a pixel further in or out. They are counted by the pixels at borders;
/// - grey text: pixels whose mean over 3 x 3 pixels differs by more than `step` in red, green or blue: shades
/// and
///   hinting may differ, the place and the weight of strokes may not;
/// - turned text (by other than whole quarters): the same over 5 x 5, as single glyphs may lie a pixel off.
struct Tolerance {
    const char* name;
    int step;
    int reach; ///< Pixels to each side that a mean is of.
    std::uint64_t inMillion;
    std::size_t fault; ///< Pixels that a scene has to be moved by to be seen.
};

constexpr Tolerance TOLERANCES[] = {{"equal", 0, 0, 0, 0},
                                    {"wide pens", 0, 0, 20'000, 2},
                                    {"grey text", 48, 1, 80'000, 1},
                                    {"turned text", 64, 2, 30'000, 2}};

const Tolerance& ToleranceOf(const Scene& scene)
{
    return TOLERANCES[static_cast<std::size_t>(scene.rule)];
}

bool GoesByMeans(const Scene& scene)
{
    return scene.rule == Scene::Rule::GreyText || scene.rule == Scene::Rule::TurnedText;
}

struct Difference {
    std::uint64_t drawn = 0;
    std::uint64_t different = 0;
    std::uint64_t wrong = 0;
    int largestStep = 0; ///< Of pixels, or means of them.
    std::size_t first = 0;
};

int StepOf(std::uint32_t a, std::uint32_t b)
{
    int step = 0;
    for (const int shift : {0, 8, 16})
        step = std::max(step,
                        std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF)));
    return step;
}

/// Visits the pixels around one, itself included.
template <class Visit>
void ForAround(const Scene& scene, std::size_t i, int reach, Visit visit)
{
    const int width = static_cast<int>(scene.width);
    const int x = static_cast<int>(i % scene.width);
    const int y = static_cast<int>(i / scene.width);
    for (int v = std::max(y - reach, 0); v <= std::min(y + reach, static_cast<int>(scene.height) - 1); ++v)
        for (int u = std::max(x - reach, 0); u <= std::min(x + reach, width - 1); ++u)
            visit(static_cast<std::size_t>(v) * scene.width + static_cast<std::size_t>(u));
}

bool IsNear(const Scene& scene, std::size_t i, std::uint32_t color)
{
    bool found = false;
    ForAround(scene, i, 1, [&](std::size_t k) { found = found || scene.values[k] == color; });
    return found;
}

/// The largest difference of the means of a channel.
int StepOfMeans(const Scene& a, const Scene& b, std::size_t i)
{
    int sums[3] = {};
    int count = 0;
    ForAround(a, i, ToleranceOf(a).reach, [&](std::size_t k) {
        ++count;
        for (int c = 0; c < 3; ++c)
            sums[c] +=
                static_cast<int>(a.values[k] >> 8 * c & 0xFF) - static_cast<int>(b.values[k] >> 8 * c & 0xFF);
    });
    return std::max({std::abs(sums[0]), std::abs(sums[1]), std::abs(sums[2])}) / count;
}

bool IsWrong(const Scene& a, const Scene& b, std::size_t i, int step)
{
    if (a.rule == Scene::Rule::WidePens) return !IsNear(b, i, a.values[i]) || !IsNear(a, i, b.values[i]);
    if (GoesByMeans(a)) return step > ToleranceOf(a).step;
    return true;
}

/// Whether a pixel is drawn. The first one of a scene is of its background. Numbers are all drawn.
bool Counts(const Scene& a, const Scene& b, std::size_t i)
{
    if (!a.isPicture) return true;
    if (a.rule != Scene::Rule::WidePens) return a.values[i] != a.values[0] || b.values[i] != b.values[0];
    bool isAtBorder = false;
    ForAround(a, i, 1, [&](std::size_t k) { isAtBorder = isAtBorder || a.values[k] != a.values[i]; });
    return isAtBorder;
}

Difference Compare(const Scene& a, const Scene& b)
{
    Difference found;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        found.drawn += Counts(a, b, i) ? 1U : 0U;
        if (a.values[i] == b.values[i]) continue;
        if (found.different++ == 0) found.first = i;
        const int step = GoesByMeans(a) ? StepOfMeans(a, b, i) : StepOf(a.values[i], b.values[i]);
        found.largestStep = std::max(found.largestStep, step);
        found.wrong += IsWrong(a, b, i, step) ? 1U : 0U;
    }
    return found;
}

void SaveDifference(const std::string& folder, const Scene& a, const Scene& b)
{
    std::FILE* file = std::fopen((folder + '/' + a.name + ".ppm").c_str(), "wb");
    if (!file) return;
    std::fprintf(file, "P6\n%u %u\n255\n", a.width, a.height);
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        const bool differs = a.values[i] != b.values[i];
        const bool inA = a.values[i] != a.values[0];
        const bool inB = b.values[i] != b.values[0];
        const int red = differs ? (inA || !inB ? 255 : 0) : (inA ? 60 : 0);
        const int green = differs ? (inB || !inA ? 255 : 0) : (inA ? 60 : 0);
        const int blue = differs ? (inA == inB ? 255 : 0) : (inA ? 60 : 0);
        for (const int channel : {red, green, blue}) std::fputc(channel, file);
    }
    std::fclose(file);
}

bool IsWithin(const Difference& found, const Scene& scene)
{
    return found.wrong * 1'000'000 <= found.drawn * ToleranceOf(scene).inMillion;
}

bool Report(const Scene& a, const Scene& b, const char* folder)
{
    if (a.name != b.name || a.rule != b.rule || a.width != b.width || a.height != b.height) {
        std::printf("%-34s is another scene there: %s\n", a.name.c_str(), b.name.c_str());
        return false;
    }
    const Difference found = Compare(a, b);
    const bool isGood = found.drawn > 0 && IsWithin(found, a);
    std::printf("%-34s %-12s %9llu %9llu %9llu %5d  %s", a.name.c_str(), ToleranceOf(a).name,
                static_cast<unsigned long long>(found.drawn),
                static_cast<unsigned long long>(found.different),
                static_cast<unsigned long long>(found.wrong), found.largestStep, isGood ? "ok" : "DIFFERS");
    if (found.drawn == 0) std::printf(": nothing is drawn");
    if (!isGood && found.different > 0)
        std::printf(" from (%zu, %zu): %x, not %x", found.first % a.width, found.first / a.width,
                    b.values[found.first], a.values[found.first]);
    std::printf("\n");
    if (folder && found.different > 0 && a.isPicture) SaveDifference(folder, a, b);
    return isGood;
}

/// A scene with a fault that its rule has to see: one value another, wide lines moved by two pixels, text by
/// one.
Scene Spoilt(const Scene& scene)
{
    Scene spoilt = scene;
    if (scene.rule == Scene::Rule::Equal) {
        spoilt.values[scene.values.size() / 2] ^= 1;
        return spoilt;
    }
    const std::size_t by = ToleranceOf(scene).fault;
    for (std::size_t i = scene.values.size(); i-- > by;) spoilt.values[i] = scene.values[i - by];
    return spoilt;
}

/// Number of scenes whose fault is not seen.
int CheckRules(const std::vector<Scene>& scenes)
{
    int unseen = 0;
    for (const Scene& scene : scenes) {
        if (!IsWithin(Compare(scene, Spoilt(scene)), scene)) continue;
        std::printf("%-34s would not show a fault\n", scene.name.c_str());
        ++unseen;
    }
    return unseen;
}
} // namespace

int main(int count, char** arguments)
{
    std::vector<Scene> reference;
    std::vector<Scene> other;
    if (count < 3 || !SceneFile::Read(arguments[1], reference) || !SceneFile::Read(arguments[2], other)) {
        std::fprintf(stderr, "parity_compare: needs two files of scenes\n");
        return 2;
    }
    std::printf("%-34s %-12s %9s %9s %9s %5s\n", "scene", "rule", "drawn", "differ", "wrong", "step");
    int bad = 0;
    for (std::size_t i = 0; i < std::min(reference.size(), other.size()); ++i)
        bad += Report(reference[i], other[i], count > 3 ? arguments[3] : nullptr) ? 0 : 1;
    std::printf("%zu scenes, %d differ by more than they may\n", reference.size(), bad);
    if (reference.empty() || reference.size() != other.size()) {
        std::printf("there are %zu scenes on one side and %zu on the other\n", reference.size(),
                    other.size());
        return 1;
    }
    const int unseen = CheckRules(reference);
    std::printf("%zu faults planted, %d not seen\n", reference.size(), unseen);
    return bad == 0 && unseen == 0 ? 0 : 1;
}
