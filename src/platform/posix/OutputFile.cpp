#include "platform/OutputFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/posix/NativeName.h"

namespace {
constexpr std::size_t LARGEST_BLOCK = std::size_t{1} << 30;

/// Writes all bytes, at the end of the file when `offset` is null. Returns 0 or the error.
int WriteAll(int file, const char* bytes, std::size_t count, const std::uint64_t* offset)
{
    std::size_t done = 0;
    while (done < count) {
        const std::size_t block = std::min(count - done, LARGEST_BLOCK);
        const ssize_t put = offset ? ::pwrite(file, bytes + done, block, static_cast<off_t>(*offset + done))
                                   : ::write(file, bytes + done, block);
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return errno;
        if (put == 0) return EIO;
        done += static_cast<std::size_t>(put);
    }
    return 0;
}
} // namespace

OutputFile::~OutputFile()
{
    Close();
}

bool OutputFile::Open(const std::wstring& name)
{
    Close();
    Forget();
    // Without O_NONBLOCK the opening of a pipe would wait for a reader.
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int file = ::open(NativeName(name).c_str(), flags, 0666);
    if (file < 0) return Fail(FileSystem::SystemErrorText(errno));
    m_Handle = file;
    // From here on a pipe's slow reader is waited for.
    const int status = ::fcntl(file, F_GETFL);
    if (status < 0 || ::fcntl(file, F_SETFL, status & ~O_NONBLOCK) < 0)
        return Fail(FileSystem::SystemErrorText(errno));
    return true;
}

bool OutputFile::PatchAt(std::uint64_t offset, const void* bytes, std::size_t count)
{
    if (m_Failed || !IsOpen() || offset > Tell() || count > Tell() - offset) return false;
    const char* from = static_cast<const char*>(bytes);
    if (offset < m_Flushed) {
        const auto inFile = static_cast<std::size_t>(std::min<std::uint64_t>(count, m_Flushed - offset));
        const int error = WriteAll(static_cast<int>(m_Handle), from, inFile, &offset);
        if (error != 0) return Fail(FileSystem::SystemErrorText(error));
        from += inFile;
        count -= inFile;
        offset += inFile;
    }
    if (count != 0) std::memcpy(m_Buffer.get() + (offset - m_Flushed), from, count);
    return true;
}

bool OutputFile::Flush()
{
    const auto count = static_cast<std::size_t>(m_Next - m_Buffer.get());
    m_Next = m_Buffer.get();
    return WriteOut(m_Buffer.get(), count);
}

bool OutputFile::Sync()
{
    if (!Flush() || !IsOpen()) return false;
    // What is no file on a device (a pipe, a terminal) has nothing to wait for: EINVAL.
    if (::fsync(static_cast<int>(m_Handle)) != 0 && errno != EINVAL && errno != EROFS)
        return Fail(FileSystem::SystemErrorText(errno));
    return true;
}

bool OutputFile::Close()
{
    if (!IsOpen()) return !m_Failed;
    Flush();
    // After EINTR the descriptor is gone all the same, and the bytes were handed over before.
    if (::close(static_cast<int>(m_Handle)) != 0 && errno != EINTR) Fail(FileSystem::SystemErrorText(errno));
    m_Handle = NO_HANDLE;
    m_Buffer.reset();
    m_Next = m_End = nullptr;
    return !m_Failed;
}

void OutputFile::WriteLarge(const void* bytes, std::size_t count)
{
    Flush();
    if (count >= BUFFER_SIZE || !IsOpen()) {
        WriteOut(static_cast<const char*>(bytes), count);
        return;
    }
    MakeRoom(count);
    std::memcpy(m_Next, bytes, count);
    m_Next += count;
}

void OutputFile::MakeRoom(std::size_t count)
{
    Flush();
    if (count <= Room()) return;
    const std::size_t size = std::max(count, BUFFER_SIZE);
    m_Buffer.reset(new char[size]);
    m_Next = m_Buffer.get();
    m_End = m_Next + size;
}

void OutputFile::Forget()
{
    m_Buffer.reset();
    m_Next = m_End = nullptr;
    m_Flushed = 0;
    m_Failed = false;
    m_Reason.clear();
}

bool OutputFile::WriteOut(const char* bytes, std::size_t count)
{
    if (count == 0) return !m_Failed;
    m_Flushed += count;
    if (m_Failed) return false;
    if (!IsOpen()) return Fail(L"no file is open");
    const int error = WriteAll(static_cast<int>(m_Handle), bytes, count, nullptr);
    return error == 0 || Fail(FileSystem::SystemErrorText(error));
}

bool OutputFile::Fail(const std::wstring& reason)
{
    if (!m_Failed) m_Reason = reason;
    m_Failed = true;
    return false;
}
