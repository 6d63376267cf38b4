#pragma once

#include "model/DXFEntity.h"
#include "model/DXFWriter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class DXFLineBase;
class TextEntity;

/// Makes an entity's image under an affine map, in the kind that can hold it.
///
/// Points, lines, solids, faces, texts and images are copied and transformed. Circles and arcs are taken from
/// their extrusion to the world first. Where their plane ends parallel to XY and keeps its angles they stay
/// circles and arcs of extrusion (0, 0, 1), and a map that mirrors exchanges the ends of an arc; otherwise
/// they become a closed polygon or an open polyline that ends where the arc does. Bulges of polylines are
/// kept (negated by a map that mirrors) or give way to vertices likewise. Style, width and colour stay.
/// A text that is mirrored covers the same area and stays readable: it is justified from its other end or
/// side. Inserts have no image here.
class HALYARD_API EntityPlacement : private DXFWriter {
public:
    using Map = GTL::Transformation<GTL::Point3D<double>>;

    /// Vertices that stand for an arc lie on it; the chords between them stay within this part of its radius
    /// (after the larger scale), and within this part of its length where that is shorter.
    static constexpr double CHORD_TOLERANCE = 1e-4;
    /// How far the axes of a plane may differ in length, or lean towards each other or out of the plane XY,
    /// relative to their length, before the plane counts as distorted: above rounding, below what a file
    /// means.
    static constexpr double SIMILARITY_TOLERANCE = 1e-9;

    /// The image. Null for an insert, and when it would take more than room points.
    std::unique_ptr<DXFEntity> operator()(const DXFEntity& entity, const Map& map, std::uint64_t room);
    /// The points of the last image, which is what it takes beyond the fixed part of its kind: vertices,
    /// corners of an image's boundary, and one for every CHARACTERS_PER_POINT characters of a text. 0 without
    /// an image.
    std::uint64_t Points() const { return m_Points; }
    /// True when the last call made nothing because room was too small.
    bool LackedRoom() const { return m_LackedRoom; }

    static constexpr std::uint64_t CHARACTERS_PER_POINT = 8;

    /// Vertices without bulges: in place of each arc stand chords as above. A closed chain is joined from its
    /// last vertex to its first. The number of vertices can be asked for before they are made.
    static std::vector<GTL::Point3D<double>> Chorded(const std::vector<GTL::Point3D<double>>& vertices,
                                                     bool closed);
    static std::size_t ChordedSize(const std::vector<GTL::Point3D<double>>& vertices, bool closed);
    /// Segments with a bulge; the last vertex of an open chain begins none.
    static std::size_t NumArcs(const std::vector<GTL::Point3D<double>>& vertices, bool closed);

private:
    using DXFWriter::Write;
    void Write(const DXF3dFace& face) override;
    void Write(const DXFImage& image) override;
    void Write(const DXFMText& text) override;
    void Write(const DXFText& text) override;
    void Write(const DXFArc& arc) override;
    void Write(const DXFCircle& circle) override;
    void Write(const DXFPolygon& polygon) override;
    void Write(const DXFPolyline& polyline) override;
    void Write(const DXFSolid& solid) override;
    void Write(const DXFPoint& point) override;
    void Write(const DXFLine& line) override;

    template <class Kind>
    void Transformed(const Kind& entity, std::uint64_t points);
    template <class Kind>
    void PlacePolyline(const Kind& source, bool closed);
    void PlaceText(const TextEntity& text);
    bool TakeRoom(std::uint64_t points);

    Map m_Map;
    std::uint64_t m_Room = 0;
    std::uint64_t m_Points = 0;
    bool m_LackedRoom = false;
    std::unique_ptr<DXFEntity> m_Image;
};
