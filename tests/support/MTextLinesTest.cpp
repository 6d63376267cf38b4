#include "support/MTextLines.h"

#include "support/TextHeightFactComp.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double NO_LIMIT = std::numeric_limits<double>::infinity();

struct TextRow {
    const wchar_t* coded;
    const wchar_t* plain;
};

/// A face whose letters, blanks and digits have one advance.
const FontFace& FixedPitch()
{
    return FindFont(L"Liberation Mono", false, false);
}

/// Breaks for so many characters of a fixed pitch.
std::vector<std::wstring> Lines(const std::wstring& plain, int characters)
{
    return BreakLines(plain, FixedPitch(), characters * FixedPitch().Advance(U'x')).lines;
}

using LineList = std::vector<std::wstring>;

} // namespace

TEST(MText, InlineCodesAreInterpretedOrDropped)
{
    const TextRow ROWS[] = {
        {L"", L""},
        {L"plain text", L"plain text"},
        {L"one\\Ptwo\\P\\Pfour", L"one\ntwo\n\nfour"},
        {L"one\ntwo\r\nthree", L"one\ntwo\nthree"},
        {L"column\\Nnext\\Xbelow", L"column\nnext\nbelow"},
        {L"10\\~mm", L"10\xA0mm"},
        {L"\\Lunder\\l \\Oover\\o \\Kstruck\\k", L"under over struck"},
        {L"\\H2.5x;high\\W0.8;wide\\Q15;slanted\\T1.5;spaced", L"highwideslantedspaced"},
        {L"\\A1;\\C1;\\c255;red", L"red"},
        {L"{\\fArial|b1|i0|c0|p34;bold} {\\Ftxt.shx;stroke}", L"bold stroke"},
        {L"\\pxi-3,l4,t4;1.^Ifirst", L"1. first"},
        {L"{{nested} braces}", L"nested braces"},
        {L"\\\\ \\{set\\}", L"\\ {set}"},
        {L"a^Jb^Mc^ d^e^", L"a\nbc^d^e^"},
        {L"\\U+03bb \\u+03BB", L"\x03BB u+03BB"},
        {L"\\M+1B7E8x \\M+1", L"?x M+1"},
        {L"25%%d 2%%P %%C8 50%%%", L"25\xB0 2\xB1 \xD8"
                                   L"8 50%"},
        {L"\\Zunknown \\1", L"Zunknown 1"},
        {L"tab\there \x01\x1F"
         L"control",
         L"tab here control"},
        {L"ends in \\", L"ends in "},
    };
    for (const TextRow& row : ROWS) EXPECT_EQ(PlainMText(row.coded), row.plain) << row.coded;
}

TEST(MText, StackedNumbersStandInOneLine)
{
    const TextRow ROWS[] = {
        {L"\\S1/2;\"", L"1/2\""},
        {L"7{\\H1.000000x;\\S1#2;}\" typ.", L"71/2\" typ."},
        {L"\\S+0.1^ -0.2;", L"+0.1/-0.2"},
        {L"\\S1^2;", L"1/2"},
        {L"m\\S2^;", L"m2"},
        {L"x\\S^ 2;", L"x2"},
        {L"\\Sab\\/c\\~d%%p^ ef\\^ g.h\\#i; j", L"ab/c\xA0"
                                                L"d\xB1/ef^g.h#i j"},
        {L"\\Sa\\;b/\\U+2205;", L"a;b/\x2205"},
        {L"\\S/;!", L"!"},
        {L"\\S1/2/3;", L"1/2/3"},
    };
    for (const TextRow& row : ROWS) EXPECT_EQ(PlainMText(row.coded), row.plain) << row.coded;
}

TEST(MText, UnterminatedCodesEndWithTheText)
{
    const TextRow ROWS[] = {
        {L"a\\H2.5x b\\Pc", L"a"}, {L"a\\fArial|b0", L"a"}, {L"a\\S1/2", L"a1/2"}, {L"a\\S1\\", L"a1"},
        {L"a\\U+12", L"aU+12"},    {L"a\\U", L"aU"},        {L"a\\M", L"aM"},      {L"a{b", L"ab"},
        {L"a%%", L"a%%"},          {L"a%", L"a%"},          {L"a%%12", L"a%%12"},  {L"a^", L"a^"},
    };
    for (const TextRow& row : ROWS) EXPECT_EQ(PlainMText(row.coded), row.plain) << row.coded;
}

TEST(MText, SurrogatePairsAreOneCharacterAndHalvesAreReplaced)
{
    EXPECT_EQ(PlainMText(L"\\U+D83D\\U+DE00!"), L"\U0001F600!");
    EXPECT_EQ(PlainMText(L"\\U+D83D!"), L"\xFFFD!");
    EXPECT_EQ(PlainMText(L"\\U+DE00\\U+0041"), L"\xFFFD"
                                               L"A");
    EXPECT_EQ(PlainMText(L"\\U+D83D\\U+0041"), L"\xFFFD"
                                               L"A");
    EXPECT_EQ(PlainMText(L"\\U+0000\\U+000A."), L".") << "control characters stay out";
}

