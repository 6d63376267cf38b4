#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Font.h"
#include "platform/font/FontEngine.h"

/// A table of a TrueType or OpenType font, numbers big-endian. Past its end every number is 0.
class FontTable {
public:
    FontTable() = default;
    explicit FontTable(std::vector<std::uint8_t> bytes) : m_Bytes(std::move(bytes)) {}

    bool IsEmpty() const { return m_Bytes.empty(); }
    std::size_t Size() const { return m_Bytes.size(); }
    std::uint32_t U16(std::size_t at) const { return Number(at, 2); }
    std::uint32_t U32(std::size_t at) const { return Number(at, 4); }
    std::int32_t S16(std::size_t at) const { return static_cast<std::int16_t>(U16(at)); }

private:
    std::uint32_t Number(std::size_t at, std::size_t size) const
    {
        if (at > m_Bytes.size() || m_Bytes.size() - at < size) return 0;
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < size; ++i) number = number << 8 | m_Bytes[at + i];
        return number;
    }

    std::vector<std::uint8_t> m_Bytes;
};

/// The tables of a face that say how wide its characters are, by the published format of OpenType fonts.
struct FontTables {
    FontTable head;
    FontTable hhea;
    FontTable maxp;
    FontTable os2;
    FontTable hmtx;
    FontTable cmap;

    /// All that a face cannot do without is there.
    bool IsSound() const;
    /// Without the height of "H", which `otherwise` gives where OS/2 does not.
    FontMetrics Metrics(int otherwise) const;
    /// OS/2 tells the height of capital letters.
    bool HasCapHeight() const;
};

/// A face by its tables: characters by cmap (formats 4, 6, 12 and 13; of several the one with the most
/// characters), advances by hmtx.
class TableOutline final : public FontOutline {
public:
    explicit TableOutline(FontTables tables);

    std::optional<std::int32_t> Advance(char32_t character) const override;
    std::int32_t MissingAdvance() const { return GlyphAdvance(0); }
    const FontTables& Tables() const { return m_Tables; }

private:
    void ChooseMap();
    std::uint32_t Glyph(char32_t character) const;
    std::uint32_t MappedGlyph(char32_t character) const;
    std::uint32_t BySegments(char32_t character) const;
    std::uint32_t ByTrimmedTable(char32_t character) const;
    std::uint32_t ByGroups(char32_t character, bool areSame) const;
    std::int32_t GlyphAdvance(std::uint32_t glyph) const;

    FontTables m_Tables;
    std::size_t m_Map = 0; ///< Offset of the chosen subtable in cmap; 0 when there is none.
    std::uint32_t m_Format = 0;
    bool m_IsSymbolFont = false;
};
