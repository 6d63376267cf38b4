#pragma once

#include "plot/PlotStream.h"
#include "support/DXFColor.h"
#include "support/Point.h"

#include <array>
#include <bit>
#include <concepts>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The layout of plot files, one structure a record: its Visit names the fields in the order of their bytes,
/// for reading, writing and measuring alike. docs/formats/plot.md has the same in prose.
namespace PlotRecords {

static_assert(std::endian::native == std::endian::little, "values are written as they lie in memory");

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;

constexpr std::int32_t VERSION = 9;
/// From here on images have their attributes, handles and z.
constexpr std::int32_t FIRST_WITH_IMAGE_ATTRIBUTES = 4;
/// From here on colour words are device colours, before they are indices of the colour table.
constexpr std::int32_t FIRST_WITH_DEVICE_COLORS = 5;
/// Of a point in the file: x, y, z and eight bytes without meaning.
constexpr std::size_t POINT_SIZE = 32;
constexpr std::size_t PAIR_SIZE = 16;

/// How a record holds what is of no fixed size: read ones own it, written ones look at the entity's.
struct Owned {
    using Text = std::wstring;
    using Points = std::vector<P3>;
    using Pairs = std::vector<P2>;
};
struct Viewed {
    using Text = std::wstring_view;
    using Points = std::span<const P3>;
    using Pairs = std::span<const P2>;
};

/// A device colour 0x00BBGGRR.
struct Color {
    unsigned long device = 0;
};

struct Header {
    std::int32_t kind = 0;
    std::uint32_t end = 0; ///< offset behind the record
    static void Visit(auto& archive, auto& r) { archive(r.kind, r.end); }
};

template <class Mode>
struct Layer {
    typename Mode::Text name;
    bool visible = false;
    Color color;
    static void Visit(auto& archive, auto& r) { archive(r.name, r.visible, r.color); }
};

template <class Mode>
struct Block {
    typename Mode::Text name;
    typename Mode::Text layer;
    P3 base;
    std::int32_t flags = 0;
    typename Mode::Text xref;
    static void Visit(auto& archive, auto& r) { archive(r.name, r.layer, r.base, r.flags, r.xref); }
};

struct BlockEnd {
    static void Visit(auto&, auto&) {}
};

struct LineData {
    Color color;
    std::int32_t style = 0;
    float width = 0;
    static void Visit(auto& archive, auto& r) { archive(r.color, r.style, r.width); }
};

/// Solids and 3D faces.
struct Corners {
    Color color;
    std::array<P3, 4> corners;
    static void Visit(auto& archive, auto& r)
    {
        archive(r.color);
        for (auto& corner : r.corners) archive(corner);
    }
};

struct Point {
    Color color;
    P3 position;
    static void Visit(auto& archive, auto& r) { archive(r.color, r.position); }
};

struct Line {
    LineData line;
    P3 start;
    P3 end;
    static void Visit(auto& archive, auto& r) { archive(r.line, r.start, r.end); }
};

template <class Mode>
struct Polyline {
    LineData line;
    double elevation = 0;
    bool lightweight = false;
    typename Mode::Points vertices;
    static void Visit(auto& archive, auto& r) { archive(r.line, r.elevation, r.lightweight, r.vertices); }
};

template <class Mode>
struct Polygon {
    LineData line;
    typename Mode::Points vertices;
    static void Visit(auto& archive, auto& r) { archive(r.line, r.vertices); }
};

struct Circle {
    LineData line;
    double radius = 0;
    P3 center;
    P3 extrusion;
    static void Visit(auto& archive, auto& r) { archive(r.line, r.radius, r.center, r.extrusion); }
};

struct Arc {
    LineData line;
    double radius = 0;
    P3 center;
    double startAngle = 0;
    double endAngle = 0;
    P3 extrusion;
    static void Visit(auto& archive, auto& r)
    {
        archive(r.line, r.radius, r.center, r.startAngle, r.endAngle, r.extrusion);
    }
};

template <class Mode>
struct Text {
    Color color;
    typename Mode::Text font;
    std::int32_t justification = 0;
    double rotation = 0; ///< degrees
    float size = 0;
    std::int32_t style = 0;
    P3 position;
    typename Mode::Text text;
    static void Visit(auto& archive, auto& r)
    {
        archive(r.color, r.font, r.justification, r.rotation, r.size, r.style, r.position, r.text);
    }
};

template <class Mode>
struct MText {
    Text<Mode> body;
    float rectWidth = 0;
    bool multiLine = false;
    static void Visit(auto& archive, auto& r) { archive(r.body, r.rectWidth, r.multiLine); }
};

template <class Mode>
struct Insert {
    typename Mode::Text block;
    P3 point;
    P3 scale;
    P3 extrusion;
    double rotation = 0; ///< degrees
    std::int32_t rows = 0;
    double rowSpacing = 0;
    std::int32_t columns = 0;
    double columnSpacing = 0;
    static void Visit(auto& archive, auto& r)
    {
        archive(r.block, r.point, r.scale, r.extrusion, r.rotation, r.rows, r.rowSpacing, r.columns,
                r.columnSpacing);
    }
};

template <class Mode>
struct Image {
    Color color;
    std::int32_t clipType = 0;
    std::int32_t brightness = 50;
    std::int32_t contrast = 50;
    std::int32_t fade = 0;
    typename Mode::Text file;
    typename Mode::Text layer;
    typename Mode::Text definitionHandle;
    typename Mode::Text reactorHandle;
    std::array<double, 3> u{};
    std::array<double, 3> v{};
    typename Mode::Pairs boundary;
    double x = 0; ///< of the insertion point
    double y = 0;
    double width = 0; ///< pixels
    double height = 0;
    double z = 0;
    static void Visit(auto& archive, auto& r)
    {
        const bool attributed = archive.Version() >= FIRST_WITH_IMAGE_ATTRIBUTES;
        archive(r.color, r.clipType);
        if (attributed) archive(r.brightness, r.contrast, r.fade);
        archive(r.file);
        if (attributed) archive(r.layer, r.definitionHandle, r.reactorHandle);
        for (auto& component : r.u) archive(component);
        for (auto& component : r.v) archive(component);
        archive(r.boundary, r.x, r.y, r.width, r.height);
        if (attributed) archive(r.z);
    }
};

template <class T>
concept Number = std::same_as<T, std::int32_t> || std::same_as<T, std::uint32_t> || std::same_as<
    T, float> || std::same_as<T, double>;

} // namespace PlotRecords
