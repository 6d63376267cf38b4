#pragma once

#include "Drawing.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What is in a drawing, counted.
struct Summary {
    struct Image {
        std::wstring file;
        bool found = false;
    };

    GTL::Extents3D<double> extents;
    /// Entities of the layers by kind, those kinds that occur, in the order of ENTITY_KINDS. Blocks are not
    /// counted.
    std::vector<std::pair<std::string_view, std::uint64_t>> kinds;
    /// One for each image: of the layers in drawing order, then of the blocks by name.
    std::vector<Image> images;
};

Summary Summarize(Drawing& drawing);
