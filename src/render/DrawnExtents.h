#pragma once

#include "model/DXFWriter.h"
#include "platform/Export.h"
#include "support/Extents.h"

#include <unordered_map>

class DXF;
class DXFBlock;
class DXFEntity;
class DXFLayer;

/// The boxes of what is truly drawn where inserts compose and extrusions count: DXFLayer::Extents() and the
/// like take base points as they stand and leave rows, columns and extrusions out. What was found out about a
/// block is kept as long as this lives, so that any drawing takes time in proportion to its size.
class HALYARD_API DrawnExtents : private DXFWriter {
public:
    using Box = GTL::Extents3D<double>;

    /// What is known of a block in its own coordinates.
    struct BlockBox {
        Box box;
        bool isWhole =
            true; ///< false when the block holds itself or nests too deep: there is more than the box
        bool isOpen = false; ///< being measured
    };

    /// Of all visible layers; invalid when they show nothing.
    Box Of(const DXF& document);
    Box Of(const DXFLayer& layer);
    Box Of(const DXFEntity& entity);
    const BlockBox& Of(const DXFBlock& block) { return Measure(block, 0); }

private:
    using DXFWriter::Write;
    void Write(const DXFInsert& insert) override;
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

    const BlockBox& Measure(const DXFBlock& block, int depth);
    void MeasureContents(const DXF& contents);

    std::unordered_map<const DXFBlock*, BlockBox> m_Blocks;
    Box m_Box;
    int m_Depth = 0;
    bool m_IsWhole = true;
};
