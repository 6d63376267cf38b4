#include "support/CRCFile.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>
#include <string_view>

namespace {

/// The mode for binary files that stands for one of the C library: "r", "w" or "a", then "+" and "b" or "t"
/// in any order, none twice. Empty for anything else.
std::string BinaryMode(const wchar_t* mode)
{
    const std::wstring_view text(mode ? mode : L"");
    const std::wstring_view rest = text.substr(std::min<std::size_t>(text.size(), 1));
    const auto count = [rest](wchar_t c) {
        return std::count(rest.begin(), rest.end(), c);
    };
    const auto plus = count(L'+');
    const auto letters = count(L'b') + count(L't');
    const bool isKnown = !text.empty() && std::wstring_view(L"rwa").find(text[0]) != std::wstring_view::npos;
    if (!isKnown || plus > 1 || letters > 1 || plus + letters != std::ssize(rest)) return {};
    return std::string(1, static_cast<char>(text[0])) + (plus == 1 ? "b+" : "b");
}

} // namespace

ErrorString CRCFile::Open(const std::wstring& name, const wchar_t* mode)
{
    m_File.Close();
    m_Checksum = CRCChecksum();
    const std::string binary = BinaryMode(mode);
    if (m_File.Open(name, binary.c_str())) return true;

    ErrorString error(Message::ErrorOpeningFile);
    error << name << (binary == "rb" ? Message::ForReading : Message::ForWriting);
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
