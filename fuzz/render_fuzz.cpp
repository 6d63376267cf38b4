// Reads any bytes as a DXF file and draws the document as hosts do: by the plain rules and with all drawing
// options, the whole of it and parts, then as a cached view that is panned and edited.

#include "dxf/DXFFile.h"
#include "model/DXFText.h"
#include "platform/CDC.h"
#include "platform/Utf8.h"
#include "render/NewWinDXF.h"
#include "render/WinDXFDrawer.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

using View = GTL::Extents2D<double>;
constexpr int WIDTH = 160;
constexpr int HEIGHT = 120;
const std::atomic<bool> GO{true};

std::filesystem::path InputFile()
{
    static const std::filesystem::path file = [] {
        auto folder = std::filesystem::temp_directory_path()
                      / ("render_fuzz_" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(folder);
        return folder / "input.dxf";
    }();
    return file;
}

/// The whole, a part of it, and a view far too close.
std::vector<View> Views(const View& all)
{
    const GTL::Point2D<double> center = all.Center();
    const auto within = [&](double part) {
        const double dx = all.ExtentX() * part;
        const double dy = all.ExtentY() * part;
        return View({center.X() - dx, center.Y() - dy}, {center.X() + dx, center.Y() + dy});
    };
    return {all, within(0.1), within(1e-9), View({0, 0}, {1, 1})};
}

/// False when inserts stand for more than a fuzzer has the time for.
bool DrawAll(CDC& dc, const DXF& document, const View& all)
{
    constexpr std::uint64_t LIMIT = 20'000;
    bool isWhole = true;
    for (const bool plain : {true, false}) {
        for (const View& view : Views(all)) {
            WinDXFDrawer drawer(plain ? DrawingOption() : DrawingOption::All(0));
            if (!drawer.Init(&dc, view, CRect(0, 0, WIDTH, HEIGHT))) std::abort();
            drawer.SetLimit(LIMIT);
            drawer.Draw(document, GO);
            isWhole = isWhole && !drawer.GetReport().limitReached;
        }
    }
    return isWhole;
}

/// A view that was kept shows what a new one shows.
void PaintTwice(CDC& dc, DXF& document, const View& all)
{
    const CRect rect(0, 0, WIDTH, HEIGHT);
    CBitmap kept;
    CBitmap fresh;
    if (!kept.CreateBitmap(WIDTH, HEIGHT) || !fresh.CreateBitmap(WIDTH, HEIGHT)) std::abort();
    NewWinDXF view(&document);
    view.Draw(&dc, all, rect);
    if (document.NumLayers() > 0) document[0ULL]->Move(1, 0, 0);
    CDC target;
    target.SelectObject(&kept);
    view.Draw(&target, all, rect);
    target.SelectObject(&fresh);
    NewWinDXF(&document).Draw(&target, all, rect);
    if (std::memcmp(kept.Pixels(), fresh.Pixels(), sizeof(std::uint32_t) * WIDTH * HEIGHT) != 0) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    std::ofstream(InputFile(), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    DXF document;
    DXFText::s_FontTable.clear();
    DXFFile reader;
    reader.SetBlocksUseDocumentLayers(true);
    reader.SetExtrusionsToWorld(true);
    reader.SetFitsTexts(true);
    if (!reader.Read(FromUtf8(InputFile().string()), document, GO, true)) return 0;
    CBitmap bitmap;
    if (!bitmap.CreateBitmap(WIDTH, HEIGHT)) std::abort();
    CDC dc;
    dc.SelectObject(&bitmap);
    const View all = document.Extents();
    if (!DrawAll(dc, document, all)) return 0;
    dc.SetMapMode(MM_TEXT);
    PaintTwice(dc, document, all);
    return 0;
}
