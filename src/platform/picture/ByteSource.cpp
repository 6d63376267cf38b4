#include "platform/picture/ByteSource.h"

#include <algorithm>
#include <cstring>

std::size_t MemorySource::ReadAt(std::uint64_t position, void* bytes, std::size_t count)
{
    if (position >= m_Bytes.size()) return 0;
    const auto start = static_cast<std::size_t>(position);
    count = std::min(count, m_Bytes.size() - start);
    if (count != 0) std::memcpy(bytes, m_Bytes.data() + start, count);
    return count;
}

std::size_t FileSource::ReadAt(std::uint64_t position, void* bytes, std::size_t count)
{
    return m_File.Seek(position) ? m_File.Read(bytes, count) : 0;
}

ByteReader::ByteReader(ByteSource& source)
    : m_Source(source),
      m_Buffer(std::make_unique<std::uint8_t[]>(BUFFER_SIZE)),
      m_Next(m_Buffer.get()),
      m_End(m_Buffer.get())
{
}

std::uint16_t ByteReader::U16()
{
    const unsigned low = U8();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(U8()) << 8);
}

std::uint32_t ByteReader::U32()
{
    const std::uint32_t low = U16();
    return low | static_cast<std::uint32_t>(U16()) << 16;
}

std::size_t ByteReader::Read(void* bytes, std::size_t count)
{
    auto* to = static_cast<std::uint8_t*>(bytes);
    std::size_t done = 0;
    while (done < count) {
        if (m_Next == m_End && !Refill()) break;
        const std::size_t block = std::min(count - done, static_cast<std::size_t>(m_End - m_Next));
        std::memcpy(to + done, m_Next, block);
        m_Next += block;
        done += block;
    }
    return done;
}

void ByteReader::Seek(std::uint64_t position)
{
    m_Next = m_End = m_Buffer.get();
    m_Position = position;
}

std::uint64_t ByteReader::Left() const
{
    return m_Source.Size() - std::min(m_Source.Size(), Tell());
}

bool ByteReader::Refill()
{
    const std::size_t got = m_Source.ReadAt(m_Position, m_Buffer.get(), BUFFER_SIZE);
    m_Next = m_Buffer.get();
    m_End = m_Next + got;
    m_Position += got;
    m_HasEnded = m_HasEnded || got == 0;
    return got != 0;
}
