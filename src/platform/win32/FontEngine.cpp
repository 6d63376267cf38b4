#include "platform/font/FontEngine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/FilePath.h"
#include "platform/win32/FontTables.h"
#include "platform/win32/WindowsApi.h"

namespace {
constexpr double USUAL_CAP_HEIGHT = 0.7; // of an em, where the font does not tell

/// A context to look at fonts with, and the font that is selected into it.
class FontContext {
public:
    explicit FontContext(const LOGFONTW& wanted)
        : m_Context(::CreateCompatibleDC(nullptr)), m_Font(::CreateFontIndirectW(&wanted))
    {
        if (IsOpen()) m_Before = ::SelectObject(m_Context, m_Font);
    }
    ~FontContext()
    {
        if (m_Before) ::SelectObject(m_Context, m_Before);
        if (m_Font) ::DeleteObject(m_Font);
        if (m_Context) ::DeleteDC(m_Context);
    }
    FontContext(const FontContext&) = delete;
    FontContext& operator=(const FontContext&) = delete;

    bool IsOpen() const { return m_Context && m_Font; }
    HDC Get() const { return m_Context; }

private:
    HDC m_Context;
    HFONT m_Font;
    HGDIOBJ m_Before = nullptr;
};

/// The system's number of a table.
constexpr DWORD TagOf(const char (&name)[5])
{
    DWORD tag = 0;
    for (int i = 3; i >= 0; --i) tag = tag << 8 | static_cast<unsigned char>(name[i]);
    return tag;
}

FontTable TableOf(HDC context, DWORD tag)
{
    constexpr DWORD LARGEST = 1u << 28;
    const DWORD size = ::GetFontData(context, tag, 0, nullptr, 0);
    if (size == GDI_ERROR || size == 0 || size > LARGEST) return {};
    std::vector<std::uint8_t> bytes(size);
    if (::GetFontData(context, tag, 0, bytes.data(), size) != size) return {};
    return FontTable(std::move(bytes));
}

FontTables TablesOf(HDC context)
{
    return {TableOf(context, TagOf("head")), TableOf(context, TagOf("hhea")),
            TableOf(context, TagOf("maxp")), TableOf(context, TagOf("OS/2")),
            TableOf(context, TagOf("hmtx")), TableOf(context, TagOf("cmap"))};
}

/// Which file a selected font stands in. The two functions are exported by gdi32 and declared nowhere.
struct FontFile {
    std::wstring name;
    int index = 0;
};

struct FontRealization {
    DWORD size;
    DWORD flags;
    DWORD cacheNumber;
    DWORD instance;
    DWORD fileCount;
    WORD faceIndex;
    WORD simulations;
};

struct FontFileRecord {
    FILETIME written;
    LARGE_INTEGER size;
    wchar_t path[1];
};

template <class Function>
Function FindInGdi(const char* name)
{
    const HMODULE gdi = ::GetModuleHandleW(L"gdi32.dll");
    return gdi ? reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(gdi, name))) : nullptr;
}

FontFile FileOf(HDC context)
{
    using GetRealization = BOOL(WINAPI*)(HDC, FontRealization*);
    using GetFile = BOOL(WINAPI*)(DWORD, DWORD, FontFileRecord*, SIZE_T, SIZE_T*);
    const auto getRealization = FindInGdi<GetRealization>("GetFontRealizationInfo");
    const auto getFile = FindInGdi<GetFile>("GetFontFileInfo");
    FontRealization realization = {};
    realization.size = sizeof realization;
    if (!getRealization || !getFile || !getRealization(context, &realization)) return {};

    constexpr std::size_t ROOM = sizeof(FontFileRecord) + 32768 * sizeof(wchar_t);
    std::vector<std::uint64_t> room(ROOM / sizeof(std::uint64_t));
    auto* record = reinterpret_cast<FontFileRecord*>(room.data());
    SIZE_T needed = 0;
    if (!getFile(realization.instance, 0, record, room.size() * sizeof(std::uint64_t), &needed)) return {};
    std::wstring name = record->path;
    // A name of the system's inside is one for us without its first part.
    constexpr std::wstring_view INSIDE = L"\\??\\";
    if (name.starts_with(INSIDE)) name.erase(0, INSIDE.size());
    return {std::move(name), realization.faceIndex};
}

