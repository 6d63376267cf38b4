#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "platform/CDC.h"
#include "platform/FontPixels.h"
#include "platform/Prefetch.h"
#include "platform/raster/ContextSystem.h"
#include "platform/raster/PolygonFill.h"
#include "platform/raster/TextCache.h"

namespace {
constexpr int HALF_TURN = 1800; // tenths of a degree
constexpr int TURN = 2 * HALF_TURN;

const CFont& FontOf(const CFont* font)
{
    static const CFont s_First;
    return font ? *font : s_First;
}

/// A scaled height loses its fraction.
FontPixels PixelsOf(const CFont& font, double scale)
{
    constexpr double LARGEST = 1 << 24;
    const double height = std::clamp(std::fabs(font.Height() * scale), 1.0, LARGEST);
    const int whole = static_cast<int>(height);
    return FontPixels::Of(font.Face().Metrics(), font.Height() < 0 ? -whole : whole);
}

std::wstring_view TextOf(const wchar_t* text, int length)
{
    return text && length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length))
                              : std::wstring_view();
}

std::int64_t WidthOf(SizedFace& face, std::wstring_view text)
{
    std::int64_t width = 0;
    while (!text.empty()) width += face.Advance(TakeCharacter(text));
    return width;
}

/// Below * (255 - coverage) + color * coverage, over 255, for each channel, rounded.
std::uint32_t Mixed(std::uint32_t below, std::uint32_t color, std::uint32_t coverage)
{
    constexpr std::uint32_t RED_BLUE = 0xFF00FF;
    constexpr std::uint32_t GREEN = 0x00FF00;
    // 255 parts become 256, so that a shift divides.
    const std::uint32_t share = coverage + (coverage >> 7);
    const std::uint32_t rest = 256 - share;
    const std::uint32_t redBlue = ((below & RED_BLUE) * rest + (color & RED_BLUE) * share + 0x800080) >> 8;
    const std::uint32_t green = ((below & GREEN) * rest + (color & GREEN) * share + 0x008000) >> 8;
    return (redBlue & RED_BLUE) | (green & GREEN);
}

/// A text on its way onto a canvas: base line from an origin in a direction. All in device pixels.
class TextRun {
public:
    TextRun(const Canvas& canvas, SizedFace& face, int tenthsOfDegree, std::uint32_t pixel)
        : m_Canvas(canvas), m_Face(face), m_Direction(tenthsOfDegree), m_Pixel(pixel)
    {
        constexpr double RADIANS_A_TENTH = 3.14159265358979323846 / HALF_TURN;
        constexpr int QUARTER = HALF_TURN / 2;
        // Whole quarters exactly: sines of such angles are off by a rounding, which would move pixels.
        static constexpr std::array<double, 4> SINES = {0, 1, 0, -1};
        const auto quarter = static_cast<std::size_t>(m_Direction / QUARTER);
        const bool isWhole = m_Direction % QUARTER == 0;
        m_Sine = isWhole ? SINES[quarter] : std::sin(m_Direction * RADIANS_A_TENTH);
        m_Cosine = isWhole ? SINES[(quarter + 1) % 4] : std::cos(m_Direction * RADIANS_A_TENTH);
    }

    /// Puts the origin where it lies `along` the base line and `above` it from a point.
    void SetOrigin(CPoint p, double along, double above)
    {
        m_X = p.x + along * m_Cosine - above * m_Sine;
        m_Y = p.y - along * m_Sine - above * m_Cosine;
    }

    CPoint PointAt(double along, double above) const
    {
        return {Whole(m_X + along * m_Cosine - above * m_Sine),
                Whole(m_Y - along * m_Sine - above * m_Cosine)};
    }

    void Draw(std::wstring_view text)
    {
        double along = 0;
        while (!text.empty()) {
            const char32_t character = TakeCharacter(text);
            const CPoint at = PointAt(along, 0);
            if (const GlyphImage* image = m_Face.Image(character, m_Direction))
                DrawImage(*image, at);
            else
                DrawOutline(character, along);
            along += m_Face.Advance(character);
        }
    }

