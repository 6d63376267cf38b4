#pragma once

#include <string>

#include "platform/Utf8.h"

/// The bytes by which the system knows a file. Empty, which names nothing, for a name with a null character:
/// the system would take the part before it for the whole.
inline std::string NativeName(const std::wstring& name)
{
    return name.find(L'\0') == name.npos ? ToUtf8(name) : std::string();
}
