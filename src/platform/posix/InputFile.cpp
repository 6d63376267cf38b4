#include "platform/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/posix/NativeName.h"

namespace {
/// Largest block asked of the system at once: some take no more than 2 GiB.
constexpr std::size_t LARGEST_BLOCK = std::size_t{1} << 30;

constexpr auto LAST_POSITION = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
} // namespace

InputFile::~InputFile()
{
    Close();
}

InputFile::InputFile(InputFile&& other) noexcept
{
    *this = std::move(other);
}

InputFile& InputFile::operator=(InputFile&& other) noexcept
{
    if (this == &other) return *this;
    Close();
    m_Handle = std::exchange(other.m_Handle, NO_HANDLE);
    m_Position = std::exchange(other.m_Position, 0);
    m_Size = std::exchange(other.m_Size, 0);
    m_Reason = std::exchange(other.m_Reason, {});
    m_Failed = std::exchange(other.m_Failed, false);
    return *this;
}

bool InputFile::Open(const std::wstring& name)
{
    Close();
    // Without O_NONBLOCK the opening of a pipe would wait for a writer.
    const int file = ::open(NativeName(name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) return Fail(FileSystem::SystemErrorText(errno));
    m_Handle = file;

    struct stat status = {};
    if (::fstat(file, &status) != 0) return Fail(FileSystem::SystemErrorText(errno));
    if (S_ISDIR(status.st_mode)) return Fail(FileSystem::SystemErrorText(EISDIR));
    if (!S_ISREG(status.st_mode)) return Fail(L"is no regular file");
    m_Size = static_cast<std::uint64_t>(status.st_size);
    // Advice only: reading is as right without it.
    (void)::posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
    return true;
}

std::size_t InputFile::Read(void* bytes, std::size_t count)
{
    if (!IsOpen() || m_Failed) return 0;
    std::size_t done = 0;
    while (done < count) {
        const std::size_t block = std::min(count - done, LARGEST_BLOCK);
        const ssize_t got = ::pread(static_cast<int>(m_Handle), static_cast<char*>(bytes) + done, block,
                                    static_cast<off_t>(m_Position));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            m_Failed = true;
            m_Reason = FileSystem::SystemErrorText(errno);
        }
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
        m_Position += static_cast<std::uint64_t>(got);
    }
    return done;
}

bool InputFile::Seek(std::uint64_t position)
{
    if (!IsOpen() || position > LAST_POSITION) return false;
    m_Position = position;
    return true;
}

void InputFile::Close()
{
    if (IsOpen()) ::close(static_cast<int>(m_Handle));
    m_Handle = NO_HANDLE;
    m_Position = 0;
    m_Size = 0;
    m_Failed = false;
    m_Reason.clear();
}

bool InputFile::Fail(const std::wstring& reason)
{
    Close();
    m_Failed = true;
    m_Reason = reason;
    return false;
}
