#include "support/LineInfo.h"
#include "support/LineStyle.h"
#include "support/TextInfo.h"

#include <gtest/gtest.h>

#include <string>

TEST(LineStyle, NamesAreReadInAnyCaseAndUnknownOnesAreDashed)
{
    const std::pair<const wchar_t*, int> ROWS[] = {
        {L"CONTINUOUS", 0}, {L"Continuous", 0}, {L"dashed", 1}, {L"DOT", 2},
        {L"DashDot", 3},    {L"HIDDEN", 1},     {L"", 1},       {L"DASHDOT2", 1},
    };
    for (const auto& [name, style] : ROWS) EXPECT_EQ(LineStyleOf(name), style) << name;
}

TEST(LineStyle, UnknownStylesAreWrittenContinuous)
{
    const wchar_t* const NAMES[] = {L"CONTINUOUS", L"DASHED", L"DOT", L"DASHDOT"};
    for (int style = 0; style < 4; ++style) EXPECT_STREQ(LineStyleName(style), NAMES[style]);
    for (const int style : {-1, 4, 7}) EXPECT_STREQ(LineStyleName(style), L"CONTINUOUS");
}

namespace {

/// Positions of the published text attributes: groups 72 and 73 of a TEXT, the attachment point (71) of an
/// MTEXT and what GDI calls it.
struct PositionRow {
    int justification;
    int horizontal, vertical;
    int attachmentPoint;
    int referencePoint;
    unsigned int alignment;
};

constexpr PositionRow POSITIONS[] = {
    {0, 0, 1, 7, 0, 8},  {1, 1, 1, 8, 4, 14}, {2, 2, 1, 9, 1, 10},  {3, 2, 2, 6, 5, 26},
    {4, 2, 3, 3, 2, 2},  {5, 1, 3, 2, 6, 6},  {6, 0, 3, 1, 3, 0},   {7, 0, 2, 4, 7, 24},
    {8, 1, 2, 5, 8, 30}, {9, 0, 0, 7, 0, 24}, {10, 1, 0, 8, 4, 30}, {11, 2, 0, 9, 1, 26},
};

TextInfo Justified(int justification)
{
    TextInfo info;
    info.SetJustification(static_cast<TextInfo::JUSTIFICATION>(justification));
    return info;
}

} // namespace

TEST(TextInfo, JustificationHasItsPairPointAndAlignment)
{
    for (const PositionRow& row : POSITIONS) {
        const TextInfo info = Justified(row.justification);
        EXPECT_EQ(info.AcadHJust(), row.horizontal) << row.justification;
        EXPECT_EQ(info.AcadVJust(), row.vertical) << row.justification;
        EXPECT_EQ(info.AcadAttachmentPoint(), row.attachmentPoint) << row.justification;
        EXPECT_EQ(info.ReferencePoint(), row.referencePoint) << row.justification;
        EXPECT_EQ(info.WinAlignment(), row.alignment) << row.justification;
        TextInfo back;
        back.FromAcadJust(row.horizontal, row.vertical);
        EXPECT_EQ(back.Justification(), row.justification);
        if (row.justification > 8) continue;
        back.AcadAttachmentPoint(row.attachmentPoint);
        EXPECT_EQ(back.Justification(), row.justification);
    }
}

TEST(TextInfo, OddJustificationsCountAsTheirNearestMeaning)
{
    const int ROWS[][3] = {
        {4, 0, 8}, {4, 3, 8}, {3, 0, 9}, {5, 0, 9}, {3, 2, 7}, {5, 1, 0}, {-1, 7, 9}, {99, -4, 9},
    };
    for (const auto& [h, v, justification] : ROWS) {
        TextInfo info;
        info.FromAcadJust(h, v);
        EXPECT_EQ(info.Justification(), justification) << h << ", " << v;
    }
    TextInfo info = Justified(5);
    for (const int point : {0, 10, -1}) info.AcadAttachmentPoint(point);
    EXPECT_EQ(info.Justification(), 5) << "no such attachment point";
    EXPECT_EQ(Justified(12).ReferencePoint(), -1);
    EXPECT_EQ(Justified(12).AcadAttachmentPoint(), 7);
}

TEST(TextInfo, ComparesEveryAttribute)
{
    void (*const CHANGES[])(TextInfo&) = {
        [](TextInfo& t) { t.SetFont(L"Arial"); },
        [](TextInfo& t) { t.SetSize(2); },
        [](TextInfo& t) { t.SetRotation(1); },
        [](TextInfo& t) { t.SetJustification(TextInfo::TOP_LEFT); },
        [](TextInfo& t) { t.SetColor(3); },
        [](TextInfo& t) { t.SetStyle(TextInfo::BOLD); },
        [](TextInfo& t) { t.SetMultiLine(true); },
        [](TextInfo& t) { t.SetRectWidth(9); },
    };
    for (const auto change : CHANGES) {
        TextInfo info;
        change(info);
        EXPECT_FALSE(info == TextInfo());
        EXPECT_TRUE(info == TextInfo(info));
    }
}
