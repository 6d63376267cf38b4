// How a drawer draws texts and images.
#include "model/DXFImage.h"
#include "model/DXFMText.h"
#include "model/DXFText.h"
#include "platform/DeviceOperations.h"
#include "render/WinDXFDrawer.h"
#include "support/CPointMimic.h"
#include "support/GDISelector.h"
#include "support/MTextLines.h"
#include "support/TextHeightFactComp.h"

#include <cmath>
#include <limits>

namespace {

using P2 = GTL::Point2D<double>;
using P3 = GTL::Point3D<double>;

constexpr int WEIGHT_PLAIN = 400;
constexpr int WEIGHT_BOLD = 700;

int LengthOf(const std::wstring& text)
{
    constexpr std::size_t MOST = std::numeric_limits<int>::max();
    return static_cast<int>(text.size() < MOST ? text.size() : MOST);
}

/// Where a device places a line of text, and which point of it lies there.
struct Anchor {
    P2 point;
    unsigned align;
};

/// The middle row, which devices do not know, hangs on the lower edge of the box.
Anchor AnchorOf(const TextInfo& info, const P2& reference, const TextRectComp::Rect& box)
{
    switch (info.Justification()) {
    case TextInfo::MIDDLE_CENTER:
        return {box.ReferencePoint(4), TA_BOTTOM | TA_CENTER};
    case TextInfo::MIDDLE_LEFT:
        return {box[0], TA_BOTTOM | TA_LEFT};
    case TextInfo::MIDDLE_RIGHT:
        return {box[1], TA_BOTTOM | TA_RIGHT};
    default:
        return {reference, info.WinAlignment()};
    }
}

/// A rectangle turned and moved so that the point which the justification names lies on a place.
TextRectComp::Rect PlacedBox(const TextInfo& info, double width, double height, const P2& place)
{
    TextRectComp::Rect box(width, height);
    box.RotateClockwise(info.Rotation());
    if (info.ReferencePoint() >= 0) box.MoveTo(info.ReferencePoint(), place);
    return box;
}

/// Part of the height of several lines that the first lies above where a single one would.
double LinesAbove(TextInfo::JUSTIFICATION justification)
{
    switch (justification) {
    case TextInfo::BOTTOM_LEFT:
    case TextInfo::BOTTOM_CENTER:
    case TextInfo::BOTTOM_RIGHT:
        return 1;
    case TextInfo::MIDDLE_LEFT:
    case TextInfo::MIDDLE_CENTER:
    case TextInfo::MIDDLE_RIGHT:
        return 0.5;
    default:
        return 0;
    }
}

} // namespace

bool WinDXFDrawer::CreateFontW(const TextInfo& info)
{
    if (m_HasFont && info == m_FontInfo) return true;
    m_HasFont = false;
    m_Font.DeleteObject();
    m_FontInfo.SetSize(0);
    const double height = TextHeightFactComp::Get()(info) * static_cast<double>(info.Size());
    const double pixels = m_Mapper.MapX(height);
    const int cell = std::isfinite(pixels) ? CPointMimic::ToPixel(pixels + 0.5) : 0;
    if (cell == 0) return false;
    const int escapement = static_cast<int>(info.Rotation().Get() * 10);
    const int style = info.Style();
    m_HasFont = m_Font.CreateFontW(
        cell, 0, escapement, 0, (style & TextInfo::BOLD) != 0 ? WEIGHT_BOLD : WEIGHT_PLAIN,
        (style & TextInfo::ITALIC) != 0, (style & TextInfo::UNDERLINE) != 0, false, ANSI_CHARSET,
        OUT_TT_ONLY_PRECIS, CLIP_LH_ANGLES, PROOF_QUALITY, DEFAULT_PITCH, info.Font().c_str());
    if (m_HasFont) m_FontInfo = info;
    return m_HasFont;
}

