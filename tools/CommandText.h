#pragma once

#include "support/Extents.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// Pieces of what users write on the command line.

/// Numbers between commas, exactly so many; none when anything else stands there, or a number is not finite.
std::optional<std::vector<double>> NumbersOf(std::string_view text, std::size_t count);

/// The box between two opposite corners, "x0,y0,x1,y1".
std::optional<GTL::Extents2D<double>> BoxOf(std::string_view text);

/// What stands between commas; empty pieces too.
std::vector<std::string> PiecesOf(std::string_view text);

/// Adds an option that may be given several times, with one value each.
CLI::Option* AddStepOption(CLI::App& command, const std::string& name, const std::string& form,
                           const std::string& help);

/// What was given of such options.
struct GivenStep {
    const CLI::Option* option;
    std::string value;
};

/// In the order of the command line, across all options.
std::vector<GivenStep> StepsInOrder(const CLI::App& command);
