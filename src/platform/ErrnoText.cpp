#include "platform/FileSystem.h"

#include <cerrno>
#include <system_error>

#include "platform/Utf8.h"

namespace {
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
#ifdef EDQUOT
    {EDQUOT, L"no space left on the device"},
#endif
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

std::wstring FileSystem::ErrnoText(int code)
{
    for (const ErrorText& row : ERROR_TEXTS) {
        if (row.code == code) return row.text;
    }
    std::wstring text = FromUtf8(std::generic_category().message(code));
    if (!text.empty() && text[0] >= L'A' && text[0] <= L'Z')
        text[0] = static_cast<wchar_t>(text[0] - L'A' + L'a');
    return text;
}
