#include "SafeOutput.h"

#include "platform/FileSystem.h"
#include "platform/Utf8.h"

#include <filesystem>
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
    std::error_code notThere;
    std::error_code broken;
    fs::path target = PathOf(m_Target);
    if (fs::is_symlink(target, notThere)) target = fs::weakly_canonical(target, broken);
    if (broken) return L"is a link that leads nowhere";
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
