#include "platform/RawFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/posix/NativeName.h"

namespace {
struct Mode {
    const char* text;
    int flags;
    bool isRead;
};

constexpr Mode MODES[] = {
    {"rb", O_RDONLY, true},
    {"rb+", O_RDWR, true},
    {"wb", O_WRONLY | O_CREAT | O_TRUNC, false},
    {"wb+", O_RDWR | O_CREAT | O_TRUNC, true},
    {"ab", O_WRONLY | O_CREAT | O_APPEND, false},
    {"ab+", O_RDWR | O_CREAT | O_APPEND, true},
};

const Mode* FindMode(const char* text)
{
    for (const Mode& mode : MODES) {
        if (text && std::strcmp(mode.text, text) == 0) return &mode;
    }
    return nullptr;
}

std::FILE* Stream(void* file)
{
    return static_cast<std::FILE*>(file);
}

/// Why a file just opened cannot be used; empty when it can.
std::wstring Objection(int file, const Mode& mode)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0) return FileSystem::SystemErrorText(errno);
    if (S_ISDIR(status.st_mode)) return FileSystem::SystemErrorText(EISDIR);
    if (mode.isRead && !S_ISREG(status.st_mode)) return L"is no regular file";
    return {};
}
} // namespace

RawFile::~RawFile()
{
    Close();
}

RawFile::RawFile(RawFile&& other) noexcept
    : m_File(std::exchange(other.m_File, nullptr)), m_Reason(std::exchange(other.m_Reason, {}))
{
}

RawFile& RawFile::operator=(RawFile&& other) noexcept
{
    if (this == &other) return *this;
    Close();
    m_File = std::exchange(other.m_File, nullptr);
    m_Reason = std::exchange(other.m_Reason, {});
    return *this;
}

bool RawFile::Open(const std::wstring& name, const char* mode)
{
    Close();
    m_Reason = L"the mode is unknown";
    const Mode* known = FindMode(mode);
    if (!known) return false;

    const int flags = known->flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int file = ::open(NativeName(name).c_str(), flags, 0666);
    m_Reason = file < 0 ? FileSystem::SystemErrorText(errno) : Objection(file, *known);
    if (m_Reason.empty()) {
        const int status = ::fcntl(file, F_GETFL);
        (void)::fcntl(file, F_SETFL, status & ~O_NONBLOCK);
        m_File = ::fdopen(file, mode);
        if (!m_File) m_Reason = FileSystem::SystemErrorText(errno);
    }
    if (!m_File && file >= 0) ::close(file);
    return IsOpen();
}

std::size_t RawFile::Read(void* bytes, std::size_t count)
{
    return m_File && count != 0 ? std::fread(bytes, 1, count, Stream(m_File)) : 0;
}

std::size_t RawFile::Write(const void* bytes, std::size_t count)
{
    return m_File && count != 0 ? std::fwrite(bytes, 1, count, Stream(m_File)) : 0;
}

bool RawFile::Seek(std::int64_t offset, ORIGIN origin)
{
    constexpr int ORIGINS[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    return m_File && ::fseeko(Stream(m_File), static_cast<off_t>(offset), ORIGINS[origin]) == 0;
}

std::int64_t RawFile::Tell() const
{
    return m_File ? static_cast<std::int64_t>(::ftello(Stream(m_File))) : -1;
}

bool RawFile::AtEnd() const
{
    return m_File && std::feof(Stream(m_File)) != 0;
}

bool RawFile::Failed() const
{
    return m_File && std::ferror(Stream(m_File)) != 0;
}

bool RawFile::Flush()
{
    return m_File && std::fflush(Stream(m_File)) == 0;
}

bool RawFile::Close()
{
    if (!m_File) return false;
    const bool hasFailed = Failed();
    return std::fclose(Stream(std::exchange(m_File, nullptr))) == 0 && !hasFailed;
}
