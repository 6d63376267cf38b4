#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "platform/Export.h"

/// Output to a file through one large buffer.
///
/// The first failure (opening, a full disk) sticks: what is written later is dropped, Failed() stays true
/// until the next Open, and Close() returns false. So a writer may write to the end and ask once.
class HALYARD_API OutputFile {
public:
    /// Size of the buffer in bytes.
    static constexpr std::size_t BUFFER_SIZE = std::size_t{1} << 20;

    OutputFile() = default;
    /// Closes the file; ask Close() first to learn whether all was written.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates the file or empties the one of that name, closing the one that was open. Never waits for a
    /// pipe's reader: a pipe without one is refused.
    [[nodiscard]] bool Open(const std::wstring& name);

    [[nodiscard]] bool IsOpen() const { return m_Handle != NO_HANDLE; }

    /// Appends bytes.
    void Write(const void* bytes, std::size_t count)
    {
        if (count > Room()) return WriteLarge(bytes, count);
        if (count == 0) return;
        std::memcpy(m_Next, bytes, count);
        m_Next += count;
    }

    /// Room for at least `count` bytes inside the buffer, to be formatted into and then taken over by Commit.
    /// Valid until the next call of any other member. Never null, also after a failure and when no file is
    /// open.
    [[nodiscard]] char* Reserve(std::size_t count)
    {
        if (count > Room()) MakeRoom(count);
        return m_Next;
    }

    /// Appends the first `count` bytes of what Reserve gave; no more than were reserved.
    void Commit(std::size_t count) { m_Next += count; }

    /// Bytes written since the opening, those still in the buffer included.
    [[nodiscard]] std::uint64_t Tell() const
    {
        return m_Flushed + static_cast<std::uint64_t>(m_Next - m_Buffer.get());
    }

    /// Overwrites `count` bytes that were written before, `offset` bytes from the start; the end stays where
    /// it is. False when the range was not yet written, or on failure (a pipe cannot go back).
    [[nodiscard]] bool PatchAt(std::uint64_t offset, const void* bytes, std::size_t count);

    /// Hands the buffer to the system. False after a failure.
    bool Flush();

    /// Flushes and waits until the bytes are on the device, so that they survive a loss of power.
    [[nodiscard]] bool Sync();

    /// Flushes and closes. True when every byte since the opening was written. Closing again repeats the
    /// answer.
    bool Close();

    [[nodiscard]] bool Failed() const { return m_Failed; }

    /// Why the first failure happened: one clause in lower case; empty when nothing failed.
    [[nodiscard]] const std::wstring& Reason() const { return m_Reason; }

private:
    static constexpr std::intptr_t NO_HANDLE = -1;

    std::size_t Room() const { return static_cast<std::size_t>(m_End - m_Next); }
    void WriteLarge(const void* bytes, std::size_t count);
    void MakeRoom(std::size_t count);
    void Forget();
    bool WriteOut(const char* bytes, std::size_t count);
    bool Fail(const std::wstring& reason);

    std::unique_ptr<char[]> m_Buffer;
    char* m_Next = nullptr;
    char* m_End = nullptr;
    std::uint64_t m_Flushed = 0;
    std::intptr_t m_Handle = NO_HANDLE;
    bool m_Failed = false;
    std::wstring m_Reason;
};
