#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What one device made of one scene: pixels 0x00RRGGBB, rows from top to bottom, or plain numbers in one
/// row.
struct Scene {
    /// How two devices may differ (parity_compare says how much).
    enum class Rule : std::uint32_t {
        Equal,      ///< not at all
        WidePens,   ///< by a pixel along the border of wide lines
        GreyText,   ///< by the shades of edges of text
        TurnedText, ///< by that, and by places of single glyphs
    };

    std::string name;
    Rule rule = Rule::Equal;
    bool isPicture = true; ///< else numbers
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint32_t> values;
};

/// A file of scenes. The words of a computer with the least byte first; both systems are such.
class SceneFile {
public:
    static bool Write(const std::string& name, const std::vector<Scene>& scenes);
    static bool Read(const std::string& name, std::vector<Scene>& scenes);
};
