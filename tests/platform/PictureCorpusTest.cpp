#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "TestPlaces.h"
#include "platform/Clock.h"
#include "platform/Picture.h"
#include "platform/TemporaryFolder.h"
#include "platform/Utf8.h"

namespace {
using Loaded = std::shared_ptr<const Picture>;

std::filesystem::path Samples(const char* folder)
{
    return TestPlaces::Corpus() / "img" / folder;
}

Loaded Load(const std::filesystem::path& path)
{
    std::wstring reason;
    Loaded picture = LoadPicture(FromUtf8(path.string()), &reason);
    EXPECT_EQ(picture == nullptr, !reason.empty()) << path;
    return picture;
}

/// The files of a folder whose names begin and end so, in order.
std::vector<std::filesystem::path> Files(const char* folder, const std::string& start, const std::string& end)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(Samples(folder))) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(start) && name.ends_with(end)) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The largest difference between two pictures in any of red, green and blue; 256 when their sizes differ.
int Difference(const Picture& a, const Picture& b)
{
    if (a.width != b.width || a.height != b.height) return 256;
    int largest = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        for (const int shift : {0, 8, 16}) {
            const int one = static_cast<int>(a.pixels[i] >> shift & 255);
            const int other = static_cast<int>(b.pixels[i] >> shift & 255);
            largest = std::max(largest, std::abs(one - other));
        }
    }
    return largest;
}

/// Reads a PGM or PPM of samples of a byte.
Loaded ReadPnm(const std::string& bytes)
{
    std::istringstream in(bytes);
    std::string kind;
    int largest = 0;
    auto picture = std::make_shared<Picture>();
    in >> kind >> picture->width >> picture->height >> largest;
    in.get();
    if (!in || largest < 1 || largest > 255 || (kind != "P5" && kind != "P6")) return nullptr;
    const auto next = [&] {
        return static_cast<std::uint32_t>(((in.get() & 255) * 255 + largest / 2) / largest);
    };
    for (int i = 0; i < picture->width * picture->height; ++i) {
        const std::uint32_t red = next();
        const std::uint32_t green = kind == "P6" ? next() : red;
        const std::uint32_t blue = kind == "P6" ? next() : red;
        picture->pixels.push_back(0xFF000000 | red << 16 | green << 8 | blue);
    }
    return in ? picture : nullptr;
}
} // namespace

TEST(PictureCorpus, EverySampleEndsInAPictureOrAReasonInShortTime)
{
    SKIP_WITHOUT_CORPUS();
    int pictures = 0;
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TestPlaces::Corpus() / "img")) {
        if (!entry.is_regular_file()) continue;
        const std::int64_t start = MonotonicMilliseconds();
        const Loaded picture = Load(entry.path());
        EXPECT_LT(MonotonicMilliseconds() - start, 5000) << entry.path();
        ++files;
        if (!picture) continue;
        ++pictures;
        EXPECT_EQ(picture->pixels.size(), std::size_t(picture->width) * std::size_t(picture->height))
            << entry.path();
    }
    // More than half of the samples are sound files of supported kinds.
    EXPECT_GT(pictures, files / 2);
}

TEST(PictureCorpus, TheGoodBmpFilesAllShowOnePictureWithinTheirColors)
{
    SKIP_WITHOUT_CORPUS();
    const Loaded trueColor = Load(Samples("Pillow") / "bmp__g__rgb24.bmp");
    const Loaded indexed = Load(Samples("Pillow") / "bmp__g__pal8.bmp");
    ASSERT_TRUE(trueColor && indexed);
    EXPECT_EQ(trueColor->width, 127);
    EXPECT_EQ(trueColor->height, 64);
    // A step of 5 bits is 255 / 31 = 8.2: what is rounded to it is off by 4.1 at most.
    const struct {
        const char* start;
        const Picture& same;
        int tolerance;
    } rows[] = {
        {"bmp__g__rgb16", *trueColor, 5},     {"bmp__g__rgb24", *trueColor, 0},
        {"bmp__g__rgb32", *trueColor, 0},     {"bmp__g__pal8-0", *indexed, 0},
        {"bmp__g__pal8os2", *indexed, 0},     {"bmp__g__pal8rle", *indexed, 0},
        {"bmp__g__pal8topdown", *indexed, 0}, {"bmp__g__pal8v", *indexed, 0},
        {"bmp__q__pal8o", *indexed, 0},       {"bmp__q__rgb24l", *trueColor, 0},
        {"bmp__q__rgb32-1", *trueColor, 1},   {"bmp__q__rgb32h", *trueColor, 0},
        {"bmp__q__rgb32bf", *trueColor, 0},
    };
    for (const auto& row : rows) {
        const auto files = Files("Pillow", row.start, ".bmp");
        EXPECT_FALSE(files.empty()) << row.start;
        for (const auto& file : files) {
            const Loaded picture = Load(file);
            ASSERT_TRUE(picture) << file;
            EXPECT_LE(Difference(*picture, row.same), row.tolerance) << file;
        }
    }
    for (const auto& file : Files("Pillow", "bmp__g__", ".bmp")) EXPECT_TRUE(Load(file)) << file;
    EXPECT_EQ(Load(Samples("Pillow") / "bmp__g__pal8nonsquare.bmp")->height, 32);
    EXPECT_EQ(Load(Samples("Pillow") / "bmp__g__pal8w125.bmp")->width, 125);
}