/// The face's full name ("Arial Bold"), for where no file is told.
std::wstring FullNameOf(HDC context)
{
    const UINT size = ::GetOutlineTextMetricsW(context, 0, nullptr);
    if (size < sizeof(OUTLINETEXTMETRICW)) return {};
    std::vector<std::uint64_t> room(size / sizeof(std::uint64_t) + 1);
    auto* metrics = reinterpret_cast<OUTLINETEXTMETRICW*>(room.data());
    if (::GetOutlineTextMetricsW(context, size, metrics) == 0) return {};
    const auto offset = reinterpret_cast<std::size_t>(metrics->otmpFullName);
    if (offset == 0 || offset >= size) return {};
    return reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(metrics) + offset);
}

std::wstring FaceNameOf(HDC context)
{
    wchar_t name[LF_FACESIZE] = {};
    ::GetTextFaceW(context, LF_FACESIZE, name);
    return name;
}

/// Height of "H" in font units: its outline's at a size of one pixel a unit.
int CapHeightOf(const LOGFONTW& wanted, int unitsPerEm)
{
    LOGFONTW large = wanted;
    large.lfHeight = -unitsPerEm;
    const FontContext context(large);
    const MAT2 identity = {{0, 1}, {0, 0}, {0, 0}, {0, 1}};
    GLYPHMETRICS glyph = {};
    const bool isKnown =
        context.IsOpen()
        && ::GetGlyphOutlineW(context.Get(), L'H', GGO_METRICS, &glyph, 0, nullptr, &identity) != GDI_ERROR;
    if (isKnown && glyph.gmptGlyphOrigin.y > 0) return static_cast<int>(glyph.gmptGlyphOrigin.y);
    return static_cast<int>(USUAL_CAP_HEIGHT * unitsPerEm);
}

LOGFONTW Wanted(const FontName& name, BYTE charset)
{
    constexpr LONG SOME_HEIGHT = -64;
    LOGFONTW wanted = {};
    wanted.lfHeight = SOME_HEIGHT;
    wanted.lfWeight = name.isBold ? FW_BOLD : FW_NORMAL;
    wanted.lfItalic = name.isItalic ? 1 : 0;
    wanted.lfCharSet = charset;
    wanted.lfOutPrecision = OUT_TT_ONLY_PRECIS;
    const std::size_t length = std::min(name.family.find(L'\0'), name.family.size());
    name.family.copy(wanted.lfFaceName, std::min<std::size_t>(length, LF_FACESIZE - 1));
    return wanted;
}

class GdiMatch final : public FontMatch {
public:
    GdiMatch(const LOGFONTW& wanted, std::wstring file, int index)
        : m_Wanted(wanted), m_File(std::move(file)), m_Index(index)
    {
    }

    std::wstring Key() const override { return m_File + L'\0' + std::to_wstring(m_Index); }

    std::optional<OpenedFont> Open() const override
    {
        const FontContext context(m_Wanted);
        if (!context.IsOpen()) return std::nullopt;
        FontTables tables = TablesOf(context.Get());
        if (!tables.IsSound()) return std::nullopt;
        const int unitsPerEm = tables.Metrics(0).unitsPerEm;
        const FontMetrics metrics =
            tables.Metrics(tables.HasCapHeight() ? 0 : CapHeightOf(m_Wanted, unitsPerEm));
        auto outline = std::make_unique<TableOutline>(std::move(tables));
        const int missingAdvance = outline->MissingAdvance();
        return OpenedFont{std::move(outline), metrics, missingAdvance, m_File, m_Index};
    }

private:
    LOGFONTW m_Wanted;
    std::wstring m_File;
    int m_Index;
};

class GdiEngine final : public FontEngine {
public:
    std::unique_ptr<FontMatch> Match(const FontName& name) override
    {
        // An installed family is found whatever its characters. For the choice of one that stands in, the
        // system goes by the wanted characters, which are those of the user's language unless told.
        const LOGFONTW asNamed = Wanted(name, DEFAULT_CHARSET);
        const FontContext installed(asNamed);
        const bool isInstalled =
            installed.IsOpen() && FilePath::SameText(FaceNameOf(installed.Get()), asNamed.lfFaceName);
        return MatchOf(isInstalled ? asNamed : Wanted(name, ANSI_CHARSET));
    }

private:
    static std::unique_ptr<FontMatch> MatchOf(const LOGFONTW& wanted)
    {
        const FontContext context(wanted);
        if (!context.IsOpen()) return nullptr;
        FontFile file = FileOf(context.Get());
        if (file.name.empty()) file.name = FullNameOf(context.Get());
        if (file.name.empty()) return nullptr;
        return std::make_unique<GdiMatch>(wanted, std::move(file.name), file.index);
    }
};
} // namespace

std::unique_ptr<FontEngine> FontEngine::Make()
{
    return std::make_unique<GdiEngine>();
}
