#include "platform/FileSystem.h"

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/NativeName.h"

namespace {
std::optional<struct stat> Status(const std::wstring& name)
{
    struct stat status = {};
    if (::stat(NativeName(name).c_str(), &status) != 0) return std::nullopt;
    return status;
}

bool FailWith(int code, std::wstring* reason)
{
    if (reason) *reason = FileSystem::SystemErrorText(code);
    return false;
}
} // namespace

bool FileSystem::IsRegularFile(const std::wstring& name)
{
    const auto status = Status(name);
    return status && S_ISREG(status->st_mode);
}

bool FileSystem::IsFolder(const std::wstring& name)
{
    const auto status = Status(name);
    return status && S_ISDIR(status->st_mode);
}

bool FileSystem::Exists(const std::wstring& name)
{
    return Status(name).has_value();
}

std::optional<std::uint64_t> FileSystem::FileSize(const std::wstring& name)
{
    const auto status = Status(name);
    if (!status || !S_ISREG(status->st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(status->st_size);
}

bool FileSystem::SameFile(const std::wstring& a, const std::wstring& b)
{
    const auto statusA = Status(a);
    const auto statusB = Status(b);
    return statusA && statusB && statusA->st_dev == statusB->st_dev && statusA->st_ino == statusB->st_ino;
}

bool FileSystem::Replace(const std::wstring& from, const std::wstring& to, std::wstring* reason)
{
    if (std::rename(NativeName(from).c_str(), NativeName(to).c_str()) != 0) return FailWith(errno, reason);
    return true;
}

bool FileSystem::Remove(const std::wstring& name, std::wstring* reason)
{
    if (::unlink(NativeName(name).c_str()) != 0) return FailWith(errno, reason);
    return true;
}

std::wstring FileSystem::SystemErrorText(int code)
{
    return ErrnoText(code);
}
