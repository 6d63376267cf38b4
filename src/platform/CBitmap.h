#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/CSize.h"
#include "platform/Export.h"

class CDC;

/// Pixels in memory: 32 bits each, 0x00RRGGBB (the order of a 32-bit DIB, not that of a colour word), rows
/// from top to bottom, each from left to right without padding.
class HALYARD_API CBitmap {
public:
    /// Larger bitmaps are refused.
    static constexpr int MAX_SIDE = 32768;
    static constexpr std::int64_t MAX_PIXELS = std::int64_t{1} << 28;

    CBitmap() = default;
    virtual ~CBitmap() = default;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    /// A black bitmap of that size in place of the one that was held. False, and none, for a side below 1 or
    /// above MAX_SIDE, for more than MAX_PIXELS, and when there is not the memory.
    [[nodiscard]] bool CreateBitmap(int width, int height);

    /// The same; every context takes bitmaps of the one kind there is, so it may be null.
    [[nodiscard]] bool CreateCompatibleBitmap(CDC* dc, int width, int height);

    /// Gives the pixels back. A context that has the bitmap selected then draws nothing. False when none were
    /// held.
    bool DeleteObject();

    bool IsCreated() const { return m_Pixels != nullptr; }
    /// 0 when nothing is held.
    int Width() const { return m_Width; }
    int Height() const { return m_Height; }

    /// Width() * Height() of them; null when nothing is held. Valid until the bitmap is made anew or deleted.
    std::uint32_t* Pixels() { return m_Pixels.get(); }
    const std::uint32_t* Pixels() const { return m_Pixels.get(); }
    /// Start of a row, 0 <= y < Height().
    std::uint32_t* Row(int y) { return m_Pixels.get() + static_cast<std::ptrdiff_t>(y) * m_Width; }
    const std::uint32_t* Row(int y) const
    {
        return m_Pixels.get() + static_cast<std::ptrdiff_t>(y) * m_Width;
    }

private:
    std::unique_ptr<std::uint32_t[]> m_Pixels;
    int m_Width = 0;
    int m_Height = 0;
};
