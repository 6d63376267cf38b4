#pragma once

#include "support/CRCFile.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

/// Between the records of a plot file and a checksummed file: gathers what is written, and has read ahead
/// what is to be read, so that the checksum and the system see large blocks.

/// Called at every block and look; when it returns false the work is to stop.
using PlotBlockNotice = std::function<bool()>;

/// Output through one buffer. The first failure sticks and what is written later is dropped; ask once at the
/// end.
class PlotOutput {
public:
    static constexpr std::size_t BLOCK = std::size_t{1} << 18;

    /// The file outlives this object.
    PlotOutput(CRCFile& file, PlotBlockNotice notice);

    /// What is written next stands at Next, and there is room up to End. After writing there in place, tell
    /// by SetNext.
    char* Next() const { return m_Next; }
    char* End() const { return m_End; }
    void SetNext(char* next) { m_Next = next; }
    /// Appends bytes for which there is no room before End, given where the writing in place has come to;
    /// returns the new Next. End stays.
    char* Overflow(char* next, const void* bytes, std::size_t count);
    /// Appends bytes.
    void Append(const void* bytes, std::size_t count) { m_Next = Overflow(m_Next, bytes, count); }

    /// Offset of the next byte from the start of the file.
    std::uint64_t Tell() const { return m_Flushed + static_cast<std::uint64_t>(m_Next - m_Buffer.get()); }
    void Flush();
    bool Failed() const { return m_Failed; }
    /// Why the first failure happened: one clause in lower case.
    const std::wstring& Reason() const { return m_Reason; }
    void Fail(const std::wstring& reason);
    /// Asks the notice, besides at every block.
    void Look()
    {
        if (!m_Notice()) m_Stopped = true;
    }
    /// The notice asked to stop.
    bool IsStopped() const { return m_Stopped; }

private:
    void WriteOut(const void* bytes, std::size_t count);

    CRCFile& m_File;
    PlotBlockNotice m_Notice;
    const std::unique_ptr<char[]> m_Buffer;
    char* m_Next;
    char* const m_End;
    std::uint64_t m_Flushed = 0;
    bool m_Failed = false;
    bool m_Stopped = false;
    std::wstring m_Reason;
};

/// Input through one buffer, which knows how many bytes are left. Taking more than that fails, and a failure
/// sticks.
class PlotInput {
public:
    static constexpr std::size_t BLOCK = std::size_t{1} << 18;

    /// Offsets are of 32 bits: of a larger file only so much is read.
    PlotInput(CRCFile& file, PlotBlockNotice notice);

    /// Copies bytes of a fixed small size, at most BLOCK. False, and nothing is copied, when they are not
    /// there.
    bool Take(void* bytes, std::size_t count)
    {
        if (count > InBuffer() && !Fill(count)) return false;
        std::memcpy(bytes, m_Next, count);
        m_Next += count;
        return true;
    }
    /// A run of whole items of a size that are at hand, at least one, at most so many; they are taken. Null
    /// when there is none.
    const char* TakeRun(std::size_t itemSize, std::size_t atMost, std::size_t& items);

    /// Bytes not taken yet, by the file's size at its opening; 0 after a failure.
    std::uint64_t Left() const { return m_Unread + InBuffer(); }
    /// Offset of the next byte from the start of the file.
    std::uint64_t Tell() const { return m_Size - Left(); }
    std::uint64_t Size() const { return m_Size; }
    /// Makes everything that follows fail.
    void Fail();
    bool Failed() const { return m_Failed; }
    bool IsStopped() const { return m_Stopped; }

private:
    std::size_t InBuffer() const { return static_cast<std::size_t>(m_End - m_Next); }
    bool Fill(std::size_t count);

    CRCFile& m_File;
    PlotBlockNotice m_Notice;
    std::unique_ptr<char[]> m_Buffer;
    const char* m_Next = nullptr;
    const char* m_End = nullptr;
    std::uint64_t m_Size = 0;
    std::uint64_t m_Unread = 0; ///< bytes of the file that are not in the buffer yet
    bool m_Failed = false;
    bool m_Stopped = false;
};
