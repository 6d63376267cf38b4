#include "platform/Font.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "TestPlaces.h"
#include "platform/FontName.h"
#include "platform/TemporaryFolder.h"
#include "platform/Utf8.h"

namespace {
/// A TrueType or OpenType file read by the offsets of its published format, slowly and without a cache.
class FontFile {
public:
    explicit FontFile(const std::wstring& name) : m_Bytes(ReadFile(ToUtf8(name)))
    {
        for (std::size_t i = 0; i < U16(4); ++i) {
            const std::size_t record = 12 + 16 * i;
            if (record + 16 <= m_Bytes.size()) m_Tables[m_Bytes.substr(record, 4)] = U32(record + 8);
        }
    }

    bool Has(const std::string& table) const { return m_Tables.count(table) != 0; }
    int Unsigned(const std::string& table, std::size_t at) const { return int(U16(m_Tables.at(table) + at)); }
    int Signed(const std::string& table, std::size_t at) const
    {
        return static_cast<std::int16_t>(Unsigned(table, at));
    }

    /// Advance by cmap (format 4, Windows Unicode) and hmtx; empty when the file has no such map.
    std::optional<int> Advance(unsigned character) const
    {
        const std::size_t map = UnicodeMap();
        if (map == 0) return std::nullopt;
        const int lastLong = Unsigned("hhea", 34) - 1;
        return Unsigned("hmtx", std::size_t(std::min(Glyph(map, character), lastLong)) * 4);
    }

private:
    std::size_t U16(std::size_t at) const
    {
        if (at + 2 > m_Bytes.size()) return 0;
        return static_cast<std::size_t>(static_cast<unsigned char>(m_Bytes[at])) << 8
               | static_cast<unsigned char>(m_Bytes[at + 1]);
    }
    std::size_t U32(std::size_t at) const { return U16(at) << 16 | U16(at + 2); }

    std::size_t UnicodeMap() const
    {
        const std::size_t cmap = m_Tables.at("cmap");
        for (std::size_t i = 0; i < U16(cmap + 2); ++i) {
            const std::size_t record = cmap + 4 + 8 * i;
            const std::size_t map = cmap + U32(record + 4);
            if (U16(record) == 3 && U16(record + 2) == 1 && U16(map) == 4) return map;
        }
        return 0;
    }

    int Glyph(std::size_t map, unsigned character) const
    {
        const std::size_t twice = U16(map + 6);
        for (std::size_t i = 0; i < twice; i += 2) {
            const std::size_t last = U16(map + 14 + i);
            if (character > last) continue;
            const std::size_t first = U16(map + 16 + twice + i);
            if (character < first) return 0;
            const std::size_t delta = U16(map + 16 + 2 * twice + i);
            const std::size_t rangeAt = map + 16 + 3 * twice + i;
            if (U16(rangeAt) == 0) return int((character + delta) & 0xFFFF);
            const std::size_t glyph = U16(rangeAt + U16(rangeAt) + 2 * (character - first));
            return glyph == 0 ? 0 : int((glyph + delta) & 0xFFFF);
        }
        return 0;
    }

    std::string m_Bytes;
    std::map<std::string, std::size_t> m_Tables;
};

/// Faces to measure by their files: whatever is installed under these names or stands in for them.
std::vector<const FontFace*> Faces()
{
    std::vector<const FontFace*> faces;
    for (const wchar_t* family : {L"Liberation Sans", L"Liberation Mono", L"DejaVu Sans", L"DejaVu Serif"}) {
        for (const int cut : {0, 1, 2, 3}) {
            const FontFace& face = FindFont(family, (cut & 1) != 0, (cut & 2) != 0);
            if (!face.File().empty() && face.Index() == 0 && FontFile(face.File()).Has("hmtx"))
                faces.push_back(&face);
        }
    }
    return faces;
}
} // namespace

TEST(Font, MetricsAreThoseOfTheFilesTables)
{
    const auto faces = Faces();
    if (faces.empty()) GTEST_SKIP() << "no TrueType fonts installed";
    for (const FontFace* face : faces) {
        SCOPED_TRACE(ToUtf8(face->File()));
        const FontFile file(face->File());
        const FontMetrics& metrics = face->Metrics();
        EXPECT_EQ(metrics.unitsPerEm, file.Unsigned("head", 18));
        ASSERT_TRUE(file.Has("OS/2"));
        const int winAscent = file.Unsigned("OS/2", 74);
        const int winDescent = file.Unsigned("OS/2", 76);
        const bool isEmpty = winAscent + winDescent == 0;
        EXPECT_EQ(metrics.ascent, isEmpty ? file.Signed("hhea", 4) : winAscent);
        EXPECT_EQ(metrics.descent, isEmpty ? -file.Signed("hhea", 6) : winDescent);
        if (file.Unsigned("OS/2", 0) >= 2 && file.Signed("OS/2", 88) > 0) {
            EXPECT_EQ(metrics.capHeight, file.Signed("OS/2", 88));
        } else {
            // The height of an "H" is between half and the whole of the ascent in any Latin text face.
            EXPECT_GT(metrics.capHeight, winAscent / 2);
            EXPECT_LT(metrics.capHeight, winAscent);
        }
    }
}

