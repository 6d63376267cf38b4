#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

/// The parts of a file name, by its characters alone: no system is asked, nothing has to exist.
/// "/" and "\" both separate components on every system, since drawings carry names of either kind.
class HALYARD_API FilePath {
public:
    /// The last component: what follows the last separator; "c:a.bmp" gives "a.bmp". Empty after a closing
    /// separator.
    [[nodiscard]] static std::wstring FileName(std::wstring_view path);

    /// All before the last component, without its closing separator unless that is a root ("/", "c:\", "c:").
    /// Empty for a bare file name.
    [[nodiscard]] static std::wstring Folder(std::wstring_view path);

    /// What follows the last "." of the last component, as stored; empty when there is none.
    [[nodiscard]] static std::wstring Extension(std::wstring_view path);

    /// `name` in `folder`: one separator between them ("/"; "\" when the folder uses only that). An empty
    /// folder gives the name; an absolute name is returned as it is.
    [[nodiscard]] static std::wstring Join(std::wstring_view folder, std::wstring_view name);

    /// "/..." or "\..." (UNC names "\\server\share" included) or a drive letter with a colon ("c:...").
    [[nodiscard]] static bool IsAbsolute(std::wstring_view path);

    /// The path with every "\" turned into "/".
    [[nodiscard]] static std::wstring WithSlashes(std::wstring_view path);

    /// The two texts equal without regard to the case of A to Z: for extensions.
    [[nodiscard]] static bool SameText(std::wstring_view a, std::wstring_view b);
};
