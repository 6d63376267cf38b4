#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/CSize.h"
#include "platform/Export.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

class CDC;

/// Pixels in memory: 32 bits each, 0x00RRGGBB (the order of a 32-bit DIB, not that of a colour word), rows
/// from top to bottom, each from left to right without padding. On Windows a DIB section: a context that has
/// it selected takes it out of any other.
class HALYARD_API CBitmap {
public:
    /// Larger bitmaps are refused.
    static constexpr int MAX_SIDE = 32768;
    static constexpr std::int64_t MAX_PIXELS = std::int64_t{1} << 30;

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
    /// What was drawn before is in them; what is drawn later, after they were asked for again.
    std::uint32_t* Pixels() { return Finished(); }
    const std::uint32_t* Pixels() const { return Finished(); }
    /// Start of a row, 0 <= y < Height().
    std::uint32_t* Row(int y) { return Finished() + static_cast<std::ptrdiff_t>(y) * m_Width; }
    const std::uint32_t* Row(int y) const { return Finished() + static_cast<std::ptrdiff_t>(y) * m_Width; }

    /// What holds the pixels in the system (see SystemObjects); null when nothing is held.
    const std::shared_ptr<void>& Handle() const { return m_Handle; }

private:
#ifdef _WIN32
    /// GDI draws behind the caller's back: waits until it has.
    std::uint32_t* Finished() const;
#else
    std::uint32_t* Finished() const
    {
        return m_Pixels;
    }
#endif

    std::shared_ptr<void> m_Handle;
    std::uint32_t* m_Pixels = nullptr;
    int m_Width = 0;
    int m_Height = 0;
};

#endif
