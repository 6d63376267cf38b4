#include "platform/raster/TextCache.h"

#include <gtest/gtest.h>

#include "platform/CDC.h"

TEST(TextCache, IsBoundedWhateverIsDrawn)
{
    // 3600 directions of large glyphs would take far more than the bound.
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(200, 200));
    CDC dc;
    dc.SelectObject(&bitmap);
    const FontFace& face = FindFont(L"Liberation Sans", false, false);
    for (int escapement = 0; escapement < 3600; escapement += 9) {
        CFont font;
        ASSERT_TRUE(font.CreateFontW(400, 0, escapement, 0, 400, false, false, false, 0, 0, 0, 0, 0,
                                     L"Liberation Sans"));
        dc.SelectObject(&font);
        dc.TextOutW(100, 100, L"MW", 2);
        dc.SelectObject(static_cast<CFont*>(nullptr));
        TextCache& cache = TextCache::Instance();
        const std::lock_guard hold(cache.m_Mutex);
        ASSERT_LT(cache.Find(face, 14).Size(), TextCache::MAX_SIZE);
        ASSERT_LT(cache.Size(), TextCache::MAX_SIZE + (std::size_t{4} << 20));
    }
}
