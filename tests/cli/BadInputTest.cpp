#include "cli/ProgramTest.h"

using namespace std::string_literals;
using BadInput = ProgramTest;

namespace {

struct Row {
    const char* name;
    std::string bytes;
    const char* sentence; ///< what follows "halyard: NAME: "
};

std::string Utf16(const std::string& text)
{
    std::string wide;
    for (const char c : text) wide += {c, '\0'};
    return wide;
}

const std::string DXF = Groups("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF");

const Row ROWS[] = {
    {"empty.dxf", "", "the file is empty"},
    {"blanks.dxf", " \r\n\n\t\n", "the file holds nothing but blanks"},
    {"binary.dxf", "AutoCAD Binary DXF\r\n\x1A\0\0\0SECTION\0"s,
     "binary DXF is not supported; save it as text DXF"},
    {"plan.dwg", "AC1027\0\0\0\0\0"s, "a DWG drawing is not supported; save it as text DXF"},
    {"photo.png", "\x89PNG\r\n\x1A\n", "is a PNG picture, not a drawing"},
    {"photo.jpg", "\xFF\xD8\xFF\xE0", "is a JPEG picture, not a drawing"},
    {"photo.bmp", "BM\x36\0\0\0\0\0\0\0\x36\0"s, "is a BMP picture, not a drawing"},
    {"paper.pdf", "%PDF-1.7\n", "is a PDF document, not a drawing"},
    {"all.zip", "PK\3\4\x14\0"s, "is a packed archive, not a drawing; unpack it first"},
    {"wide.dxf", "\xFF\xFE" + Utf16(DXF), "text in UTF-16 is not supported; save it as ordinary text DXF"},
    {"bare.dxf", Utf16("  " + DXF), "text in UTF-16 is not supported; save it as ordinary text DXF"},
    {"old_mac.dxf", "0\rSECTION\r2\rENTITIES\r0\rENDSEC\r0\rEOF\r",
     "lines that end with CR alone are not supported; save it with CR LF or LF"},
    {"letter.txt", "Dear reader,\nthis is\nno drawing.\n", "is text, but not a DXF drawing"},
    {"table.csv", "1,2,3\n4,5,6\n", "is text, but not a DXF drawing"},
    {"list.txt", "1\nnail\nscrew\nbolt\nnut\nrivet\n", "is text, but not a DXF drawing"},
    {"noise.dat", "\x01\x02\0\x03\x04"s, "is not a drawing of a kind that Halyard reads"},
    {"code.dxf", "7\nSECTION\n",
     "cannot be read as a drawing: Error Line 1. Unexpected group code (7) found."},
    {"line.dxf", Groups("0 LINE|8 0|10 1|20 1|11 1|0 EOF"),
     "cannot be read as a drawing: Error before line 11group. Expected group code: 21."},
};

} // namespace

TEST_F(BadInput, IsAnsweredWithOneSentenceThatNamesTheFile)
{
    for (const Row& row : ROWS) {
        Write(row.name, row.bytes);
        for (const std::string& command :
             {"info "s + row.name, "dump "s + row.name, "convert "s + row.name + " out.dxf"}) {
            const Outcome outcome = Halyard(command);
            EXPECT_EQ(outcome.status, 1) << command;
            EXPECT_EQ(outcome.err, "halyard: "s + row.name + ": " + row.sentence + "\n") << command;
            EXPECT_EQ(outcome.out, "") << command;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "out.dxf"));
}

TEST_F(BadInput, OfTheSystemIsNamedToo)
{
    std::filesystem::create_directory(m_Folder / "folder.dxf");
    Shell("mkfifo pipe.dxf; ln -s gone.dxf link.dxf; ln -s ring.dxf ring.dxf");
    const std::pair<const char*, const char*> rows[] = {
        {"none.dxf", "no such file"},       {"none/plan.dxf", "no such file"},
        {"folder.dxf", "is a folder"},      {"link.dxf", "no such file"},
        {"pipe.dxf", "is no regular file"}, {"/dev/null", "is no regular file"},
        {"ring.dxf", "too many links"},     {"folder.dxf/../none", "no such file"},
    };
    for (const auto& [name, sentence] : rows) {
        const Outcome outcome = Halyard("info "s + name);
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(outcome.err, "halyard: "s + name + ": " + sentence + "\n");
    }
}

TEST_F(BadInput, ThatMayNotBeReadIsNamedToo)
{
    Write("secret.dxf", DXF);
    std::filesystem::permissions(m_Folder / "secret.dxf", std::filesystem::perms::none);
    if (Shell("head -c 1 secret.dxf").status == 0) GTEST_SKIP() << "this user reads files without permission";
    EXPECT_EQ(Halyard("info secret.dxf").err, "halyard: secret.dxf: permission denied\n");
}

TEST_F(BadInput, IsToldFromDrawingsThatOnlyLookOdd)
{
    const std::pair<const char*, std::string> rows[] = {
        {"utf-8 mark", "\xEF\xBB\xBF" + DXF},
        {"comment first", "999\nmade by hand\n" + DXF},
        {"blanks before codes", Groups("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF", "\r\n  ")},
        {"no sections", Groups("0 POINT|8 0|10 1|20 2")},
        {"one damaged line",
         Groups("0 SECTION|2 HEADER|x $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF")},
        {"end alone", "0\nEOF"},
        {"less than a pair", "0"},
    };
    for (const auto& [name, bytes] : rows) {
        Write("odd.dxf", bytes);
        const Outcome outcome = Halyard("info odd.dxf");
        EXPECT_EQ(outcome.status, 0) << name << ": " << outcome.err;
    }
}
