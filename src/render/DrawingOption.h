#pragma once

#include <cstdint>
#include <optional>

/// How a drawer departs from the plain rules, so that drawings of other programs look as they are meant. All
/// off when new.
struct DrawingOption {
    /// Inserts show their blocks as the published DXF reference has it: the base point lands on the insertion
    /// point, rows and columns are repeated, nested inserts compose and the outer one goes on after them,
    /// circles and arcs stay true under mirrors and uneven scales, invisible layers of a block (and of the
    /// document, by name) show nothing, and what a block has on its layer "0" looks as the insert's layer
    /// does (see DXFLayer::COLOR_OF_INSERT). Otherwise a nested insert forgets the outer one.
    bool composeInserts = false;
    /// Circles and arcs with an extrusion other than (0, 0, 1) are taken to the world.
    bool extrusions = false;
    /// Polygons are drawn as closed polylines, bulges and closing segment included; otherwise straight from
    /// vertex to vertex.
    bool polygonBulges = false;
    /// What crosses the border of the view is drawn as far as it is visible; otherwise as the clippers have
    /// it, which leave out some stretches.
    bool visibleParts = false;
    /// Arcs keep within an eighth of a pixel of their circle and are drawn however small; otherwise within
    /// 0.05 drawing units, and from a radius of 0.05 on.
    bool arcsByPixel = false;
    /// Gaps of dashed thin lines do not cover what lies below, and unknown line styles are solid; otherwise
    /// the context's background mode stays as it is until the first text makes it transparent.
    bool openGaps = false;
    /// Lines of the width that layers have which state none are one pixel wide; otherwise that is a width in
    /// drawing units like any other.
    bool thinDefaultWidth = false;
    /// Pixels that no line is wider than; 0 for no limit. (Many programs mean the width of lines on paper.)
    int widestLine = 0;
    /// Colour word 0x00BBGGRR of what is drawn on: colours too close to it are swapped for black or white.
    std::optional<unsigned long> background = std::nullopt;

    bool operator==(const DrawingOption&) const = default;

    /// All of them, lines at most 6 pixels wide.
    static DrawingOption All(unsigned long background)
    {
        constexpr int WIDEST_LINE = 6;
        return {true, true, true, true, true, true, true, WIDEST_LINE, background};
    }
};
