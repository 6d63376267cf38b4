#pragma once

#include "platform/OutputFile.h"
#include "platform/PixelRows.h"

/// One encoder a format. Each writes pixels to an open file; what the file could not take, the file tells.
/// Returns why the picture could not be encoded, one clause in lower case; null when it was.
const wchar_t* EncodePng(const PixelRows& bitmap, OutputFile& file);
const wchar_t* EncodeBmp(const PixelRows& bitmap, OutputFile& file);
