#pragma once

#include "platform/Export.h"

/// A drawing colour, as an index into the 256 entries of the published DXF colour table or as a device colour
/// word 0x00BBGGRR (red in the low byte).
class HALYARD_API DXFColor {
public:
    /// From an index; one outside 0 to 255 counts as 0.
    explicit DXFColor(int index);
    /// From a device colour word; bits above the low 24 are dropped.
    explicit DXFColor(unsigned long rgb);

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
