#include "platform/CommandLine.h"

#include <cstdlib>

#include "platform/Utf8.h"

std::vector<std::string> ProgramArguments(int argc, const char* const* argv)
{
    return {argv, argv + argc};
}

std::optional<std::wstring> EnvironmentVariable(const char* name)
{
    const char* value = std::getenv(name);
    if (!value) return std::nullopt;
    return FromUtf8(value);
}
