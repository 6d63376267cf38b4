#pragma once

#include <string>

/// What the stand-in for the vendor's library counts, got from its function GetSceneState.
struct SceneState {
    int sessions = 0; ///< started and not ended
    int models = 0;   ///< created and not released
    long calls = 0;
};

/// Files of the stand-in: the mark by which SketchUp files start, then lines of words.
///
///     list NAME              what follows goes into this list; "model" (the start) is that of the model
///     itself face COLOUR X Y Z ...  COLOUR is rrggbb or - for none hole X Y Z ...         of the last face
///     normal X Y Z           of the last face; otherwise 0 0 1
///     group NAME COLOUR MATRIX, instance NAME - MATRIX      16 numbers, column by column
///     axes X Y Z             the origin of the model's axes
///     fail FUNCTION RESULT   every call of the function gives this result
///     throw FUNCTION         every call of the function throws a number
///     lose FUNCTION, mute FUNCTION   the function that gives a list leaves out its last item, its count
namespace Scene {

inline std::string File(const std::string& lines)
{
    std::string mark = "\xFF\xFE\xFF\x0E";
    for (const char c : std::string("SketchUp Model")) mark += {c, '\0'};
    return mark + "\n" + lines;
}

/// A unit square at height z.
inline std::string Square(const std::string& color, const std::string& z)
{
    return "face " + color + " 0 0 " + z + " 1 0 " + z + " 1 1 " + z + " 0 1 " + z + "\n";
}

inline const std::string HERE = " 1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1\n";

} // namespace Scene
