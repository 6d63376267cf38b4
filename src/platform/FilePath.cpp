#include "platform/FilePath.h"

#include <algorithm>
#include <cstddef>

namespace {
constexpr std::wstring_view SEPARATORS = L"/\\";

bool IsSeparator(wchar_t c)
{
    return c == L'/' || c == L'\\';
}

wchar_t LowerCase(wchar_t c)
{
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

/// 2 when the path begins with a drive ("c:"), else 0.
std::size_t DriveLength(std::wstring_view path)
{
    const bool hasDrive =
        path.size() >= 2 && path[1] == L':' && LowerCase(path[0]) >= L'a' && LowerCase(path[0]) <= L'z';
    return hasDrive ? 2 : 0;
}

/// Where the last component begins.
std::size_t NameStart(std::wstring_view path)
{
    const std::size_t separator = path.find_last_of(SEPARATORS);
    return separator == path.npos ? DriveLength(path) : separator + 1;
}
} // namespace

std::wstring FilePath::FileName(std::wstring_view path)
{
    return std::wstring(path.substr(NameStart(path)));
}

std::wstring FilePath::Folder(std::wstring_view path)
{
    const std::size_t drive = DriveLength(path);
    const std::size_t root = drive < path.size() && IsSeparator(path[drive]) ? drive + 1 : drive;
    std::size_t end = NameStart(path);
    while (end > root && IsSeparator(path[end - 1])) --end;
    return std::wstring(path.substr(0, end));
}

std::wstring FilePath::Extension(std::wstring_view path)
{
    const std::wstring_view name = path.substr(NameStart(path));
    const std::size_t dot = name.rfind(L'.');
    return dot == name.npos ? std::wstring() : std::wstring(name.substr(dot + 1));
}

std::wstring FilePath::Join(std::wstring_view folder, std::wstring_view name)
{
    if (folder.empty() || IsAbsolute(name)) return std::wstring(name);
    std::wstring path(folder);
    const bool isOpen = IsSeparator(path.back()) || DriveLength(path) == path.size();
    if (!isOpen) path += path.find(L'\\') != path.npos && path.find(L'/') == path.npos ? L'\\' : L'/';
    return path += name;
}

bool FilePath::IsAbsolute(std::wstring_view path)
{
    return DriveLength(path) != 0 || (!path.empty() && IsSeparator(path[0]));
}

std::wstring FilePath::WithSlashes(std::wstring_view path)
{
    std::wstring slashed(path);
    std::replace(slashed.begin(), slashed.end(), L'\\', L'/');
    return slashed;
}

bool FilePath::SameText(std::wstring_view a, std::wstring_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return LowerCase(x) == LowerCase(y); });
}
