#include "dxf/GroupReader.h"
#include "dxf/TempFile.h"

#include <cstdlib>
#include <map>
#include <random>
#include <sstream>
#include <vector>

namespace {

struct Object {
    std::string name;
    std::vector<std::pair<int, std::string>> groups;
    int line = 0;
    bool operator==(const Object&) const = default;
};

std::string WithoutCr(std::string text)
{
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
    return text;
}

/// The same job by the standard library's stream: getline into a buffer of 512 characters, group by group.
std::vector<Object> ReadSlowly(const std::string& text)
{
    std::istringstream in(WithoutCr(text));
    int line = 0;
    const auto next = [&](std::string& out) {
        char buffer[512] = {};
        ++line;
        in.getline(buffer, sizeof buffer);
        out = buffer;
        return !out.empty() || in.good();
    };
    std::vector<Object> objects;
    for (;;) {
        Object object;
        std::string code;
        std::string value;
        if (!next(object.name)) return objects;
        const bool lightweight = object.name == "LWPOLYLINE";
        std::string bulge = "0";
        bool vertex = false;
        while (!in.eof()) {
            if (!next(code)) {
                if (!in.eof()) return objects;
                in.clear(std::ios::eofbit);
                --line;
                break;
            }
            const int number = std::atoi(code.c_str());
            if (number == 0) break;
            if (number > 1071 || !next(value)) return objects;
            if (lightweight && number == 10 && vertex)
                object.groups.emplace_back(42, std::exchange(bulge, "0"));
            vertex |= number == 10;
            if (lightweight && number == 42)
                bulge = value;
            else
                object.groups.emplace_back(number, value);
        }
        if (lightweight) object.groups.emplace_back(42, bulge);
        if (in.fail()) return objects;
        object.line = line;
        objects.push_back(object);
    }
}

std::vector<Object> ReadFast(const std::string& text)
{
    const TempFile file(".txt", text);
    GroupReader reader;
    EXPECT_TRUE(reader.Open(file.Name()));
    reader.SetLine(0);
    std::vector<Object> objects;
    while (reader.ReadObject(1071) == GroupReader::Status::OK) {
        Object object{std::string(reader.Name()), {}, reader.Line()};
        for (std::size_t i = 0; i < reader.NumGroups(); ++i)
            object.groups.emplace_back(reader.CodeAt(i), std::string(reader.ValueAt(i)));
        objects.push_back(object);
    }
    return objects;
}

} // namespace

TEST(GroupReader, ReadsWhatATextStreamReadsFromAnyText)
{
    std::mt19937 random(7);
    const std::vector<std::string> codes = {"0",    "  0",    "10",   " 10", "42",      "1",
                                            "1071", "1072",   "-5",   "x",   "",        "  8 ",
                                            "\t8",  "100000", "0x10", "999", "     70", "       70"};
    const auto pick = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    for (int round = 0; round < 3000; ++round) {
        const std::string end = round % 2 ? "\r\n" : "\n";
        std::string text;
        for (std::size_t pairs = pick(40); pairs > 0; --pairs) {
            text += codes[pick(pick(4) ? 9 : codes.size())] + end;
            const std::size_t kind = pick(60);
            if (kind == 0)
                text += std::string(505 + pick(12), 'a');
            else if (kind < 10)
                text += "LWPOLYLINE";
            else if (kind > 12)
                text += std::string(pick(30), 'b');
            text += pick(20) ? end : pick(2) ? "\r" : "\n";
        }
        if (!text.empty() && pick(3) == 0) text.resize(pick(text.size()));
        ASSERT_EQ(ReadFast(text), ReadSlowly(text)) << text;
    }
}

TEST(GroupReader, KeepsAnObjectThatIsLargerThanItsBlocks)
{
    std::string text = "LWPOLYLINE\n";
    for (int i = 0; i < 60000; ++i)
        text += " 10\n" + std::to_string(i) + ".25\n 20\n" + std::to_string(-i) + "\n";
    text += "  0\nLINE\n  8\nA\n  0\nEOF\n";
    const auto objects = ReadFast(text);
    ASSERT_EQ(objects.size(), 3U);
    ASSERT_EQ(objects[0].groups.size(), 3U * 60000);
    EXPECT_EQ(objects[0].groups[3 * 59999 - 1].second, "0");
    EXPECT_EQ(objects[0].groups[3 * 59999], std::make_pair(10, std::string("59999.25")));
    EXPECT_EQ(objects[1].groups[0].second, "A");
}

TEST(GroupReader, CountsBytesAgainstTheLimitOfALineWithoutItsEnd)
{
    for (const std::string end : {"\n", "\r\n"})
        for (const std::size_t length : {511U, 512U}) {
            const auto objects =
                ReadFast("A" + end + "1" + end + std::string(length, 'x') + end + "0" + end + "B" + end);
            EXPECT_EQ(objects.size(), length == 511 ? 2U : 0U) << length;
        }
}
