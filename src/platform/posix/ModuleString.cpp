#include "platform/ModuleString.h"

std::optional<std::wstring> ModuleString(unsigned)
{
    return std::nullopt;
}
