// Reads any bytes as a DXF file, then does with the document what a host would: asks for its boxes, walks it,
// copies a layer, writes it and reads it back, which must never fail.

#include "dxf/DXFFile.h"
#include "model/DXFText.h"
#include "platform/Utf8.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

const std::atomic<bool> GO{true};

/// A file of this process's own folder.
std::filesystem::path Scratch(const char* name)
{
    static const std::filesystem::path folder = [] {
        auto path =
            std::filesystem::temp_directory_path() / ("dxf_fuzz_" + std::to_string(std::random_device()()));
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

/// Writes the document and returns the bytes; asks every box on the way.
std::string Written(DXF& document, const char* name)
{
    const std::filesystem::path path = Scratch(name);
    (void)document.Extents();
    if (!document.Write(FromUtf8(path.string()), GO, 1)) std::abort();
    return Content(path);
}

void Walk(DXF& document)
{
    DXFWriter nothing;
    GTL::Extents2D<double> view = document.Extents();
    document.Draw(nothing, view, GO);
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        (void)block->second->Extents();
    DXFLayer copy(L"copy");
    copy = *document[0ULL];
    copy.Move(1, 2, 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::filesystem::path input = Scratch("input.dxf");
    std::ofstream(input, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    DXF document;
    DXFText::s_FontTable.clear();
    // Half of the inputs as the program reads them to show them.
    const bool asShown = size % 2 == 1;
    DXFFile reader;
    reader.SetBlocksUseDocumentLayers(asShown);
    reader.SetExtrusionsToWorld(asShown);
    reader.SetFitsTexts(asShown);
    if (!reader.Read(FromUtf8(input.string()), document, GO, true)) return 0;
    Walk(document);
    (void)Written(document, "first.dxf");
    DXF again;
    if (!again.Read(FromUtf8(Scratch("first.dxf").string()), GO, true))
        std::abort(); // our own files always read
    (void)Written(again, "second.dxf");
    return 0;
}