TEST(Font, AdvancesAreThoseOfTheFilesTables)
{
    const auto faces = Faces();
    if (faces.empty()) GTEST_SKIP() << "no TrueType fonts installed";
    for (const FontFace* face : faces) {
        SCOPED_TRACE(ToUtf8(face->File()));
        const FontFile file(face->File());
        for (unsigned character = 0x20; character < 0x10000; character += character < 0x600 ? 1 : 37) {
            const auto expected = file.Advance(character);
            if (!expected) break;
            ASSERT_EQ(face->Advance(character), *expected) << std::hex << character;
        }
        const int missing = file.Unsigned("hmtx", 0);
        EXPECT_EQ(face->Advance(0x10FFFF), missing);
        EXPECT_EQ(face->Advance(0x110000), missing);
        EXPECT_EQ(face->Advance(~char32_t{0}), missing);
    }
}

TEST(Font, AWidthIsTheSumOfTheAdvancesOfItsCharacters)
{
    const FontFace& face = FindFont(L"DejaVu Sans", false, false);
    std::int64_t sum = 0;
    const std::wstring text = L"Grundri\u00DF \u2300 12,5 \u0416";
    for (const wchar_t c : text) sum += face.Advance(static_cast<char32_t>(c));
    EXPECT_EQ(face.Width(text), sum);
    EXPECT_EQ(face.Width(L""), 0);

    const std::wstring pair = {static_cast<wchar_t>(0xD835), static_cast<wchar_t>(0xDD38)}; // U+1D538
    EXPECT_EQ(face.Width(pair), face.Advance(0x1D538));
    EXPECT_EQ(face.Width(pair.substr(0, 1)), face.Advance(0xD835));
    EXPECT_EQ(face.Width(std::wstring(1, static_cast<wchar_t>(-1))),
              face.Advance(static_cast<char32_t>(static_cast<wchar_t>(-1))));
}

TEST(FontName, IsFamilyAndMarks)
{
    const struct {
        const wchar_t* name;
        const wchar_t* family;
        bool isBold, isItalic;
    } rows[] = {
        {L"ARIAL|B0|I0|C0|P34", L"ARIAL", false, false},
        {L"Arial|b1|i0|c0|p34", L"Arial", true, false},
        {L"Arial | I1 |B1", L"Arial", true, true},
        {L"arial.ttf", L"arial", false, false},
        {L"TXT.SHX", L"TXT", false, false},
        {L"  Times New Roman  ", L"Times New Roman", false, false},
        {L"simplex .shx|b1", L"simplex", true, false},
        {L"dot.ted", L"dot.ted", false, false},
        {L".ttf", L"", false, false},
        {L"", L"", false, false},
        {L"|||b1", L"", true, false},
        {L"a|b11|xb1|b", L"a", false, false},
    };
    for (const auto& row : rows) {
        const FontName parsed = ParseFontName(row.name);
        EXPECT_EQ(parsed.family, row.family) << row.name;
        EXPECT_EQ(parsed.isBold, row.isBold) << row.name;
        EXPECT_EQ(parsed.isItalic, row.isItalic) << row.name;
    }
}

TEST(Font, NamesThatMeanTheSameGiveTheSameFace)
{
    const FontFace& plain = FindFont(L"Liberation Sans", false, false);
    for (const wchar_t* name : {L"LIBERATION SANS|B0|I0|C0|P34", L" liberation sans.ttf", L"Liberation Sans"})
        EXPECT_EQ(&FindFont(name, false, false), &plain) << name;
    const FontFace& bold = FindFont(L"Liberation Sans", true, false);
    EXPECT_EQ(&FindFont(L"liberation sans|B1|i0", false, false), &bold);
    EXPECT_EQ(&FindFont(L"liberation sans|B1|I1", false, false), &FindFont(L"Liberation Sans", true, true));
    if (plain.File().find(L"LiberationSans") == std::wstring::npos) GTEST_SKIP() << "font not installed";
    EXPECT_NE(&bold, &plain);
    EXPECT_NE(&FindFont(L"Liberation Sans", false, true), &plain);
}

