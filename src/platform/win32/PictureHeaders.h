#pragma once

#include <cstdint>

#include "platform/picture/Decoders.h"

/// What the header of a picture file says, read before the file is given to a decoder that would believe it.
struct PictureHeader {
    Complaint complaint = nullptr; ///< The header cannot be read; the rest then means nothing.
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::uint64_t backed = 0;    ///< The most pixels that the bytes in the file can stand for.
    std::uint64_t frameLeft = 0; ///< Where the first frame of a GIF lies on its screen, which is the picture.
    std::uint64_t frameTop = 0;
    std::uint64_t frameWidth = 0;
    std::uint64_t frameHeight = 0;
    int scans = 1; ///< Passes over the whole picture that a progressive JPEG takes.
    bool hasGeoKeys = false;
};

PictureHeader ReadGifHeader(ByteSource& source);
PictureHeader ReadJpegHeader(ByteSource& source);
PictureHeader ReadPngHeader(ByteSource& source);
PictureHeader ReadTiffHeader(ByteSource& source);
