#include "platform/FileSystem.h"

#include <optional>
#include <string>

#include "platform/win32/FileHandle.h"
#include "platform/win32/NativeName.h"

namespace {
bool FailWith(DWORD code, std::wstring* reason)
{
    if (reason) *reason = FileSystem::SystemErrorText(static_cast<int>(code));
    return false;
}

/// A handle that asks for no access: whatever is there can be looked at, however others use it.
HANDLE OpenToLook(const std::wstring& name)
{
    return ::CreateFileW(NativeName(name).c_str(), 0, SHARE_ALL, nullptr, OPEN_EXISTING,
                         FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

std::optional<BY_HANDLE_FILE_INFORMATION> Status(const std::wstring& name)
{
    const FileHandle file(OpenToLook(name));
    BY_HANDLE_FILE_INFORMATION status = {};
    if (!file.IsOpen() || ::GetFileType(file.Get()) != FILE_TYPE_DISK) return std::nullopt;
    if (!::GetFileInformationByHandle(file.Get(), &status)) return std::nullopt;
    return status;
}

bool IsFolderStatus(const BY_HANDLE_FILE_INFORMATION& status)
{
    return (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

struct ErrorText {
    DWORD code;
    const wchar_t* text;
};

constexpr ErrorText ERROR_TEXTS[] = {
    {ERROR_FILE_NOT_FOUND, L"no such file"},
    {ERROR_PATH_NOT_FOUND, L"no such file"},
    {ERROR_INVALID_NAME, L"no such file"},
    {ERROR_BAD_PATHNAME, L"no such file"},
    {ERROR_BAD_NETPATH, L"no such file"},
    {ERROR_BAD_NET_NAME, L"no such file"},
    {ERROR_INVALID_DRIVE, L"no such file"},
    {ERROR_DIRECTORY, L"no such folder"},
    {ERROR_ACCESS_DENIED, L"permission denied"},
    {ERROR_SHARING_VIOLATION, L"another program uses it"},
    {ERROR_LOCK_VIOLATION, L"another program uses it"},
    {ERROR_DISK_FULL, L"no space left on the device"},
    {ERROR_HANDLE_DISK_FULL, L"no space left on the device"},
    {ERROR_WRITE_PROTECT, L"the file system is read-only"},
    {ERROR_FILENAME_EXCED_RANGE, L"the file name is too long"},
    {ERROR_TOO_MANY_OPEN_FILES, L"too many open files"},
    {ERROR_FILE_TOO_LARGE, L"the file is too large"},
    {ERROR_IO_DEVICE, L"the device failed"},
    {ERROR_CRC, L"the device failed"},
    {ERROR_READ_FAULT, L"the device failed"},
    {ERROR_WRITE_FAULT, L"the device failed"},
    {ERROR_NOT_READY, L"the device is not ready"},
    {ERROR_PIPE_BUSY, L"no one reads at the other end"},
    {ERROR_NOT_SAME_DEVICE, L"the folders lie on different volumes"},
    {ERROR_NOT_ENOUGH_MEMORY, L"not enough memory"},
    {ERROR_OUTOFMEMORY, L"not enough memory"},
    {ERROR_CANT_RESOLVE_FILENAME, L"too many links"},
    {ERROR_MOD_NOT_FOUND, L"no such library"},
    {ERROR_BAD_EXE_FORMAT, L"is no library of this system"},
};

/// The system's own words, which end in a full stop and a line end.
std::wstring SystemWords(DWORD code)
{
    constexpr DWORD LONGEST = 512;
    constexpr DWORD ENGLISH = 0x0409;
    wchar_t text[LONGEST];
    const DWORD flags =
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    DWORD length = ::FormatMessageW(flags, nullptr, code, ENGLISH, text, LONGEST, nullptr);
    if (length == 0) length = ::FormatMessageW(flags, nullptr, code, 0, text, LONGEST, nullptr);
    std::wstring words(text, length);
    const std::size_t last = words.find_last_not_of(L" .\r\n");
    words.resize(last == words.npos ? 0 : last + 1);
    return words;
}
} // namespace

bool FileSystem::IsRegularFile(const std::wstring& name)
{
    const auto status = Status(name);
    return status && !IsFolderStatus(*status);
}

bool FileSystem::IsFolder(const std::wstring& name)
{
    const auto status = Status(name);
    return status && IsFolderStatus(*status);
}

bool FileSystem::Exists(const std::wstring& name)
{
    const FileHandle file(OpenToLook(name));
    return file.IsOpen();
}

std::optional<std::uint64_t> FileSystem::FileSize(const std::wstring& name)
{
    const auto status = Status(name);
    if (!status || IsFolderStatus(*status)) return std::nullopt;
    return std::uint64_t{status->nFileSizeHigh} << 32 | status->nFileSizeLow;
}

bool FileSystem::SameFile(const std::wstring& a, const std::wstring& b)
{
    // Both stay open for the comparison: an index may be given to another file once its own is closed.
    const FileHandle fileA(OpenToLook(a));
    const FileHandle fileB(OpenToLook(b));
    BY_HANDLE_FILE_INFORMATION statusA = {};
    BY_HANDLE_FILE_INFORMATION statusB = {};
    if (!fileA.IsOpen() || !fileB.IsOpen()) return false;
    if (!::GetFileInformationByHandle(fileA.Get(), &statusA)) return false;
    if (!::GetFileInformationByHandle(fileB.Get(), &statusB)) return false;
    return statusA.dwVolumeSerialNumber == statusB.dwVolumeSerialNumber
           && statusA.nFileIndexHigh == statusB.nFileIndexHigh
           && statusA.nFileIndexLow == statusB.nFileIndexLow;
}

bool FileSystem::Replace(const std::wstring& from, const std::wstring& to, std::wstring* reason)
{
    if (IsFolder(to)) return FailWith(ERROR_ACCESS_DENIED, reason);
    // Without the flag for copies, which would be seen half done, another volume is refused.
    constexpr DWORD FLAGS = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (::MoveFileExW(NativeName(from).c_str(), NativeName(to).c_str(), FLAGS)) return true;
    return FailWith(::GetLastError(), reason);
}

bool FileSystem::Remove(const std::wstring& name, std::wstring* reason)
{
    if (::DeleteFileW(NativeName(name).c_str())) return true;
    return FailWith(::GetLastError(), reason);
}

std::wstring FileSystem::SystemErrorText(int code)
{
    for (const ErrorText& row : ERROR_TEXTS) {
        if (row.code == static_cast<DWORD>(code)) return row.text;
    }
    std::wstring text = SystemWords(static_cast<DWORD>(code));
    if (text.empty()) return L"error " + std::to_wstring(code);
    if (text[0] >= L'A' && text[0] <= L'Z') text[0] = static_cast<wchar_t>(text[0] - L'A' + L'a');
    return text;
}