TEST(MText, SingleLineTextsKeepAllButSymbolsAndSwitches)
{
    const TextRow ROWS[] = {
        {L"%%c16 %%uunder%%u %%ooff%%O %%kx", L"\xD8"
                                              L"16 under off x"},
        {L"25%%d%%p1 100%%%", L"25\xB0\xB1"
                              L"1 100%"},
        {L"%%065%%1%%999", L"A%%1\x03E7"},
        {L"\\U+2205 {C:\\Plan} ^J \\P", L"\x2205 {C:\\Plan} ^J \\P"},
        {L"%%x %% %", L"%%x %% %"},
    };
    for (const TextRow& row : ROWS) EXPECT_EQ(PlainText(row.coded), row.plain) << row.coded;
}

TEST(LineBreak, FallsOnBlanksThatTakeNoRoom)
{
    if (FixedPitch().Advance(U'i') != FixedPitch().Advance(U'W')) GTEST_SKIP() << "no fixed-pitch font";
    struct Row {
        const wchar_t* text;
        int characters;
        LineList lines;
    };
    const Row ROWS[] = {
        {L"aaa bbb ccc", 7, {L"aaa bbb", L"ccc"}},
        {L"aaa bbb ccc", 6, {L"aaa", L"bbb", L"ccc"}},
        {L"aaa    bbb", 7, {L"aaa", L"bbb"}},
        {L"aaa bbb   ", 7, {L"aaa bbb"}},
        {L"a overlongword b", 5, {L"a", L"overlongword", L"b"}},
        {L"overlong", 3, {L"overlong"}},
        {L"  indented x", 10, {L"  indented", L"x"}},
        {L"a  b", 10, {L"a  b"}},
        {L"one\ntwo \n\n three", 20, {L"one", L"two", L"", L" three"}},
        {L"aa bb\ncc dd", 4, {L"aa", L"bb", L"cc", L"dd"}},
        {L"10\xA0mm 20\xA0mm", 6, {L"10 mm", L"20 mm"}},
        {L"", 5, {L""}},
        {L"   ", 5, {L""}},
        {L"\n", 5, {L"", L""}},
    };
    for (const Row& row : ROWS) EXPECT_EQ(Lines(row.text, row.characters), row.lines) << row.text;
}

TEST(LineBreak, WithoutALimitFallsOnLineFeedsOnly)
{
    const std::wstring text = L"aaa bbb ccc\nddd";
    const LineList expected{L"aaa bbb ccc", L"ddd"};
    EXPECT_EQ(BreakLines(text, FixedPitch(), NO_LIMIT).lines, expected);
    EXPECT_EQ(BreakLines(text, FixedPitch(), std::numeric_limits<double>::quiet_NaN()).lines, expected);
    EXPECT_EQ(BreakLines(text, FixedPitch(), NO_LIMIT).width, FixedPitch().Width(L"aaa bbb ccc"));
}

TEST(LineBreak, FillsEveryLineAsFarAsItGoes)
{
    // The laws of greedy breaking: words stay in order, a line of several words keeps the limit, and the
    // first word of the next line would not have fitted.
    const FontFace& face = FindFont(L"Liberation Sans", false, false);
    std::mt19937 random(11);
    for (int i = 0; i < 300; ++i) {
        std::wstring text;
        while (text.size() < 200) text += std::wstring(1 + random() % 9, L"iWxm."[random() % 5]) + L' ';
        text.pop_back();
        const auto limit = static_cast<double>(500 + random() % 20000);
        const BrokenText broken = BreakLines(text, face, limit);
        std::wstring joined;
        std::int64_t widest = 0;
        for (std::size_t line = 0; line < broken.lines.size(); ++line) {
            const std::wstring& shown = broken.lines[line];
            widest = std::max(widest, face.Width(shown));
            const bool isOneWord = shown.find(L' ') == std::wstring::npos;
            EXPECT_TRUE(isOneWord || double(face.Width(shown)) <= limit) << i << ", line " << line;
            if (line > 0) {
                const std::wstring taken = broken.lines[line - 1] + L' ' + shown.substr(0, shown.find(L' '));
                EXPECT_GT(double(face.Width(taken)), limit);
                joined += L' ';
            }
            joined += shown;
        }
        ASSERT_EQ(joined, text);
        ASSERT_EQ(broken.width, widest);
    }
}

TEST(LineBreak, HostileTextsTakeLinearTime)
{
    // A million characters each; anything quadratic would not end within the test's time.
    constexpr std::size_t COUNT = 1000000;
    std::wstring codes;
    std::wstring escapes;
    while (codes.size() < COUNT) codes += L"\\S\\H{^%%";
    while (escapes.size() < COUNT) escapes += L"\\U+D83D\\M+1";
    for (const std::wstring& text : {codes, escapes, std::wstring(COUNT, L' '), std::wstring(COUNT, L'\\'),
                                     std::wstring(COUNT, L'x'), std::wstring(COUNT, L'\n')}) {
        const BrokenText broken = BreakLines(PlainMText(text), FixedPitch(), 1);
        EXPECT_GE(broken.lines.size(), 1U);
        EXPECT_LE(PlainText(text).size(), text.size());
    }
}
