#include "platform/Font.h"

#include <algorithm>
#include <limits>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_TRUETYPE_TABLES_H

#include "platform/FontName.h"
#include "platform/Utf8.h"

/// What FreeType knows of a face. FreeType is not made for several threads: used under FontCatalogue's mutex
/// only.
struct FontFace::Outline {
    FT_Face face = nullptr;
    /// The characters of a symbol font lie at U+F000 and above.
    bool isSymbolFont = false;

    Outline() = default;
    Outline(const Outline&) = delete;
    Outline& operator=(const Outline&) = delete;
    ~Outline()
    {
        if (face) FT_Done_Face(face);
    }

    FT_UInt Glyph(char32_t character) const
    {
        constexpr char32_t SYMBOL_BASE = 0xF000;
        const FT_UInt glyph = FT_Get_Char_Index(face, character);
        if (glyph == 0 && isSymbolFont && character <= 0xFF)
            return FT_Get_Char_Index(face, SYMBOL_BASE + character);
        return glyph;
    }

    /// Advance of a glyph in font units, `otherwise` where it cannot be read.
    std::int32_t Advance(FT_UInt glyph, std::int32_t otherwise) const
    {
        constexpr FT_Fixed LARGEST = std::numeric_limits<std::int32_t>::max();
        FT_Fixed advance = 0;
        if (FT_Get_Advance(face, glyph, FT_LOAD_NO_SCALE, &advance) != 0) return otherwise;
        return static_cast<std::int32_t>(std::clamp<FT_Fixed>(advance, 0, LARGEST));
    }
};

/// The faces of this process. Lives to its end: faces are handed out as references, also to static objects.
class FontCatalogue {
public:
    static FontCatalogue& Instance();

    const FontFace& Find(const std::wstring& name, bool isBold, bool isItalic);

    /// Guards everything below and all use of FreeType.
    std::mutex m_Mutex;

private:
    /// Hostile drawings may name any number of fonts; the names are forgotten when they become this many.
    static constexpr std::size_t MAX_NAMES = 4096;
    /// Longer names are looked up anew each time, by as much of their family.
    static constexpr std::size_t MAX_NAME_LENGTH = 512;

    /// Gives the configuration back when the process ends; names asked for after that get the built-in
    /// measures.
    struct ConfigurationEnd {
        FontCatalogue& catalogue;
        ~ConfigurationEnd() { catalogue.CloseConfiguration(); }
    };

    FontCatalogue();
    void CloseConfiguration();
    const FontFace& LookUp(const FontName& name);
    const FontFace& Face(const char* file, int index);
    std::unique_ptr<FontFace> Open(const char* file, int index);

    FcConfig* m_Config = nullptr;
    FT_Library m_FreeType = nullptr;
    std::unordered_map<std::wstring, const FontFace*> m_Names;
    std::map<std::pair<std::string, int>, std::unique_ptr<FontFace>> m_Faces;
    std::unique_ptr<FontFace> m_BuiltIn;
};

namespace {
constexpr FontMetrics BUILT_IN_METRICS = {1000, 905, 212, 700};
constexpr int BUILT_IN_ADVANCE = 556;
constexpr double USUAL_CAP_HEIGHT = 0.7; // of an em, where the font does not tell

struct PatternEnd {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternEnd>;

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

/// The last font that this thread looked up: texts of one font mostly follow each other.
struct LastFont {
    static constexpr std::size_t MAX_LENGTH = 64;

    wchar_t name[MAX_LENGTH];
    std::size_t length;
    bool isBold;
    bool isItalic;
    const FontFace* face;

    bool Is(const std::wstring& other, bool bold, bool italic) const
    {
        return face && bold == isBold && italic == isItalic && std::wstring_view(name, length) == other;
    }

