#include "platform/RawFile.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "platform/file/NativeFile.h"

namespace {
std::FILE* Stream(void* file)
{
    return static_cast<std::FILE*>(file);
}
} // namespace

RawFile::~RawFile()
{
    Close();
}

RawFile::RawFile(RawFile&& other) noexcept
    : m_File(std::exchange(other.m_File, nullptr)),
      m_Reason(std::exchange(other.m_Reason, {})),
      m_IsReadOnly(other.m_IsReadOnly),
      m_IsMisused(other.m_IsMisused)
{
}

RawFile& RawFile::operator=(RawFile&& other) noexcept
{
    if (this == &other) return *this;
    Close();
    m_File = std::exchange(other.m_File, nullptr);
    m_Reason = std::exchange(other.m_Reason, {});
    m_IsReadOnly = other.m_IsReadOnly;
    m_IsMisused = other.m_IsMisused;
    return *this;
}

bool RawFile::Open(const std::wstring& name, const char* mode)
{
    Close();
    m_Reason.clear();
    m_File = NativeFile::OpenStream(name, mode ? mode : "", m_Reason);
    m_IsReadOnly = IsOpen() && std::strcmp(mode, "rb") == 0;
    m_IsMisused = false;
    return IsOpen();
}

std::size_t RawFile::Read(void* bytes, std::size_t count)
{
    return m_File && count != 0 ? std::fread(bytes, 1, count, Stream(m_File)) : 0;
}

std::size_t RawFile::Write(const void* bytes, std::size_t count)
{
    // Not every C library finds this out before the file is closed.
    m_IsMisused = m_IsMisused || (m_IsReadOnly && count != 0);
    return m_File && !m_IsReadOnly && count != 0 ? std::fwrite(bytes, 1, count, Stream(m_File)) : 0;
}

bool RawFile::Seek(std::int64_t offset, ORIGIN origin)
{
    constexpr int ORIGINS[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    return m_File && NativeFile::SeekStream(Stream(m_File), offset, ORIGINS[origin]);
}

std::int64_t RawFile::Tell() const
{
    return m_File ? NativeFile::TellStream(Stream(m_File)) : -1;
}

bool RawFile::AtEnd() const
{
    return m_File && std::feof(Stream(m_File)) != 0;
}

bool RawFile::Failed() const
{
    return m_File && (m_IsMisused || std::ferror(Stream(m_File)) != 0);
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
