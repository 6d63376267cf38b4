#include "support/TextRectComp.h"

#include "support/MTextLines.h"
#include "support/TextHeightFactComp.h"

#include <cmath>
#include <limits>

namespace {

/// Hostile sizes measure as nothing; a negative one draws its text like a positive one.
double UsableSize(float size)
{
    return std::isfinite(size) ? std::fabs(static_cast<double>(size)) : 0.0;
}

/// A width in drawing units as a limit in font units. Widths come as single precision, so that a text may be
/// wider by the last bit of one.
double LimitInFontUnits(double width, double unit)
{
    constexpr double SINGLE_PRECISION = std::numeric_limits<float>::epsilon();
    if (!(width > 0) || unit == 0) return std::numeric_limits<double>::infinity();
    return width / unit * (1 + SINGLE_PRECISION);
}

} // namespace

TextRectComp::Rect TextRectComp::operator()(const TextInfo& info, const std::wstring& text)
{
    if (info.MultiLine()) return (*this)(info, text, static_cast<double>(info.RectWidth()));
    const FontFace& face = TextHeightFactComp::Face(info);
    m_Lines.resize(1);
    m_Lines[0] = PlainText(text);
    return MakeRect(info, face, face.Width(m_Lines[0]));
}

TextRectComp::Rect TextRectComp::operator()(const TextInfo& info, const std::wstring& text, double width)
{
    const FontFace& face = TextHeightFactComp::Face(info);
    const double unit = UsableSize(info.Size()) / face.Metrics().capHeight;
    BrokenText broken = BreakLines(PlainMText(text), face, LimitInFontUnits(width, unit));
    m_Lines = std::move(broken.lines);
    return MakeRect(info, face, broken.width);
}

TextRectComp::Rect TextRectComp::MakeRect(const TextInfo& info, const FontFace& face, std::int64_t fontUnits)
{
    const double size = UsableSize(info.Size());
    m_LineHeight = size * TextHeightFactComp::Factor(face.Metrics());
    Rect rect(static_cast<double>(fontUnits) * size / face.Metrics().capHeight,
              static_cast<double>(m_Lines.size()) * m_LineHeight);
    rect.RotateClockwise(info.Rotation());
    return rect;
}

const std::wstring& TextRectComp::GetSubString(int index) const
{
    static const std::wstring s_Empty;
    return index >= 0 && index < GetNumberOfSubStrings() ? m_Lines[static_cast<std::size_t>(index)] : s_Empty;
}
