#pragma once

#include <string_view>

/// A group of the parts of a file that are the same for every drawing: a row of a table.
struct FixedGroup {
    int code;
    std::string_view value;
};

/// Stands for group 5 with a new handle.
inline constexpr FixedGroup NEW_HANDLE{-1, {}};
