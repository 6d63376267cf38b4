#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/InputFile.h"

/// Bytes of a picture file, wherever they lie.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Copies up to `count` bytes from `position`; fewer only at the end or on failure.
    virtual std::size_t ReadAt(std::uint64_t position, void* bytes, std::size_t count) = 0;

    virtual std::uint64_t Size() const = 0;
};

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::span<const std::uint8_t> bytes) : m_Bytes(bytes) {}

    std::size_t ReadAt(std::uint64_t position, void* bytes, std::size_t count) override;
    std::uint64_t Size() const override { return m_Bytes.size(); }

private:
    std::span<const std::uint8_t> m_Bytes;
};

class FileSource final : public ByteSource {
public:
    /// The file is open and outlives the source.
    explicit FileSource(InputFile& file) : m_File(file) {}

    std::size_t ReadAt(std::uint64_t position, void* bytes, std::size_t count) override;
    std::uint64_t Size() const override { return m_File.Size(); }

private:
    InputFile& m_File;
};

/// Reads a source from front to back through a buffer. Past the end every byte is 0 and HasEnded() is true.
/// Numbers are little-endian.
class ByteReader {
public:
    explicit ByteReader(ByteSource& source);

    std::uint8_t U8()
    {
        if (m_Next == m_End && !Refill()) return 0;
        return *m_Next++;
    }
    std::uint16_t U16();
    std::uint32_t U32();
    std::int32_t S32() { return static_cast<std::int32_t>(U32()); }

    /// Copies up to `count` bytes and returns how many; HasEnded() when they are fewer.
    std::size_t Read(void* bytes, std::size_t count);

    void Seek(std::uint64_t position);
    std::uint64_t Tell() const { return m_Position - static_cast<std::uint64_t>(m_End - m_Next); }

    /// Bytes between the position and the end.
    std::uint64_t Left() const;

    /// True once more was asked for than there was.
    bool HasEnded() const { return m_HasEnded; }

private:
    static constexpr std::size_t BUFFER_SIZE = 1 << 16;

    bool Refill();

    ByteSource& m_Source;
    std::unique_ptr<std::uint8_t[]> m_Buffer;
    const std::uint8_t* m_Next;
    const std::uint8_t* m_End;
    std::uint64_t m_Position = 0; ///< In the source, of m_End.
    bool m_HasEnded = false;
};
