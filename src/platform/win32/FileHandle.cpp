#include "platform/win32/FileHandle.h"

#include "platform/FileSystem.h"
#include "platform/win32/NativeName.h"

std::wstring LastErrorText()
{
    return FileSystem::SystemErrorText(static_cast<int>(::GetLastError()));
}

namespace {
/// Where the system says no more than that the way does not lead there: a part of it that is too long, or a
/// file in the place of a folder.
std::wstring WhyNotOpened(const std::wstring& native)
{
    constexpr std::size_t LONGEST_COMPONENT = 255;
    const std::wstring said = LastErrorText();
    std::size_t from = 0;
    for (std::size_t i = 0; i <= native.size(); ++i) {
        if (i < native.size() && native[i] != L'\\') continue;
        if (i - from > LONGEST_COMPONENT) return L"the file name is too long";
        const DWORD attributes =
            i < native.size() ? ::GetFileAttributesW(native.substr(0, i).c_str()) : INVALID_FILE_ATTRIBUTES;
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            return L"no such folder";
        from = i + 1;
    }
    return said;
}
} // namespace

HANDLE OpenRegularFile(const std::wstring& name, DWORD access, DWORD creation, std::wstring& reason)
{
    const std::wstring native = NativeName(name);
    // The system calls a folder that is opened like a file a matter of permission.
    const DWORD attributes = ::GetFileAttributesW(native.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        reason = L"is a folder";
        return INVALID_HANDLE_VALUE;
    }
    FileHandle file(
        ::CreateFileW(native.c_str(), access, SHARE_ALL, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        reason = WhyNotOpened(native);
        return INVALID_HANDLE_VALUE;
    }
    if ((access & GENERIC_READ) != 0 && ::GetFileType(file.Get()) != FILE_TYPE_DISK) {
        reason = L"is no regular file";
        return INVALID_HANDLE_VALUE;
    }
    return file.Take();
}
