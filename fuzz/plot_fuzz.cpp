// Reads any bytes as a plot file, asks for all boxes, writes the document and reads it again. The second
// document must be the first one: it is written as the same bytes, and nothing of it is passed over.

#include "model/DXFText.h"
#include "platform/Utf8.h"
#include "plot/PlotFile.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

std::filesystem::path Scratch(const char* name)
{
    static const std::filesystem::path folder = [] {
        auto path =
            std::filesystem::temp_directory_path() / ("plot_fuzz_" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(path);
        return path;
    }();
    return folder / name;
}

std::string Content(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Require(bool claim)
{
    if (!claim) std::abort();
}

std::string Written(const DXF& document, const char* name)
{
    PlotFile plot;
    Require(static_cast<bool>(plot.Write(FromUtf8(Scratch(name).string()), &document)));
    Require(plot.BlocksLeftOut() == 0);
    return Content(Scratch(name));
}

void AskForBoxes(DXF& document)
{
    (void)document.Extents();
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        (void)block->second->Extents();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::filesystem::path input = Scratch("input.plot");
    std::ofstream(input, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    DXFText::s_FontTable.clear();
    DXF document;
    PlotFile plot;
    if (!plot.Read(FromUtf8(input.string()), &document)) return 0;
    Require(plot.Ending() != PlotFile::NOT_READ && plot.EndOffset() <= size);
    AskForBoxes(document);

    const std::string first = Written(document, "first.plot");
    DXF again;
    PlotFile reader;
    Require(static_cast<bool>(reader.Read(FromUtf8(Scratch("first.plot").string()), &again)));
    Require(reader.Ending() == PlotFile::END_MARK && reader.UnknownRecords() == 0);
    Require(again.NumEntities() == document.NumEntities() && again.NumBlocks() == document.NumBlocks());
    Require(Written(again, "second.plot") == first);
    return 0;
}
