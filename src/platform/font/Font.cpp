#include "platform/Font.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "platform/font/FontEngine.h"

/// The faces of this process. Lives to its end: faces are handed out as references, also to static objects.
class FontCatalogue {
public:
    static FontCatalogue& Instance();

    const FontFace& Find(const std::wstring& name, bool isBold, bool isItalic);

    /// Guards everything below and all use of the engine.
    std::mutex m_Mutex;

private:
    /// Hostile drawings may name any number of fonts; the names are forgotten when they become this many.
    static constexpr std::size_t MAX_NAMES = 4096;
    /// Longer names are looked up anew each time, by as much of their family.
    static constexpr std::size_t MAX_NAME_LENGTH = 512;

    /// Gives the engine's configuration back when the process ends; names asked for after that get the
    /// built-in measures.
    struct ConfigurationEnd {
        FontCatalogue& catalogue;
        ~ConfigurationEnd() { catalogue.CloseConfiguration(); }
    };

    FontCatalogue();
    void CloseConfiguration();
    const FontFace& LookUp(const FontName& name);
    std::unique_ptr<FontFace> Open(const FontMatch& match);

    std::unique_ptr<FontEngine> m_Engine;
    std::unordered_map<std::wstring, const FontFace*> m_Names;
    std::map<std::wstring, std::unique_ptr<FontFace>> m_Faces;
    std::unique_ptr<FontFace> m_BuiltIn;
};

namespace {
constexpr FontMetrics BUILT_IN_METRICS = {1000, 905, 212, 700};
constexpr int BUILT_IN_ADVANCE = 556;

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
} // namespace

FontCatalogue& FontCatalogue::Instance()
{
    static FontCatalogue* const catalogue = new FontCatalogue;
    static const ConfigurationEnd end{*catalogue};
    return *catalogue;
}

FontCatalogue::FontCatalogue() : m_Engine(FontEngine::Make())
{
    m_BuiltIn.reset(new FontFace(nullptr, BUILT_IN_METRICS, BUILT_IN_ADVANCE, {}, 0));
}

void FontCatalogue::CloseConfiguration()
{
    const std::lock_guard hold(m_Mutex);
    m_Engine->Close();
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
    const std::unique_ptr<FontMatch> match = m_Engine->Match(name);
    if (!match) return *m_BuiltIn;
    const auto [place, isNew] = m_Faces.try_emplace(match->Key());
    if (isNew) place->second = Open(*match);
    return place->second ? *place->second : *m_BuiltIn;
}

std::unique_ptr<FontFace> FontCatalogue::Open(const FontMatch& match)
{
    std::optional<OpenedFont> font = match.Open();
    if (!font) return nullptr;
    return std::unique_ptr<FontFace>(new FontFace(std::move(font->outline), font->metrics,
                                                  font->missingAdvance, std::move(font->file), font->index));
}

FontFace::FontFace(std::unique_ptr<FontOutline> outline, const FontMetrics& metrics, int missingAdvance,
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
        const auto advance = m_Outline->Advance(static_cast<char32_t>(page << PAGE_BITS | i));
        if (!advance) continue;
        isEmpty = false;
        advances[i] = *advance;
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
