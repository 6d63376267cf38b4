#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Export.h"

/// What the system says about files, by wide name. Nothing here opens a file or waits for one.
/// A name that holds a null character names nothing.
class HALYARD_API FileSystem {
public:
    /// True for a regular file, also through a link; false for folders, pipes, devices and what is not there.
    [[nodiscard]] static bool IsRegularFile(const std::wstring& name);

    [[nodiscard]] static bool IsFolder(const std::wstring& name);

    /// True for anything that is there, folders and devices included.
    [[nodiscard]] static bool Exists(const std::wstring& name);

    /// Size of a regular file in bytes; empty for anything else.
    [[nodiscard]] static std::optional<std::uint64_t> FileSize(const std::wstring& name);

    /// True when both names lead to the same existing file or folder (links, "..", other spellings).
    [[nodiscard]] static bool SameFile(const std::wstring& a, const std::wstring& b);

    /// Renames `from` to `to`, taking the place of a file of that name in one step: at any moment `to` is the
    /// old or the new file, whole. Both must lie on one volume. On failure both are as before and `reason`,
    /// if given, says why.
    [[nodiscard]] static bool Replace(const std::wstring& from, const std::wstring& to,
                                      std::wstring* reason = nullptr);

    /// Removes a file (not a folder). True when it is gone.
    static bool Remove(const std::wstring& name, std::wstring* reason = nullptr);

    /// A system error code (errno, or the Windows error code) as one short clause in lower case without a
    /// full stop, the same on every system for the usual ones: "no such file", "permission denied", "is a
    /// folder".
    [[nodiscard]] static std::wstring SystemErrorText(int code);

    /// The same for an errno of the C library, which is another number than the system's on Windows.
    [[nodiscard]] static std::wstring ErrnoText(int code);
};
