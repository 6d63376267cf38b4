#pragma once

#include "platform/CBitmap.h"
#include "platform/OutputFile.h"

/// One encoder a format. Each writes a bitmap that holds pixels to an open file; what the file could not
/// take, the file tells. Returns why the picture could not be encoded, one clause in lower case; null when it
/// was.
const wchar_t* EncodePng(const CBitmap& bitmap, OutputFile& file);
const wchar_t* EncodeBmp(const CBitmap& bitmap, OutputFile& file);
