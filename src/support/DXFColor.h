#pragma once

#include "platform/Export.h"

#include <initializer_list>

/// A drawing colour, as an index into the 256 entries of the published DXF colour table or as a device colour
/// word 0x00BBGGRR (red in the low byte).
class HALYARD_API DXFColor {
public:
    /// From an index; one outside 0 to 255 counts as 0.
    explicit DXFColor(int index);
    /// From a device colour word; bits above the low 24 are dropped.
    explicit DXFColor(unsigned long rgb);
    explicit DXFColor(unsigned int rgb) : DXFColor(static_cast<unsigned long>(rgb)) {}

    /// The table's index: of an exact match the lowest, otherwise of the entry with the smallest squared
    /// distance in RGB (the lowest index among equals). Repeated colours cost one look-up.
    int Index() const;
    /// The device colour word 0x00BBGGRR.
    operator unsigned long() const { return m_Rgb; }

private:
    unsigned long m_Rgb = 0;
    int m_Index = -1; ///< as given, -1 when made from a colour word
};

/// 0x00RRGGBB to 0x00BBGGRR and back.
inline constexpr unsigned long SwapRedBlue(unsigned long color)
{
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

/// How far two colours lie apart, red, green and blue as axes; of either order of bytes.
inline constexpr int SquaredDistance(unsigned long a, unsigned long b)
{
    int sum = 0;
    for (const int shift : {0, 8, 16}) {
        const int gap = static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF);
        sum += gap * gap;
    }
    return sum;
}
