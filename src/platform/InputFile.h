#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/Export.h"

/// Block input from a regular file.
///
/// The file may be changed by others meanwhile: one that shrinks simply ends earlier, one that grows is read
/// to its new end. It is never mapped into memory.
class HALYARD_API InputFile {
public:
    InputFile() = default;
    ~InputFile();
    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&& other) noexcept;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Opens a regular file, closing the one that was open. Folders, pipes and devices are refused without
    /// waiting.
    [[nodiscard]] bool Open(const std::wstring& name);

    [[nodiscard]] bool IsOpen() const { return m_Handle != NO_HANDLE; }

    /// Reads `count` bytes at the position and moves it. Fewer only at the end of the file or on failure.
    [[nodiscard]] std::size_t Read(void* bytes, std::size_t count);

    /// Sets the position for the next Read, in bytes from the start. A position past the end is allowed:
    /// reading there gives nothing. False when no file is open or the position does not fit the system's (63
    /// bits).
    bool Seek(std::uint64_t position);

    /// Position of the next Read, in bytes from the start.
    [[nodiscard]] std::uint64_t Tell() const { return m_Position; }

    /// Size in bytes when the file was opened; 0 when none is.
    [[nodiscard]] std::uint64_t Size() const { return m_Size; }

    /// True after an Open or a Read that failed; reaching the end is no failure.
    [[nodiscard]] bool Failed() const { return m_Failed; }

    /// Why it failed: one clause in lower case ("no such file", "is a folder"); empty when nothing did.
    [[nodiscard]] const std::wstring& Reason() const { return m_Reason; }

    void Close();

private:
    static constexpr std::intptr_t NO_HANDLE = -1;

    std::intptr_t m_Handle = NO_HANDLE;
    std::uint64_t m_Position = 0;
    std::uint64_t m_Size = 0;
    std::wstring m_Reason;
    bool m_Failed = false;
};
