#include "platform/font/FontEngine.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_TRUETYPE_TABLES_H

#include "platform/Utf8.h"

namespace {
constexpr double USUAL_CAP_HEIGHT = 0.7; // of an em, where the font does not tell

struct PatternEnd {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternEnd>;

class FreeTypeOutline final : public FontOutline {
public:
    explicit FreeTypeOutline(FT_Face face) : m_Face(face)
    {
        if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0)
            m_IsSymbolFont = FT_Select_Charmap(face, FT_ENCODING_MS_SYMBOL) == 0;
        m_MissingAdvance = GlyphAdvance(0, face->units_per_EM / 2);
    }
    ~FreeTypeOutline() override { FT_Done_Face(m_Face); }
    FreeTypeOutline(const FreeTypeOutline&) = delete;
    FreeTypeOutline& operator=(const FreeTypeOutline&) = delete;

    std::optional<std::int32_t> Advance(char32_t character) const override
    {
        const FT_UInt glyph = Glyph(character);
        if (glyph == 0) return std::nullopt;
        return GlyphAdvance(glyph, m_MissingAdvance);
    }

    std::int32_t MissingAdvance() const { return m_MissingAdvance; }

private:
    /// Advance of a glyph in font units, `otherwise` where it cannot be read.
    std::int32_t GlyphAdvance(FT_UInt glyph, std::int32_t otherwise) const
    {
        constexpr FT_Fixed LARGEST = std::numeric_limits<std::int32_t>::max();
        FT_Fixed advance = 0;
        if (FT_Get_Advance(m_Face, glyph, FT_LOAD_NO_SCALE, &advance) != 0) return otherwise;
        return static_cast<std::int32_t>(std::clamp<FT_Fixed>(advance, 0, LARGEST));
    }

    FT_UInt Glyph(char32_t character) const
    {
        // The characters of a symbol font lie at U+F000 and above.
        constexpr char32_t SYMBOL_BASE = 0xF000;
        const FT_UInt glyph = FT_Get_Char_Index(m_Face, character);
        if (glyph == 0 && m_IsSymbolFont && character <= 0xFF)
            return FT_Get_Char_Index(m_Face, SYMBOL_BASE + character);
        return glyph;
    }

    FT_Face m_Face;
    bool m_IsSymbolFont = false;
    std::int32_t m_MissingAdvance = 0;
};

int CapHeight(FT_Face face, const TT_OS2* os2)
{
    constexpr FT_UShort FIRST_VERSION_WITH_CAP_HEIGHT = 2;
    if (os2 && os2->version >= FIRST_VERSION_WITH_CAP_HEIGHT && os2->sCapHeight > 0) return os2->sCapHeight;
    const FT_UInt glyph = FT_Get_Char_Index(face, U'H');
    if (glyph != 0 && FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE) == 0
        && face->glyph->metrics.horiBearingY > 0)
        return static_cast<int>(face->glyph->metrics.horiBearingY);
    return static_cast<int>(USUAL_CAP_HEIGHT * face->units_per_EM);
}

FontMetrics MetricsOf(FT_Face face)
{
    constexpr FT_UShort NO_OS2 = 0xFFFF;
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (os2 && os2->version == NO_OS2) os2 = nullptr;

    FontMetrics metrics = {face->units_per_EM, face->ascender, -face->descender, CapHeight(face, os2)};
    if (os2 && os2->usWinAscent + os2->usWinDescent != 0) {
        metrics.ascent = os2->usWinAscent;
        metrics.descent = os2->usWinDescent;
        return metrics;
    }
    const auto* hhea = static_cast<const TT_HoriHeader*>(FT_Get_Sfnt_Table(face, FT_SFNT_HHEA));
    if (hhea && hhea->Ascender - hhea->Descender != 0) {
        metrics.ascent = hhea->Ascender;
        metrics.descent = -hhea->Descender;
    }
    return metrics;
}

class FileMatch final : public FontMatch {
public:
    FileMatch(FT_Library freeType, std::string file, int index)
        : m_FreeType(freeType), m_File(std::move(file)), m_Index(index)
    {
    }

    std::wstring Key() const override { return FromUtf8(m_File) + L'\0' + std::to_wstring(m_Index); }

    std::optional<OpenedFont> Open() const override
    {
        FT_Face face = nullptr;
        if (FT_New_Face(m_FreeType, m_File.c_str(), m_Index, &face) != 0) return std::nullopt;
        auto outline = std::make_unique<FreeTypeOutline>(face);
        if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) return std::nullopt;
        const FontMetrics metrics = MetricsOf(face);
        const int missingAdvance = outline->MissingAdvance();
        return OpenedFont{std::move(outline), metrics, missingAdvance, FromUtf8(m_File), m_Index};
    }

private:
    FT_Library m_FreeType;
    std::string m_File;
    int m_Index;
};

/// Bytes of a family for fontconfig: up to the first null, with "?" for what is not well-formed Unicode.
std::string FamilyBytes(std::wstring family)
{
    family.resize(std::min(family.find(L'\0'), family.size()));
    std::replace_if(
        family.begin(), family.end(), [](wchar_t c) { return c >= 0xDC80 && c <= 0xDCFF; }, L'?');
    return ToUtf8(family);
}

class FontconfigEngine final : public FontEngine {
public:
    FontconfigEngine()
    {
        if (FT_Init_FreeType(&m_FreeType) != 0) m_FreeType = nullptr;
        // A configuration of its own, so that the host's stays what it is; a missing one is no complaint of
        // ours.
        FcConfig* config = FcConfigCreate();
        if (config && FcConfigParseAndLoad(config, nullptr, FcFalse) && FcConfigBuildFonts(config))
            m_Config = config;
        else if (config)
            FcConfigDestroy(config);
    }

    void Close() override
    {
        if (m_Config) FcConfigDestroy(m_Config);
        m_Config = nullptr;
    }

    std::unique_ptr<FontMatch> Match(const FontName& name) override
    {
        if (!m_Config || !m_FreeType) return nullptr;
        const Pattern wanted = Wanted(name);
        FcResult result = FcResultNoMatch;
        const Pattern found(wanted ? FcFontMatch(m_Config, wanted.get(), &result) : nullptr);
        FcChar8* file = nullptr;
        int index = 0;
        if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return nullptr;
        if (FcPatternGetInteger(found.get(), FC_INDEX, 0, &index) != FcResultMatch) index = 0;
        return std::make_unique<FileMatch>(m_FreeType, reinterpret_cast<const char*>(file), index);
    }

private:
    Pattern Wanted(const FontName& name) const
    {
        Pattern wanted(FcPatternCreate());
        if (!wanted) return wanted;
        const std::string family = FamilyBytes(name.family);
        if (!family.empty())
            FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
        FcPatternAddInteger(wanted.get(), FC_WEIGHT, name.isBold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
        FcPatternAddInteger(wanted.get(), FC_SLANT, name.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
        FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
        // Else the language of the user's environment takes part in the choice.
        FcPatternAddString(wanted.get(), FC_LANG, reinterpret_cast<const FcChar8*>("en"));
        FcConfigSubstitute(m_Config, wanted.get(), FcMatchPattern);
        FcDefaultSubstitute(wanted.get());
        return wanted;
    }

    FcConfig* m_Config = nullptr;
    FT_Library m_FreeType = nullptr;
};
} // namespace

std::unique_ptr<FontEngine> FontEngine::Make()
{
    return std::make_unique<FontconfigEngine>();
}
