#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Export.h"

/// What a program's `main` was called with, the program's own name first: the bytes as they came, UTF-8 on
/// Windows, where the narrow arguments have lost what the user's code page lacks.
[[nodiscard]] HALYARD_API std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

/// A variable of the process's environment; none when it is not set.
[[nodiscard]] HALYARD_API std::optional<std::wstring> EnvironmentVariable(const char* name);
