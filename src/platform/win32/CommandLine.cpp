#include "platform/CommandLine.h"

#include "platform/Utf8.h"
#include "platform/win32/WindowsApi.h"

#include <shellapi.h>

std::vector<std::string> ProgramArguments(int argc, const char* const* argv)
{
    int count = 0;
    wchar_t** words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (!words) return {argv, argv + argc};
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) arguments.push_back(ToUtf8(words[i]));
    ::LocalFree(words);
    return arguments;
}

std::optional<std::wstring> EnvironmentVariable(const char* name)
{
    const std::wstring wide = FromUtf8(name);
    const DWORD size = ::GetEnvironmentVariableW(wide.c_str(), nullptr, 0);
    if (size == 0) return std::nullopt;
    std::wstring value(size, L'\0');
    // Another thread may have changed it meanwhile: then nothing, or what fits.
    const DWORD length = ::GetEnvironmentVariableW(wide.c_str(), value.data(), size);
    value.resize(length < size ? length : 0);
    return value;
}
