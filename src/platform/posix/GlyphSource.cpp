#include "platform/raster/GlyphSource.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include "platform/Utf8.h"

namespace {
FT_Library Library()
{
    static const FT_Library s_Library = [] {
        FT_Library library = nullptr;
        return FT_Init_FreeType(&library) == 0 ? library : nullptr;
    }();
    return s_Library;
}

/// Collects an outline as polygons. Curves become CURVE_STEPS chords each: their distance from the curve is
/// below a thousandth of the curve's extent.
class Flattener {
public:
    Flattener(GlyphOutline& outline, double unitsPerEm) : m_Outline(outline), m_Scale(1 / unitsPerEm) {}

    bool Run(FT_Outline& source)
    {
        static const FT_Outline_Funcs functions = {Move, Line, Conic, Cubic, 0, 0};
        return FT_Outline_Decompose(&source, &functions, this) == 0;
    }

private:
    static constexpr int CURVE_STEPS = 16;
    using Place = GlyphOutline::Place;

    Place PlaceOf(const FT_Vector* v) const
    {
        return {static_cast<double>(v->x) * m_Scale, static_cast<double>(v->y) * m_Scale};
    }
    void Add(Place p)
    {
        m_Outline.contours.back().push_back(p);
        m_At = p;
    }

    static int Move(const FT_Vector* to, void* self)
    {
        auto* me = static_cast<Flattener*>(self);
        me->m_Outline.contours.emplace_back();
        me->Add(me->PlaceOf(to));
        return 0;
    }
    static int Line(const FT_Vector* to, void* self)
    {
        auto* me = static_cast<Flattener*>(self);
        me->Add(me->PlaceOf(to));
        return 0;
    }
    static int Conic(const FT_Vector* control, const FT_Vector* to, void* self)
    {
        auto* me = static_cast<Flattener*>(self);
        const Place a = me->m_At, b = me->PlaceOf(control), c = me->PlaceOf(to);
        for (int i = 1; i <= CURVE_STEPS; ++i) {
            const double t = static_cast<double>(i) / CURVE_STEPS, s = 1 - t;
            me->Add(
                {s * s * a.x + 2 * s * t * b.x + t * t * c.x, s * s * a.y + 2 * s * t * b.y + t * t * c.y});
        }
        return 0;
    }
    static int Cubic(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* self)
    {
        auto* me = static_cast<Flattener*>(self);
        const Place a = me->m_At, b = me->PlaceOf(first), c = me->PlaceOf(second), d = me->PlaceOf(to);
        for (int i = 1; i <= CURVE_STEPS; ++i) {
            const double t = static_cast<double>(i) / CURVE_STEPS, s = 1 - t;
            const double wa = s * s * s, wb = 3 * s * s * t, wc = 3 * s * t * t, wd = t * t * t;
            me->Add({wa * a.x + wb * b.x + wc * c.x + wd * d.x, wa * a.y + wb * b.y + wc * c.y + wd * d.y});
        }
        return 0;
    }

    GlyphOutline& m_Outline;
    double m_Scale;
    Place m_At{};
};

class FreeTypeGlyphs : public GlyphSource {
public:
    explicit FreeTypeGlyphs(FT_Face face) : m_Face(face)
    {
        if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0)
            m_IsSymbolFont = FT_Select_Charmap(face, FT_ENCODING_MS_SYMBOL) == 0;
        underline = {face->underline_position, std::max<int>(face->underline_thickness, 1)};
        const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
        strikeOut = os2 ? TextLine{os2->yStrikeoutPosition - os2->yStrikeoutSize / 2, os2->yStrikeoutSize}
                        : TextLine{face->units_per_EM / 4, underline.thickness};
    }
    ~FreeTypeGlyphs() override { FT_Done_Face(m_Face); }
    FreeTypeGlyphs(const FreeTypeGlyphs&) = delete;
    FreeTypeGlyphs& operator=(const FreeTypeGlyphs&) = delete;

