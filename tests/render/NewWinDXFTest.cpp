#include "render/NewWinDXF.h"

#include "clip/DXFClipContext.h"
#include "model/DXFCircle.h"
#include "model/DXFInsert.h"
#include "model/DXFLine.h"
#include "model/DXFPoint.h"
#include "model/DXFSolid.h"
#include "render/DrawnScene.h"

#include <random>

using namespace DrawnScene;

namespace {

/// A point that counts how often it is drawn.
class CountedPoint : public DXFPoint {
public:
    CountedPoint(double x, double y, int& count) : DXFPoint(x, y, 0), m_Count(&count) {}
    DXFPoint* Copy() const override { return new CountedPoint(*this); }
    void Write(DXFWriter& writer) const override
    {
        ++*m_Count;
        DXFPoint::Write(writer);
    }

private:
    int* m_Count;
};

} // namespace

class CachedView : public testing::Test {
protected:
    static constexpr int SIDE = 60;

    CachedView()
    {
        EXPECT_TRUE(m_Bitmap.CreateBitmap(SIDE, SIDE));
        m_DC.SelectObject(&m_Bitmap);
        m_Near = m_Document.AddLayer(L"NEAR");
        m_Far = m_Document.AddLayer(L"FAR");
        m_Near->Add(new CountedPoint(5, 5, m_Drawn));
        m_Far->Add(new DXFPoint(1000, 1000, 0));
    }
    /// How often the near point was drawn for a paint.
    int Paint(const View& extents = {{0, 0}, {10, 10}}, const CRect& rect = CRect(0, 0, SIDE, SIDE))
    {
        const int before = m_Drawn;
        m_View.Draw(&m_DC, extents, rect);
        return m_Drawn - before;
    }

    DXF m_Document;
    DXFLayer* m_Near;
    DXFLayer* m_Far;
    int m_Drawn = 0;
    CBitmap m_Bitmap;
    CDC m_DC;
    NewWinDXF m_View{&m_Document};
};

TEST_F(CachedView, DrawsOnceForEqualPaints)
{
    EXPECT_EQ(m_View.GetDXF(), &m_Document);
    EXPECT_EQ(Paint(), 1);
    // Row 60 - 5 * 6 - on white.
    EXPECT_EQ(m_Bitmap.Row(30)[30], 0U);
    EXPECT_EQ(m_Bitmap.Row(0)[0], 0xFFFFFFU);
    m_DC.FillSolidRect(CRect(0, 0, SIDE, SIDE), 0x123456);
    EXPECT_EQ(Paint(), 0);
    EXPECT_EQ(m_Bitmap.Row(30)[30], 0U);
    EXPECT_EQ(m_Bitmap.Row(0)[0], 0xFFFFFFU);
}

TEST_F(CachedView, DrawsAnewWhenWhatIsSeenChanges)
{
    Paint();
    EXPECT_EQ(Paint({{0, 0}, {11, 10}}), 1) << "another view";
    EXPECT_EQ(Paint({{0, 0}, {11, 10}}, CRect(0, 0, SIDE, SIDE - 1)), 1) << "another rectangle";
    EXPECT_EQ(Paint(), 1);
    m_Near->Add(new DXFPoint(1, 1, 0));
    EXPECT_EQ(Paint(), 1) << "an edit in view";
    m_Document.AddLayer(L"NEW");
    EXPECT_EQ(Paint(), 1) << "another set of layers";
    m_Near->SetVisible(false);
    EXPECT_EQ(Paint(), 0);
    EXPECT_EQ(m_Bitmap.Row(30)[30], 0xFFFFFFU) << "a layer hidden";
    m_Near->SetVisible(true);
    EXPECT_EQ(Paint(), 1);
    m_View.SetOption(DrawingOption::All(0));
    EXPECT_EQ(Paint(), 1) << "other options";
    EXPECT_EQ(m_Bitmap.Row(0)[0], 0U) << "their background";
    EXPECT_EQ(Paint(), 0);
}

TEST_F(CachedView, DoesNotCareForEditsOutOfView)
{
    Paint();
    m_Far->Add(new DXFPoint(1001, 1000, 0));
    EXPECT_EQ(Paint(), 0);
}

TEST_F(CachedView, MeasuresBlocksAnewWhenTheDocumentWasTouched)
{
    DXFBlock* block = m_Document.AddBlock(L"B");
    block->SetBasePoint({1000, 1000, 0});
    block->GetDXF()->Add(new DXFPoint(1000, 1000, 0));
    DXFInsert insert(L"B", {500, 500, 0}, 0);
    insert.SetDXF(&m_Document);
    m_Far->Add(insert.Copy());
    m_View.SetOption({.composeInserts = true});
    Paint();
    // It is shown at 503 - 1000 + 500 = 3.
    block->GetDXF()->Add(new DXFPoint(503, 503, 0));
    EXPECT_EQ(Paint(), 0);
    m_Document.AddLayer(L"TOUCH");
    EXPECT_EQ(Paint(), 1);
    EXPECT_EQ(m_Bitmap.Row(60 - 3 * 6)[3 * 6], 0U);
}

