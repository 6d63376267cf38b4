#include "platform/FileSystem.h"

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>
#include <system_error>

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

struct ErrorText {
    int code;
    const wchar_t* text;
};

constexpr ErrorText ERROR_TEXTS[] = {
    {ENOENT, L"no such file"},
    {ENOTDIR, L"no such folder"},
    {EACCES, L"permission denied"},
    {EPERM, L"permission denied"},
    {EISDIR, L"is a folder"},
    {ENOSPC, L"no space left on the device"},
    {EDQUOT, L"no space left on the device"},
    {EROFS, L"the file system is read-only"},
    {ENAMETOOLONG, L"the file name is too long"},
    {EMFILE, L"too many open files"},
    {ENFILE, L"too many open files"},
    {EFBIG, L"the file is too large"},
    {EIO, L"the device failed"},
    {ENXIO, L"no one reads at the other end"},
    {EXDEV, L"the folders lie on different volumes"},
    {ENOMEM, L"not enough memory"},
    {ELOOP, L"too many links"},
};
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
    for (const ErrorText& row : ERROR_TEXTS) {
        if (row.code == code) return row.text;
    }
    std::wstring text = FromUtf8(std::generic_category().message(code));
    if (!text.empty() && text[0] >= L'A' && text[0] <= L'Z')
        text[0] = static_cast<wchar_t>(text[0] - L'A' + L'a');
    return text;
}
