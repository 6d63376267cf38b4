#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Kinds of drawing files that the program reads.
enum class FORMAT { DXF, PLOT };
/// Kinds of files with models in space, of which a drawing can be made.
enum class MODEL { IN_3DS, SKETCHUP };

/// What the first bytes of a file show.
struct Recognition {
    std::optional<FORMAT> format;    ///< none: not a drawing that the program reads
    std::wstring complaint;          ///< why not: a clause that follows the file's name
    std::optional<MODEL> model = {}; ///< no drawing, but a model
    bool isUnknown = false;          ///< the bytes are those of no kind of file that is known
};

/// As much of a file's start as recognition looks at, in bytes.
inline constexpr std::size_t RECOGNITION_LENGTH = 4096;

/// By the first bytes alone, whatever the name of the file says.
Recognition Recognize(std::string_view firstBytes);
/// Opens the file, if it can be opened, and looks at its first bytes; where they are those of no known kind,
/// a name that ends in .skp makes it a SketchUp model.
Recognition RecognizeFile(const std::wstring& file);
