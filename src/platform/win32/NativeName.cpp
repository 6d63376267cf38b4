#include "platform/win32/NativeName.h"

#include <algorithm>

#include "platform/win32/WindowsApi.h"

namespace {
/// Folders are made for names of up to 248 characters, and a relative name counts with the current folder.
constexpr std::size_t SAFE_LENGTH = 240;

std::wstring WithBackslashes(const std::wstring& name)
{
    std::wstring native = name;
    std::replace(native.begin(), native.end(), L'/', L'\\');
    return native;
}

/// "C:\..." or "\\server\share\...", made ready for names of any length.
std::wstring Prefixed(const std::wstring& full)
{
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
    if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC" + full.substr(1);
    return L"\\\\?\\" + full;
}
} // namespace

std::wstring FullNativeName(const std::wstring& name)
{
    const std::wstring native = WithBackslashes(name);
    std::wstring full(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            ::GetFullPathNameW(native.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (length == 0) return native;
        const bool isWhole = length < full.size();
        full.resize(length);
        if (isWhole) return full;
    }
}

std::wstring NativeName(const std::wstring& name)
{
    if (name.empty() || name.find(L'\0') != name.npos) return {};
    if (name.starts_with(L"\\\\?\\")) return name;
    const std::wstring full = FullNativeName(name);
    return full.size() < SAFE_LENGTH ? WithBackslashes(name) : Prefixed(full);
}
