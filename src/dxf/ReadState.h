#pragma once

#include "dxf/DXFFile.h"
#include "dxf/GroupReader.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

class DXFImage;

/// What a DXFFile keeps only while it reads.
struct DXFFile::ReadState {
    struct ByteHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view bytes) const { return std::hash<std::string_view>()(bytes); }
    };
    using LayersByBytes = std::unordered_map<std::string, DXFLayer*, ByteHash, std::equal_to<>>;
    using Reader = ErrorString (DXFFile::*)(DXF&);

    DXF* document = nullptr; ///< the document being read, never a block's own
    const std::atomic<bool>* keepGoing = nullptr;
    DXF* layersOf = nullptr; ///< the drawing whose layers are in the look-up below
    LayersByBytes layers;    ///< by the bytes of code 8
    LayersByBytes::value_type* lastLayer = nullptr;
    std::unordered_multimap<std::string, DXFImage*>
        imagesByDefinition;                ///< images that wait for their definition
    std::uint64_t pointsLeft = 10'000'000; ///< that entities taken to the world may have in all
    std::wstring folder;                   ///< of the drawing
    std::wstring section;                  ///< value of code 2 of the section that reading is in
    int blocksDepth = 0;                   ///< BLOCKS sections within one another
    bool ownHeader = false;                ///< the header is the one that the writer writes

    bool Stopped() const { return !keepGoing->load(std::memory_order_relaxed); }
};

/// A number in single precision; what is too large becomes the largest.
float FloatOf(std::string_view text);
/// One byte to one character of the same value.
std::wstring Widen(std::string_view bytes);
/// The letters a to z as A to Z.
std::string UpperCase(std::string_view text);
/// Equal without regard to the case of A to Z.
bool SameName(std::string_view bytes, std::string_view upperCaseName);
