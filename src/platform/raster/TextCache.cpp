#include "platform/raster/TextCache.h"

#include <algorithm>

namespace {
/// What a map's entry takes besides its value, about.
constexpr std::size_t ENTRY_OVERHEAD = 64;
} // namespace

SizedFace::SizedFace(const FontFace& face, int ppem, std::shared_ptr<GlyphSource> source)
    : m_Face(face), m_Ppem(ppem), m_Source(std::move(source)), m_Size(sizeof(SizedFace) + ENTRY_OVERHEAD)
{
    m_FewAdvances.fill(UNKNOWN);
}

int SizedFace::FindAdvance(char32_t character)
{
    if (character >= FEW) {
        const auto known = m_Advances.find(character);
        if (known != m_Advances.end()) return known->second;
    }
    const std::int64_t em = std::max(m_Face.Metrics().unitsPerEm, 1);
    const int advance =
        m_Source ? m_Source->Advance(character, m_Ppem)
                 : static_cast<int>((std::int64_t{2} * m_Face.Advance(character) * m_Ppem + em) / (2 * em));
    if (character < FEW) return m_FewAdvances[character] = advance;
    m_Size += ENTRY_OVERHEAD;
    return m_Advances[character] = advance;
}

const GlyphImage* SizedFace::Image(char32_t character, int tenthsOfDegree)
{
    if (!m_Source || m_Ppem > GlyphSource::MAX_IMAGE_PPEM) return nullptr;
    if (tenthsOfDegree != m_LastDirection) {
        const auto [place, isNew] = m_Images.try_emplace(tenthsOfDegree);
        if (isNew) m_Size += sizeof(Images) + ENTRY_OVERHEAD;
        m_LastImages = &place->second;
        m_LastDirection = tenthsOfDegree;
    }
    if (character < FEW && m_LastImages->few[character]) return m_LastImages->few[character];
    return FindImage(*m_LastImages, character, tenthsOfDegree);
}

const GlyphImage* SizedFace::FindImage(Images& images, char32_t character, int tenthsOfDegree)
{
    const auto [place, isNew] = images.all.try_emplace(character);
    if (isNew) {
        place->second = m_Source->Image(character, m_Ppem, tenthsOfDegree);
        m_Size += sizeof(GlyphImage) + ENTRY_OVERHEAD + place->second.coverage.size();
    }
    if (character < FEW) images.few[character] = &place->second;
    return &place->second;
}

TextCache& TextCache::Instance()
{
    // Never destroyed: static objects of a host may draw to the end.
    static TextCache* const s_Cache = new TextCache;
    return *s_Cache;
}

SizedFace& TextCache::Find(const FontFace& face, int ppem)
{
    if (m_Last && m_LastFace == &face && m_Last->Ppem() == ppem) return *m_Last;
    if (m_Last) m_SizeOfOthers += m_Last->Size();
    std::unique_ptr<SizedFace>& sized = m_Faces[{&face, ppem}];
    if (!sized) {
        const auto [source, isNew] = m_Sources.try_emplace(&face);
        if (isNew) source->second = GlyphSource::Open(face);
        sized = std::make_unique<SizedFace>(face, ppem, source->second);
    } else {
        m_SizeOfOthers -= sized->Size();
    }
    m_Last = sized.get();
    m_LastFace = &face;
    return *m_Last;
}

void TextCache::Trim()
{
    if (Size() < MAX_SIZE && m_Sources.size() < MAX_FACES) return;
    m_Last = nullptr;
    m_Faces.clear();
    m_Sources.clear();
    m_SizeOfOthers = 0;
}
