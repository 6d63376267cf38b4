#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>

#include "platform/FontPixels.h"
#include "platform/raster/GlyphSource.h"

/// A face at a size: advances, and images in the directions that were asked for.
class SizedFace {
public:
    SizedFace(const FontFace& face, int ppem, std::shared_ptr<GlyphSource> source);

    /// In whole pixels.
    int Advance(char32_t character)
    {
        if (character < FEW && m_FewAdvances[character] != UNKNOWN) return m_FewAdvances[character];
        return FindAdvance(character);
    }

    /// Null when the size is too large for images, or there is no font engine's face. Valid until
    /// TextCache::Trim.
    const GlyphImage* Image(char32_t character, int tenthsOfDegree);

    /// Null for a face without a file.
    GlyphSource* Source() const { return m_Source.get(); }
    int Ppem() const { return m_Ppem; }
    const FontMetrics& Metrics() const { return m_Face.Metrics(); }
    /// Bytes that are kept, about.
    std::size_t Size() const { return m_Size; }

private:
    static constexpr std::size_t FEW = 256;
    static constexpr int UNKNOWN = -1;
    struct Images {
        std::array<const GlyphImage*, FEW> few{};
        std::unordered_map<char32_t, GlyphImage> all;
    };

    int FindAdvance(char32_t character);
    const GlyphImage* FindImage(Images& images, char32_t character, int tenthsOfDegree);

    const FontFace& m_Face;
    int m_Ppem;
    std::shared_ptr<GlyphSource> m_Source;
    std::array<int, FEW> m_FewAdvances;
    std::unordered_map<char32_t, int> m_Advances;
    std::map<int, Images> m_Images;
    int m_LastDirection = UNKNOWN;
    Images* m_LastImages = nullptr;
    std::size_t m_Size;
};

/// The glyphs and advances that texts of this process are drawn with, shared by all contexts. Bounded: when
/// it holds MAX_SIZE bytes or MAX_FACES faces, everything is forgotten and made anew as asked for.
class TextCache {
public:
    static constexpr std::size_t MAX_SIZE = std::size_t{32} << 20;
    static constexpr std::size_t MAX_FACES = 64;

    static TextCache& Instance();

    /// To be held around every use of the cache and of what it gives.
    std::mutex m_Mutex;

    SizedFace& Find(const FontFace& face, int ppem);
    /// Forgets everything when it has become too much. To be called between texts.
    void Trim();
    /// Bytes that are kept, about.
    std::size_t Size() const { return m_SizeOfOthers + (m_Last ? m_Last->Size() : 0); }

private:
    std::size_t m_SizeOfOthers = 0;
    SizedFace* m_Last = nullptr;
    const FontFace* m_LastFace = nullptr;
    std::map<const FontFace*, std::shared_ptr<GlyphSource>> m_Sources;
    std::map<std::pair<const FontFace*, int>, std::unique_ptr<SizedFace>> m_Faces;
};

/// Takes the next character off a text: a surrogate pair is one.
inline char32_t TakeCharacter(std::wstring_view& text)
{
    const auto first = static_cast<char32_t>(text[0]);
    text.remove_prefix(1);
    if (first < 0xD800 || first > 0xDBFF || text.empty()) return first;
    const auto second = static_cast<char32_t>(text[0]);
    if (second < 0xDC00 || second > 0xDFFF) return first;
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}
