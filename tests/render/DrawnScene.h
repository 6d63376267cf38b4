#pragma once

#include "model/DXF.h"
#include "platform/CDC.h"
#include "render/WinDXFDrawer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

/// Pictures of drawings, for tests that compare pixels.
namespace DrawnScene {
using P3 = GTL::Point3D<double>;
using View = GTL::Extents2D<double>;
inline const std::atomic<bool> GO{true};

/// The picture of a drawing on black.
inline std::vector<std::uint32_t> PictureOf(const DXF& drawing, const View& view, const CRect& rect,
                                            const DrawingOption& option)
{
    CBitmap bitmap;
    EXPECT_TRUE(bitmap.CreateBitmap(rect.Width(), rect.Height()));
    CDC dc;
    dc.SelectObject(&bitmap);
    WinDXFDrawer drawer(option);
    EXPECT_TRUE(bool(drawer.Init(&dc, view, rect)));
    drawer.Draw(drawing, GO);
    return {bitmap.Pixels(), bitmap.Pixels() + rect.Width() * rect.Height()};
}

/// The number of pixels of one picture that have no drawn pixel of the other next to them.
inline int Strangers(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b, int width)
{
    const int height = static_cast<int>(a.size()) / width;
    const auto isNear = [&](int x, int y) {
        for (int v = std::max(y - 1, 0); v <= std::min(y + 1, height - 1); ++v)
            for (int u = std::max(x - 1, 0); u <= std::min(x + 1, width - 1); ++u)
                if (b[static_cast<std::size_t>(v * width + u)] != 0) return true;
        return false;
    };
    int strangers = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            strangers += a[static_cast<std::size_t>(y * width + x)] != 0 && !isNear(x, y) ? 1 : 0;
    return strangers;
}
} // namespace DrawnScene
