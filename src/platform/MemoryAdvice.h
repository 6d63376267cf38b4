#pragma once

#include <cstddef>

/// Asks the system to hold memory that is about to be filled in large pages, as far as it has whole ones,
/// which makes the first touch of many megabytes several times faster. Where the system knows none this does
/// nothing.
void PreferLargePages(void* memory, std::size_t size);
