#include "render/DxfPen.h"

#include "platform/DeviceOperations.h"
#include "support/LineInfo.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace {

int PlainStyle(int style)
{
    switch (style) {
    case LineInfo::DASHED:
        return PS_DASH;
    case LineInfo::DOT:
        return PS_DOT;
    case LineInfo::DASHDOT:
        return PS_DASHDOT;
    default:
        return PS_SOLID;
    }
}

/// Lengths in widths.
std::vector<int> PatternOf(int style)
{
    switch (style) {
    case LineInfo::DASHED:
        return {7, 5};
    case LineInfo::DOT:
        return {1, 5};
    case LineInfo::DASHDOT:
        return {7, 5, 1, 5};
    default:
        return {};
    }
}

int Times(int factor, int width)
{
    const std::int64_t product = std::int64_t{factor} * width;
    constexpr int MOST = std::numeric_limits<int>::max();
    return product < MOST ? static_cast<int>(product) : MOST;
}

} // namespace

bool DxfPen::CreateDxfPen(int style, int width, unsigned long color)
{
    if (width < 2 || style == LineInfo::CONTINUOUS) return CreatePen(PlainStyle(style), width, color);
    std::vector<int> pattern = PatternOf(style);
    for (int& length : pattern) length = Times(length, width);
    return DeviceOperations::CreateGeometricPen(*this, PS_GEOMETRIC | PS_USERSTYLE, width, color,
                                                pattern.data(), static_cast<int>(pattern.size()));
}
