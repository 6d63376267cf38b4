#pragma once

#include "model/DXFWriter.h"
#include "model/EntityPlacement.h"
#include "platform/CDC.h"
#include "render/DrawingOption.h"
#include "render/DrawnExtents.h"
#include "render/DxfPen.h"
#include "support/ErrorString.h"
#include "support/Mapper2D.h"
#include "support/Polyline.h"
#include "support/TextInfo.h"
#include "support/TextRectComp.h"

#include <atomic>
#include <cstdint>
#include <vector>

class DXF;
class DXFBlock;
class DXFLayer;
class DXFLineBase;

/// Draws entities on a device context: one drawer for one pass over a drawing. A view of the drawing, a box
/// in drawing units, is stretched to fill a rectangle of the context, y up, each axis by itself. What lies
/// outside of the view is cut off before anything reaches the context. Coordinates that are no numbers draw
/// nothing; nothing else goes wrong, whatever the entities hold.
///
/// docs/drawing.md tells the rules of each kind.
class HALYARD_API WinDXFDrawer : public DXFWriter {
public:
    /// What inserts could not show.
    struct Report {
        std::uint64_t missingBlocks = 0; ///< inserts whose document has no such block
        std::uint64_t recursive = 0;     ///< inserts left out: a block within itself, or nested too deep
        bool limitReached = false;       ///< more is left out: inserts stand for too much
    };

    /// Inserts within inserts beyond this depth are left out; one outside of blocks has depth 1.
    static constexpr int MAX_DEPTH = 64;
    /// Entities that a pass draws through inserts, nested inserts and cells of arrays counted, unless set
    /// otherwise.
    static constexpr std::uint64_t DEFAULT_LIMIT = 10'000'000;
    /// Most chords of an arc. They lie within 2e-9 radii of it.
    static constexpr int MAX_ARC_STEPS = 1 << 16;

    WinDXFDrawer() = default;
    explicit WinDXFDrawer(const DrawingOption& option) : m_Option(option) {}
    /// Selects the pen out of the context, which has to be there still.
    ~WinDXFDrawer() override;
    WinDXFDrawer(const WinDXFDrawer&) = delete;
    WinDXFDrawer& operator=(const WinDXFDrawer&) = delete;

    /// The context is not owned and has to outlive the drawer; its map mode becomes MM_ISOTROPIC with one
    /// pixel a unit, y up from the bottom of the rectangle. Fails for a rectangle without width or height;
    /// the drawer is not to be used then.
    ErrorString Init(CDC* dc, const GTL::Extents2D<double>& extents, const CRect& rect);

    /// The most entities to draw through inserts from now on.
    void SetLimit(std::uint64_t entities) { m_VisitsLeft = entities; }

    /// True device pixels to drawing units, z = 0, and back.
    GTL::Point3D<double> DeviceToLogic(const CPoint& pixel) const;
    CPoint LogicToDevice(const GTL::Point3D<double>& point) const;
    const GTL::Mapper2D<double, int>& GetMapper() const { return m_PixelMapper; }

    /// All visible layers in drawing order, or one whatever its box and visibility, while the flag reads
    /// true. Unlike DXF::Draw and DXFLayer::Draw these tell the drawer which layer an insert is on, and the
    /// first looks at the boxes that composed inserts have.
    void Draw(const DXF& document, const std::atomic<bool>& keepGoing);
    void Draw(const DXFLayer& layer, const std::atomic<bool>& keepGoing);
    const Report& GetReport() const { return m_Report; }

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

private:
    using P2 = GTL::Point2D<double>;
    using P3 = GTL::Point3D<double>;
    using Window = GTL::Extents2D<double>;
    using Map = GTL::Transformation<P3>;
    /// What entities of an insert take where they have nothing of their own.
    struct Look {
        unsigned long color = 0xFFFFFF;
        int style = 0;
        float width = 0;

        bool operator==(const Look&) const = default;
    };

    bool InitMapper(const Window& extents);
    bool InitDC(CDC* dc, const CRect& rect);

    bool CreatePen(const DXFLineBase& entity);
    bool CreatePen(int style, int width, unsigned long color);
    void DeselectPen();
    bool CreateFontW(const TextInfo& info);
    unsigned long Shown(unsigned long color);
    unsigned long SwapIfTooClose(unsigned long color) const;
    CPoint ToPixel(const P2& point) const;

    void DrawLine(const P3& from, const P3& to);
    void DrawVisibleLine(P2 from, P2 to);
    void DrawArc(P2 center, double radius, double start, double end);
    void AppendArc(const P2& center, double radius, double start, double end);
    void AppendVertices(const P2& center, double radius, double first, double turn, int count);
    void AppendArcByPixel(const P2& center, double radius, double start, double end);
    void DrawVisibleArc(const P2& center, double radius, double start, double sweep);
    void DrawPath(const GTL::Polyline<P3>& path);
    void AppendBulge(const P3& from, const P3& to, bool joined);
    void DrawClosed(const DXFPolygon& polygon);
    void DrawPieces(const GTL::Polyline<P3>& path, const DXFLineBase& entity);
    void Flush();
    void DrawTriangle(const P3& a, const P3& b, const P3& c);
    void FillPiece(const std::vector<P3>& corners);
    void DrawTextLine(const std::wstring& line, const TextInfo& info, const P2& reference,
                      const TextRectComp::Rect& box);
    void DrawOutline(const std::vector<P3>& outline, unsigned long color);
    bool MissesView(const GTL::Extents3D<double>& box) const;

    template <class Entity>
    void DrawTransformed(const Entity& entity);
    void DrawPlaced(const DXFEntity& entity);
    void DrawPlainInsert(const DXFInsert& insert, const DXFBlock& block);
    void DrawComposedInsert(const DXFInsert& insert, const DXFBlock& block);
    void DrawCell(const DXFBlock& block, const Map& map, const DXFInsert& insert);
    void DrawLayer(const DXFLayer& layer, const DXFInsert& insert);
    bool Enter(const DXFBlock& block);
    bool GoesOn();

    CDC m_Nowhere; ///< takes what is drawn without a context
    CDC* m_DC = &m_Nowhere;
    DrawingOption m_Option;
    DxfPen m_Pen;
    bool m_HasPen = false;
    CPen* m_PenBefore = nullptr;
    int m_PenStyle = -1;
    int m_PenWidth = -1;
    unsigned long m_PenColor = 0;
    Look m_PenLook;             ///< of the entity that the pen was made for
    bool m_IsPenOfLook = false; ///< the pen is still that one
    CFont m_Font;
    bool m_HasFont = false;
    TextInfo m_FontInfo;
    Window m_View;
    GTL::Mapper2D<double, int> m_PixelMapper;
    CRect m_Rect;
    GTL::Mapper2D<double, double> m_Mapper;
    Window m_Visible; ///< what is cut to
    Window m_Around;  ///< the visible and as much on each side: lines are cut to it where cuts must not show
    Map m_Transformation;
    bool m_IsTransforming = false;

    std::vector<CPoint> m_Points; ///< of the path being put together
    std::vector<GTL::Polyline<P3>> m_Pieces;
    TextRectComp m_TextRect;
    EntityPlacement m_Placement;
    DrawnExtents m_Boxes;
    Report m_Report;
    std::uint64_t m_VisitsLeft = DEFAULT_LIMIT;
    std::vector<const DXFBlock*> m_Path; ///< blocks being drawn
    const DXFLayer* m_Layer = nullptr;   ///< being drawn; null when not known
    Look m_Look;
    const std::atomic<bool>* m_KeepGoing = nullptr;
};
