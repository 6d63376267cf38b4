#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

/// A decoded picture: 32-bit pixels, rows from top to bottom, each from left to right without padding.
///
/// A pixel is 0xAARRGGBB: alpha (255 opaque), red, green, blue, the colour not multiplied by alpha.
///
/// Transparency also works by a colour key, for devices that know no alpha: a pixel of alpha 0 has the colour
/// COLOR_KEY (red 254, green 255, blue 255) whatever the file stored below it, and a pixel that is not
/// transparent but has exactly that colour is changed to red 255, so that it is not keyed out. This holds for
/// every format that can be transparent: TIFF, PNG, GIF, TGA with attribute bits, BMP with an alpha mask.
struct Picture {
    /// The colour that stands for "transparent", with alpha 0.
    static constexpr std::uint32_t COLOR_KEY = 0x00FEFFFF;

    /// Pictures of more pixels are refused.
    static constexpr std::uint64_t MAX_PIXELS = std::uint64_t{1} << 28;

    int width = 0;                     ///< In pixels, at least 1.
    int height = 0;                    ///< In pixels, at least 1.
    std::vector<std::uint32_t> pixels; ///< width * height of them.
    bool hasColorKey = false;          ///< At least one pixel is transparent (see above).
    bool isGeoReferenced = false;      ///< A TIFF file that carries GeoTIFF keys.
};

/// Loads a picture. The format is chosen by the extension, in any case: bmp, jpg, jpeg, gif, pcx, tiff, tif,
/// tga, png; a file with another extension is taken for the format of that list that its first bytes show.
///
/// Null when there is no picture in the end; `reason`, if given, then says why in one clause ("no such file",
/// "not a BMP file"). Nothing is believed: no more than a fixed multiple of the bytes that are present is
/// ever allocated, apart from 2^20 pixels that any picture may have. A file that ends too early loads when
/// its header and palette are whole; what is missing is black (the first colour of the palette in a
/// run-length coded BMP); of TIFF whole strips and tiles are shown. Of several pages, frames or resolutions
/// the first is taken.
[[nodiscard]] HALYARD_API std::shared_ptr<const Picture> LoadPicture(const std::wstring& fileName,
                                                                     std::wstring* reason = nullptr);

/// The same from bytes in memory; `extension` is given without its dot and may be empty.
[[nodiscard]] HALYARD_API std::shared_ptr<const Picture> DecodePicture(std::span<const std::uint8_t> bytes,
                                                                       std::wstring_view extension,
                                                                       std::wstring* reason = nullptr);
