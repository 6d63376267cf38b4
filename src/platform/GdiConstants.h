#pragma once

/// The published constants of GDI that the device classes take, by their names and values. Where <wingdi.h>
/// has been included before, its macros of the same names and values serve instead.
#ifndef _WINGDI_

// Map modes.
inline constexpr int MM_TEXT = 1;
inline constexpr int MM_ISOTROPIC = 7;
inline constexpr int MM_ANISOTROPIC = 8;

// Pen styles, types, caps and joins.
inline constexpr int PS_SOLID = 0;
inline constexpr int PS_DASH = 1;
inline constexpr int PS_DOT = 2;
inline constexpr int PS_DASHDOT = 3;
inline constexpr int PS_DASHDOTDOT = 4;
inline constexpr int PS_NULL = 5;
inline constexpr int PS_INSIDEFRAME = 6;
inline constexpr int PS_USERSTYLE = 7;
inline constexpr int PS_STYLE_MASK = 0x0000000F;
inline constexpr int PS_ENDCAP_ROUND = 0x00000000;
inline constexpr int PS_JOIN_ROUND = 0x00000000;
inline constexpr int PS_COSMETIC = 0x00000000;
inline constexpr int PS_GEOMETRIC = 0x00010000;

// Fill rules of polygons.
inline constexpr int ALTERNATE = 1;
inline constexpr int WINDING = 2;

// Background modes.
inline constexpr int TRANSPARENT = 1;
inline constexpr int OPAQUE = 2;

// Text alignment: one horizontal, one vertical flag, and whether text starts at the current position.
inline constexpr unsigned TA_NOUPDATECP = 0;
inline constexpr unsigned TA_UPDATECP = 1;
inline constexpr unsigned TA_LEFT = 0;
inline constexpr unsigned TA_RIGHT = 2;
inline constexpr unsigned TA_CENTER = 6;
inline constexpr unsigned TA_TOP = 0;
inline constexpr unsigned TA_BOTTOM = 8;
inline constexpr unsigned TA_BASELINE = 24;

// Fonts.
inline constexpr int FW_DONTCARE = 0;
inline constexpr int FW_NORMAL = 400;
inline constexpr int FW_SEMIBOLD = 600;
inline constexpr int FW_BOLD = 700;
inline constexpr int ANSI_CHARSET = 0;
inline constexpr int DEFAULT_CHARSET = 1;
inline constexpr int OUT_DEFAULT_PRECIS = 0;
inline constexpr int OUT_TT_ONLY_PRECIS = 7;
inline constexpr int CLIP_DEFAULT_PRECIS = 0;
inline constexpr int CLIP_LH_ANGLES = 16;
inline constexpr int DEFAULT_QUALITY = 0;
inline constexpr int PROOF_QUALITY = 2;
inline constexpr int ANTIALIASED_QUALITY = 4;
inline constexpr int DEFAULT_PITCH = 0;

/// Raster operation of BitBlt: the source replaces the target.
inline constexpr unsigned long SRCCOPY = 0x00CC0020;

/// What SetPixel and GetPixel return for a place outside the bitmap or the clip region.
inline constexpr unsigned long CLR_INVALID = 0xFFFFFFFF;

/// A device colour word 0x00BBGGRR of red, green and blue, each 0 to 255.
constexpr unsigned long RGB(int red, int green, int blue)
{
    return static_cast<unsigned long>((red & 255) | (green & 255) << 8 | (blue & 255) << 16);
}

#endif
