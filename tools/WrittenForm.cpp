#include "WrittenForm.h"

#include "FontPrefix.h"
#include "model/DXF3dFace.h"
#include "model/DXFArc.h"
#include "model/DXFCircle.h"
#include "model/DXFImage.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFMText.h"
#include "model/DXFPoint.h"
#include "model/DXFPolygon.h"
#include "model/DXFSolid.h"
#include "model/DXFText.h"
#include "model/DXFWriter.h"
#include "support/NumberText.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>

namespace {

using P3 = GTL::Point3D<double>;

constexpr int NUM_CORNERS = 4;

double AsWritten(double value)
{
    char digits[FIXED6_MAX_LENGTH];
    const char* const end = FormatFixed6(digits, value);
    return ParseDouble({digits, static_cast<std::size_t>(end - digits)});
}

float AsWritten(float value)
{
    return static_cast<float>(AsWritten(static_cast<double>(value)));
}

P3 AsWritten(const P3& p)
{
    return {AsWritten(p.X()), AsWritten(p.Y()), AsWritten(p.Z()), AsWritten(p.B())};
}

GTL::Vector3D<double> AsWritten(const GTL::Vector3D<double>& v)
{
    return {AsWritten(v.X()), AsWritten(v.Y()), AsWritten(v.Z())};
}

/// Bearings of arcs go through angles counter-clockwise from +x.
double BearingAsWritten(double bearing)
{
    return TrimAngle(90 - AsWritten(TrimAngle(90 - bearing)));
}

/// Control characters have no place in a line of text.
std::wstring AsWritten(std::wstring text, wchar_t replacement)
{
    for (wchar_t& c : text)
        if (static_cast<unsigned long>(c) < L' ' && c != L'\t') c = replacement;
    return text;
}

/// The name of the text style that stands for a font.
std::wstring StyleName(const std::wstring& font)
{
    constexpr std::wstring_view UNSAFE = L"!@#%^&*()+={}[]\\|'\";:.>,<?/`~ \t";
    constexpr std::size_t LONGEST = 31;
    std::wstring name = AsWritten(font, L'_').substr(0, LONGEST);
    for (wchar_t& c : name)
        if (UNSAFE.find(c) != std::wstring_view::npos) c = L'_';
    return name;
}

/// An MTEXT's rotation goes through a direction of six decimals, which is not quite of unit length: the angle
/// settles after a step or two.
Angle DirectionAsWritten(Angle rotation)
{
    constexpr int MOST_STEPS = 8;
    double x = 2;
    double y = 2;
    for (int step = 0; step < MOST_STEPS; ++step) {
        const double c = AsWritten((-rotation).Cos());
        const double s = AsWritten((-rotation).Sin());
        if (c == x && s == y) break;
        x = c;
        y = s;
        rotation = Angle(-std::atan2(y, x) * MATH::RTD);
    }
    return rotation;
}

/// Brings entities to the written form. A visitor takes them const; those that it is handed here are the
/// document's own.
class Settler : public DXFWriter {
public:
    void Write(const DXFPoint& e) override { Own(e).SetPoint(AsWritten(e.Point())); }
    void Write(const DXFLine& e) override
    {
        SettleWidth(Own(e));
        Own(e).Set(AsWritten(e.Start()), AsWritten(e.End()));
    }
    void Write(const DXFSolid& e) override { SettleCorners(Own(e)); }
    void Write(const DXF3dFace& e) override { SettleCorners(Own(e)); }
    void Write(const DXFCircle& e) override;
    void Write(const DXFArc& e) override;
    void Write(const DXFPolyline& e) override;
    void Write(const DXFPolygon& e) override;
    void Write(const DXFText& e) override;
    void Write(const DXFMText& e) override;
    void Write(const DXFImage& e) override;
    using DXFWriter::Write;

private:
    template <class Entity>
    static Entity& Own(const Entity& entity)
    {
        return const_cast<Entity&>(entity);
    }
    static void SettleWidth(DXFLineBase& e) { e.SetWidth(AsWritten(e.Width())); }
    template <class Entity>
    static void SettleCorners(Entity& e)
    {
        // A new one: changing corners of the old one leaves its box.
        Entity settled;
        for (int i = 0; i < NUM_CORNERS; ++i) settled[i] = AsWritten(e[i]);
        settled.SetColor(e.Color());
        e = settled;
    }
    void SettleVertices(DXFPolyline& e) const;
    static void SettleText(TextEntity& e, TextInfo info, std::wstring text);

