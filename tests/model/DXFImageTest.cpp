#include "model/DXFImage.h"
#include "platform/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace {

using P = GTL::Point3D<double>;
using P2 = GTL::Point2D<double>;

DXFImage Placed()
{
    DXFImage image;
    image.SetInsertPoint(P(100, 200, 1));
    image.SetUVector(P(2, 0, 0));
    image.SetVVector(P(0, 3, 0));
    image.SetSize(40, 30);
    return image;
}

TEST(Images, ShowWhatTheirBoundaryLeaves)
{
    using Points = std::vector<P2>;
    const Points whole = {{0, 0}, {40, 0}, {40, 30}, {0, 30}};
    const struct {
        DXFImage::CLIPTYPE type;
        Points boundary;
        Points pixels; // (u, v), v upwards
    } rows[] = {
        {DXFImage::CLIP_RECTANGLE, {}, whole},
        {DXFImage::CLIP_RECTANGLE, {{5, 5}}, whole},
        {DXFImage::CLIP_POLYGON, {{5, 5}, {6, 6}}, whole},
        // The corner pixels count, rows run from the top: the last row, 29, ends at v = 0.
        {DXFImage::CLIP_RECTANGLE, {{0, 0}, {39, 29}}, whole},
        {DXFImage::CLIP_RECTANGLE, {{10, 2}, {19, 29}}, {{10, 0}, {20, 0}, {20, 28}, {10, 28}}},
        {DXFImage::CLIP_RECTANGLE, {{19, 29}, {10, 2}}, {{10, 0}, {20, 0}, {20, 28}, {10, 28}}},
        {DXFImage::CLIP_POLYGON, {{1, 1}, {9, 1}, {1, 7}}, {{1, 1}, {9, 1}, {1, 7}}},
    };
    for (const auto& row : rows) {
        DXFImage image = Placed();
        image.Extents();
        image.SetClipBoundary(row.type, row.boundary);
        const std::vector<P> outline = image.Outline();
        ASSERT_EQ(outline.size(), row.pixels.size());
        GTL::Extents3D<double> box;
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const P should(100 + 2 * row.pixels[i].X(), 200 + 3 * row.pixels[i].Y(), 1);
            EXPECT_EQ(outline[i], should);
            box.Update(should);
        }
        EXPECT_EQ(image.Extents(), box);
    }
}

TEST(Images, VectorsFollowTheLinearPart)
{
    DXFImage image = Placed();
    image.Extents();
    image.Transform(GTL::Transformation<P>().RotateZ(90).Scale(2, 2, 2).Translate(1, 1, 1));
    EXPECT_EQ(image.InsertPoint(), P(-399, 201, 3));
    EXPECT_EQ(image.UVector(), P(0, 4, 0));
    EXPECT_EQ(image.VVector(), P(-6, 0, 0));
    EXPECT_EQ(image.Extents().MinPnt(), P(-399 - 180, 201, 3));
    EXPECT_EQ(image.Extents().MaxPnt(), P(-399, 201 + 160, 3));
}

class ImageFiles : public testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(m_Folder / "pics" / "folder.bmp");
        WriteBitmap(m_Folder / "mark.bmp");
        WriteBitmap(m_Folder / "pics" / "mark2.bmp");
        std::ofstream(m_Folder / "broken.bmp") << "BM nothing";
    }

    /// Three pixels wide, two high, 24 bits: a header of 54 bytes and rows padded to 12, as the format has
    /// it.
    static void WriteBitmap(const std::filesystem::path& file)
    {
        const unsigned char header[] = {'B', 'M', 78, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0,
                                        3,   0,   0,  0, 2, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0,  0, 0, 0,
                                        24,  0,   0,  0, 0, 0, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0};
        std::ofstream out(file, std::ios::binary);
        out.write(reinterpret_cast<const char*>(header), sizeof header);
        out << std::string(24, 'x');
    }
    DXFImage Image() const
    {
        DXFImage image;
        image.SetSize(7, 7);
        image.SetDrawingFolder(m_Folder.wstring());
        return image;
    }

    TemporaryFolder m_Place;
    const std::filesystem::path m_Folder = m_Place.Path();
};

TEST_F(ImageFiles, AreFoundAsNamedOrBesideTheDrawing)
{
    const std::wstring full = (m_Folder / "mark.bmp").wstring();
    const struct {
        std::wstring name;
        bool found;
    } rows[] = {
        {full, true},
        {L"mark.bmp", true},
        {L".\\mark.bmp", true},
        {L"pics\\mark2.bmp", true},
        {L"pics/mark2.bmp", true},
        {L"C:\\far\\away\\mark.bmp", true},
        {L"/far/away/mark.bmp", true},
        {L"\\\\server\\share\\mark.bmp", true},
        {L"mark2.bmp", false},
        {L"", false},
        {L"pics/folder.bmp", false},
        {L"broken.bmp", false},
        {std::wstring(L"mark.bmp\0x", 10), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.name));
        DXFImage image = Image();
        EXPECT_EQ(image.SetFileName(row.name), row.found);
        EXPECT_EQ(image.FileName(), row.name) << "the name stays as given";
        EXPECT_EQ(image.GetPicture() != nullptr, row.found);
        EXPECT_EQ(image.Width(), row.found ? 3 : 7);
        EXPECT_EQ(image.Height(), row.found ? 2 : 7);
    }
}

TEST_F(ImageFiles, AreSharedByCopies)
{
    DXFImage image = Image();
    ASSERT_TRUE(image.SetFileName(L"mark.bmp"));
    const DXFImage copy(image);
    EXPECT_EQ(copy.GetPicture(), image.GetPicture());
    DXFImage other = Image();
    other.ShareFile(image);
    EXPECT_EQ(other.GetPicture(), image.GetPicture());
    EXPECT_EQ(other.FileName(), L"mark.bmp");
    EXPECT_EQ(other.Width(), 3);
    EXPECT_FALSE(image.SetFileName(L"none.bmp"));
    EXPECT_EQ(image.GetPicture(), nullptr);
    EXPECT_EQ(image.Width(), 3) << "the size stays";
    EXPECT_NE(copy.GetPicture(), nullptr);
}

} // namespace
