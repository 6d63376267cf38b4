#pragma once

#include <string>

#include "platform/win32/WindowsApi.h"

/// A handle of the system's, closed at the end of this object's life.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(HANDLE handle) : m_Handle(handle) {}
    ~FileHandle()
    {
        if (IsOpen()) ::CloseHandle(m_Handle);
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    bool IsOpen() const { return m_Handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_Handle; }
    /// Hands the handle over.
    HANDLE Take()
    {
        HANDLE taken = m_Handle;
        m_Handle = INVALID_HANDLE_VALUE;
        return taken;
    }

private:
    HANDLE m_Handle = INVALID_HANDLE_VALUE;
};

/// What others may do meanwhile with a file that is read, as under POSIX: anything.
inline constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens a regular file for reading. An invalid handle, and why, for folders, devices, pipes and what is not
/// there.
HANDLE OpenRegularFile(const std::wstring& name, DWORD access, DWORD creation, std::wstring& reason);

/// Why the last call of the system failed.
std::wstring LastErrorText();
