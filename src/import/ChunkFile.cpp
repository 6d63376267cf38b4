#include "import/ChunkFile.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr std::size_t BUFFER_SIZE = 64 * 1024;
}

bool ChunkFile::Open(const std::wstring& name)
{
    m_Buffer.resize(BUFFER_SIZE);
    m_Next = m_End = 0;
    return m_File.Open(name);
}

std::size_t ChunkFile::Read(void* bytes, std::size_t count)
{
    if (count < MOST_PEEKED) (void)Peek(count);
    const std::size_t buffered = std::min(count, Buffered());
    if (buffered > 0) std::memcpy(bytes, m_Buffer.data() + m_Next, buffered);
    m_Next += buffered;
    if (buffered == count) return count;
    return buffered + m_File.Read(static_cast<unsigned char*>(bytes) + buffered, count - buffered);
}

std::span<const unsigned char> ChunkFile::Peek(std::size_t count)
{
    if (Buffered() < std::min(count, MOST_PEEKED)) {
        std::memmove(m_Buffer.data(), m_Buffer.data() + m_Next, Buffered());
        m_End = Buffered();
        m_Next = 0;
        m_End += m_File.Read(m_Buffer.data() + m_End, m_Buffer.size() - m_End);
    }
    return {m_Buffer.data() + m_Next, Buffered()};
}

void ChunkFile::Skip(std::size_t count)
{
    const std::size_t buffered = std::min(count, Buffered());
    m_Next += buffered;
    // A position that the system cannot hold is past the end, where it is already.
    if (count > buffered) m_File.Seek(m_File.Tell() + (count - buffered));
}

std::uint64_t ChunkFile::Left() const
{
    const std::uint64_t beyondBuffer = m_File.Size() > m_File.Tell() ? m_File.Size() - m_File.Tell() : 0;
    return beyondBuffer + Buffered();
}
