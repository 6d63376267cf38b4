#pragma once

#include <string>

/// The name by which the system's functions take a file of any length: absolute, with backslashes and the
/// prefix that lifts the limit of 260 characters, where that is needed; the name itself otherwise. Empty,
/// which names nothing, for a name with a null character: the system would take the part before it for the
/// whole.
std::wstring NativeName(const std::wstring& name);

/// The absolute name, with backslashes and without the prefix.
std::wstring FullNativeName(const std::wstring& name);
