#include "SafeOutput.h"

#include "platform/FileSystem.h"
#include "platform/Utf8.h"

#include <filesystem>
#include <optional>
#include <random>

namespace fs = std::filesystem;

namespace {

fs::path PathOf(const std::wstring& name)
{
    const std::string bytes = ToUtf8(name);
    return fs::path(std::u8string(bytes.begin(), bytes.end()));
}

std::wstring NameOf(const fs::path& path)
{
    const std::u8string bytes = path.u8string();
    return FromUtf8(std::string(bytes.begin(), bytes.end()));
}

std::string RandomDigits()
{
    constexpr char DIGITS[] = "0123456789abcdef";
    constexpr int NUM_DIGITS = 16;
    std::random_device random;
    std::string text;
    for (int i = 0; i < NUM_DIGITS; ++i) text += DIGITS[random() & 0xF];
    return text;
}

/// The file that links lead to, whether it is there or not; none for links that lead around.
std::optional<fs::path> Followed(fs::path path)
{
    constexpr int MOST_LINKS = 40;
    std::error_code error;
    for (int i = 0; i < MOST_LINKS; ++i) {
        if (!fs::is_symlink(path, error)) return path;
        const fs::path to = fs::read_symlink(path, error);
        if (error) return std::nullopt;
        path = path.parent_path() / to;
    }
    return std::nullopt;
}

bool IsWriteProtected(const fs::path& path)
{
    constexpr fs::perms WRITE = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return !error && (status.permissions() & WRITE) == fs::perms::none;
}

} // namespace

SafeOutput::~SafeOutput()
{
    if (!m_Temporary.empty() && FileSystem::Exists(m_Temporary)) FileSystem::Remove(m_Temporary);
}

std::optional<std::wstring> SafeOutput::Prepare()
{
    const std::optional<fs::path> followed = Followed(PathOf(m_Target));
    if (!followed) return L"is a link that leads nowhere";
    const fs::path& target = *followed;
    m_Target = NameOf(target);
    if (FileSystem::IsFolder(m_Target)) return L"is a folder";
    if (FileSystem::Exists(m_Target) && !FileSystem::IsRegularFile(m_Target)) return L"is no regular file";
    if (FileSystem::Exists(m_Target) && IsWriteProtected(target)) return L"is write-protected";

    const fs::path folder = target.parent_path();
    if (!folder.empty() && !FileSystem::IsFolder(NameOf(folder)))
        return L"cannot be written: there is no folder " + NameOf(folder);
    m_Temporary = NameOf(folder / PathOf(L".halyard-" + FromUtf8(RandomDigits()) + m_Suffix));
    return std::nullopt;
}

std::optional<std::wstring> SafeOutput::Commit()
{
    std::error_code ignored;
    const fs::file_status before = fs::status(PathOf(m_Target), ignored);
    // A file system that knows no permissions is no reason to lose the work.
    if (fs::is_regular_file(before)) fs::permissions(PathOf(m_Temporary), before.permissions(), ignored);
    std::wstring reason;
    if (!FileSystem::Replace(m_Temporary, m_Target, &reason)) return L"cannot be replaced: " + reason;
    m_Temporary.clear();
    return std::nullopt;
}
