#include "platform/win32/FontTables.h"

#include <algorithm>
#include <utility>

namespace {
constexpr std::size_t UNITS_PER_EM = 18;    // in head
constexpr std::size_t HHEA_ASCENT = 4;      // in hhea, the descent after it
constexpr std::size_t LONG_METRICS = 34;    // in hhea
constexpr std::size_t GLYPH_COUNT = 4;      // in maxp
constexpr std::size_t OS2_CAP_HEIGHT = 88;  // from version 2 on
constexpr std::size_t OS2_WIN_ASCENT = 74;  // the descent after it
constexpr std::size_t LONG_METRIC_SIZE = 4; // in hmtx: advance and left side bearing

/// Platforms and encodings of cmap's subtables, in the order of preference: all of Unicode, its first 65536,
/// symbols.
enum MAP_KIND { NO_MAP, SYMBOLS, BASIC, FULL };

MAP_KIND KindOf(std::uint32_t platform, std::uint32_t encoding)
{
    constexpr std::uint32_t UNICODE_PLATFORM = 0;
    constexpr std::uint32_t WINDOWS_PLATFORM = 3;
    if (platform == UNICODE_PLATFORM && encoding != 5) return encoding == 4 || encoding == 6 ? FULL : BASIC;
    if (platform != WINDOWS_PLATFORM) return NO_MAP;
    switch (encoding) {
    case 0:
        return SYMBOLS;
    case 1:
        return BASIC;
    case 10:
        return FULL;
    default:
        return NO_MAP;
    }
}
} // namespace

bool FontTables::IsSound() const
{
    return head.U16(UNITS_PER_EM) != 0 && hhea.U16(LONG_METRICS) != 0 && hmtx.Size() >= LONG_METRIC_SIZE;
}

bool FontTables::HasCapHeight() const
{
    constexpr std::uint32_t FIRST_VERSION = 2;
    return os2.U16(0) >= FIRST_VERSION && os2.S16(OS2_CAP_HEIGHT) > 0;
}

FontMetrics FontTables::Metrics(int otherwise) const
{
    FontMetrics metrics{};
    metrics.unitsPerEm = static_cast<int>(head.U16(UNITS_PER_EM));
    metrics.ascent = static_cast<int>(os2.U16(OS2_WIN_ASCENT));
    metrics.descent = static_cast<int>(os2.U16(OS2_WIN_ASCENT + 2));
    metrics.capHeight = HasCapHeight() ? os2.S16(OS2_CAP_HEIGHT) : otherwise;
    if (metrics.ascent + metrics.descent != 0) return metrics;
    metrics.ascent = hhea.S16(HHEA_ASCENT);
    metrics.descent = -hhea.S16(HHEA_ASCENT + 2);
    return metrics;
}

TableOutline::TableOutline(FontTables tables) : m_Tables(std::move(tables))
{
    ChooseMap();
}

void TableOutline::ChooseMap()
{
    constexpr std::size_t HEADER_SIZE = 4;
    constexpr std::size_t RECORD_SIZE = 8;
    const FontTable& cmap = m_Tables.cmap;
    const std::size_t most = cmap.Size() / RECORD_SIZE;
    MAP_KIND best = NO_MAP;
    for (std::size_t i = 0; i < std::min<std::size_t>(cmap.U16(2), most); ++i) {
        const std::size_t record = HEADER_SIZE + RECORD_SIZE * i;
        const MAP_KIND kind = KindOf(cmap.U16(record), cmap.U16(record + 2));
        const std::size_t map = cmap.U32(record + 4);
        const std::uint32_t format = cmap.U16(map);
        const bool isKnown = format == 4 || format == 6 || format == 12 || format == 13;
        if (!isKnown || kind < best || kind == NO_MAP) continue;
        best = kind;
        m_Map = map;
        m_Format = format;
    }
    m_IsSymbolFont = best == SYMBOLS;
}

std::optional<std::int32_t> TableOutline::Advance(char32_t character) const
{
    const std::uint32_t glyph = Glyph(character);
    if (glyph == 0) return std::nullopt;
    return GlyphAdvance(glyph);
}

