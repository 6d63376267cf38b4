#pragma once

#include "model/DXFEntity.h"

#include <array>
#include <string_view>

/// Names of the kinds of entities as the program prints them, in the order of its tables. A polygon is told
/// from a polyline here, although both are POLYLINE in a file.
inline constexpr std::array<std::string_view, 12> ENTITY_KINDS = {
    "POINT",    "LINE",    "SOLID", "3DFACE", "CIRCLE", "ARC",
    "POLYLINE", "POLYGON", "TEXT",  "MTEXT",  "INSERT", "IMAGE",
};

/// Index into ENTITY_KINDS.
std::size_t KindOf(const DXFEntity& entity);
