#include "platform/Utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace {
/// One wide string of a character, a pair where wchar_t has two bytes.
std::wstring Wide(char32_t c)
{
    if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
        return {static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10)),
                static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF))};
    }
    return std::wstring(1, static_cast<wchar_t>(c));
}
} // namespace

TEST(Utf8, EncodesTheFirstAndLastCharacterOfEachLength)
{
    // Bytes by the Unicode Standard, table 3-6.
    const struct {
        char32_t character;
        std::string bytes;
    } rows[] = {
        {0x0, std::string(1, '\0')},
        {0x7F, "\x7F"},
        {0x80, "\xC2\x80"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0xD7FF, "\xED\x9F\xBF"},
        {0xE000, "\xEE\x80\x80"},
        {0xFFFF, "\xEF\xBF\xBF"},
        {0x10000, "\xF0\x90\x80\x80"},
        {0x10FFFF, "\xF4\x8F\xBF\xBF"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ToUtf8(Wide(row.character)), row.bytes) << std::hex << unsigned(row.character);
        EXPECT_EQ(FromUtf8(row.bytes), Wide(row.character)) << std::hex << unsigned(row.character);
    }
}

TEST(Utf8, EveryTwoBytesAndSampledLongerOnesComeBack)
{
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
        const std::string bytes = {static_cast<char>(pair >> 8), static_cast<char>(pair & 255)};
        ASSERT_EQ(ToUtf8(FromUtf8(bytes)), bytes) << pair;
    }
    // Bytes around the edges of all ranges, every four of them.
    const std::string edges = "\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (const char a : edges)
        for (const char b : edges)
            for (const char c : edges)
                for (const char d : edges) {
                    const std::string bytes = {a, b, c, d};
                    ASSERT_EQ(ToUtf8(FromUtf8(bytes)), bytes);
                }
}

TEST(Utf8, BytesThatAreNotWellFormedBecomeLoneSurrogatesOneByOne)
{
    const struct {
        std::string bytes;
        std::wstring expected;
    } rows[] = {
        {"\xC0\xAF", L"\xDCC0\xDCAF"},                     // overlong "/"
        {"\xED\xA0\x80", L"\xDCED\xDCA0\xDC80"},           // an encoded surrogate
        {"\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"}, // above U+10FFFF
        {"a\xE2\x82", L"a\xDCE2\xDC82"},                   // cut short
        {"\xFF.dxf", L"\xDCFF.dxf"},
    };
    for (const auto& row : rows) EXPECT_EQ(FromUtf8(row.bytes), row.expected);
}

TEST(Utf8, WhatNoBytesStandForBecomesTheReplacementCharacter)
{
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), replacement);
    EXPECT_EQ(ToUtf8(std::wstring{static_cast<wchar_t>(0xD800), L'x'}), replacement + "x");
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0xDC7F))), replacement);
    if (sizeof(wchar_t) > 2) {
        EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), replacement);
        EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(-1))), replacement);
    }
}

TEST(Utf8, ASurrogatePairIsOneCharacter)
{
    const std::wstring pair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    EXPECT_EQ(ToUtf8(pair), "\xF0\x9F\x98\x80"); // U+1F600
}
