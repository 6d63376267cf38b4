#include "platform/FilePath.h"

#include <gtest/gtest.h>

TEST(FilePath, TakesPathsOfEitherKindApart)
{
    const struct {
        const wchar_t* path;
        const wchar_t* folder;
        const wchar_t* name;
        const wchar_t* extension;
        bool isAbsolute;
    } rows[] = {
        {L"", L"", L"", L"", false},
        {L"plan.dxf", L"", L"plan.dxf", L"dxf", false},
        {L"a/b.c/plan", L"a/b.c", L"plan", L"", false},
        {L"/plan.DXF", L"/", L"plan.DXF", L"DXF", true},
        {L"/home//plan.tar.gz", L"/home", L"plan.tar.gz", L"gz", true},
        {L"pictures\\site.TIF", L"pictures", L"site.TIF", L"TIF", false},
        {L"C:\\site.tif", L"C:\\", L"site.tif", L"tif", true},
        {L"c:site.tif", L"c:", L"site.tif", L"tif", true},
        {L"\\\\server\\share\\a.bmp", L"\\\\server\\share", L"a.bmp", L"bmp", true},
        {L"mixed\\up/a.b", L"mixed\\up", L"a.b", L"b", false},
        {L"folder/", L"folder", L"", L"", false},
        {L"a.", L"", L"a.", L"", false},
        {L".profile", L"", L".profile", L"profile", false},
        {L"1:x", L"", L"1:x", L"", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FilePath::Folder(row.path), row.folder) << row.path;
        EXPECT_EQ(FilePath::FileName(row.path), row.name) << row.path;
        EXPECT_EQ(FilePath::Extension(row.path), row.extension) << row.path;
        EXPECT_EQ(FilePath::IsAbsolute(row.path), row.isAbsolute) << row.path;
    }
}

TEST(FilePath, JoinsWithOneSeparator)
{
    const struct {
        const wchar_t* folder;
        const wchar_t* name;
        const wchar_t* joined;
    } rows[] = {
        {L"", L"a.bmp", L"a.bmp"},      {L"x", L"a.bmp", L"x/a.bmp"},
        {L"x/", L"a.bmp", L"x/a.bmp"},  {L"x\\y", L"a.bmp", L"x\\y\\a.bmp"},
        {L"c:", L"a.bmp", L"c:a.bmp"},  {L"/", L"a.bmp", L"/a.bmp"},
        {L"x", L"/a.bmp", L"/a.bmp"},   {L"x", L"d:\\a.bmp", L"d:\\a.bmp"},
        {L"x\\y/z", L"a", L"x\\y/z/a"},
    };
    for (const auto& row : rows) EXPECT_EQ(FilePath::Join(row.folder, row.name), row.joined);
}

TEST(FilePath, ComparesExtensionsWithoutRegardToCase)
{
    EXPECT_TRUE(FilePath::SameText(L"TiFf", L"tIfF"));
    EXPECT_FALSE(FilePath::SameText(L"tif", L"tiff"));
    EXPECT_FALSE(FilePath::SameText(L"@", L"`")); // 64 and 96: apart like "A" and "a", but no letters
    EXPECT_EQ(FilePath::WithSlashes(L"a\\b/c\\"), L"a/b/c/");
}