    int Advance(char32_t character, int ppem) override
    {
        // Beyond this hinting changes nothing, and FreeType's sizes come to an end.
        constexpr int LARGEST_HINTED = 4096;
        if (ppem <= LARGEST_HINTED && SetSize(ppem)
            && FT_Load_Glyph(m_Face, GlyphOf(character), FT_LOAD_DEFAULT) == 0)
            return static_cast<int>((m_Face->glyph->advance.x + 32) >> 6);
        if (FT_Load_Glyph(m_Face, GlyphOf(character), FT_LOAD_NO_SCALE) != 0) return 0;
        const double units = static_cast<double>(m_Face->glyph->advance.x);
        return static_cast<int>(std::clamp(std::floor(units * ppem / m_Face->units_per_EM + 0.5), 0.0, 1e9));
    }

    GlyphImage Image(char32_t character, int ppem, int tenthsOfDegree) override
    {
        if (!SetSize(ppem)) return {};
        if (FT_Load_Glyph(m_Face, GlyphOf(character), FT_LOAD_DEFAULT | FT_LOAD_NO_BITMAP) != 0) return {};
        FT_GlyphSlot slot = m_Face->glyph;
        if (slot->format != FT_GLYPH_FORMAT_OUTLINE) return {};
        Turn(slot->outline, tenthsOfDegree);
        if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0) return {};
        return Copied(*slot);
    }

    GlyphOutline Outline(char32_t character) override
    {
        GlyphOutline outline;
        if (FT_Load_Glyph(m_Face, GlyphOf(character), FT_LOAD_NO_SCALE) != 0) return outline;
        if (m_Face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return outline;
        if (!Flattener(outline, m_Face->units_per_EM).Run(m_Face->glyph->outline)) outline.contours.clear();
        return outline;
    }

private:
    bool SetSize(int ppem)
    {
        if (ppem == m_Ppem) return true;
        m_Ppem = FT_Set_Pixel_Sizes(m_Face, 0, static_cast<FT_UInt>(ppem)) == 0 ? ppem : 0;
        return m_Ppem != 0;
    }

    FT_UInt GlyphOf(char32_t character) const
    {
        // The characters of a symbol font lie at U+F000 and above.
        constexpr char32_t SYMBOL_BASE = 0xF000;
        const FT_UInt glyph = FT_Get_Char_Index(m_Face, character);
        if (glyph == 0 && m_IsSymbolFont && character <= 0xFF)
            return FT_Get_Char_Index(m_Face, SYMBOL_BASE + character);
        return glyph;
    }

    static void Turn(FT_Outline& outline, int tenthsOfDegree)
    {
        constexpr double RADIANS_A_TENTH = 3.14159265358979323846 / 1800;
        constexpr double ONE = 65536;
        if (tenthsOfDegree == 0) return;
        const auto c = static_cast<FT_Fixed>(std::lround(std::cos(tenthsOfDegree * RADIANS_A_TENTH) * ONE));
        const auto s = static_cast<FT_Fixed>(std::lround(std::sin(tenthsOfDegree * RADIANS_A_TENTH) * ONE));
        const FT_Matrix matrix = {c, -s, s, c};
        FT_Outline_Transform(&outline, &matrix);
    }

    static GlyphImage Copied(const FT_GlyphSlotRec& slot)
    {
        const FT_Bitmap& bitmap = slot.bitmap;
        GlyphImage image{slot.bitmap_left,
                         -slot.bitmap_top,
                         static_cast<int>(bitmap.width),
                         static_cast<int>(bitmap.rows),
                         {}};
        image.coverage.reserve(static_cast<std::size_t>(bitmap.width) * bitmap.rows);
        for (unsigned row = 0; row < bitmap.rows; ++row) {
            const unsigned char* bytes = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
            image.coverage.insert(image.coverage.end(), bytes, bytes + bitmap.width);
        }
        return image;
    }

    FT_Face m_Face;
    bool m_IsSymbolFont = false;
    int m_Ppem = 0;
};
} // namespace

std::unique_ptr<GlyphSource> GlyphSource::Open(const FontFace& face)
{
    FT_Face opened = nullptr;
    if (face.File().empty() || !Library()) return nullptr;
    if (FT_New_Face(Library(), ToUtf8(face.File()).c_str(), face.Index(), &opened) != 0) return nullptr;
    if (FT_IS_SCALABLE(opened) && opened->units_per_EM > 0) return std::make_unique<FreeTypeGlyphs>(opened);
    FT_Done_Face(opened);
    return nullptr;
}
