#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Export.h"

class FontOutline;

/// Vertical measures of a face in font units, y up, independent of any size in pixels.
struct FontMetrics {
    int unitsPerEm;
    int ascent;    ///< Above the base line: OS/2 usWinAscent; hhea's when usWinAscent + usWinDescent is 0.
    int descent;   ///< Below the base line, positive down: OS/2 usWinDescent; hhea's as above.
    int capHeight; ///< OS/2 sCapHeight (version 2 or above, if positive), else height of "H", else 0.7 em.
};

/// One face (a regular, bold, italic ... cut) of an installed font. Made by the catalogue and kept for the
/// life of the process, so that a reference to it stays valid.
///
/// Threads: all members may be called from any thread at the same time. Advances stand in pages of 256 code
/// points that are made when they are first asked for, under a mutex, and are never changed once they are
/// visible; reading one takes no lock.
class HALYARD_API FontFace {
public:
    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    [[nodiscard]] const FontMetrics& Metrics() const { return m_Metrics; }

    /// Unhinted advance of a character in font units. A character that the face lacks takes the room of the
    /// face's box for missing characters (.notdef).
    [[nodiscard]] int Advance(char32_t character) const
    {
        const std::size_t page = character >> PAGE_BITS;
        if (page >= PAGE_COUNT) return m_MissingPage[0];
        const std::int32_t* advances = m_Pages[page].load(std::memory_order_acquire);
        if (!advances) advances = LoadPage(page);
        return advances[character & (PAGE_SIZE - 1)];
    }

    /// Sum of the advances of a text's characters in font units: no kerning, no shaping. A surrogate pair is
    /// one character.
    [[nodiscard]] std::int64_t Width(std::wstring_view text) const;

    /// File that holds the face; empty for the built-in measures that stand in when no font is installed.
    [[nodiscard]] const std::wstring& File() const { return m_File; }

    /// Number of the face in its file.
    [[nodiscard]] int Index() const { return m_Index; }

private:
    friend class FontCatalogue;

    static constexpr unsigned PAGE_BITS = 8;
    static constexpr std::size_t PAGE_SIZE = std::size_t{1} << PAGE_BITS;
    static constexpr std::size_t PAGE_COUNT = 0x110000 >> PAGE_BITS;

    FontFace(std::unique_ptr<FontOutline> outline, const FontMetrics& metrics, int missingAdvance,
             std::wstring file, int index);
    const std::int32_t* LoadPage(std::size_t page) const;

    FontMetrics m_Metrics;
    std::unique_ptr<FontOutline> m_Outline;
    std::wstring m_File;
    int m_Index;
    /// Stands for every page without a single character of the face: the pages that take memory are those
    /// that the font's own file fills.
    std::array<std::int32_t, PAGE_SIZE> m_MissingPage;
    mutable std::array<std::atomic<const std::int32_t*>, PAGE_COUNT> m_Pages{};
};

/// The face for a font name as drawings carry it: a family ("Arial"), a family with marks
/// ("ARIAL|B0|I0|C0|P34"), a file name ("arial.ttf", "txt.shx"), a style's name ("Standard") or nothing.
///
/// The family is what stands before the first "|", without the suffix of a font file and without blanks
/// around it; its case does not matter. Bold and italic are chosen by the arguments or by the marks "|b1" and
/// "|i1" in any case. Families are found by the system (fontconfig, GDI), which also chooses the replacement
/// of one that is not installed: always the same one on one machine, whatever the language of the user. When
/// no font is installed at all, the built-in measures are given: 1000 units an em, ascent 905, descent 212,
/// capital height 700, every advance 556.
///
/// May be called from any thread; repeated look-ups of a name are one comparison or one hash look-up. What is
/// kept is bounded: a face for each installed font file that was asked for, and a few thousand names.
[[nodiscard]] HALYARD_API const FontFace& FindFont(const std::wstring& name, bool bold, bool italic);
