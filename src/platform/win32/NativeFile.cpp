#include "platform/file/NativeFile.h"

#include <algorithm>
#include <limits>

#include "platform/win32/FileHandle.h"
#include "platform/win32/NativeName.h"

namespace {
/// The system takes counts of 32 bits.
constexpr std::size_t LARGEST_BLOCK = std::size_t{1} << 30;

HANDLE HandleOf(NativeFile::Handle file)
{
    return reinterpret_cast<HANDLE>(file);
}

OVERLAPPED At(std::uint64_t position)
{
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(position);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}
} // namespace

NativeFile::Handle NativeFile::OpenToRead(const std::wstring& name, std::uint64_t& size, std::wstring& reason)
{
    FileHandle file(OpenRegularFile(name, GENERIC_READ, OPEN_EXISTING, reason));
    LARGE_INTEGER length = {};
    if (!file.IsOpen()) return NO_HANDLE;
    if (!::GetFileSizeEx(file.Get(), &length)) {
        reason = LastErrorText();
        return NO_HANDLE;
    }
    size = static_cast<std::uint64_t>(length.QuadPart);
    return reinterpret_cast<Handle>(file.Take());
}

NativeFile::Handle NativeFile::OpenToWrite(const std::wstring& name, std::wstring& reason)
{
    // Emptied afterwards: the system refuses to make anew what is hidden.
    FileHandle file(OpenRegularFile(name, GENERIC_WRITE, OPEN_ALWAYS, reason));
    if (!file.IsOpen()) return NO_HANDLE;
    if (::GetFileType(file.Get()) == FILE_TYPE_DISK && !::SetEndOfFile(file.Get())) {
        reason = LastErrorText();
        return NO_HANDLE;
    }
    return reinterpret_cast<Handle>(file.Take());
}

std::uint64_t NativeFile::LastPosition()
{
    return static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
}

std::wstring NativeFile::ReadAt(Handle file, std::uint64_t position, void* bytes, std::size_t count,
                                std::size_t& done)
{
    while (done < count) {
        OVERLAPPED place = At(position + done);
        const auto block = static_cast<DWORD>(std::min(count - done, LARGEST_BLOCK));
        DWORD got = 0;
        if (!::ReadFile(HandleOf(file), static_cast<char*>(bytes) + done, block, &got, &place))
            return ::GetLastError() == ERROR_HANDLE_EOF ? std::wstring() : LastErrorText();
        if (got == 0) break;
        done += got;
    }
    return {};
}

std::wstring NativeFile::WriteAll(Handle file, const char* bytes, std::size_t count,
                                  const std::uint64_t* offset)
{
    // What is no file would write at its end whatever the offset.
    if (offset && ::GetFileType(HandleOf(file)) != FILE_TYPE_DISK) return L"cannot be written out of order";
    LARGE_INTEGER end = {};
    if (offset && !::SetFilePointerEx(HandleOf(file), {}, &end, FILE_CURRENT)) return LastErrorText();
    std::size_t done = 0;
    std::wstring reason;
    while (done < count && reason.empty()) {
        OVERLAPPED place = At(offset ? *offset + done : 0);
        const auto block = static_cast<DWORD>(std::min(count - done, LARGEST_BLOCK));
        DWORD put = 0;
        if (!::WriteFile(HandleOf(file), bytes + done, block, &put, offset ? &place : nullptr))
            reason = LastErrorText();
        else if (put == 0)
            reason = L"the device failed";
        done += put;
    }
    // Writing at an offset moves the position too.
    if (offset && !::SetFilePointerEx(HandleOf(file), end, nullptr, FILE_BEGIN)) return LastErrorText();
    return reason;
}

std::wstring NativeFile::Sync(Handle file)
{
    if (::GetFileType(HandleOf(file)) != FILE_TYPE_DISK) return {};
    return ::FlushFileBuffers(HandleOf(file)) ? std::wstring() : LastErrorText();
}

std::wstring NativeFile::Close(Handle file)
{
    return ::CloseHandle(HandleOf(file)) ? std::wstring() : LastErrorText();
}