    /// Fills a bar along the base line, `bottom` to `top` above it.
    void FillBar(double width, double bottom, double top, std::uint32_t pixel) const
    {
        const std::array<CPoint, 4> corners = {PointAt(0, bottom), PointAt(width, bottom),
                                               PointAt(width, top), PointAt(0, top)};
        Fill(corners, pixel);
    }

private:
    /// Nearest whole number, halves up.
    static int Whole(double v)
    {
        constexpr double LIMIT = 2147483646.0;
        const double raised = std::clamp(v, -LIMIT, LIMIT) + 0.5;
        const int whole = static_cast<int>(raised);
        return whole > raised ? whole - 1 : whole;
    }

    void Fill(std::span<const CPoint> points, std::uint32_t pixel) const
    {
        ScanPolygon(points, WINDING, m_Canvas.clip,
                    [&](int y, int left, int right) { m_Canvas.FillSpan(y, left, right, pixel); });
    }

    void DrawImage(const GlyphImage& image, CPoint at) const
    {
        const CRect& clip = m_Canvas.clip;
        const std::int64_t left = std::int64_t{at.x} + image.left;
        const std::int64_t top = std::int64_t{at.y} + image.top;
        if (left >= clip.right || left + image.width <= clip.left) return;
        if (top >= clip.bottom || top + image.height <= clip.top) return;
        const auto firstRow = static_cast<int>(std::max<std::int64_t>(top, clip.top));
        const auto lastRow = static_cast<int>(std::min<std::int64_t>(top + image.height, clip.bottom));
        const auto start = static_cast<int>(left);
        // Rows lie pages apart. This glyph's and the next one's are asked for together, not one after the
        // other.
        for (int y = firstRow; y < lastRow; ++y)
            PrefetchForWriting(m_Canvas.At(std::max(start, clip.left), y),
                               2 * sizeof(std::uint32_t) * static_cast<std::size_t>(image.width));
        for (int y = firstRow; y < lastRow; ++y) {
            const std::uint8_t* coverage = image.coverage.data() + (y - top) * image.width;
            m_Canvas.ForSpan(y, start, start + image.width, [&](int from, int to) {
                MixRow(m_Canvas.At(from, y), coverage + (from - start), to - from);
            });
        }
    }

    void MixRow(std::uint32_t* pixels, const std::uint8_t* coverage, int count) const
    {
        for (int i = 0; i < count; ++i)
            if (coverage[i] != 0) pixels[i] = Mixed(pixels[i], m_Pixel, coverage[i]);
    }

    /// Glyphs too large for images, without grey edges; a box where there is no font.
    void DrawOutline(char32_t character, double along) const
    {
        if (!ShowsAt(along, m_Face.Advance(character))) return;
        if (!m_Face.Source()) {
            const double em = m_Face.Ppem();
            if (character == U' ') return;
            const std::array<CPoint, 4> box = {PointAt(along + em / 16, 0), PointAt(along + em / 2, 0),
                                               PointAt(along + em / 2, em * 0.7),
                                               PointAt(along + em / 16, em * 0.7)};
            return Fill(box, m_Pixel);
        }
        // One polygon of all contours: they are joined by ways to a common point and back, which have no
        // area.
        std::vector<CPoint> points;
        const CPoint common = PointAt(along, 0);
        for (const auto& contour : m_Face.Source()->Outline(character).contours) {
            points.push_back(common);
            for (const auto& place : contour)
                points.push_back(PointAt(along + place.x * m_Face.Ppem(), place.y * m_Face.Ppem()));
            if (!contour.empty())
                points.push_back(PointAt(along + contour[0].x * m_Face.Ppem(), contour[0].y * m_Face.Ppem()));
        }
        Fill(points, m_Pixel);
    }

    /// Whether a glyph can reach the canvas: no outline stands out of its origin by more than this many ems.
    bool ShowsAt(double along, int advance) const
    {
        constexpr double REACH = 4;
        const CPoint at = PointAt(along, 0);
        const double reach = REACH * m_Face.Ppem() + advance;
        const CRect& clip = m_Canvas.clip;
        return at.x + reach > clip.left && at.x - reach < clip.right && at.y + reach > clip.top
               && at.y - reach < clip.bottom;
    }

    const Canvas& m_Canvas;
    SizedFace& m_Face;
    int m_Direction;
    std::uint32_t m_Pixel;
    double m_Sine;
    double m_Cosine;
    double m_X = 0;
    double m_Y = 0;
};

