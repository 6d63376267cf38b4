#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Font.h"

/// A glyph as pixels. Rows from top to bottom.
struct GlyphImage {
    int left = 0; ///< Column of the first pixel, from the glyph's origin.
    int top = 0;  ///< Row of the first pixel, from the base line, positive down.
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage; ///< width * height of them, 255 for a pixel inside.
};

/// A glyph as outlines: closed polygons in ems, y up.
struct GlyphOutline {
    struct Place {
        double x;
        double y;
    };
    std::vector<std::vector<Place>> contours;
};

/// Where a line under or through a text lies, in font units, y up.
struct TextLine {
    int middle;
    int thickness;
};

/// What the system's font engine knows of a face. Not made for several threads, even by different objects.
class GlyphSource {
public:
    /// Sizes up to this are given as images; larger texts are drawn by their outlines.
    static constexpr int MAX_IMAGE_PPEM = 512;

    virtual ~GlyphSource() = default;

    /// Null when the face is no file or cannot be opened.
    static std::unique_ptr<GlyphSource> Open(const FontFace& face);

    /// Hinted advance in whole pixels, as a device that draws level text takes it.
    virtual int Advance(char32_t character, int ppem) = 0;
    /// The image at a size of at most MAX_IMAGE_PPEM, turned counter-clockwise on the screen. Empty for a
    /// blank or when the glyph cannot be drawn.
    virtual GlyphImage Image(char32_t character, int ppem, int tenthsOfDegree) = 0;
    virtual GlyphOutline Outline(char32_t character) = 0;

    TextLine underline{};
    TextLine strikeOut{};
};