std::uint32_t TableOutline::Glyph(char32_t character) const
{
    // The characters of a symbol font lie at U+F000 and above.
    constexpr char32_t SYMBOL_BASE = 0xF000;
    const std::uint32_t glyph = MappedGlyph(character);
    return glyph == 0 && m_IsSymbolFont && character <= 0xFF ? MappedGlyph(SYMBOL_BASE + character) : glyph;
}

std::uint32_t TableOutline::MappedGlyph(char32_t character) const
{
    std::uint32_t glyph = 0;
    if (m_Map == 0) return 0;
    if (m_Format == 4) glyph = BySegments(character);
    if (m_Format == 6) glyph = ByTrimmedTable(character);
    if (m_Format >= 12) glyph = ByGroups(character, m_Format == 13);
    return glyph < m_Tables.maxp.U16(GLYPH_COUNT) ? glyph : 0;
}

/// Format 4: segments in the order of their last characters, each with a shift or a list of glyphs.
std::uint32_t TableOutline::BySegments(char32_t character) const
{
    const FontTable& cmap = m_Tables.cmap;
    if (character > 0xFFFF) return 0;
    const std::size_t twice = cmap.U16(m_Map + 6) & ~1u;
    const std::size_t ends = m_Map + 14;
    std::size_t low = 0;
    for (std::size_t high = twice / 2; low < high;) {
        const std::size_t middle = (low + high) / 2;
        if (cmap.U16(ends + 2 * middle) < character)
            low = middle + 1;
        else
            high = middle;
    }
    if (2 * low >= twice) return 0;
    const std::size_t starts = ends + twice + 2;
    const std::uint32_t first = cmap.U16(starts + 2 * low);
    if (character < first) return 0;
    const std::uint32_t shift = cmap.U16(starts + twice + 2 * low);
    const std::size_t listAt = starts + 2 * twice + 2 * low;
    const std::uint32_t list = cmap.U16(listAt);
    if (list == 0 || list == 0xFFFF) return list == 0 ? (character + shift) & 0xFFFF : 0;
    const std::uint32_t glyph = cmap.U16(listAt + list + 2 * (character - first));
    return glyph == 0 ? 0 : (glyph + shift) & 0xFFFF;
}

/// Format 6: a list of glyphs from one character on.
std::uint32_t TableOutline::ByTrimmedTable(char32_t character) const
{
    const FontTable& cmap = m_Tables.cmap;
    const std::uint32_t first = cmap.U16(m_Map + 6);
    if (character < first || character - first >= cmap.U16(m_Map + 8)) return 0;
    return cmap.U16(m_Map + 10 + 2 * std::size_t{character - first});
}

/// Formats 12 and 13: groups in the order of their characters, each with its first glyph or, 13, its only
/// one.
std::uint32_t TableOutline::ByGroups(char32_t character, bool areSame) const
{
    constexpr std::size_t GROUP_SIZE = 12;
    const FontTable& cmap = m_Tables.cmap;
    const std::size_t groups = m_Map + 16;
    std::size_t low = 0;
    for (std::size_t high = std::min<std::size_t>(cmap.U32(m_Map + 12), cmap.Size() / GROUP_SIZE);
         low < high;) {
        const std::size_t middle = (low + high) / 2;
        const std::size_t group = groups + GROUP_SIZE * middle;
        if (character < cmap.U32(group)) {
            high = middle;
        } else if (character > cmap.U32(group + 4)) {
            low = middle + 1;
        } else {
            const std::uint32_t glyph = cmap.U32(group + 8);
            return areSame ? glyph : glyph + (character - cmap.U32(group));
        }
    }
    return 0;
}

/// Glyphs behind the long metrics have the advance of the last one.
std::int32_t TableOutline::GlyphAdvance(std::uint32_t glyph) const
{
    const std::uint32_t last = m_Tables.hhea.U16(LONG_METRICS) - 1;
    return static_cast<std::int32_t>(
        m_Tables.hmtx.U16(LONG_METRIC_SIZE * std::size_t{std::min(glyph, last)}));
}
