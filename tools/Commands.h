#pragma once

#include <array>

namespace CLI {
class App;
}

/// Adds a command to the program's command line. When the command is given, it does its work while the line
/// is parsed and leaves its exit status in `status`.
using AddCommand = void (*)(CLI::App& program, int& status);

void AddInfo(CLI::App& program, int& status);
void AddDump(CLI::App& program, int& status);
void AddConvert(CLI::App& program, int& status);
void AddClip(CLI::App& program, int& status);
void AddTransform(CLI::App& program, int& status);
void AddLayers(CLI::App& program, int& status);
void AddRender(CLI::App& program, int& status);

/// All commands, in the order of the help text.
inline constexpr std::array<AddCommand, 7> COMMANDS = {AddInfo,      AddDump,   AddConvert, AddClip,
                                                       AddTransform, AddLayers, AddRender};
