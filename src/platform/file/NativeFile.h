#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

/// The few operations on files that every system has in its own words. A reason is one clause in lower case;
/// where one is returned, it is empty for a success.
namespace NativeFile {
using Handle = std::intptr_t;
inline constexpr Handle NO_HANDLE = -1;

/// Opens a regular file and tells its size. NO_HANDLE, and why, for anything else, without waiting.
[[nodiscard]] Handle OpenToRead(const std::wstring& name, std::uint64_t& size, std::wstring& reason);

/// Creates a file or empties the one of that name. NO_HANDLE, and why, when that fails or would wait.
[[nodiscard]] Handle OpenToWrite(const std::wstring& name, std::wstring& reason);

/// Largest position that a file can be read at.
std::uint64_t LastPosition();

/// Reads from `position` and adds to `done`, from 0 on, the bytes that were read; fewer than `count` at the
/// end of the file or on failure.
[[nodiscard]] std::wstring ReadAt(Handle file, std::uint64_t position, void* bytes, std::size_t count,
                                  std::size_t& done);

/// Writes all bytes: at the position where the last write ended, or at `*offset` when that is given.
[[nodiscard]] std::wstring WriteAll(Handle file, const char* bytes, std::size_t count,
                                    const std::uint64_t* offset);

/// Waits until what was written is on the device.
[[nodiscard]] std::wstring Sync(Handle file);

[[nodiscard]] std::wstring Close(Handle file);

/// Opens a stream of the C library with one of its modes for binary files ("rb", "rb+", "wb", "wb+", "ab",
/// "ab+"). Null, and why, for any other mode, and for what is no regular file when it is to be read.
[[nodiscard]] std::FILE* OpenStream(const std::wstring& name, const char* mode, std::wstring& reason);

/// As the C library's fseek and ftell, for files of any size.
[[nodiscard]] bool SeekStream(std::FILE* stream, std::int64_t offset, int origin);
std::int64_t TellStream(std::FILE* stream);
} // namespace NativeFile
