#pragma once

#include <optional>
#include <string>

/// A text of this module's string table, by its number. None where it has no such text, or the system knows
/// no string tables.
std::optional<std::wstring> ModuleString(unsigned number);
