#include "support/TextInfo.h"

#include <array>

namespace {

/// What belongs to a justification, a row each in the order of their values.
struct Row {
    int horizontal;         ///< DXF group 72
    int vertical;           ///< DXF group 73
    int attachmentPoint;    ///< of an MTEXT
    int referencePoint;     ///< of a GTL::Rectangle
    unsigned int alignment; ///< GDI flags
};

constexpr unsigned int TA_LEFT_FLAG = 0;
constexpr unsigned int TA_RIGHT_FLAG = 2;
constexpr unsigned int TA_CENTER_FLAG = 6;
constexpr unsigned int TA_TOP_FLAG = 0;
constexpr unsigned int TA_BOTTOM_FLAG = 8;
constexpr unsigned int TA_BASELINE_FLAG = 24;

constexpr std::array<Row, 12> ROWS{{
    {0, 1, 7, 0, TA_LEFT_FLAG | TA_BOTTOM_FLAG},
    {1, 1, 8, 4, TA_CENTER_FLAG | TA_BOTTOM_FLAG},
    {2, 1, 9, 1, TA_RIGHT_FLAG | TA_BOTTOM_FLAG},
    {2, 2, 6, 5, TA_RIGHT_FLAG | TA_BASELINE_FLAG},
    {2, 3, 3, 2, TA_RIGHT_FLAG | TA_TOP_FLAG},
    {1, 3, 2, 6, TA_CENTER_FLAG | TA_TOP_FLAG},
    {0, 3, 1, 3, TA_LEFT_FLAG | TA_TOP_FLAG},
    {0, 2, 4, 7, TA_LEFT_FLAG | TA_BASELINE_FLAG},
    {1, 2, 5, 8, TA_CENTER_FLAG | TA_BASELINE_FLAG},
    {0, 0, 7, 0, TA_LEFT_FLAG | TA_BASELINE_FLAG},
    {1, 0, 8, 4, TA_CENTER_FLAG | TA_BASELINE_FLAG},
    {2, 0, 9, 1, TA_RIGHT_FLAG | TA_BASELINE_FLAG},
}};

bool HasRow(TextInfo::JUSTIFICATION justification)
{
    return justification >= 0 && static_cast<std::size_t>(justification) < ROWS.size();
}

/// A justification without a row counts as bottom-left.
const Row& RowOf(TextInfo::JUSTIFICATION justification)
{
    return ROWS[HasRow(justification) ? static_cast<std::size_t>(justification) : 0];
}

} // namespace

void TextInfo::FromAcadJust(int h, int v)
{
    static constexpr JUSTIFICATION BY_PAIR[4][3] = {
        {BASELINE_LEFT, BASELINE_CENTER, BASELINE_RIGHT},
        {BOTTOM_LEFT, BOTTOM_CENTER, BOTTOM_RIGHT},
        {MIDDLE_LEFT, MIDDLE_CENTER, MIDDLE_RIGHT},
        {TOP_LEFT, TOP_CENTER, TOP_RIGHT},
    };
    constexpr int MIDDLE_OF_BOTH = 4;
    if (h == MIDDLE_OF_BOTH) {
        m_Justification = MIDDLE_CENTER;
        return;
    }
    m_Justification = BY_PAIR[v >= 0 && v < 4 ? v : 0][h >= 0 && h < 3 ? h : 0];
}

int TextInfo::AcadHJust() const
{
    return RowOf(m_Justification).horizontal;
}

int TextInfo::AcadVJust() const
{
    return RowOf(m_Justification).vertical;
}

void TextInfo::AcadAttachmentPoint(int point)
{
    static constexpr JUSTIFICATION BY_POINT[] = {
        TOP_LEFT,     TOP_CENTER,  TOP_RIGHT,     MIDDLE_LEFT,  MIDDLE_CENTER,
        MIDDLE_RIGHT, BOTTOM_LEFT, BOTTOM_CENTER, BOTTOM_RIGHT,
    };
    if (point >= 1 && point <= 9) m_Justification = BY_POINT[point - 1];
}

int TextInfo::AcadAttachmentPoint() const
{
    return RowOf(m_Justification).attachmentPoint;
}

int TextInfo::ReferencePoint() const
{
    return HasRow(m_Justification) ? RowOf(m_Justification).referencePoint : -1;
}

unsigned int TextInfo::WinAlignment() const
{
    return RowOf(m_Justification).alignment;
}
