#include "support/CRCChecksum.h"
#include "support/CRCFile.h"
#include "support/HashedString.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

unsigned int ChecksumOf(std::string_view bytes)
{
    CRCChecksum checksum;
    checksum.Update(bytes.data(), bytes.size());
    return checksum.Value();
}

/// Bit by bit, as the polynomial division is defined.
unsigned int ChecksumBySteps(std::string_view bytes)
{
    unsigned int rest = 0xFFFFFFFFU;
    for (const char c : bytes) {
        rest ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) rest = rest & 1 ? rest >> 1 ^ 0xEDB88320U : rest >> 1;
    }
    return ~rest;
}

/// A file of this process in the system's folder for such; gone with this object.
class TemporaryFile {
public:
    TemporaryFile() : m_Path(std::filesystem::path(::testing::TempDir()) / UniqueName()) {}
    ~TemporaryFile() { std::filesystem::remove(m_Path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::wstring Name() const { return m_Path.wstring(); }
    std::string Content() const
    {
        std::ifstream in(m_Path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    static std::string UniqueName()
    {
        return "halyard-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name())
               + std::to_string(std::random_device()());
    }

    std::filesystem::path m_Path;
};

} // namespace

TEST(CRCChecksum, HasThePublishedCheckValues)
{
    EXPECT_EQ(ChecksumOf("123456789"), 0xCBF43926U);
    EXPECT_EQ(ChecksumOf(""), 0U);
    EXPECT_EQ(ChecksumOf("The quick brown fox jumps over the lazy dog"), 0x414FA339U);
    EXPECT_EQ(ChecksumOf(std::string(32, '\0')), 0x190A55ADU);
    EXPECT_EQ(ChecksumOf(std::string(32, '\xFF')), 0xFF6CAB0BU);
}

TEST(CRCChecksum, IsThatOfTheDivisionForEveryLengthAndSplit)
{
    std::mt19937 random(5);
    std::string bytes(300, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    for (std::size_t length = 0; length <= 290; ++length) {
        const std::string_view part(bytes.data() + length % 7, length);
        EXPECT_EQ(ChecksumOf(part), ChecksumBySteps(part)) << length;
    }
    CRCChecksum pieces;
    for (std::size_t at = 0, size = 0; at < bytes.size(); at += size, size = random() % 40)
        pieces.Update(bytes.data() + at, std::min(size, bytes.size() - at));
    EXPECT_EQ(pieces.Value(), ChecksumBySteps(bytes));
    for (const std::size_t half : {1U, 140U, 160U}) {
        CRCChecksum halves;
        halves.Update(bytes.data(), half);
        halves.Update(bytes.data() + half, bytes.size() - half);
        EXPECT_EQ(halves.Value(), ChecksumBySteps(bytes)) << half;
    }
}

TEST(CRCChecksum, FoldsAnIntAsFourBytesLowestFirst)
{
    CRCChecksum checksum;
    checksum += 0x34333231; // "1234"
    checksum += 0x38373635; // "5678"
    checksum.Update("9", 1);
    EXPECT_EQ(checksum.Value(), 0xCBF43926U);

    const std::vector<int> values{1, -2, 0x7FFFFFFF, 40000, -5, 6};
    for (std::size_t count = 0; count <= values.size(); ++count) {
        CRCChecksum single;
        for (std::size_t i = 0; i < count; ++i) single += values[i];
        CRCChecksum together;
        together.UpdateInts(values.data(), count);
        EXPECT_EQ(together.Value(), single.Value()) << count;
    }
}

TEST(HashedString, HashesItsUpperCasedCharactersAsInts)
{
    // 'A' and '\xE9' as four bytes each, lowest first.
    EXPECT_EQ(HashedString<wchar_t>(L"a\xE9").Hash(),
              ChecksumBySteps(std::string_view("A\0\0\0\xE9\0\0\0", 8)));
    std::string long20;
    for (int i = 0; i < 20; ++i) long20 += std::string("X\0\0\0", 4);
    EXPECT_EQ(HashedString<wchar_t>(std::wstring(20, L'x')).Hash(), ChecksumBySteps(long20));
    EXPECT_EQ(HashedString<wchar_t>().Hash(), 0U);
}

TEST(HashedString, NamesTheSameWithoutRegardToCase)
{
    const HashedString<wchar_t> lower(L"wall-02");
    const HashedString<wchar_t> upper(L"WALL-02");
    EXPECT_EQ(lower.Hash(), upper.Hash());
    EXPECT_TRUE(lower == upper);
    EXPECT_EQ(lower.Text(), L"wall-02") << "the text stays as given";
    EXPECT_FALSE(lower == HashedString<wchar_t>(L"wall-03"));
}

TEST(CRCFile, KeepsTheChecksumOfWhatPassesThrough)
{
    TemporaryFile place;
    CRCFile out;
    ASSERT_TRUE(out.Open(place.Name(), L"wb+"));
    EXPECT_EQ(out.Write("123456789", 1, 9), 9U);
    EXPECT_EQ(out.Tell(), 9U);
    EXPECT_EQ(out.Checksum(), 0xCBF43926U);
    EXPECT_TRUE(out.Close());
    EXPECT_EQ(place.Content(), "123456789") << "closing appends nothing";

    CRCFile in;
    char buffer[100];
    ASSERT_TRUE(in.Open(place.Name(), L"rb"));
    EXPECT_EQ(in.Read(buffer, 4, 25), 2U) << "whole items only";
    EXPECT_EQ(in.Checksum(), 0xCBF43926U) << "all bytes that came";
    EXPECT_EQ(in.Read(buffer, 1, 1), 0U);
    ASSERT_TRUE(in.Open(place.Name(), L"rb"));
    EXPECT_EQ(in.Checksum(), 0U) << "a file opened anew starts anew";
}

TEST(CRCFile, SeeksFromStartPositionAndEnd)
{
    TemporaryFile place;
    CRCFile file;
    ASSERT_TRUE(file.Open(place.Name(), L"wb+"));
    ASSERT_EQ(file.Write("0123456789", 10, 1), 1U);
    EXPECT_TRUE(file.Seek(2, SEEK_SET));
    EXPECT_TRUE(file.Seek(3, SEEK_CUR));
    EXPECT_EQ(file.Tell(), 5U);
    EXPECT_TRUE(file.Seek(-1, SEEK_END));
    EXPECT_EQ(file.Tell(), 9U);
    EXPECT_FALSE(file.Seek(-1, SEEK_SET));
    EXPECT_FALSE(file.Seek(0, 77));
    EXPECT_EQ(file.Tell(), 9U);
}

TEST(CRCFile, TakesTheModesOfTheCLibrary)
{
    struct Row {
        const wchar_t* mode;
        bool isNewAllowed;   ///< the file need not exist
        const char* content; ///< of a file that held "old" after "+" has been written
        bool isRead;
    };
    const Row ROWS[] = {
        {L"r", false, "old", true},   {L"rb", false, "old", true},  {L"rt", false, "old", true},
        {L"r+", false, "+ld", true},  {L"r+b", false, "+ld", true}, {L"rb+", false, "+ld", true},
        {L"rt+", false, "+ld", true}, {L"r+t", false, "+ld", true}, {L"w", true, "+", false},
        {L"wb", true, "+", false},    {L"wt", true, "+", false},    {L"w+", true, "+", true},
        {L"w+b", true, "+", true},    {L"wb+", true, "+", true},    {L"wt+", true, "+", true},
        {L"a", true, "old+", false},  {L"ab", true, "old+", false}, {L"at", true, "old+", false},
        {L"a+", true, "old+", true},  {L"a+b", true, "old+", true}, {L"ab+", true, "old+", true},
    };
    for (const Row& row : ROWS) {
        TemporaryFile place;
        CRCFile file;
        EXPECT_EQ(!file.Open(place.Name(), row.mode), !row.isNewAllowed) << row.mode;
        ASSERT_TRUE(file.Open(place.Name(), L"w"));
        ASSERT_EQ(file.Write("old", 1, 3), 3U);
        ASSERT_TRUE(file.Open(place.Name(), row.mode)) << row.mode;
        file.Write("+", 1, 1);
        char byte;
        EXPECT_EQ(file.Seek(0, SEEK_SET) && file.Read(&byte, 1, 1) == 1, row.isRead) << row.mode;
        file.Close();
        EXPECT_EQ(place.Content(), row.content) << row.mode;
    }
    TemporaryFile place;
    for (const wchar_t* bad :
         {L"", L"b", L"x", L"+r", L"rw", L"r++", L"wbt", L"wbb", L"R", L"w ", L"w\x0162"}) {
        EXPECT_FALSE(CRCFile().Open(place.Name(), bad)) << bad;
        EXPECT_FALSE(std::filesystem::exists(place.Name())) << bad;
    }
}

TEST(CRCFile, SaysWhichFileWouldNotOpen)
{
    CRCFile file;
    const std::wstring name = L"no such folder/plan.plt";
    const auto start = [&](const wchar_t* mode) {
        const ErrorString result = file.Open(name, mode);
        EXPECT_EQ(ErrorString::LastError().Text(), result.Text());
        return result.Text().substr(0, result.Text().find(L'!'));
    };
    for (const wchar_t* mode : {L"rb", L"r", L"rt"})
        EXPECT_EQ(start(mode), L"Error opening file \"" + name + L"\" for reading") << mode;
    for (const wchar_t* mode : {L"wb", L"w", L"r+", L"a"})
        EXPECT_EQ(start(mode), L"Error opening file \"" + name + L"\" for writing") << mode;
    EXPECT_FALSE(file.Open(name, nullptr));
}

TEST(CRCFile, ClosedOrAskedForNonsenseTransfersNothing)
{
    CRCFile file;
    char byte = 0;
    EXPECT_EQ(file.Read(&byte, 1, 1), 0U);
    EXPECT_EQ(file.Write(&byte, 1, 1), 0U);
    EXPECT_EQ(file.Tell(), 0U);
    EXPECT_FALSE(file.Seek(0, SEEK_SET));
    EXPECT_FALSE(file.Close());
    TemporaryFile place;
    ASSERT_TRUE(file.Open(place.Name(), L"wb+"));
    EXPECT_EQ(file.Write(&byte, 0, 5), 0U);
    // 2^64 - 1 is a multiple of 3: this product wraps round to 2.
    constexpr std::size_t THIRD = std::numeric_limits<std::size_t>::max() / 3 + 1;
    char bytes[2] = {1, 2};
    EXPECT_EQ(file.Write(bytes, THIRD, 3), 0U);
    EXPECT_EQ(file.Checksum(), 0U);
    ASSERT_EQ(file.Write(bytes, 1, 2), 2U);
    ASSERT_TRUE(file.Open(place.Name(), L"rb"));
    EXPECT_EQ(file.Read(bytes, THIRD, 3), 0U);
    EXPECT_EQ(file.Checksum(), 0U);
}