TEST(Font, TheFaceIsTheOneThatFontconfigMatches)
{
    const TemporaryFolder folder;
    const std::string answer = (folder / "answer").string();
    if (TestPlaces::IS_WINDOWS) GTEST_SKIP() << "GDI finds the faces here";
    if (std::system(("fc-match --version > '" + answer + "' 2>&1").c_str()) != 0)
        GTEST_SKIP() << "no fc-match";
    const struct {
        const wchar_t* name;
        bool isBold, isItalic;
        const char* pattern;
    } rows[] = {
        {L"Arial", false, false, "Arial:regular"},
        {L"ARIAL|B1|I0", false, false, "Arial:bold"},
        {L"times new roman.ttf", true, true, "Times New Roman:bold:italic"},
        {L"DejaVu Sans Mono", false, true, "DejaVu Sans Mono:italic"},
        {L"txt.shx", false, false, "txt:regular"},
        {L"Standard", false, false, "Standard:regular"},
        {L"", false, false, ":regular"},
    };
    for (const auto& row : rows) {
        const std::string command = std::string("fc-match -f '%{file}' '") + row.pattern
                                    + ":lang=en:scalable=true' > '" + answer + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        EXPECT_EQ(ToUtf8(FindFont(row.name, row.isBold, row.isItalic).File()), ReadFile(answer))
            << row.pattern;
    }
}

TEST(Font, AnyNameGivesAFaceHoweverManyThereAre)
{
    std::wstring hostile(100'000, L'x');
    hostile +=
        std::wstring{L'\0', static_cast<wchar_t>(0xDC80), static_cast<wchar_t>(0xD800), L':', L'-', L'\\'};
    for (const std::wstring& name : {hostile, std::wstring(3, L'\0'), std::wstring(L":bold:file=/etc/passwd"),
                                     std::wstring(1, static_cast<wchar_t>(0xDCFF))}) {
        EXPECT_GT(FindFont(name, false, false).Metrics().unitsPerEm, 0);
    }
    const FontFace& first = FindFont(L"no such font", false, false);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(&FindFont(L"no such font " + std::to_wstring(i), false, false), &first);
    EXPECT_EQ(&FindFont(L"no such font", false, false), &first);
}

TEST(Font, ThreadsThatMeasureAtOnceAgree)
{
    std::vector<std::int64_t> widths(4);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < widths.size(); ++t) {
        threads.emplace_back([&widths, t] {
            for (char32_t c = 0; c < 0x3000; ++c)
                widths[t] +=
                    FindFont(c % 2 == 0 ? L"DejaVu Sans Mono" : L"Liberation Serif", false, true).Advance(c);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::int64_t width : widths) EXPECT_EQ(width, widths[0]);
    EXPECT_GT(widths[0], 0);
}

/// Run in a process of its own by the test below, under a configuration without fonts.
TEST(FontWithoutFonts, DISABLED_GivesTheBuiltInMeasures)
{
    const FontFace& face = FindFont(L"Arial", true, false);
    EXPECT_EQ(face.File(), L"");
    EXPECT_EQ(face.Metrics().unitsPerEm, 1000);
    EXPECT_EQ(face.Metrics().ascent, 905);
    EXPECT_EQ(face.Metrics().descent, 212);
    EXPECT_EQ(face.Metrics().capHeight, 700);
    EXPECT_EQ(face.Advance(U'x'), 556);
    EXPECT_EQ(face.Width(L"abc"), 3 * 556);
}

TEST(Font, WithoutAnyFontTheBuiltInMeasuresStandInAndNothingIsPrinted)
{
    if (TestPlaces::IS_WINDOWS) GTEST_SKIP() << "a program cannot be run without fonts here";
    const std::filesystem::path self = "/proc/self/exe";
    if (!std::filesystem::exists(self)) GTEST_SKIP() << "cannot start itself here";
    const TemporaryFolder folder;
    WriteFile(folder / "empty.conf", "<?xml version=\"1.0\"?><fontconfig></fontconfig>");
    for (const char* configuration : {"empty.conf", "missing.conf"}) {
        const std::string command = "FONTCONFIG_FILE='" + (folder / configuration).string() + "' '"
                                    + std::filesystem::read_symlink(self).string()
                                    + "' --gtest_also_run_disabled_tests"
                                    + " --gtest_filter='FontWithoutFonts.*' > '" + (folder / "out").string()
                                    + "' 2> '" + (folder / "errors").string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << ReadFile(folder / "out");
        EXPECT_NE(ReadFile(folder / "out").find("PASSED  ] 1 test."), std::string::npos);
        EXPECT_EQ(ReadFile(folder / "errors"), "");
    }
}
