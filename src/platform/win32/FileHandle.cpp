#include "platform/win32/FileHandle.h"

#include "platform/FileSystem.h"
#include "platform/win32/NativeName.h"

std::wstring LastErrorText()
{
    return FileSystem::SystemErrorText(static_cast<int>(::GetLastError()));
}

HANDLE OpenRegularFile(const std::wstring& name, DWORD access, DWORD creation, std::wstring& reason)
{
    const std::wstring native = NativeName(name);
    // The system calls a folder that is opened like a file a matter of permission.
    const DWORD attributes = ::GetFileAttributesW(native.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        reason = L"is a folder";
        return INVALID_HANDLE_VALUE;
    }
    FileHandle file(::CreateFileW(native.c_str(), access, SHARE_ALL, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        reason = LastErrorText();
        return INVALID_HANDLE_VALUE;
    }
    if ((access & GENERIC_READ) != 0 && ::GetFileType(file.Get()) != FILE_TYPE_DISK) {
        reason = L"is no regular file";
        return INVALID_HANDLE_VALUE;
    }
    return file.Take();
}
