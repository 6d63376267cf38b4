// What only the software device promises; others lie within a pixel of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "platform/raster/SlowRaster.h"

using namespace SlowRaster;

TEST(WideLines, CoverWhatIsNearerThanHalfTheirWidth)
{
    // Round caps and joins: the union of discs along the way. Pixels on its very edge are left open.
    constexpr double EDGE = 1e-6;
    Paper paper;
    Points points;
    for (int i = 0; i < 300; ++i) {
        const int width = 2 + i % 17;
        CPen pen(PS_SOLID, width, INK_COLOR);
        paper.dc.SelectObject(&pen);
        std::vector<CPoint> path = points.Some(3);
        for (CPoint& p : path) p = {p.x % 5000, p.y % 5000};
        paper.Clear();
        paper.dc.Polyline(path.data(), 3);
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x) {
                double distance = 1e9;
                for (std::size_t s = 0; s < 2; ++s) {
                    const double ux = path[s + 1].x - path[s].x, uy = path[s + 1].y - path[s].y;
                    const double px = x - path[s].x, py = y - path[s].y, square = ux * ux + uy * uy;
                    const double t = square > 0 ? std::clamp((px * ux + py * uy) / square, 0.0, 1.0) : 0;
                    distance = std::min(distance, std::hypot(px - t * ux, py - t * uy));
                }
                if (std::fabs(distance - width / 2.0) < EDGE) continue;
                ASSERT_EQ(paper.At(x, y) == INK, distance < width / 2.0) << i << ": " << x << ',' << y;
            }
        paper.dc.SelectObject(static_cast<CPen*>(nullptr));
    }
}

TEST(Text, TurnedByAnyAngleKeepsItsInk)
{
    const auto inkAt = [](int escapement) {
        constexpr int SIZE = 200;
        CBitmap bitmap;
        CDC dc;
        CFont font;
        EXPECT_TRUE(bitmap.CreateBitmap(SIZE, SIZE));
        EXPECT_TRUE(font.CreateFontW(24, 0, escapement, 0, FW_NORMAL, false, false, false, ANSI_CHARSET, 0, 0,
                                     0, 0, L"Liberation Sans"));
        dc.SelectObject(&bitmap);
        dc.SelectObject(&font);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(0xFFFFFF);
        dc.SetTextAlign(TA_BASELINE);
        dc.TextOutW(SIZE / 2, SIZE / 2, L"EEEE", 4);
        double ink = 0;
        for (int i = 0; i < SIZE * SIZE; ++i) ink += bitmap.Pixels()[i] & 0xFF;
        return ink;
    };
    for (int escapement = 150; escapement < 3600; escapement += 300)
        EXPECT_NEAR(inkAt(escapement) / inkAt(0), 1, 0.03) << escapement;
}