    void Set(const std::wstring& other, bool bold, bool italic, const FontFace& found)
    {
        if (other.size() > MAX_LENGTH) return;
        length = other.copy(name, MAX_LENGTH);
        isBold = bold;
        isItalic = italic;
        face = &found;
    }
};

thread_local LastFont t_LastFont = {};

/// Bytes of a family for fontconfig: up to the first null, with "?" for what is not well-formed Unicode.
std::string FamilyBytes(std::wstring family)
{
    family.resize(std::min(family.find(L'\0'), family.size()));
    std::replace_if(
        family.begin(), family.end(), [](wchar_t c) { return c >= 0xDC80 && c <= 0xDCFF; }, L'?');
    return ToUtf8(family);
}
} // namespace

FontCatalogue& FontCatalogue::Instance()
{
    static FontCatalogue* const catalogue = new FontCatalogue;
    static const ConfigurationEnd end{*catalogue};
    return *catalogue;
}

FontCatalogue::FontCatalogue()
{
    m_BuiltIn.reset(new FontFace(nullptr, BUILT_IN_METRICS, BUILT_IN_ADVANCE, {}, 0));
    if (FT_Init_FreeType(&m_FreeType) != 0) m_FreeType = nullptr;
    // A configuration of its own, so that the host's stays what it is; a missing one is no complaint of ours.
    FcConfig* config = FcConfigCreate();
    if (config && FcConfigParseAndLoad(config, nullptr, FcFalse) && FcConfigBuildFonts(config))
        m_Config = config;
    else if (config)
        FcConfigDestroy(config);
}

void FontCatalogue::CloseConfiguration()
{
    const std::lock_guard hold(m_Mutex);
    if (m_Config) FcConfigDestroy(m_Config);
    m_Config = nullptr;
}

const FontFace& FontCatalogue::Find(const std::wstring& name, bool isBold, bool isItalic)
{
    const bool isKept = name.size() <= MAX_NAME_LENGTH;
    std::wstring key;
    if (isKept) {
        key.reserve(name.size() + 1);
        key = name;
        key += static_cast<wchar_t>(L'0' + (isBold ? 1 : 0) + (isItalic ? 2 : 0));
    }

    const std::lock_guard hold(m_Mutex);
    const auto known = isKept ? m_Names.find(key) : m_Names.end();
    if (known != m_Names.end()) return *known->second;

    FontName parsed = ParseFontName(name);
    parsed.family.resize(std::min(parsed.family.size(), MAX_NAME_LENGTH));
    parsed.isBold = parsed.isBold || isBold;
    parsed.isItalic = parsed.isItalic || isItalic;
    const FontFace& face = LookUp(parsed);
    if (m_Names.size() >= MAX_NAMES) m_Names.clear();
    if (isKept) m_Names.emplace(std::move(key), &face);
    return face;
}

const FontFace& FontCatalogue::LookUp(const FontName& name)
{
    if (!m_Config || !m_FreeType) return *m_BuiltIn;
    const Pattern wanted(FcPatternCreate());
    if (!wanted) return *m_BuiltIn;
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

    FcResult result = FcResultNoMatch;
    const Pattern found(FcFontMatch(m_Config, wanted.get(), &result));
    FcChar8* file = nullptr;
    int index = 0;
    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return *m_BuiltIn;
    if (FcPatternGetInteger(found.get(), FC_INDEX, 0, &index) != FcResultMatch) index = 0;
    return Face(reinterpret_cast<const char*>(file), index);
}

const FontFace& FontCatalogue::Face(const char* file, int index)
{
    const auto [place, isNew] = m_Faces.try_emplace({file, index});
    if (isNew) place->second = Open(file, index);
    return place->second ? *place->second : *m_BuiltIn;
}

std::unique_ptr<FontFace> FontCatalogue::Open(const char* file, int index)
{
    auto outline = std::make_unique<FontFace::Outline>();
    if (FT_New_Face(m_FreeType, file, index, &outline->face) != 0) {
        outline->face = nullptr;
        return nullptr;
    }
    const FT_Face face = outline->face;
    if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) return nullptr;
    if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0)
        outline->isSymbolFont = FT_Select_Charmap(face, FT_ENCODING_MS_SYMBOL) == 0;

    const FontMetrics metrics = MetricsOf(face);
    const int missingAdvance = outline->Advance(0, metrics.unitsPerEm / 2);
    return std::unique_ptr<FontFace>(
        new FontFace(std::move(outline), metrics, missingAdvance, FromUtf8(file), index));
}

FontFace::FontFace(std::unique_ptr<Outline> outline, const FontMetrics& metrics, int missingAdvance,
                   std::wstring file, int index)
    : m_Metrics(metrics), m_Outline(std::move(outline)), m_File(std::move(file)), m_Index(index)
{
    m_MissingPage.fill(missingAdvance);
}

FontFace::~FontFace()
{
    for (const auto& page : m_Pages) {
        const std::int32_t* advances = page.load(std::memory_order_relaxed);
        if (advances != m_MissingPage.data()) delete[] advances;
    }
}

const std::int32_t* FontFace::LoadPage(std::size_t page) const
{
    if (!m_Outline) return m_MissingPage.data();
    const std::lock_guard hold(FontCatalogue::Instance().m_Mutex);
    if (const std::int32_t* advances = m_Pages[page].load(std::memory_order_relaxed)) return advances;

    std::array<std::int32_t, PAGE_SIZE> advances = m_MissingPage;
    bool isEmpty = true;
    for (std::size_t i = 0; i < PAGE_SIZE; ++i) {
        const FT_UInt glyph = m_Outline->Glyph(static_cast<char32_t>(page << PAGE_BITS | i));
        if (glyph == 0) continue;
        isEmpty = false;
        advances[i] = m_Outline->Advance(glyph, m_MissingPage[0]);
    }
    const std::int32_t* loaded = m_MissingPage.data();
    if (!isEmpty) {
        auto* copy = new std::int32_t[PAGE_SIZE];
        std::copy(advances.begin(), advances.end(), copy);
        loaded = copy;
    }
    m_Pages[page].store(loaded, std::memory_order_release);
    return loaded;
}

std::int64_t FontFace::Width(std::wstring_view text) const
{
    std::int64_t width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto character = static_cast<char32_t>(text[i]);
        const bool isHigh = character >= 0xD800 && character <= 0xDBFF && i + 1 < text.size();
        if (isHigh && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            ++i;
            character = 0x10000 + ((character - 0xD800) << 10) + (static_cast<char32_t>(text[i]) - 0xDC00);
        }
        width += Advance(character);
    }
    return width;
}

const FontFace& FindFont(const std::wstring& name, bool bold, bool italic)
{
    if (t_LastFont.Is(name, bold, italic)) return *t_LastFont.face;
    const FontFace& face = FontCatalogue::Instance().Find(name, bold, italic);
    t_LastFont.Set(name, bold, italic, face);
    return face;
}
