#include "platform/file/NativeFile.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/posix/NativeName.h"

namespace {
/// Largest block asked of the system at once: some take no more than 2 GiB.
constexpr std::size_t LARGEST_BLOCK = std::size_t{1} << 30;

constexpr auto LAST_POSITION = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());

std::wstring LastErrorText()
{
    return FileSystem::SystemErrorText(errno);
}

/// Why a file just opened cannot be read; empty when it can.
std::wstring Objection(int file, std::uint64_t& size)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0) return LastErrorText();
    if (S_ISDIR(status.st_mode)) return FileSystem::SystemErrorText(EISDIR);
    if (!S_ISREG(status.st_mode)) return L"is no regular file";
    size = static_cast<std::uint64_t>(status.st_size);
    return {};
}
} // namespace

NativeFile::Handle NativeFile::OpenToRead(const std::wstring& name, std::uint64_t& size, std::wstring& reason)
{
    // Without O_NONBLOCK the opening of a pipe would wait for a writer.
    const int file = ::open(NativeName(name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    reason = file < 0 ? LastErrorText() : Objection(file, size);
    if (file < 0) return NO_HANDLE;
    if (!reason.empty()) {
        ::close(file);
        return NO_HANDLE;
    }
    // Advice only: reading is as right without it.
    (void)::posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
    return file;
}

NativeFile::Handle NativeFile::OpenToWrite(const std::wstring& name, std::wstring& reason)
{
    // Without O_NONBLOCK the opening of a pipe would wait for a reader.
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int file = ::open(NativeName(name).c_str(), flags, 0666);
    if (file < 0) {
        reason = LastErrorText();
        return NO_HANDLE;
    }
    // From here on a pipe's slow reader is waited for.
    const int status = ::fcntl(file, F_GETFL);
    if (status >= 0 && ::fcntl(file, F_SETFL, status & ~O_NONBLOCK) >= 0) return file;
    reason = LastErrorText();
    ::close(file);
    return NO_HANDLE;
}

std::uint64_t NativeFile::LastPosition()
{
    return LAST_POSITION;
}

std::wstring NativeFile::ReadAt(Handle file, std::uint64_t position, void* bytes, std::size_t count,
                                std::size_t& done)
{
    while (done < count) {
        const std::size_t block = std::min(count - done, LARGEST_BLOCK);
        const ssize_t got = ::pread(static_cast<int>(file), static_cast<char*>(bytes) + done, block,
                                    static_cast<off_t>(position + done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return LastErrorText();
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return {};
}

std::wstring NativeFile::WriteAll(Handle file, const char* bytes, std::size_t count,
                                  const std::uint64_t* offset)
{
    std::size_t done = 0;
    while (done < count) {
        const std::size_t block = std::min(count - done, LARGEST_BLOCK);
        const int number = static_cast<int>(file);
        const ssize_t put = offset ? ::pwrite(number, bytes + done, block, static_cast<off_t>(*offset + done))
                                   : ::write(number, bytes + done, block);
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return LastErrorText();
        if (put == 0) return FileSystem::SystemErrorText(EIO);
        done += static_cast<std::size_t>(put);
    }
    return {};
}

std::wstring NativeFile::Sync(Handle file)
{
    // What is no file on a device (a pipe, a terminal) has nothing to wait for: EINVAL.
    const bool isDone = ::fsync(static_cast<int>(file)) == 0 || errno == EINVAL || errno == EROFS;
    return isDone ? std::wstring() : LastErrorText();
}

std::wstring NativeFile::Close(Handle file)
{
    // After EINTR the descriptor is gone all the same, and the bytes were handed over before.
    return ::close(static_cast<int>(file)) == 0 || errno == EINTR ? std::wstring() : LastErrorText();
}
