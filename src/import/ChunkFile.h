#pragma once

#include "platform/InputFile.h"

#include <cstddef>
#include <span>
#include <vector>

/// A file read forward in small pieces and large ones: small pieces come out of a buffer, large ones go
/// straight to their place. Every call may give less than it was asked for at the end of the file.
class ChunkFile {
public:
    /// The most that Peek promises to have in one piece.
    static constexpr std::size_t MOST_PEEKED = 64;

    [[nodiscard]] bool Open(const std::wstring& name);

    [[nodiscard]] std::size_t Read(void* bytes, std::size_t count);
    /// The bytes that come next, without consuming them: at least `count` of them (MOST_PEEKED at most)
    /// unless the file ends, and as many more as the buffer has. They stay until the next call.
    [[nodiscard]] std::span<const unsigned char> Peek(std::size_t count);
    /// Passes over bytes without reading those that are not in the buffer.
    void Skip(std::size_t count);
    /// Bytes up to the end of the file, as large as it was when it was opened.
    [[nodiscard]] std::uint64_t Left() const;

private:
    std::size_t Buffered() const { return m_End - m_Next; }

    InputFile m_File;
    std::vector<unsigned char> m_Buffer;
    std::size_t m_Next = 0;
    std::size_t m_End = 0;
};