    /// Of a layer as the written layer table leaves it.
    const float m_LayerWidth = DXFLayer(L"0").Width();
};

void Settler::Write(const DXFCircle& e)
{
    // Reading a circle keeps more of its radius than setting one does.
    DXFCircle settled(AsWritten(e.Center()), AsWritten(e.Radius()), AsWritten(e.Extrusion()));
    settled.SetInfo(e.GetInfo());
    SettleWidth(settled);
    Own(e) = settled;
}

void Settler::Write(const DXFArc& e)
{
    SettleWidth(Own(e));
    Own(e).SetCenter(AsWritten(e.Center()));
    Own(e).SetRadius(AsWritten(e.Radius()));
    Own(e).SetStartAngle(BearingAsWritten(e.StartAngle()));
    Own(e).SetEndAngle(BearingAsWritten(e.EndAngle()));
    Own(e).SetExtrusion(AsWritten(e.Extrusion()));
}

/// Every vertex keeps its z, also those of a lightweight polyline; where all have the same it is the
/// elevation.
void Settler::SettleVertices(DXFPolyline& e) const
{
    std::vector<P3> vertices = e.GetPoly().Vertices();
    for (P3& vertex : vertices) vertex = AsWritten(vertex);
    const bool level = !vertices.empty()
                       && std::all_of(vertices.begin(), vertices.end(),
                                      [&](const P3& vertex) { return vertex.Z() == vertices.front().Z(); });
    e.SetElevation(level ? vertices.front().Z() : 0);
    e.SetPoly(GTL::Polyline<P3>(std::move(vertices)));
    e.SetLWPolyLine(false);
    e.SetWidth(m_LayerWidth);
}

void Settler::Write(const DXFPolyline& e)
{
    SettleVertices(Own(e));
}

void Settler::Write(const DXFPolygon& e)
{
    SettleVertices(Own(e));
    Own(e).SetStyle(LineInfo::CONTINUOUS);
}

void Settler::SettleText(TextEntity& e, TextInfo info, std::wstring text)
{
    info.SetColor(e.Color());
    info.SetSize(AsWritten(info.Size()));
    info.SetRectWidth(AsWritten(info.RectWidth()));
    e.SetText(AsWritten(std::move(text), L' '));
    e.SetPosition(AsWritten(e.Position()));
    e.SetTextInfo(info);
}

void Settler::Write(const DXFText& e)
{
    TextInfo info = e.GetTextInfo();
    info.SetFont(StyleName(info.Font()));
    info.SetRotation(-Angle(AsWritten((-info.Rotation()).Get())));
    SettleText(Own(e), info, e.Text());
}

/// The box is part of the file, so it stays as it was measured with the formatting that is taken away.
void Settler::Write(const DXFMText& e)
{
    GTL::Extents3D<double> box;
    box.Update(AsWritten(e.Extents().MinPnt()));
    box.Update(AsWritten(e.Extents().MaxPnt()));

    TextInfo info = e.GetTextInfo();
    std::wstring text = e.Text();
    if (const std::optional<FontPrefix> prefix = TakeFontPrefix(text)) {
        info.SetFont(prefix->font);
        const int underline = info.Style() & TextInfo::UNDERLINE;
        info.SetStyle(static_cast<TextInfo::STYLE>(underline | (prefix->bold ? TextInfo::BOLD : 0)
                                                   | (prefix->italic ? TextInfo::ITALIC : 0)));
    }
    info.SetFont(AsWritten(FontFamily(info.Font()), L'_'));
    info.SetRotation(DirectionAsWritten(info.Rotation()));
    SettleText(Own(e), info, std::move(text));
    Own(e).SetClipExtents(box);
}

void Settler::Write(const DXFImage& e)
{
    // A file holds images in the plane.
    const auto inPlane = [](const P3& p) {
        return P3(AsWritten(p.X()), AsWritten(p.Y()), 0);
    };
    Own(e).SetInsertPoint(inPlane(e.InsertPoint()));
    Own(e).SetUVector(inPlane(e.UVector()));
    Own(e).SetVVector(inPlane(e.VVector()));
    Own(e).SetSize(AsWritten(e.Width()), AsWritten(e.Height()));
    std::vector<GTL::Point2D<double>> boundary = e.ClipBoundary();
    for (auto& corner : boundary) corner = {AsWritten(corner.X()), AsWritten(corner.Y())};
    Own(e).SetClipBoundary(e.ClipType(), std::move(boundary));
}

} // namespace

void BringToWrittenForm(DXF& document, const std::atomic<bool>& keepGoing)
{
    DXFText::s_FontTable.clear();
    Settler settler;
    for (unsigned long long i = 0; i < document.NumLayers(); ++i) {
        DXFLayer& layer = *document[i];
        // Taken out and put back, so that the layer's box is made of what the entities are now.
        for (std::unique_ptr<DXFEntity>& entity : layer.Release()) {
            if (keepGoing.load(std::memory_order_relaxed)) entity->Write(settler);
            layer.Add(entity.release());
        }
    }
}