void WinDXFDrawer::Write(const DXFText& text)
{
    if (m_IsTransforming) return DrawTransformed(text);
    const TextInfo& info = text.GetTextInfo();
    if (!IsFinite(text.Position()) || !CreateFontW(info)) return;
    const GDISelector selectFont(m_DC, &m_Font);
    m_DC->SetBkMode(TRANSPARENT);
    m_DC->SetTextColor(Shown(text.Color()));
    const std::wstring line = PlainText(text.Text());
    const CSize size = m_DC->GetTextExtent(line.data(), LengthOf(line));
    const P2 place = m_Mapper.Map(text.Position());
    DrawTextLine(line, info, place, PlacedBox(info, size.cx, size.cy, place));
}

void WinDXFDrawer::DrawTextLine(const std::wstring& line, const TextInfo& info, const P2& reference,
                                const TextRectComp::Rect& box)
{
    const Anchor anchor = AnchorOf(info, reference, box);
    if (!IsFinite(anchor.point)) return;
    const CPoint at = CPointMimic(anchor.point);
    m_DC->SetTextAlign(anchor.align);
    m_DC->TextOutW(at.x, at.y, line.data(), LengthOf(line));
}

void WinDXFDrawer::Write(const DXFMText& text)
{
    if (m_IsTransforming) return DrawTransformed(text);
    const TextInfo& info = text.GetTextInfo();
    if (!IsFinite(text.Position()) || !CreateFontW(info)) return;
    const GDISelector selectFont(m_DC, &m_Font);
    m_DC->SetBkMode(TRANSPARENT);
    m_DC->SetTextColor(Shown(text.Color()));
    m_TextRect(info, text.Text(), static_cast<double>(info.RectWidth()));

    const int lines = m_TextRect.GetNumberOfSubStrings();
    const double lineHeight = m_TextRect.GetTextHeight();
    const GTL::Vector2D<double> up(info.Rotation().Sin(), info.Rotation().Cos());
    const P2& position = text.Position();
    P2 place = position + up * (LinesAbove(info.Justification()) * (lines - 1) * lineHeight);
    for (int i = 0; i < lines; ++i, place -= up * lineHeight) {
        // Of the box only points whose place does not depend on its width are asked for.
        const TextRectComp::Rect box = PlacedBox(info, 0, lineHeight, place);
        const Anchor anchor = AnchorOf(info, place, box);
        const P2 mapped = m_Mapper.Map(anchor.point);
        if (!IsFinite(mapped)) return;
        const CPoint at = CPointMimic(mapped);
        const std::wstring& line = m_TextRect.GetSubString(i);
        m_DC->SetTextAlign(anchor.align);
        m_DC->TextOutW(at.x, at.y, line.data(), LengthOf(line));
    }
}

void WinDXFDrawer::Write(const DXFImage& image)
{
    if (m_IsTransforming) return DrawTransformed(image);
    if (MissesView(image.Extents())) return;
    const std::vector<P3> outline = image.Outline();
    for (const P3& corner : outline)
        if (!IsFinite(corner)) return;
    if (!image.GetPicture()) return DrawOutline(outline, image.Color());

    const P3& origin = image.InsertPoint();
    const auto pixelAt = [&](double u, double v) {
        return ToPixel({origin.X() + u * image.UVector().X() + v * image.VVector().X(),
                        origin.Y() + u * image.UVector().Y() + v * image.VVector().Y()});
    };
    m_Points.clear();
    for (const P3& corner : outline) m_Points.push_back(ToPixel(corner));
    DeviceOperations::SetClipPolygon(*m_DC, m_Points.data(), static_cast<int>(m_Points.size()));
    DeviceOperations::DrawPicture(*m_DC, *image.GetPicture(), pixelAt(0, image.Height()),
                                  pixelAt(image.Width(), image.Height()), pixelAt(0, 0),
                                  image.GetPicture()->hasColorKey);
    DeviceOperations::ResetClip(*m_DC);
}

void WinDXFDrawer::DrawOutline(const std::vector<P3>& outline, unsigned long color)
{
    CreatePen(0, 1, Shown(color));
    m_Points.clear();
    for (const P3& corner : outline) m_Points.push_back(ToPixel(corner));
    m_Points.push_back(m_Points.front());
    Flush();
}
