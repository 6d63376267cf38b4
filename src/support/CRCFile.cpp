#include "support/CRCFile.h"

#include <cstdio>
#include <limits>

namespace {

/// Modes are of ASCII characters; any other character gives a mode that no file is opened with.
std::string NarrowMode(const wchar_t* mode)
{
    std::string narrow;
    for (; mode && *mode; ++mode) narrow += *mode < 0x80 ? static_cast<char>(*mode) : '?';
    return narrow;
}

} // namespace

ErrorString CRCFile::Open(const std::wstring& name, const wchar_t* mode)
{
    m_File.Close();
    m_Checksum = CRCChecksum();
    const std::string narrow = NarrowMode(mode);
    if (m_File.Open(name, narrow.c_str())) return true;

    ErrorString error(Message::ErrorOpeningFile);
    error << name << (narrow == "rb" ? Message::ForReading : Message::ForWriting);
    if (!m_File.Reason().empty()) error << L" (" << m_File.Reason() << L")";
    return error;
}

std::size_t CRCFile::Read(void* buffer, std::size_t size, std::size_t count)
{
    if (size == 0 || count > std::numeric_limits<std::size_t>::max() / size) return 0;
    const std::size_t bytes = m_File.Read(buffer, size * count);
    m_Checksum.Update(buffer, bytes);
    return bytes / size;
}

std::size_t CRCFile::Write(const void* buffer, std::size_t size, std::size_t count)
{
    if (size == 0 || count > std::numeric_limits<std::size_t>::max() / size) return 0;
    const std::size_t bytes = m_File.Write(buffer, size * count);
    m_Checksum.Update(buffer, bytes);
    return bytes / size;
}

bool CRCFile::Seek(int offset, int origin)
{
    switch (origin) {
    case SEEK_SET:
        return m_File.Seek(offset, RawFile::FROM_START);
    case SEEK_CUR:
        return m_File.Seek(offset, RawFile::FROM_POSITION);
    case SEEK_END:
        return m_File.Seek(offset, RawFile::FROM_END);
    default:
        return false;
    }
}

unsigned int CRCFile::Tell() const
{
    const std::int64_t position = m_File.Tell();
    constexpr std::int64_t MAX = std::numeric_limits<unsigned int>::max();
    if (position < 0) return 0;
    return static_cast<unsigned int>(position < MAX ? position : MAX);
}

bool CRCFile::Close()
{
    return m_File.Close();
}
