#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Pieces of what users write on the command line.

/// Numbers between commas, exactly so many; none when anything else stands there, or a number is not finite.
std::optional<std::vector<double>> NumbersOf(std::string_view text, std::size_t count);

/// What stands between commas; empty pieces too.
std::vector<std::string> PiecesOf(std::string_view text);