/// How far the base line's start lies along the text from its point of reference.
double AlongOf(unsigned align, std::int64_t width)
{
    if ((align & TA_CENTER) == TA_CENTER) return -static_cast<double>(width / 2);
    return (align & TA_RIGHT) != 0 ? -static_cast<double>(width) : 0;
}

/// How far it lies above.
double AboveOf(unsigned align, const FontPixels& pixels)
{
    if ((align & TA_BASELINE) == TA_BASELINE) return 0;
    return (align & TA_BOTTOM) != 0 ? pixels.descent : -pixels.ascent;
}

/// A line under or through a text: its thickness in whole pixels, at least one.
void DrawTextLine(const TextRun& run, const SizedFace& face, const TextLine& line, std::int64_t width,
                  std::uint32_t pixel)
{
    const double scale = static_cast<double>(face.Ppem()) / std::max(face.Metrics().unitsPerEm, 1);
    const double thickness = std::max(1.0, std::floor(line.thickness * scale + 0.5));
    const double bottom = std::floor(line.middle * scale - thickness / 2 + 0.5);
    run.FillBar(static_cast<double>(width), bottom, bottom + thickness, pixel);
}
} // namespace

CSize CDC::GetTextExtent(const wchar_t* text, int length) const
{
    const std::wstring_view measured = TextOf(text, length);
    if (measured.empty()) return {};
    const CFont& font = FontOf(m_Font);
    const FontPixels pixels = PixelsOf(font, m_System->mapping.ScaleY());
    TextCache& cache = TextCache::Instance();
    const std::lock_guard hold(cache.m_Mutex);
    cache.Trim();
    const std::int64_t width = WidthOf(cache.Find(font.Face(), pixels.ppem), measured);
    const auto logical = [](double size, double scale) {
        return ToInt(static_cast<std::int64_t>(std::min(std::floor(size / scale + 0.5), 4e9)));
    };
    return {logical(static_cast<double>(width), m_System->mapping.ScaleX()),
            logical(pixels.Height(), m_System->mapping.ScaleY())};
}

bool CDC::TextOutW(int x, int y, const wchar_t* text, int length)
{
    const bool movesPosition = (m_System->textAlign & TA_UPDATECP) != 0;
    const CFont& font = FontOf(m_Font);
    const FontPixels pixels = PixelsOf(font, m_System->mapping.ScaleY());
    const std::wstring_view shown = TextOf(text, length);
    // The sense of the escapement turns with the axes.
    const int direction =
        m_System->mapping.IsMirrored() ? (TURN - font.Escapement()) % TURN : font.Escapement();
    const CPoint reference = m_System->mapping.ToDevice(movesPosition ? m_System->position : CPoint(x, y));
    const Canvas canvas = m_System->MakeCanvas(m_Bitmap);

    TextCache& cache = TextCache::Instance();
    const std::lock_guard hold(cache.m_Mutex);
    cache.Trim();
    SizedFace& face = cache.Find(font.Face(), pixels.ppem);
    const bool needsWidth = m_System->textAlign != (TA_LEFT | TA_TOP) || m_System->bkMode == OPAQUE
                            || font.IsUnderlined() || font.IsStruckOut();
    const std::int64_t width = needsWidth ? WidthOf(face, shown) : 0;
    const auto extent = static_cast<double>(width);
    const std::uint32_t pixel = PixelOf(m_System->textColor);
    TextRun run(canvas, face, direction, pixel);
    run.SetOrigin(reference, AlongOf(m_System->textAlign, width), AboveOf(m_System->textAlign, pixels));
    if (m_System->bkMode == OPAQUE)
        run.FillBar(extent, -pixels.descent, pixels.ascent, PixelOf(m_System->bkColor));
    if (!canvas.clip.IsRectEmpty()) run.Draw(shown);
    const GlyphSource* source = face.Source();
    if (font.IsUnderlined() && source) DrawTextLine(run, face, source->underline, width, pixel);
    if (font.IsStruckOut() && source) DrawTextLine(run, face, source->strikeOut, width, pixel);

    const bool isCentred = (m_System->textAlign & TA_CENTER) == TA_CENTER;
    if (movesPosition && !isCentred)
        m_System->position = m_System->mapping.ToLogical(CPoint(run.PointAt(
            (m_System->textAlign & TA_RIGHT) != 0 ? 0 : extent, -AboveOf(m_System->textAlign, pixels))));
    return true;
}