TEST(PictureCorpus, ATgaFileShowsTheSameHoweverItsRowsAreStored)
{
    SKIP_WITHOUT_CORPUS();
    for (const char* kind : {"l", "la", "p", "rgb", "rgba"}) {
        const auto files = Files("Pillow", std::string("tga__common__200x32_") + kind + "_", ".tga");
        ASSERT_GT(files.size(), 1u) << kind;
        const Loaded first = Load(files[0]);
        ASSERT_TRUE(first) << files[0];
        for (const auto& file : files) {
            const Loaded picture = Load(file);
            ASSERT_TRUE(picture) << file;
            EXPECT_EQ(picture->pixels, first->pixels) << file;
        }
    }
}

TEST(PictureCorpus, LosslessTiffFilesOfOnePictureAreEqual)
{
    SKIP_WITHOUT_CORPUS();
    for (const std::string stem : {"byte", "rgbsmall"}) {
        const Loaded plain = Load(Samples("gdal") / ("gcore__data__gtiff__" + stem + "_LZW.tif"));
        ASSERT_TRUE(plain);
        EXPECT_TRUE(plain->isGeoReferenced);
        for (const char* compression : {"NONE", "LZW", "DEFLATE", "LZMA", "ZSTD"}) {
            for (const auto& file :
                 Files("gdal", "gcore__data__gtiff__" + stem + "_" + compression, ".tif")) {
                const Loaded picture = Load(file);
                if (!picture) continue; // a compression that this system's library leaves out
                EXPECT_EQ(Difference(*picture, *plain), 0) << file;
            }
        }
    }
}

TEST(PictureCorpus, PixelsAreThoseOfAnIndependentProgram)
{
    SKIP_WITHOUT_CORPUS();
    if (std::system("pnmtopng --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "netpbm is not installed";
    const TemporaryFolder folder;
    const std::string output = (folder / "picture.pnm").string();
    // Opaque pictures; JPEG decoders may differ by rounding, all others may not.
    const struct {
        const char* program;
        const char* file;
        int tolerance;
    } rows[] = {
        {"bmptopnm", "Pillow/hopper.bmp", 0},
        {"bmptopnm", "Pillow/hopper_rle8.bmp", 0},
        {"giftopnm -image=1", "Pillow/hopper.gif", 0},
        {"jpegtopnm", "Pillow/hopper.jpg", 2},
        {"jpegtopnm", "Pillow/flower.jpg", 2},
        {"jpegtopnm", "Pillow/pil_sample_cmyk.jpg", 2},
        {"jpegtopnm", "gdal/gdrivers__data__jpeg__rgbsmall_rgb.jpg", 2},
        {"tgatoppm", "gdal/gdrivers__data__tga__ref_test_suite__ctc24.tga", 0},
        {"tgatoppm", "gdal/gdrivers__data__tga__ref_test_suite__ucm8.tga", 0},
        {"tgatoppm", "gdal/gdrivers__data__tga__ref_test_suite__cbw8.tga", 0},
        {"tgatoppm", "gdal/gdrivers__data__tga__ref_test_suite__utc16.tga", 0},
        {"tgatoppm", "gdal/gdrivers__data__tga__from_ffmpeg_samples__test1g.tga", 0},
        {"tifftopnm", "gdal/gcore__data__rgbsmall.tif", 0},
        {"tifftopnm", "gdal/gcore__data__byte.tif", 0},
        {"tifftopnm", "gdal/gcore__data__gtiff__rgbsmall_LZW_tiled_separate.tif", 0},
    };
    for (const auto& row : rows) {
        const std::filesystem::path file = TestPlaces::Corpus() / "img" / row.file;
        const std::string command =
            std::string(row.program) + " '" + file.string() + "' > '" + output + "' 2> /dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        const Loaded expected = ReadPnm(ReadFile(output));
        const Loaded picture = Load(file);
        ASSERT_TRUE(expected && picture) << file;
        EXPECT_LE(Difference(*picture, *expected), row.tolerance) << file;
    }
}
