#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/Export.h"

/// A file of the C library by wide name, for callers that read, write and seek in one file.
class HALYARD_API RawFile {
public:
    enum ORIGIN { FROM_START, FROM_POSITION, FROM_END };

    RawFile() = default;
    ~RawFile();
    RawFile(RawFile&& other) noexcept;
    RawFile& operator=(RawFile&& other) noexcept;
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    /// Opens with a mode of the C library: "rb" (read), "rb+" (read and write), "wb" and "wb+" (made new or
    /// emptied; "+" reads too), "ab", "ab+" (append). Closes the file that was open. False for any other mode
    /// and for what is no regular file when it is to be read; never waits for a pipe.
    [[nodiscard]] bool Open(const std::wstring& name, const char* mode);

    [[nodiscard]] bool IsOpen() const { return m_File != nullptr; }

    /// Bytes read; fewer than `count` at the end or on failure.
    [[nodiscard]] std::size_t Read(void* bytes, std::size_t count);

    /// Bytes written; fewer than `count` on failure. Between reading and writing stands a Seek, as in the C
    /// library.
    [[nodiscard]] std::size_t Write(const void* bytes, std::size_t count);

    [[nodiscard]] bool Seek(std::int64_t offset, ORIGIN origin);

    /// Position in bytes from the start; -1 when no file is open.
    [[nodiscard]] std::int64_t Tell() const;

    /// True when a read met the end of the file.
    [[nodiscard]] bool AtEnd() const;

    /// True after a read or write that failed.
    [[nodiscard]] bool Failed() const;

    bool Flush();

    /// True when everything written has reached the system; false also when no file was open.
    bool Close();

    /// Why the last Open failed: one clause in lower case; empty when it did not.
    [[nodiscard]] const std::wstring& Reason() const { return m_Reason; }

private:
    void* m_File = nullptr;
    std::wstring m_Reason;
    bool m_IsReadOnly = false;
    bool m_IsMisused = false; ///< It was to write what is read only.
};