TEST_F(CachedView, NoticesLayersThatClippingRemoved)
{
    Paint();
    DXFClipContext context{-1, -1, 10, 10, nullptr};
    const unsigned id = m_Document.ModifiedID();
    m_Document.Clip(context, GO);
    ASSERT_EQ(m_Document.ModifiedID(), id);
    EXPECT_EQ(Paint(), 1);
    context = {20, 20, 30, 30, nullptr};
    m_Document.Clip(context, GO);
    EXPECT_EQ(Paint(), 0);
    EXPECT_EQ(m_Bitmap.Row(30)[30], 0xFFFFFFU);
}

TEST_F(CachedView, PaintsTheLastPictureForARectangleOfNoSize)
{
    Paint();
    m_DC.FillSolidRect(CRect(0, 0, SIDE, SIDE), 0x123456);
    EXPECT_EQ(Paint({{0, 0}, {1, 1}}, CRect(0, 0, 0, 10)), 0);
    EXPECT_EQ(m_Bitmap.Row(30)[30], 0U);
    EXPECT_EQ(m_Bitmap.Row(59)[59], 0xFFFFFFU);
}

TEST_F(CachedView, PaintsAtTheOriginWhateverTheRectanglesIs)
{
    Paint({{0, 0}, {10, 10}}, CRect(10, 0, 40, 30));
    // 30 x 30 pixels at the origin; the white rectangle and the point lie 10 to the right in them.
    EXPECT_EQ(m_Bitmap.Row(15)[25], 0U);
    EXPECT_EQ(m_Bitmap.Row(0)[10], 0xFFFFFFU);
}

TEST_F(CachedView, LivesBesideAnotherViewOfTheDocument)
{
    NewWinDXF other(&m_Document);
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(SIDE, SIDE));
    CDC dc;
    dc.SelectObject(&bitmap);
    Paint();
    const View elsewhere({900, 900}, {1100, 1100});
    other.Draw(&dc, elsewhere, CRect(0, 0, SIDE, SIDE));
    EXPECT_EQ(Paint(), 0);
    m_Near->Add(new DXFPoint(1, 1, 0));
    other.Draw(&dc, {{0, 0}, {10, 10}}, CRect(0, 0, SIDE, SIDE));
    EXPECT_EQ(Paint(), 1);
}

TEST_F(CachedView, IsEqualToAnUncachedDrawAfterAnyEdits)
{
    std::mt19937 random(7);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    const auto place = [&] {
        return P3(between(-20, 40), between(-20, 40), 0);
    };
    View extents({0, 0}, {10, 10});
    for (const DrawingOption& option : {DrawingOption(), DrawingOption::All(0xFFFFFF)}) {
        m_View.SetOption(option);
        for (int round = 0; round < 300; ++round) {
            DXFLayer* layer = m_Document[std::wstring(L"L") + std::to_wstring(random() % 5)];
            switch (random() % 8) {
            case 0:
                m_Document.Add(L"L" + std::to_wstring(random() % 5), new DXFLine(place(), place()), true);
                break;
            case 1:
                m_Document.Add(L"L" + std::to_wstring(random() % 5), new DXFCircle(place(), between(1, 9)),
                               true);
                break;
            case 2:
                if (layer) layer->Move(between(-9, 9), between(-9, 9), 0);
                break;
            case 3:
                if (layer) layer->SetVisible(!layer->IsVisible());
                break;
            case 4:
                if (layer && random() % 3 == 0) (void)m_Document.RemoveLayer(layer->Name());
                break;
            case 5:
                extents = View(place(), place());
                break;
            case 6:
                if (layer && layer->NumEntities() > 0) layer->Remove((*layer)[std::size_t{0}]);
                break;
            default:
                break;
            }
            Paint(extents);
            CBitmap bitmap;
            ASSERT_TRUE(bitmap.CreateBitmap(SIDE, SIDE));
            CDC dc;
            dc.SelectObject(&bitmap);
            NewWinDXF fresh(&m_Document);
            fresh.SetOption(option);
            fresh.Draw(&dc, extents, CRect(0, 0, SIDE, SIDE));
            ASSERT_TRUE(std::equal(bitmap.Pixels(), bitmap.Pixels() + SIDE * SIDE, m_Bitmap.Pixels()))
                << round;
        }
    }
}
